#pragma once

#include <player.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "player/media_source.h"
#include "player/pipeline.h"
#include "player/playback_fault.h"
#include "player/seek_queue.h"
#include "player/task_thread.h"
#include "player/video_output.h"

namespace host {

/// What a medium turned out to be.
struct MediaFacts {
    int duration_ms = 0;  ///< 0 when it isn't known
    bool seekable = false;
    PixelSize video_size;
};

/// What a playback tells its player. Called on the player's thread, never inside a call to it but
/// where stated.
class PlaybackListener {
public:
    virtual ~PlaybackListener() = default;
    /// The pipeline that answers queries from now on.
    virtual void on_pipeline(std::shared_ptr<Pipeline> pipeline) = 0;
    virtual void on_prepared(const MediaFacts &facts) = 0;
    virtual void on_duration(int duration_ms) = 0;
    virtual void on_codec(bool video, const std::string &name) = 0;
    virtual void on_buffering(int percent) = 0;
    virtual void on_missed_plugin(player_missed_plugin_type_e type, const std::string &detail) = 0;
    virtual void on_download(player_pd_message_type_e type) = 0;
    /// The medium is opened once more, from its start: the seek that was under way is to be done
    /// anew when it has settled, or else one that leads back to where it was.
    virtual void on_restart(int position_ms) = 0;
    virtual void on_seek_done() = 0;
    /// Nothing is under way any more: a waiting seek may start.
    virtual void on_settled() = 0;
    virtual void on_completed() = 0;
    /// The last that is heard of this playback.
    virtual void on_fault(const PlaybackFault &fault) = 0;
};

/// One medium from preparing to the end: it watches the pipeline's messages and its silence, and
/// draws the conclusions. Thread: the player's.
class Playback {
public:
    /// Brings a message to handle() on the player's thread, with the number of the pipeline that it
    /// comes from. Any thread.
    using Forward = std::function<void(unsigned pipeline, GstMiniPtr<GstMessage> message)>;

    /// What a playback starts from.
    struct Setup {
        MediaSource source;
        StreamVolume volume;
        std::shared_ptr<VideoOutput> video;
        StreamSettings settings;
        StreamTaps taps;
    };

    Playback(Setup setup, TaskThread &thread, Forward forward, PlaybackListener &listener);
    ~Playback();
    Playback(const Playback &) = delete;
    Playback &operator=(const Playback &) = delete;

    /// Ends in on_prepared() or on_fault(), the latter also from inside this call.
    void prepare();
    /// What comes from another pipeline than the present one is stale and has no effect.
    void handle(unsigned pipeline, GstMessage *message);
    void set_playing(bool playing);
    /// Whether a seek would be told apart from what is under way.
    [[nodiscard]] bool settled() const { return !waiting_ && prepared_; }
    /// Ends in on_seek_done(), also when it failed and then also from inside this call.
    void seek(const SeekRequest &request, double rate);
    void set_volume(const StreamVolume &volume);
    void set_subtitle_offset(int milliseconds);
    /// Goes on with the sound output that there is now, as soon as nothing else is under way. Stays
    /// as it is where that would lead back to the beginning: a download that can't be sought in.
    void bring_sound_back();
    /// The medium as it was named.
    [[nodiscard]] const std::string &given() const { return source_.given(); }

private:
    enum class Wait { preparing, pausing, seeking, restarting };

    void open(const char *sound_output);
    void apply_state();
    void dispatch(GstMessage *message);
    void handle_error(GstMessage *message);
    void handle_async_done();
    void handle_end();
    void handle_buffering(GstMessage *message);
    void handle_tags(GstMessage *message);
    void handle_element(GstMessage *message);
    void handle_download(GstMessage *message);
    void handle_progress(GstMessage *message);
    void handle_clock_lost();
    void finish_opening();
    void finish_preparing();
    void report_missed();
    void return_sound();
    void restart(const char *sound_output);
    [[nodiscard]] bool lacks_memory() const;
    void fail(const PlaybackFault &fault);
    void begin_wait(Wait wait);
    void end_wait();
    void arm_watch();
    void watch();
    [[nodiscard]] bool starving() const { return buffered_percent_ < 100; }

    struct Missed {
        player_missed_plugin_type_e type;
        std::string detail;
    };

    MediaSource source_;
    StreamVolume volume_;
    std::shared_ptr<VideoOutput> video_;
    StreamSettings settings_;
    StreamTaps taps_;
    TaskThread &thread_;
    Forward forward_;
    PlaybackListener &listener_;
    std::shared_ptr<Pipeline> pipeline_;
    unsigned pipeline_number_ = 0;
    std::optional<Wait> waiting_;
    Pipeline::Clock::time_point waiting_since_;
    bool prepared_ = false;
    bool failed_ = false;
    bool live_ = false;
    bool sound_lost_ = false;
    bool sound_returns_ = false;  ///< once nothing is under way
    bool found_nothing_ = false;
    unsigned failed_allocations_before_ = 0;
    bool playing_ = false;  ///< as asked for
    GstState asked_ = GST_STATE_NULL;
    int buffered_percent_ = 100;
    int duration_ms_ = 0;
    double rate_ = 1.0;
    std::vector<Missed> missed_;
};

}  // namespace host
