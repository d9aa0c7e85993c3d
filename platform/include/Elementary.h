/**
 * @file Elementary.h
 * @brief The toolkit with the platform's accessibility additions.
 *
 * Thread: main loop. Objects are widgets, Edje part access objects or widget items.
 */
#ifndef PLATFORM_ELEMENTARY_H
#define PLATFORM_ELEMENTARY_H

#include_next <Elementary.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef Eo Elm_Interface_Atspi_Accessible;
/** Role numbers of the accessibility bus. */
typedef int Elm_Atspi_Role;
/** Bits: 1 name, 2 role, 4 description, 8 state. */
typedef unsigned int Elm_Accessible_Reading_Info_Type;

/** @return heap text that the platform frees, or null. */
typedef char *(*Elm_Atspi_Reading_Info_Cb)(void *data, Elm_Interface_Atspi_Accessible *obj);
typedef void (*Elm_Atspi_Say_Signal_Cb)(void *data, const char *say_signal);

void elm_atspi_accessible_name_set(Elm_Interface_Atspi_Accessible *obj, const char *name);
void elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                          const char *description);
void elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj, Elm_Atspi_Role role);
void elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                Elm_Accessible_Reading_Info_Type info);
/** Names and descriptions of the object are then message ids of this text domain. */
void elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                 const char *domain);
/** The callback is asked for the name at each query; null ends that. */
void elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                      Elm_Atspi_Reading_Info_Cb name_cb, const void *data);
void elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                            Eina_Bool can_highlight);
/** Speaks a text when a screen reader is on. A discardable text gives way to a later one. */
void elm_atspi_bridge_utils_say(const char *text, Eina_Bool discardable,
                                const Elm_Atspi_Say_Signal_Cb func, const void *data);

#ifdef __cplusplus
}
#endif
#endif
