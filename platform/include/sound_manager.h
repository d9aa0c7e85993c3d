/**
 * @file sound_manager.h
 * @brief Audio focus, volume and output devices.
 *
 * Thread: every operation may be called from the main loop and from inside the callbacks of this
 * interface, and none waits for the main loop. Callbacks arrive on threads of the platform: those
 * of the focus on one of their own, in which a callee may sleep without holding up the others;
 * those of volume and devices one after the other on a second. No lock of the platform is held
 * during a callback, so getters answer at once inside it, and show a set that has returned.
 *
 * Every operation returns SOUND_MANAGER_ERROR_NONE (0) or an error of sound_manager_error_e. An
 * operation that fails changes nothing and leaves its output arguments as they were.
 * SOUND_MANAGER_ERROR_INTERNAL is the answer of all that concerns a volume or devices, but not
 * the maximum, while the sound service is away. It comes back by itself: devices that go and come
 * with it, and a volume that has changed, are reported.
 * SOUND_MANAGER_ERROR_INVALID_PARAMETER is the answer to a null output argument, a handle that
 * isn't alive, and a value out of its range.
 */
#ifndef SOUND_MANAGER_H
#define SOUND_MANAGER_H

#include <errno.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

#define SOUND_MANAGER_ERROR_CLASS (-0x01960000)

typedef enum {
    SOUND_MANAGER_ERROR_NONE = 0,
    SOUND_MANAGER_ERROR_OUT_OF_MEMORY = -ENOMEM,
    SOUND_MANAGER_ERROR_INVALID_PARAMETER = -EINVAL,
    SOUND_MANAGER_ERROR_INVALID_OPERATION = -ENOSYS,
    SOUND_MANAGER_ERROR_PERMISSION_DENIED = -EACCES,
    SOUND_MANAGER_ERROR_INTERNAL = SOUND_MANAGER_ERROR_CLASS | 0x01,
    SOUND_MANAGER_ERROR_POLICY = SOUND_MANAGER_ERROR_CLASS | 0x02,
    SOUND_MANAGER_ERROR_NO_DATA = SOUND_MANAGER_ERROR_CLASS | 0x03,
    SOUND_MANAGER_ERROR_INVALID_STATE = SOUND_MANAGER_ERROR_CLASS | 0x04
} sound_manager_error_e;

/** Sound types, each with a volume of its own. */
typedef enum {
    SOUND_TYPE_SYSTEM,
    SOUND_TYPE_NOTIFICATION,
    SOUND_TYPE_ALARM,
    SOUND_TYPE_RINGTONE,
    SOUND_TYPE_MEDIA,
    SOUND_TYPE_CALL,
    SOUND_TYPE_VOIP,
    SOUND_TYPE_VOICE
} sound_type_e;

typedef enum { SOUND_STREAM_TYPE_MEDIA = 0 } sound_stream_type_e;

/** Bits; one call may name both. */
typedef enum {
    SOUND_STREAM_FOCUS_FOR_PLAYBACK = 1,
    SOUND_STREAM_FOCUS_FOR_RECORDING = 2
} sound_stream_focus_mask_e;

typedef enum {
    SOUND_STREAM_FOCUS_STATE_RELEASED = 0,
    SOUND_STREAM_FOCUS_STATE_ACQUIRED = 1
} sound_stream_focus_state_e;

typedef enum {
    SOUND_STREAM_FOCUS_CHANGED_BY_MEDIA = 0,
    SOUND_STREAM_FOCUS_CHANGED_BY_SYSTEM,
    SOUND_STREAM_FOCUS_CHANGED_BY_ALARM,
    SOUND_STREAM_FOCUS_CHANGED_BY_NOTIFICATION,
    SOUND_STREAM_FOCUS_CHANGED_BY_CALL
} sound_stream_focus_change_reason_e;

/** Behaviour bits that a taker of the focus states and that a loser is told. */
typedef enum {
    SOUND_BEHAVIOR_NONE = 0,
    SOUND_BEHAVIOR_NO_RESUME = 1,
    SOUND_BEHAVIOR_FADING = 2
} sound_behavior_e;

typedef struct sound_stream_info_s *sound_stream_info_h;

/**
 * @brief The focus of `stream_info` was taken by another stream or handed back by the platform.
 *        What the owner of the stream does itself, by acquire and release, isn't reported.
 * @param focus_mask      what changed
 * @param focus_state     the new state
 * @param reason          what kind of stream took it or gave it back
 * @param sound_behavior  bits of sound_behavior_e that the other stream stated
 * @param extra_info      of the other stream, or null; valid during the call only
 */
typedef void (*sound_stream_focus_state_changed_cb)(sound_stream_info_h stream_info,
                                                    sound_stream_focus_mask_e focus_mask,
                                                    sound_stream_focus_state_e focus_state,
                                                    sound_stream_focus_change_reason_e reason,
                                                    int sound_behavior, const char *extra_info,
                                                    void *user_data);

/**
 * @brief Creates a stream of the process, which holds no focus yet and has its reacquisition on.
 * @param callback          told of focus changes; may be null
 * @param[out] stream_info  to be freed with sound_manager_destroy_stream_information()
 */
int sound_manager_create_stream_information(sound_stream_type_e stream_type,
                                            sound_stream_focus_state_changed_cb callback,
                                            void *user_data, sound_stream_info_h *stream_info);

/**
 * @brief Gives back the focus that the stream holds and frees it. Its callback isn't called
 *        again; unless this is called inside that callback, it isn't running any more either.
 */
