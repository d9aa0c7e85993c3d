#include <Ecore.h>

#include <string>
#include <vector>

#include "video_player_mgr_fixture.h"

using testing::_;
using testing::Return;

namespace {

constexpr char no_player_manager[] = "* Critical * PlayerManager is nullptr.";
constexpr char no_sound_manager[] = "* Critical * SoundMgr is nullptr.";
constexpr char no_naviframe[] = "* Critical * NaviframeCtrl is nullptr.";
constexpr char no_player_view[] = "* Critical * There is no player view.";
constexpr char no_volume_view[] = "* Critical * There is no volume view.";
constexpr char no_focus[] = "* Critical * It is failed to acquire audio focus.";

constexpr int hdmi = 5;

class PlayerSignals : public VideoPlayerMgrTest {
protected:
    static bool display_locked() { return mock::fake_power().is_locked(POWER_LOCK_DISPLAY); }

    void expect_only(TslSignalType type, const std::string &message) {
        forget();
        emit(type);
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(message)}));
    }
    /// What a sequence of the sound and the naviframe tests first.
    void expect_tests_of_naviframe_and_sound(TslSignalType type) {
        {
            const Without sound(inside().m_pSoundMgr);
            const Without naviframe(inside().m_pNaviframeCtrl);
            expect_only(type, no_naviframe);
        }
        {
            const Without sound(inside().m_pSoundMgr);
            expect_only(type, no_sound_manager);
        }
    }
};

}  // namespace

// Play and resume.

TEST_F(PlayerSignals, PlayTakesFocusAndDisplayAndShowsThePauseButton) {
    for (const TslSignalType type : {SIGNAL_PLAYER_PLAY, SIGNAL_PLAYER_RESUME}) {
        SCOPED_TRACE(type);
        if (player_view() == nullptr) {
            start_playing();
        }
        emit(SIGNAL_PLAYER_PAUSE);
        ASSERT_FALSE(sound().has_focus());
        ASSERT_FALSE(display_locked());
        ASSERT_EQ(play_button(), "video/play");
        forget();

        emit(type);

        EXPECT_TRUE(
            LoggedInOrder({logs::info("SIGNAL_PLAYER_PLAY"), logs::info("SIGNAL_PLAYER_RESUME")}));
        EXPECT_TRUE(sound().has_focus());
        EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
        EXPECT_TRUE(display_locked());
        EXPECT_EQ(play_button(), "video/pause");
        EXPECT_TRUE(NoFaultLogged());
    }
}

TEST_F(PlayerSignals, PlayGoesOnWithoutFocus) {
    start_paused();
    sound().forbid_focus(true);
    emit(SIGNAL_PLAYER_PLAY);
    EXPECT_TRUE(LoggedError(no_focus));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
    EXPECT_TRUE(display_locked());
    EXPECT_EQ(play_button(), "video/pause");
}

TEST_F(PlayerSignals, PlayTakesTheFocusBeforeItPlaysAndTheDisplayAfterwards) {
    start_paused();
    testing::InSequence order;
    EXPECT_CALL(mock::sound(), sound_manager_acquire_focus);
    EXPECT_CALL(mock::player(), player_start);
    EXPECT_CALL(mock::power(), device_power_request_lock);
    emit(SIGNAL_PLAYER_PLAY);
}

TEST_F(PlayerSignals, AFailedPlayTakesNoDisplayAndChangesNoButton) {
    start_paused();
    EXPECT_CALL(mock::player(), player_start).WillOnce(Return(PLAYER_ERROR_INVALID_OPERATION));
    emit(SIGNAL_PLAYER_PLAY);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to play."));
    EXPECT_FALSE(display_locked());
    EXPECT_EQ(play_button(), "video/play");
}

// Pause.

TEST_F(PlayerSignals, PauseGivesBackFocusAndDisplayAndShowsThePlayButton) {
    start_playing();
    ASSERT_EQ(play_button(), "video/pause");
    emit(SIGNAL_PLAYER_PAUSE);
    EXPECT_TRUE(LoggedInfo("SIGNAL_PLAYER_PAUSE"));
    EXPECT_FALSE(sound().has_focus());
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    EXPECT_FALSE(display_locked());
    EXPECT_EQ(play_button(), "video/play");
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerSignals, PauseGivesTheFocusBackBeforeItPausesAndTheDisplayAfterwards) {
    start_playing();
    testing::InSequence order;
    EXPECT_CALL(mock::sound(), sound_manager_release_focus);
    EXPECT_CALL(mock::player(), player_pause);
    EXPECT_CALL(mock::power(), device_power_release_lock);
    emit(SIGNAL_PLAYER_PAUSE);
    // The teardown gives both back again.
    testing::Mock::VerifyAndClearExpectations(&mock::sound());
    testing::Mock::VerifyAndClearExpectations(&mock::power());
}

