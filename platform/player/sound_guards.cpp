#include "player/sound_guards.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "player/gst_ptr.h"

namespace host {
namespace {

/// As many as GStreamer mixes: less than it has places for loudspeakers.
constexpr int kMostChannels = 63;
constexpr std::string_view kMixer = "audioconvert";
constexpr std::string_view kVorbisDecoder = "vorbisdec";
constexpr std::string_view kIdentification = "\x01vorbis";
/// Behind the name and the version.
constexpr std::size_t kChannelsPlace = kIdentification.size() + 4;
constexpr std::size_t kRatePlace = kChannelsPlace + 1;

bool is_impossible(std::string_view header) {
    std::uint32_t rate = 0;
    if (!header.starts_with(kIdentification) || header.size() < kRatePlace + sizeof rate) {
        return false;
    }
    std::memcpy(&rate, header.data() + kRatePlace, sizeof rate);
    rate = GUINT32_FROM_LE(rate);
    return static_cast<std::uint8_t>(header[kChannelsPlace]) > kMostChannels ||
           rate > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
}

bool is_impossible(GstBuffer *buffer) {
    GstMapInfo map;
    if (buffer == nullptr || !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        return false;
    }
    const bool impossible =
        is_impossible(std::string_view(reinterpret_cast<const char *>(map.data), map.size));
    gst_buffer_unmap(buffer, &map);
    return impossible;
}

/// Demuxers give the headers with the format, too.
bool has_impossible_header(const GstStructure *format) {
    const GValue *headers = gst_structure_get_value(format, "streamheader");
    const guint count = headers != nullptr && GST_VALUE_HOLDS_ARRAY(headers) != FALSE
                            ? gst_value_array_get_size(headers)
                            : 0;
    for (guint index = 0; index < count; ++index) {
        const GValue *header = gst_value_array_get_value(headers, index);
        if (GST_VALUE_HOLDS_BUFFER(header) != FALSE &&
            is_impossible(gst_value_get_buffer(header))) {
            return true;
        }
    }
    return false;
}

bool has_too_many_channels(const GstStructure *format) {
    int channels = 0;
    return gst_structure_get_int(format, "channels", &channels) != FALSE &&
           channels > kMostChannels;
}

bool is_impossible(GstEvent *event) {
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) {
        return false;
    }
    GstCaps *caps = nullptr;
    gst_event_parse_caps(event, &caps);
    const GstStructure *format = gst_caps_get_structure(caps, 0);
    return has_too_many_channels(format) || has_impossible_header(format);
}

GstPadProbeReturn guard(GstPad *, GstPadProbeInfo *info, gpointer) {
    const bool impossible = (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0
                                ? is_impossible(GST_PAD_PROBE_INFO_BUFFER(info))
                                : is_impossible(GST_PAD_PROBE_INFO_EVENT(info));
    return impossible ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
}

}  // namespace

void guard_sound(GstElement *element) {
    GstElementFactory *factory = gst_element_get_factory(element);
    if (factory == nullptr ||
        (kVorbisDecoder != GST_OBJECT_NAME(factory) && kMixer != GST_OBJECT_NAME(factory))) {
        return;
    }
    const GstObjectPtr<GstPad> sink(gst_element_get_static_pad(element, "sink"));
    gst_pad_add_probe(sink.get(),
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                      &guard, nullptr, nullptr);
}

}  // namespace host
