#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace host::sound {

/// A thread of the platform that makes callbacks one after the other, in the order of posting. It
/// starts with the first one; destruction drops what waits and joins it.
class CallbackThread {
public:
    CallbackThread() = default;
    ~CallbackThread();
    CallbackThread(const CallbackThread &) = delete;
    CallbackThread &operator=(const CallbackThread &) = delete;

    /// Any thread; doesn't wait.
    void post(std::function<void()> call);

private:
    void run();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> calls_;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace host::sound