TEST_F(PlayerSignals, PauseGoesOnWhenTheFocusStays) {
    start_playing();
    EXPECT_CALL(mock::sound(), sound_manager_release_focus)
        .WillOnce(Return(SOUND_MANAGER_ERROR_INTERNAL))
        .WillRepeatedly(Return(SOUND_MANAGER_ERROR_NONE));
    emit(SIGNAL_PLAYER_PAUSE);
    EXPECT_TRUE(LoggedError(no_focus));
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    EXPECT_FALSE(display_locked());
    EXPECT_EQ(play_button(), "video/play");
}

TEST_F(PlayerSignals, AFailedPauseKeepsTheDisplay) {
    start_playing();
    EXPECT_CALL(mock::player(), player_pause).WillOnce(Return(PLAYER_ERROR_INVALID_OPERATION));
    emit(SIGNAL_PLAYER_PAUSE);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to pause."));
    EXPECT_TRUE(display_locked());
    EXPECT_EQ(play_button(), "video/pause");
}

// Stop.

TEST_F(PlayerSignals, StopGivesEverythingBackAndDestroysThePlayer) {
    start_playing();
    emit(SIGNAL_PLAYER_STOP);
    EXPECT_TRUE(LoggedInfo("SIGNAL_PLAYER_STOP"));
    EXPECT_FALSE(sound().has_focus());
    EXPECT_FALSE(display_locked());
    EXPECT_EQ(play_button(), "video/play");
    EXPECT_EQ(player().players(), 0);
    EXPECT_NE(inside().m_pPlayerMgr, nullptr);
}

TEST_F(PlayerSignals, StopGivesTheFocusBackThenStopsThenTheDisplayThenThePlayer) {
    start_playing();
    testing::InSequence order;
    EXPECT_CALL(mock::sound(), sound_manager_release_focus);
    EXPECT_CALL(mock::player(), player_stop);
    EXPECT_CALL(mock::power(), device_power_release_lock).WillOnce([this](power_lock_e type) {
        EXPECT_EQ(play_button(), "video/pause");
        return mock::fake_power().device_power_release_lock(type);
    });
    EXPECT_CALL(mock::player(), player_destroy).WillOnce([this](player_h handle) {
        EXPECT_EQ(play_button(), "video/play");
        return mock::fake_player().player_destroy(handle);
    });
    emit(SIGNAL_PLAYER_STOP);
    // The teardown gives focus and display back again.
    testing::Mock::VerifyAndClearExpectations(&mock::sound());
    testing::Mock::VerifyAndClearExpectations(&mock::player());
    testing::Mock::VerifyAndClearExpectations(&mock::power());
}

TEST_F(PlayerSignals, APlayerThatWentWhileItWasStoppedIsOnlyWarnedOf) {
    start_playing();
    EXPECT_CALL(mock::power(), device_power_release_lock)
        .WillOnce([this](power_lock_e type) {
            inside().m_pPlayerMgr->destroyPlayer();
            return mock::fake_power().device_power_release_lock(type);
        })
        .WillRepeatedly(Return(0));
    emit(SIGNAL_PLAYER_STOP);
    EXPECT_TRUE(
        LoggedIn("_eventHandlingToStop", DLOG_WARN, "It is failed to destroy player handle."));
    EXPECT_EQ(play_button(), "video/play");
}

TEST_F(PlayerSignals, StopGoesOnWhenTheFocusStays) {
    start_playing();
    EXPECT_CALL(mock::sound(), sound_manager_release_focus)
        .WillOnce(Return(SOUND_MANAGER_ERROR_INTERNAL))
        .WillRepeatedly(Return(SOUND_MANAGER_ERROR_NONE));
    emit(SIGNAL_PLAYER_STOP);
    EXPECT_TRUE(LoggedError(no_focus));
    EXPECT_EQ(player().players(), 0);
}

