#pragma once

#include <uxt.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Theme extension: the toolkit's own buttons, colours from a table that tests fill.
class FakeUxt {
public:
    /// Red, green, blue, alpha of a colour code.
    using Color = std::array<int, 4>;

    FakeUxt();
    ~FakeUxt();

    void set_color(const std::string &code, Color color) { m_colors[code] = color; }
    void set_screen_reader(bool on) { m_screen_reader = on; }
    int changeable_ui_enabled() const { return m_changeable_ui; }
    uxt_theme_style_e style() const { return m_style; }
    const std::string &color_table() const { return m_color_table; }
    const std::string &font_table() const { return m_font_table; }
    const std::map<const Evas_Object *, std::string> &object_colors() const {
        return m_object_colors;
    }

    Evas_Object *uxt_button_add(Evas_Object *parent, const char *style);
    int uxt_theme_set_changeable_ui_enabled(int enabled);
    int uxt_theme_set_style(uxt_theme_style_e style);
    uxt_color_table_h uxt_theme_add_color_table(const char *file);
    int uxt_theme_set_color_table(uxt_color_table_h table);
    uxt_font_table_h uxt_theme_add_font_table(const char *file);
    int uxt_theme_set_font_table(uxt_font_table_h table);
    int uxt_theme_get_color(const char *code, int *r, int *g, int *b, int *a, int *outline_r,
                            int *outline_g, int *outline_b, int *outline_a, int *shadow_r,
                            int *shadow_g, int *shadow_b, int *shadow_a);
    int uxt_theme_object_set_color(Evas_Object *obj, const char *code);
    int uxt_access_is_accessibility_enabled();

private:
    std::map<std::string, Color> m_colors;
    std::map<const Evas_Object *, std::string> m_object_colors;
    bool m_screen_reader = false;
    int m_changeable_ui = 0;
    uxt_theme_style_e m_style = UXT_THEME_STYLE_DEFAULT;
    std::vector<std::unique_ptr<uxt_color_table_s>> m_color_tables;
    std::vector<std::unique_ptr<uxt_font_table_s>> m_font_tables;
    std::string m_color_table;  ///< file of the table in force
    std::string m_font_table;
};

namespace mock {
FakeUxt &fake_uxt();
}
