/**
 * @file device/power.h
 * @brief Keeping the processor or the display awake.
 *
 * Thread: main loop. No operation waits for another process: a request is accepted here and now and
 * carried out in the background.
 */
#ifndef DEVICE_POWER_H
#define DEVICE_POWER_H

#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What is kept awake. */
typedef enum {
    POWER_LOCK_CPU = 0,        /**< the processor: the system doesn't sleep */
    POWER_LOCK_DISPLAY = 1,    /**< the display at its full brightness */
    POWER_LOCK_DISPLAY_DIM = 2 /**< the display, which may be dimmed */
} power_lock_e;

typedef enum {
    DEVICE_ERROR_NONE = 0,
    DEVICE_ERROR_INVALID_PARAMETER = -EINVAL,
    DEVICE_ERROR_OPERATION_FAILED = -EPERM
} device_error_e;

/**
 * Requests a lock. Requests aren't counted: one release ends any number of them.
 * @param type        one of power_lock_e
 * @param timeout_ms  the lock ends by itself after this many milliseconds; 0: it doesn't
 * @return DEVICE_ERROR_NONE, or DEVICE_ERROR_INVALID_PARAMETER for an unknown type or a negative
 *         time. A machine without a service that grants locks is no error: it stays as it is.
 */
int device_power_request_lock(power_lock_e type, int timeout_ms);

/**
 * Ends a lock.
 * @return DEVICE_ERROR_NONE, DEVICE_ERROR_OPERATION_FAILED when none is held, or
 *         DEVICE_ERROR_INVALID_PARAMETER for an unknown type
 */
int device_power_release_lock(power_lock_e type);

#ifdef __cplusplus
}
#endif
#endif
