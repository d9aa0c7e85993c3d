#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace host::sound {

/// A callback that one thread sets and others call. When clear() or set() has returned, the
/// callback that was there isn't running and isn't called again; inside that callback itself only
/// the latter holds, since waiting there would never end.
template <typename... Arguments>
class Listener {
public:
    using Function = std::function<void(Arguments...)>;

    void set(Function function) {
        {
            const std::lock_guard lock(mutex_);
            function_ = function ? std::make_shared<Function>(std::move(function)) : nullptr;
        }
        const std::lock_guard end_of_running_call(call_mutex_);
    }

    void clear() { set({}); }

    /// The callback that is set now, for a call that is made later and must reach this one or none.
    /// Doesn't wait for a running call.
    [[nodiscard]] std::shared_ptr<Function> current() {
        const std::lock_guard lock(mutex_);
        return function_;
    }

    void call(Arguments... arguments) { call(current(), arguments...); }

    void call(const std::shared_ptr<Function> &function, Arguments... arguments) {
        const std::lock_guard one_call_at_a_time(call_mutex_);
        if (function != nullptr && function == current()) {
            (*function)(arguments...);
        }
    }

private:
    // Recursive, so that a callback can clear or replace itself.
    std::recursive_mutex call_mutex_;
    std::mutex mutex_;
    std::shared_ptr<Function> function_;
};

}  // namespace host::sound
