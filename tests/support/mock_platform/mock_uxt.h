#pragma once

#include <gmock/gmock.h>

#include "fake_theme.h"

/// Forwards to FakeUxt unless a test says otherwise.
class MockUxt {
public:
    MockUxt();
    virtual ~MockUxt();

    MOCK_METHOD(Evas_Object *, uxt_button_add, (Evas_Object *, const char *));
    MOCK_METHOD(int, uxt_theme_set_changeable_ui_enabled, (int));
    MOCK_METHOD(int, uxt_theme_set_style, (uxt_theme_style_e));
    MOCK_METHOD(uxt_color_table_h, uxt_theme_add_color_table, (const char *));
    MOCK_METHOD(int, uxt_theme_set_color_table, (uxt_color_table_h));
    MOCK_METHOD(uxt_font_table_h, uxt_theme_add_font_table, (const char *));
    MOCK_METHOD(int, uxt_theme_set_font_table, (uxt_font_table_h));
    MOCK_METHOD(int, uxt_theme_get_color,
                (const char *, int *, int *, int *, int *, int *, int *, int *, int *, int *, int *,
                 int *, int *));
    MOCK_METHOD(int, uxt_theme_object_set_color, (Evas_Object *, const char *));
    MOCK_METHOD(int, uxt_access_is_accessibility_enabled, ());
};

namespace mock {
MockUxt &uxt();
}
