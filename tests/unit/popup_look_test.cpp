// How the popups look, in every language that has a catalogue.

#include <algorithm>
#include <filesystem>

#include "app-assist/WPopupController.h"
#include "screen_look_fixture.h"

namespace {

using look::Face;
using look::faces;
using look::name_of;
using support::ScreenPicture;

/// The languages that have a catalogue.
std::vector<std::string> languages() {
    std::vector<std::string> found;
    for (const auto &entry :
         std::filesystem::directory_iterator(TESSEL_STAGE_DATADIR "/res/locale")) {
        found.push_back(entry.path().filename());
    }
    std::sort(found.begin(), found.end());
    return found;
}

class PopupLook : public look::ScreenLook {
protected:
    Evas_Object *popup() {
        Evas *canvas = evas_object_evas_get(window().getEvasObject());
        for (Evas_Object *object = evas_object_top_get(canvas); object != nullptr;
             object = evas_object_below_get(object)) {
            const char *type = evas_object_type_get(object);
            if (type != nullptr && std::string(type) == "elm_popup") {
                return object;
            }
        }
        return nullptr;
    }

    /// As another program of the framework may show one.
    void show_popup(const char *title, const char *content, int buttons) {
        auto *controller = new app_assist::WPopupController(title, content);
        controller->setCreationHook(
            [](Evas_Object *object) { elm_object_style_set(object, "circle"); });
        for (int i = 0; i < buttons; ++i) {
            controller->addButton("", nullptr, [](Evas_Object *button) {
                elm_object_style_set(button, "popup/circle");
                Evas_Object *icon = elm_image_add(button);
                elm_image_file_set(icon, TESSEL_STAGE_DATADIR "/res/edje/tessel.edj",
                                   "tw_ic_popup_btn_check.png");
                elm_object_part_content_set(button, "elm.swallow.content", icon);
            });
        }
        player_view()->attachPopup(controller);
        ASSERT_NE(popup(), nullptr);
        settle();
    }

    void show_popup(TslSignalType type, const char *id) {
        std::string text(id);
        emit(type, text.data());
        ASSERT_NE(popup(), nullptr);
        settle();
    }
};

constexpr const char *toast_texts[] = {
    "IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO",
    "IDS_MP_POP_THIS_FILE_DOES_NOT_EXIST",
    "IDS_VPL_POP_INVALID_URL",
    "IDS_VPL_POP_UNSUPPORTED_VIDEO_FORMAT",
    "IDS_VPL_POP_UNSUPPORTED_AUDIO_FORMAT",
};

TEST_F(PopupLook, ToastsInEveryLanguage) {
    start_playing();
    ASSERT_FALSE(languages().empty());
    for (const Face &face : faces) {
        SCOPED_TRACE(name_of(face));
        use_face(face);
        for (const std::string &language : languages()) {
            SCOPED_TRACE(language);
            use_language(language);
            for (const char *id : toast_texts) {
                show_popup(SIGNAL_POPUP_MISSED_AUDIO_PLUGIN, id);
                ASSERT_EQ(seen().texts.size(), 1u);
                EXPECT_EQ(seen().texts[0].text, dgettext("tessel", id));
                expect_good_look();
                evas_object_del(popup());
                support::run_loop_turns();
            }
        }
    }
}

TEST_F(PopupLook, OneButtonPopupInEveryLanguage) {
    start_playing();
    for (const Face &face : faces) {
        SCOPED_TRACE(name_of(face));
        use_face(face);
        for (const std::string &language : languages()) {
            SCOPED_TRACE(language);
            use_language(language);
            show_popup(SIGNAL_POPUP_ERROR_ONE_BUTTON, "WDS_GALLERY_TPOP_UNSUPPORTED_FORMAT_ABB");
            ASSERT_EQ(seen().texts.size(), 1u);
            ASSERT_EQ(seen().buttons.size(), 1u);
            expect_good_look();
            const ScreenPicture idle = picture();
            press(seen().buttons[0]);
            settle();
            EXPECT_FALSE(idle == picture());
            expect_good_look();
            evas_event_feed_mouse_move(evas_object_evas_get(popup()), 1, 1, 4, nullptr);
            release(popup());
            evas_object_del(popup());
            support::run_loop_turns();
        }
    }
}

TEST_F(PopupLook, UpToThreeButtonsUnderAnyText) {
    start_playing();
    for (const Face &face : faces) {
        use_face(face);
        for (const char *title : {"", "Reminder"}) {
            for (const char *content : {"At 14:05?", "Shall it remind you at 14:05?"}) {
                for (int buttons = 1; buttons <= 3; ++buttons) {
                    SCOPED_TRACE(name_of(face) + ", " + std::to_string(buttons) + " buttons, '" +
                                 title + "', '" + content + "'");
                    show_popup(title, content, buttons);
                    ASSERT_EQ(seen().buttons.size(), static_cast<std::size_t>(buttons));
                    expect_good_look();
                    evas_object_del(popup());
                    support::run_loop_turns();
                }
            }
        }
    }
}

}  // namespace
