/**
 * @file vconf.h
 * @brief Typed system settings by key.
 *
 * A key is a path of at least two names, as "db/menu_widget/language". Settings that begin with
 * "memory/" don't outlive the system that they describe.
 *
 * Thread: any.
 */
#ifndef VCONF_H
#define VCONF_H

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @param[out] value  the setting; left alone on failure
 * @return 0, or -1 when the key or value is null, the key is absent or its setting is no 32-bit
 *         number
 */
int vconf_get_int(const char *key, int *value);
/**
 * @param[out] value  1 or 0; left alone on failure
 * @return 0, or -1 when the key or value is null, the key is absent or its setting is no truth
 * value
 */
int vconf_get_bool(const char *key, int *value);
/** @return heap copy that the caller frees with free(), or null when the key is null or absent. */
char *vconf_get_str(const char *key);

#ifdef __cplusplus
}
#endif
#endif
