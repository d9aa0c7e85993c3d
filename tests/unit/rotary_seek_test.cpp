#include <functional>
#include <string>
#include <vector>

#include "video_player_mgr_fixture.h"

namespace {

constexpr int long_duration = 60000;
constexpr int short_duration = 59999;
constexpr int start_position = 20000;
constexpr char finished[] = "Lamda function to check rotary event is finished.";
constexpr char seek_failed[] = "* Critical * It is failed to set position by rotary_seek.";

std::string seek(int position, bool accurate) {
    return "nPosition: " + std::to_string(position) + ", bAccurate : " + (accurate ? "1" : "0");
}
std::string collected(int count, int offset) {
    return "\n=== Event count: [" + std::to_string(count) + "] === SecondToMove: [" +
           std::to_string(offset) + "] ===\n";
}

class RotarySeek : public VideoPlayerMgrTest {
protected:
    void TearDown() override {
        if (inside().m_pPlayerMgr != nullptr) {
            clear_collected_detents();
        }
        VideoPlayerMgrTest::TearDown();
    }

    /// A video that stands at the start position while it plays.
    void play_video_of(int duration) {
        player().set_duration(duration);
        player().stop_clock();
        start_playing();
        player_view()->destroyProgressTimer();
        clear_collected_detents();
        player().set_position(start_position);
        forget();
    }
    /// Nothing can be sought until end_preparation(), and no duration is known.
    void launch_without_end_of_preparation(int duration) {
        player().set_duration(duration);
        player().stop_clock();
        player().hold_prepare();
        manager().create();
        launch(item_path);
        forget();
    }
    void end_preparation() {
        player().release_prepare();
        ASSERT_TRUE(comes([] { return player().state() == PLAYER_STATE_PLAYING; }));
        forget();
    }
    void pause_video_of(int duration) {
        play_video_of(duration);
        emit(SIGNAL_PLAYER_PAUSE);
        forget();
    }
    /// The count and the offset belong to the process: a rough seek that succeeds clears them.
    void clear_collected_detents() {
        const bool playing = player().state() == PLAYER_STATE_PLAYING;
        TslVideoPlayerMgrInside::_roughSeekTimerCb(&inside(), 0);
        player().drain();
        support::run_loop_turns();
        inside().m_nPlayerStateBeforeSeek = 0;
        if (playing) {
            emit(SIGNAL_PLAYER_PLAY);
        }
    }

    void turn_clockwise(int detents = 1) {
        for (int detent = 0; detent < detents; ++detent) {
            emit_integer(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 0);
        }
    }
    void turn_counter_clockwise(int detents = 1) {
        for (int detent = 0; detent < detents; ++detent) {
            emit_integer(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 1);
        }
    }

    static bool rough_seek_done(int position) { return bool(LoggedInfo(seek(position, false))); }
    static bool accurate_seek_done(int position) { return bool(LoggedInfo(seek(position, true))); }
    static testing::AssertionResult comes(const std::function<bool()> &condition) {
        return support::run_main_loop_until(condition)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "the deadline passed";
    }
    static bool any_seek() { return !NotLogged("bAccurate"); }
};

}  // namespace

TEST_F(RotarySeek, OneDetentSeeksRoughlyThenAccurately) {
    play_video_of(long_duration);
    turn_clockwise();
    EXPECT_FALSE(any_seek());
    ASSERT_TRUE(comes([] { return accurate_seek_done(30000); }));
    EXPECT_TRUE(LoggedInOrder({logs::warn(collected(1, 10000)), logs::info(finished),
                               logs::info(seek(30000, false)), logs::info(finished),
                               logs::info(seek(30000, true))}));
    EXPECT_TRUE(LoggedTimes(2, DLOG_INFO, finished));
    EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, seek(30000, false)));
}

