#include <uxt.h>

Evas_Object *uxt_button_add(Evas_Object *parent, const char *style) {
    if (parent == nullptr) {
        return nullptr;
    }
    Evas_Object *button = elm_button_add(parent);
    if (button != nullptr && style != nullptr) {
        elm_object_style_set(button, style);
    }
    return button;
}
