// The volume screen's operations, its tree and its theme.

#include "TslVolumeView.h"

#include <dlfcn.h>
#include <libintl.h>

#include <cmath>
#include <cstring>

#include "mock_platform/mock_ui_app.h"
#include "private_member.h"
#include "volume_view_fixture.h"

namespace {

/// What the program emits to layouts with the source "*".
std::vector<std::string> g_layout_signals;
/// The text domain of the word for volume.
std::string g_domain;

template <typename Function>
Function *toolkits_own(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The toolkit's calls of the program, on their way through the test.
extern "C" {
void elm_layout_signal_emit(Evas_Object *layout, const char *emission, const char *source) {
    static auto *const own =
        toolkits_own<decltype(elm_layout_signal_emit)>("elm_layout_signal_emit");
    if (std::strcmp(source, "*") == 0) {
        g_layout_signals.emplace_back(emission);
    }
    own(layout, emission, source);
}
void elm_object_domain_translatable_part_text_set(Evas_Object *object, const char *part,
                                                  const char *domain, const char *text) {
    static auto *const own = toolkits_own<decltype(elm_object_domain_translatable_part_text_set)>(
        "elm_object_domain_translatable_part_text_set");
    if (part != nullptr && std::strcmp(part, "elm.text") == 0) {
        g_domain = domain != nullptr ? domain : "none";
    }
    own(object, part, domain, text);
}
}

namespace {

using testing::_;
using testing::AnyNumber;
using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SaveArg;

using Inside = support::PrivateMember<struct InsideTag, TslVolumeViewInside * TslVolumeView::*>;

constexpr char no_inside[] = "* Critical * m_pVolumeViewInside is not existed.";
constexpr char off_the_scale[] =
    "* Critical * The volume is not correct. It needs to check the value is right or not.";

using VolumeView = screens::VolumeViewTest;

TEST_F(VolumeView, KeepsWhatItIsMadeWith) {
    push(5, 15, 9);
    EXPECT_EQ(view().getVolume(), 5);
    EXPECT_EQ(view().getMaxVolume(), 15);
    EXPECT_EQ(view().getSafetyVolume(), 9);
}

TEST_F(VolumeView, RefusesALevelOffTheScaleAndShowsTheOneBefore) {
    push_shown(15, 15, 9);
    const auto colors = bar().colors;
    view().setVolume(16);
    view().setVolume(-1);
    EXPECT_EQ(view().getVolume(), 15);
    EXPECT_EQ(text("elm.text.level"), "15");
    EXPECT_EQ(bar().colors, colors);
    EXPECT_FALSE(enabled(plus_part));
    EXPECT_TRUE(enabled(minus_part));
    EXPECT_TRUE(LoggedInfo("nCurrentVolume : 16"));
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, off_the_scale));
}

TEST_F(VolumeView, TakesASafetyLevelOneAboveTheScale) {
    push(5, 15, 9);
    view().setSafetyVolume(16);
    EXPECT_EQ(view().getSafetyVolume(), 16);
    EXPECT_TRUE(LoggedInfo("nCurrentVolume : 16"));
    view().setSafetyVolume(17);
    view().setSafetyVolume(-1);
    EXPECT_EQ(view().getSafetyVolume(), 16);
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, off_the_scale));
    view().setSafetyVolume(0);
    EXPECT_EQ(view().getSafetyVolume(), 0);
}

TEST_F(VolumeView, ANewMaximumChangesWhichLevelsAreTakenAndLeavesTheBarsRange) {
    push(5, 15, 9);
    view().setMaxVolume(20);
    view().setVolume(20);
    EXPECT_EQ(view().getVolume(), 20);
    EXPECT_EQ(bar().max, 15.0);
    // The degrees of a level stay.
    EXPECT_TRUE(arrives_at(20));
    EXPECT_EQ(bar().angle, 480.0);
}

TEST_F(VolumeView, ANewSafetyLevelIsShownWithTheNextLevel) {
    push_shown(5, 15, 9);
    view().setSafetyVolume(3);
    EXPECT_THAT(panel_signals(), IsEmpty());
    view().setVolume(5);
    EXPECT_THAT(panel_signals(), ElementsAre("warning"));
}

