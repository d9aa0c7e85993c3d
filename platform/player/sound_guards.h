#pragma once

#include <gst/gst.h>

namespace host {

/// Keeps from the elements of the pipeline what GStreamer doesn't survive: from a Vorbis decoder
/// the headers that tell a rate beyond its numbers or more channels than it has places for
/// loudspeakers, and from what mixes channels more of them than it can take. The element reports
/// the fault instead. Elements of other kinds are left alone. Any thread, before data flows.
void guard_sound(GstElement *element);

}  // namespace host
