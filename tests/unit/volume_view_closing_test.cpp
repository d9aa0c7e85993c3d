// The volume screen closes by itself, and leaves nothing behind. In real time: each test takes the
// seconds that the screen takes.

#include "volume_view_fixture.h"

namespace {

class VolumeViewClosing : public screens::VolumeViewTest {
protected:
    static constexpr double slack_s = 0.6;

    /// Lets so much of the time pass that only input can keep the screen.
    void almost_close() {
        support::run_main_loop_for(close_delay_s - 0.6);
        ASSERT_TRUE(alive());
    }
    /// Whether the screen stays longer than it would without the input just made, and goes then.
    [[nodiscard]] bool starts_anew() const {
        support::run_main_loop_for(1.0);
        return alive() && closes(close_delay_s + slack_s);
    }
};

TEST_F(VolumeViewClosing, ThreeSecondsWithoutInputCloseTheScreen) {
    const double start = ecore_time_get();
    push_shown(5);
    ASSERT_TRUE(closes(close_delay_s + 1.0));
    EXPECT_GE(ecore_time_get() - start, close_delay_s - 0.1);
    EXPECT_TRUE(LoggedInfo("This is lamda for _createVolumeViewUiTimer()"));
    EXPECT_TRUE(LoggedIn("pop", DLOG_INFO, ""));
    EXPECT_NE(naviframe().getContentViewController("tsl_player_view"), nullptr);
}

TEST_F(VolumeViewClosing, APressKeepsItForAnotherThreeSeconds) {
    push_shown(5);
    almost_close();
    press(plus_part);
    EXPECT_TRUE(starts_anew());
}

TEST_F(VolumeViewClosing, ATouchInTheMiddleKeepsItToo) {
    push_shown(5);
    almost_close();
    tap(screen_size / 2, screen_size * 2 / 5);
    EXPECT_TRUE(starts_anew());
}

TEST_F(VolumeViewClosing, ALevelOnItsWayKeepsIt) {
    push_shown(5);
    almost_close();
    view().setVolume(6);
    EXPECT_TRUE(starts_anew());
}

TEST_F(VolumeViewClosing, ALevelThatIsThereDoesnt) {
    push_shown(5);
    almost_close();
    view().setVolume(5);
    EXPECT_TRUE(closes(1.0));
}

TEST_F(VolumeViewClosing, UnderAScreenReaderItStays) {
    mock::fake_uxt().set_screen_reader(true);
    push(5);
    EXPECT_TRUE(LoggedInfo("m_pScreenReaderCtrl->isEnabledToAccessAccessibility() == true"));
    support::run_main_loop_for(close_delay_s + 0.5);
    EXPECT_TRUE(alive());
    EXPECT_TRUE(NotLogged("This is lamda for _createVolumeViewUiTimer()"));
}

TEST_F(VolumeViewClosing, APressUnderAScreenReaderEndsTheTime) {
    push_shown(5);
    mock::fake_uxt().set_screen_reader(true);
    press(minus_part);
    EXPECT_FALSE(closes(close_delay_s + 0.5));
}

TEST_F(VolumeViewClosing, ThePopTakesTimersAndButtonsAway) {
    push_shown(5);
    view().setVolume(12);
    view().pop();
    logs::clear();
    EXPECT_EQ(button(plus_part), nullptr);
    EXPECT_EQ(button(minus_part), nullptr);
    EXPECT_EQ(button(mute_part), nullptr);
    ASSERT_TRUE(closes(1.0));
    support::run_main_loop_for(0.1);
    EXPECT_TRUE(NotLogged("This is lamda"));
}

TEST_F(VolumeViewClosing, ALevelAfterThePopIsHarmless) {
    push_shown(5);
    view().pop();
    ASSERT_TRUE(alive());
    view().setVolume(12);
    EXPECT_TRUE(LoggedError("* Critical * The plus button is nullptr."));
    ASSERT_TRUE(closes(1.0));
    logs::clear();
    support::run_main_loop_for(close_delay_s + 0.3);
    EXPECT_TRUE(NotLogged("This is lamda"));
}

TEST_F(VolumeViewClosing, ADestroyedScreenLeavesNothingBehind) {
    push_shown(5);
    view().setVolume(12);
    view().destroy();
    EXPECT_FALSE(alive());
    EXPECT_EQ(mock::fake_circle().live(), 0);
    logs::clear();
    support::run_main_loop_for(close_delay_s + 0.3);
    EXPECT_TRUE(NotLogged("This is lamda"));
}

}  // namespace
