#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "TslAppParserCtrl.h"
#include "TslEventMonitor.h"
#include "mock_platform/mock_uxt.h"
#include "mock_platform/mock_vconf.h"
#include "video_player_mgr_fixture.h"

using testing::_;
using testing::Return;

namespace {

constexpr char no_handle[] = "* Critical * There is no manager handle.";
constexpr char handle_deleted[] = "Manager handle has been deleted already.";
constexpr char no_naviframe[] = "* Critical * NaviframeCtrl is nullptr.";
constexpr char no_sound_manager[] = "* Critical * SoundMgr is nullptr.";
constexpr char play_failed[] = "* Critical * It is failed to play using media url.";
constexpr char first_launch[] = "== The video player is launched first time. ==";
constexpr int hdmi = 5;

class VideoPlayerMgr : public VideoPlayerMgrTest {
protected:
    bool has_parser() { return inside().m_pAppParserCtrl != nullptr; }
    bool plays() {
        return support::run_main_loop_until(
            [] { return player().state() == PLAYER_STATE_PLAYING; });
    }
};

/// The steps that open an item, on a manager that has sound and player managers but no item yet.
class OpeningAnItem : public VideoPlayerMgr {
protected:
    void SetUp() override {
        VideoPlayerMgr::SetUp();
        manager().create();
        inside()._createPlayerMgr();
        forget();
    }

    void expect_failure(const std::string &message) {
        logs::clear();
        EXPECT_FALSE(inside()._playMediaItem(item_path));
        EXPECT_TRUE(LoggedIn("_playMediaItem", DLOG_ERROR, message) ||
                    LoggedIn("_preparePlayer", DLOG_ERROR, message))
            << message;
        EXPECT_EQ(player().uri(), "");
    }
    static void no_state() {
        EXPECT_CALL(mock::player(), player_get_state)
            .WillRepeatedly([](player_h, player_state_e *state) {
                *state = PLAYER_STATE_NONE;
                return int(PLAYER_ERROR_NONE);
            });
    }
};

}  // namespace

// The handle.

TEST_F(VideoPlayerMgr, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<TslVideoPlayerMgr>);
}

TEST_F(VideoPlayerMgr, WithoutInsideEveryOperationLogsAndReturns) {
    TslVideoPlayerMgrInside *inside = inside_pointer();
    inside_pointer() = nullptr;
    const std::function<void()> operations[] = {
        [this] { manager().create(); },
        [this] { manager().appControl(nullptr, true); },
        [this] { manager().appPause(); },
        [this] { manager().appResume(); },
    };
    for (const auto &operation : operations) {
        forget();
        operation();
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_handle)}));
        EXPECT_EQ(logs::all().size(), 1u);
    }
    forget();
    EXPECT_CALL(mock::power(), device_power_release_lock).Times(0);
    manager().destroy();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(handle_deleted)}));
    testing::Mock::VerifyAndClearExpectations(&mock::power());
    inside_pointer() = inside;
}

TEST_F(VideoPlayerMgr, DeletingAHandleWithoutInsideOnlyWarns) {
    delete inside_pointer();
    inside_pointer() = nullptr;
    forget();
    delete_manager();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(handle_deleted)}));
}

TEST_F(VideoPlayerMgr, OperationsLogTheirEntry) {
    manager().create();
    manager().appPause();
    manager().appResume();
    manager().appControl(nullptr, true);
    manager().destroy();
    for (const char *function : {"create", "appPause", "appResume", "appControl", "destroy"}) {
        EXPECT_TRUE(LoggedIn(function, DLOG_INFO, "")) << function;
    }
}

TEST_F(VideoPlayerMgr, DestroyGivesBackTheDisplayAndLeavesThePlayer) {
    start_playing();
    ASSERT_TRUE(mock::fake_power().is_locked(POWER_LOCK_DISPLAY));
    manager().destroy();
    EXPECT_FALSE(mock::fake_power().is_locked(POWER_LOCK_DISPLAY));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
}

// Construction and destruction.

TEST_F(VideoPlayerMgr, TheBackKeyOnTheBottomScreenEndsTheApplication) {
    start_playing();
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_APP_TERMINATE}));
    EXPECT_TRUE(exited());
    support::run_loop_turns();
}

