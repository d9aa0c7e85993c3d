#pragma once

#include "shell/evas_object.h"

#include <Ecore_Evas.h>

#include <functional>
#include <memory>

namespace host {

/// The one window that the desktop knows, or a canvas in memory where there is no desktop.
/// Thread: main loop.
class TopWindow {
public:
    struct Events {
        std::function<void(int, int)> resized;
        std::function<void()> close_requested;
        std::function<void(bool)> minimised;  ///< and whether it is now
    };

    /// Opens a window on the display that the environment names; where it names none, or
    /// `in_memory` asks for it, a canvas in memory.
    /// @return null, after one line on standard error, when the display can't be opened
    [[nodiscard]] static std::unique_ptr<TopWindow> open(bool in_memory);
    ~TopWindow();
    TopWindow(const TopWindow &) = delete;
    TopWindow &operator=(const TopWindow &) = delete;

    /// Gives the window a fixed size and shows it.
    void show(int w, int h);
    /// Covers the whole screen and shows it.
    void show_fullscreen();
    void set_events(Events events) { events_ = std::move(events); }

    [[nodiscard]] Evas *canvas() const;
    /// The toolkit's name for this window, as parent of the windows inside.
    [[nodiscard]] Evas_Object *widget() const { return widget_.get(); }
    /// Whether nothing but memory is behind the window.
    [[nodiscard]] bool in_memory() const { return in_memory_; }
    /// Size of the screen that the window is on, in pixels; 0 x 0 when there is none.
    void screen_size(int &w, int &h) const;
    /// Draws what has changed, now.
    void render();
    /// The pixels of a window in memory, ARGB rows without gaps; null for any other.
    [[nodiscard]] const void *pixels() const;

private:
    struct Free {
        void operator()(Ecore_Evas *ee) const { ecore_evas_free(ee); }
    };
    using Handle = std::unique_ptr<Ecore_Evas, Free>;

    TopWindow(Handle handle, bool in_memory);
    static TopWindow *of(Ecore_Evas *ee);

    Handle ee_;
    EvasObject widget_;
    bool in_memory_;
    bool minimised_ = false;
    Events events_;
};

}  // namespace host
