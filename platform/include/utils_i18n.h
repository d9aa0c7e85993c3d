/**
 * @file utils_i18n.h
 * @brief Texts in the user's language; dates and numbers as a region writes them.
 *
 * A locale is a name such as "fr_FR"; a code set after it, as in "fr_FR.UTF-8", doesn't matter, an
 * unknown one is as near to it as there is data for, and null is that of the process. What is no
 * name of a locale is an invalid parameter. Wide texts are UTF-16, narrow ones UTF-8. Lengths and
 * capacities count characters of the text's own kind; -1 as the length of an argument means up to
 * its terminating zero.
 *
 * Thread: any, but one handle isn't used by two at a time.
 */
#ifndef UTILS_I18N_H
#define UTILS_I18N_H

#include <stdint.h>
#include <uchar.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    I18N_ERROR_NONE = 0,
    I18N_ERROR_INVALID_PARAMETER = -22,
    I18N_ERROR_OUT_OF_MEMORY = -12,
    I18N_ERROR_MISSING_RESOURCE = -2, /**< no data for the locale */
    I18N_ERROR_INVALID_FORMAT = -71,  /**< a pattern that is none */
    I18N_ERROR_BUFFER_OVERFLOW = -75  /**< the result needs more room */
} i18n_error_code_e;

typedef char16_t i18n_uchar;
/** Milliseconds since 1970 in UTC. */
typedef double i18n_udate;

typedef struct i18n_udatepg_s *i18n_udatepg_h;
typedef struct i18n_udate_format_s *i18n_udate_format_h;
typedef struct i18n_unumber_format_s *i18n_unumber_format_h;
/** Place of a field in a formatted text. The operations here take null only. */
typedef struct i18n_ufield_position_s *i18n_ufield_position_h;
typedef struct i18n_uparse_error_s i18n_uparse_error_s;

typedef enum {
    I18N_UDATE_PATTERN = -2 /**< the style is a pattern that is given */
} i18n_udate_format_style_e;
typedef enum {
    I18N_UNUMBER_DECIMAL = 1 /**< plain number in the region's digits, grouped */
} i18n_unumber_format_style_e;

/**
 * Looks a text up among those that the platform knows in the user's language; a text that it
 * doesn't know, and so one that is translated already, comes back as it is.
 *
 * Thread: any.
 * @param message  id or text in UTF-8; null gives null
 * @return borrowed: the argument itself, or storage that lasts as long as the process
 */
const char *i18n_get_text(const char *message);

/**
 * Copies at most n characters of a narrow text to a wide one, and a zero after them if there is
 * room for it.
 * @return dest; null when dest or src are null or n is negative, and then nothing is written
 */
i18n_uchar *i18n_ustring_copy_ua_n(i18n_uchar *dest, const char *src, int32_t n);
/**
 * Copies at most n bytes of whole characters of a wide text to a narrow one, and a zero after them
 * if there is room for it.
 * @return as i18n_ustring_copy_ua_n()
 */
char *i18n_ustring_copy_au_n(char *dest, const i18n_uchar *src, int32_t n);
/** @return characters before the terminating zero; 0 for null */
int32_t i18n_ustring_get_length(const i18n_uchar *s);

/**
 * Makes a generator of date patterns.
 * @param[out] dtpg  freed with i18n_udatepg_destroy(); null on failure
 * @return I18N_ERROR_NONE, I18N_ERROR_INVALID_PARAMETER when dtpg is null, or a fault of the locale
 */
int i18n_udatepg_create(const char *locale, i18n_udatepg_h *dtpg);
/** @return I18N_ERROR_NONE, or I18N_ERROR_INVALID_PARAMETER for null */
int i18n_udatepg_destroy(i18n_udatepg_h dtpg);
/**
 * Finds how the locale writes a date of certain fields.
 * @param skeleton  the fields, in any order: "yMMMdHms"
 * @param length  of the skeleton
 * @param[out] best_pattern  the pattern, terminated if there is room
 * @param best_pattern_capacity  of the pattern
 * @param[out] best_pattern_len  length of the pattern; 0 on failure
 * @return I18N_ERROR_NONE, I18N_ERROR_INVALID_PARAMETER, or I18N_ERROR_BUFFER_OVERFLOW
 */
