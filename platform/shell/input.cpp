#include "shell/input.h"

#include <cmath>
#include <utility>

namespace host {

namespace {

constexpr int kFirstButton = 1;

}  // namespace

Input::Input(Evas *canvas, Targets targets)
    : surface_(evas_object_rectangle_add(canvas)),
      targets_(std::move(targets)),
      bezel_(targets_.detent),
      keys_([this](KeyAction action, bool shifted) { act(action, shifted); }) {
    evas_object_color_set(surface_.get(), 0, 0, 0, 0);
    evas_object_show(surface_.get());
    hook_pointer();
}

void Input::set_geometry(const Geometry &geometry) {
    geometry_ = geometry;
    evas_object_geometry_set(surface_.get(), 0, 0, geometry.window_w, geometry.window_h);
}

void Input::hook_pointer() {
    evas_object_event_callback_add(
        surface_.get(), EVAS_CALLBACK_MOUSE_DOWN,
        [](void *data, Evas *, Evas_Object *, void *info) {
            const auto *event = static_cast<const Evas_Event_Mouse_Down *>(info);
            if (event->button == kFirstButton) {
                static_cast<Input *>(data)->press(event->canvas.x, event->canvas.y);
            }
        },
        this);
    evas_object_event_callback_add(
        surface_.get(), EVAS_CALLBACK_MOUSE_MOVE,
        [](void *data, Evas *, Evas_Object *, void *info) {
            const auto *event = static_cast<const Evas_Event_Mouse_Move *>(info);
            static_cast<Input *>(data)->move(event->cur.canvas.x, event->cur.canvas.y);
        },
        this);
    evas_object_event_callback_add(
        surface_.get(), EVAS_CALLBACK_MOUSE_UP,
        [](void *data, Evas *, Evas_Object *, void *info) {
            const auto *event = static_cast<const Evas_Event_Mouse_Up *>(info);
            if (event->button == kFirstButton) {
                static_cast<Input *>(data)->release(event->canvas.x, event->canvas.y);
            }
        },
        this);
    evas_object_event_callback_add(
        surface_.get(), EVAS_CALLBACK_MOUSE_WHEEL,
        [](void *data, Evas *, Evas_Object *, void *info) {
            // Away from the hand is clockwise on the upright wheel, to the right on the other.
            const auto *event = static_cast<const Evas_Event_Mouse_Wheel *>(info);
            const int clockwise = event->direction == 0 ? -event->z : event->z;
            if (clockwise != 0) {
                static_cast<Input *>(data)->bezel_.turn_by_hand(clockwise);
            }
        },
        this);
}

void Input::press(int x, int y) {
    held_ = geometry_.at(x, y);
    switch (held_) {
    case Geometry::Place::screen:
        targets_.finger_down(x - geometry_.screen.x, y - geometry_.screen.y);
        break;
    case Geometry::Place::ring:
        ring_from_ = geometry_.direction(static_cast<float>(x), static_cast<float>(y));
        break;
    case Geometry::Place::back_key:
        targets_.key(Key::back);
        break;
    case Geometry::Place::home_key:
        targets_.key(Key::home);
        break;
    case Geometry::Place::elsewhere:
        break;
    }
}

void Input::move(int x, int y) {
    if (held_ == Geometry::Place::screen) {
        targets_.finger_move(x - geometry_.screen.x, y - geometry_.screen.y);
    } else if (held_ == Geometry::Place::ring) {
        drag_ring(x, y);
    }
}

void Input::release(int x, int y) {
    if (std::exchange(held_, Geometry::Place::elsewhere) == Geometry::Place::screen) {
        targets_.finger_up(x - geometry_.screen.x, y - geometry_.screen.y);
    }
}

void Input::drag_ring(int x, int y) {
    float turned = geometry_.direction(static_cast<float>(x), static_cast<float>(y)) - ring_from_;
    turned -= std::round(turned);  // the shorter way round
    const int detents = static_cast<int>(std::trunc(turned * Detents::kPerTurn));
    if (detents != 0) {
        ring_from_ += static_cast<float>(detents) / Detents::kPerTurn;
        bezel_.turn_by_hand(detents);
    }
}

void Input::act(KeyAction action, bool shifted) {
    switch (action) {
    case KeyAction::back:
        targets_.key(Key::back);
        break;
    case KeyAction::more:
        targets_.key(Key::more);
        break;
    case KeyAction::home:
        targets_.key(Key::home);
        break;
    case KeyAction::clockwise:
        bezel_.turn_by_hand(1);
        break;
    case KeyAction::counter_clockwise:
        bezel_.turn_by_hand(-1);
        break;
    case KeyAction::turn_watch:
        targets_.turn_watch();
        break;
    case KeyAction::focus:
        targets_.move_focus(!shifted);
        break;
    case KeyAction::press:
        targets_.press_focused();
        break;
    }
}

}  // namespace host
