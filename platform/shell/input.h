#pragma once

#include "rotary/detents.h"
#include "shell/evas_object.h"
#include "shell/geometry.h"
#include "shell/key_events.h"
#include "shell/shell.h"

#include <functional>

namespace host {

/// What a person does to the watch: fingers on the screen, the ring, the keys. Real events and the
/// functions of shell.h end in the same operations. Thread: main loop.
class Input {
public:
    /// Where input goes; positions are of the round screen.
    struct Targets {
        std::function<void(int, int)> finger_down;
        std::function<void(int, int)> finger_move;
        std::function<void(int, int)> finger_up;
        std::function<void(bool, unsigned int)> detent;  ///< clockwise, time stamp
        std::function<void(Key)> key;
        std::function<void()> turn_watch;
        std::function<void(bool)> move_focus;  ///< forward
        std::function<void()> press_focused;
    };

    Input(Evas *canvas, Targets targets);
    ~Input() = default;
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    void set_geometry(const Geometry &geometry);

    /// The pointer, in pixels of the shell's window.
    void press(int x, int y);
    void move(int x, int y);
    void release(int x, int y);
    [[nodiscard]] Detents &bezel() { return bezel_; }

private:
    void hook_pointer();
    void act(KeyAction action, bool shifted);
    void drag_ring(int x, int y);

    EvasObject surface_;
    Targets targets_;
    Detents bezel_;
    Geometry geometry_;
    Geometry::Place held_ = Geometry::Place::elsewhere;  ///< what was pressed and is still held
    float ring_from_ = 0;  ///< direction up to which the drag has been turned into detents
    const KeyEvents keys_;
};

}  // namespace host
