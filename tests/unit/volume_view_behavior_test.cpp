// What the volume screen does with input, levels and time.

#include <cmath>
#include <numbers>

#include "volume_view_fixture.h"

namespace {

using screens::Emission;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SaveArg;

constexpr auto clockwise = EEXT_ROTARY_DIRECTION_CLOCKWISE;
constexpr auto counter_clockwise = EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE;
constexpr char screen_reader_is_on[] =
    "m_pScreenReaderCtrl->isEnabledToAccessAccessibility() == true";
const Emission get_level{SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, 0};

Emission set_level(int level) {
    return {SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR, level};
}

// Levels.

using VolumeViewLevel = screens::VolumeViewTest;

TEST_F(VolumeViewLevel, ALevelChangesTextIconAndButtons) {
    push_shown(5);
    view().setVolume(0);
    EXPECT_EQ(view().getVolume(), 0);
    EXPECT_EQ(text("elm.text.level"), "0");
    EXPECT_EQ(mute_icon(), "mute");
    EXPECT_TRUE(LoggedInfo("Set icon of mute."));
    EXPECT_FALSE(enabled(minus_part));
    EXPECT_TRUE(enabled(plus_part));
    view().setVolume(15);
    EXPECT_EQ(text("elm.text.level"), "15");
    EXPECT_EQ(mute_icon(), "default");
    EXPECT_TRUE(LoggedInfo("Set icon of volume on."));
    EXPECT_TRUE(enabled(minus_part));
    EXPECT_FALSE(enabled(plus_part));
    view().setVolume(14);
    EXPECT_TRUE(enabled(minus_part));
    EXPECT_TRUE(enabled(plus_part));
}

TEST_F(VolumeViewLevel, ALevelLeavesTheNameOfTheMuteButton) {
    push_shown(5);
    view().setVolume(0);
    EXPECT_EQ(accessible_name(mute_part), "WDS_ACCS_TBOPT_MUTE");
}

TEST_F(VolumeViewLevel, TheBarRunsToTheLevelAndEndsExactlyThere) {
    push_shown(5);
    view().setVolume(9);
    ASSERT_TRUE(arrives_at(9));
    EXPECT_TRUE(LoggedWarn("animation is finished"));
    const auto &angles = bar().angles;
    ASSERT_GT(angles.size(), 5u);
    EXPECT_EQ(angles.back(), 216.0);
    double from = 120.0;
    for (std::size_t i = 0; i + 1 < angles.size(); ++i) {
        EXPECT_DOUBLE_EQ(angles[i], from + (216.0 - from) * 0.2) << i;
        from = angles[i];
    }
    // It snaps as soon as less than a degree is left.
    EXPECT_LT(216.0 - from, 1.0);
    EXPECT_GE(216.0 - angles[angles.size() - 3], 1.0);
}

TEST_F(VolumeViewLevel, AStandingBarIsLeftAlone) {
    push_shown(5);
    view().setVolume(6);
    ASSERT_TRUE(arrives_at(6));
    const std::size_t frames = bar().angles.size();
    forget();
    support::run_main_loop_for(0.2);
    EXPECT_EQ(bar().angles.size(), frames);
    EXPECT_TRUE(NotLogged("This is lamda for _createAnimator()"));
}

TEST_F(VolumeViewLevel, ANewLevelTakesOverFromWhereTheBarStands) {
    push_shown(2);
    view().setVolume(14);
    ASSERT_TRUE(support::run_main_loop_until([] { return bar().angles.size() >= 3; }));
    const double reached = bar().angle;
    const std::size_t frames = bar().angles.size();
    view().setVolume(3);
    ASSERT_TRUE(arrives_at(3));
    EXPECT_DOUBLE_EQ(bar().angles[frames], reached + (72.0 - reached) * 0.2);
}

TEST_F(VolumeViewLevel, TheSameLevelAgainMovesNothing) {
    push_shown(5);
    view().setVolume(5);
    EXPECT_TRUE(LoggedInfo("pVolumeViewInside->m_nDiff == 0.0 ----> return;"));
    support::run_main_loop_for(0.1);
    EXPECT_TRUE(bar().angles.empty());
}

TEST_F(VolumeViewLevel, TheAnimationEndsWhenTheViewIsntFound) {
    push_shown(5);
    view().setVolume(9);
    void *const instance = evas_object_data_del(base(), "__@WViewInstance");
    EXPECT_TRUE(support::run_main_loop_until(
        [] { return bool(LoggedWarn("pVolumeView is not existed.")); }));
    EXPECT_TRUE(bar().angles.empty());
    evas_object_data_set(base(), "__@WViewInstance", instance);
}

TEST_F(VolumeViewLevel, TheWarningComesAboveTheSafetyLevelAndOnce) {
    push_shown(8, 15, 9);
    view().setVolume(9);
    EXPECT_THAT(panel_signals(), IsEmpty());
    EXPECT_EQ(bar().colors.at("default"), FakeCircle::platform_color);
    view().setVolume(10);
    EXPECT_THAT(panel_signals(), ElementsAre("warning"));
    EXPECT_TRUE(LoggedInfo("m_nSafetyVolume : 9"));
    EXPECT_TRUE(LoggedWarn("set red color"));
    EXPECT_EQ(bar().colors.at("default"), warning_bar);
    EXPECT_EQ(bar().colors.at("bg"), warning_ground);
    logs::clear();
    view().setVolume(11);
    EXPECT_THAT(panel_signals(), ElementsAre("warning"));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Nothing choose, set color of progressbar.")}));
}

TEST_F(VolumeViewLevel, TheWarningGoesAtTheSafetyLevel) {
    push_shown(10, 15, 9);
    view().setVolume(9);
    EXPECT_THAT(panel_signals(), ElementsAre("normal"));
    EXPECT_TRUE(LoggedWarn("set blue color"));
    EXPECT_EQ(bar().colors.at("default"), FakeCircle::platform_color);
    EXPECT_EQ(bar().colors.at("bg"), normal_ground);
}

TEST_F(VolumeViewLevel, AColourThatTheThemeLacksIsTheOnlyOneLeftOut) {
    push_shown(8, 15, 9);
    EXPECT_CALL(mock::uxt(), uxt_theme_get_color(_, _, _, _, _, _, _, _, _, _, _, _, _))
        .Times(testing::AnyNumber());
    EXPECT_CALL(mock::uxt(), uxt_theme_get_color(testing::StrEq("MUSIC_AO0292"), _, _, _, _, _, _,
                                                 _, _, _, _, _, _))
        .WillOnce(Return(-1));
    view().setVolume(10);
    EXPECT_EQ(bar().colors.at("default"), FakeCircle::platform_color);
    EXPECT_EQ(bar().colors.at("bg"), warning_ground);
    EXPECT_THAT(panel_signals(), ElementsAre("warning"));
}

// Buttons.

using VolumeViewButtons = screens::VolumeViewTest;

TEST_F(VolumeViewButtons, PlusAsksForTheLevelAndSetsTheNext) {
    push_shown(5);
    press(plus_part);
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(6)));
    // What is shown changes when the sound manager reports it.
    EXPECT_EQ(view().getVolume(), 5);
    EXPECT_EQ(text("elm.text.level"), "5");
}

