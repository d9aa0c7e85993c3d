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

constexpr char kTooManyChannels[] = "the sound has too many channels";
constexpr char kRateBeyondNumbers[] = "the sound has a rate beyond all numbers";

/// What these give is why the sound can't be played; null: nothing is known against it.
using Reason = const char *;

Reason fault_of_header(std::string_view header) {
    std::uint32_t rate = 0;
    if (!header.starts_with(kIdentification) || header.size() < kRatePlace + sizeof rate) {
        return nullptr;
    }
    std::memcpy(&rate, header.data() + kRatePlace, sizeof rate);
    if (GUINT32_FROM_LE(rate) >
        static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
        return kRateBeyondNumbers;
    }
    return static_cast<std::uint8_t>(header[kChannelsPlace]) > kMostChannels ? kTooManyChannels
                                                                             : nullptr;
}

Reason fault_of(GstBuffer *buffer) {
    GstMapInfo map;
    if (buffer == nullptr || !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        return nullptr;
    }
    const Reason reason =
        fault_of_header(std::string_view(reinterpret_cast<const char *>(map.data), map.size));
    gst_buffer_unmap(buffer, &map);
    return reason;
}

/// Demuxers give the headers with the format, too.
Reason fault_of_headers(const GstStructure *format) {
    const GValue *headers = gst_structure_get_value(format, "streamheader");
    const guint count = headers != nullptr && GST_VALUE_HOLDS_ARRAY(headers) != FALSE
                            ? gst_value_array_get_size(headers)
                            : 0;
    Reason reason = nullptr;
    for (guint index = 0; index < count && reason == nullptr; ++index) {
        const GValue *header = gst_value_array_get_value(headers, index);
        if (GST_VALUE_HOLDS_BUFFER(header) != FALSE) {
            reason = fault_of(gst_value_get_buffer(header));
        }
    }
    return reason;
}

Reason fault_of(GstEvent *event) {
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) {
        return nullptr;
    }
    GstCaps *caps = nullptr;
    gst_event_parse_caps(event, &caps);
    const GstStructure *format = gst_caps_get_structure(caps, 0);
    int channels = 0;
    if (gst_structure_get_int(format, "channels", &channels) != FALSE && channels > kMostChannels) {
        return kTooManyChannels;
    }
    return fault_of_headers(format);
}

GstPadProbeReturn guard(GstPad *pad, GstPadProbeInfo *info, gpointer) {
    const Reason reason = (GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0
                              ? fault_of(GST_PAD_PROBE_INFO_BUFFER(info))
                              : fault_of(GST_PAD_PROBE_INFO_EVENT(info));
    if (reason == nullptr) {
        return GST_PAD_PROBE_OK;
    }
    const GstObjectPtr<GstElement> element(gst_pad_get_parent_element(pad));
    GST_ELEMENT_ERROR(element.get(), STREAM, DECODE, ("%s", reason), (nullptr));
    return GST_PAD_PROBE_DROP;
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
