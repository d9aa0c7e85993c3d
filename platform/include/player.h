/**
 * @file player.h
 * @brief Media player.
 *
 * Thread: operations belong to the main loop. Callbacks arrive on threads of the platform, never
 * inside an operation, and never after the matching unset, player_unprepare() (for what belongs to
 * one preparation) or player_destroy() has returned.
 * A callback may read the player's getters, and must not call what changes it.
 *
 * Every operation returns PLAYER_ERROR_NONE (0) or a negative error of player_error_e, and changes
 * nothing when it fails. INVALID_PARAMETER: the handle is no live player, a pointer or callback
 * that is needed is null, or a value is out of its range. INVALID_STATE: the player's state is not
 * one of those named at the operation, "prepared" being READY, PLAYING or PAUSED. What else an
 * operation answers stands there.
 *
 * A fault of the medium that shows after player_prepare_async() has returned 0 arrives through the
 * error callback, once per preparation: NO_SUCH_FILE for a file that is missing or goes away,
 * NOT_SUPPORTED_FILE for what is no medium, has no stream that can be decoded or is damaged beyond
 * playing, INVALID_OPERATION for what can't be read (no permission, no plain file, network, no
 * descriptors), OUT_OF_MEMORY. A preparation that fails leaves the player IDLE; a fault later
 * leaves its state, after which it can only be stopped, unprepared or destroyed.
 *
 * These answer FEATURE_NOT_SUPPORTED_ON_DEVICE on this host:
 *  - player_set_rich_audio(): the effect is a part of the device's sound hardware;
 *  - player_enable_sync_handler(): it ties the player to the device's own media session, which
 *    nothing on a host corresponds to.
 */
#ifndef PLAYER_H
#define PLAYER_H

#include <errno.h>
#include <media_packet.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct player_s *player_h;
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

typedef enum { PLAYER_PD_STARTED = 0, PLAYER_PD_COMPLETED } player_pd_message_type_e;

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
/** @param packet  valid during the call */
typedef void (*player_media_packet_video_decoded_cb)(media_packet_h packet, void *user_data);
/** @param data  RGB pixels, valid during the call; @param size  bytes */
typedef void (*player_video_captured_cb)(unsigned char *data, int width, int height,
                                         unsigned int size, void *user_data);

/** @param[out] player  a new player, IDLE; the caller destroys it. OUT_OF_MEMORY. */
int player_create(player_h *player);
/** Any state. Completes the seeks that wait, ends a preparation without a callback, and frees the
 *  player. Waits for its threads. */
int player_destroy(player_h player);
/** IDLE. Returns when the medium is prepared (READY) or can't be; the faults of the medium are then
 *  the result, and no callback tells them. INVALID_OPERATION: no medium is set, or a preparation is
 *  under way. */
int player_prepare(player_h player);
/** IDLE. @param callback  called once when the player has become READY, unless the preparation
 * fails or is ended. INVALID_OPERATION: no medium is set, or a preparation is under way. */
int player_prepare_async(player_h player, player_prepared_cb callback, void *user_data);
/** Prepared, or while preparing. Completes the seeks that wait and returns to IDLE. Waits for the
 *  playback's threads; the video plane is empty afterwards. */
int player_unprepare(player_h player);
/** IDLE. @param uri  a path, taken literally, or a URI with the scheme file, http, https or rtsp;
 *  copied. INVALID_URI: another scheme, malformed or empty; no medium is set then. */
int player_set_uri(player_h player, const char *uri);
/** IDLE. Takes the place of a URI. @param data  copied; @param size  bytes, 0 or more.
 *  OUT_OF_MEMORY. */
int player_set_memory_buffer(player_h player, const void *data, int size);
int player_get_state(player_h player, player_state_e *state);
/** Any state. @param left, right  0.0 to 1.0, linear, on top of the media volume */
int player_set_volume(player_h player, float left, float right);
int player_get_volume(player_h player, float *left, float *right);
/** READY or PAUSED. Plays from the position; after the end or a stop, from the beginning.
 *  INVALID_OPERATION after a fault. */
int player_start(player_h player);
/** PLAYING or PAUSED. READY afterwards, at position 0. */
int player_stop(player_h player);
/** PLAYING. */
int player_pause(player_h player);
/** Prepared. Starts a seek; the position is the target from now on.
 *  @param millisecond  from the start; beyond the end it means the end
 *  @param accurate  false: a keyframe beside the target will do
 *  @param callback  called once, in the order of the calls, when this seek is done or has given way
 *         to a newer one; may be null
 *  SEEK_FAILED: the medium can't be sought in, or has had a fault. */
int player_set_play_position(player_h player, int millisecond, bool accurate,
                             player_seek_completed_cb callback, void *user_data);
/** Prepared. Milliseconds from the start: the target of the newest seek until that is done. */
int player_get_play_position(player_h player, int *millisecond);
/** Prepared. Milliseconds; 0 when it isn't known. */
int player_get_duration(player_h player, int *millisecond);
/** Prepared. @param rate  0.5 to 1.5; the pitch is kept. Holds until the player is unprepared.
 *  INVALID_OPERATION: the medium can't be sought in, or has had a fault. */
