// How every state of the player screen looks.

#include <functional>

#include "mock_platform/fake_efl_extension.h"
#include "mock_platform/mock_rotary.h"
#include "screen_look_fixture.h"

namespace {

using look::Face;
using look::faces;
using look::name_of;
using support::Box;
using support::ScreenPicture;
using support::SeenScreen;
using support::SeenText;

class PlayerScreenLook : public look::ScreenLook {
protected:
    /// Each button, on every face, is brought into a state that shows and looks good, and back.
    void expect_state_of_each_button(const std::function<void(Evas_Object *)> &enter,
                                     const std::function<void(Evas_Object *)> &leave) {
        start_playing();
        player_view()->enableVolumeButton();
        for (const Face &face : faces) {
            use_face(face);
            show_controls();
            const ScreenPicture idle = picture();
            for (const char *name : {"volume", "play", "displaymode"}) {
                SCOPED_TRACE(name_of(face) + ", " + name);
                enter(button(name));
                settle();
                EXPECT_FALSE(idle == picture());
                expect_good_look();
                leave(button(name));
                settle();
                EXPECT_TRUE(idle == picture());
            }
        }
    }
};

TEST_F(PlayerScreenLook, EveryPictureOfEveryButton) {
    start_playing();
    for (const Face &face : faces) {
        SCOPED_TRACE(name_of(face));
        use_face(face);
        show_controls();
        player_view()->enableVolumeButton();
        player_view()->changePlayButtonImageAsPlay();
        player_view()->changeVolumeButtonImageAsVolumeOn();
        player_view()->changeDisplaymodeButtonImageAsFull();
        settle();
        ASSERT_EQ(seen().buttons.size(), 3u);
        ASSERT_EQ(seen().texts.size(), 2u);
        expect_good_look();
        player_view()->changePlayButtonImageAsPause();
        player_view()->changeVolumeButtonImageAsVolumeMute();
        player_view()->changeDisplaymodeButtonImageAsLetterbox();
        settle();
        expect_good_look();
    }
}

TEST_F(PlayerScreenLook, PressedButtons) {
    expect_state_of_each_button([this](Evas_Object *button) { press(button); },
                                [this](Evas_Object *button) {
                                    // Not where a button takes the release for a click.
                                    evas_event_feed_mouse_move(evas_object_evas_get(button), 1, 1,
                                                               4, nullptr);
                                    release(button);
                                });
}

TEST_F(PlayerScreenLook, DisabledVolumeButton) {
    start_playing();
    player_view()->changeVolumeButtonImageAsVolumeMute();
    for (const Face &face : faces) {
        SCOPED_TRACE(name_of(face));
        use_face(face);
        show_controls();
        player_view()->enableVolumeButton();
        settle();
        const ScreenPicture enabled = picture();
        player_view()->disableVolumeButton();
        settle();
        EXPECT_FALSE(enabled == picture());
        expect_good_look();
    }
}

TEST_F(PlayerScreenLook, FocusedButtons) {
    expect_state_of_each_button(
        [](Evas_Object *button) { elm_object_focus_set(button, EINA_TRUE); },
        [](Evas_Object *button) { elm_object_focus_set(button, EINA_FALSE); });
}

TEST_F(PlayerScreenLook, AFocusThatCameByTouchDoesNotShow) {
    start_playing();
    use_face(faces[1]);
    show_controls();
    press(button("play"));
    release(button("play"));
    settle();
    const auto *ring = edje_object_part_object_get(elm_layout_edje_get(button("play")), "focus");
    EXPECT_FALSE(evas_object_visible_get(ring));
}

TEST_F(PlayerScreenLook, TimesOfEveryLength) {
    start_playing();
    for (const Face &face : faces) {
        SCOPED_TRACE(name_of(face));
        use_face(face);
        show_controls();
        for (const char *text : {"00:00", "88:88", "00:00:00"}) {
            SCOPED_TRACE(text);
            elm_object_part_text_set(player_layout(), "tsl.player.view.playtime.text.played", text);
            elm_object_part_text_set(player_layout(), "tsl.player.view.playtime.text.duration",
                                     text);
            settle();
            const SeenScreen screen = seen();
            ASSERT_EQ(screen.texts.size(), 2u);
            const auto *area =
                edje_object_part_object_get(elm_layout_edje_get(player_layout()),
                                            "tsl.player.view.playtime.screen.reader.focus");
            const Box whole = support::box_of(area);
            EXPECT_TRUE(whole.is_in_circle(side()));
            for (const SeenText &seen_text : screen.texts) {
                EXPECT_EQ(seen_text.text, text);
                EXPECT_GE(seen_text.lines[0].x, whole.x);
                EXPECT_LE(seen_text.lines[0].x + seen_text.lines[0].width, whole.x + whole.width);
            }
            expect_good_look();
        }
    }
}

TEST_F(PlayerScreenLook, HiddenControlsLeaveNothingToDraw) {
    start_playing();
    for (const Face &face : faces) {
        SCOPED_TRACE(name_of(face));
        use_face(face);
        show_controls();
        EXPECT_FALSE(picture().is_empty());
        mock::fake_uxt().set_screen_reader(false);
        player_view()->hidePlayViewUi();
        settle();
        EXPECT_TRUE(picture().is_empty());
        EXPECT_TRUE(seen().texts.empty());
        EXPECT_TRUE(seen().buttons.empty());
    }
}

TEST_F(PlayerScreenLook, PicturesAreNotSmallerThanTheyAreShown) {
    start_playing();
    use_face({480, 480 / 360.0});
    show_controls();
    int pictures = 0;
    for (Evas_Object *image : seen().images) {
        const Box box = support::box_of(image);
        // Grounds that cover the face hold no edge that could be blurred.
        if (box.width >= side()) {
            continue;
        }
        ++pictures;
        int width = 0;
        evas_object_image_size_get(image, &width, nullptr);
        EXPECT_GE(width, box.width);
    }
    EXPECT_GE(pictures, 3 * 2);
}

/// The screen with its own motion, and what the user does to it.
class PlayerScreenAnswer : public look::ScreenLook {
protected:
    void SetUp() override {
        ScreenLook::SetUp();
        edje_transition_duration_factor_set(1.0);
        ecore_animator_frametime_set(1 / 60.0);
        start_playing();
        player_view()->destroyProgressTimer();
        settle();
        ASSERT_TRUE(picture().is_empty());
    }

