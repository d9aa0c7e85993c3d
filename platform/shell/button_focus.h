#pragma once

#include <Evas.h>

#include <vector>

namespace host {

/// The button that the keyboard is at. The toolkit's own focus is of no use for it: that of a
/// window inside another comes and goes with the latter's. Only buttons that can be seen and
/// pressed take part: those of the popup, where one is open. Assistive technologies are told where
/// it is. Thread: main loop.
class ButtonFocus {
public:
    ButtonFocus() = default;
    ~ButtonFocus();
    ButtonFocus(const ButtonFocus &) = delete;
    ButtonFocus &operator=(const ButtonFocus &) = delete;

    /// The buttons of a window in reading order.
    [[nodiscard]] static std::vector<Evas_Object *> buttons_of(Evas_Object *window);

    /// Goes to the next button of the window, or to the one before, and round at the ends.
    void move(Evas_Object *window, bool forward);
    /// Goes to one button.
    /// @return false when it isn't one of those that take part, and nothing has changed
    bool go_to(Evas_Object *window, Evas_Object *button);
    /// Leaves the button that the keyboard is at, if there is one.
    void leave();
    /// The button that a key presses.
    /// @return null when the keyboard is at none, or the one that it was at is hidden or disabled
    [[nodiscard]] Evas_Object *button(Evas_Object *window) const;
    /// Shows the focus also where a touch has brought it.
    void show() const;

private:
    void set(Evas_Object *window, Evas_Object *button);
    void tell();
    void watch();
    void unwatch();
    static void themed(void *data, Evas_Object *button, void *info);
    static void deleted(void *data, Evas *evas, Evas_Object *button, void *info);
    static void rendered(void *data, Evas *evas, void *info);

    Evas_Object *window_ = nullptr;
    Evas_Object *button_ = nullptr;
    /// Where assistive technologies believe the keyboard to be.
    Evas_Object *told_ = nullptr;
};

}  // namespace host