TEST_F(PlayerSignals, AFailedStopLeavesThePlayerAndTheDisplayAlone) {
    start_playing();
    emit(SIGNAL_PLAYER_STOP);
    emit(SIGNAL_PLAYER_PLAY);
    mock::fake_power().device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    player_view()->changePlayButtonImageAsPause();
    forget();
    // There is no player any more: stopping it is refused.
    EXPECT_CALL(mock::power(), device_power_release_lock).Times(0);
    emit(SIGNAL_PLAYER_STOP);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to stop."));
    EXPECT_TRUE(NotLogged("It is failed to destroy player handle."));
    EXPECT_EQ(play_button(), "video/pause");
    testing::Mock::VerifyAndClearExpectations(&mock::power());
}

TEST_F(PlayerSignals, PlayPauseAndStopTestTheirParts) {
    manager().create();
    for (const TslSignalType type :
         {SIGNAL_PLAYER_PLAY, SIGNAL_PLAYER_RESUME, SIGNAL_PLAYER_PAUSE, SIGNAL_PLAYER_STOP}) {
        SCOPED_TRACE(type);
        {
            const Without sound(inside().m_pSoundMgr);
            expect_only(type, no_player_manager);
        }
        inside()._createPlayerMgr();
        {
            const Without sound(inside().m_pSoundMgr);
            expect_only(type, no_sound_manager);
        }
        delete inside().m_pPlayerMgr;
        inside().m_pPlayerMgr = nullptr;
    }
}

// The play button.

TEST_F(PlayerSignals, PlayOrPauseWithoutPlayerManagerIsLogged) {
    expect_only(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, "* Critical * There is no m_pPlayerMgr.");
}

TEST_F(PlayerSignals, PlayOrPauseBeforeThePlayerIsReadyOnlyLogs) {
    constexpr char not_ready[] =
        "* Critical * It is not possible to play or pause because player is not initialized to "
        "prepare play or pause.";
    player().hold_prepare();
    manager().create();
    launch(item_path);
    ASSERT_EQ(player().state(), PLAYER_STATE_IDLE);
    forget();
    emit(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(not_ready)}));
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE}));

    EXPECT_CALL(mock::player(), player_get_state)
        .WillRepeatedly([](player_h, player_state_e *state) {
            *state = PLAYER_STATE_NONE;
            return int(PLAYER_ERROR_NONE);
        });
    forget();
    emit(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE);
    EXPECT_TRUE(LoggedError(not_ready));
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_PLAY));
    testing::Mock::VerifyAndClearExpectations(&mock::player());
}

TEST_F(PlayerSignals, PlayOrPausePausesWhatPlays) {
    start_playing();
    emit(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE);
    EXPECT_EQ(emitted(),
              (std::vector<TslSignalType>{SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, SIGNAL_PLAYER_PAUSE}));
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
}

TEST_F(PlayerSignals, PlayOrPausePlaysWhatIsPaused) {
    start_paused();
    emit(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE);
    EXPECT_EQ(emitted(),
              (std::vector<TslSignalType>{SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, SIGNAL_PLAYER_PLAY}));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
}

TEST_F(PlayerSignals, PlayOrPausePlaysWhatIsReady) {
    // Prepared, but refused to start.
    EXPECT_CALL(mock::player(), player_start)
        .WillOnce(Return(PLAYER_ERROR_INVALID_OPERATION))
        .WillRepeatedly([](player_h handle) { return mock::fake_player().player_start(handle); });
    manager().create();
    launch(item_path);
    ASSERT_TRUE(support::run_main_loop_until(
        [] { return bool(LoggedError("* Critical * It is failed to play.")); }));
    ASSERT_EQ(player().state(), PLAYER_STATE_READY);
    emit(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE);
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
}

TEST_F(PlayerSignals, TheButtonsOfTheScreenReachThePlayer) {
    start_playing();
    evas_object_smart_callback_call(button("play"), "clicked", nullptr);
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    evas_object_smart_callback_call(button("displaymode"), "clicked", nullptr);
    EXPECT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER);
    evas_object_smart_callback_call(button("volume"), "clicked", nullptr);
    EXPECT_TRUE(LoggedInfo("SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW"));
}

// Display mode.

