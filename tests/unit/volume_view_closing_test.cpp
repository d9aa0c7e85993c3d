// The volume screen closes by itself, and leaves nothing behind.

#include "toolkit_timers.h"
#include "volume_view_fixture.h"

namespace {

using toolkit::timers;

class VolumeViewClosing : public screens::VolumeViewTest {
protected:
    void push_shown_with_time() {
        push_shown(5);
        ASSERT_EQ(timers.count_kept(close_delay_s), 1);
        timers.made.clear();
    }
    /// The three seconds have begun again, and those before are over.
    [[nodiscard]] static bool started_anew() {
        return timers.count_made(close_delay_s) == 1 && timers.count_kept(close_delay_s) == 1;
    }
    void SetUp() override {
        timers = toolkit::Timers{};
        VolumeViewTest::SetUp();
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
    support::run_main_loop_for(close_delay_s - 0.6);
    ASSERT_TRUE(alive());
    press(plus_part);
    support::run_main_loop_for(1.0);
    EXPECT_TRUE(alive());
    EXPECT_TRUE(closes(close_delay_s + 0.6));
}

TEST_F(VolumeViewClosing, EachPressStartsTheTimeAnew) {
    push_shown_with_time();
    for (const char *name : {plus_part, minus_part, mute_part}) {
        timers.made.clear();
        press(name);
        EXPECT_TRUE(started_anew()) << name;
    }
}

TEST_F(VolumeViewClosing, ATouchInTheMiddleKeepsItToo) {
    push_shown_with_time();
    tap(screen_size / 2, screen_size * 2 / 5);
    EXPECT_TRUE(started_anew());
}

TEST_F(VolumeViewClosing, ALevelOnItsWayKeepsIt) {
    push_shown_with_time();
    view().setVolume(6);
    EXPECT_TRUE(started_anew());
}

TEST_F(VolumeViewClosing, ALevelThatIsThereDoesnt) {
    push_shown_with_time();
    view().setVolume(5);
    EXPECT_EQ(timers.count_made(close_delay_s), 0);
    EXPECT_EQ(timers.count_kept(close_delay_s), 1);
}

TEST_F(VolumeViewClosing, TheEndOfTheTimeWithoutTheViewIsHarmless) {
    push_shown(5);
    void *const instance = evas_object_data_del(base(), "__@WViewInstance");
    EXPECT_TRUE(support::run_main_loop_until(
        [] { return bool(LoggedWarn("pVolumeView is not existed.")); }));
    EXPECT_TRUE(alive());
    evas_object_data_set(base(), "__@WViewInstance", instance);
}

TEST_F(VolumeViewClosing, UnderAScreenReaderItStays) {
    mock::fake_uxt().set_screen_reader(true);
    push(5);
    EXPECT_TRUE(LoggedInfo("m_pScreenReaderCtrl->isEnabledToAccessAccessibility() == true"));
    EXPECT_EQ(timers.count_made(close_delay_s), 0);
}

TEST_F(VolumeViewClosing, APressUnderAScreenReaderEndsTheTime) {
    push_shown_with_time();
    mock::fake_uxt().set_screen_reader(true);
    press(minus_part);
    EXPECT_EQ(timers.count_kept(close_delay_s), 0);
}

TEST_F(VolumeViewClosing, ThePopTakesTimersAndButtonsAway) {
    push_shown(5);
    view().setVolume(12);
    view().pop();
    EXPECT_EQ(timers.count_kept(close_delay_s), 0);
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
    EXPECT_EQ(timers.count_kept(close_delay_s), 0);
    logs::clear();
    support::run_main_loop_for(0.1);
    EXPECT_TRUE(NotLogged("This is lamda"));
}

TEST_F(VolumeViewClosing, ADestroyedScreenLeavesNothingBehind) {
    push_shown(5);
    view().setVolume(12);
    view().destroy();
    EXPECT_FALSE(alive());
    EXPECT_EQ(mock::fake_circle().live(), 0);
    EXPECT_EQ(timers.count_kept(close_delay_s), 0);
    logs::clear();
    support::run_main_loop_for(0.1);
    EXPECT_TRUE(NotLogged("This is lamda"));
}

}  // namespace
