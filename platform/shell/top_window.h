#pragma once

#include <Ecore_Evas.h>

#include <functional>
#include <memory>

#include "shell/evas_object.h"
#include "shell/presenter.h"

namespace host {

/// The one window that the desktop knows. All is drawn on a canvas in memory, which a presenter
/// brings to the desktop; where there is no desktop, the memory is all. Thread: main loop.
class TopWindow {
public:
    struct Events {
        std::function<void(int, int)> resized;
        std::function<void()> close_requested;
        std::function<void(bool)> minimised;  ///< and whether it is now
    };

    /// Opens a window on the display that the environment names; where it names none, or
    /// `in_memory` asks for it, none.
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

    /// Where all is drawn.
    [[nodiscard]] Evas *canvas() const { return ecore_evas_get(picture_.get()); }
    /// Where the pointer is felt: the same points, but another canvas on a desktop.
    [[nodiscard]] Evas *input_canvas() const;
    /// The toolkit's name for the canvas, as parent of the windows inside.
    [[nodiscard]] Evas_Object *widget() const { return widget_.get(); }
    /// Whether nothing but memory is behind the window.
    [[nodiscard]] bool in_memory() const { return desktop_ == nullptr; }
    /// Whether the desktop gives this window what is typed.
    [[nodiscard]] bool focused() const {
        return desktop_ != nullptr && ecore_evas_focus_get(desktop_.get()) != EINA_FALSE;
    }
    /// Size of the screen that the window is on, in pixels; 0 x 0 when there is none.
    void screen_size(int &w, int &h) const;
    /// The window's place on the desktop, in pixels; 0, 0 where there is no desktop, or where it
    /// doesn't say.
    void position(int &x, int &y) const;
    /// Draws what has changed, now.
    void render();
    /// What is drawn: BGRx rows without gaps. Null before the first drawing.
    [[nodiscard]] const void *pixels() const { return pixels_; }

private:
    struct Free {
        void operator()(Ecore_Evas *ee) const { ecore_evas_free(ee); }
    };
    using Handle = std::unique_ptr<Ecore_Evas, Free>;

    TopWindow(Handle desktop, std::unique_ptr<Presenter> presenter);
    static std::unique_ptr<TopWindow> open_with(const char *engine);
    static TopWindow *of(Ecore_Evas *ee);
    static void *allocate(void *data, int bytes);
    static void release(void *data, void *memory);
    static void drawing(void *data, Evas *evas, void *info);
    static void drawn(void *data, Evas *evas, void *info);
    void hook_desktop();

    Handle desktop_;
    std::unique_ptr<Presenter> presenter_;
    void *pixels_ = nullptr;
    Handle picture_;
    EvasObject widget_;
    bool minimised_ = false;
    Events events_;
};

}  // namespace host
