/**
 * @file efl_extension.h
 * @brief Rotary bezel and hardware keys for toolkit objects.
 *
 * Thread: main loop.
 */
#ifndef EFL_EXTENSION_H
#define EFL_EXTENSION_H

#include <Elementary.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    EEXT_ROTARY_DIRECTION_CLOCKWISE = 0,
    EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE = 1
} Eext_Rotary_Event_Direction;

/** One detent of the bezel. */
typedef struct {
    Eext_Rotary_Event_Direction direction;
    unsigned int time_stamp; /**< milliseconds */
} Eext_Rotary_Event_Info;

/** @return EINA_TRUE when the event was taken: no further callback of the object is called. */
typedef Eina_Bool (*Eext_Rotary_Event_Cb)(void *data, Evas_Object *obj,
                                          Eext_Rotary_Event_Info *info);

/** Adds a callback that is called for each detent while obj is the active rotary object. */
Eina_Bool eext_rotary_object_event_callback_add(Evas_Object *obj, Eext_Rotary_Event_Cb func,
                                                const void *data);
/** The same; callbacks of lower priority value are called first. */
Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object *obj,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb func,
                                                         const void *data);
/** @return the data of the removed callback, or null when there was none. */
void *eext_rotary_object_event_callback_del(Evas_Object *obj, Eext_Rotary_Event_Cb func);
/** Makes obj the one active rotary object, or ends its being so. */
Eina_Bool eext_rotary_object_event_activated_set(Evas_Object *obj, Eina_Bool activated);

typedef enum {
    EEXT_CALLBACK_BACK, /**< back key */
    EEXT_CALLBACK_MORE, /**< more key */
    EEXT_CALLBACK_LAST
} Eext_Callback_Type;

typedef void (*Eext_Event_Cb)(void *data, Evas_Object *obj, void *event_info);

/** The key goes to the newest live and visible object that has asked for it. */
void eext_object_event_callback_add(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func,
                                    void *data);
/** @return the data of the removed callback, or null when there was none. */
void *eext_object_event_callback_del(Evas_Object *obj, Eext_Callback_Type type,
                                     Eext_Event_Cb func);

#ifdef __cplusplus
}
#endif
#endif
