#include "player/pipeline.h"

#include <dlog.h>
#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "player/decoder_tuning.h"
#include "player/http_sources.h"
#include "player/sound_guards.h"
#include "player/subtitle_file.h"

namespace host {
namespace {

/// Of playbin's flags: what the outputs do themselves is left out.
enum PlaybinFlag : unsigned {
    kVideo = 1U << 0,
    kAudio = 1U << 1,
    kText = 1U << 2,
    kNativeAudio = 1U << 5,
    kNativeVideo = 1U << 6,
    kDownload = 1U << 7,
    kBuffering = 1U << 8,
};

/// A picture that is later than this is not worth converting.
constexpr gint64 kMaxLatenessNs = 20 * GST_MSECOND;

/// "rotate-90", "flip-rotate-270" and the like, as media carry them.
Orientation orientation_of(const gchar *tag) {
    constexpr char kFlip[] = "flip-";
    constexpr char kRotate[] = "rotate-";
    Orientation orientation;
    if (g_str_has_prefix(tag, kFlip)) {
        orientation.mirrored = true;
        tag += std::strlen(kFlip);
    }
    if (g_str_has_prefix(tag, kRotate)) {
        orientation.quarter_turns =
            static_cast<int>(g_ascii_strtoll(tag + std::strlen(kRotate), nullptr, 10) / 90 % 4);
    }
    return orientation;
}

void take_orientation(GstEvent *event, VideoOutput &video) {
    GstTagList *tags = nullptr;
    gst_event_parse_tag(event, &tags);
    gchar *text = nullptr;
    if (gst_tag_list_get_string(tags, GST_TAG_IMAGE_ORIENTATION, &text)) {
        const GText orientation(text);
        video.set_orientation(orientation_of(orientation.get()));
    }
}

bool is_demuxer(GstElement *element) {
    GstElementFactory *factory = gst_element_get_factory(element);
    return factory != nullptr &&
           gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DEMUXER) != FALSE;
}

/// A demuxer that has stopped reading before it found a stream.
bool gave_up(GstElement *element) {
    if (!is_demuxer(element) || element->numsrcpads > 0) {
        return false;
    }
    const GstObjectPtr<GstPad> sink(gst_element_get_static_pad(element, "sink"));
    return sink && GST_PAD_MODE(sink.get()) == GST_PAD_MODE_PULL &&
           gst_pad_get_task_state(sink.get()) != GST_TASK_STARTED;
}

struct IteratorFree {
    void operator()(GstIterator *iterator) const { gst_iterator_free(iterator); }
};

int nearest_ms(gint64 nanoseconds) {
    return static_cast<int>((nanoseconds + GST_MSECOND / 2) / GST_MSECOND);
}

}  // namespace

Pipeline::Pipeline(Setup setup)
    : setup_(std::move(setup)),
      download_(setup_.settings.download_path,
                [this](Download::Event event) { tell_download(event); }) {
    build();
}

Pipeline::~Pipeline() {
    if (playbin_) {
        shut_down();
    }
}

void Pipeline::shut_down() {
    gst_element_set_state(playbin_.get(), GST_STATE_NULL);
    const GstObjectPtr<GstBus> bus(gst_element_get_bus(playbin_.get()));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
    g_signal_handlers_disconnect_by_data(playbin_.get(), this);
    stragglers_.stop();
    // After a fault nothing comes any more, and the program may look at the fault for long.
    download_.discard();
    const std::lock_guard lock(entry_mutex_);
    setup_.on_message = {};
}

void Pipeline::build() {
    const std::lock_guard lock(entry_mutex_);
    const auto make = [](const char *factory) {
        GstElement *element = gst_element_factory_make(factory, nullptr);
        return GstObjectPtr<GstElement>(
            element == nullptr ? nullptr : GST_ELEMENT(gst_object_ref_sink(element)));
    };
    GstObjectPtr<GstElement> playbin = make("playbin");
    video_sink_ = make("appsink");
    sound_ = std::make_unique<SoundStream>(setup_.sound_output);
    if (!playbin || !video_sink_ || sound_->element() == nullptr) {
        return;
    }
    sound_->set_volume(setup_.volume);
    playbin_ = std::move(playbin);
    const unsigned flags = kVideo | kAudio | kNativeAudio | kNativeVideo |
                           (setup_.remote ? kBuffering : 0U) |
                           (setup_.remote && download_.wanted() ? kDownload : 0U);
    g_object_set(playbin_.get(), "uri", setup_.uri.c_str(), "flags", flags, "video-sink",
                 video_sink_.get(), "audio-sink", sound_->element(), nullptr);
    connect_sinks();
    connect_subtitles();
    connect_signals();
}

