/**
 * @file efl_extension_circle.h
 * @brief Circle objects: what a round face shows along its rim. Included by efl_extension.h.
 *
 * A circle object is drawn on a surface, which lies over one layout and has its size. The object is
 * made visible, stacked, clipped and coloured as any other of its canvas; it takes no input.
 *
 * A call with null, or with an object that is no circle object, does nothing; a getter then leaves
 * its outputs alone. Thread: main loop.
 */
#ifndef EFL_EXTENSION_CIRCLE_H
#define EFL_EXTENSION_CIRCLE_H

#include <Elementary.h>

#ifdef __cplusplus
extern "C" {
#endif

/** What circle objects are drawn on. */
typedef struct _Eext_Circle_Surface Eext_Circle_Surface;

/**
 * Makes a surface over a layout or a window, whose place and size it follows.
 *
 * @param layout  not owned
 * @return the surface, which goes with its last object, or with the layout when it has none; null
 *     without layout
 */
Eext_Circle_Surface *eext_circle_surface_layout_add(Evas_Object *layout);

/**
 * Adds a progress bar: a ring along the rim, with the items "default", the bar, and "bg", the ring
 * that it runs on. The bar begins at 12 o'clock and runs clockwise.
 *
 * The range is 0 to 100 at the start, value and angle are 0, the colours those of the platform.
 *
 * @param parent  the bar goes with it
 * @param surface  what it is drawn on
 * @return the bar, shown; null without parent or surface
 */
Evas_Object *eext_circle_object_progressbar_add(Evas_Object *parent, Eext_Circle_Surface *surface);

/**
 * Sets the range of the value. The value is brought into it; the angle stays until the next
 * eext_circle_object_value_set().
 *
 * @param min, max  finite, min below max; anything else changes nothing
 */
void eext_circle_object_value_min_max_set(Evas_Object *obj, double min, double max);
/** @param[out] min, max  either may be null */
void eext_circle_object_value_min_max_get(const Evas_Object *obj, double *min, double *max);

/**
 * Sets the value, and the angle to the value's share of the range, of 360 degrees.
 *
 * @param value  limited to the range; one that is no number changes nothing
 */
void eext_circle_object_value_set(Evas_Object *obj, double value);

/**
 * Sets how far the bar runs; the value stays.
 *
 * @param angle  degrees, kept as given. At 0 and below no bar is drawn, at 360 and above the
 *     whole ring. One that is not finite changes nothing.
 */
void eext_circle_object_angle_set(Evas_Object *obj, double angle);
/** @return the angle in degrees; 0.0 for what is no circle object */
double eext_circle_object_angle_get(const Evas_Object *obj);

/**
 * Sets the colour of the item "default".
 *
 * @param r, g, b, a  0 to 255, not premultiplied; limited to that
 */
void eext_circle_object_color_set(Evas_Object *obj, int r, int g, int b, int a);
/** @param[out] r, g, b, a  0 to 255, not premultiplied; any of them may be null */
void eext_circle_object_color_get(const Evas_Object *obj, int *r, int *g, int *b, int *a);
/**
 * Sets the colour of one item.
 *
 * @param item  name of the item; one that there isn't changes nothing
 * @param r, g, b, a  as eext_circle_object_color_set()
 */
void eext_circle_object_item_color_set(Evas_Object *obj, const char *item, int r, int g, int b,
                                       int a);

#ifdef __cplusplus
}
#endif
#endif