TEST_F(PlayerSignals, TheDisplayModeTogglesAndTheButtonNamesTheOther) {
    start_playing();
    ASSERT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_CROPPED_FULL);
    ASSERT_EQ(displaymode_button(), "video/displaymode/letterbox");

    emit(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE);
    EXPECT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER);
    EXPECT_EQ(displaymode_button(), "video/displaymode/full");

    emit(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE);
    EXPECT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_CROPPED_FULL);
    EXPECT_EQ(displaymode_button(), "video/displaymode/letterbox");
}

TEST_F(PlayerSignals, AnyOtherDisplayModeBecomesCroppedFull) {
    start_playing();
    inside().m_pPlayerMgr->setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_FULL_SCREEN);
    player_view()->changeDisplaymodeButtonImageAsFull();
    emit(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE);
    EXPECT_EQ(player().display_mode(), PLAYER_DISPLAY_MODE_CROPPED_FULL);
    EXPECT_EQ(displaymode_button(), "video/displaymode/letterbox");
}

TEST_F(PlayerSignals, ARefusedDisplayModeIsLoggedAndKeepsTheButton) {
    start_playing();
    int reads = 0;
    // The state is gone by the time the mode is set, and setting it is refused then.
    EXPECT_CALL(mock::player(), player_get_state)
        .WillRepeatedly([](player_h, player_state_e *state) {
            *state = PLAYER_STATE_NONE;
            return int(PLAYER_ERROR_NONE);
        });
    EXPECT_CALL(mock::player(), player_get_display_mode)
        .WillRepeatedly([&reads](player_h, player_display_mode_e *mode) {
            *mode = reads++ == 0 ? PLAYER_DISPLAY_MODE_CROPPED_FULL
                                 : PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER;
            return int(PLAYER_ERROR_NONE);
        });
    emit(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to set display mode to Origin or letter."));
    EXPECT_EQ(displaymode_button(), "video/displaymode/letterbox");

    player_view()->changeDisplaymodeButtonImageAsFull();
    emit(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to set display mode to Cropped full."));
    EXPECT_EQ(displaymode_button(), "video/displaymode/full");
    testing::Mock::VerifyAndClearExpectations(&mock::player());
}

TEST_F(PlayerSignals, DisplayModeAndProgressTestTheirParts) {
    for (const TslSignalType type :
         {SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE, SIGNAL_PLAYER_VIEW_PROGRESS_TICK}) {
        SCOPED_TRACE(type);
        {
            const Without naviframe(inside().m_pNaviframeCtrl);
            expect_only(type, "* Critical * There is no m_pPlayerMgr.");
        }
        inside()._createPlayerMgr();
        {
            const Without naviframe(inside().m_pNaviframeCtrl);
            expect_only(type, "* Critical * There is no m_pNaviframeCtrl.");
        }
        forget();
        emit(type);
        EXPECT_TRUE(LoggedError("* Critical * It is failed to get pPlayerView."));
        delete inside().m_pPlayerMgr;
        inside().m_pPlayerMgr = nullptr;
    }
}

// Progress.

TEST_F(PlayerSignals, AProgressTickShowsPositionAndDuration) {
    player().set_duration(125000);
    player().stop_clock();
    start_playing();
    player_view()->destroyProgressTimer();
    player().set_position(61000);
    emit(SIGNAL_PLAYER_VIEW_PROGRESS_TICK);
    EXPECT_EQ(time_text("played"), "01:01");
    EXPECT_EQ(time_text("duration"), "02:05");
}

TEST_F(PlayerSignals, AProgressTickReadsThePositionFirst) {
    start_playing();
    player_view()->destroyProgressTimer();
    testing::InSequence order;
    EXPECT_CALL(mock::player(), player_get_play_position);
    EXPECT_CALL(mock::player(), player_get_duration);
    emit(SIGNAL_PLAYER_VIEW_PROGRESS_TICK);
}

// Volume.

TEST_F(PlayerSignals, AVolumeOfZeroShowsMuteAndMoreShowsOn) {
    sound().set_devices({hdmi});
    start_playing();
    emit_integer(SIGNAL_SOUND_MGR_VOLUME_CHANGED, 0);
    EXPECT_EQ(volume_button(), "video/volume/mute");
    emit_integer(SIGNAL_SOUND_MGR_VOLUME_CHANGED, 1);
    EXPECT_EQ(volume_button(), "video/volume/on");
    emit_integer(SIGNAL_SOUND_MGR_VOLUME_CHANGED, -1);
    EXPECT_EQ(volume_button(), "video/volume/mute");
    EXPECT_TRUE(LoggedTimes(3, DLOG_INFO, "SIGNAL_SOUND_MGR_VOLUME_CHANGED"));
}

TEST_F(PlayerSignals, AVolumeChangeWithTheVolumeScreenClosedLogsThatItIsClosed) {
    start_playing();
    emit_integer(SIGNAL_SOUND_MGR_VOLUME_CHANGED, 3);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_volume_view)}));
}

