/**
 * @file vconf.h
 * @brief Typed system settings by key.
 */
#ifndef VCONF_H
#define VCONF_H

#ifdef __cplusplus
extern "C" {
#endif

/** @return 0, or -1 when the key is absent or of another type; *value is then left alone. */
int vconf_get_int(const char *key, int *value);
int vconf_get_bool(const char *key, int *value);
/** @return heap copy that the caller frees, or null. */
char *vconf_get_str(const char *key);

#ifdef __cplusplus
}
#endif
#endif