TEST_F(VolumeViewButtons, ATouchOfPlusIsAPress) {
    push_shown(5);
    tap(button(plus_part));
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(6)));
    tap(button(minus_part));
    EXPECT_THAT(levels_set(), ElementsAre(6, 4));
}

TEST_F(VolumeViewButtons, PlusGoesOnFromTheLevelThatItIsTold) {
    push_shown(5);
    answer_with_level(11);
    press(plus_part);
    EXPECT_THAT(levels_set(), ElementsAre(12));
    EXPECT_EQ(text("elm.text.level"), "11");
    stop_answering();
}

TEST_F(VolumeViewButtons, PlusAtTheMaximumSetsTheMaximum) {
    push_shown(15);
    press(plus_part);
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(15)));
    EXPECT_EQ(view().getVolume(), 15);
}

TEST_F(VolumeViewButtons, MinusSetsTheLevelBelow) {
    push_shown(5);
    press(minus_part);
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(4)));
    EXPECT_EQ(view().getVolume(), 5);
}

TEST_F(VolumeViewButtons, MinusAtTheBottomSetsZero) {
    push_shown(0);
    press(minus_part);
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(0)));
}

TEST_F(VolumeViewButtons, ADisabledButtonTakesThePressAndDoesNothing) {
    push_shown(15);
    tap(button(plus_part));
    EXPECT_THAT(emissions(), IsEmpty());
}

