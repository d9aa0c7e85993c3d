#include "shell/shell.h"

#include "app/lifecycle.h"
#include "app/options.h"
#include "rotary/rotary.h"
#include "shell/frame_image.h"
#include "shell/input.h"
#include "shell/program_window.h"
#include "shell/shell_instance.h"
#include "shell/snapshot.h"
#include "shell/theme.h"
#include "shell/top_window.h"
#include "shell/video_image.h"

#include <Elementary.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

namespace host {

namespace {

/// What the platform's sizes are made for; another screen scales them.
constexpr double kReferenceSide = 360.0;
/// How much larger texts may be asked for and still fit a round screen.
constexpr double kLargestTexts = 1.3;

std::unique_ptr<Shell> instance;

std::function<void(const InputEvent &)> &input_observer() {
    static std::function<void(const InputEvent &)> observer;
    return observer;
}

void observe(const InputEvent &event) {
    // It may end its own observation.
    if (const auto observer = input_observer()) {
        observer(event);
    }
}

Geometry full_screen(int w, int h) {
    return options().framed() ? Geometry::watch_filling(w, h) : Geometry::filling(w, h);
}

Geometry first_geometry(const TopWindow &top) {
    const Options::Size size = options().shown_screen();
    if (!options().fullscreen) {
        return options().framed() ? Geometry::watch(size.width, size.height)
                                  : Geometry::bare(size.width, size.height);
    }
    int w = 0;
    int h = 0;
    top.screen_size(w, h);
    return w > 0 && h > 0 ? full_screen(w, h) : full_screen(size.width, size.height);
}

template <typename MakeGeometry>
bool start(MakeGeometry make_geometry) {
    if (instance != nullptr) {
        return true;
    }
    auto top = TopWindow::open(options().headless);
    if (top == nullptr) {
        return false;
    }
    load_platform_theme();
    // A touch screen's lists and pages follow the finger; a desktop's wait for a scroll bar's grip.
    elm_config_scroll_thumbscroll_enabled_set(EINA_TRUE);
    const Geometry geometry = make_geometry(*top);
    instance = std::make_unique<Shell>(std::move(top), geometry);
    return true;
}

}  // namespace

Shell *shell() {
    return instance.get();
}

Shell::Shell(std::unique_ptr<TopWindow> top, const Geometry &geometry)
    : top_(std::move(top)),
      video_(top_->canvas(), [this] { top_->render(); }),
      stage_(evas_object_rectangle_add(top_->canvas())),
      lid_(evas_object_rectangle_add(top_->canvas())),
      frame_(lid_.get()),
      input_(top_->input_canvas(), input_targets()),
      text_scale_(std::clamp(elm_config_scale_get(), 1.0, kLargestTexts)) {
    evas_object_color_set(stage_.get(), 0, 0, 0, 0);
    lay_out(geometry);
    top_->set_events({[this](int w, int h) { window_resized(w, h); }, [this] { close(); },
                      [](bool minimised) {
                          if (!options().watch_profile) {
                              return;
                          }
                          if (minimised) {
                              leave_foreground();
                          } else {
                              enter_foreground();
                          }
                      }});
    if (!top_->in_memory()) {
        // The kernel tells everybody who may read of a dial; it is meant for one window.
        dials_.emplace([this](int detents) {
            if (top_->focused()) {
                input_.bezel().turn_by_hand(detents);
            }
        });
    }
    if (options().fullscreen && geometry.round && !top_->in_memory()) {
        top_->show_fullscreen();
    } else {
        top_->show(geometry_.window_w, geometry_.window_h);
    }
}

Shell::~Shell() {
    top_->set_events({});
    elm_config_scale_set(text_scale_);
    // The program's windows belong to the stage's canvas: they can't outlive it. Each leaves the
    // list as it goes.
    std::vector<Evas_Object *> left;
    for (const auto &window : windows_) {
        left.push_back(window->window());
    }
    for (Evas_Object *window : left) {
        evas_object_del(window);
    }
}

Input::Targets Shell::input_targets() {
    Input::Targets targets;
    targets.finger_down = [this](int x, int y) {
        observe({.kind = InputEvent::Kind::finger_down, .x = x, .y = y});
        if (!key_presses_) {
            focus_.leave();
        }
        if (!windows_.empty()) {
            windows_.back()->finger_down(x, y);
        }
    };
    targets.finger_move = [this](int x, int y) {
        if (!windows_.empty()) {
            windows_.back()->finger_move(x, y);
        }
    };
    targets.finger_up = [this](int x, int y) {
        observe({.kind = InputEvent::Kind::finger_up, .x = x, .y = y});
        if (!windows_.empty()) {
            windows_.back()->finger_up(x, y);
        }
    };
    targets.detent = [this](bool clockwise, unsigned int stamp) {
        observe({.kind = InputEvent::Kind::detent, .clockwise = clockwise});
        ring_ = (ring_ + (clockwise ? 1 : Detents::kPerTurn - 1)) % Detents::kPerTurn;
        frame_.set_ring(ring_);
        static_cast<void>(send_detent(
            clockwise ? EEXT_ROTARY_DIRECTION_CLOCKWISE : EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE,
            stamp));
    };
    targets.key = [](Key key) { press_key(key); };
    targets.turn_watch = [this] { turn((rotation_ + 90) % 360); };
    targets.move_focus = [this](bool forward) { move_focus(forward); };
    targets.press_focused = [this] { press_focused(); };
    return targets;
}

void Shell::move_focus(bool forward) {
    observe({.kind = InputEvent::Kind::focus_moved, .forward = forward});
    if (Evas_Object *window = newest_window(); window != nullptr) {
        focus_.move(window, forward);
    }
}

/// The finger takes the road of a real one, so that what is pressed shows it and a record has it.
void Shell::press_focused() {
    Evas_Object *window = newest_window();
    if (window == nullptr) {
        return;
    }
    const auto tap = [this](const Rect &place) {
        key_presses_ = true;
        input_.press(place.x + place.w / 2, place.y + place.h / 2);
        key_presses_ = false;
        input_.release(place.x + place.w / 2, place.y + place.h / 2);
    };
    if (Evas_Object *button = focus_.button(window); button != nullptr) {
        Rect place;
        evas_object_geometry_get(button, &place.x, &place.y, &place.w, &place.h);
        tap(windows_.back()->place_of(place));
        focus_.show();
    } else if (ButtonFocus::buttons_of(window).empty()) {
        tap(geometry_.screen);
    }
}

void Shell::window_resized(int w, int h) {
    if (w == geometry_.window_w && h == geometry_.window_h) {
        return;
    }
    lay_out(options().fullscreen && geometry_.round ? full_screen(w, h)
                                                    : geometry_.centred_in(w, h));
}

void Shell::lay_out(const Geometry &geometry) {
    const bool resized =
        geometry.screen.w != geometry_.screen.w || geometry.screen.h != geometry_.screen.h;
    geometry_ = geometry;
    // A widget's size says nothing of the screen that it is on.
    if (resized && geometry.round) {
        const double scale =
            text_scale_ * std::min(geometry.screen.w, geometry.screen.h) / kReferenceSide;
        if (scale != elm_config_scale_get()) {
            elm_config_scale_set(scale);
        }
    }
    frame_.paint(geometry);
    input_.set_geometry(geometry);
    for (const auto &window : windows_) {
        // A widget that is covered has a size of its own.
        if (geometry.round || window == windows_.back()) {
            window->place(geometry.screen);
        }
    }
    video_.place(geometry.screen);
}

Evas_Object *Shell::add_window(const char *name) {
    auto window = std::make_unique<ProgramWindow>(
        top_->widget(), stage_.get(), name, geometry_.screen, rotation_,
        [this](ProgramWindow *deleted) {
            std::erase_if(windows_, [deleted](const auto &w) { return w.get() == deleted; });
        });
    if (window->window() == nullptr) {
        return nullptr;
    }
    windows_.push_back(std::move(window));
    return windows_.back()->window();
}

void Shell::show_alone(const Evas_Object *window, int w, int h) {
    const auto found = std::find_if(windows_.begin(), windows_.end(), [window](const auto &each) {
        return each->window() == window;
    });
    if (found != windows_.end()) {
        std::rotate(found, found + 1, windows_.end());
    }
    for (const auto &each : windows_) {
        each->set_covered(each->window() != window);
    }
    if (window != nullptr) {
        lay_out(Geometry::card(w, h));
        top_->show(w, h);
    }
}

ProgramWindow *Shell::find(const Evas_Object *window) const {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [window](const auto &w) { return w->window() == window; });
    return found == windows_.end() ? nullptr : found->get();
}

