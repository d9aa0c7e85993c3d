#pragma once

#include "shell/evas_object.h"
#include "shell/frame_painter.h"
#include "shell/geometry.h"

#include <vector>

namespace host {

/// The watch around the screen, as images of the shell's canvas, cut so that a change of the
/// screen redraws no more of them than lies over its corners.
class FrameImage {
public:
    /// @param below an object; the frame is stacked straight below it
    explicit FrameImage(Evas_Object *below);

    void paint(const Geometry &geometry);
    /// Where the ring's mark is, in detents clockwise from the top.
    void set_ring(int detents);

private:
    void add_piece(const Picture &frame, const Rect &part, bool opaque);
    void add_corners(const Picture &frame, const Rect &screen);
    void lay_out_mark();

    Evas_Object *below_;
    std::vector<EvasObject> pieces_;
    EvasObject mark_;
    int mark_size_ = 0;
    Geometry geometry_;
    int ring_ = 0;
};

}  // namespace host
