#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace host::sound {

/// A callback that one thread sets and others call. When clear() has returned, the callback isn't
/// running and isn't called again; clear() inside the callback itself only does the latter, since
/// waiting there would never end.
template <typename... Arguments>
class Listener {
public:
    using Function = std::function<void(Arguments...)>;

    void set(Function function) {
        const std::lock_guard lock(mutex_);
        function_ = function ? std::make_shared<Function>(std::move(function)) : nullptr;
    }

    void clear() { set({}); }

    void call(Arguments... arguments) { call(current(), arguments...); }

    /// The callback that is set now, for a call that is made later and must reach this one or none.
    [[nodiscard]] std::shared_ptr<Function> current() {
        const std::lock_guard lock(mutex_);
        return function_;
    }
    void call(const std::shared_ptr<Function> &function, Arguments... arguments) {
        const std::lock_guard lock(mutex_);
        if (function != nullptr && function == function_) {
            (*function)(arguments...);
        }
    }

private:
    // Recursive, so that a callback can clear or replace itself.
    std::recursive_mutex mutex_;
    std::shared_ptr<Function> function_;
};

}  // namespace host::sound
