#pragma once

#include <gst/gst.h>

#include <atomic>
#include <cstdint>
#include <optional>

namespace host {

/// Counts what comes through a pad and notes how far into the medium it reaches. GStreamer's own
/// position jumps to the duration when a stream ends, however early. Lives as long as the pad.
class StreamWatch {
public:
    void attach(GstPad *pad);

    // Any thread.
    [[nodiscard]] std::uint64_t buffers() const { return buffers_.load(std::memory_order_relaxed); }
    /// End of the latest buffer; none before the first.
    [[nodiscard]] std::optional<int> reached_ms() const;

private:
    static GstPadProbeReturn probe(GstPad *pad, GstPadProbeInfo *info, gpointer watch);
    void take(GstBuffer *buffer);

    GstSegment segment_{};  ///< streaming thread
    std::atomic<std::uint64_t> buffers_ = 0;
    std::atomic<gint64> reached_ = -1;  ///< nanoseconds
};

}  // namespace host
