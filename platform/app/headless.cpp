#include "app/headless.h"

#include <Elementary.h>

#include <array>
#include <cstring>

#include "rotary/rotary.h"
#include "shell/shell.h"

namespace host {
namespace {

constexpr double kLookSeconds = 0.2;
constexpr double kWaitSeconds = 5.0;

bool is_popup(const Evas_Object *object) {
    constexpr std::array<const char *, 2> names{"elm_popup", "Elm_Popup"};
    const char *type = elm_object_widget_type_get(object);
    for (const char *name : names) {
        if (type != nullptr && std::strcmp(type, name) == 0) {
            return true;
        }
    }
    return false;
}

// The members of a toolkit object are no objects of the canvas by themselves.
const Evas_Object *popup_below(const Evas_Object *object) {
    if (evas_object_visible_get(object) == EINA_FALSE) {
        return nullptr;
    }
    if (is_popup(object)) {
        return object;
    }
    const Evas_Object *found = nullptr;
    Eina_List *members = evas_object_smart_members_get(object);
    void *member = nullptr;
    EINA_LIST_FREE(members, member) {
        if (found == nullptr) {
            found = popup_below(static_cast<const Evas_Object *>(member));
        }
    }
    return found;
}

const Evas_Object *visible_popup() {
    const Evas_Object *window = program_window();
    const Evas *canvas = window != nullptr ? evas_object_evas_get(window) : nullptr;
    const Evas_Object *object = canvas != nullptr ? evas_object_top_get(canvas) : nullptr;
    for (; object != nullptr; object = evas_object_below_get(object)) {
        if (const Evas_Object *popup = popup_below(object)) {
            return popup;
        }
    }
    return nullptr;
}

}  // namespace

PopupCloser::PopupCloser()
    : timer_(ecore_timer_add(
          kLookSeconds,
          [](void *self) {
              static_cast<PopupCloser *>(self)->look();
              return ECORE_CALLBACK_RENEW;
          },
          this)) {}

void PopupCloser::look() {
    const Evas_Object *popup = visible_popup();
    if (popup != popup_) {
        popup_ = popup;
        seen_ = ecore_loop_time_get();
    }
    if (popup_ != nullptr && ecore_loop_time_get() - seen_ >= kWaitSeconds) {
        popup_ = nullptr;
        send_key(EEXT_CALLBACK_BACK);
    }
}

}  // namespace host
