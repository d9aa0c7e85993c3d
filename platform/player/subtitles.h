#pragma once

#include <gst/gst.h>

#include "player/gst_ptr.h"
#include "player/stream_settings.h"

namespace host {

/// The output of a playback's subtitles: it gives each text, without markup, to the tap when its
/// time has come, on GStreamer's threads.
/// @param taps  outlives the playback's threads
/// @return null when GStreamer lacks the part
[[nodiscard]] GstObjectPtr<GstElement> make_subtitle_output(const StreamTaps &taps);

/// Shows the texts so much later, or earlier when below 0.
void set_subtitle_offset(GstElement *output, int milliseconds);

}  // namespace host