TEST_F(RotarySeek, TheRoughSeekWaitsHalfASecondAndTheAccurateOneAWhole) {
    play_video_of(long_duration);
    const double start = ecore_time_get();
    turn_clockwise();
    ASSERT_TRUE(comes([] { return rough_seek_done(30000); }));
    EXPECT_GE(ecore_time_get() - start, 0.49);
    EXPECT_FALSE(accurate_seek_done(30000));
    ASSERT_TRUE(comes([] { return accurate_seek_done(30000); }));
    EXPECT_GE(ecore_time_get() - start, 0.99);
    EXPECT_EQ(inside().m_pPlayerMgr->getPosition(), 30000);
}

TEST_F(RotarySeek, TwoDetentsCostOneRoughSeekOverBothSteps) {
    play_video_of(long_duration);
    turn_clockwise(2);
    ASSERT_TRUE(comes([] { return accurate_seek_done(40000); }));
    EXPECT_TRUE(LoggedInOrder({logs::warn(collected(1, 10000)), logs::warn(collected(2, 20000)),
                               logs::info(seek(40000, false)), logs::info(seek(40000, true))}));
    EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, seek(40000, false)));
    EXPECT_TRUE(NotLogged("nPosition: 30000"));
}

TEST_F(RotarySeek, EveryDetentRestartsTheWait) {
    play_video_of(long_duration);
    turn_clockwise();
    support::run_main_loop_for(0.1);
    ASSERT_FALSE(any_seek());
    const double last_detent = ecore_time_get();
    turn_clockwise();
    ASSERT_TRUE(comes([] { return rough_seek_done(40000); }));
    EXPECT_GE(ecore_time_get() - last_detent, 0.49);
    ASSERT_TRUE(comes([] { return accurate_seek_done(40000); }));
    EXPECT_GE(ecore_time_get() - last_detent, 0.99);
    EXPECT_TRUE(NotLogged("nPosition: 30000"));
}

TEST_F(RotarySeek, ThirdQuickDetentSeeksAtOnce) {
    play_video_of(long_duration);
    turn_clockwise(3);
    EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, seek(50000, false)));
    EXPECT_TRUE(NotLogged("Event count: [3]"));
    EXPECT_TRUE(NotLogged(finished));
}

TEST_F(RotarySeek, ThirdQuickDetentStillSeeksAccuratelyAfterwards) {
    play_video_of(long_duration);
    turn_clockwise(3);
    ASSERT_TRUE(comes([] { return accurate_seek_done(50000); }));
    EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, seek(50000, false)));
    EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, finished));
}

TEST_F(RotarySeek, FourthQuickDetentStartsANewCountFromTheReachedPosition) {
    play_video_of(600000);
    turn_clockwise(3);
    ASSERT_TRUE(rough_seek_done(50000));
    player().drain();
    turn_clockwise();
    EXPECT_TRUE(LoggedTimes(2, DLOG_WARN, collected(1, 10000)));
    ASSERT_TRUE(comes([] { return accurate_seek_done(60000); }));
    EXPECT_TRUE(LoggedTimes(0, DLOG_INFO, seek(50000, true)));
}

TEST_F(RotarySeek, AQuickTurnSeeksOnEveryThirdDetent) {
    play_video_of(600000);
    for (int detent = 0; detent < 9; ++detent) {
        turn_clockwise();
        player().drain();
    }
    EXPECT_TRUE(LoggedInOrder({logs::info(seek(50000, false)), logs::info(seek(80000, false)),
                               logs::info(seek(110000, false))}));
    ASSERT_TRUE(comes([] { return accurate_seek_done(110000); }));
    EXPECT_TRUE(LoggedTimes(1, DLOG_INFO, finished));
}

TEST_F(RotarySeek, AVideoBelowAMinuteMovesFiveSeconds) {
    play_video_of(short_duration);
    turn_clockwise(3);
    EXPECT_TRUE(LoggedWarn(collected(1, 5000)));
    EXPECT_TRUE(LoggedWarn(collected(2, 10000)));
    EXPECT_TRUE(rough_seek_done(35000));
}

TEST_F(RotarySeek, AVideoOfAMinuteMovesTenSeconds) {
    play_video_of(long_duration);
    turn_clockwise();
    EXPECT_TRUE(LoggedWarn(collected(1, 10000)));
}