void Pipeline::connect_subtitles() {
    const StreamSettings &settings = setup_.settings;
    if (settings.subtitle_path.empty()) {
        return;
    }
    if (!is_safe_subtitle_file(settings.subtitle_path)) {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "The subtitles %s are damaged and left out",
                     settings.subtitle_path.c_str());
        return;
    }
    const GText uri(gst_filename_to_uri(settings.subtitle_path.c_str(), nullptr));
    auto subtitles = std::make_unique<SubtitleOutput>(setup_.taps, settings.subtitle_offset_ms);
    if (!uri || subtitles->element() == nullptr) {
        return;
    }
    subtitles_ = std::move(subtitles);
    unsigned flags = 0;
    g_object_get(playbin_.get(), "flags", &flags, nullptr);
    g_object_set(playbin_.get(), "suburi", uri.get(), "flags", flags | kText, "text-sink",
                 subtitles_->element(), nullptr);
}

void Pipeline::take_sample(GstSample *sample) {
    if (sample == nullptr) {
        return;
    }
    GstMiniPtr<GstSample> owned(sample);
    if (gst_buffer_get_video_caption_meta(gst_sample_get_buffer(sample)) != nullptr) {
        has_captions_ = true;
    }
    setup_.taps.picture(sample);
    setup_.video->take(std::move(owned));
}

