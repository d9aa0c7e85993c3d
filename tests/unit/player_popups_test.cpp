#include <dlfcn.h>

#include <clocale>
#include <cstdlib>
#include <map>
#include <string>

#include "TslExpandedUtils.h"
#include "video_player_mgr_fixture.h"

namespace {

constexpr char file_missing[] = "IDS_MP_POP_THIS_FILE_DOES_NOT_EXIST";
constexpr char unsupported[] = "WDS_GALLERY_TPOP_UNSUPPORTED_FORMAT_ABB";
constexpr char unsupported_audio[] = "IDS_VPL_POP_UNSUPPORTED_AUDIO_FORMAT";
constexpr char no_message[] = "* Critical * Error message is nullptr.";
constexpr char no_naviframe[] = "* Critical * NaviframeCtrl is nullptr.";
constexpr char dismissed[] = "Dismissed callback of one button popup.";

std::map<const Evas_Object *, std::string> text_domains;
bool refuse_popups = false;

}  // namespace

/// Takes the place of the toolkit's own, to which it forwards: a domain can't be read back.
extern "C" void elm_object_domain_translatable_part_text_set(Evas_Object *object, const char *part,
                                                             const char *domain, const char *text) {
    static const auto set =
        reinterpret_cast<decltype(&elm_object_domain_translatable_part_text_set)>(
            dlsym(RTLD_NEXT, "elm_object_domain_translatable_part_text_set"));
    text_domains[object] = domain != nullptr ? domain : "";
    set(object, part, domain, text);
}

/// The same: popups can't be refused otherwise.
extern "C" Evas_Object *elm_popup_add(Evas_Object *parent) {
    static const auto add =
        reinterpret_cast<decltype(&elm_popup_add)>(dlsym(RTLD_NEXT, "elm_popup_add"));
    return refuse_popups ? nullptr : add(parent);
}

namespace {

class PlayerPopups : public VideoPlayerMgrTest {
protected:
    void SetUp() override {
        VideoPlayerMgrTest::SetUp();
        // The program's own catalogue, as the platform's life cycle would choose it.
        setlocale(LC_MESSAGES, "C.UTF-8");
        setenv("LANGUAGE", "en", 1);
        TslExpandedUtils::bindTextDomain();
        forget();
    }

    /// The popup that stands in the window, or null.
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
    int popups() {
        int count = 0;
        Evas *canvas = evas_object_evas_get(window().getEvasObject());
        for (Evas_Object *object = evas_object_bottom_get(canvas); object != nullptr;
             object = evas_object_above_get(object)) {
            const char *type = evas_object_type_get(object);
            count += type != nullptr && std::string(type) == "elm_popup" ? 1 : 0;
        }
        return count;
    }

    void show(TslSignalType type, const char *id) {
        // A text of its own that goes before the popup does.
        std::string text(id);
        emit(type, text.data());
        text.assign(text.size(), 'x');
        ASSERT_NE(popup(), nullptr);
    }
    void show_error_toast() { show(SIGNAL_POPUP_ERROR_TOAST, file_missing); }
    void show_missed_plugin_toast() { show(SIGNAL_POPUP_MISSED_AUDIO_PLUGIN, unsupported_audio); }
    void show_one_button() { show(SIGNAL_POPUP_ERROR_ONE_BUTTON, unsupported); }

    Evas_Object *popup_button() { return elm_object_part_content_get(popup(), "button1"); }
    static std::string text_of(Evas_Object *object) {
        const char *text = elm_object_part_text_get(object, "elm.text");
        return text != nullptr ? text : "";
    }
    static std::string translated(const char *id) {
        const std::string text = dgettext("tessel", id);
        EXPECT_NE(text, id) << "not in the catalogue";
        return text;
    }
    static std::string id_of(Evas_Object *object) {
        const char *id = elm_object_translatable_part_text_get(object, "elm.text");
        return id != nullptr ? id : "";
    }

    bool ends() {
        return support::run_main_loop_until([this] { return was_emitted(SIGNAL_APP_TERMINATE); });
    }
    bool popup_goes() {
        return support::run_main_loop_until([this] {
            return popup() == nullptr || evas_object_visible_get(popup()) == EINA_FALSE;
        });
    }
};

}  // namespace

TEST_F(PlayerPopups, AllThreeTestTheirTextThenTheNaviframe) {
    for (const TslSignalType type :
         {SIGNAL_POPUP_ERROR_TOAST, SIGNAL_POPUP_ERROR_ONE_BUTTON, SIGNAL_POPUP_MISSED_VIDEO_PLUGIN,
          SIGNAL_POPUP_MISSED_AUDIO_PLUGIN}) {
        SCOPED_TRACE(type);
        const Without naviframe(inside().m_pNaviframeCtrl);
        forget();
        emit(type, nullptr);
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_message)}));
        forget();
        std::string id(file_missing);
        emit(type, id.data());
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_naviframe)}));
        EXPECT_EQ(popup(), nullptr);
    }
}