TEST_F(PlayerSignals, AVolumeChangeReachesTheVolumeScreen) {
    start_playing();
    show_volume_view(5);
    forget();
    emit_integer(SIGNAL_SOUND_MGR_VOLUME_CHANGED, 9);
    EXPECT_EQ(volume_view()->getVolume(), 9);
    EXPECT_TRUE(LoggedIn("setVolume", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("readCurrentVolumeLevel", DLOG_INFO, ""));
    EXPECT_TRUE(entered_before("setVolume", "readCurrentVolumeLevel"));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Nothing choose, set color of progressbar.")}));
}

TEST_F(PlayerSignals, AVolumeChangeOfThePlatformReachesTheButton) {
    sound().set_devices({hdmi});
    start_playing();
    sound().change_volume(SOUND_TYPE_MEDIA, 0);
    EXPECT_TRUE(
        support::run_main_loop_until([this] { return volume_button() == "video/volume/mute"; }));
    sound().change_volume(SOUND_TYPE_MEDIA, 4);
    EXPECT_TRUE(
        support::run_main_loop_until([this] { return volume_button() == "video/volume/on"; }));
}

TEST_F(PlayerSignals, VolumeTestsItsParts) {
    manager().create();
    expect_tests_of_naviframe_and_sound(SIGNAL_SOUND_MGR_VOLUME_CHANGED);
    forget();
    emit(SIGNAL_SOUND_MGR_VOLUME_CHANGED);
    EXPECT_TRUE(LoggedError(no_player_view));
    EXPECT_TRUE(NotLogged(no_volume_view));
}

TEST_F(PlayerSignals, SetVolumeSetsTheLevelOfThePlatform) {
    start_playing();
    emit_integer(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR, 11);
    EXPECT_TRUE(LoggedInfo("SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR"));
    EXPECT_EQ(inside().m_pSoundMgr->getVolume(), 11);
}

TEST_F(PlayerSignals, SetVolumeWithoutSoundManagerIsLogged) {
    expect_only(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR, no_sound_manager);
}

TEST_F(PlayerSignals, GetVolumeGivesTheVolumeScreenTheLevel) {
    start_playing();
    show_volume_view(5);
    inside().m_pSoundMgr->setVolume(12);
    emit(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR);
    EXPECT_TRUE(LoggedInfo("SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR"));
    EXPECT_EQ(volume_view()->getVolume(), 12);
}

TEST_F(PlayerSignals, GetVolumeTestsItsParts) {
    manager().create();
    expect_tests_of_naviframe_and_sound(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR);
    start_playing();
    expect_only(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, no_volume_view);
}

TEST_F(PlayerSignals, InitVolumeGivesTheVolumeScreenAllThreeLevels) {
    sound().set_max_volume(20);
    start_playing();
    show_volume_view(5, 15, 16);
    inside().m_pSoundMgr->setVolume(7);
    emit(SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR);
    EXPECT_TRUE(LoggedInfo("SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR"));
    EXPECT_EQ(volume_view()->getVolume(), 7);
    EXPECT_EQ(volume_view()->getMaxVolume(), 20);
    EXPECT_EQ(volume_view()->getSafetyVolume(), 21);
}

TEST_F(PlayerSignals, InitVolumeTestsItsParts) {
    manager().create();
    expect_tests_of_naviframe_and_sound(SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR);
    start_playing();
    expect_only(SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR, no_player_view);
}

// Routes.

TEST_F(PlayerSignals, ANewRouteEnablesTheVolumeButtonAndReportsTheLevel) {
    start_playing();
    ASSERT_FALSE(volume_button_responds());
    inside().m_pSoundMgr->setVolume(6);
    sound().set_devices({hdmi});
    for (const TslSignalType type :
         {SIGNAL_SOUND_MGR_ROUTE_CHANGED, SIGNAL_SOUND_MGR_DEVICE_DISCONNECT}) {
        SCOPED_TRACE(type);
        forget();
        emit(type);
        EXPECT_TRUE(LoggedInOrder({logs::info("SIGNAL_SOUND_MGR_ROUTE_CHANGED"),
                                   logs::info("SIGNAL_SOUND_MGR_DEVICE_DISCONNECT"),
                                   logs::info("SIGNAL_SOUND_MGR_VOLUME_CHANGED")}));
        EXPECT_TRUE(volume_button_responds());
        EXPECT_EQ(volume_button(), "video/volume/on");
        ASSERT_EQ(emitted(), (std::vector<TslSignalType>{type, SIGNAL_SOUND_MGR_VOLUME_CHANGED}));
        EXPECT_EQ(reinterpret_cast<intptr_t>(emissions()[1].payload), 6);
        // The volume screen is closed, and the nested signal says so.
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_volume_view)}));
    }
}

