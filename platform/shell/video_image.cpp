#include "shell/video_image.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace host {

namespace {

constexpr int kBytesPerPixel = 4;

}  // namespace

VideoImage::VideoImage(Evas *canvas, std::function<void()> draw)
    : black_(evas_object_rectangle_add(canvas)),
      image_(evas_object_image_add(canvas)),
      draw_(std::move(draw)) {
    evas_object_color_set(black_.get(), 0, 0, 0, 255);
    evas_object_show(black_.get());
    evas_object_image_alpha_set(image_.get(), EINA_FALSE);
    evas_object_image_smooth_scale_set(image_.get(), EINA_FALSE);
    evas_object_image_pixels_dirty_set(image_.get(), EINA_FALSE);
}

VideoImage::~VideoImage() {
    VideoImage::clear();
}

void VideoImage::place(const Rect &screen) {
    const bool resized = screen.w != screen_.w || screen.h != screen_.h;
    screen_ = screen;
    evas_object_geometry_set(black_.get(), screen.x, screen.y, screen.w, screen.h);
    if (frame_ != nullptr) {
        lay_out();
    }
    if (resized && resized_) {
        resized_();
    }
}

void VideoImage::show(std::unique_ptr<VideoFrame> frame, int x, int y) {
    if (frame == nullptr) {
        clear();
        return;
    }
    // Rows may be longer than the picture: the image then is as wide as a row, and only the picture
    // is shown of it.
    const int row = frame->stride() / kBytesPerPixel;
    const bool same_shape = frame_ != nullptr && frame_->stride() == frame->stride() &&
                            frame_->width() == frame->width() &&
                            frame_->height() == frame->height() && x == x_ && y == y_;
    Evas_Object *image = image_.get();
    if (!same_shape) {
        evas_object_image_data_set(image, nullptr);
        evas_object_image_size_set(image, row, frame->height());
    }
    // The toolkit reads these pixels, and never writes them, until it is given others.
    evas_object_image_data_set(image, const_cast<void *>(frame->pixels()));
    evas_object_image_data_update_add(image, 0, 0, frame->width(), frame->height());
    frame_ = std::move(frame);
    if (!same_shape) {
        x_ = x;
        y_ = y;
        lay_out();
    }
    draw_();
}

void VideoImage::lay_out() {
    const int left = std::max(x_, 0);
    const int top = std::max(y_, 0);
    const int right = std::min(x_ + frame_->width(), screen_.w);
    const int bottom = std::min(y_ + frame_->height(), screen_.h);
    if (right <= left || bottom <= top) {
        evas_object_hide(image_.get());
        return;
    }
    const int row = frame_->stride() / kBytesPerPixel;
    evas_object_image_fill_set(image_.get(), x_ - left, y_ - top, row, frame_->height());
    evas_object_geometry_set(image_.get(), screen_.x + left, screen_.y + top, right - left,
                             bottom - top);
    evas_object_show(image_.get());
}

void VideoImage::clear() {
    evas_object_hide(image_.get());
    evas_object_image_data_set(image_.get(), nullptr);
    frame_.reset();
}

}  // namespace host