TEST_F(VolumeViewButtons, MuteAndUnmuteComeBackToTheLevel) {
    push_shown(7);
    press(mute_part);
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(0)));
    EXPECT_EQ(view().getVolume(), 0);
    EXPECT_EQ(accessible_name(mute_part), "WDS_ACCS_TBOPT_UNMUTE");
    EXPECT_EQ(mock::fake_access().record(button(mute_part)).role, 43);
    EXPECT_EQ(mock::fake_access().record(button(mute_part)).reading_info, 3u);
    press(mute_part);
    EXPECT_THAT(levels_set(), ElementsAre(0, 7));
    EXPECT_EQ(accessible_name(mute_part), "WDS_ACCS_TBOPT_MUTE");
}

TEST_F(VolumeViewButtons, MuteRemembersTheLevelThatItIsTold) {
    push_shown(7);
    answer_with_level(9);
    press(mute_part);
    set_sound_level(0);
    press(mute_part);
    EXPECT_THAT(levels_set(), ElementsAre(0, 9));
    stop_answering();
}

TEST_F(VolumeViewButtons, UnmuteWithNothingRememberedSetsOne) {
    push_shown(0);
    press(mute_part);
    EXPECT_THAT(levels_set(), ElementsAre(1));
    EXPECT_EQ(accessible_name(mute_part), "WDS_ACCS_TBOPT_MUTE");
}

TEST_F(VolumeViewButtons, APressStartsTheTimeAnewBeforeItAsks) {
    push_shown(5);
    // What there is to see of it at once.
    mock::fake_uxt().set_screen_reader(true);
    bool started = false;
    unsigned int listener = TslSignalMgr::getInstance()->getSignal().addListener(
        [&started](TslSignalType type, void *) {
            if (type == SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR) {
                started = static_cast<bool>(
                    LoggedIn("_createVolumeViewUiTimer", DLOG_INFO, screen_reader_is_on));
            }
        });
    for (const char *name : {plus_part, minus_part, mute_part}) {
        started = false;
        forget();
        press(name);
        EXPECT_TRUE(started) << name;
    }
    TslSignalMgr::getInstance()->getSignal().removeListener(listener);
}

TEST_F(VolumeViewButtons, APressWithoutTheViewIsIgnored) {
    push_shown(5);
    void *const instance = evas_object_data_del(base(), "__@WViewInstance");
    for (const char *name : {plus_part, minus_part, mute_part}) {
        press(name);
    }
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * pVolumeView is not existed."));
    EXPECT_THAT(emissions(), IsEmpty());
    evas_object_data_set(base(), "__@WViewInstance", instance);
}

// The bezel.

class VolumeViewBezel : public screens::VolumeViewTest {
protected:
    void turn(Eext_Rotary_Event_Direction direction, unsigned time_stamp) {
        // Others may listen too.
        EXPECT_FALSE(mock::fake_rotary().detent(direction, time_stamp));
    }
};

TEST_F(VolumeViewBezel, TheScreenTakesTheBezelWithItsPriority) {
    EXPECT_CALL(mock::rotary(), eext_rotary_object_event_callback_priority_add(_, -100, _, _));
    push(5);
    EXPECT_EQ(mock::fake_rotary().active(), panel());
}

