#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace support {

/// One thread that runs tasks in the order of their times, as a platform service's own thread does.
class PlatformThread {
public:
    using Clock = std::chrono::steady_clock;
    using Task = std::function<void()>;
    using Ticket = unsigned long;

    PlatformThread() = default;
    ~PlatformThread();
    PlatformThread(const PlatformThread &) = delete;
    PlatformThread &operator=(const PlatformThread &) = delete;

    /// Any thread; the thread starts with its first task.
    void post(Task task);
    Ticket post_at(Clock::time_point when, Task task);
    /// The task does not start any more, though it may be running.
    void cancel(Ticket ticket);
    /// Returns when all tasks that were due at the call have run. On the thread itself: at once.
    void drain();
    /// Runs a task on the thread and returns when it has run. On the thread itself: directly.
    void run(const Task &task);
    [[nodiscard]] bool is_current() const;

private:
    void loop();

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    struct Entry {
        Ticket ticket;
        Task task;
    };
    std::multimap<Clock::time_point, Entry> m_tasks;
    Ticket m_next_ticket = 1;
    bool m_stopping = false;
    std::thread m_thread;
};

}  // namespace support
