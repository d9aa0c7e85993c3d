/**
 * @file utils_i18n.h
 * @brief Texts in the user's language.
 */
#ifndef UTILS_I18N_H
#define UTILS_I18N_H

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Looks a text up among those that the platform knows in the user's language; a text that it
 * doesn't know, and so one that is translated already, comes back as it is.
 *
 * Thread: any.
 * @param message  id or text in UTF-8; null gives null
 * @return borrowed: the argument itself, or storage that lasts as long as the process
 */
const char *i18n_get_text(const char *message);

#ifdef __cplusplus
}
#endif
#endif
