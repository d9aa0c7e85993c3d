/**
 * @file system_settings.h
 * @brief What the user has set for the whole system.
 */
#ifndef SYSTEM_SETTINGS_H
#define SYSTEM_SETTINGS_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    SYSTEM_SETTINGS_ERROR_NONE = 0,
    SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER = -22,
    SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY = -12,
    SYSTEM_SETTINGS_ERROR_IO_ERROR = -5 /**< the system doesn't say */
} system_settings_error_e;

typedef enum {
    SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE = 15 /**< text: name of the time zone, "Europe/Paris" */
} system_settings_key_e;

/**
 * Reads a setting that is a text.
 *
 * Thread: any.
 * @param[out] value  heap copy that the caller frees with free(); left alone on failure
 * @return SYSTEM_SETTINGS_ERROR_NONE, SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER for a null value or a
 *     key that has no text, or one of the other errors
 */
int system_settings_get_value_string(system_settings_key_e key, char **value);

#ifdef __cplusplus
}
#endif
#endif
