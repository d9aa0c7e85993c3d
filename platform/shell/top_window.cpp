#include "shell/top_window.h"

#include <Ecore_Evas.h>
#include <Elementary.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

namespace {

constexpr char kTitle[] = "Tessel";
constexpr char kName[] = "tessel";
constexpr char kClass[] = "Tessel";
constexpr char kSelfKey[] = "tessel.top_window";

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
    if (wanted == "x11" || wanted == "software_x11") {
        return {"software_x11"};
    }
    if (wanted == "wl" || wanted == "wayland_shm") {
        return {"wayland_shm"};
    }
    std::vector<const char *> engines;
    if (!environment("WAYLAND_DISPLAY").empty()) {
        engines.push_back("wayland_shm");
    }
    if (!environment("DISPLAY").empty()) {
        engines.push_back("software_x11");
    }
    return engines;
}

}  // namespace

std::unique_ptr<TopWindow> TopWindow::open(bool in_memory) {
    // A frame is drawn in less time than it takes to hand it to the toolkit's drawing thread.
    setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 0);
    std::vector<const char *> engines;
    if (!in_memory) {
        engines = engines_for_display();
    }
    if (engines.empty()) {
        Handle handle(ecore_evas_buffer_new(1, 1));
        if (handle == nullptr) {
            std::fputs("tessel: can't draw into memory: the toolkit's buffer engine is missing\n",
                       stderr);
            return nullptr;
        }
        return std::unique_ptr<TopWindow>(new TopWindow(std::move(handle), true));
    }
    for (const char *engine : engines) {
        Handle handle(ecore_evas_new(engine, 0, 0, 1, 1, nullptr));
        if (handle != nullptr) {
            return std::unique_ptr<TopWindow>(new TopWindow(std::move(handle), false));
        }
    }
    std::fputs(
        "tessel: can't open the display that DISPLAY or WAYLAND_DISPLAY names; "
        "--headless runs without one\n",
        stderr);
    return nullptr;
}

TopWindow::TopWindow(Handle handle, bool in_memory)
    : ee_(std::move(handle)), widget_(elm_win_fake_add(ee_.get())), in_memory_(in_memory) {
    Ecore_Evas *ee = ee_.get();
    ecore_evas_data_set(ee, kSelfKey, this);
    ecore_evas_title_set(ee, kTitle);
    ecore_evas_name_class_set(ee, kName, kClass);
    ecore_evas_callback_resize_set(ee, [](Ecore_Evas *e) {
        int w = 0;
        int h = 0;
        ecore_evas_geometry_get(e, nullptr, nullptr, &w, &h);
        const auto &events = of(e)->events_;
        if (events.resized) {
            events.resized(w, h);
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

TopWindow::~TopWindow() = default;

TopWindow *TopWindow::of(Ecore_Evas *ee) {
    return static_cast<TopWindow *>(ecore_evas_data_get(ee, kSelfKey));
}

void TopWindow::show(int w, int h) {
    ecore_evas_size_min_set(ee_.get(), w, h);
    ecore_evas_size_max_set(ee_.get(), w, h);
    ecore_evas_resize(ee_.get(), w, h);
    ecore_evas_show(ee_.get());
}

void TopWindow::show_fullscreen() {
    // With the right size from the start nothing is drawn or negotiated twice.
    int w = 0;
    int h = 0;
    screen_size(w, h);
    if (w > 0 && h > 0) {
        ecore_evas_resize(ee_.get(), w, h);
    }
    ecore_evas_fullscreen_set(ee_.get(), EINA_TRUE);
    ecore_evas_show(ee_.get());
}

Evas *TopWindow::canvas() const {
    return ecore_evas_get(ee_.get());
}

void TopWindow::screen_size(int &w, int &h) const {
    w = 0;
    h = 0;
    if (!in_memory_) {
        ecore_evas_screen_geometry_get(ee_.get(), nullptr, nullptr, &w, &h);
    }
}

void TopWindow::render() {
    ecore_evas_manual_render(ee_.get());
}

const void *TopWindow::pixels() const {
    return in_memory_ ? ecore_evas_buffer_pixels_get(ee_.get()) : nullptr;
}

}  // namespace host
