#pragma once

#include <gst/gst.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "player/display_geometry.h"
#include "player/download.h"
#include "player/gst_ptr.h"
#include "player/sound_stream.h"
#include "player/stragglers.h"
#include "player/stream_settings.h"
#include "player/stream_watch.h"
#include "player/subtitles.h"
#include "player/video_output.h"

namespace host {

/// One running playbin with the player's own outputs. It reports what happens as GStreamer's
/// messages and leaves all decisions to its owner.
///
/// Thread: one at a time changes states and seeks; queries and counts are for any thread.
class Pipeline {
public:
    using Clock = std::chrono::steady_clock;
    /// An element message with a Download::Event, as a number.
    static constexpr char kDownloadMessage[] = "download";
    static constexpr char kDownloadEvent[] = "event";
    using MessageHandler = std::function<void(GstMiniPtr<GstMessage>)>;

    struct Setup {
        std::string uri;
        bool remote = false;
        const char *sound_output = nullptr;
        StreamVolume volume;
        std::shared_ptr<VideoOutput> video;
        StreamSettings settings;
        StreamTaps taps;
        MessageHandler on_message;  ///< any thread; not after shut_down() has returned
    };

    explicit Pipeline(Setup setup);
    ~Pipeline();
    Pipeline(const Pipeline &) = delete;
    Pipeline &operator=(const Pipeline &) = delete;

    /// False when GStreamer lacks a part that every playback needs.
    [[nodiscard]] bool complete() const { return playbin_ != nullptr; }

    GstStateChangeReturn set_state(GstState state);
    /// Stops all threads of the pipeline; it only answers questions after that.
    void shut_down();
    /// Starts a flushing seek; its end is an ASYNC_DONE message. One that is not accurate goes to a
    /// keyframe beside the target, the nearest where the container's demuxer can tell.
    [[nodiscard]] bool seek(int target_ms, bool accurate, double rate);
    void set_volume(const StreamVolume &volume);
    void set_subtitle_offset(int milliseconds);
    /// Until then no subtitle is shown. @param milliseconds  the medium's duration; 0: not known
    void set_end_of_subtitles(int milliseconds);
    void recalculate_latency();

    [[nodiscard]] std::optional<int> position_ms() const;
    [[nodiscard]] std::optional<int> duration_ms() const;
    /// How far into the medium its last pictures and sounds reached.
    [[nodiscard]] std::optional<int> reached_ms() const;
    /// Whether a picture or a sound has come to an output.
    [[nodiscard]] bool has_data() const;
    [[nodiscard]] bool seekable() const;
    [[nodiscard]] bool has_sound() const;
    /// Size of the decoded picture with square pixels; none without video.
    [[nodiscard]] std::optional<PixelSize> video_size() const;
    /// Whether a demuxer has come to the end of the medium without a stream. Its error message is
    /// lost when it comes while the demuxer is still being put in place.
    [[nodiscard]] bool found_nothing() const;
    /// Whether the message comes from the sound output.
    [[nodiscard]] bool from_sound(GstMessage *message) const;
    /// Whether a picture so far has carried closed captions.
    [[nodiscard]] bool has_captions() const { return has_captions_; }
    /// The part of the medium that is there, in percent: from, to; none where it isn't known.
    [[nodiscard]] std::optional<std::pair<int, int>> buffered_percents() const;
    [[nodiscard]] const Download &download() const { return download_; }
    /// When the source gave data last; none before the first.
    [[nodiscard]] std::optional<Clock::time_point> last_data() const;

    [[nodiscard]] std::uint64_t frames_decoded() const;
    [[nodiscard]] std::uint64_t frames_late() const;

private:
    void build();
    void connect_sinks();
    void connect_subtitles();
    void take_sample(GstSample *sample);
    void tell_download(Download::Event event);
    void connect_signals();
    [[nodiscard]] std::optional<int> query_ms(gboolean (*query)(GstElement *, GstFormat,
                                                                gint64 *)) const;

    static GstBusSyncReply handle_message(GstBus *bus, GstMessage *message, gpointer pipeline);
    static void handle_source(GstElement *playbin, GstElement *source, gpointer pipeline);
    static void handle_element(GstBin *bin, GstBin *parent, GstElement *element, gpointer pipeline);
    static void handle_removed_element(GstBin *bin, GstBin *parent, GstElement *element,
                                       gpointer pipeline);
    static GstPadProbeReturn watch_source(GstPad *pad, GstPadProbeInfo *info, gpointer pipeline);
    static GstPadProbeReturn watch_video(GstPad *pad, GstPadProbeInfo *info, gpointer pipeline);

    /// Held while GStreamer's threads enter: they see what was built before.
    std::mutex entry_mutex_;
    Setup setup_;
    GstObjectPtr<GstElement> playbin_;
    GstObjectPtr<GstElement> video_sink_;
    std::unique_ptr<SoundStream> sound_;
    std::unique_ptr<SubtitleOutput> subtitles_;  ///< null without
    Stragglers stragglers_;
    Download download_;
    std::atomic<bool> has_captions_ = false;
    StreamWatch video_watch_;
    StreamWatch sound_watch_;
    std::atomic<Clock::rep> last_data_ = 0;  ///< ticks of the clock; 0 before the first
};

}  // namespace host
