#include "player/video_output.h"

#include <utility>

#include "common/main_loop.h"

namespace host {

void VideoOutput::set_plane(VideoPlane *plane) {
    if (plane_ != nullptr && plane_ != plane) {
        plane_->on_resized({});
        plane_->clear();
    }
    plane_ = plane;
    if (plane_ != nullptr) {
        plane_->on_resized([this] {
            change([this] { plane_size_ = {plane_->width(), plane_->height()}; });
        });
    }
    change([this] {
        has_plane_ = plane_ != nullptr;
        plane_size_ = has_plane_ ? PixelSize{plane_->width(), plane_->height()} : PixelSize{};
    });
}

void VideoOutput::set_mode(player_display_mode_e mode) {
    change([this, mode] { mode_ = mode; });
}

player_display_mode_e VideoOutput::mode() const {
    const std::lock_guard lock(mutex_);
    return mode_;
}

void VideoOutput::set_rotation(player_display_rotation_e rotation) {
    change([this, rotation] { rotation_ = rotation; });
}

player_display_rotation_e VideoOutput::rotation() const {
    const std::lock_guard lock(mutex_);
    return rotation_;
}

void VideoOutput::set_visible(bool visible) {
    if (!visible && plane_ != nullptr) {
        plane_->clear();
    }
    change([this, visible] { visible_ = visible; });
}

bool VideoOutput::visible() const {
    const std::lock_guard lock(mutex_);
    return visible_;
}

void VideoOutput::clear() {
    {
        const std::lock_guard lock(mutex_);
        current_.reset();
        caps_.reset();
        newest_ = {};
        orientation_ = {};
    }
    if (plane_ != nullptr) {
        plane_->clear();
    }
}

void VideoOutput::open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    counts_ = {};
    orientation_ = {};
}

void VideoOutput::close() {
    const std::lock_guard lock(mutex_);
    open_ = false;
}

void VideoOutput::set_orientation(Orientation orientation) {
    const std::lock_guard lock(mutex_);
    orientation_ = orientation;
}

PixelSize VideoOutput::upright(PixelSize decoded) const {
    const std::lock_guard lock(mutex_);
    return orientation_.quarter_turns % 2 == 0 ? decoded : PixelSize{decoded.height, decoded.width};
}

void VideoOutput::take(GstMiniPtr<GstSample> sample) {
    const std::lock_guard lock(mutex_);
    if (!open_) {
        return;
    }
    // What was shown as the first picture of a pause comes again when playing starts.
    const bool again =
        current_ && gst_sample_get_buffer(current_.get()) == gst_sample_get_buffer(sample.get());
    current_ = std::move(sample);
    if (again || !wanted()) {
        return;
    }
    Converted converted = convert_current();
    if (!converted.frame) {
        return;
    }
    if (newest_.frame) {
        ++counts_.replaced;
    }
    newest_ = std::move(converted);
    post();
}

GstMiniPtr<GstSample> VideoOutput::current() const {
    const std::lock_guard lock(mutex_);
    return GstMiniPtr<GstSample>(current_ ? gst_sample_ref(current_.get()) : nullptr);
}

VideoOutput::Counts VideoOutput::counts() const {
    const std::lock_guard lock(mutex_);
    return counts_;
}

VideoOutput::Converted VideoOutput::convert_current() {
    GstCaps *caps = gst_sample_get_caps(current_.get());
    GstBuffer *buffer = gst_sample_get_buffer(current_.get());
    if (caps == nullptr || buffer == nullptr) {
        return {};
    }
    if (caps != caps_.get()) {
        caps_.reset(gst_caps_ref(caps));
        if (!gst_video_info_from_caps(&format_, caps)) {
            caps_.reset();
            return {};
        }
    }
    const PictureShape picture{{GST_VIDEO_INFO_WIDTH(&format_), GST_VIDEO_INFO_HEIGHT(&format_)},
                               GST_VIDEO_INFO_PAR_N(&format_),
                               GST_VIDEO_INFO_PAR_D(&format_)};
    const PictureLayout layout =
        lay_out(picture, plane_size_, mode_, turned(orientation_, rotation_));
    return {converter_.convert(buffer, format_, layout), layout.x, layout.y};
}

void VideoOutput::post() {
    if (posted_) {
        return;
    }
    posted_ = true;
    post_to_main_loop([output = shared_from_this()] { output->present(); });
}

void VideoOutput::present() {
    Converted newest;
    {
        const std::lock_guard lock(mutex_);
        posted_ = false;
        newest = std::exchange(newest_, {});
        if (!newest.frame || !wanted()) {
            return;
        }
        ++counts_.shown;
    }
    plane_->show(std::move(newest.frame), newest.x, newest.y);
}

void VideoOutput::change(const std::function<void()> &set) {
    Converted repainted;
    {
        const std::lock_guard lock(mutex_);
        set();
        if (!current_ || !wanted()) {
            newest_ = {};
            return;
        }
        // The waiting picture is the current one at the old geometry.
        newest_ = {};
        repainted = convert_current();
    }
    if (repainted.frame) {
        plane_->show(std::move(repainted.frame), repainted.x, repainted.y);
    }
}

}  // namespace host
