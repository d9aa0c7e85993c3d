#include "mock_player.h"

#include "slot.h"

namespace mock {

MockPlayer &player() {
    static Slot<testing::NiceMock<MockPlayer>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_player().function(arguments...);         \
    })

MockPlayer::MockPlayer() {
    DELEGATE(player_create);
    DELEGATE(player_destroy);
    DELEGATE(player_prepare);
    DELEGATE(player_prepare_async);
    DELEGATE(player_unprepare);
    DELEGATE(player_set_uri);
    DELEGATE(player_set_memory_buffer);
    DELEGATE(player_get_state);
    DELEGATE(player_set_volume);
    DELEGATE(player_get_volume);
    DELEGATE(player_start);
    DELEGATE(player_stop);
    DELEGATE(player_pause);
    DELEGATE(player_set_play_position);
    DELEGATE(player_get_play_position);
    DELEGATE(player_get_duration);
    DELEGATE(player_set_playback_rate_ex);
    DELEGATE(player_set_display);
    DELEGATE(player_set_display_mode);
    DELEGATE(player_get_display_mode);
    DELEGATE(player_set_display_visible);
    DELEGATE(player_is_display_visible);
    DELEGATE(player_set_display_rotation);
    DELEGATE(player_get_display_rotation);
    DELEGATE(player_get_codec_info);
    DELEGATE(player_get_video_size);
    DELEGATE(player_capture_video);
    DELEGATE(player_set_streaming_cookie);
    DELEGATE(player_set_streaming_user_agent);
    DELEGATE(player_get_streaming_download_progress);
    DELEGATE(player_set_progressive_download_path);
    DELEGATE(player_get_progressive_download_status);
    DELEGATE(player_set_subtitle_path);
    DELEGATE(player_set_subtitle_position_offset);
    DELEGATE(player_has_closed_caption);
    DELEGATE(player_set_rich_audio);
    DELEGATE(player_enable_sync_handler);
    DELEGATE(player_set_completed_cb);
    DELEGATE(player_unset_completed_cb);
    DELEGATE(player_set_interrupted_cb);
    DELEGATE(player_unset_interrupted_cb);
    DELEGATE(player_set_error_cb);
    DELEGATE(player_unset_error_cb);
    DELEGATE(player_set_buffering_cb);
    DELEGATE(player_unset_buffering_cb);
    DELEGATE(player_set_progressive_download_message_cb);
    DELEGATE(player_unset_progressive_download_message_cb);
    DELEGATE(player_set_media_packet_video_frame_decoded_cb);
    DELEGATE(player_unset_media_packet_video_frame_decoded_cb);
    DELEGATE(player_set_subtitle_updated_cb);
    DELEGATE(player_unset_subtitle_updated_cb);
    DELEGATE(player_set_missed_plugin_info_cb);
}

MockPlayer::~MockPlayer() = default;

