/**
 * @file device/power.h
 * @brief Keeping the processor or the display awake.
 */
#ifndef DEVICE_POWER_H
#define DEVICE_POWER_H

#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    POWER_LOCK_CPU = 0,
    POWER_LOCK_DISPLAY = 1,
    POWER_LOCK_DISPLAY_DIM = 2
} power_lock_e;

typedef enum {
    DEVICE_ERROR_NONE = 0,
    DEVICE_ERROR_INVALID_PARAMETER = -EINVAL,
    DEVICE_ERROR_OPERATION_FAILED = -EPERM
} device_error_e;

/**
 * Requests a lock. Requests aren't counted: one release ends any number of them.
 * @param timeout_ms  time limit in milliseconds, 0 for none
 */
int device_power_request_lock(power_lock_e type, int timeout_ms);
/** Ends a lock; OPERATION_FAILED when none is held. */
int device_power_release_lock(power_lock_e type);

#ifdef __cplusplus
}
#endif
#endif
