// How every state of the volume screen looks. The bar is drawn by the platform and tested there.

#include "screen_look_fixture.h"

namespace {

using look::Face;
using look::faces;
using look::name_of;
using support::Box;
using support::ScreenPicture;

constexpr const char *languages[] = {"ar", "de", "en", "es",    "fr", "he", "hi", "it",   "ja",
                                     "ko", "pl", "ru", "pt_BR", "th", "tr", "vi", "zh_CN"};

class VolumeScreenLook : public look::ScreenLook {
protected:
    /// Under a screen reader, so that it stays.
    void open(int level, int safety = 16) {
        mock::fake_uxt().set_screen_reader(true);
        show_volume_view_and_wait(level, 15, safety);
        // It comes hidden.
        ASSERT_TRUE(support::run_main_loop_until([this] { return was_shown(); }));
        settle();
    }
    [[nodiscard]] bool was_shown() {
        double value = 0.0;
        return edje_object_part_state_get(elm_layout_edje_get(volume_view()->getEvasObject()),
                                          "content.seen", &value) == std::string("yes");
    }
    void close() {
        volume_view()->destroy();
        settle();
    }
    [[nodiscard]] Evas_Object *panel() {
        return elm_object_part_content_get(volume_view()->getEvasObject(),
                                           "tsl.volume.view.base.layout.swallow.content");
    }
    [[nodiscard]] Evas_Object *part(const char *name) {
        return const_cast<Evas_Object *>(
            edje_object_part_object_get(elm_layout_edje_get(panel()), name));
    }
    [[nodiscard]] Evas_Object *volume_button(const char *name) {
        return elm_object_part_content_get(panel(), name);
    }

    static constexpr const char *buttons[] = {"swallow,volume,btn", "swallow.button.minus",
                                              "swallow.button.plus"};
};

TEST_F(VolumeScreenLook, EveryLevelAndWhatComesWithIt) {
    struct Case {
        const char *name;
        int level;
        int safety;
    };
    start_playing();
    for (const Face &face : faces) {
        use_face(face);
        for (const auto &[name, level, safety] : {Case{"muted", 0, 16}, Case{"normal", 7, 9},
                                                  Case{"full", 15, 16}, Case{"warning", 12, 9}}) {
            SCOPED_TRACE(name_of(face) + ", " + name);
            open(level, safety);
            ASSERT_EQ(seen().buttons.size(), 3u);
            ASSERT_EQ(seen().texts.size(), 2u);
            expect_good_look();
            EXPECT_EQ(evas_object_visible_get(part("warning")) != EINA_FALSE, level > safety);
            if (level > safety) {
                expect_contrast(part("warning"));
            }
            close();
        }
    }
}

TEST_F(VolumeScreenLook, TheWarningChangesTheLevelsColour) {
    start_playing();
    open(9, 9);
    const ScreenPicture normal = picture();
    volume_view()->setVolume(10);
    volume_view()->setVolume(9);
    settle();
    EXPECT_TRUE(normal == picture());
    volume_view()->setSafetyVolume(8);
    volume_view()->setVolume(9);
    settle();
    EXPECT_FALSE(normal == picture());
}

TEST_F(VolumeScreenLook, EveryLanguage) {
    start_playing();
    for (const Face &face : faces) {
        use_face(face);
        open(12, 9);
        for (const char *language : languages) {
            SCOPED_TRACE(name_of(face) + ", " + language);
            use_language(language);
            settle();
            expect_good_look();
        }
        use_language("en");
        close();
    }
}

TEST_F(VolumeScreenLook, PressedButtons) {
    start_playing();
    for (const Face &face : faces) {
        use_face(face);
        open(7);
        for (const char *name : buttons) {
            SCOPED_TRACE(name_of(face) + ", " + name);
            const ScreenPicture idle = picture();
            press(volume_button(name));
            settle();
            EXPECT_FALSE(idle == picture());
            expect_good_look();
            // Not where a button takes the release for a click.
            evas_event_feed_mouse_move(evas_object_evas_get(panel()), 1, 1, 4, nullptr);
            release(volume_button(name));
            settle();
            EXPECT_TRUE(idle == picture());
        }
        close();
    }
}

TEST_F(VolumeScreenLook, TheTextsKeepTheirSizeInEveryState) {
    start_playing();
    open(9, 9);
    const auto level_height = [this] { return support::box_of(part("elm.text.level")).height; };
    const int height = level_height();
    EXPECT_GT(height, 70);
    volume_view()->setVolume(10);
    settle();
    EXPECT_EQ(level_height(), height);
}

TEST_F(VolumeScreenLook, TheFocusOfAScreenThatHasJustComeDoesNotShow) {
    start_playing();
    open(7);
    for (const char *name : buttons) {
        elm_object_focus_set(volume_button(name), EINA_TRUE);
        settle();
        const auto *ring =
            edje_object_part_object_get(elm_layout_edje_get(volume_button(name)), "focus");
        EXPECT_FALSE(evas_object_visible_get(ring)) << name;
    }
    // It shows where it is moved to.
    elm_object_focus_set(volume_button(buttons[0]), EINA_TRUE);
    settle();
    const auto *ring =
        edje_object_part_object_get(elm_layout_edje_get(volume_button(buttons[0])), "focus");
    EXPECT_TRUE(evas_object_visible_get(ring));
    expect_good_look();
}

TEST_F(VolumeScreenLook, ALevelIsAnsweredInTheNextFrame) {
    start_playing();
    open(7);
    edje_transition_duration_factor_set(1.0);
    ecore_animator_frametime_set(1 / 60.0);
    const ScreenPicture before = picture();
    volume_view()->setVolume(8);
    bool passed = false;
    const auto note = [](void *data) -> Eina_Bool {
        *static_cast<bool *>(data) = true;
        return ECORE_CALLBACK_CANCEL;
    };
    ecore_animator_add(note, &passed);
    ASSERT_TRUE(support::run_main_loop_until([&passed] { return passed; }));
    EXPECT_FALSE(before == picture());
}

TEST_F(VolumeScreenLook, PicturesAreNotSmallerThanTheyAreShown) {
    start_playing();
    use_face({480, 480 / 360.0});
    open(12, 9);
    int pictures = 0;
    for (Evas_Object *image : seen().images) {
        const Box box = support::box_of(image);
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

}  // namespace
