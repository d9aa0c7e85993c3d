#pragma once

#include <gmock/gmock.h>

#include "fake_player.h"

/// Forwards to FakePlayer unless a test says otherwise.
class MockPlayer {
public:
    MockPlayer();
    virtual ~MockPlayer();

    MOCK_METHOD(int, player_create, (player_h *));
    MOCK_METHOD(int, player_destroy, (player_h));
    MOCK_METHOD(int, player_prepare, (player_h));
    MOCK_METHOD(int, player_prepare_async, (player_h, player_prepared_cb, void *));
    MOCK_METHOD(int, player_unprepare, (player_h));
    MOCK_METHOD(int, player_set_uri, (player_h, const char *));
    MOCK_METHOD(int, player_set_memory_buffer, (player_h, const void *, int));
    MOCK_METHOD(int, player_get_state, (player_h, player_state_e *));
    MOCK_METHOD(int, player_set_volume, (player_h, float, float));
    MOCK_METHOD(int, player_get_volume, (player_h, float *, float *));
    MOCK_METHOD(int, player_start, (player_h));
    MOCK_METHOD(int, player_stop, (player_h));
    MOCK_METHOD(int, player_pause, (player_h));
    MOCK_METHOD(int, player_set_play_position,
                (player_h, int, bool, player_seek_completed_cb, void *));
    MOCK_METHOD(int, player_get_play_position, (player_h, int *));
    MOCK_METHOD(int, player_get_duration, (player_h, int *));
    MOCK_METHOD(int, player_set_playback_rate_ex, (player_h, float));
    MOCK_METHOD(int, player_set_display, (player_h, player_display_type_e, player_display_h));
    MOCK_METHOD(int, player_set_display_mode, (player_h, player_display_mode_e));
    MOCK_METHOD(int, player_get_display_mode, (player_h, player_display_mode_e *));
    MOCK_METHOD(int, player_set_display_visible, (player_h, bool));
    MOCK_METHOD(int, player_is_display_visible, (player_h, bool *));
    MOCK_METHOD(int, player_set_display_rotation, (player_h, player_display_rotation_e));
    MOCK_METHOD(int, player_get_display_rotation, (player_h, player_display_rotation_e *));
    MOCK_METHOD(int, player_get_codec_info, (player_h, char **, char **));
    MOCK_METHOD(int, player_get_video_size, (player_h, int *, int *));
    MOCK_METHOD(int, player_capture_video, (player_h, player_video_captured_cb, void *));
    MOCK_METHOD(int, player_set_streaming_cookie, (player_h, const char *, int));
    MOCK_METHOD(int, player_set_streaming_user_agent, (player_h, const char *, int));
    MOCK_METHOD(int, player_get_streaming_download_progress, (player_h, int *, int *));
    MOCK_METHOD(int, player_set_progressive_download_path, (player_h, const char *));
    MOCK_METHOD(int, player_get_progressive_download_status,
                (player_h, unsigned long *, unsigned long *));
    MOCK_METHOD(int, player_set_subtitle_path, (player_h, const char *));
    MOCK_METHOD(int, player_set_subtitle_position_offset, (player_h, int));
    MOCK_METHOD(int, player_has_closed_caption, (player_h, bool *));
    MOCK_METHOD(int, player_set_rich_audio, (player_h));
    MOCK_METHOD(int, player_enable_sync_handler, (player_h, bool));
    MOCK_METHOD(int, player_set_completed_cb, (player_h, player_completed_cb, void *));
    MOCK_METHOD(int, player_unset_completed_cb, (player_h));
    MOCK_METHOD(int, player_set_interrupted_cb, (player_h, player_interrupted_cb, void *));
    MOCK_METHOD(int, player_unset_interrupted_cb, (player_h));
    MOCK_METHOD(int, player_set_error_cb, (player_h, player_error_cb, void *));
    MOCK_METHOD(int, player_unset_error_cb, (player_h));
    MOCK_METHOD(int, player_set_buffering_cb, (player_h, player_buffering_cb, void *));
    MOCK_METHOD(int, player_unset_buffering_cb, (player_h));
    MOCK_METHOD(int, player_set_progressive_download_message_cb,
                (player_h, player_pd_message_cb, void *));
    MOCK_METHOD(int, player_unset_progressive_download_message_cb, (player_h));
    MOCK_METHOD(int, player_set_media_packet_video_frame_decoded_cb,
                (player_h, player_media_packet_video_decoded_cb, void *));
    MOCK_METHOD(int, player_unset_media_packet_video_frame_decoded_cb, (player_h));
    MOCK_METHOD(int, player_set_subtitle_updated_cb,
                (player_h, player_subtitle_updated_cb, void *));
    MOCK_METHOD(int, player_unset_subtitle_updated_cb, (player_h));
    MOCK_METHOD(int, player_set_missed_plugin_info_cb,
                (player_h, player_missed_plugin_info_cb, void *));
};

namespace mock {
MockPlayer &player();
}
