#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "shell/shell.h"

/// What the player needs of the rest of the host, for tests that look at the player alone: a plane
/// that keeps what it shows, sound that goes nowhere, and a record of what it reports.
namespace seams {

/// A plane that remembers the newest frame. Thread: main loop.
class RecordingPlane final : public host::VideoPlane {
public:
    [[nodiscard]] int width() const override { return width_; }
    [[nodiscard]] int height() const override { return height_; }
    void show(std::unique_ptr<host::VideoFrame> frame, int x, int y) override;
    void clear() override;
    void on_resized(std::function<void()> changed) override { changed_ = std::move(changed); }

    void resize(int width, int height);
    /// Called with each picture once it is shown.
    void on_shown(std::function<void()> shown) { shown_ = std::move(shown); }
    /// The newest frame, or null.
    [[nodiscard]] const host::VideoFrame *frame() const { return frame_.get(); }
    [[nodiscard]] int x() const { return x_; }
    [[nodiscard]] int y() const { return y_; }
    [[nodiscard]] int frames() const { return frames_; }
    /// What a person sees at a pixel of the plane, 0xRRGGBB; black outside the frame.
    [[nodiscard]] std::uint32_t pixel(int column, int row) const;
    [[nodiscard]] bool watched() const { return static_cast<bool>(changed_); }

private:
    int width_ = 360;
    int height_ = 360;
    int x_ = 0;
    int y_ = 0;
    int frames_ = 0;
    std::unique_ptr<host::VideoFrame> frame_;
    std::function<void()> changed_;
    std::function<void()> shown_;
};

/// A window as elm_win_add() gives it, and the plane below it.
[[nodiscard]] Evas_Object *window();
/// Deletes the window; the next window() is a new one.
void delete_window();
[[nodiscard]] RecordingPlane &plane();

/// Lines given to report_playback_failure(), and the number of reported completions.
[[nodiscard]] std::vector<std::string> failures();
[[nodiscard]] int completions();
/// The element that the next preparation gets for its sound.
void set_sound_sink(const char *element);
/// How often the player has asked for that element.
[[nodiscard]] int sound_sinks_asked_for();
/// Tells the player that there is a sound output again.
void return_sound();
/// Forgets all of the above.
void reset();

}  // namespace seams
