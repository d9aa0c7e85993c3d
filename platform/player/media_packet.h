#pragma once

#include <gst/gst.h>
#include <media_packet.h>

#include <cstdint>

/// A decoded picture while a callback of the program looks at it.
struct media_packet_s {
    explicit media_packet_s(GstSample *sample);
    ~media_packet_s();
    media_packet_s(const media_packet_s &) = delete;
    media_packet_s &operator=(const media_packet_s &) = delete;

    [[nodiscard]] bool readable() const { return map.data != nullptr; }

    std::uint64_t pts = UINT64_MAX;
    GstMapInfo map{};

private:
    GstBuffer *buffer_;
};
