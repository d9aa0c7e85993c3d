#include "player/media_packet.h"

#include <cerrno>

media_packet_s::media_packet_s(GstSample *sample) : buffer_(gst_sample_get_buffer(sample)) {
    if (buffer_ == nullptr || !gst_buffer_map(buffer_, &map, GST_MAP_READ)) {
        map = {};
        return;
    }
    const GstClockTime time = gst_segment_to_stream_time(gst_sample_get_segment(sample),
                                                         GST_FORMAT_TIME, GST_BUFFER_PTS(buffer_));
    pts = GST_CLOCK_TIME_IS_VALID(time) ? time : UINT64_MAX;
}

media_packet_s::~media_packet_s() {
    if (readable()) {
        gst_buffer_unmap(buffer_, &map);
    }
}

int media_packet_get_pts(media_packet_h packet, uint64_t *pts) {
    if (packet == nullptr || pts == nullptr) {
        return -EINVAL;
    }
    *pts = packet->pts;
    return 0;
}

int media_packet_get_buffer_size(media_packet_h packet, uint64_t *size) {
    if (packet == nullptr || size == nullptr) {
        return -EINVAL;
    }
    *size = packet->map.size;
    return 0;
}

int media_packet_get_buffer_data_ptr(media_packet_h packet, void **data) {
    if (packet == nullptr || data == nullptr) {
        return -EINVAL;
    }
    *data = packet->map.data;
    return 0;
}