int player_set_playback_rate_ex(player_h player, float rate);
/** Any state. @param display  OVERLAY: a window of the program; EVAS: an image object, or null. It
 * is not owned; when it is deleted the video isn't shown any more. */
int player_set_display(player_h player, player_display_type_e type, player_display_h display);
/** Any state, as all settings of the display; a paused picture changes at once. The destination
 *  region (DST_ROI) is the whole plane. */
int player_set_display_mode(player_h player, player_display_mode_e mode);
int player_get_display_mode(player_h player, player_display_mode_e *mode);
int player_set_display_visible(player_h player, bool visible);
int player_is_display_visible(player_h player, bool *visible);
/** Clockwise, on top of what the medium itself asks for. */
int player_set_display_rotation(player_h player, player_display_rotation_e rotation);
int player_get_display_rotation(player_h player, player_display_rotation_e *rotation);
/** Prepared. Both texts are heap copies that the caller frees; empty for a stream that isn't there.
 */
int player_get_codec_info(player_h player, char **audio_codec, char **video_codec);
/** Prepared. Square pixels, turned as the medium asks for; 0, 0 when there is no video. */
int player_get_video_size(player_h player, int *width, int *height);
/** Prepared. The callback gets the current picture at its own size, as the decoder gave it.
 *  VIDEO_CAPTURE_FAILED: there is none; as an error through the callback, when it can't be
 *  converted. */
int player_capture_video(player_h player, player_video_captured_cb callback, void *user_data);
/** IDLE, as the next. Goes with the requests of an http or https medium, from the next preparation
 *  on. @param cookie  "name=value", copied; need not end in a zero; @param size  its bytes */
int player_set_streaming_cookie(player_h player, const char *cookie, int size);
int player_set_streaming_user_agent(player_h player, const char *user_agent, int size);
/** PLAYING or PAUSED. The part of the medium that is there. @param[out] start, current  0 to 100
 *  percent of the whole. INVALID_OPERATION: it isn't known. */
int player_get_streaming_download_progress(player_h player, int *start, int *current);
/** IDLE. An http or https medium in MP4 is kept in a file, from the next preparation on; the file
 *  has this name only when it is whole. One that isn't whole is gone when a fault is told or the
 *  player has been unprepared. Other containers aren't kept. The path is copied; empty ends it.
 *  Where the file can't be made or written, the playback fails with INVALID_OPERATION, without
 *  space with FILE_NO_SPACE_ON_DEVICE. */
int player_set_progressive_download_path(player_h player, const char *path);
/** PLAYING or PAUSED. @param[out] current  bytes that are there; @param[out] total_size  of all.
 *  INVALID_OPERATION: nothing is being kept. */
int player_get_progressive_download_status(player_h player, unsigned long *current,
                                           unsigned long *total_size);
/** Any state; from the next preparation on. @param path  a file of subtitles, copied; null: none.
 *  NO_SUCH_FILE, INVALID_OPERATION: it can't be read. One that holds no subtitles shows none.
 *  What is due after the end of the medium isn't shown. */
int player_set_subtitle_path(player_h player, const char *path);
/** PLAYING or PAUSED. @param millisecond  so much later, or earlier when below 0 */
int player_set_subtitle_position_offset(player_h player, int millisecond);
/** Prepared. @param[out] exist  whether a picture that was decoded so far carries captions */
int player_has_closed_caption(player_h player, bool *exist);
int player_set_rich_audio(player_h player);
int player_enable_sync_handler(player_h player, bool enable);

/* Callbacks. Any state; a registration takes the place of the one before. When an unset operation
 * has returned the callback isn't running and isn't called again. */

/** Called at the end of the medium; the player is PAUSED there. */
int player_set_completed_cb(player_h player, player_completed_cb callback, void *user_data);
int player_unset_completed_cb(player_h player);
/** Called when something else needs what the player plays with. The player goes on: to pause it is
 *  for whoever is told. */
int player_set_interrupted_cb(player_h player, player_interrupted_cb callback, void *user_data);
int player_unset_interrupted_cb(player_h player);
int player_set_error_cb(player_h player, player_error_cb callback, void *user_data);
int player_unset_error_cb(player_h player);
int player_set_buffering_cb(player_h player, player_buffering_cb callback, void *user_data);
int player_unset_buffering_cb(player_h player);
/** Called when the file of player_set_progressive_download_path() begins, and when it is whole. */
int player_set_progressive_download_message_cb(player_h player, player_pd_message_cb callback,
                                               void *user_data);
int player_unset_progressive_download_message_cb(player_h player);
/** Called with each picture when its time has come, also a paused one; a slow callback holds the
 *  video up. */
int player_set_media_packet_video_frame_decoded_cb(player_h player,
                                                   player_media_packet_video_decoded_cb callback,
                                                   void *user_data);
int player_unset_media_packet_video_frame_decoded_cb(player_h player);
/** Called with each subtitle when its time has come, as UTF-8 without markup. */
int player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback,
                                   void *user_data);
int player_unset_subtitle_updated_cb(player_h player);
/** Called for each stream that can't be decoded, after the player is prepared; the rest plays.
 * There is no unset operation. */
int player_set_missed_plugin_info_cb(player_h player, player_missed_plugin_info_cb callback,
                                     void *user_data);

#ifdef __cplusplus
}
#endif
#endif
