/**
 * @file bundle.h
 * @brief A set of texts and arrays of texts under unique keys.
 *
 * Thread: a bundle belongs to one thread at a time. Operations return BUNDLE_ERROR_NONE or a
 * negative error; bundle_create also sets errno.
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

/** @return a new bundle to be freed with bundle_free(), or null. */
bundle *bundle_create(void);
int bundle_free(bundle *b);
/** Copies key and text. KEY_EXISTS when the key stands already. */
int bundle_add_str(bundle *b, const char *key, const char *str);
int bundle_add_str_array(bundle *b, const char *key, const char **str_array, const int len);
/** Borrowed: valid until the key is deleted or the bundle freed. */
int bundle_get_str(bundle *b, const char *key, char **str);
/** Borrowed array of *len texts, or null. */
const char **bundle_get_str_array(bundle *b, const char *key, int *len);
int bundle_del(bundle *b, const char *key);
int bundle_get_count(bundle *b);

#ifdef __cplusplus
}
#endif
#endif