TEST_F(VideoPlayerMgr, TheBackKeyLetsTheBottomScreenGo) {
    start_playing();
    ASSERT_NE(player_view(), nullptr);
    mock::fake_keys().press_back();
    EXPECT_TRUE(support::run_main_loop_until(
        [this] { return naviframe().getTopContentView() == nullptr; }));
}

TEST_F(VideoPlayerMgr, AFreshManagerHasNothingButItsNaviframeAndListener) {
    EXPECT_EQ(inside().m_pPlayerMgr, nullptr);
    EXPECT_EQ(inside().m_pSoundMgr, nullptr);
    EXPECT_EQ(inside().m_pEventMonitor, nullptr);
    EXPECT_EQ(inside().m_pAppParserCtrl, nullptr);
    EXPECT_NE(inside().m_nSignalListenerId, 0u);
    EXPECT_EQ(inside().m_pNaviframeCtrl, &naviframe());
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, 0);
}

TEST_F(VideoPlayerMgr, DeletionTakesPlayerThenSoundThenEventsAndLeavesTheScreens) {
    start_playing();
    TslPlayerView *view = player_view();
    testing::InSequence order;
    EXPECT_CALL(mock::player(), player_destroy);
    EXPECT_CALL(mock::sound(), sound_manager_destroy_stream_information);
    EXPECT_CALL(mock::ui_app(), ui_app_remove_event_handler).Times(2);
    delete_manager();
    EXPECT_EQ(player().players(), 0);
    EXPECT_EQ(mock::fake_app_control().live(), 0);
    EXPECT_EQ(player_view(), view);
    testing::Mock::VerifyAndClearExpectations(&mock::player());
    testing::Mock::VerifyAndClearExpectations(&mock::sound());
    testing::Mock::VerifyAndClearExpectations(&mock::ui_app());
}

// create.

TEST_F(VideoPlayerMgr, CreateMakesSoundAndEventsButNoPlayer) {
    manager().create();
    EXPECT_NE(inside().m_pSoundMgr, nullptr);
    EXPECT_NE(inside().m_pEventMonitor, nullptr);
    EXPECT_EQ(inside().m_pPlayerMgr, nullptr);
    EXPECT_EQ(inside().m_pAppParserCtrl, nullptr);
    EXPECT_EQ(player_view(), nullptr);
    EXPECT_EQ(player().players(), 0);
    EXPECT_TRUE(LoggedIn("_initAppConfig", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("_initPreference", DLOG_INFO, ""));
}

TEST_F(VideoPlayerMgr, CreateConfiguresTheToolkit) {
    elm_app_base_scale_set(1.0);
    elm_config_accel_preference_set("none");
    manager().create();
    EXPECT_DOUBLE_EQ(elm_app_base_scale_get(), 1.3);
    EXPECT_STREQ(elm_config_accel_preference_get(), "gl");
}

TEST_F(VideoPlayerMgr, CreateGoesSoundEventsThemeInThisOrder) {
    testing::InSequence order;
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information);
    EXPECT_CALL(mock::ui_app(), ui_app_add_event_handler(_, APP_EVENT_LOW_BATTERY, _, _));
    EXPECT_CALL(mock::ui_app(), ui_app_add_event_handler(_, APP_EVENT_LANGUAGE_CHANGED, _, _));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_changeable_ui_enabled(1));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_style(UXT_THEME_STYLE_LIGHT));
    EXPECT_CALL(mock::ui_app(), app_get_resource_path).WillOnce([] {
        return mock::fake_ui_app().app_get_resource_path();
    });
    EXPECT_CALL(mock::ui_app(), app_get_shared_resource_path).WillOnce([] {
        return mock::fake_ui_app().app_get_shared_resource_path();
    });
    manager().create();
    testing::Mock::VerifyAndClearExpectations(&mock::sound());
    testing::Mock::VerifyAndClearExpectations(&mock::ui_app());
    testing::Mock::VerifyAndClearExpectations(&mock::uxt());
}

TEST_F(VideoPlayerMgr, SoundAndEventsAreCreatedOnce) {
    manager().create();
    const auto *sound_manager = inside().m_pSoundMgr;
    const auto *event_monitor = inside().m_pEventMonitor;
    forget();
    inside()._initSoundEnvironment();
    inside()._createEventMonitor();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("SoundMgr object has been existed already."),
                                  logs::warn("Event monitor has been created already.")}));
    EXPECT_EQ(inside().m_pSoundMgr, sound_manager);
    EXPECT_EQ(inside().m_pEventMonitor, event_monitor);
    EXPECT_EQ(mock::fake_ui_app().handlers(), 2);
}

