/**
 * @file app_common.h
 * @brief Identity, folders and system events, common to all kinds of application.
 *
 * Thread: any, but for the callbacks, which come on the main loop.
 */
#ifndef APP_COMMON_H
#define APP_COMMON_H

#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    APP_ERROR_NONE = 0,
    APP_ERROR_INVALID_PARAMETER = -EINVAL,
    APP_ERROR_OUT_OF_MEMORY = -ENOMEM,
    APP_ERROR_INVALID_CONTEXT = -0x01100000 | 0x01,
    APP_ERROR_NO_SUCH_FILE = -ENOENT,
    APP_ERROR_ALREADY_RUNNING = -EALREADY
} app_error_e;

typedef enum {
    APP_EVENT_LOW_MEMORY,
    APP_EVENT_LOW_BATTERY,
    APP_EVENT_LANGUAGE_CHANGED,
    APP_EVENT_DEVICE_ORIENTATION_CHANGED,
    APP_EVENT_REGION_FORMAT_CHANGED,
    APP_EVENT_SUSPENDED_STATE_CHANGED
} app_event_type_e;

typedef struct app_event_handler *app_event_handler_h;
typedef struct app_event_info *app_event_info_h;
/** The information is valid during the call only. */
typedef void (*app_event_cb)(app_event_info_h event_info, void *user_data);

/**
 * @param[out] id  heap copy of the application's id, freed by the caller with free()
 * @return APP_ERROR_NONE, APP_ERROR_INVALID_PARAMETER or APP_ERROR_OUT_OF_MEMORY
 */
int app_get_id(char **id);
/**
 * @return heap copy, ending in "/" and freed by the caller with free(), of the folder of private
 *         resources, whether or not it exists; null on failure
 */
char *app_get_resource_path(void);
/** As app_get_resource_path(), for the resources that other applications may read. */
char *app_get_shared_resource_path(void);

#ifdef __cplusplus
}
#endif
#endif