TEST_F(RotarySeek, CounterClockwiseGoesBack) {
    play_video_of(short_duration);
    turn_counter_clockwise(3);
    EXPECT_TRUE(LoggedWarn(collected(1, -5000)));
    EXPECT_TRUE(rough_seek_done(5000));
}

TEST_F(RotarySeek, AnUnknownDirectionGoesBack) {
    play_video_of(short_duration);
    emit_integer(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, -1);
    EXPECT_TRUE(LoggedWarn(collected(1, -5000)));
}

TEST_F(RotarySeek, ForthAndBackCancelOut) {
    play_video_of(short_duration);
    turn_clockwise();
    turn_counter_clockwise();
    EXPECT_TRUE(LoggedWarn(collected(2, 0)));
    EXPECT_TRUE(comes([] { return rough_seek_done(start_position); }));
}

TEST_F(RotarySeek, PastTheEndTargetsTheDuration) {
    play_video_of(long_duration);
    player().set_position(55000);
    turn_clockwise(3);
    EXPECT_TRUE(rough_seek_done(long_duration));
}

TEST_F(RotarySeek, ATargetAtTheEndStays) {
    play_video_of(long_duration);
    player().set_position(30000);
    turn_clockwise(3);
    EXPECT_TRUE(rough_seek_done(long_duration));
}

TEST_F(RotarySeek, BeforeTheStartTargetsZero) {
    play_video_of(long_duration);
    player().set_position(5000);
    turn_counter_clockwise(3);
    EXPECT_TRUE(rough_seek_done(0));
}

TEST_F(RotarySeek, ATurnPausesPlaybackOnceAndResumesWhenTheAccurateSeekIsDone) {
    play_video_of(600000);
    player().hold_seeks();
    turn_clockwise(6);
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    EXPECT_EQ(times_emitted(SIGNAL_PLAYER_PAUSE), 1);
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PLAY);

    ASSERT_TRUE(comes([] { return bool(LoggedInfo(finished)); }));
    support::run_loop_turns();
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_RESUME));

    player().release_seeks();
    ASSERT_TRUE(comes([this] { return was_emitted(SIGNAL_PLAYER_RESUME); }));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
    EXPECT_EQ(times_emitted(SIGNAL_PLAYER_RESUME), 1);
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, 0);
}

TEST_F(RotarySeek, TheCompletionOfARoughSeekDoesNotResume) {
    play_video_of(long_duration);
    turn_clockwise(3);
    player().drain();
    ASSERT_TRUE(comes([] { return bool(LoggedIn("_seekCompletedCb", DLOG_INFO, "")); }));
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PLAY);
}

TEST_F(RotarySeek, APausedVideoIsNeitherPausedNorResumed) {
    pause_video_of(long_duration);
    turn_clockwise(3);
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PAUSE);
    ASSERT_TRUE(comes([] { return accurate_seek_done(50000); }));
    ASSERT_TRUE(comes([this] { return inside().m_nPlayerStateBeforeSeek == 0; }));
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_PAUSE));
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_RESUME));
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
}

TEST_F(RotarySeek, TheStateBeforeTheFirstSeekOfATurnIsKept) {
    play_video_of(600000);
    player().hold_seeks();
    turn_clockwise(3);
    ASSERT_EQ(player().state(), PLAYER_STATE_PAUSED);
    turn_clockwise(3);
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PLAY);
}

TEST_F(RotarySeek, AFailedThirdDetentKeepsTheCountAndStartsNoAccurateSeek) {
    launch_without_end_of_preparation(600000);

    turn_clockwise(3);
    EXPECT_TRUE(LoggedWarn(collected(2, 10000)));
    EXPECT_TRUE(LoggedTimes(1, DLOG_ERROR, seek_failed));
    support::run_main_loop_for(1.2);
    EXPECT_TRUE(NotLogged(finished));

    // The count stands at three: the next detent seeks at once, over all four steps.
    end_preparation();
    turn_clockwise();
    EXPECT_TRUE(rough_seek_done(15000 + 10000));
}

