#include "player/reference_frames.h"

#include <algorithm>
#include <string_view>

namespace host {
namespace {

/// Where the codec's configuration record says how long the length before a unit is.
constexpr gsize kH264LengthByte = 4;
constexpr gsize kH265LengthByte = 21;
constexpr unsigned kLengthMask = 0x03;

unsigned length_size_of(const GstStructure *caps, gsize place) {
    constexpr unsigned kUsual = 4;
    const GValue *value = gst_structure_get_value(caps, "codec_data");
    GstBuffer *data = value == nullptr ? nullptr : gst_value_get_buffer(value);
    std::uint8_t byte = 0;
    if (data == nullptr || gst_buffer_extract(data, place, &byte, 1) != 1) {
        return kUsual;
    }
    return (byte & kLengthMask) + 1U;
}

/// Takes the next unit off `rest`; empty at the end, or where the data is not what it should be.
std::span<const std::uint8_t> next_by_length(std::span<const std::uint8_t> &rest, unsigned size) {
    if (rest.size() <= size) {
        rest = {};
        return {};
    }
    std::size_t length = 0;
    for (const std::uint8_t byte : rest.first(size)) {
        length = length << 8U | byte;
    }
    const auto unit = rest.subspan(size, std::min(length, rest.size() - size));
    rest = rest.subspan(size + unit.size());
    return unit;
}

std::span<const std::uint8_t> next_by_start_code(std::span<const std::uint8_t> &rest) {
    static constexpr std::uint8_t kCode[] = {0, 0, 1};
    auto begin = std::search(rest.begin(), rest.end(), std::begin(kCode), std::end(kCode));
    if (begin == rest.end()) {
        rest = {};
        return {};
    }
    begin += std::size(kCode);
    const auto end = std::search(begin, rest.end(), std::begin(kCode), std::end(kCode));
    const std::span<const std::uint8_t> unit(begin, end);
    rest = {end, rest.end()};
    return unit;
}

}  // namespace

void ReferenceFrames::set_caps(const GstStructure *caps) {
    const std::string_view name = gst_structure_get_name(caps);
    codec_ = name == "video/x-h264"   ? Codec::h264
             : name == "video/x-h265" ? Codec::h265
                                      : Codec::other;
    const gchar *text = gst_structure_get_string(caps, "stream-format");
    const std::string_view format = text == nullptr ? "" : text;
    if (format == "byte-stream") {
        length_size_ = 0;
    } else {
        length_size_ =
            length_size_of(caps, codec_ == Codec::h264 ? kH264LengthByte : kH265LengthByte);
    }
}

bool ReferenceFrames::unit_is_disposable(std::span<const std::uint8_t> unit, bool &is_slice) const {
    const unsigned first = unit.front();
    if (codec_ == Codec::h264) {
        const unsigned type = first & 0x1FU;
        is_slice = type >= 1 && type <= 5;
        return (first & 0x60U) == 0;  // nal_ref_idc
    }
    const unsigned type = first >> 1U & 0x3FU;
    constexpr unsigned kFirstReferencePictureBeyond = 16;
    is_slice = type < 32;
    return type < kFirstReferencePictureBeyond && type % 2 == 0;  // the ..._N types
}

bool ReferenceFrames::is_disposable(std::span<const std::uint8_t> picture) const {
    if (codec_ == Codec::other) {
        return false;
    }
    bool disposable = false;
    while (!picture.empty()) {
        const auto unit =
            length_size_ > 0 ? next_by_length(picture, length_size_) : next_by_start_code(picture);
        if (unit.empty()) {
            continue;
        }
        bool is_slice = false;
        const bool unneeded = unit_is_disposable(unit, is_slice);
        if (is_slice && !unneeded) {
            return false;
        }
        disposable = disposable || is_slice;
        if (is_slice) {
            // All slices of a picture are of one kind.
            break;
        }
    }
    return disposable;
}

}  // namespace host