extern "C" {

int player_create(player_h *player) {
    return mock::player().player_create(player);
}

int player_destroy(player_h player) {
    return mock::player().player_destroy(player);
}

int player_prepare(player_h player) {
    return mock::player().player_prepare(player);
}

int player_prepare_async(player_h player, player_prepared_cb callback, void *user_data) {
    return mock::player().player_prepare_async(player, callback, user_data);
}

int player_unprepare(player_h player) {
    return mock::player().player_unprepare(player);
}

int player_set_uri(player_h player, const char *uri) {
    return mock::player().player_set_uri(player, uri);
}

int player_set_memory_buffer(player_h player, const void *data, int size) {
    return mock::player().player_set_memory_buffer(player, data, size);
}

int player_get_state(player_h player, player_state_e *state) {
    return mock::player().player_get_state(player, state);
}

int player_set_volume(player_h player, float left, float right) {
    return mock::player().player_set_volume(player, left, right);
}

int player_get_volume(player_h player, float *left, float *right) {
    return mock::player().player_get_volume(player, left, right);
}

int player_start(player_h player) {
    return mock::player().player_start(player);
}

int player_stop(player_h player) {
    return mock::player().player_stop(player);
}

int player_pause(player_h player) {
    return mock::player().player_pause(player);
}

int player_set_play_position(player_h player, int millisecond, bool accurate,
                             player_seek_completed_cb callback, void *user_data) {
    return mock::player().player_set_play_position(player, millisecond, accurate, callback,
                                                   user_data);
}

int player_get_play_position(player_h player, int *millisecond) {
    return mock::player().player_get_play_position(player, millisecond);
}

int player_get_duration(player_h player, int *millisecond) {
    return mock::player().player_get_duration(player, millisecond);
}

int player_set_playback_rate_ex(player_h player, float rate) {
    return mock::player().player_set_playback_rate_ex(player, rate);
}

int player_set_display(player_h player, player_display_type_e type, player_display_h display) {
    return mock::player().player_set_display(player, type, display);
}

int player_set_display_mode(player_h player, player_display_mode_e mode) {
    return mock::player().player_set_display_mode(player, mode);
}

int player_get_display_mode(player_h player, player_display_mode_e *mode) {
    return mock::player().player_get_display_mode(player, mode);
}

int player_set_display_visible(player_h player, bool visible) {
    return mock::player().player_set_display_visible(player, visible);
}

int player_is_display_visible(player_h player, bool *visible) {
    return mock::player().player_is_display_visible(player, visible);
}

int player_set_display_rotation(player_h player, player_display_rotation_e rotation) {
    return mock::player().player_set_display_rotation(player, rotation);
}

int player_get_display_rotation(player_h player, player_display_rotation_e *rotation) {
    return mock::player().player_get_display_rotation(player, rotation);
}

int player_get_codec_info(player_h player, char **audio_codec, char **video_codec) {
    return mock::player().player_get_codec_info(player, audio_codec, video_codec);
}

int player_get_video_size(player_h player, int *width, int *height) {
    return mock::player().player_get_video_size(player, width, height);
}

int player_capture_video(player_h player, player_video_captured_cb callback, void *user_data) {
    return mock::player().player_capture_video(player, callback, user_data);
}

int player_set_streaming_cookie(player_h player, const char *cookie, int size) {
    return mock::player().player_set_streaming_cookie(player, cookie, size);
}

int player_set_streaming_user_agent(player_h player, const char *user_agent, int size) {
    return mock::player().player_set_streaming_user_agent(player, user_agent, size);
}

int player_get_streaming_download_progress(player_h player, int *start, int *current) {
    return mock::player().player_get_streaming_download_progress(player, start, current);
}

int player_set_progressive_download_path(player_h player, const char *path) {
    return mock::player().player_set_progressive_download_path(player, path);
}

int player_get_progressive_download_status(player_h player, unsigned long *current,
                                           unsigned long *total_size) {
    return mock::player().player_get_progressive_download_status(player, current, total_size);
}

int player_set_subtitle_path(player_h player, const char *path) {
    return mock::player().player_set_subtitle_path(player, path);
}

int player_set_subtitle_position_offset(player_h player, int millisecond) {
    return mock::player().player_set_subtitle_position_offset(player, millisecond);
}

int player_has_closed_caption(player_h player, bool *exist) {
    return mock::player().player_has_closed_caption(player, exist);
}

int player_set_rich_audio(player_h player) {
    return mock::player().player_set_rich_audio(player);
}

int player_enable_sync_handler(player_h player, bool enable) {
    return mock::player().player_enable_sync_handler(player, enable);
}

int player_set_completed_cb(player_h player, player_completed_cb callback, void *user_data) {
    return mock::player().player_set_completed_cb(player, callback, user_data);
}

int player_unset_completed_cb(player_h player) {
    return mock::player().player_unset_completed_cb(player);
}

int player_set_interrupted_cb(player_h player, player_interrupted_cb callback, void *user_data) {
    return mock::player().player_set_interrupted_cb(player, callback, user_data);
}

int player_unset_interrupted_cb(player_h player) {
    return mock::player().player_unset_interrupted_cb(player);
}

int player_set_error_cb(player_h player, player_error_cb callback, void *user_data) {
    return mock::player().player_set_error_cb(player, callback, user_data);
}

int player_unset_error_cb(player_h player) {
    return mock::player().player_unset_error_cb(player);
}

int player_set_buffering_cb(player_h player, player_buffering_cb callback, void *user_data) {
    return mock::player().player_set_buffering_cb(player, callback, user_data);
}

int player_unset_buffering_cb(player_h player) {
    return mock::player().player_unset_buffering_cb(player);
}

int player_set_progressive_download_message_cb(player_h player, player_pd_message_cb callback,
                                               void *user_data) {
    return mock::player().player_set_progressive_download_message_cb(player, callback, user_data);
}

int player_unset_progressive_download_message_cb(player_h player) {
    return mock::player().player_unset_progressive_download_message_cb(player);
}

int player_set_media_packet_video_frame_decoded_cb(player_h player,
                                                   player_media_packet_video_decoded_cb callback,
                                                   void *user_data) {
    return mock::player().player_set_media_packet_video_frame_decoded_cb(player, callback,
                                                                         user_data);
}

int player_unset_media_packet_video_frame_decoded_cb(player_h player) {
    return mock::player().player_unset_media_packet_video_frame_decoded_cb(player);
}

int player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback,
                                   void *user_data) {
    return mock::player().player_set_subtitle_updated_cb(player, callback, user_data);
}

int player_unset_subtitle_updated_cb(player_h player) {
    return mock::player().player_unset_subtitle_updated_cb(player);
}

int player_set_missed_plugin_info_cb(player_h player, player_missed_plugin_info_cb callback,
                                     void *user_data) {
    return mock::player().player_set_missed_plugin_info_cb(player, callback, user_data);
}

}  // extern "C"
