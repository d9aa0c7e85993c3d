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
 * Looks a text up among the platform's own; a text it doesn't know comes back as it is.
 * @return borrowed: either the argument or static storage
 */
const char *i18n_get_text(const char *message);

#ifdef __cplusplus
}
#endif
#endif