TEST_F(VideoPlayerMgr, LowBatteryEndsTheApplicationWithoutAPopup) {
    start_playing();
    mock::fake_ui_app().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_TRUE(
        LoggedInOrder({logs::info("APP_EVENT_LOW_BATTERY"), logs::info("SIGNAL_APP_TERMINATE")}));
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_APP_TERMINATE}));
    EXPECT_TRUE(exited());
}

TEST_F(VideoPlayerMgr, AChangeOfLanguageReachesTheToolkit) {
    manager().create();
    EXPECT_CALL(mock::vconf(), vconf_get_str(testing::StrEq("db/menu_widget/language"))).Times(1);
    mock::fake_ui_app().raise_event(APP_EVENT_LANGUAGE_CHANGED);
    EXPECT_TRUE(LoggedInfo("APP_EVENT_LANGUAGE_CHANGED"));
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
}

// Pause and resume of the application.

TEST_F(VideoPlayerMgr, PauseOfTheApplicationEndsItAndLeavesThePlayerAlone) {
    start_playing();
    manager().appPause();
    EXPECT_TRUE(
        LoggedInOrder({logs::info("=== App Pause ==="), logs::info("SIGNAL_APP_TERMINATE")}));
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_APP_TERMINATE}));
    EXPECT_TRUE(exited());
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
}

TEST_F(VideoPlayerMgr, PauseOfTheApplicationDuringAPopupEndsItAtOnce) {
    start_playing();
    player().deliver_error(PLAYER_ERROR_NO_SUCH_FILE);
    ASSERT_TRUE(
        support::run_main_loop_until([this] { return was_emitted(SIGNAL_POPUP_ERROR_TOAST); }));
    manager().appPause();
    EXPECT_TRUE(exited());
}

TEST_F(VideoPlayerMgr, ResumeOfTheApplicationChangesNothing) {
    start_paused();
    manager().appResume();
    EXPECT_TRUE(LoggedInfo("=== App Resume ==="));
    EXPECT_TRUE(emitted().empty());
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
}

// The first launch.

TEST_F(VideoPlayerMgr, AFirstLaunchPlaysTheItemUnderItsScreen) {
    manager().create();
    forget();
    launch("file:///media/clip.mp4");
    EXPECT_TRUE(LoggedInOrder({logs::info("=== App Control ==="), logs::warn(first_launch)}));
    EXPECT_EQ(player().uri(), "/media/clip.mp4");
    EXPECT_NE(player_view(), nullptr);
    EXPECT_TRUE(has_parser());

    ASSERT_TRUE(plays());
    EXPECT_TRUE(sound().has_focus());
    EXPECT_TRUE(mock::fake_power().is_locked(POWER_LOCK_DISPLAY));
    EXPECT_EQ(play_button(), "video/pause");
    EXPECT_TRUE(support::run_main_loop_until(
        [this] { return was_emitted(SIGNAL_PLAYER_VIEW_PROGRESS_TICK); }));
    EXPECT_EQ(emitted().front(), SIGNAL_PLAYER_PLAY);
}

TEST_F(VideoPlayerMgr, ALaunchSetsUpThePlayerInOrder) {
    manager().create();
    testing::InSequence order;
    EXPECT_CALL(mock::player(), player_create);
    EXPECT_CALL(mock::player(),
                player_set_display(_, PLAYER_DISPLAY_TYPE_OVERLAY, TslUtils::getGlobalWindow()));
    EXPECT_CALL(mock::player(), player_set_display_rotation(_, PLAYER_DISPLAY_ROTATION_NONE));
    EXPECT_CALL(mock::player(), player_set_display_mode(_, PLAYER_DISPLAY_MODE_CROPPED_FULL));
    EXPECT_CALL(mock::player(), player_set_uri(_, testing::StrEq(item_path)));
    EXPECT_CALL(mock::player(), player_prepare_async);
    launch(item_path);
    testing::Mock::VerifyAndClearExpectations(&mock::player());
}

