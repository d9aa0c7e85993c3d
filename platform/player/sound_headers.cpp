#include "player/sound_headers.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "player/gst_ptr.h"

namespace host {
namespace {

constexpr std::string_view kVorbisDecoder = "vorbisdec";
constexpr std::string_view kIdentification = "\x01vorbis";
/// Behind the name, the version and the number of channels.
constexpr std::size_t kRatePlace = kIdentification.size() + 4 + 1;

bool has_impossible_rate(GstBuffer *buffer) {
    GstMapInfo map;
    if (buffer == nullptr || !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        return false;
    }
    const std::string_view data(reinterpret_cast<const char *>(map.data), map.size);
    std::uint32_t rate = 0;
    if (data.starts_with(kIdentification) && data.size() >= kRatePlace + sizeof rate) {
        std::memcpy(&rate, data.data() + kRatePlace, sizeof rate);
        rate = GUINT32_FROM_LE(rate);
    }
    gst_buffer_unmap(buffer, &map);
    return rate > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
}

/// Demuxers give the headers with the format, too.
bool has_impossible_rate(GstEvent *event) {
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) {
        return false;
    }
    GstCaps *caps = nullptr;
    gst_event_parse_caps(event, &caps);
    const GValue *headers =
        gst_structure_get_value(gst_caps_get_structure(caps, 0), "streamheader");
    const guint count = headers != nullptr && GST_VALUE_HOLDS_ARRAY(headers) != FALSE
                            ? gst_value_array_get_size(headers)
                            : 0;
    for (guint index = 0; index < count; ++index) {
        const GValue *header = gst_value_array_get_value(headers, index);
        if (GST_VALUE_HOLDS_BUFFER(header) != FALSE &&
            has_impossible_rate(gst_value_get_buffer(header))) {
            return true;
        }
    }
    return false;
}

GstPadProbeReturn guard(GstPad *, GstPadProbeInfo *info, gpointer) {
    const bool impossible = (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0
                                ? has_impossible_rate(GST_PAD_PROBE_INFO_BUFFER(info))
                                : has_impossible_rate(GST_PAD_PROBE_INFO_EVENT(info));
    return impossible ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

}  // namespace

void guard_if_sound_decoder(GstElement *element) {
    GstElementFactory *factory = gst_element_get_factory(element);
    if (factory == nullptr || kVorbisDecoder != GST_OBJECT_NAME(factory)) {
        return;
    }
    const GstObjectPtr<GstPad> sink(gst_element_get_static_pad(element, "sink"));
    gst_pad_add_probe(sink.get(),
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                      &guard, nullptr, nullptr);
}

}  // namespace host