void Pipeline::connect_sinks() {
    auto *sink = GST_APP_SINK(video_sink_.get());
    const GstMiniPtr<GstCaps> caps(
        gst_caps_from_string(GST_VIDEO_CAPS_MAKE(GST_VIDEO_FORMATS_ALL)));
    g_object_set(sink, "caps", caps.get(), "sync", TRUE, "qos", TRUE, "max-lateness",
                 kMaxLatenessNs, "enable-last-sample", FALSE, "wait-on-eos", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = [](GstAppSink *from, gpointer pipeline) {
        static_cast<Pipeline *>(pipeline)->take_sample(gst_app_sink_try_pull_preroll(from, 0));
        return GST_FLOW_OK;
    };
    callbacks.new_sample = [](GstAppSink *from, gpointer pipeline) {
        static_cast<Pipeline *>(pipeline)->take_sample(gst_app_sink_try_pull_sample(from, 0));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(sink, &callbacks, this, nullptr);
    const GstObjectPtr<GstPad> pad(gst_element_get_static_pad(video_sink_.get(), "sink"));
    gst_pad_add_probe(pad.get(),
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM |
                                                   GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM),
                      &Pipeline::watch_video, this, nullptr);
    video_watch_.attach(pad.get());
    const GstObjectPtr<GstPad> sound_pad(gst_element_get_static_pad(sound_->element(), "sink"));
    sound_watch_.attach(sound_pad.get());
}

void Pipeline::connect_signals() {
    const GstObjectPtr<GstBus> bus(gst_element_get_bus(playbin_.get()));
    gst_bus_set_sync_handler(bus.get(), &Pipeline::handle_message, this, nullptr);
    g_signal_connect(playbin_.get(), "source-setup", G_CALLBACK(&Pipeline::handle_source), this);
    g_signal_connect(playbin_.get(), "deep-element-added", G_CALLBACK(&Pipeline::handle_element),
                     this);
    g_signal_connect(playbin_.get(), "deep-element-removed",
                     G_CALLBACK(&Pipeline::handle_removed_element), this);
}

GstStateChangeReturn Pipeline::set_state(GstState state) {
    return gst_element_set_state(playbin_.get(), state);
}

bool Pipeline::seek(int target_ms, bool accurate, double rate) {
    const auto flags = static_cast<GstSeekFlags>(
        GST_SEEK_FLAG_FLUSH |
        (accurate ? GST_SEEK_FLAG_ACCURATE : GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_NEAREST));
    return gst_element_seek(playbin_.get(), rate, GST_FORMAT_TIME, flags, GST_SEEK_TYPE_SET,
                            static_cast<gint64>(target_ms) * GST_MSECOND, GST_SEEK_TYPE_NONE,
                            -1) != FALSE;
}

void Pipeline::set_volume(const StreamVolume &volume) {
    sound_->set_volume(volume);
}

void Pipeline::set_subtitle_offset(int milliseconds) {
    if (subtitles_) {
        subtitles_->set_offset(milliseconds);
    }
}

void Pipeline::set_end_of_subtitles(int milliseconds) {
    if (subtitles_) {
        subtitles_->set_end(milliseconds > 0 ? std::optional(milliseconds) : std::nullopt);
    }
}

void Pipeline::recalculate_latency() {
    gst_bin_recalculate_latency(GST_BIN(playbin_.get()));
}

std::optional<int> Pipeline::query_ms(gboolean (*query)(GstElement *, GstFormat, gint64 *)) const {
    gint64 time = -1;
    if (!query(playbin_.get(), GST_FORMAT_TIME, &time) || time < 0) {
        return std::nullopt;
    }
    return nearest_ms(time);
}

std::optional<int> Pipeline::position_ms() const {
    return query_ms(gst_element_query_position);
}

std::optional<int> Pipeline::duration_ms() const {
    return query_ms(gst_element_query_duration);
}

std::optional<int> Pipeline::reached_ms() const {
    // No value is less than any.
    return std::max(video_watch_.reached_ms(), sound_watch_.reached_ms());
}

bool Pipeline::has_data() const {
    return video_watch_.buffers() + sound_watch_.buffers() > 0;
}

bool Pipeline::seekable() const {
    const GstMiniPtr<GstQuery> query(gst_query_new_seeking(GST_FORMAT_TIME));
    gboolean seekable = FALSE;
    if (gst_element_query(playbin_.get(), query.get())) {
        gst_query_parse_seeking(query.get(), nullptr, &seekable, nullptr, nullptr);
    }
    return seekable != FALSE;
}

bool Pipeline::has_sound() const {
    gint streams = 0;
    g_object_get(playbin_.get(), "n-audio", &streams, nullptr);
    return streams > 0;
}

std::optional<PixelSize> Pipeline::video_size() const {
    const GstObjectPtr<GstPad> pad(gst_element_get_static_pad(video_sink_.get(), "sink"));
    const GstMiniPtr<GstCaps> caps(gst_pad_get_current_caps(pad.get()));
    GstVideoInfo info;
    if (!caps || !gst_video_info_from_caps(&info, caps.get())) {
        return std::nullopt;
    }
    return PictureShape{{GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info)},
                        GST_VIDEO_INFO_PAR_N(&info),
                        GST_VIDEO_INFO_PAR_D(&info)}
        .square();
}

bool Pipeline::found_nothing() const {
    const std::unique_ptr<GstIterator, IteratorFree> elements(
        gst_bin_iterate_recurse(GST_BIN(playbin_.get())));
    gboolean found = FALSE;
    // A change of the elements under way ends the walk; the next look comes soon.
    (void)gst_iterator_foreach(
        elements.get(),
        [](const GValue *item, gpointer result) {
            if (gave_up(GST_ELEMENT(g_value_get_object(item)))) {
                *static_cast<gboolean *>(result) = TRUE;
            }
        },
        &found);
    return found != FALSE;
}

bool Pipeline::from_sound(GstMessage *message) const {
    GstObject *from = GST_MESSAGE_SRC(message);
    return from != nullptr &&
           gst_object_has_as_ancestor(from, GST_OBJECT(sound_->element())) != FALSE;
}

std::optional<Pipeline::Clock::time_point> Pipeline::last_data() const {
    const Clock::rep ticks = last_data_.load(std::memory_order_relaxed);
    if (ticks == 0) {
        return std::nullopt;
    }
    return Clock::time_point(Clock::duration(ticks));
}

