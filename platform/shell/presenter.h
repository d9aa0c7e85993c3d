#pragma once

#include <Ecore_Evas.h>

#include <cstddef>
#include <memory>
#include <span>

#include "shell/geometry.h"

namespace host {

/// Brings the drawn picture of the watch into a window of the desktop. The toolkit's own road there
/// makes and frees a shared picture for each frame, which costs as much as all the drawing.
/// Thread: main loop.
class Presenter {
public:
    virtual ~Presenter() = default;

    /// Memory for a picture to be drawn into, at most one at a time; null when there is none.
    [[nodiscard]] virtual void *allocate(std::size_t bytes) = 0;
    /// Frees it.
    virtual void release(void *memory) = 0;
    /// The memory is going to be drawn into.
    virtual void before_drawing() = 0;
    /// Shows the parts of the picture that have changed: BGRx rows without gaps, in the memory that
    /// allocate() gave.
    virtual void show(int w, int h, std::span<const Rect> changed) = 0;
    /// The window has been asked to show on the desktop.
    virtual void window_shown() {}
};

/// For any window: the picture becomes an image of the window's canvas.
[[nodiscard]] std::unique_ptr<Presenter> make_canvas_presenter(Ecore_Evas *window);

/// For a window on an X display, of which the canvas is never drawn.
/// @return null when the display's pixels aren't 32 bits of blue, green and red
[[nodiscard]] std::unique_ptr<Presenter> make_x11_presenter(Ecore_Evas *window);

/// Keeps the display's library from printing which of its extensions the server lacks: whoever asks
/// for one can do without. Before the display is opened.
void silence_x11();

}  // namespace host
