#include "mock_uxt.h"

#include "slot.h"

namespace mock {

MockUxt &uxt() {
    static Slot<testing::NiceMock<MockUxt>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_uxt().function(arguments...);            \
    })

MockUxt::MockUxt() {
    DELEGATE(uxt_button_add);
    DELEGATE(uxt_theme_set_changeable_ui_enabled);
    DELEGATE(uxt_theme_set_style);
    DELEGATE(uxt_theme_add_color_table);
    DELEGATE(uxt_theme_set_color_table);
    DELEGATE(uxt_theme_add_font_table);
    DELEGATE(uxt_theme_set_font_table);
    DELEGATE(uxt_theme_get_color);
    DELEGATE(uxt_theme_object_set_color);
    DELEGATE(uxt_access_is_accessibility_enabled);
}

MockUxt::~MockUxt() = default;

extern "C" {

Evas_Object *uxt_button_add(Evas_Object *parent, const char *style) {
    return mock::uxt().uxt_button_add(parent, style);
}

int uxt_theme_set_changeable_ui_enabled(int enabled) {
    return mock::uxt().uxt_theme_set_changeable_ui_enabled(enabled);
}

int uxt_theme_set_style(uxt_theme_style_e style) {
    return mock::uxt().uxt_theme_set_style(style);
}

uxt_color_table_h uxt_theme_add_color_table(const char *file) {
    return mock::uxt().uxt_theme_add_color_table(file);
}

int uxt_theme_set_color_table(uxt_color_table_h table) {
    return mock::uxt().uxt_theme_set_color_table(table);
}

uxt_font_table_h uxt_theme_add_font_table(const char *file) {
    return mock::uxt().uxt_theme_add_font_table(file);
}

int uxt_theme_set_font_table(uxt_font_table_h table) {
    return mock::uxt().uxt_theme_set_font_table(table);
}

int uxt_theme_get_color(const char *code, int *r, int *g, int *b, int *a, int *outline_r,
                        int *outline_g, int *outline_b, int *outline_a, int *shadow_r,
                        int *shadow_g, int *shadow_b, int *shadow_a) {
    return mock::uxt().uxt_theme_get_color(code, r, g, b, a, outline_r, outline_g, outline_b,
                                           outline_a, shadow_r, shadow_g, shadow_b, shadow_a);
}

int uxt_theme_object_set_color(Evas_Object *obj, const char *code) {
    return mock::uxt().uxt_theme_object_set_color(obj, code);
}

int uxt_access_is_accessibility_enabled() {
    return mock::uxt().uxt_access_is_accessibility_enabled();
}

}  // extern "C"
