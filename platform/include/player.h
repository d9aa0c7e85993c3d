/**
 * @file player.h
 * @brief Media player.
 *
 * Thread: operations belong to the main loop. Callbacks arrive on threads of the platform, never
 * inside an operation, and never after the matching unset, player_unprepare() (for what belongs to
 * one preparation) or player_destroy() has returned.
 * Every operation returns PLAYER_ERROR_NONE (0) or a negative error of player_error_e.
 */
#ifndef PLAYER_H
#define PLAYER_H

#include <errno.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct player_s *player_h;
typedef struct media_packet_s *media_packet_h;
typedef void *player_display_h;

/** The display of a window, as player_set_display() takes it. */
#define GET_DISPLAY(window) ((player_display_h)(window))

#define PLAYER_ERROR_CLASS (-0x01940000)

typedef enum {
    PLAYER_ERROR_NONE = 0,
    PLAYER_ERROR_OUT_OF_MEMORY = -ENOMEM,
    PLAYER_ERROR_INVALID_PARAMETER = -EINVAL,
    PLAYER_ERROR_NO_SUCH_FILE = -ENOENT,
    PLAYER_ERROR_INVALID_OPERATION = -ENOSYS,
    PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE = -ENOSPC,
    PLAYER_ERROR_PERMISSION_DENIED = -EACCES,
    PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE = (int)0xC0000002,
    PLAYER_ERROR_SEEK_FAILED = PLAYER_ERROR_CLASS | 0x21,
    PLAYER_ERROR_INVALID_STATE = PLAYER_ERROR_CLASS | 0x22,
    PLAYER_ERROR_NOT_SUPPORTED_FILE = PLAYER_ERROR_CLASS | 0x23,
    PLAYER_ERROR_INVALID_URI = PLAYER_ERROR_CLASS | 0x24,
    PLAYER_ERROR_SOUND_POLICY = PLAYER_ERROR_CLASS | 0x25,
    PLAYER_ERROR_CONNECTION_FAILED = PLAYER_ERROR_CLASS | 0x26,
    PLAYER_ERROR_VIDEO_CAPTURE_FAILED = PLAYER_ERROR_CLASS | 0x27,
    PLAYER_ERROR_RESOURCE_LIMIT = PLAYER_ERROR_CLASS | 0x2c
} player_error_e;

typedef enum {
    PLAYER_STATE_NONE = 0,    /**< no player */
    PLAYER_STATE_IDLE = 1,    /**< created, nothing prepared */
    PLAYER_STATE_READY = 2,   /**< prepared */
    PLAYER_STATE_PLAYING = 3, /**< playing */
    PLAYER_STATE_PAUSED = 4   /**< paused */
} player_state_e;

typedef enum {
    PLAYER_DISPLAY_TYPE_OVERLAY = 0, /**< the video plane below a window */
    PLAYER_DISPLAY_TYPE_EVAS = 1,    /**< an image object; null: the video is not shown */
    PLAYER_DISPLAY_TYPE_NONE = 2     /**< the video is not shown */
} player_display_type_e;

typedef enum {
    PLAYER_DISPLAY_MODE_LETTER_BOX = 0,
    PLAYER_DISPLAY_MODE_ORIGINAL_SIZE = 1,
    PLAYER_DISPLAY_MODE_FULL_SCREEN = 2,
    PLAYER_DISPLAY_MODE_CROPPED_FULL = 3,
    PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER = 4,
    PLAYER_DISPLAY_MODE_DST_ROI = 5
} player_display_mode_e;

typedef enum {
    PLAYER_DISPLAY_ROTATION_NONE = 0,
    PLAYER_DISPLAY_ROTATION_90 = 1,
    PLAYER_DISPLAY_ROTATION_180 = 2,
    PLAYER_DISPLAY_ROTATION_270 = 3
} player_display_rotation_e;

typedef enum {
    PLAYER_INTERRUPTED_COMPLETED = 0,
    PLAYER_INTERRUPTED_BY_MEDIA,
    PLAYER_INTERRUPTED_BY_CALL,
    PLAYER_INTERRUPTED_BY_EARJACK_UNPLUG,
    PLAYER_INTERRUPTED_BY_RESOURCE_CONFLICT,
    PLAYER_INTERRUPTED_BY_ALARM
} player_interrupted_code_e;

typedef enum {
    PLAYER_PD_STARTED = 0,
    PLAYER_PD_COMPLETED
} player_pd_message_type_e;

typedef enum {
    PLAYER_MISSED_PLUGIN_VIDEO = 1,
    PLAYER_MISSED_PLUGIN_AUDIO = 2
} player_missed_plugin_type_e;

