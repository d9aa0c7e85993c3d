#include <Ecore.h>
#include <device/power.h>

#include <array>
#include <optional>

#include "power/inhibitor.h"

namespace {

/// One lock as the program sees it: requested or not, and the timer that ends it.
struct Lock {
    std::optional<host::Inhibitor> inhibitor;
    Ecore_Timer *timeout = nullptr;

    void release() {
        inhibitor.reset();
        if (timeout != nullptr) {
            ecore_timer_del(timeout);
            timeout = nullptr;
        }
    }
};

Lock *lock_of(power_lock_e type) {
    static std::array<Lock, 3> locks;
    const auto index = static_cast<std::size_t>(type);
    return index < locks.size() ? &locks.at(index) : nullptr;
}

/// What logind calls the thing that a lock keeps from happening.
const char *inhibited(power_lock_e type) {
    return type == POWER_LOCK_CPU ? "sleep" : "idle";
}

Eina_Bool on_timeout(void *data) {
    auto *lock = static_cast<Lock *>(data);
    lock->timeout = nullptr;  // the loop drops it at this return
    lock->release();
    return ECORE_CALLBACK_CANCEL;
}

}  // namespace

extern "C" int device_power_request_lock(power_lock_e type, int timeout_ms) {
    Lock *lock = lock_of(type);
    if (lock == nullptr || timeout_ms < 0) {
        return DEVICE_ERROR_INVALID_PARAMETER;
    }
    if (!lock->inhibitor) {
        lock->inhibitor.emplace(inhibited(type));
    }
    if (lock->timeout != nullptr) {
        ecore_timer_del(lock->timeout);
        lock->timeout = nullptr;
    }
    if (timeout_ms > 0) {
        lock->timeout = ecore_timer_add(timeout_ms / 1000.0, on_timeout, lock);
    }
    return DEVICE_ERROR_NONE;
}

extern "C" int device_power_release_lock(power_lock_e type) {
    Lock *lock = lock_of(type);
    if (lock == nullptr) {
        return DEVICE_ERROR_INVALID_PARAMETER;
    }
    if (!lock->inhibitor) {
        return DEVICE_ERROR_OPERATION_FAILED;
    }
    lock->release();
    return DEVICE_ERROR_NONE;
}
