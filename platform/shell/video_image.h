#pragma once

#include "shell/evas_object.h"
#include "shell/geometry.h"
#include "shell/shell.h"

namespace host {

/// The video plane as an image of the shell's canvas, black where no frame covers it.
class VideoImage : public VideoPlane {
public:
    /// @param draw draws the canvas at once. A frame that waited for the toolkit's own next turn of
    ///        drawing would wake two threads more, which costs more than the drawing itself.
    VideoImage(Evas *canvas, std::function<void()> draw);
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
    std::function<void()> draw_;
    std::function<void()> resized_;
};

}  // namespace host
