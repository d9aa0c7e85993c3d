/**
 * @file widget_app_efl.h
 * @brief The toolkit's window of a widget. Thread: main loop.
 */
#ifndef WIDGET_APP_EFL_H
#define WIDGET_APP_EFL_H

#include <Elementary.h>
#include <widget_app.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The window in which an instance is shown, made at the first call and not yet shown. It has the
 * widget's size whatever it is asked for. The instance may delete it; else it is deleted after its
 * destroy callback.
 * @param[out] win  left alone on failure
 * @return WIDGET_ERROR_INVALID_PARAMETER for what is no live context and for a null place;
 *         WIDGET_ERROR_FAULT when the window can't be made or has been deleted
 */
int widget_app_get_elm_win(widget_context_h context, Evas_Object **win);

#ifdef __cplusplus
}
#endif
#endif
