#include "player/task_thread.h"

#include <future>
#include <utility>

namespace host {

TaskThread::TaskThread() : thread_([this] { loop(); }) {}

TaskThread::~TaskThread() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void TaskThread::post(std::function<void()> call) {
    {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
    }
    changed_.notify_one();
}

void TaskThread::run(const std::function<void()> &call) {
    std::promise<void> done;
    post([&] {
        call();
        done.set_value();
    });
    done.get_future().wait();
}

void TaskThread::set_alarm(Clock::time_point when, std::function<void()> ring) {
    const std::lock_guard lock(mutex_);
    alarm_ = when;
    ring_ = std::move(ring);
}

void TaskThread::clear_alarm() {
    const std::lock_guard lock(mutex_);
    alarm_.reset();
    ring_ = {};
}

void TaskThread::loop() {
    for (;;) {
        std::function<void()> call;
        {
            std::unique_lock lock(mutex_);
            const auto ready = [this] { return !calls_.empty() || ending_; };
            if (alarm_) {
                changed_.wait_until(lock, *alarm_, ready);
            } else {
                changed_.wait(lock, ready);
            }
            if (!calls_.empty()) {
                call = std::move(calls_.front());
                calls_.pop_front();
            } else if (ending_) {
                return;
            } else if (alarm_ && Clock::now() >= *alarm_) {
                alarm_.reset();
                call = std::exchange(ring_, {});
            }
        }
        if (call) {
            call();
        }
    }
}

}  // namespace host
