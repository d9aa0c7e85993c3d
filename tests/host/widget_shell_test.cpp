// Widgets on the screen: each alone, in a window of its own size.

#include <Elementary.h>
#include <gtest/gtest.h>

#include <string>

#include "main_loop.h"
#include "shell/shell.h"
#include "shell/shell_instance.h"

namespace {

struct Size {
    int w = 0;
    int h = 0;
    bool operator==(const Size &) const = default;
};

std::ostream &operator<<(std::ostream &stream, const Size &size) {
    return stream << size.w << "x" << size.h;
}

Size size_of(const Evas_Object *object) {
    Size size;
    evas_object_geometry_get(object, nullptr, nullptr, &size.w, &size.h);
    return size;
}

class WidgetShell : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(host::start_widget_shell(300, 200)); }
    void TearDown() override { host::stop_shell(); }

    static Evas_Object *add_window(int w, int h) {
        Evas_Object *window = elm_win_add(nullptr, "widget", ELM_WIN_BASIC);
        host::show_widget_window(window, w, h);
        evas_object_show(window);
        support::run_loop_turns();
        return window;
    }
    static Size shell_size() {
        const host::Geometry &geometry = host::shell()->geometry();
        return {geometry.window_w, geometry.window_h};
    }
};

TEST_F(WidgetShell, HasTheSizeOfItsWidget) {
    EXPECT_EQ(shell_size(), (Size{300, 200}));
    Evas_Object *window = add_window(180, 120);
    EXPECT_EQ(shell_size(), (Size{180, 120}));
    EXPECT_EQ(size_of(window), (Size{180, 120}));
}

TEST_F(WidgetShell, LeavesTheToolkitsScaleAlone) {
    const double scale = elm_config_scale_get();
    add_window(720, 720);
    EXPECT_EQ(elm_config_scale_get(), scale);
}

TEST_F(WidgetShell, HasCornersThatCanBeTouched) {
    Evas_Object *window = add_window(180, 120);
    Evas_Object *corner = evas_object_rectangle_add(evas_object_evas_get(window));
    evas_object_geometry_set(corner, 0, 0, 5, 5);
    evas_object_show(corner);
    int touched = 0;
    evas_object_event_callback_add(
        corner, EVAS_CALLBACK_MOUSE_DOWN,
        [](void *data, Evas *, Evas_Object *, void *) { ++*static_cast<int *>(data); }, &touched);
    host::pointer_down(1, 1);
    host::pointer_up(1, 1);
    EXPECT_EQ(touched, 1);
}

TEST_F(WidgetShell, FollowsItsWidgetsSize) {
    Evas_Object *window = add_window(300, 200);
    host::show_widget_window(window, 400, 160);
    EXPECT_TRUE(support::run_main_loop_until([&] { return size_of(window) == Size{400, 160}; }));
    support::run_loop_turns();
    EXPECT_EQ(size_of(window), (Size{400, 160}));
    EXPECT_EQ(shell_size(), (Size{400, 160}));
}

TEST_F(WidgetShell, HasItsContentFollowItsSize) {
    Evas_Object *window = add_window(300, 200);
    Evas_Object *ground = evas_object_rectangle_add(evas_object_evas_get(window));
    evas_object_size_hint_weight_set(ground, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, ground);
    evas_object_show(ground);
    EXPECT_TRUE(support::run_main_loop_until([&] { return size_of(ground) == Size{300, 200}; }));
    host::show_widget_window(window, 400, 160);
    EXPECT_TRUE(support::run_main_loop_until([&] {
        return size_of(ground) == Size{400, 160};
    })) << size_of(ground);
}

TEST_F(WidgetShell, ShowsTheNewestAndThenTheOneBelowInItsOwnSize) {
    Evas_Object *below = add_window(300, 200);
    Evas_Object *above = add_window(100, 100);
    EXPECT_EQ(host::program_window(), above);
    EXPECT_EQ(size_of(below), (Size{300, 200}));
    evas_object_del(above);
    host::show_widget_window(below, 300, 200);
    EXPECT_EQ(host::program_window(), below);
    EXPECT_EQ(shell_size(), (Size{300, 200}));
}

}  // namespace
