#include <utility>

#include "player/video_output.h"

namespace host {

ImagePlane::ImagePlane(Evas_Object *image) : image_(image) {
    evas_object_image_colorspace_set(image_, EVAS_COLORSPACE_ARGB8888);
    evas_object_image_alpha_set(image_, EINA_FALSE);
    evas_object_event_callback_add(image_, EVAS_CALLBACK_RESIZE, resized, this);
}

ImagePlane::~ImagePlane() {
    evas_object_event_callback_del_full(image_, EVAS_CALLBACK_RESIZE, resized, this);
    clear();
}

int ImagePlane::width() const {
    int width = 0;
    evas_object_geometry_get(image_, nullptr, nullptr, &width, nullptr);
    return width;
}

int ImagePlane::height() const {
    int height = 0;
    evas_object_geometry_get(image_, nullptr, nullptr, nullptr, &height);
    return height;
}

void ImagePlane::show(std::unique_ptr<VideoFrame> frame, int x, int y) {
    evas_object_image_data_set(image_, nullptr);
    evas_object_image_size_set(image_, frame->width(), frame->height());
    evas_object_image_fill_set(image_, x, y, frame->width(), frame->height());
    evas_object_image_data_set(image_, const_cast<void *>(frame->pixels()));
    evas_object_image_data_update_add(image_, 0, 0, frame->width(), frame->height());
    // The canvas reads the pixels again on later redraws.
    frame_ = std::move(frame);
}

void ImagePlane::clear() {
    evas_object_image_data_set(image_, nullptr);
    frame_.reset();
}

void ImagePlane::on_resized(std::function<void()> changed) {
    changed_ = std::move(changed);
}

void ImagePlane::resized(void *data, Evas *, Evas_Object *, void *) {
    const auto *plane = static_cast<ImagePlane *>(data);
    if (plane->changed_) {
        plane->changed_();
    }
}

}  // namespace host
