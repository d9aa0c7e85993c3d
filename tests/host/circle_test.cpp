#include <Elementary.h>
#include <efl_extension.h>

#include <malloc.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

#include "main_loop.h"
#include "window_fixture.h"

extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

std::size_t bytes_in_use() {
    // A sanitizer has a heap of its own.
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return __sanitizer_get_current_allocated_bytes();
    }
    return mallinfo2().uordblks;
}

using Rgba = std::array<int, 4>;

class Circle : public support::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        // What a canvas doesn't draw on is whatever was in memory.
        Evas_Object *background = elm_bg_add(window());
        elm_bg_color_set(background, 0, 0, 0);
        elm_win_resize_object_add(window(), background);
        evas_object_show(background);
        m_parent = elm_layout_add(window());
        evas_object_resize(m_parent, screen_size, screen_size);
        evas_object_show(m_parent);
    }

    Evas_Object *add_bar() {
        m_bar =
            eext_circle_object_progressbar_add(m_parent, eext_circle_surface_layout_add(window()));
        return m_bar;
    }

    /// What the window shows of the rim, `degrees` clockwise from 12 o'clock: the colour of the
    /// ring's middle, opaque or blended with the window's.
    [[nodiscard]] std::uint32_t rim(double degrees) const { return at(degrees, 170.0); }

    [[nodiscard]] std::uint32_t at(double degrees, double radius) const {
        Evas *evas = evas_object_evas_get(window());
        evas_render(evas);
        int width = 0;
        int height = 0;
        const Ecore_Evas *ee = ecore_evas_ecore_evas_get(evas);
        const auto *pixels = static_cast<const std::uint32_t *>(
            ecore_evas_buffer_pixels_get(const_cast<Ecore_Evas *>(ee)));
        evas_output_size_get(evas, &width, &height);
        const double angle = degrees * std::numbers::pi / 180.0;
        const double side = std::min(width, height);
        const double scaled = radius * side / screen_size;
        const auto x = static_cast<int>(width / 2.0 + scaled * std::sin(angle));
        const auto y = static_cast<int>(height / 2.0 - scaled * std::cos(angle));
        return pixels[y * width + x] & 0xffffffU;
    }

    [[nodiscard]] static Rgba color(const Evas_Object *bar) {
        Rgba rgba{-1, -1, -1, -1};
        eext_circle_object_color_get(bar, &rgba[0], &rgba[1], &rgba[2], &rgba[3]);
        return rgba;
    }

    [[nodiscard]] Evas_Object *parent() const { return m_parent; }
    [[nodiscard]] Evas_Object *bar() const { return m_bar; }

    static constexpr std::uint32_t red = 0xff0000;
    static constexpr std::uint32_t green = 0x00ff00;

    /// A red bar on a green ring.
    void add_plain_bar() {
        add_bar();
        eext_circle_object_color_set(m_bar, 255, 0, 0, 255);
        eext_circle_object_item_color_set(m_bar, "bg", 0, 255, 0, 255);
    }

private:
    Evas_Object *m_parent = nullptr;
    Evas_Object *m_bar = nullptr;
};

TEST_F(Circle, NothingIsMadeOfNothing) {
    EXPECT_EQ(eext_circle_surface_layout_add(nullptr), nullptr);
    EXPECT_EQ(eext_circle_object_progressbar_add(parent(), nullptr), nullptr);
    Eext_Circle_Surface *surface = eext_circle_surface_layout_add(parent());
    EXPECT_NE(surface, nullptr);
    EXPECT_EQ(eext_circle_object_progressbar_add(nullptr, surface), nullptr);
}

TEST_F(Circle, ABarBeginsAtTheStartOfItsRange) {
    add_bar();
    double min = -1.0;
    double max = -1.0;
    eext_circle_object_value_min_max_get(bar(), &min, &max);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 100.0);
    EXPECT_EQ(eext_circle_object_angle_get(bar()), 0.0);
    EXPECT_TRUE(evas_object_visible_get(bar()));
}