std::optional<std::pair<int, int>> Pipeline::buffered_percents() const {
    constexpr gint64 kOnePercent = GST_FORMAT_PERCENT_SCALE;
    const GstMiniPtr<GstQuery> query(gst_query_new_buffering(GST_FORMAT_PERCENT));
    gint64 from = 0;
    gint64 to = 0;
    if (!gst_element_query(playbin_.get(), query.get())) {
        return std::nullopt;
    }
    gst_query_parse_buffering_range(query.get(), nullptr, &from, &to, nullptr);
    return std::pair(static_cast<int>(from / kOnePercent), static_cast<int>(to / kOnePercent));
}

std::uint64_t Pipeline::frames_decoded() const {
    return video_watch_.buffers();
}

std::uint64_t Pipeline::frames_late() const {
    GstStructure *stats = nullptr;
    g_object_get(video_sink_.get(), "stats", &stats, nullptr);
    guint64 dropped = 0;
    if (stats != nullptr) {
        gst_structure_get_uint64(stats, "dropped", &dropped);
        gst_structure_free(stats);
    }
    return dropped;
}

GstBusSyncReply Pipeline::handle_message(GstBus *, GstMessage *message, gpointer pipeline) {
    auto *self = static_cast<Pipeline *>(pipeline);
    GstMiniPtr<GstMessage> owned(message);
    const std::lock_guard lock(self->entry_mutex_);
    if (self->setup_.on_message) {
        self->setup_.on_message(std::move(owned));
    }
    return GST_BUS_DROP;
}

void Pipeline::handle_source(GstElement *, GstElement *source, gpointer pipeline) {
    auto *self = static_cast<Pipeline *>(pipeline);
    const std::lock_guard lock(self->entry_mutex_);
    if (!self->setup_.remote) {
        return;
    }
    introduce_http_source(source, self->setup_.settings);
    const GstObjectPtr<GstPad> pad(gst_element_get_static_pad(source, "src"));
    if (pad) {
        gst_pad_add_probe(pad.get(),
                          static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                       GST_PAD_PROBE_TYPE_BUFFER_LIST),
                          &Pipeline::watch_source, pipeline, nullptr);
    }
}

void Pipeline::handle_element(GstBin *, GstBin *, GstElement *element, gpointer pipeline) {
    tune_if_video_decoder(element);
    guard_sound(element);
    separate_http_source(element);
    auto *self = static_cast<Pipeline *>(pipeline);
    self->download_.take(element);
}

void Pipeline::handle_removed_element(GstBin *, GstBin *, GstElement *element, gpointer pipeline) {
    static_cast<Pipeline *>(pipeline)->stragglers_.take(element);
}

void Pipeline::tell_download(Download::Event event) {
    const std::lock_guard lock(entry_mutex_);
    if (setup_.on_message) {
        setup_.on_message(GstMiniPtr<GstMessage>(gst_message_new_element(
            nullptr, gst_structure_new(kDownloadMessage, kDownloadEvent, G_TYPE_INT,
                                       static_cast<int>(event), nullptr))));
    }
}

GstPadProbeReturn Pipeline::watch_source(GstPad *, GstPadProbeInfo *, gpointer pipeline) {
    static_cast<Pipeline *>(pipeline)->last_data_.store(Clock::now().time_since_epoch().count(),
                                                        std::memory_order_relaxed);
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn Pipeline::watch_video(GstPad *, GstPadProbeInfo *info, gpointer pipeline) {
    auto *self = static_cast<Pipeline *>(pipeline);
    const auto type = GST_PAD_PROBE_INFO_TYPE(info);
    if ((type & GST_PAD_PROBE_TYPE_QUERY_DOWNSTREAM) != 0) {
        GstQuery *query = GST_PAD_PROBE_INFO_QUERY(info);
        if ((type & GST_PAD_PROBE_TYPE_PUSH) != 0 &&
            GST_QUERY_TYPE(query) == GST_QUERY_ALLOCATION) {
            // Without it a decoder copies each picture to get rid of the padding around it.
            gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
            return GST_PAD_PROBE_HANDLED;
        }
        return GST_PAD_PROBE_OK;
    }
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    if (event != nullptr && GST_EVENT_TYPE(event) == GST_EVENT_TAG) {
        const std::lock_guard lock(self->entry_mutex_);
        take_orientation(event, *self->setup_.video);
    }
    return GST_PAD_PROBE_OK;
}

}  // namespace host
