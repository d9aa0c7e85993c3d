/**
 * @file uxt.h
 * @brief Theme extension: changeable colours and fonts, the platform's buttons, the screen reader.
 *
 * Thread: main loop.
 */
#ifndef UXT_H
#define UXT_H

#include <Elementary.h>

#ifdef __cplusplus
extern "C" {
#endif

/** @return a new button in the given style, to be freed with its parent; null on failure. */
Evas_Object *uxt_button_add(Evas_Object *parent, const char *style);

typedef enum {
    UXT_THEME_STYLE_DEFAULT = 0,
    UXT_THEME_STYLE_DARK = 1,
    UXT_THEME_STYLE_LIGHT = 2
} uxt_theme_style_e;

typedef struct uxt_color_table_s *uxt_color_table_h;
typedef struct uxt_font_table_s *uxt_font_table_h;

/** All return 0 on success. */
int uxt_theme_set_changeable_ui_enabled(int enabled);
int uxt_theme_set_style(uxt_theme_style_e style);
/** @return the table read from an XML file, or null; it belongs to the platform. */
uxt_color_table_h uxt_theme_add_color_table(const char *file);
int uxt_theme_set_color_table(uxt_color_table_h table);
uxt_font_table_h uxt_theme_add_font_table(const char *file);
int uxt_theme_set_font_table(uxt_font_table_h table);
/** Components 0 to 255; any out pointer may be null. */
int uxt_theme_get_color(const char *code, int *r, int *g, int *b, int *a, int *outline_r,
                        int *outline_g, int *outline_b, int *outline_a, int *shadow_r,
                        int *shadow_g, int *shadow_b, int *shadow_a);
int uxt_theme_object_set_color(Evas_Object *obj, const char *code);

/** @return non-zero while a screen reader is on. */
int uxt_access_is_accessibility_enabled(void);

#ifdef __cplusplus
}
#endif
#endif
