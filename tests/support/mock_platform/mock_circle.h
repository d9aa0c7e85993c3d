#pragma once

#include <gmock/gmock.h>

#include "fake_circle.h"

/// Forwards to FakeCircle unless a test says otherwise.
class MockCircle {
public:
    MockCircle();
    virtual ~MockCircle();

    MOCK_METHOD(Eext_Circle_Surface *, eext_circle_surface_layout_add, (Evas_Object *));
    MOCK_METHOD(Evas_Object *, eext_circle_object_progressbar_add,
                (Evas_Object *, Eext_Circle_Surface *));
    MOCK_METHOD(void, eext_circle_object_value_min_max_set, (Evas_Object *, double, double));
    MOCK_METHOD(void, eext_circle_object_value_min_max_get,
                (const Evas_Object *, double *, double *));
    MOCK_METHOD(void, eext_circle_object_value_set, (Evas_Object *, double));
    MOCK_METHOD(void, eext_circle_object_angle_set, (Evas_Object *, double));
    MOCK_METHOD(double, eext_circle_object_angle_get, (const Evas_Object *));
    MOCK_METHOD(void, eext_circle_object_color_set, (Evas_Object *, int, int, int, int));
    MOCK_METHOD(void, eext_circle_object_color_get,
                (const Evas_Object *, int *, int *, int *, int *));
    MOCK_METHOD(void, eext_circle_object_item_color_set,
                (Evas_Object *, const char *, int, int, int, int));
};

namespace mock {
MockCircle &circle();
}