TEST_F(VolumeView, HasItsLevelSaid) {
    push();
    view().readCurrentVolumeLevel();
    ASSERT_EQ(mock::fake_access().spoken().size(), 1u);
    EXPECT_EQ(mock::fake_access().spoken()[0].text, "5");
}

TEST_F(VolumeView, SaysNothingWhenTheLevelHasNoText) {
    push();
    EXPECT_CALL(mock::i18n(), i18n_unumber_create(_, _, _, _, _, _))
        .WillOnce(Return(I18N_ERROR_INVALID_PARAMETER));
    view().readCurrentVolumeLevel();
    EXPECT_TRUE(LoggedError("* Critical * szVolumeText is nullptr."));
    EXPECT_TRUE(mock::fake_access().spoken().empty());
}

TEST_F(VolumeView, IsNotPoppedWithoutObject) {
    auto *view = new TslVolumeView(5, 15, 9);
    view->pop();
    EXPECT_TRUE(LoggedWarn("Not created view! No Evas Object!", logs::framework_tag));
    view->destroy();
}

TEST_F(VolumeView, EachOperationNeedsTheInsideObject) {
    push();
    const auto pointer = member(Inside{});
    TslVolumeViewInside *const inside = view().*pointer;
    view().*pointer = nullptr;
    forget();
    view().setVolume(1);
    EXPECT_EQ(view().getVolume(), -1);
    view().setSafetyVolume(1);
    EXPECT_EQ(view().getSafetyVolume(), -1);
    view().setMaxVolume(1);
    EXPECT_EQ(view().getMaxVolume(), -1);
    view().readCurrentVolumeLevel();
    view().pop();
    EXPECT_TRUE(LoggedTimes(8, DLOG_ERROR, no_inside));
    EXPECT_TRUE(alive());
    view().*pointer = inside;
}

class VolumeViewLayout : public screens::VolumeViewTest {
protected:
    void SetUp() override {
        VolumeViewTest::SetUp();
        g_layout_signals.clear();
    }
};

TEST_F(VolumeViewLayout, AnswersTheContentViewsClassName) {
    push();
    EXPECT_STREQ(view().getClassName(), "WContentViewController");
    EXPECT_STREQ(view().getName(), "tsl_volume_view");
}

TEST_F(VolumeViewLayout, HoldsItsButtonsInTheirPlaces) {
    push();
    EXPECT_EQ(style(mute_part), "video/more_volume");
    EXPECT_EQ(style(plus_part), "video/volume/event_expanded_right");
    EXPECT_EQ(style(minus_part), "video/volume/event_expanded_left");
}

TEST_F(VolumeViewLayout, PutsTheIconsOnPlusAndMinus) {
    push();
    for (const auto &[place, group] : std::vector<std::pair<const char *, std::string>>{
             {plus_part, "b_slider_icon_plus.png"}, {minus_part, "b_slider_icon_minus.png"}}) {
        const char *file = nullptr;
        const char *found = nullptr;
        elm_image_file_get(elm_object_content_get(button(place)), &file, &found);
        ASSERT_NE(found, nullptr) << place;
        EXPECT_EQ(found, group);
        EXPECT_NE(std::strstr(file, "edje/tessel.edj"), nullptr) << file;
    }
}

TEST_F(VolumeViewLayout, HasEveryPartInItsTheme) {
    push();
    EXPECT_TRUE(edje_object_part_exists(elm_layout_edje_get(base()), content_part));
    for (const char *name :
         {mute_part, minus_part, plus_part, "elm.text", "elm.text.level", "event,bg"}) {
        EXPECT_TRUE(edje_object_part_exists(elm_layout_edje_get(panel()), name)) << name;
    }
    for (const char *name : {"video/more_volume", "video/volume/event_expanded_right",
                             "video/volume/event_expanded_left"}) {
        EXPECT_TRUE(elm_object_style_set(button(mute_part), name)) << name;
    }
}

