#pragma once

#include <mutex>

namespace host {

/// A registered callback. Once set() or reset() has returned, the one before is not running and is
/// not called again, but on the thread that is inside it. Any thread.
template <typename... Arguments>
class CallbackSlot {
public:
    using Function = void (*)(Arguments..., void *user_data);

    void set(Function function, void *user_data) {
        const std::lock_guard lock(mutex_);
        function_ = function;
        user_data_ = user_data;
    }
    void reset() { set(nullptr, nullptr); }

    [[nodiscard]] bool is_set() const {
        const std::lock_guard lock(mutex_);
        return function_ != nullptr;
    }

    void operator()(Arguments... arguments) {
        const std::lock_guard lock(mutex_);
        if (function_ != nullptr) {
            function_(arguments..., user_data_);
        }
    }

private:
    mutable std::recursive_mutex mutex_;
    Function function_ = nullptr;
    void *user_data_ = nullptr;
};

}  // namespace host
