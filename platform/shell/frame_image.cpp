#include "shell/frame_image.h"

#include "rotary/detents.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>

namespace host {

namespace {

/// Each row of pieces over the corners is as high as this share of the screen: lower rows follow
/// the round edge more closely, but each piece costs its own handling in every frame.
constexpr int kCornerRows = 12;

constexpr std::uint32_t kAlphaMask = 0xff000000U;

EvasObject image_of(Evas_Object *below, const Picture &frame, const Rect &part, bool opaque) {
    EvasObject image(evas_object_image_filled_add(evas_object_evas_get(below)));
    evas_object_image_alpha_set(image.get(), opaque ? EINA_FALSE : EINA_TRUE);
    evas_object_image_size_set(image.get(), part.w, part.h);
    auto *pixels = static_cast<char *>(evas_object_image_data_get(image.get(), EINA_TRUE));
    if (pixels != nullptr) {
        const int stride = evas_object_image_stride_get(image.get());
        for (int y = 0; y < part.h; ++y) {
            const auto start = static_cast<std::size_t>(part.y + y) * frame.w + part.x;
            std::memcpy(pixels + static_cast<std::ptrdiff_t>(y) * stride, &frame.pixels[start],
                        static_cast<std::size_t>(part.w) * sizeof(std::uint32_t));
        }
        evas_object_image_data_set(image.get(), pixels);
        evas_object_image_data_update_add(image.get(), 0, 0, part.w, part.h);
    }
    evas_object_pass_events_set(image.get(), EINA_TRUE);
    evas_object_stack_below(image.get(), below);
    return image;
}

}  // namespace

FrameImage::FrameImage(Evas_Object *below) : below_(below) {}

void FrameImage::paint(const Geometry &geometry) {
    geometry_ = geometry;
    pieces_.clear();
    mark_.reset();
    const Picture frame = paint_frame(geometry);
    const Rect &s = geometry.screen;
    const int right = s.x + s.w;
    const int bottom = s.y + s.h;
    add_piece(frame, {0, 0, frame.w, s.y}, true);
    add_piece(frame, {0, bottom, frame.w, frame.h - bottom}, true);
    add_piece(frame, {0, s.y, s.x, s.h}, true);
    add_piece(frame, {right, s.y, frame.w - right, s.h}, true);
    add_corners(frame, s);
    if (geometry.framed) {
        const Picture mark = paint_mark(geometry);
        mark_size_ = mark.w;
        mark_ = image_of(below_, mark, {0, 0, mark.w, mark.h}, false);
        evas_object_resize(mark_.get(), mark.w, mark.h);
        lay_out_mark();
        evas_object_show(mark_.get());
    }
}

void FrameImage::add_piece(const Picture &frame, const Rect &part, bool opaque) {
    if (part.w <= 0 || part.h <= 0) {
        return;
    }
    EvasObject image = image_of(below_, frame, part, opaque);
    evas_object_geometry_set(image.get(), part.x, part.y, part.w, part.h);
    evas_object_show(image.get());
    pieces_.push_back(std::move(image));
}

void FrameImage::add_corners(const Picture &frame, const Rect &screen) {
    const int row_height = std::max(1, screen.h / kCornerRows);
    const auto covered = [&frame](int x, int y) {
        return (frame.pixels[static_cast<std::size_t>(y) * frame.w + x] & kAlphaMask) != 0;
    };
    const int middle = screen.x + screen.w / 2;
    for (int y = screen.y; y < screen.y + screen.h; y += row_height) {
        const int h = std::min(row_height, screen.y + screen.h - y);
        int left = screen.x;
        int right = screen.x + screen.w;
        for (int line = y; line < y + h; ++line) {
            while (left < middle && covered(left, line)) {
                ++left;
            }
            while (right > middle && covered(right - 1, line)) {
                --right;
            }
        }
        add_piece(frame, {screen.x, y, left - screen.x, h}, false);
        add_piece(frame, {right, y, screen.x + screen.w - right, h}, false);
    }
}

void FrameImage::set_ring(int detents) {
    ring_ = detents;
    lay_out_mark();
}

void FrameImage::lay_out_mark() {
    if (mark_ == nullptr) {
        return;
    }
    const double angle = 2.0 * std::numbers::pi * ring_ / Detents::kPerTurn;
    const Rect &s = geometry_.screen;
    const double out = geometry_.glass + (geometry_.ring - geometry_.glass) * 0.32;
    // Walks outward from the middle until the ring: right for the round screen and for a long one.
    const double dx = std::sin(angle);
    const double dy = -std::cos(angle);
    const double cx = s.x + s.w / 2.0;
    const double cy = s.y + s.h / 2.0;
    double radius = std::min(s.w, s.h) / 2.0;
    while (geometry_.edge_distance(static_cast<float>(cx + dx * radius),
                                   static_cast<float>(cy + dy * radius)) < out) {
        radius += 0.5;
    }
    evas_object_move(mark_.get(),
                     static_cast<int>(std::lround(cx + dx * radius - mark_size_ / 2.0)),
                     static_cast<int>(std::lround(cy + dy * radius - mark_size_ / 2.0)));
}

}  // namespace host