TEST_F(VolumeViewLayout, KeepsItsControlsInsideTheBar) {
    push_shown();
    constexpr double bar_begins = 180.0 - 15.0;
    for (const char *name : {mute_part, minus_part, plus_part}) {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        const auto *disc = edje_object_part_object_get(elm_layout_edje_get(button(name)), "disc");
        evas_object_geometry_get(disc, &x, &y, &width, &height);
        // The part's place is inside its own object.
        int left = 0;
        int top = 0;
        evas_object_geometry_get(button(name), &left, &top, nullptr, nullptr);
        EXPECT_GE(width, 60) << name;
        EXPECT_NEAR(width, height, 1) << name;
        const double radius = screen_size / 2.0;
        const double away = std::hypot(x + width / 2.0 - radius, y + height / 2.0 - radius);
        EXPECT_LT(away + width / 2.0, bar_begins) << name;
    }
}

TEST_F(VolumeViewLayout, ShowsTheLevelAndTheWordForVolume) {
    push(7);
    EXPECT_EQ(text("elm.text.level"), "7");
    EXPECT_STREQ(elm_object_translatable_part_text_get(panel(), "elm.text"),
                 "IDS_MUSIC_OPT_VOLUME");
    EXPECT_EQ(g_domain, textdomain(nullptr));
}

TEST_F(VolumeViewLayout, ShowsTheLevelAsTheRegionWritesIt) {
    push(5);
    mock::fake_vconf().set_str("db/menu_widget/regionformat", "ar_EG.UTF-8");
    EXPECT_CALL(mock::i18n(),
                i18n_unumber_create(_, nullptr, -1, testing::StrEq("ar_EG.UTF-8"), nullptr, _));
    EXPECT_CALL(mock::i18n(), i18n_unumber_format(_, 12, _, _, _, _))
        .WillOnce([](auto, auto, i18n_uchar *result, auto, auto, auto) {
            const i18n_uchar written[] = {'x', 'i', 'i', 0};
            std::memcpy(result, written, sizeof(written));
            return 3;
        });
    view().setVolume(12);
    EXPECT_EQ(text("elm.text.level"), "xii");
}

TEST_F(VolumeViewLayout, ALevelWithoutTextIsShownAsNothing) {
    push(5);
    EXPECT_CALL(mock::i18n(), i18n_unumber_create(_, _, _, _, _, _))
        .WillOnce(Return(I18N_ERROR_INVALID_PARAMETER));
    view().setVolume(6);
    EXPECT_EQ(text("elm.text.level"), "");
    EXPECT_EQ(view().getVolume(), 6);
}

TEST_F(VolumeViewLayout, MakesTheBarOnTheWindowWithTheScaleAsItsRange) {
    push(5, 20);
    ASSERT_THAT(mock::fake_circle().layouts(), ElementsAre(window()));
    EXPECT_EQ(bar().min, 0.0);
    EXPECT_EQ(bar().max, 20.0);
    EXPECT_EQ(bar().angle, 90.0);
    EXPECT_TRUE(
        LoggedInOrder({logs::info("m_nMaxVolume : 20"), logs::info("m_nCurrentVolume : 5")}));
}

TEST_F(VolumeViewLayout, TheBarBelongsToThePanelAndIsNoPlaceForTheHighlight) {
    push();
    EXPECT_EQ(evas_object_smart_parent_get(bar_object()), elm_layout_edje_get(panel()));
    EXPECT_FALSE(mock::fake_access().record(bar_object()).can_highlight);
}

TEST_F(VolumeViewLayout, BelowTheSafetyLevelItOpensInTheNormalColours) {
    push(5, 15, 9);
    EXPECT_TRUE(LoggedWarn("set blue color"));
    EXPECT_EQ(bar().colors.at("default"), FakeCircle::platform_color);
    EXPECT_EQ(bar().colors.at("bg"), normal_ground);
    EXPECT_THAT(g_layout_signals, ElementsAre("normal"));
}

