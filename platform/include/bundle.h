/**
 * @file bundle.h
 * @brief A set of texts and arrays of texts under unique keys.
 *
 * Thread: a bundle belongs to one thread at a time. A key is a text of at least one byte; keys,
 * texts and arrays taken in are copied. Operations that return a number return BUNDLE_ERROR_NONE or
 * a negative error of bundle_error_e, and BUNDLE_ERROR_INVALID_PARAMETER for a null bundle, key or
 * text and for an empty key; those that return something else leave the positive errno instead.
 */
#ifndef BUNDLE_H
#define BUNDLE_H

#include <errno.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct _bundle_t bundle;

typedef enum {
    BUNDLE_ERROR_NONE = 0,
    BUNDLE_ERROR_OUT_OF_MEMORY = -ENOMEM,
    BUNDLE_ERROR_INVALID_PARAMETER = -EINVAL,
    BUNDLE_ERROR_KEY_NOT_AVAILABLE = -ENOKEY,
    BUNDLE_ERROR_KEY_EXISTS = -0x01180000 | 0x01
} bundle_error_e;

/** @return a new, empty bundle to be freed with bundle_free(), or null. */
bundle *bundle_create(void);
/** Frees the bundle and all that was borrowed from it. */
int bundle_free(bundle *b);
/** @return KEY_EXISTS when the key stands already, with a text or an array; the old value stays. */
int bundle_add_str(bundle *b, const char *key, const char *str);
/**
 * @param str_array  len texts, none of them null
 * @param len        at least 1
 * @return KEY_EXISTS as bundle_add_str()
 */
int bundle_add_str_array(bundle *b, const char *key, const char **str_array, const int len);
/**
 * @param[out] str  borrowed: valid until the key is deleted or the bundle freed; null on failure
 * @return KEY_NOT_AVAILABLE when there is no such key, or an array under it
 */
int bundle_get_str(bundle *b, const char *key, char **str);
/**
 * @param[out] len  number of texts, 0 on failure; may be null
 * @return array of *len texts, borrowed as that of bundle_get_str(); null, with errno EINVAL or
 *         ENOKEY, when there is none
 */
const char **bundle_get_str_array(bundle *b, const char *key, int *len);
/** @return KEY_NOT_AVAILABLE when there is no such key. */
int bundle_del(bundle *b, const char *key);
/** @return the number of keys, 0 for a null bundle. */
int bundle_get_count(bundle *b);

#ifdef __cplusplus
}
#endif
#endif
