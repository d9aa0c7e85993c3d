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

typedef struct {
    app_create_cb create;
    app_terminate_cb terminate;
    app_pause_cb pause;
    app_resume_cb resume;
    app_control_cb app_control;
} ui_app_lifecycle_callback_s;

/**
 * Runs the application: create once, then app control at least once, pause and resume as the
 * application leaves and enters the foreground, terminate once when the main loop has ended.
 * @return the exit status of the process
 */
int ui_app_main(int argc, char **argv, ui_app_lifecycle_callback_s *callback, void *user_data);
/** Ends the main loop as elm_exit() does. */
void ui_app_exit(void);

/**
 * Registers for a system event.
 * @param[out] handler  registration, to be given to ui_app_remove_event_handler()
 */
int ui_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                             app_event_cb callback, void *user_data);
int ui_app_remove_event_handler(app_event_handler_h handler);

#ifdef __cplusplus
}
#endif
#endif
