#pragma once

#include "shell/geometry.h"

#include <cstdint>
#include <vector>

namespace host {

/// A picture in memory: premultiplied ARGB, rows without gaps.
struct Picture {
    int w = 0;
    int h = 0;
    std::vector<std::uint32_t> pixels;
};

/// Paints all that surrounds the round screen: the watch on its backdrop, or black. The screen
/// itself is left transparent, with a smooth edge.
[[nodiscard]] Picture paint_frame(const Geometry &geometry);

/// Paints the mark that travels round the ring as it is turned.
[[nodiscard]] Picture paint_mark(const Geometry &geometry);

}  // namespace host
