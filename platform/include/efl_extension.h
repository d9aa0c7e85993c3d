/**
 * @file efl_extension.h
 * @brief Rotary bezel, hardware keys and circle objects for the toolkit.
 *
 * Thread: main loop, for every operation and every callback. The platform keeps no reference to an
 * object: when it is deleted, all that was registered for it goes with it.
 */
#ifndef EFL_EXTENSION_H
#define EFL_EXTENSION_H

#include <Elementary.h>
#include <efl_extension_circle.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Which way the bezel was turned. */
typedef enum {
    EEXT_ROTARY_DIRECTION_CLOCKWISE = 0,
    EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE = 1
} Eext_Rotary_Event_Direction;

/** One detent of the bezel; 24 make a turn. */
typedef struct {
    Eext_Rotary_Event_Direction direction;
    unsigned int time_stamp; /**< milliseconds of a clock that only grows, at least 10 apart */
} Eext_Rotary_Event_Info;

/**
 * Takes one detent.
 *
 * @param data what was given when the callback was added
 * @param obj the active rotary object
 * @param info the detent; valid during the call only
 * @return EINA_TRUE when the event was taken: no further callback of the object is called.
 *         EINA_FALSE passes it on to the next one.
 *
 * The callback may add and remove callbacks, change the active object and delete obj; no callback
 * that is removed meanwhile is called any more.
 */
typedef Eina_Bool (*Eext_Rotary_Event_Cb)(void *data, Evas_Object *obj,
                                          Eext_Rotary_Event_Info *info);

/**
 * Adds a callback that is called for each detent while obj is the active rotary object, with the
 * priority EVAS_CALLBACK_PRIORITY_DEFAULT. The same function may be added more than once.
 *
 * @param obj the object
 * @param func the callback
 * @param data handed to the callback; stays the caller's
 * @return EINA_FALSE when obj or func is null, else EINA_TRUE
 */
Eina_Bool eext_rotary_object_event_callback_add(Evas_Object *obj, Eext_Rotary_Event_Cb func,
                                                const void *data);

/**
 * As eext_rotary_object_event_callback_add(), with a place in the order: a lower value is called
 * earlier, the same value in the order of adding.
 *
 * @param obj the object
 * @param priority any value, such as EVAS_CALLBACK_PRIORITY_BEFORE
 * @param func the callback
 * @param data handed to the callback; stays the caller's
 * @return EINA_FALSE when obj or func is null, else EINA_TRUE
 */
Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object *obj,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb func,
                                                         const void *data);

/**
 * Removes the first callback of obj that has this function.
 *
 * @param obj the object
 * @param func the function it was added with
 * @return the data of the removed callback, or null when there was none
 */
void *eext_rotary_object_event_callback_del(Evas_Object *obj, Eext_Rotary_Event_Cb func);

/**
 * Makes obj the one active rotary object, in the place of any other, or ends its being so. Only the
 * active object is told of detents. When it is deactivated or deleted, the one whose place it took
 * is active again, unless that was deactivated or deleted in the meantime.
 *
 * @param obj the object; it need not have a callback yet
 * @param activated EINA_FALSE also keeps an object that isn't active from being so again by itself
 * @return EINA_FALSE when obj is null, else EINA_TRUE
 */
Eina_Bool eext_rotary_object_event_activated_set(Evas_Object *obj, Eina_Bool activated);

/** The hardware keys that objects can ask for. */
typedef enum {
    EEXT_CALLBACK_BACK, /**< back key */
    EEXT_CALLBACK_MORE, /**< more key */
    EEXT_CALLBACK_LAST  /**< number of keys; not a key */
} Eext_Callback_Type;

/**
 * Takes a press of a hardware key.
 *
 * @param data what was given when the callback was added
 * @param obj the object that asked
 * @param event_info always null
 *
 * The callback may add and remove callbacks and delete obj.
 */
typedef void (*Eext_Event_Cb)(void *data, Evas_Object *obj, void *event_info);

/**
 * Asks for a key. A press goes to one object: of those that have asked for that key, are alive and
 * visible, as is all that they stand in, the one that asked last. All its callbacks for the key are
 * called, oldest first.
 *
 * @param obj the object; null is ignored
 * @param type the key
 * @param func the callback; null is ignored
 * @param data handed to the callback; stays the caller's
 */
void eext_object_event_callback_add(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func,
                                    void *data);

/**
 * Removes the oldest callback of obj that has this key and function.
 *
 * @param obj the object
 * @param type the key
 * @param func the function it was added with
 * @return the data of the removed callback, or null when there was none
 */
void *eext_object_event_callback_del(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func);

#ifdef __cplusplus
}
#endif
#endif
