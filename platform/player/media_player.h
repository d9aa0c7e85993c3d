#pragma once

#include <player.h>

#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "player/callback_slot.h"
#include "player/media_source.h"
#include "player/pipeline.h"
#include "player/playback.h"
#include "player/player_host.h"
#include "player/seek_queue.h"
#include "player/task_thread.h"
#include "player/video_output.h"

namespace host {

/// The player behind a handle. Operations change the platform's state at once, under a lock, and
/// leave the work to the player's own thread, which also makes all callbacks; so no operation waits
/// for the pipeline, but prepare(), unprepare() and the destructor.
///
/// Thread: the main loop, except where stated. Results are the platform's error numbers.
class MediaPlayer final : public PlaybackListener {
public:
    MediaPlayer();
    ~MediaPlayer() override;
    MediaPlayer(const MediaPlayer &) = delete;
    MediaPlayer &operator=(const MediaPlayer &) = delete;

    int set_uri(const char *uri);
    int set_memory_buffer(const void *data, int size);
    int set_cookie(std::string_view cookie);
    int set_user_agent(std::string_view user_agent);
    int set_download_path(const char *path);
    int set_subtitle_path(const char *path);
    int set_subtitle_offset(int milliseconds);
    int prepare();
    int prepare_async(player_prepared_cb callback, void *user_data);
    int unprepare();
    int start();
    int pause();
    int stop();
    int seek(int target_ms, bool accurate, player_seek_completed_cb callback, void *user_data);
    int set_rate(float rate);
    int set_volume(float left, float right);
    void get_volume(float &left, float &right) const;
    /// Any thread.
    void apply_stream_gain(double gain);
    /// There is a sound output that wasn't there. Any thread.
    void bring_sound_back();

    [[nodiscard]] player_state_e state() const;
    int get_position(int &position_ms) const;
    int get_duration(int &duration_ms) const;
    int get_video_size(PixelSize &size) const;
    int get_codecs(std::string &audio, std::string &video) const;
    int get_buffered(int &from_percent, int &to_percent) const;
    int get_download(unsigned long &bytes, unsigned long &total_bytes) const;
    int has_captions(bool &exist) const;
    int capture(player_video_captured_cb callback, void *user_data);

    int set_display(player_display_type_e type, player_display_h display);
    [[nodiscard]] VideoOutput &video() { return *video_; }
    [[nodiscard]] PlayerStatus status() const;

    /// Delivers an error as if it came from the medium. Any thread.
    void inject_error(int code);
    void inject_interruption(player_interrupted_code_e code);
    void inject_missed_plugin(player_missed_plugin_type_e type);

    CallbackSlot<> completed;
    CallbackSlot<player_interrupted_code_e> interrupted;
    CallbackSlot<int> error;
    CallbackSlot<int> buffering;
    CallbackSlot<player_missed_plugin_type_e, const char *> missed_plugin;
    CallbackSlot<player_pd_message_type_e> download_message;
    CallbackSlot<unsigned long, char *> subtitle;
    CallbackSlot<media_packet_h> picture;

private:
    /// What the main loop and the player's thread both know.
    struct Shared {
        player_state_e state = PLAYER_STATE_IDLE;
        bool preparing = false;
        bool failed = false;
        /// Playing starts over: after a stop, or at the end.
        bool rewind = false;
        /// Said instead of the pipeline's position: after a stop, at the end, after a fault.
        std::optional<int> fixed_position;
        SeekQueue seeks;
        MediaFacts facts;
        std::string audio_codec;
        std::string video_codec;
        double rate = 1.0;
        StreamVolume volume;
        std::shared_ptr<Pipeline> pipeline;
    };

    void on_pipeline(std::shared_ptr<Pipeline> pipeline) override;
    void on_prepared(const MediaFacts &facts) override;
    void on_duration(int duration_ms) override;
    void on_codec(bool video, const std::string &name) override;
    void on_buffering(int percent) override;
    void on_missed_plugin(player_missed_plugin_type_e type, const std::string &detail) override;
    void on_download(player_pd_message_type_e type) override;
    void on_restart(int position_ms) override;
    void on_seek_done() override;
    void on_settled() override;
    void on_completed() override;
    void on_fault(const PlaybackFault &fault) override;

    int change_setting(std::string StreamSettings::*setting, std::string_view value);
    [[nodiscard]] std::shared_ptr<Pipeline> playing_pipeline(int &result) const;
    [[nodiscard]] StreamTaps taps();
    int begin_preparing();
    void open_playback(const MediaSource &source, const StreamSettings &settings);
    void close_playback();
    void complete_seeks();
    void start_next_seek();
    void follow_state();
    void accept_seek(const SeekRequest &request);
    [[nodiscard]] std::optional<int> current_position() const;
    void change_volume(const std::function<void(StreamVolume &)> &change);
    void drop_display();
    static void display_gone(void *player, Evas *evas, Evas_Object *object, void *event);

    // Main loop.
    std::optional<MediaSource> source_;
    StreamSettings settings_;
    mutable int last_position_ = 0;
    Evas_Object *display_ = nullptr;
    std::unique_ptr<ImagePlane> image_plane_;
    const std::shared_ptr<VideoOutput> video_ = std::make_shared<VideoOutput>();

    mutable std::mutex mutex_;
    Shared shared_;

    // The player's thread.
    std::unique_ptr<Playback> playback_;
    player_prepared_cb prepared_ = nullptr;
    void *prepared_data_ = nullptr;
    std::promise<int> *prepare_answer_ = nullptr;  ///< of the prepare() that waits

    TaskThread thread_;  ///< last, so that it ends before what it uses goes
};

}  // namespace host
