#pragma once

#include <gst/gst.h>

#include "player/stream_settings.h"

namespace host {

/// Gives a source of HTTP, the medium's or that of a playlist's piece, its limits and a session of
/// its own. Over one that they share, the fault of a piece and the request for the playlist wait
/// for each other for ever. Elements of other kinds are left alone. Any thread, before data flows.
void separate_http_source(GstElement *element);

/// Gives a source the user agent and the cookie that the program chose, where it takes such.
/// Any thread, before data flows.
void introduce_http_source(GstElement *source, const StreamSettings &settings);

}  // namespace host