TEST_F(VolumeViewBezel, AClockwiseDetentSetsTheNextLevel) {
    push_shown(5);
    turn(clockwise, 1000);
    EXPECT_THAT(emissions(), ElementsAre(get_level, set_level(6)));
    EXPECT_EQ(view().getVolume(), 6);
    EXPECT_TRUE(LoggedInOrder({logs::info("EEXT_ROTARY_STATUS_DETENT_DETECTED direction[0]"),
                               logs::info("nEventGap: 1000"),
                               logs::info("nWeightedStep[1], nEventGap[1000]")}));
}

TEST_F(VolumeViewBezel, ACounterClockwiseDetentSetsTheLevelBelow) {
    push_shown(5);
    turn(counter_clockwise, 1000);
    EXPECT_THAT(levels_set(), ElementsAre(4));
    EXPECT_TRUE(LoggedInfo("EEXT_ROTARY_STATUS_DETENT_DETECTED direction[1]"));
}

TEST_F(VolumeViewBezel, ADirectionThatThereIsntSetsTheLevelAsItIs) {
    push_shown(5);
    int number = 7;
    Eext_Rotary_Event_Direction direction{};
    std::memcpy(&direction, &number, sizeof(direction));
    turn(direction, 1000);
    EXPECT_THAT(levels_set(), ElementsAre(5));
    EXPECT_TRUE(LoggedWarn("Nothing choose, rotary direction."));
}

TEST_F(VolumeViewBezel, ADetentAloneDoesNotStartTheTimeAnew) {
    push_shown(5);
    mock::fake_uxt().set_screen_reader(true);
    turn(clockwise, 1000);
    EXPECT_TRUE(NotLogged(screen_reader_is_on));
}

TEST_F(VolumeViewBezel, TheBezelGoesOnFromTheLevelThatItIsTold) {
    push_shown(5);
    answer_with_level(11);
    turn(clockwise, 1000);
    EXPECT_THAT(levels_set(), ElementsAre(12));
    stop_answering();
}

TEST_F(VolumeViewBezel, ThreeDetentsAfterAPause) {
    push_shown(5);
    turn(clockwise, 10000);
    turn(clockwise, 10600);  // after a pause: one, and the time is stored
    EXPECT_EQ(view().getVolume(), 7);
    logs::clear();
    turn(counter_clockwise, 10605);  // within 9 ms of it: to the end of the scale
    EXPECT_EQ(view().getVolume(), 0);
    EXPECT_TRUE(
        LoggedInOrder({logs::info("nEventGap: 5"), logs::warn("Nothing choose, nWeightedStep."),
                       logs::info("nWeightedStep[18], nEventGap[10]")}));
    logs::clear();
    turn(clockwise, 10900);  // 300 ms from the stored time: one, and it isn't stored
    EXPECT_EQ(view().getVolume(), 1);
    EXPECT_TRUE(LoggedWarn("Nothing choose, rotary event."));
    EXPECT_TRUE(LoggedInfo("nWeightedStep[1], nEventGap[300]"));
    turn(clockwise, 10905);  // 305 ms from it
    EXPECT_EQ(view().getVolume(), 2);
}

TEST_F(VolumeViewBezel, TheBoundsOfTheGaps) {
    struct Case {
        unsigned gap;
        int step;
        bool stored;
    };
    for (const auto &[gap, step, stored] : std::vector<Case>{{0, 18, false},
                                                             {9, 18, false},
                                                             {10, 1, false},
                                                             {119, 1, false},
                                                             {120, 1, false},
                                                             {500, 1, false},
                                                             {501, 1, true}}) {
        push_shown(0, 30);
        turn(counter_clockwise, 10000);
        logs::clear();
        turn(clockwise, 10000 + gap);
        // With a scale of 30 the large step is 36, which the scale cuts.
        EXPECT_EQ(view().getVolume(), std::min(step == 18 ? 36 : 1, 30)) << gap;
        logs::clear();
        turn(counter_clockwise, 10000 + gap + 3);
        const bool large = bool(LoggedInfo("nWeightedStep[36], nEventGap[10]"));
        EXPECT_EQ(large, stored || gap + 3 < 10) << gap;
        view().destroy();
        support::run_loop_turns();
    }
}

