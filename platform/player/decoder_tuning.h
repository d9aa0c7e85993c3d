#pragma once

#include <gst/gst.h>

namespace host {

/// Makes a video decoder of the pipeline take no more threads than its picture size is worth, and
/// keeps from it, on the way to the target of an accurate seek, the pictures that nothing refers
/// to. Elements of other kinds are left alone. Any thread, before data flows.
void tune_if_video_decoder(GstElement *element);

}  // namespace host
