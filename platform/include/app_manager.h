/**
 * @file app_manager.h
 * @brief Running applications.
 *
 * Thread: main loop, which waits for the session bus, five seconds at most. Operations return
 * APP_MANAGER_ERROR_NONE (0) or a negative error of app_manager_error_e, and
 * APP_MANAGER_ERROR_INVALID_PARAMETER for a null argument.
 */
#ifndef APP_MANAGER_H
#define APP_MANAGER_H

#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct app_context_s *app_context_h;

typedef enum {
    APP_MANAGER_ERROR_NONE = 0,
    APP_MANAGER_ERROR_INVALID_PARAMETER = -EINVAL,
    APP_MANAGER_ERROR_OUT_OF_MEMORY = -ENOMEM,
    APP_MANAGER_ERROR_IO_ERROR = -EIO,
    APP_MANAGER_ERROR_NO_SUCH_APP = -0x01110000 | 0x01,
    APP_MANAGER_ERROR_REQUEST_FAILED = -0x01110000 | 0x05
} app_manager_error_e;

/**
 * @param[out] app_context  freed with app_context_destroy(); left alone on failure
 * @return NO_SUCH_APP when no application of that id runs
 */
int app_manager_get_app_context(const char *app_id, app_context_h *app_context);
/**
 * Brings the application to the foreground; this one itself, too.
 * @return REQUEST_FAILED when it doesn't answer
 */
int app_manager_resume_app(app_context_h app_context);
/** Frees the context; the application is left as it is. */
int app_context_destroy(app_context_h app_context);

#ifdef __cplusplus
}
#endif
#endif
