#pragma once

#include "shell/geometry.h"
#include "shell/top_window.h"

#include <string>

namespace host {

/// Writes what a window shows as a PNG file, after drawing what has changed.
/// @return false when the picture can't be had or the file can't be written; no part of it is left
[[nodiscard]] bool save_snapshot(TopWindow &top, const Geometry &geometry, const std::string &file);

}  // namespace host
