#pragma once

#include <Ecore.h>

#include <functional>
#include <utility>

namespace host::control {

/// A repeated call on the main loop, which ends when it returns false or with the object. The call
/// may restart or stop its own timer, but not destroy it.
class Timer {
public:
    Timer() = default;
    ~Timer() { stop(); }
    Timer(const Timer &) = delete;
    Timer &operator=(const Timer &) = delete;

    /// First called after `seconds`. Replaces a running one.
    void start(double seconds, std::function<bool()> call) {
        stop();
        call_ = std::move(call);
        timer_ = ecore_timer_add(seconds, &Timer::fire, this);
    }

    void stop() {
        if (timer_ != nullptr) {
            ecore_timer_del(timer_);
            timer_ = nullptr;
        }
    }

    [[nodiscard]] bool running() const { return timer_ != nullptr; }

private:
    static Eina_Bool fire(void *data) {
        auto *self = static_cast<Timer *>(data);
        const Ecore_Timer *fired = self->timer_;
        const auto call = self->call_;
        if (call()) {
            return self->timer_ == fired ? ECORE_CALLBACK_RENEW : ECORE_CALLBACK_CANCEL;
        }
        if (self->timer_ == fired) {
            self->timer_ = nullptr;
        }
        return ECORE_CALLBACK_CANCEL;
    }

    Ecore_Timer *timer_ = nullptr;
    std::function<bool()> call_;
};

}  // namespace host::control
