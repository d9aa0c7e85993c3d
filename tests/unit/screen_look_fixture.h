#pragma once

#include <clocale>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "TslExpandedUtils.h"
#include "mock_platform/mock_uxt.h"
#include "screen_picture.h"
#include "video_player_mgr_fixture.h"

extern "C" int _nl_msg_cat_cntr;

/// What is asked of every state of every screen: nothing leaves the round face, is cut or lies over
/// something else, and everything reads on any picture.
namespace look {

using support::Box;
using support::ScreenPicture;
using support::SeenScreen;
using support::SeenText;

inline constexpr double least_contrast = 4.5;
// Transitions take a hundredth of their time, and frames come quickly: what is judged is where they
// lead.
inline constexpr double quick = 0.01;
inline constexpr double frame_s = 0.004;

struct Face {
    int side;
    double scale;
};
// The scale follows the side, as on the device; the last is a device of the same side with larger
// texts.
inline constexpr Face faces[] = {{300, 300 / 360.0}, {360, 1.0}, {480, 480 / 360.0}, {360, 1.3}};

inline std::string name_of(const Face &face) {
    return std::to_string(face.side) + " pixels at scale " + std::to_string(face.scale);
}

inline const std::pair<const char *, support::Ground> grounds[] = {
    {"white", support::white_ground()},
    {"black", support::black_ground()},
    {"busy", support::busy_ground()}};

class ScreenLook : public VideoPlayerMgrTest {
protected:
    void SetUp() override {
        VideoPlayerMgrTest::SetUp();
        elm_win_alpha_set(window().getEvasObject(), EINA_TRUE);
        edje_transition_duration_factor_set(quick);
        ecore_animator_frametime_set(frame_s);
        setlocale(LC_MESSAGES, "C.UTF-8");
        TslExpandedUtils::bindTextDomain();
        use_language("en");
    }

    void TearDown() override {
        use_language("en");
        unsetenv("LANGUAGE");
        edje_transition_duration_factor_set(1.0);
        ecore_animator_frametime_set(1 / 60.0);
        elm_config_scale_set(1.0);
        VideoPlayerMgrTest::TearDown();
    }

    static void use_language(const std::string &language) {
        setenv("LANGUAGE", language.c_str(), 1);
        ++_nl_msg_cat_cntr;
        elm_language_set("C.UTF-8");
        const std::string header = dgettext("tessel", "");
        EXPECT_NE(header.find("\nLanguage: " + language + "\n"), std::string::npos) << header;
    }

    void use_face(const Face &face) {
        m_side = face.side;
        // The pixels that are being drawn into go with the old size.
        evas_sync(evas_object_evas_get(window().getEvasObject()));
        elm_config_scale_set(face.scale);
        evas_object_resize(window().getEvasObject(), face.side, face.side);
        settle();
    }

    /// Waits until nothing moves on the screen any more.
    void settle() {
        run_frames();
        EXPECT_TRUE(support::run_main_loop_until([this] {
            const ScreenPicture one = picture();
            run_frames();
            return one == picture();
        }));
    }

    /// Lets what is animated take some steps: on a busy machine they come late, and a picture taken
    /// meanwhile would look settled.
    static void run_frames() {
        int steps_left = 3;
        const auto step = [](void *data) -> Eina_Bool { return --*static_cast<int *>(data) > 0; };
        ecore_animator_add(step, &steps_left);
        EXPECT_TRUE(support::run_main_loop_until([&steps_left] { return steps_left == 0; }));
    }

    [[nodiscard]] int side() const { return m_side; }
    ScreenPicture picture() { return ScreenPicture(window().getEvasObject()); }
    SeenScreen seen() { return support::look_at(window().getEvasObject()); }

    /// They stay for as long as a screen reader is on, and their times stand still.
    void show_controls() {
        mock::fake_uxt().set_screen_reader(true);
        player_view()->destroyProgressTimer();
        player_view()->setProgressValues(61'000, 3'540'000);
        player_view()->showPlayViewUi();
        ASSERT_TRUE(support::run_main_loop_until(
            [this] { return evas_object_visible_get(player_layout()) != EINA_FALSE; }));
        settle();
    }

    static void press(Evas_Object *object) {
        const Box box = support::box_of(object);
        Evas *canvas = evas_object_evas_get(object);
        evas_event_feed_mouse_in(canvas, 1, nullptr);
        evas_event_feed_mouse_move(canvas, box.x + box.width / 2, box.y + box.height / 2, 2,
                                   nullptr);
        evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, 3, nullptr);
    }
    static void release(Evas_Object *object) {
        evas_event_feed_mouse_up(evas_object_evas_get(object), 1, EVAS_BUTTON_NONE, 4, nullptr);
    }

    // What is asked of every state.

    void expect_good_look() {
        const SeenScreen screen = seen();
        for (const SeenText &text : screen.texts) {
            SCOPED_TRACE(text.text);
            EXPECT_FALSE(text.cut) << text.needed.width << " by " << text.needed.height << " in "
                                   << text.place.width << " by " << text.place.height;
            for (const Box &line : text.lines) {
                EXPECT_TRUE(line.is_in_circle(m_side))
                    << line.x << ' ' << line.y << ' ' << line.width << ' ' << line.height;
            }
            expect_contrast(text.object);
        }
        for (Evas_Object *button : screen.buttons) {
            SCOPED_TRACE(elm_object_style_get(button));
            const Box box = support::box_of(button);
            EXPECT_TRUE(box.is_in_circle(m_side))
                << box.x << ' ' << box.y << ' ' << box.width << ' ' << box.height;
            expect_contrast(glyph_of(button));
        }
        expect_apart(screen);
    }

    static Evas_Object *glyph_of(Evas_Object *button) {
        Evas_Object *content = elm_object_content_get(button);
        if (content != nullptr) {
            return content;
        }
        return const_cast<Evas_Object *>(
            edje_object_part_object_get(elm_layout_edje_get(button), "glyph"));
    }

    void expect_contrast(Evas_Object *object) {
        ASSERT_NE(object, nullptr);
        const ScreenPicture with = picture();
        evas_object_hide(object);
        const ScreenPicture without = picture();
        evas_object_show(object);
        const Box area = support::box_of(object);
        for (const auto &[name, ground] : grounds) {
            const auto contrast = with.contrast_against(without, ground, area);
            ASSERT_TRUE(contrast) << "nothing is to be seen of it";
            EXPECT_GE(*contrast, least_contrast) << "on " << name;
        }
    }

    static void expect_apart(const SeenScreen &screen) {
        std::vector<std::pair<std::string, Box>> boxes;
        for (const SeenText &text : screen.texts) {
            for (const Box &line : text.lines) {
                boxes.emplace_back(text.text, line);
            }
        }
        for (Evas_Object *button : screen.buttons) {
            boxes.emplace_back(elm_object_style_get(button), support::box_of(button));
        }
        for (std::size_t one = 0; one < boxes.size(); ++one) {
            for (std::size_t other = one + 1; other < boxes.size(); ++other) {
                EXPECT_FALSE(boxes[one].second.overlaps(boxes[other].second))
                    << boxes[one].first << " and " << boxes[other].first;
            }
        }
    }

private:
    int m_side = 360;
};

}  // namespace look
