/**
 * @file app_control.h
 * @brief Launch requests: what one application asks another to do.
 *
 * Thread: main loop. Every operation returns APP_CONTROL_ERROR_NONE (0) or a negative error of
 * app_control_error_e, and APP_CONTROL_ERROR_INVALID_PARAMETER for a null handle, place for a
 * result or key, and for an empty key. Texts given out are heap copies that the caller frees with
 * free(); texts taken in are copied. On failure, what a result would go to is left alone.
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

/**
 * Reply to a launch request; called on the main loop. Both handles belong to the platform and are
 * valid during the call only.
 */
typedef void (*app_control_reply_cb)(app_control_h request, app_control_h reply,
                                     app_control_result_e result, void *user_data);

/** @param[out] app_control  a new, empty request to be freed with app_control_destroy() */
int app_control_create(app_control_h *app_control);
int app_control_destroy(app_control_h app_control);
/** @param[out] clone  deep copy, to be freed with app_control_destroy() */
int app_control_clone(app_control_h *clone, app_control_h app_control);

/**
 * The setters of a text replace the one before; null takes it away. The getters give success and a
 * null text for one that isn't set.
 */
int app_control_set_operation(app_control_h app_control, const char *operation);
/** A request that is sent without operation arrives with APP_CONTROL_OPERATION_DEFAULT. */
int app_control_get_operation(app_control_h app_control, char **operation);
/** A local file's URI that comes with a launch is decoded: "file:///a b", not "file:///a%20b". */
int app_control_set_uri(app_control_h app_control, const char *uri);
int app_control_get_uri(app_control_h app_control, char **uri);
int app_control_set_mime(app_control_h app_control, const char *mime);
int app_control_get_mime(app_control_h app_control, char **mime);
int app_control_set_category(app_control_h app_control, const char *category);
int app_control_get_category(app_control_h app_control, char **category);
int app_control_set_app_id(app_control_h app_control, const char *app_id);
int app_control_get_app_id(app_control_h app_control, char **app_id);
/** Id of the application that sent the request; INVALID_PARAMETER when none did or it isn't known.
 */
int app_control_get_caller(app_control_h app_control, char **id);
/** @param mode  INVALID_PARAMETER for none of app_control_launch_mode_e; at first, single */
int app_control_set_launch_mode(app_control_h app_control, app_control_launch_mode_e mode);
int app_control_get_launch_mode(app_control_h app_control, app_control_launch_mode_e *mode);

/**
 * Replaces a text or array under the same key.
 * @return KEY_REJECTED for a key reserved by the platform, one that begins with "__"
 */
int app_control_add_extra_data(app_control_h app_control, const char *key, const char *value);
/**
 * As app_control_add_extra_data(), for an array.
 * @param value   length texts, none of them null
 * @param length  at least 1
 */
int app_control_add_extra_data_array(app_control_h app_control, const char *key,
                                     const char *value[], int length);
/** @return KEY_NOT_FOUND when absent, KEY_REJECTED as app_control_add_extra_data(). */
int app_control_remove_extra_data(app_control_h app_control, const char *key);
/** @return KEY_NOT_FOUND when absent, INVALID_DATA_TYPE when the value is an array. */
int app_control_get_extra_data(app_control_h app_control, const char *key, char **value);
/**
 * @param[out] value  array of *length texts; the caller frees each text and the array
 * @return KEY_NOT_FOUND when absent, INVALID_DATA_TYPE when the value is a single text
 */
int app_control_get_extra_data_array(app_control_h app_control, const char *key, char ***value,
                                     int *length);

/**
 * Sends the request to the application that it names, or, when it names none, to the one that the
 * user has chosen for its MIME type or for the scheme of its URI; starts the application when it
 * doesn't run. Waits until the request is accepted or refused, five seconds at most.
 * @param callback  null, or called after success, with APP_CONTROL_RESULT_APP_STARTED and an empty
 *                  reply, as the desktop tells no more
 * @return APP_NOT_FOUND; PERMISSION_DENIED; TIMED_OUT; LAUNCH_REJECTED when the application
 * refuses; LAUNCH_FAILED when it can't be started or there is no session bus
 */
int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void *user_data);
/**
 * Asks the application that the request names, one launched from here, to end. Waits as
 * app_control_send_launch_request() does.
 * @return INVALID_PARAMETER when it names none, PERMISSION_DENIED for one not launched from here,
 *         else as app_control_send_launch_request()
 */
int app_control_send_terminate_request(app_control_h app_control);

#ifdef __cplusplus
}
#endif
#endif
