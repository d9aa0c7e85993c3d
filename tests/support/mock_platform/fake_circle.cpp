#include "fake_circle.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "slot.h"

namespace {

template <typename T>
void put(T *target, T value) {
    if (target != nullptr) {
        *target = value;
    }
}

}  // namespace

namespace mock {

FakeCircle &fake_circle() {
    static Slot<FakeCircle> slot;
    return slot.get();
}

}  // namespace mock

FakeCircle::FakeCircle() = default;

FakeCircle::~FakeCircle() {
    for (const auto &[obj, bar] : m_bars) {
        evas_object_event_callback_del_full(const_cast<Evas_Object *>(obj), EVAS_CALLBACK_DEL,
                                            object_deleted, this);
    }
}

void FakeCircle::object_deleted(void *data, Evas *, Evas_Object *obj, void *) {
    auto &self = *static_cast<FakeCircle *>(data);
    self.m_bars.erase(obj);
    if (self.m_last == obj) {
        self.m_last = nullptr;
    }
}

FakeCircle::Bar *FakeCircle::find(const Evas_Object *obj) {
    const auto item = m_bars.find(obj);
    return item == m_bars.end() ? nullptr : &item->second;
}

const FakeCircle::Bar &FakeCircle::bar(const Evas_Object *obj) const {
    static const Bar none;
    const auto item = m_bars.find(obj);
    if (item == m_bars.end()) {
        ADD_FAILURE() << "the object is no bar";
        return none;
    }
    return item->second;
}

Eext_Circle_Surface *FakeCircle::eext_circle_surface_layout_add(Evas_Object *layout) {
    if (layout == nullptr) {
        return nullptr;
    }
    m_layouts.push_back(layout);
    m_surfaces.push_back(std::make_unique<char>());
    return reinterpret_cast<Eext_Circle_Surface *>(m_surfaces.back().get());
}

Evas_Object *FakeCircle::eext_circle_object_progressbar_add(Evas_Object *parent,
                                                            Eext_Circle_Surface *surface) {
    if (parent == nullptr || surface == nullptr) {
        return nullptr;
    }
    auto *obj = evas_object_rectangle_add(evas_object_evas_get(parent));
    evas_object_color_set(obj, 0, 0, 0, 0);
    evas_object_pass_events_set(obj, EINA_TRUE);
    evas_object_event_callback_add(obj, EVAS_CALLBACK_DEL, object_deleted, this);
    m_bars[obj] = {};
    m_last = obj;
    return obj;
}

void FakeCircle::eext_circle_object_value_min_max_set(Evas_Object *obj, double min, double max) {
    if (auto *bar = find(obj)) {
        bar->min = min;
        bar->max = max;
    }
}

void FakeCircle::eext_circle_object_value_min_max_get(const Evas_Object *obj, double *min,
                                                      double *max) {
    if (const auto *bar = find(obj)) {
        put(min, bar->min);
        put(max, bar->max);
    }
}

void FakeCircle::eext_circle_object_value_set(Evas_Object *obj, double value) {
    if (auto *bar = find(obj)) {
        const double limited = std::clamp(value, bar->min, bar->max);
        bar->angle = (limited - bar->min) / (bar->max - bar->min) * 360.0;
    }
}

void FakeCircle::eext_circle_object_angle_set(Evas_Object *obj, double angle) {
    if (auto *bar = find(obj)) {
        bar->angle = angle;
        bar->angles.push_back(angle);
    }
}

double FakeCircle::eext_circle_object_angle_get(const Evas_Object *obj) {
    const auto *bar = find(obj);
    return bar == nullptr ? 0.0 : bar->angle;
}

void FakeCircle::eext_circle_object_color_set(Evas_Object *obj, int r, int g, int b, int a) {
    eext_circle_object_item_color_set(obj, "default", r, g, b, a);
}

void FakeCircle::eext_circle_object_color_get(const Evas_Object *obj, int *r, int *g, int *b,
                                              int *a) {
    if (const auto *bar = find(obj)) {
        const auto &[red, green, blue, alpha] = bar->colors.at("default");
        put(r, red);
        put(g, green);
        put(b, blue);
        put(a, alpha);
    }
}

void FakeCircle::eext_circle_object_item_color_set(Evas_Object *obj, const char *item, int r, int g,
                                                   int b, int a) {
    auto *bar = find(obj);
    if (bar != nullptr && item != nullptr) {
        bar->colors[item] = {r, g, b, a};
    }
}