int sound_manager_destroy_stream_information(sound_stream_info_h stream_info);

/**
 * @brief Takes the focus. Taking what the stream holds already succeeds and changes nothing.
 * @param focus_mask      bits of sound_stream_focus_mask_e, at least one
 * @param sound_behavior  bits of sound_behavior_e, told to who loses the focus
 * @param extra_info      told likewise, or null
 * @return POLICY when another holder forbids it now
 */
int sound_manager_acquire_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info);

/**
 * @brief Gives the focus back; the arguments are those of acquiring.
 * @return INVALID_STATE when the stream doesn't hold all of `focus_mask`; nothing changes then
 */
int sound_manager_release_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info);

/** Whether the platform hands a lost focus back by itself; it does unless switched off. */
int sound_manager_set_focus_reacquisition(sound_stream_info_h stream_info, bool enable);

/** @param[out] max  highest level of the type, above 0; the lowest is 0 of every type */
int sound_manager_get_max_volume(sound_type_e type, int *max);

/** @param volume  0 (silent) to the maximum of the type; a read that follows gives this value */
int sound_manager_set_volume(sound_type_e type, int volume);

/** @param[out] volume  0 to the maximum of the type */
int sound_manager_get_volume(sound_type_e type, int *volume);

/**
 * @brief States the media level above which listening is held unsafe. The platform remembers it
 *        and leaves it to the process to warn; it doesn't limit any level.
 * @param volume  0 to the maximum of the media type; 0 is no statement
 */
int sound_manager_set_safety_volume(int volume);

/** Takes the statement back; does nothing when there is none. */
int sound_manager_unset_safety_volume(void);

/**
 * @brief The type whose volume is now in force: media while the process has a stream.
 * @return NO_DATA when there is none
 */
int sound_manager_get_current_sound_type(sound_type_e *type);

/** Gives up a type that was forced; does nothing when none is. */
int sound_manager_unset_current_sound_type(void);

/** @param volume  the new level of `type`, whoever set it */
typedef void (*sound_manager_volume_changed_cb)(sound_type_e type, unsigned int volume,
                                                void *user_data);

/**
 * @brief Reports every change of a level, in order; setting the level that is there is none.
 *        There is one such callback in the process: a second one replaces the first.
 */
int sound_manager_set_volume_changed_cb(sound_manager_volume_changed_cb callback, void *user_data);

/**
 * @brief Ends the reports. The callback isn't called again; unless this is called inside it, it
 *        isn't running any more either. Does nothing when none is set.
 */
int sound_manager_unset_volume_changed_cb(void);

/** A device of a list, or of a report. */
typedef struct sound_device_s *sound_device_h;
/** A list that stays as it was when it was taken. Not to be shared between threads. */
typedef struct sound_device_list_s *sound_device_list_h;

typedef enum {
    SOUND_DEVICE_BUILTIN_SPEAKER = 0,
    SOUND_DEVICE_BUILTIN_RECEIVER = 1,
    SOUND_DEVICE_BUILTIN_MIC = 2,
    SOUND_DEVICE_AUDIO_JACK = 3,
    SOUND_DEVICE_BLUETOOTH = 4,
    SOUND_DEVICE_HDMI = 5,
    SOUND_DEVICE_MIRRORING = 6,
    SOUND_DEVICE_USB_AUDIO = 7
} sound_device_type_e;

/** Bits. The types 0 to 2 are internal, all others external. */
typedef enum {
    SOUND_DEVICE_TYPE_INTERNAL_MASK = 1,
    SOUND_DEVICE_TYPE_EXTERNAL_MASK = 2
} sound_device_mask_e;

/** @param device  valid during the call only */
typedef void (*sound_device_connection_changed_cb)(sound_device_h device, bool is_connected,
                                                   void *user_data);

/**
 * @brief Reports devices that come and go. A list taken inside the callback shows the change.
 * @param device_mask  bits of sound_device_mask_e, at least one: the devices that are reported
 * @param[out] id      above 0, for the removal
 */
int sound_manager_add_device_connection_changed_cb(int device_mask,
                                                   sound_device_connection_changed_cb callback,
                                                   void *user_data, int *id);

/**
 * @brief Ends the reports to one callback, which isn't called again; unless this is called inside
 *        it, it isn't running any more either.
 */
int sound_manager_remove_device_connection_changed_cb(int id);

/**
 * @brief The devices that are connected now.
 * @param device_mask       bits of sound_device_mask_e, at least one
 * @param[out] device_list  to be freed with sound_manager_free_device_list()
 * @return NO_DATA when no device matches
 */
int sound_manager_get_device_list(int device_mask, sound_device_list_h *device_list);

/** Frees the list and its devices. */
int sound_manager_free_device_list(sound_device_list_h device_list);

/**
 * @brief The next device of the list, from the first one on.
 * @param[out] device  lives as long as the list
 * @return NO_DATA at the end, at every further call too
 */
int sound_manager_get_next_device(sound_device_list_h device_list, sound_device_h *device);

/** @return INVALID_PARAMETER for a null argument; a device whose list was freed is undefined */
int sound_manager_get_device_type(sound_device_h device, sound_device_type_e *type);

/**
 * @brief Whether a Bluetooth set for music is connected, and its name.
 * @param[out] bt_name  heap copy that the caller frees, or null when there is none
 */
int sound_manager_get_a2dp_status(bool *connected, char **bt_name);

#ifdef __cplusplus
}
#endif
#endif