TEST_F(VideoPlayerMgr, ThePreparationStartsBeforeTheScreenStands) {
    manager().create();
    forget();
    bool screen_stood = true;
    EXPECT_CALL(mock::player(), player_prepare_async)
        .WillOnce([&](player_h handle, player_prepared_cb callback, void *data) {
            screen_stood = player_view() != nullptr;
            return mock::fake_player().player_prepare_async(handle, callback, data);
        });
    launch(item_path);
    EXPECT_FALSE(screen_stood);
    EXPECT_NE(player_view(), nullptr);
    ASSERT_TRUE(plays());
}

TEST_F(VideoPlayerMgr, ANullRequestIsLoggedAndIgnored) {
    manager().create();
    forget();
    manager().appControl(nullptr, true);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no AppControlInfo.")}));
    EXPECT_TRUE(LoggedInfo("=== App Control ==="));
    EXPECT_FALSE(has_parser());
    EXPECT_TRUE(emitted().empty());
}

TEST_F(VideoPlayerMgr, ALaunchThatNamesNothingEndsTheApplicationWithoutAPopup) {
    manager().create();
    forget();
    launch(nullptr);
    EXPECT_TRUE(LoggedError("* Critical * Media url is nullptr."));
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_APP_TERMINATE}));
    EXPECT_TRUE(exited());
    EXPECT_FALSE(has_parser());
    EXPECT_EQ(player_view(), nullptr);
    EXPECT_EQ(mock::fake_app_control().live(), 0);
}

TEST_F(VideoPlayerMgr, AnItemThatCannotBeOpenedLeavesTheProcessWaiting) {
    manager().create();
    forget();
    EXPECT_CALL(mock::player(), player_set_uri)
        .WillOnce(Return(PLAYER_ERROR_INVALID_URI))
        .WillRepeatedly([](player_h handle, const char *uri) {
            return mock::fake_player().player_set_uri(handle, uri);
        });
    launch(item_path);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to ready async."));
    EXPECT_TRUE(LoggedError(play_failed));
    EXPECT_FALSE(has_parser());
    EXPECT_EQ(player_view(), nullptr);
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
}

TEST_F(VideoPlayerMgr, ALaunchAfterAFailedOnePlaysWithoutAScreen) {
    manager().create();
    {
        const Without sound(inside().m_pSoundMgr);
        launch(item_path);
    }
    EXPECT_TRUE(LoggedError(play_failed));
    forget();
    launch(item_path, false);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to stop."));
    EXPECT_TRUE(NotLogged(first_launch));
    ASSERT_TRUE(plays());
    EXPECT_EQ(player_view(), nullptr);
}

TEST_F(VideoPlayerMgr, AScreenThatCannotBePushedEndsTheApplication) {
    manager().create();
    forget();
    // Without its theme file the screen has no layout.
    EXPECT_CALL(mock::ui_app(), app_get_resource_path).WillRepeatedly([] {
        return static_cast<char *>(nullptr);
    });
    launch(item_path);
    EXPECT_TRUE(
        LoggedInOrder({logs::warn(first_launch),
                       logs::error("* Critical * It is failed to push player view to naviframe."),
                       logs::error("* Critical * It is failed to push player view."),
                       logs::info("SIGNAL_APP_TERMINATE")}));
    EXPECT_TRUE(LoggedIn("onDestroy", DLOG_INFO, ""));
    EXPECT_FALSE(has_parser());
    EXPECT_TRUE(exited());
    testing::Mock::VerifyAndClearExpectations(&mock::ui_app());
}

// The player manager.

TEST_F(VideoPlayerMgr, ThePlayerManagerIsCreatedOnce) {
    EXPECT_TRUE(inside()._createPlayerMgr());
    const auto *player_manager = inside().m_pPlayerMgr;
    EXPECT_NE(player_manager, nullptr);
    EXPECT_TRUE(LoggedIn("_createPlayerMgr", DLOG_INFO, ""));
    forget();
    EXPECT_TRUE(inside()._createPlayerMgr());
    EXPECT_EQ(inside().m_pPlayerMgr, player_manager);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Ther PlayerMgr has been created already.")}));
}

