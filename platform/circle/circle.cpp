#include <efl_extension_circle.h>

#include <algorithm>

#include "circle/progressbar.h"
#include "circle/surface.h"

namespace {

using host::circle::Color;
using host::circle::Progressbar;
using host::circle::progressbar_of;
using host::circle::Surface;

Color limited(int r, int g, int b, int a) {
    const auto channel = [](int value) { return std::clamp(value, 0, 255); };
    return {channel(r), channel(g), channel(b), channel(a)};
}

template <typename T>
void write(T value, T *output) {
    if (output != nullptr) {
        *output = value;
    }
}

}  // namespace

Eext_Circle_Surface *eext_circle_surface_layout_add(Evas_Object *layout) {
    return layout == nullptr ? nullptr
                             : reinterpret_cast<Eext_Circle_Surface *>(Surface::add(layout));
}

Evas_Object *eext_circle_object_progressbar_add(Evas_Object *parent, Eext_Circle_Surface *surface) {
    auto *own = reinterpret_cast<Surface *>(surface);
    return parent == nullptr || !Surface::lives(own) ? nullptr : own->add_progressbar(parent);
}

void eext_circle_object_value_min_max_set(Evas_Object *obj, double min, double max) {
    if (Progressbar *bar = progressbar_of(obj)) {
        bar->set_range(min, max);
    }
}

void eext_circle_object_value_min_max_get(const Evas_Object *obj, double *min, double *max) {
    if (const Progressbar *bar = progressbar_of(obj)) {
        write(bar->min(), min);
        write(bar->max(), max);
    }
}

void eext_circle_object_value_set(Evas_Object *obj, double value) {
    if (Progressbar *bar = progressbar_of(obj)) {
        bar->set_value(value);
    }
}

void eext_circle_object_angle_set(Evas_Object *obj, double angle) {
    if (Progressbar *bar = progressbar_of(obj)) {
        bar->set_angle(angle);
    }
}

double eext_circle_object_angle_get(const Evas_Object *obj) {
    const Progressbar *bar = progressbar_of(obj);
    return bar == nullptr ? 0.0 : bar->angle();
}

void eext_circle_object_color_set(Evas_Object *obj, int r, int g, int b, int a) {
    if (Progressbar *bar = progressbar_of(obj)) {
        bar->set_color(limited(r, g, b, a));
    }
}

void eext_circle_object_color_get(const Evas_Object *obj, int *r, int *g, int *b, int *a) {
    if (const Progressbar *bar = progressbar_of(obj)) {
        write(bar->color().r, r);
        write(bar->color().g, g);
        write(bar->color().b, b);
        write(bar->color().a, a);
    }
}

void eext_circle_object_item_color_set(Evas_Object *obj, const char *item, int r, int g, int b,
                                       int a) {
    Progressbar *bar = progressbar_of(obj);
    if (bar != nullptr && item != nullptr) {
        bar->set_item_color(item, limited(r, g, b, a));
    }
}
