#pragma once

#include "shell/evas_object.h"
#include "shell/geometry.h"
#include "shell/shell.h"

namespace host {

/// The video plane as an image of the shell's canvas, black where no frame covers it.
class VideoImage : public VideoPlane {
public:
    explicit VideoImage(Evas *canvas);
    ~VideoImage() override;
    VideoImage(const VideoImage &) = delete;
    VideoImage &operator=(const VideoImage &) = delete;

    /// Where the plane is in the shell's window.
    void place(const Rect &screen);

    [[nodiscard]] int width() const override { return screen_.w; }
    [[nodiscard]] int height() const override { return screen_.h; }
    void show(std::unique_ptr<VideoFrame> frame, int x, int y) override;
    void clear() override;
    void on_resized(std::function<void()> changed) override { resized_ = std::move(changed); }

private:
    void lay_out();

    Rect screen_;
    EvasObject black_;
    EvasObject image_;
    std::unique_ptr<VideoFrame> frame_;
    int x_ = 0;
    int y_ = 0;
    std::function<void()> resized_;
};

}  // namespace host
