#include "player/subtitles.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr char kTextFormats[] = "text/x-raw, format={utf8, pango-markup}";

struct MarkupFree {
    void operator()(GMarkupParseContext *context) const { g_markup_parse_context_free(context); }
};

/// The text alone of "a <b>word</b>"; as it is when that is no markup.
std::string without_markup(const std::string &text) {
    std::string plain;
    GMarkupParser parser{};
    parser.text = [](GMarkupParseContext *, const gchar *part, gsize size, gpointer to, GError **) {
        static_cast<std::string *>(to)->append(part, size);
    };
    const std::unique_ptr<GMarkupParseContext, MarkupFree> context(
        g_markup_parse_context_new(&parser, static_cast<GMarkupParseFlags>(0), &plain, nullptr));
    const std::string document = "<text>" + text + "</text>";
    const bool sound =
        g_markup_parse_context_parse(context.get(), document.c_str(),
                                     static_cast<gssize>(document.size()), nullptr) != FALSE &&
        g_markup_parse_context_end_parse(context.get(), nullptr) != FALSE;
    return sound ? plain : text;
}

bool is_markup(GstSample *sample) {
    const GstCaps *caps = gst_sample_get_caps(sample);
    const gchar *format = caps == nullptr
                              ? nullptr
                              : gst_structure_get_string(gst_caps_get_structure(caps, 0), "format");
    return format != nullptr && std::string_view(format) == "pango-markup";
}

void give(const StreamTaps &taps, GstSample *sample) {
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    GstMapInfo map;
    if (buffer == nullptr || !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        return;
    }
    const std::string text(reinterpret_cast<const char *>(map.data), map.size);
    gst_buffer_unmap(buffer, &map);
    const unsigned long duration =
        GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) / GST_MSECOND : 0;
    taps.subtitle(duration, is_markup(sample) ? without_markup(text) : text);
}

}  // namespace

SubtitleOutput::SubtitleOutput(const StreamTaps &taps, int offset_ms)
    : taps_(taps), offset_ns_(static_cast<std::int64_t>(offset_ms) * GST_MSECOND) {
    GstElement *element = gst_element_factory_make("appsink", nullptr);
    if (element == nullptr) {
        return;
    }
    sink_.reset(GST_ELEMENT(gst_object_ref_sink(element)));
    const GstMiniPtr<GstCaps> caps(gst_caps_from_string(kTextFormats));
    // A text may be long in coming: nothing waits for it.
    g_object_set(element, "caps", caps.get(), "sync", TRUE, "async", FALSE, "wait-on-eos", FALSE,
                 nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = &SubtitleOutput::take;
    gst_app_sink_set_callbacks(GST_APP_SINK(element), &callbacks, this, nullptr);
    pad_.reset(gst_element_get_static_pad(element, "sink"));
    hold_ = gst_pad_add_probe(
        pad_.get(),
        static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BLOCK | GST_PAD_PROBE_TYPE_BUFFER),
        &SubtitleOutput::hold, nullptr, nullptr);
    gst_pad_add_probe(pad_.get(),
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM |
                                                   GST_PAD_PROBE_TYPE_EVENT_FLUSH),
                      &SubtitleOutput::watch, this, nullptr);
}

void SubtitleOutput::set_offset(int milliseconds) {
    const std::lock_guard lock(mutex_);
    offset_ns_ = static_cast<std::int64_t>(milliseconds) * GST_MSECOND;
    // The one that waits already isn't moved behind the end, where it would be waited for.
    if (!waiting_ || is_in_time(*waiting_)) {
        apply_offset();
    }
}

void SubtitleOutput::set_end(std::optional<int> milliseconds) {
    gulong hold = 0;
    {
        const std::lock_guard lock(mutex_);
        end_ns_.reset();
        if (milliseconds) {
            end_ns_ = static_cast<std::int64_t>(*milliseconds) * GST_MSECOND;
        }
        hold = std::exchange(hold_, 0);
    }
    if (hold != 0) {
        gst_pad_remove_probe(pad_.get(), hold);
    }
}

GstPadProbeReturn SubtitleOutput::hold(GstPad *, GstPadProbeInfo *, gpointer) {
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn SubtitleOutput::watch(GstPad *, GstPadProbeInfo *info, gpointer output) {
    auto *self = static_cast<SubtitleOutput *>(output);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
        return self->admit(GST_PAD_PROBE_INFO_BUFFER(info)) ? GST_PAD_PROBE_OK : GST_PAD_PROBE_DROP;
    }
    GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
    self->follow(event);
    // The sink would wait for the end of a time without a text.
    return GST_EVENT_TYPE(event) == GST_EVENT_GAP ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

bool SubtitleOutput::admit(GstBuffer *buffer) {
    const std::lock_guard lock(mutex_);
    if (!GST_BUFFER_PTS_IS_VALID(buffer)) {
        return true;
    }
    const auto time = static_cast<std::int64_t>(GST_BUFFER_PTS(buffer));
    if (!is_in_time(time)) {
        return false;
    }
    waiting_ = time;
    apply_offset();
    return true;
}

void SubtitleOutput::follow(GstEvent *event) {
    // The sink would end with the time of its last text.
    if (GST_EVENT_TYPE(event) == GST_EVENT_EOS) {
        g_object_set(sink_.get(), "sync", FALSE, nullptr);
    } else if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP ||
               GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT) {
        g_object_set(sink_.get(), "sync", TRUE, nullptr);
    }
}

bool SubtitleOutput::is_in_time(std::int64_t time_ns) const {
    return !end_ns_ || time_ns + offset_ns_ < *end_ns_;
}

void SubtitleOutput::apply_offset() {
    g_object_set(sink_.get(), "ts-offset", static_cast<gint64>(offset_ns_), nullptr);
}

GstFlowReturn SubtitleOutput::take(GstAppSink *sink, gpointer output) {
    auto *self = static_cast<SubtitleOutput *>(output);
    {
        const std::lock_guard lock(self->mutex_);
        self->waiting_.reset();
    }
    const GstMiniPtr<GstSample> sample(gst_app_sink_try_pull_sample(sink, 0));
    if (sample) {
        give(self->taps_, sample.get());
    }
    return GST_FLOW_OK;
}

}  // namespace host
