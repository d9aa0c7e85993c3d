#pragma once

#include <string>

namespace host {

/// Whether GStreamer survives the subtitles of a file: in one that counts frames it takes a line
/// such as "{1}{2" for a pair of numbers, and goes on behind a brace that isn't there. True for a
/// file that can't be read. Blocks while it reads. Any thread.
[[nodiscard]] bool is_safe_subtitle_file(const std::string &path);

}  // namespace host
