#include "mock_circle.h"

#include "slot.h"

namespace mock {

MockCircle &circle() {
    static Slot<testing::NiceMock<MockCircle>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_circle().function(arguments...);         \
    })

MockCircle::MockCircle() {
    DELEGATE(eext_circle_surface_layout_add);
    DELEGATE(eext_circle_object_progressbar_add);
    DELEGATE(eext_circle_object_value_min_max_set);
    DELEGATE(eext_circle_object_value_min_max_get);
    DELEGATE(eext_circle_object_value_set);
    DELEGATE(eext_circle_object_angle_set);
    DELEGATE(eext_circle_object_angle_get);
    DELEGATE(eext_circle_object_color_set);
    DELEGATE(eext_circle_object_color_get);
    DELEGATE(eext_circle_object_item_color_set);
}

MockCircle::~MockCircle() = default;

extern "C" {

Eext_Circle_Surface *eext_circle_surface_layout_add(Evas_Object *layout) {
    return mock::circle().eext_circle_surface_layout_add(layout);
}

Evas_Object *eext_circle_object_progressbar_add(Evas_Object *parent, Eext_Circle_Surface *surface) {
    return mock::circle().eext_circle_object_progressbar_add(parent, surface);
}

void eext_circle_object_value_min_max_set(Evas_Object *obj, double min, double max) {
    mock::circle().eext_circle_object_value_min_max_set(obj, min, max);
}

void eext_circle_object_value_min_max_get(const Evas_Object *obj, double *min, double *max) {
    mock::circle().eext_circle_object_value_min_max_get(obj, min, max);
}

void eext_circle_object_value_set(Evas_Object *obj, double value) {
    mock::circle().eext_circle_object_value_set(obj, value);
}

void eext_circle_object_angle_set(Evas_Object *obj, double angle) {
    mock::circle().eext_circle_object_angle_set(obj, angle);
}

double eext_circle_object_angle_get(const Evas_Object *obj) {
    return mock::circle().eext_circle_object_angle_get(obj);
}

void eext_circle_object_color_set(Evas_Object *obj, int r, int g, int b, int a) {
    mock::circle().eext_circle_object_color_set(obj, r, g, b, a);
}

void eext_circle_object_color_get(const Evas_Object *obj, int *r, int *g, int *b, int *a) {
    mock::circle().eext_circle_object_color_get(obj, r, g, b, a);
}

void eext_circle_object_item_color_set(Evas_Object *obj, const char *item, int r, int g, int b,
                                       int a) {
    mock::circle().eext_circle_object_item_color_set(obj, item, r, g, b, a);
}

}  // extern "C"