    /// Lets one frame pass.
    static void run_frame() {
        bool passed = false;
        const auto note = [](void *data) -> Eina_Bool {
            *static_cast<bool *>(data) = true;
            return ECORE_CALLBACK_CANCEL;
        };
        ecore_animator_add(note, &passed);
        ASSERT_TRUE(support::run_main_loop_until([&passed] { return passed; }));
    }

    void touch(Evas_Object *object) {
        press(object);
        release(object);
    }
};

TEST_F(PlayerScreenAnswer, ADetentIsAnsweredInTheNextFrame) {
    ASSERT_TRUE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    run_frame();
    EXPECT_FALSE(picture().is_empty());
}

TEST_F(PlayerScreenAnswer, ATapIsAnsweredInTheNextFrame) {
    touch(elm_object_part_content_get(player_view()->getEvasObject(),
                                      "tsl.player.view.base.layout.swallow.gesture"));
    run_frame();
    EXPECT_FALSE(picture().is_empty());
}

TEST_F(PlayerScreenAnswer, APressOfAButtonIsAnsweredInTheNextFrame) {
    show_controls();
    settle();
    const ScreenPicture idle = picture();
    press(button("play"));
    run_frame();
    EXPECT_FALSE(idle == picture());
}

TEST_F(PlayerScreenAnswer, ControlsComeAndGoSoftly) {
    player_view()->showPlayViewUi();
    run_frame();
    const ScreenPicture coming = picture();
    settle();
    const ScreenPicture come = picture();
    EXPECT_FALSE(coming == come);
    player_view()->hidePlayViewUi();
    run_frame();
    run_frame();
    const ScreenPicture going = picture();
    EXPECT_FALSE(going.is_empty());
    EXPECT_FALSE(going == come);
    settle();
    EXPECT_TRUE(picture().is_empty());
}

}  // namespace
