#pragma once

#include <player.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform_thread.h"

/// A player without media, after the contract of player.h: it checks states and arguments, prepares
/// and seeks on a thread of its own, plays by the clock and delivers every callback on that thread.
/// What a callback's removal, an unprepare or a destroy has ended never calls back.
///
/// The operations have the names of the C functions that forward to them. The controls below them
/// are the tests' and act on the newest player; they may be called from the test's thread only.
class FakePlayer {
public:
    using Clock = support::PlatformThread::Clock;

    FakePlayer();
    ~FakePlayer();
    FakePlayer(const FakePlayer &) = delete;
    FakePlayer &operator=(const FakePlayer &) = delete;

    // What is played.
    void set_duration(int milliseconds);
    void set_video_size(int width, int height);
    void set_codecs(std::string audio, std::string video);
    void set_closed_caption(bool exists);
    /// From here on the position changes by seeks and set_position() only, and nothing completes.
    void stop_clock();
    void set_position(int milliseconds);

    // What goes wrong, and when.
    /// The next preparations fail: the synchronous one with the code, the asynchronous one by the
    /// error callback after it has returned 0.
    void fail_prepare(int error_code);
    /// Preparations wait for release_prepare().
    void hold_prepare();
    void release_prepare();
    /// Seeks wait for release_seeks() (or for an unprepare, which completes them).
    void hold_seeks();
    void release_seeks();

    // Events, each delivered on the platform's thread before the call returns.
    void deliver_completed();
    void deliver_error(int error_code);
    void deliver_interrupted(player_interrupted_code_e code);
    void deliver_missed_plugin(player_missed_plugin_type_e type, const char *detail = "codec");
    void deliver_buffering(int percent);
    void deliver_pd_message(player_pd_message_type_e type);
    void deliver_subtitle(unsigned long duration, const char *text);
    void deliver_video_frame();
    /// Runs a function on the platform's thread, where the callbacks run.
    void on_thread(const std::function<void()> &function);
    /// Returns when all that is due has been delivered.
    void drain();

    // What became of the newest player; state NONE and empty texts when there is none.
    player_state_e state();
    int players();
    std::string uri();
    std::string subtitle_path();
    float rate();
    player_display_type_e display_type();
    player_display_h display();
    player_display_mode_e display_mode();
    player_display_rotation_e display_rotation();
    std::thread::id thread_id();
    int pending_seeks();

    int player_create(player_h *player);
    int player_destroy(player_h player);
    int player_prepare(player_h player);
    int player_prepare_async(player_h player, player_prepared_cb callback, void *user_data);
    int player_unprepare(player_h player);
    int player_set_uri(player_h player, const char *uri);
    int player_set_memory_buffer(player_h player, const void *data, int size);
    int player_get_state(player_h player, player_state_e *state);
    int player_set_volume(player_h player, float left, float right);
    int player_get_volume(player_h player, float *left, float *right);
    int player_start(player_h player);
    int player_stop(player_h player);
    int player_pause(player_h player);
    int player_set_play_position(player_h player, int millisecond, bool accurate,
                                 player_seek_completed_cb callback, void *user_data);
    int player_get_play_position(player_h player, int *millisecond);
    int player_get_duration(player_h player, int *millisecond);
    int player_set_playback_rate_ex(player_h player, float rate);
    int player_set_display(player_h player, player_display_type_e type, player_display_h display);
    int player_set_display_mode(player_h player, player_display_mode_e mode);
    int player_get_display_mode(player_h player, player_display_mode_e *mode);
    int player_set_display_visible(player_h player, bool visible);
    int player_is_display_visible(player_h player, bool *visible);
    int player_set_display_rotation(player_h player, player_display_rotation_e rotation);
    int player_get_display_rotation(player_h player, player_display_rotation_e *rotation);
    int player_get_codec_info(player_h player, char **audio_codec, char **video_codec);
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
    int player_set_media_packet_video_frame_decoded_cb(
        player_h player, player_media_packet_video_decoded_cb callback, void *user_data);
    int player_unset_media_packet_video_frame_decoded_cb(player_h player);
    int player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback,
                                       void *user_data);
    int player_unset_subtitle_updated_cb(player_h player);
    int player_set_missed_plugin_info_cb(player_h player, player_missed_plugin_info_cb callback,
                                         void *user_data);

private:
    struct Media {
        int duration = 60000;
        int width = 640;
        int height = 360;
        std::string audio_codec = "aac";
        std::string video_codec = "h264";
        bool closed_caption = false;
    };

    player_s *find(player_h player);
    player_s *newest();
    int check_state(player_h player, std::initializer_list<player_state_e> states);
    int position_of(const player_s &player) const;
    void settle_clock(player_s &player, int position);
    void schedule_end(player_s &player);
    void cancel_end(player_s &player);
    void complete_seeks(player_h player);
    void finish_prepare(player_h player, unsigned generation, player_prepared_cb callback,
                        void *user_data);
    void deliver_end(player_h player, unsigned generation);
    template <typename Callback, typename Call>
    void deliver(Callback player_s::*slot, Call call);
    template <typename Callback, typename Function>
    int set_callback(player_h player, Callback player_s::*slot, Function function, void *user_data);
    template <typename Callback>
    int unset_callback(player_h player, Callback player_s::*slot);

    // Held while a callback runs: whoever removes one waits for it. Taken before m_mutex.
    std::recursive_mutex m_delivery;
    mutable std::recursive_mutex m_mutex;
    std::vector<std::unique_ptr<player_s>> m_players;
    Media m_media;
    bool m_clock_stopped = false;
    bool m_hold_prepare = false;
    std::vector<std::function<void()>> m_held_preparations;
    bool m_hold_seeks = false;
    int m_prepare_error = 0;
    unsigned m_generation = 0;
    // Last: its thread is joined before anything that it uses goes.
    support::PlatformThread m_thread;
};

namespace mock {
FakePlayer &fake_player();
}