Evas_Object *Shell::newest_window() const {
    return windows_.empty() ? nullptr : windows_.back()->window();
}

Evas_Object *Shell::focused_button() const {
    Evas_Object *window = newest_window();
    return window != nullptr ? focus_.button(window) : nullptr;
}

bool Shell::focus_button(Evas_Object *button) {
    Evas_Object *window = newest_window();
    return window != nullptr && focus_.go_to(window, button);
}

std::optional<Rect> Shell::place_on_desktop(const Evas *canvas, const Rect &part) const {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [canvas](const auto &w) { return w->draws_on(canvas); });
    if (found == windows_.end()) {
        return std::nullopt;
    }
    Rect place = (*found)->place_of(part);
    int x = 0;
    int y = 0;
    top_->position(x, y);
    place.x += x;
    place.y += y;
    return place;
}

void Shell::close() {
    Evas_Object *window = newest_window();
    if (window == nullptr) {
        request_exit();
        return;
    }
    evas_object_smart_callback_call(window, "delete,request", nullptr);
    if (find(window) != nullptr && elm_win_autodel_get(window) != EINA_FALSE) {
        evas_object_del(window);
    }
}

void Shell::turn(int degrees) {
    if (degrees == rotation_ || degrees % 90 != 0 || degrees < 0 || degrees >= 360) {
        return;
    }
    rotation_ = degrees;
    observe({.kind = InputEvent::Kind::turned, .degrees = degrees});
    // A program may open and close windows as it is told.
    std::vector<Evas_Object *> told;
    for (const auto &window : windows_) {
        told.push_back(window->window());
    }
    for (const Evas_Object *object : told) {
        if (ProgramWindow *window = find(object); window != nullptr) {
            window->turn(degrees);
        }
    }
}