TEST_F(Circle, AValueIsItsShareOfATurn) {
    add_bar();
    eext_circle_object_value_min_max_set(bar(), 0.0, 15.0);
    for (const auto &[value, angle] : std::vector<std::pair<double, double>>{
             {0.0, 0.0}, {1.0, 24.0}, {5.0, 120.0}, {7.5, 180.0}, {15.0, 360.0}}) {
        eext_circle_object_value_set(bar(), value);
        EXPECT_DOUBLE_EQ(eext_circle_object_angle_get(bar()), angle) << value;
    }
}

TEST_F(Circle, ARangeNeedNotBeginAtZero) {
    add_bar();
    eext_circle_object_value_min_max_set(bar(), 10.0, 20.0);
    eext_circle_object_value_set(bar(), 15.0);
    EXPECT_DOUBLE_EQ(eext_circle_object_angle_get(bar()), 180.0);
}

TEST_F(Circle, AValueStaysInItsRange) {
    add_bar();
    eext_circle_object_value_min_max_set(bar(), 0.0, 15.0);
    eext_circle_object_value_set(bar(), 16.0);
    EXPECT_DOUBLE_EQ(eext_circle_object_angle_get(bar()), 360.0);
    eext_circle_object_value_set(bar(), -1.0);
    EXPECT_DOUBLE_EQ(eext_circle_object_angle_get(bar()), 0.0);
}

TEST_F(Circle, ARangeOfNothingIsRefused) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    add_bar();
    eext_circle_object_value_min_max_set(bar(), 0.0, 15.0);
    for (const auto &[min, max] : std::vector<std::pair<double, double>>{
             {5.0, 5.0}, {5.0, 4.0}, {nan, 5.0}, {0.0, nan}, {0.0, infinity}, {-infinity, 0.0}}) {
        eext_circle_object_value_min_max_set(bar(), min, max);
        double kept_min = -1.0;
        double kept_max = -1.0;
        eext_circle_object_value_min_max_get(bar(), &kept_min, &kept_max);
        EXPECT_EQ(kept_min, 0.0);
        EXPECT_EQ(kept_max, 15.0);
    }
}