TEST_F(PlayerSignals, ANewRouteGivesTheVolumeScreenItsLevels) {
    constexpr int earjack = 3;
    sound().set_max_volume(20);
    start_playing();
    show_volume_view(5, 15, 16);
    inside().m_pSoundMgr->setVolume(6);
    sound().set_devices({earjack});
    emit(SIGNAL_SOUND_MGR_ROUTE_CHANGED);
    EXPECT_EQ(volume_view()->getMaxVolume(), 20);
    EXPECT_EQ(volume_view()->getSafetyVolume(), 9);
    EXPECT_EQ(volume_view()->getVolume(), 6);
}

TEST_F(PlayerSignals, TheLastRouteGoneClosesTheVolumeScreenAndDisablesTheButton) {
    sound().set_devices({hdmi});
    start_playing();
    ASSERT_TRUE(volume_button_responds());
    show_volume_view();
    forget();
    sound().set_devices({});
    emit(SIGNAL_SOUND_MGR_DEVICE_DISCONNECT);
    EXPECT_TRUE(LoggedInOrder({logs::info("Any sound route is not available."),
                               logs::info("It needs to disable volume button of player view.")}));
    EXPECT_FALSE(volume_button_responds());
    EXPECT_EQ(volume_button(), "video/volume/mute");
    EXPECT_FALSE(was_emitted(SIGNAL_SOUND_MGR_VOLUME_CHANGED));
    support::run_loop_turns();
    EXPECT_EQ(volume_view(), nullptr);
    EXPECT_NE(player_view(), nullptr);
}

TEST_F(PlayerSignals, ALostDeviceOfThePlatformDisablesTheButton) {
    constexpr int earjack = 3;
    sound().set_devices({earjack});
    start_playing();
    ASSERT_TRUE(volume_button_responds());
    sound().disconnect_device(earjack);
    EXPECT_TRUE(support::run_main_loop_until([this] { return !volume_button_responds(); }));
}

TEST_F(PlayerSignals, RoutesTestTheirParts) {
    manager().create();
    for (const TslSignalType type :
         {SIGNAL_SOUND_MGR_ROUTE_CHANGED, SIGNAL_SOUND_MGR_DEVICE_DISCONNECT}) {
        SCOPED_TRACE(type);
        expect_tests_of_naviframe_and_sound(type);
        forget();
        emit(type);
        EXPECT_TRUE(LoggedError(no_player_view));
        EXPECT_TRUE(NotLogged("Any sound route"));
    }
}

// The volume screen.

TEST_F(PlayerSignals, AVolumeScreenIsPushedWithTheLevelsOfTheSoundManager) {
    constexpr int earjack = 3;
    sound().set_devices({earjack});
    start_playing();
    inside().m_pSoundMgr->setVolume(6);
    emit(SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW);
    ASSERT_NE(volume_view(), nullptr);
    EXPECT_EQ(volume_view()->getVolume(), 6);
    EXPECT_EQ(volume_view()->getMaxVolume(), 15);
    EXPECT_EQ(volume_view()->getSafetyVolume(), 9);
}

TEST_F(PlayerSignals, AVolumeScreenThatCannotBePushedIsLogged) {
    start_playing();
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly([] {
        return strdup("/nowhere/");
    });
    EXPECT_FALSE(inside()._pushVolumeView());
    EXPECT_TRUE(LoggedError("* Critical * It is failed to push player view to naviframe."));
    EXPECT_TRUE(LoggedIn("onDestroy", DLOG_INFO, ""));
    EXPECT_EQ(volume_view(), nullptr);
}