void Shell::pointer(PointerEvent event, int x, int y) {
    const int wx = geometry_.screen.x + x;
    const int wy = geometry_.screen.y + y;
    switch (event) {
    case PointerEvent::down:
        input_.press(wx, wy);
        break;
    case PointerEvent::move:
        input_.move(wx, wy);
        break;
    case PointerEvent::up:
        input_.release(wx, wy);
        break;
    }
}

bool start_shell() {
    return start([](const TopWindow &top) { return first_geometry(top); });
}

bool start_widget_shell(int w, int h) {
    return start([w, h](const TopWindow &) { return Geometry::card(w, h); });
}

void show_widget_window(Evas_Object *window, int w, int h) {
    if (instance != nullptr) {
        instance->show_alone(window, w, h);
    }
}

void stop_shell() {
    instance.reset();
}

VideoPlane *video_plane_of(Evas_Object *window) {
    return instance != nullptr && instance->find(window) != nullptr ? &instance->video() : nullptr;
}

Evas_Object *program_window() {
    return instance != nullptr ? instance->newest_window() : nullptr;
}

Evas_Object *focused_button() {
    return instance != nullptr ? instance->focused_button() : nullptr;
}

bool focus_button(Evas_Object *button) {
    return instance != nullptr && instance->focus_button(button);
}

std::optional<Rect> place_on_desktop(const Evas *canvas, const Rect &part) {
    return instance != nullptr ? instance->place_on_desktop(canvas, part) : std::nullopt;
}

bool save_screenshot(const std::string &file) {
    return instance != nullptr && save_snapshot(instance->top(), instance->geometry(), file);
}

void pointer_down(int x, int y) {
    if (instance != nullptr) {
        instance->pointer(PointerEvent::down, x, y);
    }
}

void pointer_move(int x, int y) {
    if (instance != nullptr) {
        instance->pointer(PointerEvent::move, x, y);
    }
}

void pointer_up(int x, int y) {
    if (instance != nullptr) {
        instance->pointer(PointerEvent::up, x, y);
    }
}

void turn_bezel(int detents, int interval_ms) {
    if (instance != nullptr && detents != 0) {
        instance->input().bezel().turn(detents, interval_ms);
    }
}

void observe_input(std::function<void(const InputEvent &)> observer) {
    input_observer() = std::move(observer);
}

void press_key(Key key) {
    observe({.kind = InputEvent::Kind::key, .key = key});
    switch (key) {
    case Key::back:
        static_cast<void>(send_key(EEXT_CALLBACK_BACK));
        break;
    case Key::more:
        static_cast<void>(send_key(EEXT_CALLBACK_MORE));
        break;
    case Key::home:
        leave_foreground();
        break;
    }
}

void turn_screen(int degrees) {
    if (instance != nullptr) {
        instance->turn(degrees);
    }
}

}  // namespace host