typedef void (*player_prepared_cb)(void *user_data);
typedef void (*player_completed_cb)(void *user_data);
typedef void (*player_seek_completed_cb)(void *user_data);
typedef void (*player_interrupted_cb)(player_interrupted_code_e code, void *user_data);
/** @param error_code  one of player_error_e */
typedef void (*player_error_cb)(int error_code, void *user_data);
/** @param percent  0 to 100 */
typedef void (*player_buffering_cb)(int percent, void *user_data);
typedef void (*player_pd_message_cb)(player_pd_message_type_e type, void *user_data);
/** @param duration  milliseconds; @param text  valid during the call */
typedef void (*player_subtitle_updated_cb)(unsigned long duration, char *text, void *user_data);
/** @param detail  a description, valid during the call */
typedef void (*player_missed_plugin_info_cb)(player_missed_plugin_type_e type, const char *detail,
                                             void *user_data);
typedef void (*player_media_packet_video_decoded_cb)(media_packet_h packet, void *user_data);
/** @param data  RGB pixels, valid during the call; @param size  bytes */
typedef void (*player_video_captured_cb)(unsigned char *data, int width, int height,
                                         unsigned int size, void *user_data);

int player_create(player_h *player);
int player_destroy(player_h player);
int player_prepare(player_h player);
int player_prepare_async(player_h player, player_prepared_cb callback, void *user_data);
int player_unprepare(player_h player);
int player_set_uri(player_h player, const char *uri);
int player_set_memory_buffer(player_h player, const void *data, int size);
int player_get_state(player_h player, player_state_e *state);
/** @param left, right  0.0 to 1.0 */
int player_set_volume(player_h player, float left, float right);
int player_get_volume(player_h player, float *left, float *right);
int player_start(player_h player);
int player_stop(player_h player);
int player_pause(player_h player);
/** @param millisecond  from the start; @param accurate  false: the nearest keyframe will do */
int player_set_play_position(player_h player, int millisecond, bool accurate,
                             player_seek_completed_cb callback, void *user_data);
int player_get_play_position(player_h player, int *millisecond);
int player_get_duration(player_h player, int *millisecond);
/** @param rate  0.5 to 1.5; the pitch is kept */
int player_set_playback_rate_ex(player_h player, float rate);
int player_set_display(player_h player, player_display_type_e type, player_display_h display);
int player_set_display_mode(player_h player, player_display_mode_e mode);
int player_get_display_mode(player_h player, player_display_mode_e *mode);
int player_set_display_visible(player_h player, bool visible);
int player_is_display_visible(player_h player, bool *visible);
int player_set_display_rotation(player_h player, player_display_rotation_e rotation);
int player_get_display_rotation(player_h player, player_display_rotation_e *rotation);
/** Both texts are heap copies that the caller frees. */
int player_get_codec_info(player_h player, char **audio_codec, char **video_codec);
/** Pixels; 0, 0 when there is no video. */
int player_get_video_size(player_h player, int *width, int *height);
int player_capture_video(player_h player, player_video_captured_cb callback, void *user_data);
int player_set_streaming_cookie(player_h player, const char *cookie, int size);
int player_set_streaming_user_agent(player_h player, const char *user_agent, int size);
int player_get_streaming_download_progress(player_h player, int *start, int *current);
int player_set_progressive_download_path(player_h player, const char *path);
int player_get_progressive_download_status(player_h player, unsigned long *current,
                                           unsigned long *total_size);
int player_set_subtitle_path(player_h player, const char *path);
int player_set_subtitle_position_offset(player_h player, int millisecond);
int player_has_closed_caption(player_h player, bool *exist);
int player_set_rich_audio(player_h player);
int player_enable_sync_handler(player_h player, bool enable);

int player_set_completed_cb(player_h player, player_completed_cb callback, void *user_data);
int player_unset_completed_cb(player_h player);
int player_set_interrupted_cb(player_h player, player_interrupted_cb callback, void *user_data);
int player_unset_interrupted_cb(player_h player);
int player_set_error_cb(player_h player, player_error_cb callback, void *user_data);
int player_unset_error_cb(player_h player);
int player_set_buffering_cb(player_h player, player_buffering_cb callback, void *user_data);
int player_unset_buffering_cb(player_h player);
int player_set_progressive_download_message_cb(player_h player, player_pd_message_cb callback,
                                               void *user_data);
int player_unset_progressive_download_message_cb(player_h player);
int player_set_media_packet_video_frame_decoded_cb(player_h player,
                                                   player_media_packet_video_decoded_cb callback,
                                                   void *user_data);
int player_unset_media_packet_video_frame_decoded_cb(player_h player);
int player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback,
                                   void *user_data);
int player_unset_subtitle_updated_cb(player_h player);
int player_set_missed_plugin_info_cb(player_h player, player_missed_plugin_info_cb callback,
                                     void *user_data);

#ifdef __cplusplus
}
#endif
#endif
