#pragma once

#include <gmock/gmock.h>

#include "fake_widget_app.h"

/// Forwards to FakeWidgetApp unless a test says otherwise.
class MockWidgetApp {
public:
    MockWidgetApp();
    virtual ~MockWidgetApp();

    MOCK_METHOD(int, widget_app_main, (int, char **, widget_app_lifecycle_callback_s *, void *));
    MOCK_METHOD(widget_class_h, widget_app_class_create,
                (widget_instance_lifecycle_callback_s, void *));
    MOCK_METHOD(int, widget_app_context_set_tag, (widget_context_h, void *));
    MOCK_METHOD(int, widget_app_context_get_tag, (widget_context_h, void **));
    MOCK_METHOD(int, widget_app_get_elm_win, (widget_context_h, Evas_Object **));
};

namespace mock {
MockWidgetApp &widget_app();
}
