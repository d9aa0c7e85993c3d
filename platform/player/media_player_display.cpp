#include <gst/video/video.h>

#include <cstring>
#include <utility>
#include <vector>

#include "player/media_player.h"
#include "shell/shell.h"

namespace host {
namespace {

constexpr int kBytesPerRgbPixel = 3;
constexpr GstClockTime kCaptureLimit = 5 * GST_SECOND;

/// RGB without padding between rows.
struct RgbPicture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;
};

std::optional<RgbPicture> rgb_of(GstSample *sample) {
    const GstMiniPtr<GstCaps> rgb(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "RGB",
                                                      "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1,
                                                      nullptr));
    const GstMiniPtr<GstSample> converted(
        gst_video_convert_sample(sample, rgb.get(), kCaptureLimit, nullptr));
    GstVideoInfo info;
    if (!converted || !gst_video_info_from_caps(&info, gst_sample_get_caps(converted.get()))) {
        return std::nullopt;
    }
    GstVideoFrame frame;
    if (!gst_video_frame_map(&frame, &info, gst_sample_get_buffer(converted.get()), GST_MAP_READ)) {
        return std::nullopt;
    }
    RgbPicture picture{GST_VIDEO_FRAME_WIDTH(&frame), GST_VIDEO_FRAME_HEIGHT(&frame), {}};
    const auto row_bytes = static_cast<std::size_t>(picture.width) * kBytesPerRgbPixel;
    picture.pixels.resize(row_bytes * static_cast<std::size_t>(picture.height));
    const auto *row = static_cast<const unsigned char *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0));
    for (int y = 0; y < picture.height; ++y) {
        std::memcpy(&picture.pixels[row_bytes * static_cast<std::size_t>(y)], row, row_bytes);
        row += GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0);
    }
    gst_video_frame_unmap(&frame);
    return picture;
}

}  // namespace

int MediaPlayer::set_display(player_display_type_e type, player_display_h display) {
    auto *object = static_cast<Evas_Object *>(display);
    VideoPlane *plane = nullptr;
    std::unique_ptr<ImagePlane> image_plane;
    switch (type) {
    case PLAYER_DISPLAY_TYPE_OVERLAY:
        plane = object == nullptr ? nullptr : video_plane_of(object);
        if (plane == nullptr) {
            return PLAYER_ERROR_INVALID_PARAMETER;
        }
        break;
    case PLAYER_DISPLAY_TYPE_EVAS:
        if (object != nullptr) {
            if (std::strcmp(evas_object_type_get(object), "image") != 0) {
                return PLAYER_ERROR_INVALID_PARAMETER;
            }
            image_plane = std::make_unique<ImagePlane>(object);
            plane = image_plane.get();
        }
        break;
    case PLAYER_DISPLAY_TYPE_NONE:
        object = nullptr;
        break;
    default:
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    drop_display();
    display_ = object;
    image_plane_ = std::move(image_plane);
    if (display_ != nullptr) {
        // Before the plane's owner is told, so that the plane is still there.
        evas_object_event_callback_priority_add(display_, EVAS_CALLBACK_DEL,
                                                EVAS_CALLBACK_PRIORITY_BEFORE, display_gone, this);
    }
    video_->set_plane(plane);
    return PLAYER_ERROR_NONE;
}

void MediaPlayer::drop_display() {
    video_->set_plane(nullptr);
    image_plane_.reset();
    if (Evas_Object *display = std::exchange(display_, nullptr)) {
        evas_object_event_callback_del_full(display, EVAS_CALLBACK_DEL, display_gone, this);
    }
}

void MediaPlayer::display_gone(void *player, Evas *, Evas_Object *, void *) {
    static_cast<MediaPlayer *>(player)->drop_display();
}

int MediaPlayer::capture(player_video_captured_cb callback, void *user_data) {
    if (state() < PLAYER_STATE_READY) {
        return PLAYER_ERROR_INVALID_STATE;
    }
    std::shared_ptr<GstSample> sample(video_->current());
    if (!sample) {
        return PLAYER_ERROR_VIDEO_CAPTURE_FAILED;
    }
    thread_.post([this, sample = std::move(sample), callback, user_data] {
        std::optional<RgbPicture> picture = rgb_of(sample.get());
        if (!picture) {
            error(PLAYER_ERROR_VIDEO_CAPTURE_FAILED);
            return;
        }
        callback(picture->pixels.data(), picture->width, picture->height,
                 static_cast<unsigned int>(picture->pixels.size()), user_data);
    });
    return PLAYER_ERROR_NONE;
}

}  // namespace host
