#include "player/subtitles.h"

#include <gst/app/gstappsink.h>

#include <memory>
#include <string>
#include <string_view>

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

GstObjectPtr<GstElement> make_subtitle_output(const StreamTaps &taps) {
    GstElement *element = gst_element_factory_make("appsink", nullptr);
    if (element == nullptr) {
        return nullptr;
    }
    GstObjectPtr<GstElement> sink(GST_ELEMENT(gst_object_ref_sink(element)));
    const GstMiniPtr<GstCaps> caps(gst_caps_from_string(kTextFormats));
    // A text may be long in coming: nothing waits for it.
    g_object_set(sink.get(), "caps", caps.get(), "sync", TRUE, "async", FALSE, "wait-on-eos", FALSE,
                 nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink *from, gpointer to) {
        const GstMiniPtr<GstSample> sample(gst_app_sink_try_pull_sample(from, 0));
        if (sample) {
            give(*static_cast<const StreamTaps *>(to), sample.get());
        }
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks,
                               const_cast<StreamTaps *>(&taps), nullptr);
    return sink;
}

void set_subtitle_offset(GstElement *output, int milliseconds) {
    g_object_set(output, "ts-offset", static_cast<gint64>(milliseconds) * GST_MSECOND, nullptr);
}

}  // namespace host
