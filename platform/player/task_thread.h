#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace host {

/// A thread that runs calls one after another, in the order of posting, and one alarm.
class TaskThread {
public:
    using Clock = std::chrono::steady_clock;

    TaskThread();
    /// Runs what was posted, then joins.
    ~TaskThread();
    TaskThread(const TaskThread &) = delete;
    TaskThread &operator=(const TaskThread &) = delete;

    /// Any thread.
    void post(std::function<void()> call);
    /// Runs `call` and waits for its end. Any thread but this one.
    void run(const std::function<void()> &call);
    /// `ring` is called once at `when`, unless a later call replaces it; empty ends that. This
    /// thread only.
    void set_alarm(Clock::time_point when, std::function<void()> ring);
    void clear_alarm();

private:
    void loop();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> calls_;
    bool ending_ = false;
    std::optional<Clock::time_point> alarm_;
    std::function<void()> ring_;
    std::thread thread_;
};

}  // namespace host
