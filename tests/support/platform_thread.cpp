#include "platform_thread.h"

#include <future>
#include <memory>
#include <utility>

namespace support {

PlatformThread::~PlatformThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void PlatformThread::post(Task task) {
    post_at(Clock::now(), std::move(task));
}

PlatformThread::Ticket PlatformThread::post_at(Clock::time_point when, Task task) {
    const std::lock_guard lock(m_mutex);
    if (!m_thread.joinable()) {
        m_thread = std::thread([this] { loop(); });
    }
    const Ticket ticket = m_next_ticket++;
    m_tasks.emplace(when, Entry{ticket, std::move(task)});
    m_wake.notify_all();
    return ticket;
}

void PlatformThread::cancel(Ticket ticket) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_tasks, [ticket](const auto &item) { return item.second.ticket == ticket; });
}

void PlatformThread::drain() {
    run([] {});
}

void PlatformThread::run(const Task &task) {
    if (is_current()) {
        task();
        return;
    }
    const auto done = std::make_shared<std::promise<void>>();
    auto finished = done->get_future();
    post([&task, done] {
        task();
        done->set_value();
    });
    finished.wait();
}

bool PlatformThread::is_current() const {
    const std::lock_guard lock(m_mutex);
    return m_thread.get_id() == std::this_thread::get_id();
}

void PlatformThread::loop() {
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (m_tasks.empty()) {
            m_wake.wait(lock);
            continue;
        }
        const auto due = m_tasks.begin()->first;
        if (due > Clock::now()) {
            m_wake.wait_until(lock, due);
            continue;
        }
        auto task = std::move(m_tasks.begin()->second.task);
        m_tasks.erase(m_tasks.begin());
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
}

}  // namespace support
