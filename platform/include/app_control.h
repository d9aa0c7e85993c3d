/**
 * @file app_control.h
 * @brief Launch requests: what one application asks another to do.
 *
 * Thread: main loop. Every operation returns APP_CONTROL_ERROR_NONE (0) or a negative error of
 * app_control_error_e. Texts given out are heap copies that the caller frees with free(), unless
 * stated otherwise; texts taken in are copied.
 */
#ifndef APP_CONTROL_H
#define APP_CONTROL_H

#include <bundle.h>
#include <errno.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct app_control_s *app_control_h;

typedef enum {
    APP_CONTROL_ERROR_NONE = 0,
    APP_CONTROL_ERROR_INVALID_PARAMETER = -EINVAL,
    APP_CONTROL_ERROR_OUT_OF_MEMORY = -ENOMEM,
    APP_CONTROL_ERROR_PERMISSION_DENIED = -EACCES,
    APP_CONTROL_ERROR_KEY_NOT_FOUND = -ENOKEY,
    APP_CONTROL_ERROR_KEY_REJECTED = -EKEYREJECTED,
    APP_CONTROL_ERROR_APP_NOT_FOUND = -0x01100000 | 0x21,
    APP_CONTROL_ERROR_INVALID_DATA_TYPE = -0x01100000 | 0x22,
    APP_CONTROL_ERROR_LAUNCH_REJECTED = -0x01100000 | 0x23,
    APP_CONTROL_ERROR_LAUNCH_FAILED = -0x01100000 | 0x24,
    APP_CONTROL_ERROR_TIMED_OUT = -0x01100000 | 0x25
} app_control_error_e;

typedef enum {
    APP_CONTROL_RESULT_APP_STARTED = 1,
    APP_CONTROL_RESULT_SUCCEEDED = 0,
    APP_CONTROL_RESULT_FAILED = -1,
    APP_CONTROL_RESULT_CANCELED = -2
} app_control_result_e;

typedef enum {
    APP_CONTROL_LAUNCH_MODE_SINGLE = 0,
    APP_CONTROL_LAUNCH_MODE_GROUP = 1
} app_control_launch_mode_e;

/** Operation: show the named item to the user. */
#define APP_CONTROL_OPERATION_VIEW "appcontrol/operation/view"
/** Operation of a request that names none. */
#define APP_CONTROL_OPERATION_DEFAULT "appcontrol/operation/default"
/** Extra data key: the path of a file. */
#define APP_CONTROL_DATA_PATH "appcontrol/data/path"

/** Reply to a launch request; called on the main loop. */
typedef void (*app_control_reply_cb)(app_control_h request, app_control_h reply,
                                     app_control_result_e result, void *user_data);

int app_control_create(app_control_h *app_control);
int app_control_destroy(app_control_h app_control);
/** Deep copy; INVALID_PARAMETER for a null source or target. */
int app_control_clone(app_control_h *clone, app_control_h app_control);

int app_control_set_operation(app_control_h app_control, const char *operation);
int app_control_get_operation(app_control_h app_control, char **operation);
int app_control_set_uri(app_control_h app_control, const char *uri);
/** A request without URI gives success and a null text. */
int app_control_get_uri(app_control_h app_control, char **uri);
int app_control_set_mime(app_control_h app_control, const char *mime);
int app_control_get_mime(app_control_h app_control, char **mime);
int app_control_set_category(app_control_h app_control, const char *category);
int app_control_get_category(app_control_h app_control, char **category);
int app_control_set_app_id(app_control_h app_control, const char *app_id);
int app_control_get_app_id(app_control_h app_control, char **app_id);
/** Id of the application that sent the request; INVALID_PARAMETER for one made here. */
int app_control_get_caller(app_control_h app_control, char **id);
int app_control_set_launch_mode(app_control_h app_control, app_control_launch_mode_e mode);
int app_control_get_launch_mode(app_control_h app_control, app_control_launch_mode_e *mode);

/** Replaces a value under the same key. KEY_REJECTED for a key reserved by the platform. */
int app_control_add_extra_data(app_control_h app_control, const char *key, const char *value);
int app_control_add_extra_data_array(app_control_h app_control, const char *key,
                                     const char *value[], int length);
int app_control_remove_extra_data(app_control_h app_control, const char *key);
/** KEY_NOT_FOUND when absent, INVALID_DATA_TYPE when the value is an array. */
int app_control_get_extra_data(app_control_h app_control, const char *key, char **value);
/** The caller frees each text and the array. */
int app_control_get_extra_data_array(app_control_h app_control, const char *key, char ***value,
                                     int *length);

/** Sends the request to the application it names; returns once it is accepted or refused. */
int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void *user_data);
/** Asks an application launched from here to end. */
int app_control_send_terminate_request(app_control_h app_control);

#ifdef __cplusplus
}
#endif
#endif