TEST_F(VolumeViewBezel, ATimeStampThatRunsBackwardsCountsAsAPause) {
    push_shown(5);
    turn(clockwise, 10000);
    turn(clockwise, 9000);
    EXPECT_THAT(levels_set(), ElementsAre(6, 7));
    EXPECT_TRUE(LoggedInfo("nEventGap: -1000"));
    turn(counter_clockwise, 9005);
    EXPECT_EQ(view().getVolume(), 0);
}

TEST_F(VolumeViewBezel, TheLargeStepIsTwoAtLeast) {
    push_shown(0, 1);
    turn(counter_clockwise, 10000);
    logs::clear();
    turn(clockwise, 10005);
    EXPECT_TRUE(LoggedInfo("nWeightedStep[2], nEventGap[10]"));
    EXPECT_TRUE(NotLogged("Nothing choose, nWeightedStep."));
    EXPECT_EQ(view().getVolume(), 1);
}

TEST_F(VolumeViewBezel, TheLevelStopsAtBothEnds) {
    push_shown(14);
    turn(clockwise, 1000);
    turn(clockwise, 2000);
    turn(clockwise, 3000);
    EXPECT_THAT(levels_set(), ElementsAre(15, 15, 15));
    forget();
    view().setVolume(1);
    turn(counter_clockwise, 4000);
    turn(counter_clockwise, 5000);
    EXPECT_THAT(levels_set(), ElementsAre(0, 0));
}

TEST_F(VolumeViewBezel, TheEndOfTheScaleIsTheBarsRange) {
    push_shown(15);
    view().setMaxVolume(20);
    turn(clockwise, 1000);
    EXPECT_THAT(levels_set(), ElementsAre(15));
}

TEST_F(VolumeViewBezel, ADetentForNothingIsIgnored) {
    Eext_Rotary_Event_Cb detent = nullptr;
    const void *inside = nullptr;
    EXPECT_CALL(mock::rotary(), eext_rotary_object_event_callback_priority_add(_, _, _, _))
        .WillOnce(DoAll(SaveArg<2>(&detent), SaveArg<3>(&inside), Return(EINA_TRUE)));
    push(5);
    ASSERT_NE(detent, nullptr);
    forget();
    Eext_Rotary_Event_Info info{clockwise, 1000};
    EXPECT_FALSE(detent(nullptr, panel(), &info));
    EXPECT_FALSE(detent(const_cast<void *>(inside), nullptr, &info));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pUserData is not existed."),
                                  logs::error("* Critical * EvasObject is nullptr.")}));
    EXPECT_THAT(emissions(), IsEmpty());
}

TEST_F(VolumeViewBezel, ThePopGivesTheBezelBackToThePlayerScreen) {
    push_shown(5);
    Evas_Object *const former = panel();
    {
        testing::InSequence order;
        EXPECT_CALL(mock::rotary(),
                    eext_rotary_object_event_callback_priority_add(former, -100, nullptr, nullptr));
        EXPECT_CALL(mock::rotary(), eext_rotary_object_event_callback_del(former, _));
    }
    view().pop();
    EXPECT_EQ(mock::fake_rotary().callbacks(former), 0);
    EXPECT_NE(mock::fake_rotary().active(), former);
    EXPECT_NE(mock::fake_rotary().active(), nullptr);
}

// A touch on the rim.

class VolumeViewRim : public screens::VolumeViewTest {
protected:
    static constexpr int centre = screen_size / 2;

    /// The level of a point, by another road than the screen's.
    static int level_of(int x, int y, int maximum) {
        double angle = std::atan2(x - centre, centre - y) * 180.0 / std::numbers::pi;
        if (angle < 0.0) {
            angle += 360.0;
        }
        return static_cast<int>((maximum + 0.5) * angle / 360.0);
    }
    static int x_of(double degrees, double radius) {
        return centre +
               static_cast<int>(std::lround(radius * std::sin(degrees * std::numbers::pi / 180.0)));
    }
    static int y_of(double degrees, double radius) {
        return centre -
               static_cast<int>(std::lround(radius * std::cos(degrees * std::numbers::pi / 180.0)));
    }

