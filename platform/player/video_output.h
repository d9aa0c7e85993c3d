#pragma once

#include <gst/video/video.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

#include "player/display_geometry.h"
#include "player/frame_converter.h"
#include "player/gst_ptr.h"
#include "shell/shell.h"

namespace host {

/// The road of a picture from the decoder to the plane: converted where it arrives, kept in a slot
/// that holds the newest one only, shown by the main loop. Keeps the current decoded picture, so
/// that a change of geometry shows at once, also while paused.
/// Thread: as stated at each operation. Held by shared_ptr, since calls to the main loop are under
/// way when it goes.
class VideoOutput : public std::enable_shared_from_this<VideoOutput> {
public:
    struct Counts {
        std::uint64_t shown = 0;
        std::uint64_t replaced = 0;  ///< converted, but a newer one came before the main loop did
    };

    // Main loop.
    /// `plane` outlives this or is replaced by null before it goes.
    void set_plane(VideoPlane *plane);
    void set_mode(player_display_mode_e mode);
    [[nodiscard]] player_display_mode_e mode() const;
    void set_rotation(player_display_rotation_e rotation);
    [[nodiscard]] player_display_rotation_e rotation() const;
    void set_visible(bool visible);
    [[nodiscard]] bool visible() const;
    /// Shows nothing and forgets the current picture.
    void clear();

    // Any thread.
    /// Takes pictures from now on, with the counts at zero.
    void open();
    /// Takes no more pictures.
    void close();
    /// How the medium itself wants its pictures turned.
    void set_orientation(Orientation orientation);
    /// Size of a decoded picture as the medium wants it to be seen.
    [[nodiscard]] PixelSize upright(PixelSize decoded) const;
    /// A decoded picture whose time has come.
    void take(GstMiniPtr<GstSample> sample);
    /// The picture that was taken last, or null.
    [[nodiscard]] GstMiniPtr<GstSample> current() const;
    [[nodiscard]] Counts counts() const;

private:
    struct Converted {
        std::unique_ptr<VideoFrame> frame;
        int x = 0;
        int y = 0;
    };

    [[nodiscard]] bool wanted() const { return open_ && has_plane_ && visible_; }
    [[nodiscard]] Converted convert_current();
    void post();
    void present();
    void change(const std::function<void()> &set);

    VideoPlane *plane_ = nullptr;  ///< main loop

    mutable std::mutex mutex_;  ///< guards what follows
    bool open_ = false;
    bool has_plane_ = false;
    bool visible_ = true;
    bool posted_ = false;
    PixelSize plane_size_;
    player_display_mode_e mode_ = PLAYER_DISPLAY_MODE_LETTER_BOX;
    player_display_rotation_e rotation_ = PLAYER_DISPLAY_ROTATION_NONE;
    Orientation orientation_;
    GstMiniPtr<GstSample> current_;
    GstMiniPtr<GstCaps> caps_;  ///< those that format_ was read from
    GstVideoInfo format_;
    FrameConverter converter_;
    Converted newest_;
    Counts counts_;
};

/// The plane of an image object: it covers the object. Thread: main loop. Dies with the object.
class ImagePlane final : public VideoPlane {
public:
    explicit ImagePlane(Evas_Object *image);
    ~ImagePlane() override;
    ImagePlane(const ImagePlane &) = delete;
    ImagePlane &operator=(const ImagePlane &) = delete;

    [[nodiscard]] int width() const override;
    [[nodiscard]] int height() const override;
    void show(std::unique_ptr<VideoFrame> frame, int x, int y) override;
    void clear() override;
    void on_resized(std::function<void()> changed) override;

private:
    static void resized(void *data, Evas *evas, Evas_Object *object, void *event);

    Evas_Object *image_;
    std::unique_ptr<VideoFrame> frame_;
    std::function<void()> changed_;
};

}  // namespace host
