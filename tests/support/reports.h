#pragma once

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <utility>
#include <vector>

namespace support {

inline constexpr auto report_deadline = std::chrono::seconds(20);

/// What callbacks of other threads report, in order, for a test to wait on.
template <typename Entry>
class Reports {
public:
    void add(Entry entry) {
        const std::lock_guard lock(mutex_);
        entries_.push_back(std::move(entry));
        changed_.notify_all();
    }
    /// @return whether so many came before the deadline
    [[nodiscard]] bool wait_for(std::size_t count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, report_deadline, [&] { return entries_.size() >= count; });
    }
    /// Waits for an entry that is like this one; others may come before it.
    [[nodiscard]] bool wait_for_entry(const Entry &entry) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, report_deadline, [&] {
            for (const Entry &each : entries_) {
                if (each == entry) {
                    return true;
                }
            }
            return false;
        });
    }
    [[nodiscard]] std::vector<Entry> entries() {
        const std::lock_guard lock(mutex_);
        return entries_;
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        entries_.clear();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Entry> entries_;
};

/// A door that a callback waits at.
class Gate {
public:
    void open() { opened_.set_value(); }
    [[nodiscard]] bool pass() {
        return future_.wait_for(report_deadline) == std::future_status::ready;
    }

private:
    std::promise<void> opened_;
    std::shared_future<void> future_ = opened_.get_future().share();
};

}  // namespace support