TEST_F(VolumeViewLayout, AtTheSafetyLevelItOpensAsItIs) {
    push(9, 15, 9);
    EXPECT_TRUE(LoggedTimes(1, DLOG_WARN, "Nothing choose, set color of progressbar."));
    EXPECT_EQ(bar().colors.count("bg"), 0u);
    EXPECT_EQ(bar().colors.at("default"), FakeCircle::platform_color);
    EXPECT_THAT(g_layout_signals, IsEmpty());
}

TEST_F(VolumeViewLayout, AboveTheSafetyLevelItOpensInTheWarningColours) {
    push(10, 15, 9);
    EXPECT_TRUE(LoggedWarn("set red color"));
    EXPECT_EQ(bar().colors.at("default"), warning_bar);
    EXPECT_EQ(bar().colors.at("bg"), warning_ground);
    EXPECT_THAT(g_layout_signals, ElementsAre("warning"));
}

TEST_F(VolumeViewLayout, AtLevelZeroItOpensMutedWithNothingToTakeAway) {
    push(0);
    EXPECT_FALSE(enabled(minus_part));
    EXPECT_TRUE(enabled(plus_part));
    EXPECT_EQ(mute_icon(), "mute");
    EXPECT_EQ(accessible_name(mute_part), "WDS_ACCS_TBOPT_UNMUTE");
}

TEST_F(VolumeViewLayout, AtTheMaximumItOpensWithNothingToAdd) {
    push(15);
    EXPECT_FALSE(enabled(plus_part));
    EXPECT_TRUE(enabled(minus_part));
    EXPECT_EQ(mute_icon(), "default");
}

TEST_F(VolumeViewLayout, DescribesItsButtonsToTheScreenReader) {
    push();
    for (const auto &[place, name] : std::vector<std::pair<const char *, std::string>>{
             {mute_part, "WDS_ACCS_TBOPT_MUTE"},
             {plus_part, "IDS_ACCS_OPT_INCREASE_VOLUME"},
             {minus_part, "IDS_ACCS_OPT_DECREASE_VOLUME"}}) {
        const auto record = mock::fake_access().record(button(place));
        EXPECT_EQ(record.name, name);
        EXPECT_EQ(record.description, "");
        EXPECT_EQ(record.role, 43);
        EXPECT_EQ(record.reading_info, 3u);
        EXPECT_EQ(record.domain, "tessel");
    }
}

TEST_F(VolumeViewLayout, DescribesItsTextsToTheScreenReader) {
    push(7);
    const auto title = mock::fake_access().record(elm_access_object_get(part("elm.text")));
    EXPECT_EQ(title.name, "IDS_MUSIC_OPT_VOLUME");
    EXPECT_EQ(title.reading_info, 1u);
    EXPECT_EQ(title.role, 0);
    EXPECT_EQ(mock::fake_access().name(elm_access_object_get(part("elm.text.level"))), "7");
    EXPECT_TRUE(LoggedInfo("volumeLevel : 7"));
    view().setVolume(8);
    EXPECT_EQ(mock::fake_access().name(elm_access_object_get(part("elm.text.level"))), "8");
}

TEST_F(VolumeViewLayout, ThePageIsNamedAfterTheScreenAndTheBezel) {
    push();
    const auto page = mock::fake_access().record(view().getNaviItem());
    EXPECT_EQ(page.name, "WDS_ST_MBODY_VOLUME_ABB\nWDS_ACCS_TBBODY_TURN_BEZEL_TO_ADJUST_VOLUME");
    EXPECT_STREQ(elm_naviframe_item_style_get(view().getNaviItem()), "basic/transparent");
    EXPECT_FALSE(elm_naviframe_item_title_enabled_get(view().getNaviItem()));
}

TEST_F(VolumeViewLayout, IsHiddenForATenthOfASecond) {
    const double start = ecore_time_get();
    push();
    ASSERT_TRUE(support::run_main_loop_until([this] { return !content_visible(); }));
    ASSERT_TRUE(support::run_main_loop_until([this] { return content_visible(); }));
    EXPECT_GE(ecore_time_get() - start, 0.09);
}

