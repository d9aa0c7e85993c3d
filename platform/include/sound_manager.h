/**
 * @file sound_manager.h
 * @brief Audio focus, volume and output devices.
 *
 * Thread: operations may be called from the main loop and from inside the callbacks of this
 * interface, and never block on the main loop. Callbacks arrive on threads of the platform.
 * Every operation returns SOUND_MANAGER_ERROR_NONE (0) or an error of sound_manager_error_e.
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

/** @param sound_behavior  bits of sound_behavior_e */
typedef void (*sound_stream_focus_state_changed_cb)(
    sound_stream_info_h stream_info, sound_stream_focus_mask_e focus_mask,
    sound_stream_focus_state_e focus_state, sound_stream_focus_change_reason_e reason,
    int sound_behavior, const char *extra_info, void *user_data);

int sound_manager_create_stream_information(sound_stream_type_e stream_type,
                                            sound_stream_focus_state_changed_cb callback,
                                            void *user_data, sound_stream_info_h *stream_info);
int sound_manager_destroy_stream_information(sound_stream_info_h stream_info);
/** POLICY when another holder forbids it now. */
int sound_manager_acquire_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info);
/** INVALID_STATE when the focus isn't held; nothing changes then. */
int sound_manager_release_focus(sound_stream_info_h stream_info,
                                sound_stream_focus_mask_e focus_mask, int sound_behavior,
                                const char *extra_info);
/** Whether the platform hands a lost focus back by itself; it does unless switched off. */
int sound_manager_set_focus_reacquisition(sound_stream_info_h stream_info, bool enable);

/** Levels run from 0 to the maximum of the type. */
int sound_manager_get_max_volume(sound_type_e type, int *max);
int sound_manager_set_volume(sound_type_e type, int volume);
int sound_manager_get_volume(sound_type_e type, int *volume);
int sound_manager_set_safety_volume(int volume);
int sound_manager_unset_safety_volume(void);
/** The type whose volume is now in force; NO_DATA when there is none. */
int sound_manager_get_current_sound_type(sound_type_e *type);
int sound_manager_unset_current_sound_type(void);

typedef void (*sound_manager_volume_changed_cb)(sound_type_e type, unsigned int volume,
                                                void *user_data);
int sound_manager_set_volume_changed_cb(sound_manager_volume_changed_cb callback,
                                        void *user_data);
/** When it has returned, the callback isn't running and is not called again. */
int sound_manager_unset_volume_changed_cb(void);

typedef struct sound_device_s *sound_device_h;
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

typedef enum {
    SOUND_DEVICE_TYPE_INTERNAL_MASK = 1,
    SOUND_DEVICE_TYPE_EXTERNAL_MASK = 2
} sound_device_mask_e;

typedef void (*sound_device_connection_changed_cb)(sound_device_h device, bool is_connected,
                                                   void *user_data);
int sound_manager_add_device_connection_changed_cb(int device_mask,
                                                   sound_device_connection_changed_cb callback,
                                                   void *user_data, int *id);
/** When it has returned, the callback isn't running and is not called again. */
int sound_manager_remove_device_connection_changed_cb(int id);
/** NO_DATA when no device matches; otherwise the list is freed by the caller. */
int sound_manager_get_device_list(int device_mask, sound_device_list_h *device_list);
int sound_manager_free_device_list(sound_device_list_h device_list);
/** NO_DATA at the end. The device lives as long as the list. */
int sound_manager_get_next_device(sound_device_list_h device_list, sound_device_h *device);
int sound_manager_get_device_type(sound_device_h device, sound_device_type_e *type);
/** @param[out] bt_name  heap copy that the caller frees, or null */
int sound_manager_get_a2dp_status(bool *connected, char **bt_name);

#ifdef __cplusplus
}
#endif
#endif
