#include "circle/ring.h"

#include <algorithm>

namespace host::circle {
namespace {

// Shares of the face's side: on a face of 360 pixels a line of 10, 5 pixels inside the rim.
constexpr double kLineWidth = 10.0 / 360.0;
constexpr double kRimGap = 5.0 / 360.0;
constexpr double kFullTurn = 360.0;
constexpr double kTwelveOClock = 90.0;

}  // namespace

Ring::Ring(Efl_VG *container) : shape_(evas_vg_shape_add(container)) {
    evas_vg_node_color_set(shape_, 0, 0, 0, 0);
}

void Ring::set_size(int width, int height) {
    if (width != width_ || height != height_) {
        width_ = width;
        height_ = height;
        draw();
    }
}

void Ring::set_color(const Color &color) {
    if (color == color_) {
        return;
    }
    color_ = color;
    int r = color.r;
    int g = color.g;
    int b = color.b;
    evas_color_argb_premul(color.a, &r, &g, &b);
    evas_vg_shape_stroke_color_set(shape_, r, g, b, color.a);
}

void Ring::set_sweep(double degrees) {
    const double drawn = std::clamp(degrees, 0.0, kFullTurn);
    if (drawn != sweep_) {
        sweep_ = drawn;
        draw();
    }
}

void Ring::draw() {
    evas_vg_shape_reset(shape_);
    const double side = std::min(width_, height_);
    if (side <= 0.0 || sweep_ <= 0.0) {
        return;
    }
    const double line = side * kLineWidth;
    const double diameter = side * (1.0 - 2.0 * kRimGap) - line;
    const double left = (width_ - diameter) / 2.0;
    const double top = (height_ - diameter) / 2.0;
    evas_vg_shape_stroke_width_set(shape_, line);
    if (sweep_ >= kFullTurn) {
        // An arc would show where its ends meet.
        evas_vg_shape_append_circle(shape_, width_ / 2.0, height_ / 2.0, diameter / 2.0);
        return;
    }
    evas_vg_shape_stroke_cap_set(shape_, EVAS_VG_CAP_ROUND);
    evas_vg_shape_append_arc(shape_, left, top, diameter, diameter, kTwelveOClock, -sweep_);
}

}  // namespace host::circle