TEST_F(RotarySeek, AFailedRoughSeekAfterARestKeepsTheCount) {
    launch_without_end_of_preparation(600000);

    turn_clockwise();
    EXPECT_TRUE(LoggedWarn(collected(1, 5000)));
    ASSERT_TRUE(comes([] { return logs::count(DLOG_ERROR, seek_failed) == 2; }));
    EXPECT_TRUE(LoggedTimes(2, DLOG_INFO, finished));
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_IDLE);

    turn_clockwise();
    EXPECT_TRUE(LoggedWarn(collected(2, 10000)));
    end_preparation();
}

TEST_F(RotarySeek, AVideoPausedByAFailedSeekStaysPaused) {
    play_video_of(long_duration);
    EXPECT_CALL(mock::player(), player_set_play_position)
        .WillRepeatedly(testing::Return(PLAYER_ERROR_INVALID_OPERATION));
    turn_clockwise(3);
    EXPECT_TRUE(LoggedError(seek_failed));
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PLAY);
    support::run_main_loop_for(1.2);
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    testing::Mock::VerifyAndClearExpectations(&mock::player());
}

TEST_F(RotarySeek, TheVolumeScreenKeepsTheBezelToItself) {
    play_video_of(long_duration);
    show_volume_view();
    forget();
    turn_clockwise(3);
    EXPECT_FALSE(any_seek());
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, 0);
    EXPECT_TRUE(NotLogged("Event count"));
    EXPECT_TRUE(NoFaultLogged());

    volume_view()->destroy();
    support::run_loop_turns();
    turn_clockwise();
    EXPECT_TRUE(LoggedWarn(collected(1, 10000)));
}

TEST_F(RotarySeek, WithoutAScreenItIsLogged) {
    manager().create();
    inside()._createPlayerMgr();
    forget();
    turn_clockwise();
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * There is no view or no view layout..")}));
    delete inside().m_pPlayerMgr;
    inside().m_pPlayerMgr = nullptr;
}

TEST_F(RotarySeek, AScreenWithoutNameIsLogged) {
    play_video_of(long_duration);
    player_view()->setName(nullptr);
    forget();
    turn_clockwise();
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * View name is nullptr.")}));
    static_cast<app_assist::WContentViewController *>(naviframe().getTopContentView())
        ->setName("tsl_player_view");
}

TEST_F(RotarySeek, MissingPartsAreLoggedInOrder) {
    play_video_of(long_duration);
    {
        const Without player(inside().m_pPlayerMgr);
        const Without sound(inside().m_pSoundMgr);
        const Without naviframe(inside().m_pNaviframeCtrl);
        turn_clockwise();
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no m_pPlayerMgr.")}));
    }
    forget();
    {
        const Without sound(inside().m_pSoundMgr);
        const Without naviframe(inside().m_pNaviframeCtrl);
        turn_clockwise();
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no m_pSoundMgr .")}));
    }
    forget();
    {
        const Without naviframe(inside().m_pNaviframeCtrl);
        turn_clockwise();
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no m_pNaviframeCtrl.")}));
    }
}

TEST_F(RotarySeek, TimersWithoutUserDataLogAndEnd) {
    EXPECT_FALSE(TslVideoPlayerMgrInside::_roughSeekTimerCb(nullptr, 0));
    EXPECT_FALSE(TslVideoPlayerMgrInside::_accurateSeekTimerCb(nullptr, 0));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no user data."),
                                  logs::error("* Critical * There is no user data.")}));
    EXPECT_TRUE(NotLogged(finished));
}

TEST_F(RotarySeek, TheTimersGoWithTheManager) {
    play_video_of(long_duration);
    turn_clockwise();
    delete_manager();
    support::run_main_loop_for(1.2);
    EXPECT_TRUE(NotLogged(finished));

    renew_manager();
    manager().create();
    launch(item_path, false);
    ASSERT_TRUE(comes([] { return player().state() == PLAYER_STATE_PLAYING; }));
}