TEST_F(VolumeViewLayout, ADestroyedScreenIsNotShownLater) {
    push();
    logs::clear();
    view().destroy();
    EXPECT_FALSE(alive());
    support::run_main_loop_for(0.2);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(VolumeViewLayout, APushWithoutItemIsRefused) {
    class Opened : public TslVolumeView {
    public:
        Opened() : TslVolumeView(5, 15, 16) {}
        using TslVolumeView::onCreateView;
        using TslVolumeView::onPop;
        using TslVolumeView::onPushed;
    };
    auto *view = new Opened();
    view->onPushed(nullptr);
    EXPECT_TRUE(LoggedError("* Critical * There is no pNaviItem."));
    const auto pointer = member(Inside{});
    TslVolumeViewInside *const inside = view->*pointer;
    view->*pointer = nullptr;
    logs::clear();
    EXPECT_FALSE(view->onPop());
    EXPECT_EQ(view->onCreateView(window(), nullptr), nullptr);
    view->onPushed(nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(std::vector<logs::Expected>(3, logs::error(no_inside))));
    view->*pointer = inside;
    view->destroy();
}

TEST_F(VolumeViewLayout, IsNotPushedWithoutItsTheme) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly([] {
        return strdup("/nowhere/");
    });
    Eext_Rotary_Event_Cb detent = nullptr;
    const void *inside = nullptr;
    EXPECT_CALL(mock::rotary(), eext_rotary_object_event_callback_priority_add(_, _, _, _))
        .WillOnce(DoAll(SaveArg<2>(&detent), SaveArg<3>(&inside), Return(EINA_FALSE)));
    auto *view = new TslVolumeView(5, 15, 16);
    EXPECT_FALSE(naviframe().push(view, "tsl_volume_view"));
    for (const char *message :
         {"* Critical * It is failed to set layout of tsl.volume.view.base.layout",
          "* Critical * It is failed to set layout of mp_volume_panel",
          "* Critical * It is failed to get pEdjeOfLayout.",
          "* Critical * pDragArea is not existed.",
          "* Critical * Volume view layout is nullptr."}) {
        EXPECT_TRUE(LoggedError(message));
    }
    EXPECT_TRUE(LoggedTimes(3, DLOG_INFO, "There is no pParent."));
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * It is failed to create mute button."));
    ASSERT_NE(detent, nullptr);
    forget();
    Eext_Rotary_Event_Info info{EEXT_ROTARY_DIRECTION_CLOCKWISE, 1000};
    EXPECT_FALSE(detent(const_cast<void *>(inside), window(), &info));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * pVolumeViewInside->m_pVolumeViewLayout == nullptr")}));
    EXPECT_THAT(emissions(), IsEmpty());
    view->destroy();
}

TEST_F(VolumeViewLayout, ComesUpWithoutButtonsThatCannotBeMade) {
    EXPECT_CALL(mock::uxt(), uxt_button_add(_, _)).WillRepeatedly(Return(nullptr));
    push();
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * It is failed to create Button."));
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * It is failed to create mute button."));
    forget();
    view().setVolume(7);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Nothing choose, set color of progressbar."),
                                  logs::error("* Critical * The plus button is nullptr."),
                                  logs::error("* Critical * The minus button is nullptr.")}));
    view().setVolume(0);
    view().setVolume(15);
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * The plus button is nullptr."));
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * The minus button is nullptr."));
}

TEST_F(VolumeViewLayout, WorksWithoutABar) {
    EXPECT_CALL(mock::circle(), eext_circle_object_progressbar_add(_, _)).WillOnce(Return(nullptr));
    push();
    forget();
    view().setVolume(7);
    EXPECT_EQ(text("elm.text.level"), "7");
    EXPECT_TRUE(NotLogged("m_nDiff"));
    EXPECT_FALSE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1000));
    EXPECT_TRUE(LoggedError("* Critical * pVolumeViewInside->m_pProgressbar is not existed"));
    EXPECT_THAT(emissions(), IsEmpty());
}

}  // namespace

template struct support::OpenMember<Inside, &TslVolumeView::m_pVolumeViewInside>;