TEST_F(VideoPlayerMgr, PipesThatCannotBeAddedAreLoggedInOrderAndTheManagerStands) {
    // A second player manager, deleted, takes the shared state with it: every addition then fails.
    auto state_of_another = std::make_unique<TslPlayerMgr>();
    inside().m_pPlayerMgr = new TslPlayerMgr();
    state_of_another.reset();
    forget();
    inside()._registerPlayerCallbacks();
    std::vector<std::string> failures;
    for (const logs::Line &line : logs::all()) {
        if (line.function == "_registerPlayerCallbacks") {
            EXPECT_EQ(line.level, DLOG_ERROR);
            failures.push_back(line.message);
        }
    }
    EXPECT_EQ(failures, (std::vector<std::string>{
                            "* Critical * It is failed to add callback_pipe of completion.",
                            "* Critical * It is failed to add callback_pipe of subtitle.",
                            "* Critical * It is failed to add callback_pipe of setPosition.",
                            "* Critical * It is failed to add callback_pipe of stream.",
                            "* Critical * It is failed to add callback_pipe of play."}));
}

TEST_F(VideoPlayerMgr, EveryReportOfThePlayerReachesItsHandler) {
    start_playing();
    const struct {
        const char *handler;
        std::function<void()> deliver;
    } rows[] = {
        {"_bufferingCb", [] { player().deliver_buffering(50); }},
        {"_pdMessageCb", [] { player().deliver_pd_message(PLAYER_PD_STARTED); }},
        {"_subtitleUpdatedCb", [] { player().deliver_subtitle(1000, "text"); }},
        {"_missedPluginInfoCb", [] { player().deliver_missed_plugin(PLAYER_MISSED_PLUGIN_VIDEO); }},
        {"_interruptedCb", [] { player().deliver_interrupted(PLAYER_INTERRUPTED_BY_MEDIA); }},
        {"_errorCb", [] { player().deliver_error(PLAYER_ERROR_SEEK_FAILED); }},
        {"_seekCompletedCb", [this] { inside().m_pPlayerMgr->setPosition(1000, true); }},
        {"_completedCb", [] { player().deliver_completed(); }},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.handler);
        forget();
        row.deliver();
        EXPECT_TRUE(support::run_main_loop_until(
            [&row] { return bool(LoggedIn(row.handler, DLOG_INFO, "")); }));
        EXPECT_TRUE(LoggedIn(row.handler, DLOG_INFO, ""));
    }
}

// Opening an item, step by step.

TEST_F(OpeningAnItem, ANullUriFailsFirst) {
    const Without sound(inside().m_pSoundMgr);
    const Without player(inside().m_pPlayerMgr);
    EXPECT_FALSE(inside()._playMediaItem(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Media Url is not inputted.")}));
}

TEST_F(OpeningAnItem, AMissingPlayerManagerFailsSecond) {
    const Without sound(inside().m_pSoundMgr);
    const Without player(inside().m_pPlayerMgr);
    EXPECT_FALSE(inside()._playMediaItem(item_path));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerMgr is nullptr.")}));
}

TEST_F(OpeningAnItem, AMissingSoundManagerFailsThird) {
    const Without sound(inside().m_pSoundMgr);
    EXPECT_FALSE(inside()._playMediaItem(item_path));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_sound_manager)}));
}

TEST_F(OpeningAnItem, APlayerThatExistsAlreadyFails) {
    ASSERT_TRUE(inside().m_pPlayerMgr->createPlayer());
    expect_failure("* Critical * It is failed to creat player.");
}

TEST_F(OpeningAnItem, AMissingStreamFails) {
    delete inside().m_pSoundMgr;
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information)
        .WillOnce(Return(SOUND_MANAGER_ERROR_INTERNAL));
    inside().m_pSoundMgr = new TslSoundMgr();
    expect_failure("* Critical * It is failed to get audio policy info from sound manager.");
}

TEST_F(OpeningAnItem, APlayerWithoutThePlatformsFails) {
    EXPECT_CALL(mock::player(), player_create).WillOnce(Return(PLAYER_ERROR_OUT_OF_MEMORY));
    expect_failure("* Critical * It is failed to set audio policy info to player manager.");
}

TEST_F(OpeningAnItem, ARefusedDisplayFails) {
    TslUtils::setGlobalWindow(nullptr);
    expect_failure("* Critical * It is failed to set display ID to player manager.");
    TslUtils::setGlobalWindow(window().getEvasObject());
}

