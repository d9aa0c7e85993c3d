#include "shell/top_window.h"

#include <Ecore_Evas.h>
#include <Elementary.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

namespace {

constexpr char kTitle[] = "Tessel";
constexpr char kName[] = "tessel";
constexpr char kClass[] = "Tessel";
constexpr char kSelfKey[] = "tessel.top_window";
constexpr char kX11[] = "software_x11";
constexpr char kWayland[] = "wayland_shm";
/// The toolkit gives a Wayland window without a type no place on the desktop.
constexpr int kWaylandToplevel = 1;

std::string_view environment(const char *name) {
    const char *value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

/// The engines to be tried for the display that the environment names, best first; none when it
/// names no display.
std::vector<const char *> engines_for_display() {
    const std::string_view wanted = environment("ELM_ENGINE");
    if (wanted == "buffer") {
        return {};
    }
    if (wanted == "x11" || wanted == kX11) {
        return {kX11};
    }
    if (wanted == "wl" || wanted == kWayland) {
        return {kWayland};
    }
    std::vector<const char *> engines;
    if (!environment("WAYLAND_DISPLAY").empty()) {
        engines.push_back(kWayland);
    }
    if (!environment("DISPLAY").empty()) {
        engines.push_back(kX11);
    }
    return engines;
}

}  // namespace

std::unique_ptr<TopWindow> TopWindow::open(bool in_memory) {
    std::vector<const char *> engines;
    if (!in_memory) {
        engines = engines_for_display();
    }
    if (engines.empty()) {
        std::unique_ptr<TopWindow> window(new TopWindow(nullptr, nullptr));
        if (window->picture_ == nullptr) {
            std::fputs("tessel: can't draw into memory: the toolkit's buffer engine is missing\n",
                       stderr);
            return nullptr;
        }
        return window;
    }
    for (const char *engine : engines) {
        if (auto window = open_with(engine); window != nullptr) {
            return window;
        }
    }
    std::fputs(
        "tessel: can't open the display that DISPLAY or WAYLAND_DISPLAY names; "
        "--headless runs without one\n",
        stderr);
    return nullptr;
}

std::unique_ptr<TopWindow> TopWindow::open_with(const char *engine) {
    if (std::strcmp(engine, kX11) == 0) {
        silence_x11();
    }
    Handle desktop(ecore_evas_new(engine, 0, 0, 1, 1, nullptr));
    if (desktop == nullptr) {
        return nullptr;
    }
    std::unique_ptr<Presenter> presenter;
    if (std::strcmp(engine, kX11) == 0) {
        presenter = make_x11_presenter(desktop.get());
    }
    if (presenter != nullptr) {
        // Nothing of the toolkit's may come between what the presenter shows.
        ecore_evas_manual_render_set(desktop.get(), EINA_TRUE);
    } else {
        presenter = make_canvas_presenter(desktop.get());
    }
    if (std::strcmp(engine, kWayland) == 0) {
        ecore_evas_wayland_type_set(desktop.get(), kWaylandToplevel);
    }
    std::unique_ptr<TopWindow> window(new TopWindow(std::move(desktop), std::move(presenter)));
    return window->picture_ != nullptr ? std::move(window) : nullptr;
}

TopWindow::TopWindow(Handle desktop, std::unique_ptr<Presenter> presenter)
    : desktop_(std::move(desktop)),
      presenter_(std::move(presenter)),
      picture_(ecore_evas_buffer_allocfunc_new(1, 1, allocate, release, this)) {
    if (picture_ == nullptr) {
        return;
    }
    widget_.reset(elm_win_fake_add(picture_.get()));
    evas_event_callback_add(canvas(), EVAS_CALLBACK_RENDER_PRE, drawing, this);
    evas_event_callback_add(canvas(), EVAS_CALLBACK_RENDER_POST, drawn, this);
    if (desktop_ != nullptr) {
        hook_desktop();
    }
}

TopWindow::~TopWindow() {
    if (picture_ != nullptr) {
        evas_event_callback_del_full(canvas(), EVAS_CALLBACK_RENDER_PRE, drawing, this);
        evas_event_callback_del_full(canvas(), EVAS_CALLBACK_RENDER_POST, drawn, this);
    }
}

void TopWindow::hook_desktop() {
    Ecore_Evas *ee = desktop_.get();
    ecore_evas_data_set(ee, kSelfKey, this);
    ecore_evas_title_set(ee, kTitle);
    ecore_evas_name_class_set(ee, kName, kClass);
    ecore_evas_callback_resize_set(ee, [](Ecore_Evas *e) {
        int w = 0;
        int h = 0;
        ecore_evas_geometry_get(e, nullptr, nullptr, &w, &h);
        TopWindow *self = of(e);
        ecore_evas_resize(self->picture_.get(), w, h);
        if (self->events_.resized) {
            self->events_.resized(w, h);
        }
    });
    ecore_evas_callback_delete_request_set(ee, [](Ecore_Evas *e) {
        const auto &events = of(e)->events_;
        if (events.close_requested) {
            events.close_requested();
        }
    });
    ecore_evas_callback_state_change_set(ee, [](Ecore_Evas *e) {
        TopWindow *self = of(e);
        const bool minimised = ecore_evas_iconified_get(e) != EINA_FALSE;
        if (minimised != std::exchange(self->minimised_, minimised) && self->events_.minimised) {
            self->events_.minimised(minimised);
        }
    });
}

TopWindow *TopWindow::of(Ecore_Evas *ee) {
    return static_cast<TopWindow *>(ecore_evas_data_get(ee, kSelfKey));
}

void *TopWindow::allocate(void *data, int bytes) {
    auto *self = static_cast<TopWindow *>(data);
    const auto size = static_cast<std::size_t>(bytes);
    self->pixels_ =
        self->presenter_ != nullptr ? self->presenter_->allocate(size) : std::calloc(1, size);
    return self->pixels_;
}

void TopWindow::release(void *data, void *memory) {
    auto *self = static_cast<TopWindow *>(data);
    self->pixels_ = nullptr;
    if (self->presenter_ != nullptr) {
        self->presenter_->release(memory);
    } else {
        std::free(memory);
    }
}

void TopWindow::drawing(void *data, Evas * /*evas*/, void * /*info*/) {
    const auto &presenter = static_cast<TopWindow *>(data)->presenter_;
    if (presenter != nullptr) {
        presenter->before_drawing();
    }
}

void TopWindow::drawn(void *data, Evas * /*evas*/, void *info) {
    auto *self = static_cast<TopWindow *>(data);
    const auto *post = static_cast<const Evas_Event_Render_Post *>(info);
    if (self->presenter_ == nullptr || self->pixels_ == nullptr || post == nullptr) {
        return;
    }
    std::vector<Rect> changed;
    for (const Eina_List *node = post->updated_area; node != nullptr; node = node->next) {
        const auto *area = static_cast<const Eina_Rectangle *>(node->data);
        changed.push_back({area->x, area->y, area->w, area->h});
    }
    if (!changed.empty()) {
        int w = 0;
        int h = 0;
        ecore_evas_geometry_get(self->picture_.get(), nullptr, nullptr, &w, &h);
        self->presenter_->show(w, h, changed);
    }
}

void TopWindow::show(int w, int h) {
    ecore_evas_resize(picture_.get(), w, h);
    ecore_evas_show(picture_.get());
    if (desktop_ != nullptr) {
        ecore_evas_size_min_set(desktop_.get(), w, h);
        ecore_evas_size_max_set(desktop_.get(), w, h);
        ecore_evas_resize(desktop_.get(), w, h);
        ecore_evas_show(desktop_.get());
        presenter_->window_shown();
    }
}

void TopWindow::show_fullscreen() {
    // With the right size from the start nothing is drawn or negotiated twice.
    int w = 0;
    int h = 0;
    screen_size(w, h);
    if (w > 0 && h > 0) {
        ecore_evas_resize(picture_.get(), w, h);
        ecore_evas_resize(desktop_.get(), w, h);
    }
    ecore_evas_show(picture_.get());
    ecore_evas_fullscreen_set(desktop_.get(), EINA_TRUE);
    ecore_evas_show(desktop_.get());
    presenter_->window_shown();
}

Evas *TopWindow::input_canvas() const {
    return desktop_ != nullptr ? ecore_evas_get(desktop_.get()) : canvas();
}

void TopWindow::screen_size(int &w, int &h) const {
    w = 0;
    h = 0;
    if (desktop_ != nullptr) {
        ecore_evas_screen_geometry_get(desktop_.get(), nullptr, nullptr, &w, &h);
    }
}

void TopWindow::position(int &x, int &y) const {
    x = 0;
    y = 0;
    if (desktop_ != nullptr) {
        ecore_evas_geometry_get(desktop_.get(), &x, &y, nullptr, nullptr);
    }
}

void TopWindow::render() {
    ecore_evas_manual_render(picture_.get());
}

}  // namespace host
