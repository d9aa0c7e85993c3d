#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sound/backend.h"

namespace host::sound {

/// Which backend is in use: a server that answers, or else the built-in one until a server appears.
/// A server that has gone stays the one in use, as it is expected back. Any thread, but for those
/// operations that change the choice: one thread at a time.
class BackendChoice {
public:
    /// The backends report to `events`, which outlives this.
    explicit BackendChoice(Events &events);
    ~BackendChoice();
    BackendChoice(const BackendChoice &) = delete;
    BackendChoice &operator=(const BackendChoice &) = delete;

    [[nodiscard]] std::shared_ptr<Backend> current() const;
    void choose();
    /// Stays with one that the caller has chosen.
    void use(BackendFactory factory);

private:
    void wait_for_server(const std::vector<std::string> &servers);
    void stop_waiting();
    [[nodiscard]] bool take_server();

    Events &events_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    bool waiting_ = false;
    std::shared_ptr<Backend> current_;
    std::thread waiter_;
};

}  // namespace host::sound
