/**
 * @file service_app.h
 * @brief Life cycle of an application without a user interface, and its events.
 *
 * Thread: main loop; every callback arrives there and runs to its end.
 */
#ifndef SERVICE_APP_H
#define SERVICE_APP_H

#include <app_common.h>
#include <app_control.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/** @return true to go on, false to end the service without any further call. */
typedef bool (*service_app_create_cb)(void *user_data);
typedef void (*service_app_terminate_cb)(void *user_data);
/** The request belongs to the platform and is valid during the call only. */
typedef void (*service_app_control_cb)(app_control_h app_control, void *user_data);

/** A null callback counts as one that does nothing; a null create goes on. */
typedef struct {
    service_app_create_cb create;
    service_app_terminate_cb terminate;
    service_app_control_cb app_control;
} service_app_lifecycle_callback_s;

/**
 * Runs the service: create once, app control for the request that it was started with and for each
 * later one, terminate once when the main loop has ended. All but terminate are called from inside
 * the main loop, so that a service_app_exit() in any of them ends it. SIGTERM, SIGINT and SIGHUP
 * end the main loop too. No window can be shown.
 *
 * Returns after the main loop has been shut down. A process can run one application, once.
 * @param argc, argv  the process's own: they name the request
 * @param callback    copied
 * @param user_data   given to each callback
 * @return the exit status of the process: 0 after running, 1 when it couldn't be started, 2 for
 *         wrong arguments; APP_ERROR_INVALID_PARAMETER for a null argv or callback
 */
int service_app_main(int argc, char **argv, service_app_lifecycle_callback_s *callback,
                     void *user_data);
/** Ends the main loop. */
void service_app_exit(void);

/** As ui_app_add_event_handler(), for a service. */
int service_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                                  app_event_cb callback, void *user_data);
/** As ui_app_remove_event_handler(), for a service. */
int service_app_remove_event_handler(app_event_handler_h handler);

#ifdef __cplusplus
}
#endif
#endif
