#pragma once

#include "shell/evas_object.h"
#include "shell/geometry.h"

#include <Elementary.h>

#include <functional>
#include <memory>
#include <vector>

namespace host {

/// A window of the program, drawn as an image of the shell's canvas. Lives as long as the window.
/// Thread: main loop.
class ProgramWindow {
public:
    /// @param parent the shell's window
    /// @param above an object of the shell's canvas; the window is stacked straight below it
    /// @param deleted called when the window has been deleted, by whomever
    ProgramWindow(Evas_Object *parent, Evas_Object *above, const char *name, const Rect &screen,
                  int rotation, std::function<void(ProgramWindow *)> deleted);
    ~ProgramWindow();
    ProgramWindow(const ProgramWindow &) = delete;
    ProgramWindow &operator=(const ProgramWindow &) = delete;

    /// Null when it couldn't be made.
    [[nodiscard]] Evas_Object *window() const { return window_; }

    void place(const Rect &screen);
    /// A covered window is there, but not seen.
    void set_covered(bool covered);
    /// Turns the picture counter-clockwise by 0, 90, 180 or 270 degrees, if the program allows this
    /// turn, and tells the program.
    void turn(int degrees);
    [[nodiscard]] int rotation() const { return rotation_; }
    void set_available_rotations(std::vector<int> rotations);

    /// Whether this is the canvas that the program draws the window on.
    [[nodiscard]] bool draws_on(const Evas *canvas) const { return canvas == canvas_; }
    /// Where a rectangle of the program's canvas is in the shell's window.
    [[nodiscard]] Rect place_of(const Rect &part) const;

    /// A finger at a point of the screen. Only a finger that is down is felt.
    void finger_down(int x, int y);
    void finger_move(int x, int y);
    void finger_up(int x, int y);

private:
    static void window_deleted(void *data, Evas *evas, Evas_Object *obj, void *info);
    static void window_resized(void *data, Evas *evas, Evas_Object *obj, void *info);
    static void rendered(void *data, Evas *evas, void *info);

    void lay_out();
    void find_visible_part();
    void clip_to_visible_part();
    [[nodiscard]] int canvas_width() const;
    [[nodiscard]] int canvas_height() const;
    void feed_position(int x, int y);

    std::function<void(ProgramWindow *)> deleted_;
    EvasObject clip_;
    Evas_Object *window_ = nullptr;   ///< the program's
    Evas_Object *image_ = nullptr;    ///< the window's
    Evas *canvas_ = nullptr;          ///< the window's
    Evas_Object *content_ = nullptr;  ///< in which the toolkit lays out what fills the window
    Rect screen_;
    Rect visible_;  ///< the part of the picture that isn't transparent
    int rotation_ = 0;
    std::vector<int> available_;
    bool finger_is_down_ = false;
    bool covered_ = false;
    /// Expires with this object: the program may close its window inside any event.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace host
