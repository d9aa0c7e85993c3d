#pragma once

#include "rotary/dial_devices.h"
#include "shell/button_focus.h"
#include "shell/evas_object.h"
#include "shell/frame_image.h"
#include "shell/geometry.h"
#include "shell/input.h"
#include "shell/program_window.h"
#include "shell/top_window.h"
#include "shell/video_image.h"

#include <memory>
#include <optional>
#include <vector>

namespace host {

enum class PointerEvent { down, move, up };

/// The watch: its window, the video plane, the program's windows over it, the frame over both.
/// Thread: main loop.
class Shell {
public:
    Shell(std::unique_ptr<TopWindow> top, const Geometry &geometry);
    ~Shell();
    Shell(const Shell &) = delete;
    Shell &operator=(const Shell &) = delete;

    /// @return a new window of the program, on top of its others; null on failure
    [[nodiscard]] Evas_Object *add_window(const char *name);
    /// Null when the object is no window of the program.
    [[nodiscard]] ProgramWindow *find(const Evas_Object *window) const;
    [[nodiscard]] Evas_Object *newest_window() const;
    /// The button of the newest window that a key presses, or null.
    [[nodiscard]] Evas_Object *focused_button() const;
    bool focus_button(Evas_Object *button);
    /// Where a rectangle of a window's canvas is on the desktop; nothing for another canvas.
    [[nodiscard]] std::optional<Rect> place_on_desktop(const Evas *canvas, const Rect &part) const;

    [[nodiscard]] VideoImage &video() { return video_; }
    [[nodiscard]] Input &input() { return input_; }
    [[nodiscard]] TopWindow &top() { return *top_; }
    [[nodiscard]] const Geometry &geometry() const { return geometry_; }

    /// Puts a window on top of the program's others, which are covered, and makes the shell as
    /// large as it.
    void show_alone(const Evas_Object *window, int w, int h);

    void turn(int degrees);
    /// Positions are of the round screen.
    void pointer(PointerEvent event, int x, int y);

private:
    [[nodiscard]] Input::Targets input_targets();
    void window_resized(int w, int h);
    void lay_out(const Geometry &geometry);
    void close();
    void move_focus(bool forward);
    void press_focused();

    // In the order of stacking, lowest first.
    std::unique_ptr<TopWindow> top_;
    VideoImage video_;
    EvasObject stage_;  ///< the program's windows are stacked below it
    EvasObject lid_;    ///< never shown; the frame is stacked below it
    FrameImage frame_;
    Input input_;
    std::optional<DialDevices> dials_;  ///< none where nobody sees what they turn
    std::vector<std::unique_ptr<ProgramWindow>> windows_;  ///< oldest first
    ButtonFocus focus_;
    bool key_presses_ = false;  ///< the finger that comes down is none
    const double text_scale_;   ///< as the toolkit was configured by the user
    Geometry geometry_;
    int rotation_ = 0;
    int ring_ = 0;  ///< detents clockwise from the top
};

/// The running shell, or null.
[[nodiscard]] Shell *shell();

}  // namespace host
