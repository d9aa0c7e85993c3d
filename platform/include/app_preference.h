/**
 * @file app_preference.h
 * @brief The application's own stored settings: typed values by key.
 *
 * A key is a text of at least one byte, of any bytes. It has one value of one type at a time;
 * setting it anew replaces value and type. Values outlive the process and are shared by all
 * processes of the application, the newest one counting.
 *
 * Thread: main loop, which waits for the disk. Operations return PREFERENCE_ERROR_NONE (0) or a
 * negative error of preference_error_e, and PREFERENCE_ERROR_INVALID_PARAMETER for a null or empty
 * key and for a null argument. On failure, what a result would go to is left alone.
 */
#ifndef APP_PREFERENCE_H
#define APP_PREFERENCE_H

#include <errno.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    PREFERENCE_ERROR_NONE = 0,
    PREFERENCE_ERROR_INVALID_PARAMETER = -EINVAL,
    PREFERENCE_ERROR_OUT_OF_MEMORY = -ENOMEM,
    PREFERENCE_ERROR_IO_ERROR = -EIO,
    PREFERENCE_ERROR_NO_KEY = -0x01100000 | 0x30
} preference_error_e;

/** @param key  valid during the call only */
typedef void (*preference_changed_cb)(const char *key, void *user_data);

/** @return IO_ERROR when the store can't be written; it stays as it was. */
int preference_set_int(const char *key, int value);
int preference_set_double(const char *key, double value);
int preference_set_string(const char *key, const char *value);
int preference_set_boolean(const char *key, bool value);

/**
 * @return NO_KEY when absent, INVALID_PARAMETER when the value is of another type, IO_ERROR when
 *         the store can't be read
 */
int preference_get_int(const char *key, int *value);
int preference_get_double(const char *key, double *value);
/** @param[out] value  heap copy that the caller frees with free() */
int preference_get_string(const char *key, char **value);
int preference_get_boolean(const char *key, bool *value);

/** @return IO_ERROR when the store can't be read */
int preference_is_existing(const char *key, bool *existing);

/**
 * Watches a key. The callback comes on a later turn of the main loop when the value or its type has
 * become another, or has gone, whoever changed it; changes in quick succession may come as one. A
 * key has one callback: a second takes the place of the first. A callback may set and unset any.
 * @return NO_KEY when there is no such key, IO_ERROR when the store can't be read or watched
 */
int preference_set_changed_cb(const char *key, preference_changed_cb callback, void *user_data);
/**
 * Ends the watch of a key; its callback isn't called any more.
 * @return NO_KEY when it isn't watched
 */
int preference_unset_changed_cb(const char *key);

#ifdef __cplusplus
}
#endif
#endif