TEST_F(OpeningAnItem, ARefusedRotationFails) {
    EXPECT_CALL(mock::player(), player_set_display_rotation)
        .WillOnce(Return(PLAYER_ERROR_INVALID_OPERATION));
    expect_failure("* Critical * It is failed to set display rotation.");
}

TEST_F(OpeningAnItem, ARefusedModeFails) {
    // The state is lost after the rotation has been set.
    EXPECT_CALL(mock::player(), player_set_display_rotation)
        .WillOnce([](player_h handle, player_display_rotation_e rotation) {
            no_state();
            return mock::fake_player().player_set_display_rotation(handle, rotation);
        });
    expect_failure("* Critical * It is failed to set display mode.");
    testing::Mock::VerifyAndClearExpectations(&mock::player());
}

TEST_F(OpeningAnItem, AFailedPreparationFails) {
    EXPECT_CALL(mock::player(), player_prepare_async)
        .WillOnce(Return(PLAYER_ERROR_INVALID_OPERATION));
    EXPECT_FALSE(inside()._playMediaItem(item_path));
    EXPECT_TRUE(LoggedError("* Critical * It is failed to ready async."));
}

TEST_F(OpeningAnItem, AllStepsGive) {
    EXPECT_TRUE(inside()._playMediaItem(item_path));
    EXPECT_EQ(player().uri(), item_path);
    EXPECT_EQ(player().display(), TslUtils::getGlobalWindow());
    EXPECT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_CROPPED_FULL);
    EXPECT_TRUE(NoFaultLogged());
}

// The player screen.

TEST_F(VideoPlayerMgr, PushingTheScreenTestsItsParts) {
    {
        const Without naviframe(inside().m_pNaviframeCtrl);
        EXPECT_FALSE(inside()._pushPlayerView());
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_naviframe)}));
    }
    forget();
    EXPECT_FALSE(inside()._pushPlayerView());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_sound_manager)}));
    manager().create();
    forget();
    EXPECT_FALSE(inside()._pushPlayerView());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_sound_manager)}));
}

TEST_F(VideoPlayerMgr, AScreenWithoutObjectIsLogged) {
    struct TakesAnything : TslNaviframeController {
        bool onPush(app_assist::WContentViewController *view, void *) override {
            pushed = view;
            return true;
        }
        app_assist::WContentViewController *pushed = nullptr;
    } naviframe;
    manager().create();
    inside()._createPlayerMgr();
    forget();
    TslNaviframeController *own = std::exchange(inside().m_pNaviframeCtrl, &naviframe);
    EXPECT_FALSE(inside()._pushPlayerView());
    inside().m_pNaviframeCtrl = own;
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no player view.")}));
    ASSERT_NE(naviframe.pushed, nullptr);
    EXPECT_STREQ(naviframe.pushed->getName(), "tsl_player_view");
    naviframe.pushed->destroy();
}

TEST_F(VideoPlayerMgr, TheScreenOpensWithTheButtonsOfItsState) {
    sound().set_devices({hdmi});
    sound().change_volume(SOUND_TYPE_MEDIA, 5);
    manager().create();
    launch(item_path);
    EXPECT_EQ(volume_button(), "video/volume/on");
    EXPECT_TRUE(volume_button_responds());
    EXPECT_EQ(displaymode_button(), "video/displaymode/letterbox");
    // Told, though a new screen looks so by itself.
    for (const char *function : {"changeVolumeButtonImageAsVolumeOn", "enableVolumeButton",
                                 "changeDisplaymodeButtonImageAsLetterbox"}) {
        EXPECT_TRUE(LoggedIn(function, DLOG_INFO, "")) << function;
    }
    EXPECT_TRUE(NotLogged("Any sound route is not available"));
    ASSERT_TRUE(plays());
}

TEST_F(VideoPlayerMgr, TheScreenOpensMutedAtVolumeZero) {
    sound().set_devices({hdmi});
    sound().change_volume(SOUND_TYPE_MEDIA, 0);
    start_playing();
    EXPECT_EQ(volume_button(), "video/volume/mute");
    EXPECT_TRUE(volume_button_responds());
}

TEST_F(VideoPlayerMgr, WithoutASoundRouteTheVolumeButtonIsDisabled) {
    manager().create();
    launch(item_path);
    EXPECT_TRUE(LoggedInfo(
        "Any sound route is not available. It needs to disable volume button of player view."));
    EXPECT_FALSE(volume_button_responds());
    ASSERT_TRUE(plays());
}