TEST_F(PlayerSignals, PushingTheVolumeScreenTestsItsParts) {
    {
        const Without naviframe(inside().m_pNaviframeCtrl);
        EXPECT_FALSE(inside()._pushVolumeView());
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_naviframe)}));
    }
    forget();
    EXPECT_FALSE(inside()._pushVolumeView());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_sound_manager)}));
}

// The rest of the switch.

TEST_F(PlayerSignals, TerminateEndsTheMainLoop) {
    emit(SIGNAL_APP_TERMINATE);
    EXPECT_TRUE(LoggedInOrder({logs::info("SIGNAL_APP_TERMINATE"), logs::info("")}));
    EXPECT_TRUE(exited());

    struct Guard {
        bool fired = false;
    } guard;
    Ecore_Timer *timer = ecore_timer_add(
        5.0,
        [](void *data) -> Eina_Bool {
            static_cast<Guard *>(data)->fired = true;
            ecore_main_loop_quit();
            return ECORE_CALLBACK_RENEW;
        },
        &guard);
    ecore_job_add([](void *) { emit(SIGNAL_APP_TERMINATE); }, nullptr);
    elm_run();
    EXPECT_FALSE(guard.fired);
    ecore_timer_del(timer);
}

TEST_F(PlayerSignals, SignalsWithoutACaseReachTheDefault) {
    for (const int type : {int(SIGNAL_WINDOW_ROTATION_0), int(SIGNAL_WINDOW_ROTATION_90),
                           int(SIGNAL_WINDOW_ROTATION_180), int(SIGNAL_WINDOW_ROTATION_270),
                           int(SIGNAL_SOUND_MGR_FADE_VOLUME), 11, 20, 51}) {
        SCOPED_TRACE(type);
        forget();
        emit(static_cast<TslSignalType>(type));
        EXPECT_EQ(logs::all().size(), 1u);
        EXPECT_TRUE(LoggedIn("_getSignalMessage", DLOG_INFO, "Default"));
    }
}

TEST_F(PlayerSignals, SignalsThatOnlyCallAnOperationLogNothingOfTheirOwn) {
    for (const TslSignalType type :
         {SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE,
          SIGNAL_PLAYER_VIEW_ROTARY_EVENT, SIGNAL_POPUP_MISSED_VIDEO_PLUGIN,
          SIGNAL_POPUP_MISSED_AUDIO_PLUGIN, SIGNAL_POPUP_ERROR_TOAST, SIGNAL_POPUP_ERROR_ONE_BUTTON,
          SIGNAL_PLAYER_VIEW_PROGRESS_TICK}) {
        SCOPED_TRACE(type);
        forget();
        emit(type);
        // The operation's own refusal, as there is neither player nor text.
        EXPECT_EQ(logs::all().size(), 1u);
        EXPECT_EQ(logs::all()[0].level, DLOG_ERROR);
    }
}

TEST_F(PlayerSignals, TheManagerStopsListeningWhenItGoes) {
    delete_manager();
    forget();
    emit(SIGNAL_WINDOW_ROTATION_0);
    EXPECT_TRUE(logs::all().empty());
}

// The screen's play button.

TEST_F(PlayerSignals, UpdatingTheScreenTestsItsParts) {
    manager().create();
    {
        const Without naviframe(inside().m_pNaviframeCtrl);
        EXPECT_FALSE(inside()._updatePlayerViewUI());
        EXPECT_TRUE(
            OnlyFaultsLogged({logs::error("* Critical * Naviframe controller is nullptr.")}));
    }
    forget();
    EXPECT_FALSE(inside()._updatePlayerViewUI());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Player manager is nullptr.")}));
    inside()._createPlayerMgr();
    forget();
    EXPECT_FALSE(inside()._updatePlayerViewUI());
    EXPECT_TRUE(LoggedError("* Critical * It is failed to get top view controller."));
}

TEST_F(PlayerSignals, UpdatingTheScreenShowsWhatAPressWouldDo) {
    start_playing();
    player_view()->changePlayButtonImageAsPlay();
    EXPECT_TRUE(inside()._updatePlayerViewUI());
    EXPECT_EQ(play_button(), "video/pause");
    inside().m_pPlayerMgr->pause();
    EXPECT_TRUE(inside()._updatePlayerViewUI());
    EXPECT_EQ(play_button(), "video/play");
}
