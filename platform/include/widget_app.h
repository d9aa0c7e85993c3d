/**
 * @file widget_app.h
 * @brief Life cycle of an application that shows widgets on a home screen.
 *
 * An application registers one class of widgets; each widget that is shown is an instance of it and
 * has a context. Thread: main loop; every callback arrives there and runs to its end. Operations
 * return WIDGET_ERROR_NONE or a negative error of widget_error_e.
 */
#ifndef WIDGET_APP_H
#define WIDGET_APP_H

#include <Elementary.h>
#include <bundle.h>
#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    WIDGET_ERROR_NONE = 0,
    WIDGET_ERROR_INVALID_PARAMETER = -EINVAL,
    WIDGET_ERROR_OUT_OF_MEMORY = -ENOMEM,
    WIDGET_ERROR_FAULT = -0x02F40000 | 0x01, /**< 0xFD0C0001: what an instance reports as failed */
    WIDGET_ERROR_CANCELED = -ECANCELED
} widget_error_e;

/** Why an instance is destroyed. */
typedef enum {
    WIDGET_APP_DESTROY_TYPE_PERMANENT = 0x00, /**< the user has removed the widget */
    WIDGET_APP_DESTROY_TYPE_TEMPORARY = 0x01  /**< the process ends; the widget may come back */
} widget_app_destroy_type_e;

typedef struct _widget_class *widget_class_h;
/** One instance; valid from its create callback to the end of its destroy callback. */
typedef struct _widget_context *widget_context_h;

/**
 * The callbacks of an instance. Each returns WIDGET_ERROR_NONE, or else its failure. `user_data` is
 * what the class was created with; a context and a bundle belong to the platform and a bundle is
 * valid during the call only.
 */

/**
 * @param content  what the widget was given, or null
 * @param w, h     size in pixels
 * @return a failure ends the instance: destroy follows at once
 */
typedef int (*widget_instance_create_cb)(widget_context_h context, bundle *content, int w, int h,
                                         void *user_data);
/** @param content  what the widget was last told, not null */
typedef int (*widget_instance_destroy_cb)(widget_context_h context,
                                          widget_app_destroy_type_e reason, bundle *content,
                                          void *user_data);
/** The widget isn't seen any more. */
typedef int (*widget_instance_pause_cb)(widget_context_h context, void *user_data);
/** The widget is seen. */
typedef int (*widget_instance_resume_cb)(widget_context_h context, void *user_data);
/** The instance's window has the new size already. */
typedef int (*widget_instance_resize_cb)(widget_context_h context, int w, int h, void *user_data);
/**
 * @param content  what the widget is told, or null
 * @param force    1 when the instance must show it now, seen or not; else 0
 */
typedef int (*widget_instance_update_cb)(widget_context_h context, bundle *content, int force,
                                         void *user_data);

/** A null callback counts as one that succeeds. */
typedef struct {
    widget_instance_create_cb create;
    widget_instance_destroy_cb destroy;
    widget_instance_pause_cb pause;
    widget_instance_resume_cb resume;
    widget_instance_resize_cb resize;
    widget_instance_update_cb update;
} widget_instance_lifecycle_callback_s;

/**
 * @return the class whose instances are to be shown, from widget_app_class_create(); null to end
 *         the application without any further call
 */
typedef widget_class_h (*widget_app_create_cb)(void *user_data);
typedef void (*widget_app_terminate_cb)(void *user_data);

/** A null terminate counts as one that does nothing. */
typedef struct {
    widget_app_create_cb create;
    widget_app_terminate_cb terminate;
} widget_app_lifecycle_callback_s;

/**
 * Runs the application: create once, then create and resume of the widget that it was started for,
 * and more instances as they are asked for. When the main loop has ended, each instance is
 * destroyed, newest first and after a pause where it is seen, and terminate is called once. All but
 * these are called from inside the main loop, so that an elm_exit() in any of them ends it. It ends
 * too with its last instance, and by SIGTERM, SIGINT and SIGHUP.
 *
 * Returns after the toolkit has been shut down. A process can run one application, once.
 * @param argc, argv  the process's own: they say in which size and with which content the widget is
 *                    shown
 * @param callback    copied; its create not null
 * @param user_data   given to each callback
 * @return WIDGET_ERROR_NONE after running; WIDGET_ERROR_FAULT when the first widget couldn't be
 *         made, WIDGET_ERROR_CANCELED when the application couldn't be started,
 *         WIDGET_ERROR_INVALID_PARAMETER for wrong arguments and for a null argv, callback or
 *         create
 */
int widget_app_main(int argc, char **argv, widget_app_lifecycle_callback_s *callback,
                    void *user_data);
/** Ends the main loop as elm_exit() does. */
void widget_app_exit(void);

/**
 * Makes the application's class of widgets, which belongs to the platform.
 * @param user_data  given to each callback of its instances
 * @return null, errno EALREADY, when there is one; null, errno EINVAL, outside widget_app_main()
 */
widget_class_h widget_app_class_create(widget_instance_lifecycle_callback_s callback,
                                       void *user_data);

/**
 * Keeps a pointer of the caller's with an instance.
 * @return WIDGET_ERROR_INVALID_PARAMETER for what is no live context
 */
int widget_app_context_set_tag(widget_context_h context, void *tag);
/**
 * @param[out] tag  null until one was set; left alone on failure
 * @return WIDGET_ERROR_INVALID_PARAMETER for what is no live context and for a null place
 */
int widget_app_context_get_tag(widget_context_h context, void **tag);

#ifdef __cplusplus
}
#endif
#endif
