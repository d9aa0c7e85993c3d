#pragma once

#include <gst/gst.h>

namespace host {

/// Keeps from a Vorbis decoder of the pipeline the headers that GStreamer doesn't survive: those
/// that tell a rate beyond its numbers, or more channels than it has places for loudspeakers. The
/// decoder then finds no header and reports a fault. Elements of other kinds are left alone. Any
/// thread, before data flows.
void guard_if_sound_decoder(GstElement *element);

}  // namespace host
