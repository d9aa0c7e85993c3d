#pragma once

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <cstdint>
#include <mutex>
#include <optional>

#include "player/gst_ptr.h"
#include "player/stream_settings.h"

namespace host {

/// The output of a playback's subtitles: it gives each text, without markup, to the tap when its
/// time has come, on GStreamer's threads. It never lets the medium end later than without it.
/// Thread: any.
class SubtitleOutput {
public:
    /// @param taps  outlives the playback's threads
    SubtitleOutput(const StreamTaps &taps, int offset_ms);

    /// Null when GStreamer lacks the part.
    [[nodiscard]] GstElement *element() const { return sink_.get(); }
    /// Shows the texts so much later, or earlier when below 0.
    void set_offset(int milliseconds);
    /// Nothing is shown before the end of the medium is known, and what is due after it never is.
    /// @param milliseconds  none: it isn't known, and every text is waited for
    void set_end(std::optional<int> milliseconds);

private:
    static GstPadProbeReturn hold(GstPad *pad, GstPadProbeInfo *info, gpointer output);
    static GstPadProbeReturn watch(GstPad *pad, GstPadProbeInfo *info, gpointer output);
    static GstFlowReturn take(GstAppSink *sink, gpointer output);
    [[nodiscard]] bool admit(GstBuffer *buffer);
    void follow(GstEvent *event);
    [[nodiscard]] bool is_in_time(std::int64_t time_ns) const;
    void apply_offset();

    const StreamTaps &taps_;
    GstObjectPtr<GstElement> sink_;
    GstObjectPtr<GstPad> pad_;
    std::mutex mutex_;
    gulong hold_ = 0;  ///< 0 when the end has been told
    std::optional<std::int64_t> end_ns_;
    std::int64_t offset_ns_ = 0;
    std::optional<std::int64_t> waiting_;  ///< when the text that the sink holds was to come
};

}  // namespace host
