#pragma once

#include <gst/gst.h>

#include <functional>
#include <string>

namespace host {

/// What a player was told beside its medium; empty where nothing was. Any thread.
struct StreamSettings {
    std::string cookie;
    std::string user_agent;
    std::string subtitle_path;
    int subtitle_offset_ms = 0;
    /// Where a progressive download is kept.
    std::string download_path;
};

/// What goes to the program from GStreamer's threads themselves, at the time it is due.
struct StreamTaps {
    std::function<void(unsigned long duration_ms, const std::string &text)> subtitle;
    std::function<void(GstSample *picture)> picture;
};

}  // namespace host
