#include "sound/callback_thread.h"

#include <utility>

namespace host::sound {

CallbackThread::~CallbackThread() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        calls_.clear();
    }
    wake_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void CallbackThread::post(std::function<void()> call) {
    {
        const std::lock_guard lock(mutex_);
        if (ending_) {
            return;
        }
        calls_.push_back(std::move(call));
        if (!thread_.joinable()) {
            thread_ = std::thread([this] { run(); });
        }
    }
    wake_.notify_one();
}

void CallbackThread::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return ending_ || !calls_.empty(); });
        if (ending_) {
            return;
        }
        const auto call = std::move(calls_.front());
        calls_.pop_front();
        lock.unlock();
        call();
        lock.lock();
    }
}

}  // namespace host::sound