// The error toast.

TEST_F(PlayerPopups, TheErrorToastHasStyleTextAndTimeout) {
    show_error_toast();
    EXPECT_STREQ(elm_object_style_get(popup()), "toast/circle");
    EXPECT_EQ(id_of(popup()), file_missing);
    EXPECT_EQ(text_of(popup()), translated(file_missing));
    EXPECT_DOUBLE_EQ(elm_popup_timeout_get(popup()), 2.0);
    EXPECT_EQ(popup_button(), nullptr);
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
}

TEST_F(PlayerPopups, TheErrorToastStandsTwoSecondsAndThenEndsTheApplication) {
    const double start = ecore_time_get();
    show_error_toast();
    ASSERT_TRUE(ends());
    EXPECT_GE(ecore_time_get() - start, 1.9);
    EXPECT_EQ(times_emitted(SIGNAL_APP_TERMINATE), 1);
    EXPECT_TRUE(exited());
}

TEST_F(PlayerPopups, BackOnTheErrorToastEndsTheApplicationAtOnce) {
    show_error_toast();
    support::run_loop_turns();
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_EQ(times_emitted(SIGNAL_APP_TERMINATE), 1);
    EXPECT_TRUE(exited());
    EXPECT_TRUE(popup_goes());
    EXPECT_EQ(popups(), 0);
}

// The missed plug-in toast.

TEST_F(PlayerPopups, TheMissedPluginToastLooksTheSame) {
    show_missed_plugin_toast();
    EXPECT_STREQ(elm_object_style_get(popup()), "toast/circle");
    EXPECT_EQ(id_of(popup()), unsupported_audio);
    EXPECT_EQ(text_of(popup()), translated(unsupported_audio));
    EXPECT_DOUBLE_EQ(elm_popup_timeout_get(popup()), 2.0);
}

TEST_F(PlayerPopups, TheMissedPluginToastGoesAfterTwoSecondsAndPlaybackGoesOn) {
    start_playing();
    const double start = ecore_time_get();
    player().deliver_missed_plugin(PLAYER_MISSED_PLUGIN_VIDEO);
    ASSERT_TRUE(support::run_main_loop_until([this] { return popup() != nullptr; }));
    ASSERT_TRUE(popup_goes());
    EXPECT_GE(ecore_time_get() - start, 1.9);
    support::run_loop_turns();
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
}

TEST_F(PlayerPopups, BackOnTheMissedPluginToastRemovesOnlyTheToast) {
    start_playing();
    show_missed_plugin_toast();
    support::run_loop_turns();
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(popup_goes());
    EXPECT_EQ(popups(), 0);
    EXPECT_NE(player_view(), nullptr);
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
}

// The popup with a button.

TEST_F(PlayerPopups, TheOneButtonPopupShowsItsTextInALayout) {
    show_one_button();
    EXPECT_STREQ(elm_object_style_get(popup()), "circle");
    EXPECT_TRUE(LoggedInfo("Lamda to set content to popup."));
    Evas_Object *content = elm_object_content_get(popup());
    ASSERT_NE(content, nullptr);
    const char *file = nullptr;
    const char *group = nullptr;
    edje_object_file_get(elm_layout_edje_get(content), &file, &group);
    EXPECT_STREQ(group, "elm/layout/popup/content/circle");
    EXPECT_EQ(id_of(content), unsupported);
    EXPECT_EQ(text_of(content), translated(unsupported));
    EXPECT_DOUBLE_EQ(elm_popup_timeout_get(popup()), 0.0);
}

TEST_F(PlayerPopups, WithoutAPopupThereIsNoContent) {
    refuse_popups = true;
    std::string id(unsupported);
    emit(SIGNAL_POPUP_ERROR_ONE_BUTTON, id.data());
    refuse_popups = false;
    EXPECT_TRUE(LoggedInOrder({logs::info("Lamda to set content to popup."),
                               logs::error("* Critical * Parent is nullptr.")}));
    EXPECT_EQ(popup(), nullptr);
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
}

