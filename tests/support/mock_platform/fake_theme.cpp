#include "fake_theme.h"

#include "slot.h"

struct uxt_color_table_s {
    std::string file;
};

struct uxt_font_table_s {
    std::string file;
};

namespace {

void put(int *target, int value) {
    if (target != nullptr) {
        *target = value;
    }
}

}  // namespace

namespace mock {

FakeUxt &fake_uxt() {
    static Slot<FakeUxt> slot;
    return slot.get();
}

}  // namespace mock

FakeUxt::FakeUxt() = default;
FakeUxt::~FakeUxt() = default;

Evas_Object *FakeUxt::uxt_button_add(Evas_Object *parent, const char *style) {
    auto *button = elm_button_add(parent);
    if (button != nullptr && style != nullptr) {
        elm_object_style_set(button, style);
    }
    return button;
}

int FakeUxt::uxt_theme_set_changeable_ui_enabled(int enabled) {
    m_changeable_ui = enabled;
    return 0;
}

int FakeUxt::uxt_theme_set_style(uxt_theme_style_e style) {
    m_style = style;
    return 0;
}

uxt_color_table_h FakeUxt::uxt_theme_add_color_table(const char *file) {
    if (file == nullptr) {
        return nullptr;
    }
    m_color_tables.push_back(std::make_unique<uxt_color_table_s>(uxt_color_table_s{file}));
    return m_color_tables.back().get();
}

int FakeUxt::uxt_theme_set_color_table(uxt_color_table_h table) {
    if (table == nullptr) {
        return -1;
    }
    m_color_table = table->file;
    return 0;
}

uxt_font_table_h FakeUxt::uxt_theme_add_font_table(const char *file) {
    if (file == nullptr) {
        return nullptr;
    }
    m_font_tables.push_back(std::make_unique<uxt_font_table_s>(uxt_font_table_s{file}));
    return m_font_tables.back().get();
}

int FakeUxt::uxt_theme_set_font_table(uxt_font_table_h table) {
    if (table == nullptr) {
        return -1;
    }
    m_font_table = table->file;
    return 0;
}

int FakeUxt::uxt_theme_get_color(const char *code, int *r, int *g, int *b, int *a, int *outline_r,
                                 int *outline_g, int *outline_b, int *outline_a, int *shadow_r,
                                 int *shadow_g, int *shadow_b, int *shadow_a) {
    if (code == nullptr) {
        return -1;
    }
    const auto item = m_colors.find(code);
    if (item == m_colors.end()) {
        return -1;
    }
    const auto &[red, green, blue, alpha] = item->second;
    put(r, red);
    put(g, green);
    put(b, blue);
    put(a, alpha);
    for (auto *target :
         {outline_r, outline_g, outline_b, outline_a, shadow_r, shadow_g, shadow_b, shadow_a}) {
        put(target, 0);
    }
    return 0;
}

int FakeUxt::uxt_theme_object_set_color(Evas_Object *obj, const char *code) {
    if (obj == nullptr || code == nullptr) {
        return -1;
    }
    m_object_colors[obj] = code;
    return 0;
}

int FakeUxt::uxt_access_is_accessibility_enabled() {
    return m_screen_reader ? 1 : 0;
}
