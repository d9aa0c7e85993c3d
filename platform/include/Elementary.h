/**
 * @file Elementary.h
 * @brief The toolkit with the platform's accessibility additions.
 *
 * Objects are widgets, access objects of plain objects (elm_access_object_register()) or widget
 * items. A call with null, or with an object that the screen reader can't know, does nothing. What
 * is set goes with the object. Thread: main loop.
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

/** @return heap text that the platform frees; null for the name that was set. */
typedef char *(*Elm_Atspi_Reading_Info_Cb)(void *data, Elm_Interface_Atspi_Accessible *obj);
/** @param say_signal  what became of the text, valid during the call only */
typedef void (*Elm_Atspi_Say_Signal_Cb)(void *data, const char *say_signal);

/**
 * Sets the name that the screen reader says first.
 * @param name  copied; a message id when the object has a translation domain; null for none
 */
void elm_atspi_accessible_name_set(Elm_Interface_Atspi_Accessible *obj, const char *name);
/**
 * Sets what the screen reader says about the object beside its name.
 * @param description  as the name
 */
void elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                          const char *description);
/** Sets what kind of object it is; a number that is no role is ignored. */
void elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj, Elm_Atspi_Role role);
/** Sets which of its properties are said when the highlight comes to the object; 0 for all. */
void elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                Elm_Accessible_Reading_Info_Type info);
/**
 * Makes the name and the description message ids of a text domain, translated at each query.
 * @param domain  copied; null ends that
 */
void elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                 const char *domain);
/**
 * Has the name asked for at each query, in place of the one that was set. The answer isn't
 * translated.
 * @param name_cb  called on the main loop for as long as the object lives; null ends that
 * @param data  must live as long
 */
void elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                      Elm_Atspi_Reading_Info_Cb name_cb, const void *data);
/** Says whether the screen reader's highlight may stop at the object; it may by default. */
void elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                            Eina_Bool can_highlight);
/**
 * Speaks a text while a screen reader is on, and does nothing otherwise.
 * @param text  as it is to be spoken, copied
 * @param discardable  whether the text gives way to a later one
 * @param func  told on the main loop what became of the text; may be null. Without a speech service
 *     the text isn't spoken and nothing is told; that is logged once.
 */
void elm_atspi_bridge_utils_say(const char *text, Eina_Bool discardable,
                                const Elm_Atspi_Say_Signal_Cb func, const void *data);

#ifdef __cplusplus
}
#endif
#endif
