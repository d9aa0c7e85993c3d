// The player's controls where the language runs from right to left.

#include <Elementary.h>
#include <gtest/gtest.h>

#include "window_fixture.h"

namespace {

constexpr char played_part[] = "tsl.player.view.playtime.text.played";
constexpr char duration_part[] = "tsl.player.view.playtime.text.duration";
constexpr char volume_part[] = "tsl.player.view.volume.btn.swallow";
constexpr char ratio_part[] = "tsl.player.view.displaymode.btn.swallow";
constexpr int side = 360;

struct Span {
    int left;
    int right;
};

class PlayerMirrored : public support::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        m_layout = elm_layout_add(window());
        ASSERT_TRUE(elm_layout_file_set(m_layout, TESSEL_STAGE_DATADIR "/res/edje/tessel.edj",
                                        "tsl.player.view"));
        elm_object_part_text_set(m_layout, played_part, "00:01");
        elm_object_part_text_set(m_layout, duration_part, "02:10");
        evas_object_resize(m_layout, side, side);
        evas_object_show(m_layout);
    }
    void TearDown() override {
        elm_config_mirrored_set(EINA_FALSE);
        WindowTest::TearDown();
    }

    [[nodiscard]] Span span(const char *part) const {
        Evas_Object *edje = elm_layout_edje_get(m_layout);
        edje_object_calc_force(edje);
        int x = 0;
        int width = 0;
        EXPECT_TRUE(edje_object_part_geometry_get(edje, part, &x, nullptr, &width, nullptr));
        return {x, x + width};
    }

    Evas_Object *m_layout = nullptr;
};

TEST_F(PlayerMirrored, ButtonsAndTimesChangeSides) {
    EXPECT_LT(span(volume_part).right, span(ratio_part).left);
    EXPECT_LT(span(played_part).right, span(duration_part).left);
    elm_config_mirrored_set(EINA_TRUE);
    EXPECT_LT(span(ratio_part).right, span(volume_part).left);
    EXPECT_LT(span(duration_part).right, span(played_part).left);
}

TEST_F(PlayerMirrored, TimesKeepToTheirSeparator) {
    const Span played = span(played_part);
    const Span duration = span(duration_part);
    elm_config_mirrored_set(EINA_TRUE);
    EXPECT_NEAR(span(played_part).left, side - played.right, 2);
    EXPECT_NEAR(span(played_part).right, side - played.left, 2);
    EXPECT_NEAR(span(duration_part).left, side - duration.right, 2);
    EXPECT_LT(played.right - played.left, side / 3);
}

}  // namespace
