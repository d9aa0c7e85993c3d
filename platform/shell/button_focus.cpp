#include "shell/button_focus.h"

#include <Elementary.h>

#include <algorithm>
#include <iterator>

#include "access/keyboard_focus.h"
#include "shell/geometry.h"
#include "shell/object_tree.h"

namespace host {

namespace {

constexpr char kFromToolkit[] = "elm";

Rect place_of(const Evas_Object *object) {
    Rect place;
    evas_object_geometry_get(object, &place.x, &place.y, &place.w, &place.h);
    return place;
}

/// Rows from above, each as the language is read.
void sort_by_place(std::vector<Evas_Object *> &buttons) {
    const auto middle_x = [](const Evas_Object *button) {
        const Rect place = place_of(button);
        return 2 * place.x + place.w;
    };
    const auto middle_y = [](const Evas_Object *button) {
        const Rect place = place_of(button);
        return 2 * place.y + place.h;
    };
    std::ranges::stable_sort(buttons, {}, middle_y);
    const bool mirrored = elm_config_mirrored_get() != EINA_FALSE;
    for (auto row = buttons.begin(); row != buttons.end();) {
        const Rect first = place_of(*row);
        const auto end = std::find_if(row, buttons.end(), [&](const Evas_Object *button) {
            return middle_y(button) > 2 * (first.y + first.h);
        });
        std::stable_sort(row, end, [&](const Evas_Object *one, const Evas_Object *other) {
            return mirrored ? middle_x(one) > middle_x(other) : middle_x(one) < middle_x(other);
        });
        row = end;
    }
}

}  // namespace

ButtonFocus::~ButtonFocus() {
    leave();
}

std::vector<Evas_Object *> ButtonFocus::buttons_of(Evas_Object *window) {
    Evas_Object *popup = nullptr;
    walk_window(window, [&popup](Evas_Object *object) {
        if (type_of(object) == "elm_popup" && is_visible(object)) {
            popup = object;
        }
    });
    std::vector<Evas_Object *> buttons;
    const auto take = [&buttons](Evas_Object *object) {
        if (type_of(object) == "elm_button" && is_visible(object) &&
            elm_object_disabled_get(object) == EINA_FALSE) {
            buttons.push_back(object);
        }
    };
    if (popup != nullptr) {
        walk(popup, take);
    } else {
        walk_window(window, take);
    }
    sort_by_place(buttons);
    return buttons;
}

void ButtonFocus::move(Evas_Object *window, bool forward) {
    const std::vector<Evas_Object *> buttons = buttons_of(window);
    if (buttons.empty()) {
        leave();
        return;
    }
    const auto at = std::ranges::find(buttons, button_);
    Evas_Object *next = nullptr;
    if (forward) {
        const bool from_start = at == buttons.end() || std::next(at) == buttons.end();
        next = from_start ? buttons.front() : *std::next(at);
    } else {
        next = at == buttons.begin() ? buttons.back() : *std::prev(at);
    }
    set(window, next);
}

bool ButtonFocus::go_to(Evas_Object *window, Evas_Object *button) {
    const std::vector<Evas_Object *> buttons = buttons_of(window);
    if (std::ranges::find(buttons, button) == buttons.end()) {
        return false;
    }
    set(window, button);
    return true;
}

void ButtonFocus::leave() {
    set(nullptr, nullptr);
}

Evas_Object *ButtonFocus::button(Evas_Object *window) const {
    if (button_ == nullptr) {
        return nullptr;
    }
    const std::vector<Evas_Object *> buttons = buttons_of(window);
    return std::ranges::find(buttons, button_) != buttons.end() ? button_ : nullptr;
}

void ButtonFocus::show() const {
    if (button_ != nullptr) {
        // A theme doesn't show a focus that came by touch or with the screen; one that comes anew
        // did neither.
        elm_object_signal_emit(button_, "elm,action,unfocus", kFromToolkit);
        elm_object_signal_emit(button_, "elm,action,focus", kFromToolkit);
    }
}

void ButtonFocus::set(Evas_Object *window, Evas_Object *button) {
    if (button_ != nullptr) {
        unwatch();
        elm_object_signal_emit(button_, "elm,action,unfocus", kFromToolkit);
    }
    window_ = window;
    button_ = button;
    if (button_ != nullptr) {
        watch();
        show();
    }
    tell();
}

void ButtonFocus::watch() {
    evas_object_event_callback_add(button_, EVAS_CALLBACK_DEL, deleted, this);
    evas_object_smart_callback_add(button_, "theme,changed", themed, this);
    evas_event_callback_add(evas_object_evas_get(button_), EVAS_CALLBACK_RENDER_FLUSH_POST,
                            rendered, this);
}

void ButtonFocus::unwatch() {
    evas_object_event_callback_del_full(button_, EVAS_CALLBACK_DEL, deleted, this);
    evas_object_smart_callback_del_full(button_, "theme,changed", themed, this);
    evas_event_callback_del_full(evas_object_evas_get(button_), EVAS_CALLBACK_RENDER_FLUSH_POST,
                                 rendered, this);
}

void ButtonFocus::tell() {
    Evas_Object *const now = button(window_);
    if (now == told_) {
        return;
    }
    if (told_ != nullptr) {
        report_keyboard_focus(told_, false);
    }
    told_ = now;
    if (told_ != nullptr) {
        report_keyboard_focus(told_, true);
    }
}

/// A button that has got another picture has forgotten what it showed.
void ButtonFocus::themed(void *data, Evas_Object * /*button*/, void * /*info*/) {
    static_cast<ButtonFocus *>(data)->show();
}

void ButtonFocus::deleted(void *data, Evas * /*evas*/, Evas_Object * /*button*/, void * /*info*/) {
    auto *const focus = static_cast<ButtonFocus *>(data);
    focus->unwatch();
    focus->window_ = nullptr;
    focus->button_ = nullptr;
    focus->told_ = nullptr;
}

/// Pages, popups and hidden controls take the button out of view, and bring it back.
void ButtonFocus::rendered(void *data, Evas * /*evas*/, void * /*info*/) {
    static_cast<ButtonFocus *>(data)->tell();
}

}  // namespace host
