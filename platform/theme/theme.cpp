#include <Edje.h>
#include <uxt.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "theme/table.h"

struct uxt_color_table_s {
    host::ColorTable colors;
};
struct uxt_font_table_s {
    host::FontTable fonts;
};

namespace host {
namespace {

/// The tables that were added and those in force. Main loop.
struct Theme {
    std::vector<std::unique_ptr<uxt_color_table_s>> color_tables;
    std::vector<std::unique_ptr<uxt_font_table_s>> font_tables;
    const uxt_color_table_s *colors = nullptr;
    const uxt_font_table_s *fonts = nullptr;
    bool changeable = false;
};

Theme &theme() {
    static Theme instance;
    return instance;
}

template <typename Table>
bool contains(const std::vector<std::unique_ptr<Table>> &tables, const Table *table) {
    return std::any_of(tables.begin(), tables.end(),
                       [table](const auto &known) { return known.get() == table; });
}

/// Colour and text classes are how the theme files take part: a part that names a class follows it.
void apply_colors() {
    if (!theme().changeable || theme().colors == nullptr) {
        return;
    }
    for (const auto &[code, entry] : theme().colors->colors) {
        const auto &[r, g, b, a] = entry.color;
        const auto &[r2, g2, b2, a2] = entry.outline;
        const auto &[r3, g3, b3, a3] = entry.shadow;
        edje_color_class_set(code.c_str(), r, g, b, a, r2, g2, b2, a2, r3, g3, b3, a3);
    }
}

void apply_fonts() {
    if (!theme().changeable || theme().fonts == nullptr) {
        return;
    }
    for (const auto &[code, font] : theme().fonts->fonts) {
        // A negative size is a share of the theme file's own, in per cent.
        edje_text_class_set(code.c_str(), font.name.c_str(), -font.scale_percent);
    }
}

void write(const Rgba &rgba, int *r, int *g, int *b, int *a) {
    int *const outputs[] = {r, g, b, a};
    for (std::size_t i = 0; i < rgba.size(); ++i) {
        if (outputs[i] != nullptr) {
            *outputs[i] = rgba[i];
        }
    }
}

}  // namespace
}  // namespace host

int uxt_theme_set_changeable_ui_enabled(int enabled) {
    host::theme().changeable = enabled != 0;
    host::apply_colors();
    host::apply_fonts();
    return UXT_ERROR_NONE;
}

int uxt_theme_set_style(uxt_theme_style_e style) {
    const bool known = style == UXT_THEME_STYLE_DEFAULT || style == UXT_THEME_STYLE_DARK ||
                       style == UXT_THEME_STYLE_LIGHT;
    return known ? UXT_ERROR_NONE : UXT_ERROR_INVALID_PARAMETER;
}

uxt_color_table_h uxt_theme_add_color_table(const char *file) {
    if (file == nullptr) {
        return nullptr;
    }
    auto colors = host::read_color_table(file);
    if (!colors) {
        return nullptr;
    }
    auto &tables = host::theme().color_tables;
    tables.push_back(std::make_unique<uxt_color_table_s>(uxt_color_table_s{std::move(*colors)}));
    return tables.back().get();
}

int uxt_theme_set_color_table(uxt_color_table_h table) {
    if (!host::contains(host::theme().color_tables, table)) {
        return UXT_ERROR_INVALID_PARAMETER;
    }
    host::theme().colors = table;
    host::apply_colors();
    return UXT_ERROR_NONE;
}

uxt_font_table_h uxt_theme_add_font_table(const char *file) {
    if (file == nullptr) {
        return nullptr;
    }
    auto fonts = host::read_font_table(file);
    if (!fonts) {
        return nullptr;
    }
    auto &tables = host::theme().font_tables;
    tables.push_back(std::make_unique<uxt_font_table_s>(uxt_font_table_s{std::move(*fonts)}));
    return tables.back().get();
}

int uxt_theme_set_font_table(uxt_font_table_h table) {
    if (!host::contains(host::theme().font_tables, table)) {
        return UXT_ERROR_INVALID_PARAMETER;
    }
    host::theme().fonts = table;
    host::apply_fonts();
    return UXT_ERROR_NONE;
}

int uxt_theme_get_color(const char *code, int *r, int *g, int *b, int *a, int *outline_r,
                        int *outline_g, int *outline_b, int *outline_a, int *shadow_r,
                        int *shadow_g, int *shadow_b, int *shadow_a) {
    if (code == nullptr) {
        return UXT_ERROR_INVALID_PARAMETER;
    }
    const auto *table = host::theme().colors;
    if (table == nullptr) {
        return UXT_ERROR_NO_SUCH_CODE;
    }
    const auto found = table->colors.find(code);
    if (found == table->colors.end()) {
        return UXT_ERROR_NO_SUCH_CODE;
    }
    host::write(found->second.color, r, g, b, a);
    host::write(found->second.outline, outline_r, outline_g, outline_b, outline_a);
    host::write(found->second.shadow, shadow_r, shadow_g, shadow_b, shadow_a);
    return UXT_ERROR_NONE;
}

int uxt_theme_object_set_color(Evas_Object *obj, const char *code) {
    if (obj == nullptr) {
        return UXT_ERROR_INVALID_PARAMETER;
    }
    int r = 0;
    int g = 0;
    int b = 0;
    int a = 0;
    const int result = uxt_theme_get_color(code, &r, &g, &b, &a, nullptr, nullptr, nullptr, nullptr,
                                           nullptr, nullptr, nullptr, nullptr);
    if (result == UXT_ERROR_NONE) {
        evas_color_argb_premul(a, &r, &g, &b);
        evas_object_color_set(obj, r, g, b, a);
    }
    return result;
}
