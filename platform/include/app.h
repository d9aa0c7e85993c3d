/**
 * @file app.h
 * @brief Life cycle of an application with a user interface, its events and its folders.
 *
 * Thread: main loop; every callback arrives there and runs to its end.
 */
#ifndef APP_H
#define APP_H

#include <app_common.h>
#include <app_control.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/** @return true to go on, false to end the application without any further call. */
typedef bool (*app_create_cb)(void *user_data);
typedef void (*app_terminate_cb)(void *user_data);
typedef void (*app_pause_cb)(void *user_data);
typedef void (*app_resume_cb)(void *user_data);
/** The request belongs to the platform and is valid during the call only. */
typedef void (*app_control_cb)(app_control_h app_control, void *user_data);

/** A null callback counts as one that does nothing; a null create goes on. */
typedef struct {
    app_create_cb create;
    app_terminate_cb terminate;
    app_pause_cb pause;
    app_resume_cb resume;
    app_control_cb app_control;
} ui_app_lifecycle_callback_s;

/**
 * Runs the application: create once, app control for the request that it was started with and for
 * each later one, resume and pause as it comes to the foreground and leaves it, terminate once when
 * the main loop has ended. All but terminate are called from inside the main loop, so that an
 * elm_exit() in any of them ends it. SIGTERM, SIGINT and SIGHUP end the main loop too.
 *
 * Returns after the toolkit has been shut down. A process can run one application, once.
 * @param argc, argv  the process's own: they name the request and how it is shown
 * @param callback    copied
 * @param user_data   given to each callback
 * @return the exit status of the process: 0 after playing, 1 when the last request couldn't be
 *         played, 2 for wrong arguments; APP_ERROR_INVALID_PARAMETER for a null argv or callback
 */
int ui_app_main(int argc, char **argv, ui_app_lifecycle_callback_s *callback, void *user_data);
/** Ends the main loop as elm_exit() does. */
void ui_app_exit(void);

/**
 * Registers for a system event. A handler may add and remove handlers, itself included; one that is
 * added while an event is raised doesn't see that event.
 * @param[out] handler  registration, to be given to ui_app_remove_event_handler()
 * @param callback      not null
 * @return APP_ERROR_NONE, or APP_ERROR_INVALID_PARAMETER
 */
int ui_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                             app_event_cb callback, void *user_data);
/**
 * Ends a registration and frees it; the callback isn't called any more.
 * @return APP_ERROR_NONE, or APP_ERROR_INVALID_PARAMETER for what is no live registration
 */
int ui_app_remove_event_handler(app_event_handler_h handler);

#ifdef __cplusplus
}
#endif
#endif
