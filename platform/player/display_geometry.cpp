#include "player/display_geometry.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace host {
namespace {

struct Extent {
    double width = 0.0;
    double height = 0.0;
};

Extent scaled_by(Extent picture, double factor) {
    return {picture.width * factor, picture.height * factor};
}

/// Size of the whole picture on the plane, parts outside the plane included.
Extent whole_extent(Extent picture, Extent plane, player_display_mode_e mode) {
    const double fit = std::min(plane.width / picture.width, plane.height / picture.height);
    const double cover = std::max(plane.width / picture.width, plane.height / picture.height);
    switch (mode) {
    case PLAYER_DISPLAY_MODE_ORIGINAL_SIZE:
        return picture;
    case PLAYER_DISPLAY_MODE_FULL_SCREEN:
    case PLAYER_DISPLAY_MODE_DST_ROI:
        return plane;
    case PLAYER_DISPLAY_MODE_CROPPED_FULL:
        return scaled_by(picture, cover);
    case PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER:
        return scaled_by(picture, std::min(fit, 1.0));
    case PLAYER_DISPLAY_MODE_LETTER_BOX:
        break;
    }
    return scaled_by(picture, fit);
}

int at_least_one(double value) {
    return std::max(1, static_cast<int>(std::lround(value)));
}

/// The centred part of `length` source pixels that shows when `whole` of them become `visible`.
int visible_source(int length, double whole, int visible) {
    return std::clamp(at_least_one(length * visible / whole), 1, length);
}

bool sideways(const Orientation &orientation) {
    return orientation.quarter_turns % 2 != 0;
}

}  // namespace

Orientation turned(Orientation first, player_display_rotation_e rotation) {
    first.quarter_turns = (first.quarter_turns + static_cast<int>(rotation)) % 4;
    return first;
}

PixelSize PictureLayout::shown() const {
    return sideways(orientation) ? PixelSize{scaled.height, scaled.width} : scaled;
}

PixelSize PictureShape::square() const {
    if (pixel_width <= 0 || pixel_height <= 0) {
        return size;
    }
    return {at_least_one(static_cast<double>(size.width) * pixel_width / pixel_height),
            size.height};
}

PictureLayout lay_out(const PictureShape &picture, PixelSize plane, player_display_mode_e mode,
                      Orientation orientation) {
    PictureLayout layout;
    layout.orientation = orientation;
    if (picture.size.width <= 0 || picture.size.height <= 0 || plane.width <= 0 ||
        plane.height <= 0) {
        return layout;
    }
    PixelSize upright = picture.square();
    if (sideways(orientation)) {
        std::swap(upright.width, upright.height);
    }
    const Extent whole =
        whole_extent({static_cast<double>(upright.width), static_cast<double>(upright.height)},
                     {static_cast<double>(plane.width), static_cast<double>(plane.height)}, mode);
    PixelSize shown{std::min(plane.width, at_least_one(whole.width)),
                    std::min(plane.height, at_least_one(whole.height))};
    layout.x = (plane.width - shown.width) / 2;
    layout.y = (plane.height - shown.height) / 2;

    Extent unturned = whole;
    layout.scaled = shown;
    if (sideways(orientation)) {
        std::swap(unturned.width, unturned.height);
        std::swap(layout.scaled.width, layout.scaled.height);
    }
    layout.source = {visible_source(picture.size.width, unturned.width, layout.scaled.width),
                     visible_source(picture.size.height, unturned.height, layout.scaled.height)};
    layout.source_x = (picture.size.width - layout.source.width) / 2;
    layout.source_y = (picture.size.height - layout.source.height) / 2;
    return layout;
}

}  // namespace host