int i18n_udatepg_get_best_pattern(i18n_udatepg_h dtpg, const i18n_uchar *skeleton, int32_t length,
                                  i18n_uchar *best_pattern, int32_t best_pattern_capacity,
                                  int32_t *best_pattern_len);

/**
 * Makes a format of dates.
 * @param time_style, date_style  I18N_UDATE_PATTERN
 * @param tz_id, tz_id_length  time zone, as "Europe/Paris"; null is the default zone of now
 * @param pattern, pattern_length  as i18n_udatepg_get_best_pattern() gives it
 * @param[out] format  freed with i18n_udate_destroy(); null on failure
 * @return I18N_ERROR_NONE, I18N_ERROR_INVALID_PARAMETER, or a fault of locale or pattern
 */
int i18n_udate_create(i18n_udate_format_style_e time_style, i18n_udate_format_style_e date_style,
                      const char *locale, const i18n_uchar *tz_id, int32_t tz_id_length,
                      const i18n_uchar *pattern, int32_t pattern_length,
                      i18n_udate_format_h *format);
/** @return I18N_ERROR_NONE, or I18N_ERROR_INVALID_PARAMETER for null */
int i18n_udate_destroy(i18n_udate_format_h format);
/**
 * Writes a date.
 * @param[out] result  terminated if there is room
 * @param result_length  capacity of result
 * @param position  null
 * @param[out] date_format_len  length of the text; 0 on failure
 * @return I18N_ERROR_NONE, I18N_ERROR_INVALID_PARAMETER, or I18N_ERROR_BUFFER_OVERFLOW
 */
int i18n_udate_format_date(i18n_udate_format_h format, i18n_udate date_to_format,
                           i18n_uchar *result, int32_t result_length,
                           i18n_ufield_position_h position, int32_t *date_format_len);

/**
 * Sets the time zone of the formats made from now on in this process. An unknown name, the empty
 * one among them, is UTC.
 * @return I18N_ERROR_NONE, or I18N_ERROR_INVALID_PARAMETER for null
 */
int i18n_ucalendar_set_default_timezone(const i18n_uchar *zone_id);

/**
 * Makes a format of numbers.
 * @param style  I18N_UNUMBER_DECIMAL
 * @param pattern, pattern_len, parse_err  null, -1, null
 * @param[out] num_format  freed with i18n_unumber_destroy(); null on failure
 * @return I18N_ERROR_NONE, I18N_ERROR_INVALID_PARAMETER, or a fault of the locale
 */
int i18n_unumber_create(i18n_unumber_format_style_e style, const i18n_uchar *pattern,
                        int32_t pattern_len, const char *locale, i18n_uparse_error_s *parse_err,
                        i18n_unumber_format_h *num_format);
/** @return I18N_ERROR_NONE, or I18N_ERROR_INVALID_PARAMETER for null */
int i18n_unumber_destroy(i18n_unumber_format_h num_format);
/**
 * Writes a number.
 * @param[out] result  terminated if there is room
 * @param result_len  capacity of result
 * @param field_position  null
 * @param[out] err  I18N_ERROR_NONE, I18N_ERROR_INVALID_PARAMETER or I18N_ERROR_BUFFER_OVERFLOW; may
 *     be null
 * @return length that the text has, or would have with room for it; 0 on another failure
 */
int32_t i18n_unumber_format(i18n_unumber_format_h num_format, int32_t number, i18n_uchar *result,
                            int32_t result_len, i18n_ufield_position_h field_position,
                            i18n_error_code_e *err);

#ifdef __cplusplus
}
#endif
#endif
