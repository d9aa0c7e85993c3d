#pragma once

#include <gst/gst.h>

#include <cstdint>
#include <span>

namespace host {

/// Tells, from a compressed picture alone, whether other pictures need it.
class ReferenceFrames {
public:
    /// Learns the packaging from the stream's caps; a codec that isn't known skips nothing.
    void set_caps(const GstStructure *caps);
    /// True only when it is certain that no other picture refers to this one.
    [[nodiscard]] bool is_disposable(std::span<const std::uint8_t> picture) const;

private:
    enum class Codec { other, h264, h265 };

    [[nodiscard]] bool unit_is_disposable(std::span<const std::uint8_t> unit, bool &is_slice) const;

    Codec codec_ = Codec::other;
    unsigned length_size_ = 0;  ///< bytes of the length before each unit; 0 for start codes
};

}  // namespace host
