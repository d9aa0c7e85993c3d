/**
 * @file uxt.h
 * @brief Theme extension: changeable colours and fonts, the platform's buttons, the screen reader.
 *
 * Thread: main loop, where not stated otherwise.
 */
#ifndef UXT_H
#define UXT_H

#include <Elementary.h>
#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    UXT_ERROR_NONE = 0,
    UXT_ERROR_INVALID_PARAMETER = -EINVAL, /**< null, or a handle that isn't the platform's */
    UXT_ERROR_NO_SUCH_CODE = -ENOENT       /**< no table in force has the colour code */
} uxt_error_e;

/**
 * Adds a button.
 * @param style  of the toolkit's theme or of its extensions; null, or one that there isn't, leaves
 *     the default style
 * @return the button, not shown, which goes with its parent; null when there is no parent or the
 *     toolkit makes none
 */
Evas_Object *uxt_button_add(Evas_Object *parent, const char *style);

typedef enum {
    UXT_THEME_STYLE_DEFAULT = 0, /**< what the platform prefers */
    UXT_THEME_STYLE_DARK = 1,    /**< light on dark */
    UXT_THEME_STYLE_LIGHT = 2    /**< dark on light */
} uxt_theme_style_e;

typedef struct uxt_color_table_s *uxt_color_table_h;
typedef struct uxt_font_table_s *uxt_font_table_h;

/**
 * Lets the tables in force act on the theme: a table's colours are then the colour classes, its
 * fonts the text classes of their codes, for what is on the screen and what comes. Off at the
 * start; switching it off leaves the classes as they are. uxt_theme_get_color() doesn't depend on
 * it.
 * @return UXT_ERROR_NONE
 */
int uxt_theme_set_changeable_ui_enabled(int enabled);

/**
 * Says which style the application is made for. The platform's own theme has one style, which
 * stays.
 * @return UXT_ERROR_NONE, or UXT_ERROR_INVALID_PARAMETER for a style that there isn't
 */
int uxt_theme_set_style(uxt_theme_style_e style);

/**
 * Reads a colour table from an XML file: a root element "colors" with empty elements "color", whose
 * attributes are code, rgba and, optional, outline and shadow, as "#RRGGBB" or "#RRGGBBAA". A file
 * over 256 KiB, with a document type, with a code that stands twice or with anything else in it is
 * refused as a whole; the log says why.
 * @return the table, which belongs to the platform and lives as long as the process; null for a
 * file that is missing or refused
 */
uxt_color_table_h uxt_theme_add_color_table(const char *file);
/**
 * Puts a table into force in place of the one before.
 * @return UXT_ERROR_NONE, or UXT_ERROR_INVALID_PARAMETER for what isn't a table
 */
int uxt_theme_set_color_table(uxt_color_table_h table);

/**
 * Reads a font table: a root element "fonts" with empty elements "font", whose attributes are code,
 * family and, optional, style and scale (10 to 1000 per cent of the size that the theme gives). The
 * rules are those of the colour table.
 * @return the table, which belongs to the platform and lives as long as the process; null for a
 * file that is missing or refused
 */
uxt_font_table_h uxt_theme_add_font_table(const char *file);
/** The same as uxt_theme_set_color_table() for fonts. */
int uxt_theme_set_font_table(uxt_font_table_h table);

/**
 * Looks a colour up in the table in force: the colour itself, that of a text's outline and that of
 * a text's shadow.
 * @param[out] r, g, b, a and the others  0 to 255, not premultiplied; any of them may be null, and
 *     all are left alone on failure
 * @return UXT_ERROR_NONE, UXT_ERROR_NO_SUCH_CODE, or UXT_ERROR_INVALID_PARAMETER for a null code
 */
int uxt_theme_get_color(const char *code, int *r, int *g, int *b, int *a, int *outline_r,
                        int *outline_g, int *outline_b, int *outline_a, int *shadow_r,
                        int *shadow_g, int *shadow_b, int *shadow_a);
/**
 * Colours an object with the colour of a code. It doesn't follow a later change of the table.
 * @return as uxt_theme_get_color(); also UXT_ERROR_INVALID_PARAMETER for a null object
 */
int uxt_theme_object_set_color(Evas_Object *obj, const char *code);

/**
 * Tells whether a screen reader is on, as last reported by the desktop: it doesn't wait, and is 0
 * where no desktop reports anything. Any thread.
 * @return non-zero while a screen reader is on
 */
int uxt_access_is_accessibility_enabled(void);

#ifdef __cplusplus
}
#endif
#endif