    void stroke(int from_x, int from_y, int to_x, int to_y) const {
        Evas *evas = evas_object_evas_get(window());
        evas_render(evas);
        evas_event_feed_mouse_in(evas, 1, nullptr);
        evas_event_feed_mouse_move(evas, from_x, from_y, 2, nullptr);
        evas_event_feed_mouse_down(evas, 1, EVAS_BUTTON_NONE, 3, nullptr);
        evas_event_feed_mouse_move(evas, to_x, to_y, 4, nullptr);
        evas_event_feed_mouse_up(evas, 1, EVAS_BUTTON_NONE, 5, nullptr);
        support::run_loop_turns();
    }
};

TEST_F(VolumeViewRim, TheQuartersOfTheFace) {
    struct Case {
        int x;
        int y;
        int level;
    };
    push_shown(5);
    for (const auto &[x, y, level] : std::vector<Case>{{centre, 10, 0},
                                                       {centre + 1, 10, 0},
                                                       {350, centre, 3},
                                                       {centre, 350, 7},
                                                       {10, centre, 11},
                                                       {centre - 1, 10, 15}}) {
        forget();
        tap(x, y);
        // The level isn't asked for before.
        EXPECT_THAT(emissions(), ElementsAre(set_level(level))) << x << ", " << y;
    }
}

TEST_F(VolumeViewRim, EveryAngle) {
    push_shown(5);
    for (int degrees = 0; degrees < 360; ++degrees) {
        const int x = x_of(degrees, 168.0);
        const int y = y_of(degrees, 168.0);
        forget();
        stroke(x, y, x, y);
        EXPECT_THAT(emissions(), ElementsAre(set_level(level_of(x, y, 15)))) << degrees;
    }
}

TEST_F(VolumeViewRim, TheScaleIsTheMaximum) {
    push_shown(5);
    view().setMaxVolume(30);
    forget();
    tap(350, centre);
    EXPECT_THAT(levels_set(), ElementsAre(7));
}

TEST_F(VolumeViewRim, TheMiddleSetsNothing) {
    push_shown(5);
    tap(centre, 130);
    EXPECT_TRUE(LoggedWarn("under valid gap[50]"));
    EXPECT_THAT(emissions(), IsEmpty());
    tap(centre, centre);
    EXPECT_TRUE(LoggedWarn("under valid gap[0]"));
    EXPECT_THAT(emissions(), IsEmpty());
}

TEST_F(VolumeViewRim, TheRimIsAHundredPixelsDeep) {
    push_shown(5);
    // 80 pixels from the middle, and 79.
    tap(centre, centre - 80);
    EXPECT_THAT(levels_set(), ElementsAre(0));
    forget();
    tap(centre, centre - 79);
    EXPECT_THAT(levels_set(), IsEmpty());
    EXPECT_TRUE(LoggedWarn("under valid gap[79]"));
}

TEST_F(VolumeViewRim, ADragSetsNothing) {
    push_shown(5);
    const int threshold = static_cast<int>(elm_config_scroll_thumbscroll_threshold_get());
    const int x = centre;
    stroke(x, 12, x + threshold + 2, 12);
    EXPECT_TRUE(LoggedWarn("move event"));
    EXPECT_THAT(emissions(), IsEmpty());
}

TEST_F(VolumeViewRim, AFingerThatTremblesIsATouch) {
    push_shown(5);
    const int threshold = static_cast<int>(elm_config_scroll_thumbscroll_threshold_get());
    stroke(centre + 2, 12, centre + 2 + threshold, 12);
    EXPECT_THAT(levels_set(), ElementsAre(level_of(centre + 2 + threshold, 12, 15)));
}

TEST_F(VolumeViewRim, ATouchWithoutTheViewIsIgnored) {
    push_shown(5);
    void *const instance = evas_object_data_del(base(), "__@WViewInstance");
    tap(350, centre);
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * pVolumeView is not existed."));
    EXPECT_THAT(emissions(), IsEmpty());
    evas_object_data_set(base(), "__@WViewInstance", instance);
}

}  // namespace