TEST_F(Circle, AnAngleIsKeptAsGivenAndLeavesTheRangeAlone) {
    add_bar();
    eext_circle_object_value_min_max_set(bar(), 0.0, 15.0);
    for (const double angle : {0.1, 359.9, 360.0, 480.0, -24.0}) {
        eext_circle_object_angle_set(bar(), angle);
        EXPECT_EQ(eext_circle_object_angle_get(bar()), angle);
    }
    eext_circle_object_angle_set(bar(), std::numeric_limits<double>::quiet_NaN());
    eext_circle_object_angle_set(bar(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(eext_circle_object_angle_get(bar()), -24.0);
    double max = 0.0;
    eext_circle_object_value_min_max_get(bar(), nullptr, &max);
    EXPECT_EQ(max, 15.0);
}

TEST_F(Circle, ANewRangeLeavesTheAngle) {
    add_bar();
    eext_circle_object_value_set(bar(), 50.0);
    eext_circle_object_value_min_max_set(bar(), 0.0, 10.0);
    EXPECT_EQ(eext_circle_object_angle_get(bar()), 180.0);
}

TEST_F(Circle, AColourIsReadAsItWasSet) {
    add_bar();
    eext_circle_object_color_set(bar(), 10, 200, 30, 128);
    EXPECT_EQ(color(bar()), (Rgba{10, 200, 30, 128}));
    eext_circle_object_item_color_set(bar(), "default", 1, 2, 3, 4);
    EXPECT_EQ(color(bar()), (Rgba{1, 2, 3, 4}));
    eext_circle_object_color_set(bar(), -1, 256, 0, 1000);
    EXPECT_EQ(color(bar()), (Rgba{0, 255, 0, 255}));
}

TEST_F(Circle, OtherItemsLeaveTheBarsColour) {
    add_bar();
    const Rgba before = color(bar());
    eext_circle_object_item_color_set(bar(), "bg", 1, 2, 3, 4);
    eext_circle_object_item_color_set(bar(), "no such item", 1, 2, 3, 4);
    eext_circle_object_item_color_set(bar(), nullptr, 1, 2, 3, 4);
    EXPECT_EQ(color(bar()), before);
}

TEST_F(Circle, WhatIsNoCircleObjectIsLeftAlone) {
    for (Evas_Object *other : {static_cast<Evas_Object *>(nullptr), parent()}) {
        eext_circle_object_value_min_max_set(other, 0.0, 15.0);
        eext_circle_object_value_set(other, 1.0);
        eext_circle_object_angle_set(other, 1.0);
        eext_circle_object_color_set(other, 1, 2, 3, 4);
        eext_circle_object_item_color_set(other, "bg", 1, 2, 3, 4);
        double min = -1.0;
        double max = -2.0;
        eext_circle_object_value_min_max_get(other, &min, &max);
        EXPECT_EQ(min, -1.0);
        EXPECT_EQ(max, -2.0);
        EXPECT_EQ(color(other), (Rgba{-1, -1, -1, -1}));
        EXPECT_EQ(eext_circle_object_angle_get(other), 0.0);
    }
}

TEST_F(Circle, TheBarRunsClockwiseFromTheTop) {
    add_plain_bar();
    eext_circle_object_angle_set(bar(), 120.0);
    EXPECT_EQ(rim(10.0), red);
    EXPECT_EQ(rim(60.0), red);
    EXPECT_EQ(rim(118.0), red);
    EXPECT_EQ(rim(124.0), green);
    EXPECT_EQ(rim(240.0), green);
    EXPECT_EQ(rim(350.0), green);
}

TEST_F(Circle, NoAngleShowsTheRingAlone) {
    add_plain_bar();
    for (const double angle : {0.0, -24.0}) {
        eext_circle_object_angle_set(bar(), angle);
        for (int degrees = 0; degrees < 360; degrees += 15) {
            EXPECT_EQ(rim(degrees), green) << degrees;
        }
    }
}

TEST_F(Circle, AFullTurnAndMoreIsAClosedRing) {
    add_plain_bar();
    for (const double angle : {360.0, 480.0}) {
        eext_circle_object_angle_set(bar(), angle);
        for (int degrees = 0; degrees < 360; ++degrees) {
            ASSERT_EQ(rim(degrees), red) << degrees;
        }
    }
}

TEST_F(Circle, TheMiddleOfTheFaceStaysFree) {
    add_plain_bar();
    const std::uint32_t background = at(45.0, 0.0);
    eext_circle_object_angle_set(bar(), 360.0);
    EXPECT_EQ(at(45.0, 150.0), background);
    EXPECT_EQ(at(45.0, 179.0), background);
}

TEST_F(Circle, TheEdgesAreSmooth) {
    add_plain_bar();
    eext_circle_object_angle_set(bar(), 360.0);
    int blended = 0;
    for (int degrees = 0; degrees < 360; ++degrees) {
        for (const double radius : {164.5, 175.5}) {
            const auto red_part = at(degrees, radius) >> 16U;
            const auto seen = at(degrees, radius);
            blended += seen != red && seen != at(degrees, 150.0) && red_part != 0 ? 1 : 0;
        }
    }
    EXPECT_GT(blended, 200);
}

TEST_F(Circle, TheRingFollowsTheSizeOfItsLayout) {
    add_plain_bar();
    eext_circle_object_angle_set(bar(), 90.0);
    for (const int side : {300, 480, 360}) {
        evas_object_resize(window(), side, side);
        support::run_loop_turns();
        int width = 0;
        int height = 0;
        evas_object_geometry_get(bar(), nullptr, nullptr, &width, &height);
        EXPECT_EQ(width, side);
        EXPECT_EQ(height, side);
        EXPECT_EQ(rim(45.0), red) << side;
        EXPECT_EQ(rim(200.0), green) << side;
    }
}

TEST_F(Circle, ASurfaceOverALayoutHasThatLayoutsPlace) {
    evas_object_geometry_set(parent(), 30, 40, 200, 220);
    Evas_Object *bar =
        eext_circle_object_progressbar_add(parent(), eext_circle_surface_layout_add(parent()));
    evas_object_move(parent(), 50, 60);
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(bar, &x, &y, &width, &height);
    EXPECT_EQ(x, 50);
    EXPECT_EQ(y, 60);
    EXPECT_EQ(width, 200);
    EXPECT_EQ(height, 220);
}

TEST_F(Circle, TakesNoInput) {
    add_bar();
    EXPECT_TRUE(evas_object_pass_events_get(bar()));
}

TEST_F(Circle, OneDrawForAllChangesOfAFrame) {
    add_plain_bar();
    eext_circle_object_angle_set(bar(), 10.0);
    Evas *evas = evas_object_evas_get(window());
    evas_render(evas);
    for (int angle = 20; angle < 200; ++angle) {
        eext_circle_object_angle_set(bar(), angle);
    }
    Eina_List *updates = evas_render_updates(evas);
    EXPECT_GE(eina_list_count(updates), 1u);
    evas_render_updates_free(updates);
    updates = evas_render_updates(evas);
    EXPECT_EQ(eina_list_count(updates), 0u);
    evas_render_updates_free(updates);
}

TEST_F(Circle, WhatDoesntChangeIsNotDrawn) {
    add_plain_bar();
    eext_circle_object_angle_set(bar(), 480.0);
    Evas *evas = evas_object_evas_get(window());
    evas_render(evas);
    eext_circle_object_angle_set(bar(), 480.0);
    eext_circle_object_angle_set(bar(), 360.0);
    eext_circle_object_color_set(bar(), 255, 0, 0, 255);
    Eina_List *updates = evas_render_updates(evas);
    EXPECT_EQ(eina_list_count(updates), 0u);
    evas_render_updates_free(updates);
}

TEST_F(Circle, AThousandBarsLeaveTheHeapAsItWas) {
    Evas *evas = evas_object_evas_get(window());
    const auto draw_bars = [&](int times) {
        for (int i = 0; i < times; ++i) {
            add_plain_bar();
            eext_circle_object_angle_set(bar(), i % 400);
            evas_render(evas);
            evas_object_del(bar());
        }
        support::run_loop_turns();
        evas_render(evas);
        // What the toolkit frees when it has time.
        eina_freeq_clear(eina_freeq_main_get());
    };
    draw_bars(50);
    const std::size_t before = bytes_in_use();
    draw_bars(1000);
    // The toolkit itself keeps some 50 bytes of each; the pixels of one are half a million.
    EXPECT_LT(bytes_in_use(), before + 1000 * 200);
}

TEST_F(Circle, ABarGoesWithItsParent) {
    add_bar();
    bool deleted = false;
    evas_object_event_callback_add(
        bar(), EVAS_CALLBACK_DEL,
        [](void *data, Evas *, Evas_Object *, void *) { *static_cast<bool *>(data) = true; },
        &deleted);
    evas_object_del(parent());
    EXPECT_TRUE(deleted);
}

TEST_F(Circle, ABarOutlivesTheLayoutOfItsSurface) {
    Evas_Object *layout = elm_layout_add(window());
    Evas_Object *bar =
        eext_circle_object_progressbar_add(parent(), eext_circle_surface_layout_add(layout));
    evas_object_del(layout);
    eext_circle_object_angle_set(bar, 24.0);
    EXPECT_EQ(eext_circle_object_angle_get(bar), 24.0);
    evas_object_del(bar);
}

TEST_F(Circle, ASurfaceGoesWithItsLastObject) {
    Eext_Circle_Surface *surface = eext_circle_surface_layout_add(window());
    Evas_Object *first = eext_circle_object_progressbar_add(parent(), surface);
    Evas_Object *second = eext_circle_object_progressbar_add(parent(), surface);
    evas_object_del(first);
    Evas_Object *third = eext_circle_object_progressbar_add(parent(), surface);
    ASSERT_NE(third, nullptr);
    evas_object_del(second);
    evas_object_del(third);
    EXPECT_EQ(eext_circle_object_progressbar_add(parent(), surface), nullptr);
}

TEST_F(Circle, ASurfaceWithoutObjectGoesWithItsLayout) {
    Evas_Object *layout = elm_layout_add(window());
    Eext_Circle_Surface *surface = eext_circle_surface_layout_add(layout);
    evas_object_del(layout);
    EXPECT_EQ(eext_circle_object_progressbar_add(parent(), surface), nullptr);
}

}  // namespace
