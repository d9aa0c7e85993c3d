#pragma once

#include <Evas.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "shell/geometry.h"

namespace host {

/// A converted picture, ready to be shown: BGRx, top row first. Its pixels stay mapped until it is
/// destroyed. May be created on any thread; destroyed on the main loop.
class VideoFrame {
public:
    virtual ~VideoFrame() = default;
    [[nodiscard]] virtual const void *pixels() const = 0;
    [[nodiscard]] virtual int width() const = 0;   ///< pixels
    [[nodiscard]] virtual int height() const = 0;  ///< pixels
    [[nodiscard]] virtual int stride() const = 0;  ///< bytes from row to row
};

/// The plane below the program's window. Its size is that of the round screen in real pixels; it
/// doesn't turn with the window. Thread: main loop.
class VideoPlane {
public:
    virtual ~VideoPlane() = default;
    [[nodiscard]] virtual int width() const = 0;   ///< pixels
    [[nodiscard]] virtual int height() const = 0;  ///< pixels
    /// Shows `frame` unscaled with its top left corner at x, y of the plane; what it doesn't cover
    /// is black. The frame before it is freed. A frame larger than the plane is cut.
    virtual void show(std::unique_ptr<VideoFrame> frame, int x, int y) = 0;
    /// Shows nothing.
    virtual void clear() = 0;
    /// `changed` is called after the plane's size has changed; empty ends that.
    virtual void on_resized(std::function<void()> changed) = 0;
};

/// The plane below `window`, one that elm_win_add() gave to the program; null for any other object.
[[nodiscard]] VideoPlane *video_plane_of(Evas_Object *window);

/// The program's live window, or null.
[[nodiscard]] Evas_Object *program_window();

/// The button of the program's live window that the keyboard is at and can press, or null.
[[nodiscard]] Evas_Object *focused_button();

/// Takes the keyboard to a button of the program's live window.
/// @return false when it isn't one that can be seen and pressed, and nothing has changed
bool focus_button(Evas_Object *button);

/// Where a rectangle of a canvas of the program's windows is on the desktop, turned as the watch
/// is.
/// @return nothing for any other canvas
[[nodiscard]] std::optional<Rect> place_on_desktop(const Evas *canvas, const Rect &part);

/// Starts the toolkit side of the shell for options(): called by the life cycle before create.
/// @return false, after one clear line on standard error, when no screen can be had.
[[nodiscard]] bool start_shell();
/// The same for widgets: the window has the widget's size in pixels, and nothing around it.
[[nodiscard]] bool start_widget_shell(int w, int h);
/// Shows one of the program's windows alone, and gives the shell's window its size; null shows none
/// of them.
void show_widget_window(Evas_Object *window, int w, int h);
/// Frees the top-level window and all that belongs to it.
void stop_shell();

/// Writes what the shell shows, bezel included, as a PNG file. Renders a pending change first.
[[nodiscard]] bool save_screenshot(const std::string &file);

/// Input as a person gives it, in pixels of the round screen. Used by the control socket; the real
/// pointer, wheel and keys take the same road.
void pointer_down(int x, int y);
void pointer_move(int x, int y);
void pointer_up(int x, int y);
/// `detents` > 0 clockwise, < 0 counter-clockwise, `interval_ms` between two of them.
void turn_bezel(int detents, int interval_ms);
enum class Key { back, more, home };
void press_key(Key key);
/// Turns the watch: 0, 90, 180 or 270 degrees.
void turn_screen(int degrees);

/// Something that was done to the watch, by a person or by the functions above.
struct InputEvent {
    enum class Kind { finger_down, finger_up, detent, key, turned, focus_moved };
    Kind kind;
    int x = 0;  ///< of the finger, in pixels of the round screen
    int y = 0;
    bool clockwise = false;
    Key key = Key::back;
    int degrees = 0;      ///< turned to
    bool forward = true;  ///< where the focus moves
};
/// `observer` is told of each from now on, before the program is; empty ends that. Main loop.
void observe_input(std::function<void(const InputEvent &)> observer);

}  // namespace host
