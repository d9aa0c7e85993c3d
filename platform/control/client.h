#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "common/fd_watch.h"
#include "common/unique_fd.h"
#include "control/commands.h"
#include "control/line_buffer.h"

namespace host::control {

/// One connection. Its requests are carried out one after the other, each replied to before the
/// next is begun. Thread: main loop.
class Client {
public:
    /// `ended` is called once, last of all: it may destroy the client.
    Client(UniqueFd fd, Commands &commands, std::function<void()> ended);
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

private:
    void ready();
    bool receive();
    void work();
    void reply(const Json &reply);
    void flush();
    void watch();

    Commands &commands_;
    std::function<void()> ended_;
    UniqueFd fd_;
    LineBuffer requests_;
    std::string replies_;
    bool busy_ = false;     // a request waits for its reply
    bool closing_ = false;  // nothing more is read; ends when the replies are out
    bool broken_ = false;
    // Its lifetime is what Responder asks for.
    std::shared_ptr<std::function<void(const Json &)>> reply_;
    std::optional<FdWatch> watch_;  // none while there is nothing to watch for
};

}  // namespace host::control