TEST_F(VideoPlayerMgr, InAnotherDisplayModeTheScreenOffersTheFullOne) {
    manager().create();
    inside()._createPlayerMgr();
    inside().m_pPlayerMgr->createPlayer();
    inside().m_pPlayerMgr->setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_ORIGIN_OR_LETTER);
    ASSERT_TRUE(inside()._pushPlayerView());
    EXPECT_EQ(displaymode_button(), "video/displaymode/full");
}

// Later launches.

TEST_F(VideoPlayerMgr, ALaterLaunchPlaysTheNewItemUnderTheSameScreen) {
    start_playing();
    TslPlayerView *view = player_view();
    const auto *parser = inside().m_pAppParserCtrl;
    emit(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE);
    ASSERT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER);
    forget();

    launch("/media/other.mp4", false);

    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_PLAYER_STOP}));
    EXPECT_EQ(player().players(), 1);
    EXPECT_EQ(player().uri(), "/media/other.mp4");
    EXPECT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_CROPPED_FULL);
    EXPECT_NE(inside().m_pAppParserCtrl, nullptr);
    EXPECT_NE(inside().m_pAppParserCtrl, parser);
    EXPECT_EQ(mock::fake_app_control().live(), 1);
    EXPECT_TRUE(NotLogged(first_launch));
    ASSERT_TRUE(plays());
    EXPECT_EQ(player_view(), view);
    EXPECT_EQ(play_button(), "video/pause");
}

TEST_F(VideoPlayerMgr, ALaterLaunchIsParsedBeforeTheOldOneGoesAndTheOldOneGoesBeforeTheStop) {
    start_playing();
    EXPECT_CALL(mock::player(), player_stop).WillOnce([this](player_h handle) {
        EXPECT_FALSE(has_parser());
        // The request itself and the new parser's copy.
        EXPECT_EQ(mock::fake_app_control().live(), 2);
        return mock::fake_player().player_stop(handle);
    });
    launch("/media/other.mp4", false);
    EXPECT_TRUE(has_parser());
    testing::Mock::VerifyAndClearExpectations(&mock::player());
}

TEST_F(VideoPlayerMgr, ALaterLaunchClosesTheVolumeScreenFirst) {
    start_playing();
    show_volume_view_and_wait();
    forget();
    launch("/media/other.mp4", false);
    EXPECT_TRUE(LoggedIn("pop", DLOG_INFO, ""));
    EXPECT_TRUE(entered_before("pop", "_getSignalMessage"));
    EXPECT_TRUE(
        LoggedInOrder({logs::info("=== App Control ==="), logs::info("SIGNAL_PLAYER_STOP")}));
    ASSERT_TRUE(plays());
    EXPECT_TRUE(support::run_main_loop_until([this] { return volume_view() == nullptr; }));
    EXPECT_NE(player_view(), nullptr);
}

TEST_F(VideoPlayerMgr, ALaterLaunchClosesAVolumeScreenThatIsStillOnItsWay) {
    start_playing();
    for (const int turns : {0, 1, 3, 10}) {
        SCOPED_TRACE(turns);
        show_volume_view();
        support::run_loop_turns(turns);
        launch("/media/other.mp4", false);
        ASSERT_TRUE(support::run_main_loop_until([this] { return volume_view() == nullptr; }, 2.0));
        EXPECT_NE(player_view(), nullptr);
    }
}

TEST_F(VideoPlayerMgr, ALaterLaunchDuringThePreparationReplacesTheItem) {
    player().hold_prepare();
    manager().create();
    launch(item_path);
    ASSERT_EQ(player().state(), PLAYER_STATE_IDLE);
    launch("/media/other.mp4", false);
    EXPECT_EQ(player().players(), 1);
    EXPECT_EQ(player().uri(), "/media/other.mp4");
    player().release_prepare();
    ASSERT_TRUE(plays());
    EXPECT_EQ(player().uri(), "/media/other.mp4");
}

TEST_F(VideoPlayerMgr, ALaterLaunchThatNamesNothingEndsTheApplication) {
    start_playing();
    launch(nullptr, false);
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_PLAYER_STOP, SIGNAL_APP_TERMINATE}));
    EXPECT_FALSE(has_parser());
}
