#include "player/stream_watch.h"

namespace host {

void StreamWatch::attach(GstPad *pad) {
    gst_pad_add_probe(pad,
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                      &StreamWatch::probe, this, nullptr);
}

std::optional<int> StreamWatch::reached_ms() const {
    const gint64 reached = reached_.load(std::memory_order_relaxed);
    if (reached < 0) {
        return std::nullopt;
    }
    return static_cast<int>(reached / static_cast<gint64>(GST_MSECOND));
}

GstPadProbeReturn StreamWatch::probe(GstPad *, GstPadProbeInfo *info, gpointer watch) {
    auto *self = static_cast<StreamWatch *>(watch);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
        self->take(GST_PAD_PROBE_INFO_BUFFER(info));
    } else if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_SEGMENT) {
        gst_event_copy_segment(GST_PAD_PROBE_INFO_EVENT(info), &self->segment_);
    }
    return GST_PAD_PROBE_OK;
}

void StreamWatch::take(GstBuffer *buffer) {
    buffers_.fetch_add(1, std::memory_order_relaxed);
    if (segment_.format != GST_FORMAT_TIME || !GST_BUFFER_PTS_IS_VALID(buffer)) {
        return;
    }
    const GstClockTime time =
        gst_segment_to_stream_time(&segment_, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    if (!GST_CLOCK_TIME_IS_VALID(time)) {
        return;
    }
    const GstClockTime duration =
        GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : 0;
    reached_.store(static_cast<gint64>(time + duration), std::memory_order_relaxed);
}

}  // namespace host
