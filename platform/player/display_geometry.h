#pragma once

#include <player.h>

namespace host {

struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize &) const = default;
};

/// How a decoded picture lies on the plane: mirrored left to right first, then turned clockwise.
struct Orientation {
    int quarter_turns = 0;  ///< 0 to 3
    bool mirrored = false;
    bool operator==(const Orientation &) const = default;
};

/// `first`, then the player's own rotation.
[[nodiscard]] Orientation turned(Orientation first, player_display_rotation_e rotation);

/// What part of the decoded picture is shown, at what size, and where.
struct PictureLayout {
    int source_x = 0;  ///< of the decoded picture, in its own pixels
    int source_y = 0;
    PixelSize source;
    PixelSize scaled;  ///< size after scaling, before turning
    Orientation orientation;
    int x = 0;  ///< top left corner on the plane
    int y = 0;
    bool operator==(const PictureLayout &) const = default;

    /// Size on the plane, after turning.
    [[nodiscard]] PixelSize shown() const;
    [[nodiscard]] bool empty() const {
        return scaled.width <= 0 || scaled.height <= 0 || source.width <= 0 || source.height <= 0;
    }
};

/// A decoded picture's size and the shape of its pixels, width to height.
struct PictureShape {
    PixelSize size;
    int pixel_width = 1;
    int pixel_height = 1;
    bool operator==(const PictureShape &) const = default;

    /// Size with square pixels.
    [[nodiscard]] PixelSize square() const;
};

/// Letter box fits the whole picture; original size keeps its pixels and cuts what is too large;
/// full screen stretches; cropped full covers the plane and cuts the rest; original or letter box
/// is the original size unless that is too large; the destination region is the whole plane.
[[nodiscard]] PictureLayout lay_out(const PictureShape &picture, PixelSize plane,
                                    player_display_mode_e mode, Orientation orientation);

}  // namespace host
