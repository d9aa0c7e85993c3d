#pragma once

#include <Elementary.h>

namespace host::circle {

/// Red, green, blue, alpha, 0 to 255, not premultiplied.
struct Color {
    int r = 0;
    int g = 0;
    int b = 0;
    int a = 0;

    friend bool operator==(const Color &, const Color &) = default;
};

/// A ring along the rim of a round face, of which a sweep from 12 o'clock clockwise is drawn. One
/// vector object of the canvas with a single stroke. Main loop.
class Ring {
public:
    /// @param container  the vector object's root, which owns what is drawn
    explicit Ring(Efl_VG *container);

    /// Places the ring in a face of this size in pixels.
    void set_size(int width, int height);
    void set_color(const Color &color);
    /// @param degrees  at 0 and below nothing is drawn, at 360 and above the whole ring
    void set_sweep(double degrees);

private:
    void draw();

    Efl_VG *shape_;
    Color color_;
    int width_ = 0;
    int height_ = 0;
    double sweep_ = 0.0;
};

}  // namespace host::circle