TEST_F(PlayerPopups, TheButtonShowsACheck) {
    show_one_button();
    Evas_Object *button = popup_button();
    ASSERT_NE(button, nullptr);
    EXPECT_STREQ(elm_object_style_get(button), "popup/circle");
    // Empty, but a text of the program's domain.
    EXPECT_STREQ(elm_object_translatable_text_get(button), "");
    EXPECT_EQ(text_domains[button], "tessel");
    const char *text = elm_object_text_get(button);
    EXPECT_TRUE(text == nullptr || *text == '\0') << text;
    Evas_Object *icon = elm_object_part_content_get(button, "elm.swallow.content");
    ASSERT_NE(icon, nullptr);
    const char *file = nullptr;
    const char *group = nullptr;
    elm_image_file_get(icon, &file, &group);
    EXPECT_STREQ(file, TESSEL_STAGE_DATADIR "/res/edje/tessel.edj");
    EXPECT_STREQ(group, "tw_ic_popup_btn_check.png");
}

TEST_F(PlayerPopups, WithoutItsFileTheButtonHasNoIcon) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path).WillRepeatedly([] {
        return static_cast<char *>(nullptr);
    });
    show_one_button();
    EXPECT_TRUE(LoggedError("* Critical * There is no an edj file of the video player."));
    EXPECT_STREQ(elm_object_style_get(popup_button()), "popup/circle");
    EXPECT_EQ(elm_object_part_content_get(popup_button(), "elm.swallow.content"), nullptr);
    testing::Mock::VerifyAndClearExpectations(&mock::ui_app());
}

TEST_F(PlayerPopups, TheButtonEndsTheApplicationOnceThePopupHasGone) {
    show_one_button();
    support::run_loop_turns();
    evas_object_smart_callback_call(popup_button(), "clicked", nullptr);
    EXPECT_TRUE(LoggedInfo("OneButtonPopup::ButtonClicked"));
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
    EXPECT_NE(popup(), nullptr);
    ASSERT_TRUE(ends());
    EXPECT_TRUE(LoggedInOrder({logs::info("OneButtonPopup::ButtonClicked"), logs::info(dismissed),
                               logs::info("SIGNAL_APP_TERMINATE")}));
    support::run_loop_turns();
    EXPECT_EQ(popups(), 0);
    EXPECT_EQ(times_emitted(SIGNAL_APP_TERMINATE), 1);
}

TEST_F(PlayerPopups, BackOnTheOneButtonPopupTakesTheSameRoad) {
    show_one_button();
    support::run_loop_turns();
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(LoggedInfo("OneButtonPopup::onBack"));
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
    EXPECT_NE(popup(), nullptr);
    ASSERT_TRUE(ends());
    EXPECT_TRUE(LoggedInOrder({logs::info("OneButtonPopup::onBack"), logs::info(dismissed),
                               logs::info("SIGNAL_APP_TERMINATE")}));
    support::run_loop_turns();
    EXPECT_EQ(popups(), 0);
}

TEST_F(PlayerPopups, TheOneButtonPopupStaysUntilItIsAnswered) {
    show_one_button();
    support::run_main_loop_for(2.3);
    EXPECT_NE(popup(), nullptr);
    EXPECT_TRUE(evas_object_visible_get(popup()));
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
}

// Together with the rest.

TEST_F(PlayerPopups, APopupLeavesPlaybackAsItIs) {
    start_playing();
    show_error_toast();
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_PAUSE));
}

TEST_F(PlayerPopups, EveryTextOfAPopupIsInTheCatalogue) {
    for (const char *id :
         {"IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO", "IDS_MP_POP_THIS_FILE_DOES_NOT_EXIST",
          "IDS_VPL_POP_INVALID_URL", "WDS_GALLERY_TPOP_UNSUPPORTED_FORMAT_ABB",
          "IDS_VPL_POP_UNSUPPORTED_VIDEO_FORMAT", "IDS_VPL_POP_UNSUPPORTED_AUDIO_FORMAT"}) {
        EXPECT_NE(translated(id), "");
    }
}

TEST_F(PlayerPopups, ALaterPopupReplacesTheEarlierOne) {
    show_missed_plugin_toast();
    show_error_toast();
    support::run_loop_turns();
    EXPECT_EQ(popups(), 1);
    EXPECT_EQ(id_of(popup()), file_missing);
}

TEST_F(PlayerPopups, AnErrorPopupStandsOverTheVolumeScreen) {
    start_playing();
    show_volume_view();
    show_error_toast();
    support::run_loop_turns();
    EXPECT_NE(volume_view(), nullptr);
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(exited());
}

TEST_F(PlayerPopups, AnErrorOfThePlatformComesToThePopup) {
    start_playing();
    player().deliver_error(PLAYER_ERROR_NOT_SUPPORTED_FILE);
    ASSERT_TRUE(support::run_main_loop_until([this] { return popup() != nullptr; }));
    EXPECT_STREQ(elm_object_style_get(popup()), "circle");
}
