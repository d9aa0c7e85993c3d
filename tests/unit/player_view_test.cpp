#include "TslPlayerView.h"

#include <dlfcn.h>
#include <dlog.h>
#include <libintl.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "TslExpandedUtils.h"
#include "mock_platform/fake_efl_extension.h"
#include "mock_platform/fake_settings.h"
#include "mock_platform/mock_access.h"
#include "mock_platform/mock_rotary.h"
#include "mock_platform/mock_ui_app.h"
#include "mock_platform/mock_uxt.h"
#include "private_member.h"
#include "screen_fixture.h"
#include "toolkit_timers.h"

extern "C" int _nl_msg_cat_cntr;

namespace {

bool g_no_time_texts = false;

bool is_time(const char *text) {
    return std::strlen(text) == 5 && text[2] == ':';
}

/// What the program does with the gesture layer.
struct Gestures {
    struct Callback {
        Elm_Gesture_Type type;
        Elm_Gesture_State state;
        Elm_Gesture_Event_Cb function;
        void *data;
    };
    bool refused = false;
    Evas_Object *layer = nullptr;
    Evas_Object *parent = nullptr;
    Evas_Object *attached_to = nullptr;
    std::vector<Callback> callbacks;
};
Gestures g_gestures;

template <typename Function>
Function *toolkits_own(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The toolkit's calls of the program, on their way through the test.
extern "C" {
Evas_Object *elm_gesture_layer_add(Evas_Object *parent) {
    static auto *const own = toolkits_own<decltype(elm_gesture_layer_add)>("elm_gesture_layer_add");
    g_gestures.parent = parent;
    g_gestures.layer = g_gestures.refused ? nullptr : own(parent);
    return g_gestures.layer;
}
Eina_Bool elm_gesture_layer_attach(Evas_Object *layer, Evas_Object *target) {
    static auto *const own =
        toolkits_own<decltype(elm_gesture_layer_attach)>("elm_gesture_layer_attach");
    g_gestures.attached_to = target;
    return own(layer, target);
}
void elm_gesture_layer_cb_set(Evas_Object *layer, Elm_Gesture_Type type, Elm_Gesture_State state,
                              Elm_Gesture_Event_Cb function, void *data) {
    static auto *const own =
        toolkits_own<decltype(elm_gesture_layer_cb_set)>("elm_gesture_layer_cb_set");
    g_gestures.callbacks.push_back({type, state, function, data});
    own(layer, type, state, function, data);
}
}

// Memory runs out where a test wants it to: that is what keeps the text of a time from being made.
extern "C" char *strdup(const char *text) noexcept {
    if (g_no_time_texts && is_time(text)) {
        return nullptr;
    }
    const std::size_t size = std::strlen(text) + 1;
    void *const copy = std::malloc(size);
    return copy != nullptr ? static_cast<char *>(std::memcpy(copy, text, size)) : nullptr;
}

namespace {

using screens::Emission;
using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::Invoke;
using testing::IsEmpty;
using testing::Return;
using testing::SaveArg;

constexpr char content_part[] = "tsl.player.view.base.layout.swallow.content";
constexpr char more_option_part[] = "tsl.player.view.base.layout.swallow.moreoption";
constexpr char played_part[] = "tsl.player.view.playtime.text.played";
constexpr char duration_part[] = "tsl.player.view.playtime.text.duration";
constexpr char gesture_part[] = "tsl.player.view.base.layout.swallow.gesture";
constexpr double hide_delay_s = 3.0;
constexpr double progress_s = 0.3;

using Inside = support::PrivateMember<struct InsideTag, TslPlayerViewInside * TslPlayerView::*>;

/// Opens what the naviframe alone may call.
class OpenPlayerView : public TslPlayerView {
public:
    using TslPlayerView::onBecomeTop;
    using TslPlayerView::onCreate;
    using TslPlayerView::onCreateView;
    using TslPlayerView::onPop;
    using TslPlayerView::onPushed;
};

class PlayerViewTest : public screens::ScreenTest {
protected:
    void SetUp() override {
        g_gestures = Gestures{};
        toolkit::timers = toolkit::Timers{};
        ScreenTest::SetUp();
        m_view = new TslPlayerView();
    }

    void push() {
        ASSERT_TRUE(naviframe().push(m_view, "tsl_player_view"));
        Evas_Object *edje = elm_layout_edje_get(base());
        for (const char *pattern : {"layout,swallow,*", "moreoption,swallow,*"}) {
            edje_object_signal_callback_add(edje, pattern, "*", note_signal, &m_signals);
        }
        support::run_loop_turns();
    }

    void push_hidden() {
        push();
        ASSERT_TRUE(support::run_main_loop_until([this] { return !controls_visible(); }));
        m_signals.clear();
        logs::clear();
    }

    void push_shown() {
        push_hidden();
        m_view->showPlayViewUi();
        wait_for_shown();
        m_signals.clear();
        logs::clear();
    }

    void wait_for_shown() {
        ASSERT_TRUE(support::run_main_loop_until([this] { return controls_visible(); }));
        // The controls take a press from the first frame of their way in.
        support::run_loop_turns();
    }

    [[nodiscard]] TslPlayerView &view() const { return *m_view; }
    [[nodiscard]] Evas_Object *base() const { return m_view->getEvasObject(); }
    [[nodiscard]] Evas_Object *layout() const {
        return elm_object_part_content_get(base(), content_part);
    }
    [[nodiscard]] Evas_Object *button(const char *name) const {
        const std::string part = std::string("tsl.player.view.") + name + ".btn.swallow";
        return elm_object_part_content_get(layout(), part.c_str());
    }
    [[nodiscard]] std::string style(const char *name) const {
        return elm_object_style_get(button(name));
    }
    [[nodiscard]] bool controls_visible() const {
        return evas_object_visible_get(layout()) != EINA_FALSE;
    }
    [[nodiscard]] std::string text(const char *part) const {
        const char *found = elm_object_part_text_get(layout(), part);
        return found != nullptr ? found : "";
    }
    void set_texts(const char *played, const char *duration) const {
        elm_object_part_text_set(layout(), played_part, played);
        elm_object_part_text_set(layout(), duration_part, duration);
    }
    /// Signals to the base layout, "signal source", since the last change of scene.
    [[nodiscard]] const std::vector<std::string> &signals() const { return m_signals; }
    void forget_signals() { m_signals.clear(); }
    /// Whether a place of the base layout is there, or on its way.
    [[nodiscard]] bool is_shown(const char *place) const {
        double value = 0.0;
        return edje_object_part_state_get(elm_layout_edje_get(base()), place, &value) !=
               std::string("hidden");
    }

    void tap_beside_the_controls() { tap(screen_size / 2, screen_size / 6); }

private:
    static void note_signal(void *data, Evas_Object *, const char *emission, const char *source) {
        static_cast<std::vector<std::string> *>(data)->push_back(std::string(emission) + " " +
                                                                 source);
    }

    TslPlayerView *m_view = nullptr;
    std::vector<std::string> m_signals;
};

const std::string show_content = std::string("layout,swallow,show ") + content_part;
const std::string hide_content = std::string("layout,swallow,hide ") + content_part;
const std::string show_more = std::string("moreoption,swallow,show ") + more_option_part;
const std::string hide_more = std::string("moreoption,swallow,hide ") + more_option_part;

using PlayerViewLayout = PlayerViewTest;

TEST_F(PlayerViewLayout, AnswersTheContentViewsClassName) {
    push();
    EXPECT_STREQ(view().getClassName(), "WContentViewController");
}

TEST_F(PlayerViewLayout, HoldsItsButtonsInTheirPlaces) {
    push();
    EXPECT_EQ(style("volume"), "video/volume/on");
    EXPECT_EQ(style("play"), "video/play");
    EXPECT_EQ(style("displaymode"), "video/displaymode/full");
}

TEST_F(PlayerViewLayout, HasEveryPartAndStyleInItsTheme) {
    push();
    Evas_Object *edje = elm_layout_edje_get(base());
    for (const char *part : {content_part, gesture_part, more_option_part}) {
        EXPECT_TRUE(edje_object_part_exists(edje, part)) << part;
    }
    for (const char *part :
         {played_part, duration_part, "tsl.player.view.playtime.screen.reader.focus"}) {
        EXPECT_TRUE(edje_object_part_exists(elm_layout_edje_get(layout()), part)) << part;
    }
    for (const char *name : {"video/play", "video/pause", "video/volume/on", "video/volume/mute",
                             "video/displaymode/full", "video/displaymode/letterbox"}) {
        EXPECT_TRUE(elm_object_style_set(button("play"), name)) << name;
    }
}

TEST_F(PlayerViewLayout, KeepsItsControlsInsideTheRoundFace) {
    push_shown();
    support::run_main_loop_for(0.3);
    for (const char *name : {"volume", "play", "displaymode"}) {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        evas_object_geometry_get(button(name), &x, &y, &width, &height);
        EXPECT_GE(width, 60) << name;
        EXPECT_NEAR(width, height, 1) << name;
        const double radius = screen_size / 2.0;
        const double away = std::hypot(x + width / 2.0 - radius, y + height / 2.0 - radius);
        EXPECT_LT(away + width / 2.0, radius) << name;
    }
}

TEST_F(PlayerViewLayout, DescribesItsButtonsToTheScreenReader) {
    push();
    const auto volume = mock::fake_access().record(button("volume"));
    EXPECT_EQ(volume.name, "IDS_MUSIC_OPT_VOLUME");
    EXPECT_EQ(volume.description, "");
    EXPECT_EQ(volume.role, 43);
    EXPECT_EQ(volume.reading_info, 3u);
    EXPECT_EQ(volume.domain, "tessel");
    const auto play = mock::fake_access().record(button("play"));
    EXPECT_EQ(play.name, "WDS_MUSIC_OPT_PLAY");
    EXPECT_EQ(play.role, 43);
    EXPECT_EQ(play.reading_info, 3u);
    const auto mode = mock::fake_access().record(button("displaymode"));
    EXPECT_EQ(mode.name, "IDS_DVBH_BUTTON_SCREEN_RATIO");
    EXPECT_EQ(mode.description, "WDS_GALLERY_TBOPT_CROP_TO_FIT");
    EXPECT_EQ(mode.role, 43);
    EXPECT_EQ(mode.reading_info, 7u);
}

TEST_F(PlayerViewLayout, StartsWithTheControlsHidden) {
    push();
    EXPECT_TRUE(support::run_main_loop_until([this] { return !controls_visible(); }));
}

TEST_F(PlayerViewLayout, LeavesTheControlsShownUnderAScreenReader) {
    mock::fake_uxt().set_screen_reader(true);
    push();
    support::run_main_loop_for(0.5);
    EXPECT_TRUE(controls_visible());
    EXPECT_TRUE(LoggedInfo("m_pScreenReaderCtrl->isEnabledToAccessAccessibility() == true"));
    // They count as shown: a request to show them changes nothing.
    forget_signals();
    view().showPlayViewUi();
    support::run_loop_turns();
    EXPECT_THAT(signals(), IsEmpty());
}

TEST_F(PlayerViewLayout, IsNotPushedWithoutItsTheme) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Invoke([] {
        return strdup("/nowhere/");
    }));
    EXPECT_FALSE(naviframe().push(&view(), "tsl_player_view"));
    EXPECT_TRUE(
        LoggedError("* Critical * It is failed to set layout of tsl.player.view.base.layout"));
    EXPECT_TRUE(LoggedError("* Critical * It is failed to create Gesture Layout."));
    EXPECT_TRUE(LoggedTimes(3, DLOG_INFO, "There is no pParent."));
    EXPECT_TRUE(
        LoggedTimes(3, DLOG_ERROR, "* Critical * It is failed to create play/pause button."));
    view().destroy();
}

TEST_F(PlayerViewLayout, ComesUpWithoutButtonsThatCannotBeMade) {
    EXPECT_CALL(mock::uxt(), uxt_button_add(_, _)).WillRepeatedly(Return(nullptr));
    push();
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * Button is nullptr"));
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * It is failed to create Button."));
    EXPECT_TRUE(
        LoggedTimes(3, DLOG_ERROR, "* Critical * It is failed to create play/pause button."));
}

TEST_F(PlayerViewLayout, MakesTheButtonsInOrder) {
    const testing::InSequence order;
    for (const char *name :
         {"IDS_MUSIC_OPT_VOLUME", "IDS_DVBH_BUTTON_SCREEN_RATIO", "WDS_MUSIC_OPT_PLAY"}) {
        EXPECT_CALL(mock::access(), elm_atspi_accessible_name_set(_, testing::StrEq(name)));
    }
    // The page itself comes last.
    EXPECT_CALL(mock::access(), elm_atspi_accessible_name_set(_, _));
    push();
}

TEST_F(PlayerViewLayout, EachOperationNeedsTheInsideObject) {
    auto *view = new OpenPlayerView();
    const auto pointer = member(Inside{});
    TslPlayerViewInside *const inside = view->*pointer;
    view->*pointer = nullptr;
    view->showPlayViewUi();
    view->hidePlayViewUi();
    view->enableVolumeButton();
    view->disableVolumeButton();
    view->createProgressTimer();
    view->destroyProgressTimer();
    view->setProgressValues(0, 0);
    view->changePlayButtonImageAsPlay();
    view->changePlayButtonImageAsPause();
    view->changeVolumeButtonImageAsVolumeOn();
    view->changeVolumeButtonImageAsVolumeMute();
    view->changeDisplaymodeButtonImageAsFull();
    view->changeDisplaymodeButtonImageAsLetterbox();
    EXPECT_FALSE(view->onCreate(nullptr));
    EXPECT_EQ(view->onCreateView(window(), nullptr), nullptr);
    EXPECT_FALSE(view->onPop());
    view->onBecomeTop();
    EXPECT_TRUE(OnlyFaultsLogged(std::vector<logs::Expected>(
        17, logs::error("* Critical * There is no m_pPlayerlViewInside Handle."))));
    EXPECT_TRUE(LoggedIn("changeDisplaymodeButtonImageAsFull", DLOG_ERROR,
                         "* Critical * There is no m_pPlayerlViewInside Handle."));
    view->*pointer = inside;
    view->destroy();
    this->view().destroy();
}

using PlayerViewGestures = PlayerViewTest;

TEST_F(PlayerViewGestures, AreTakenFromTheWholeSurface) {
    push();
    Evas_Object *const surface = elm_object_part_content_get(base(), gesture_part);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(g_gestures.parent, surface);
    EXPECT_EQ(g_gestures.attached_to, surface);
    ASSERT_NE(g_gestures.layer, nullptr);
    EXPECT_FALSE(elm_gesture_layer_hold_events_get(g_gestures.layer));
    EXPECT_EQ(elm_gesture_layer_line_angular_tolerance_get(g_gestures.layer), 60.0);
    EXPECT_EQ(elm_gesture_layer_long_tap_start_timeout_get(g_gestures.layer), 0.3);
}

TEST_F(PlayerViewGestures, AreTapsThatStartAndEnd) {
    push();
    ASSERT_EQ(g_gestures.callbacks.size(), 2u);
    const Gestures::Callback &start = g_gestures.callbacks[0];
    const Gestures::Callback &end = g_gestures.callbacks[1];
    EXPECT_EQ(start.type, ELM_GESTURE_N_TAPS);
    EXPECT_EQ(start.state, ELM_GESTURE_STATE_START);
    EXPECT_EQ(end.type, ELM_GESTURE_N_TAPS);
    EXPECT_EQ(end.state, ELM_GESTURE_STATE_END);
    logs::clear();
    EXPECT_EQ(start.function(start.data, nullptr), EVAS_EVENT_FLAG_NONE);
    EXPECT_TRUE(NotLogged("There is no"));
    EXPECT_EQ(start.function(nullptr, nullptr), EVAS_EVENT_FLAG_NONE);
    EXPECT_EQ(end.function(nullptr, nullptr), EVAS_EVENT_FLAG_NONE);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no UserData."),
                                  logs::error("* Critical * There is no UserData.")}));
    forget_signals();
    EXPECT_EQ(end.function(end.data, nullptr), EVAS_EVENT_FLAG_NONE);
    support::run_loop_turns();
    EXPECT_THAT(signals(), ElementsAre(show_content, show_more));
}

TEST_F(PlayerViewGestures, AreMissingWithoutALayer) {
    g_gestures.refused = true;
    push();
    EXPECT_TRUE(LoggedIn("_createGestureLayerLayout", DLOG_ERROR,
                         "* Critical * It is failed to create Gesture Layer."));
    EXPECT_EQ(elm_object_part_content_get(base(), gesture_part), nullptr);
    EXPECT_NE(button("play"), nullptr);
    logs::clear();
    view().destroy();
    EXPECT_TRUE(NotLogged("It is destroying gesture layer."));
}

TEST_F(PlayerViewGestures, AreMissingWithoutTheirLayout) {
    int asked = 0;
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Invoke([&asked] {
        // The page's own layout comes first, then that of the controls.
        return strdup(++asked == 3 ? "/nowhere/" : TESSEL_STAGE_DATADIR "/res/");
    }));
    push();
    EXPECT_TRUE(LoggedIn("_createGestureLayerLayout", DLOG_ERROR,
                         "* Critical * It is failed to create Gesture Layout."));
    EXPECT_EQ(g_gestures.layer, nullptr);
    EXPECT_EQ(elm_object_part_content_get(base(), gesture_part), nullptr);
    EXPECT_NE(button("play"), nullptr);
}

using PlayerViewButtons = PlayerViewTest;

TEST_F(PlayerViewButtons, ReportAMissingButtonForEachOperation) {
    EXPECT_CALL(mock::uxt(), uxt_button_add(_, _)).WillRepeatedly(Return(nullptr));
    push();
    logs::clear();
    view().enableVolumeButton();
    view().changeVolumeButtonImageAsVolumeOn();
    view().changeVolumeButtonImageAsVolumeMute();
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * m_pVolumeButton is not existed."));
    view().changePlayButtonImageAsPlay();
    view().changePlayButtonImageAsPause();
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * m_pPlayPauseButton is not existed."));
    view().changeDisplaymodeButtonImageAsFull();
    view().changeDisplaymodeButtonImageAsLetterbox();
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * m_pDisplaymodeButton is not existed."));
}

TEST_F(PlayerViewButtons, ShowPauseAndPlay) {
    push();
    view().changePlayButtonImageAsPause();
    EXPECT_EQ(style("play"), "video/pause");
    EXPECT_EQ(mock::fake_access().record(button("play")).name, "WDS_MUSIC_OPT_PAUSE");
    EXPECT_EQ(mock::fake_access().record(button("play")).role, 43);
    EXPECT_EQ(mock::fake_access().record(button("play")).reading_info, 3u);
    view().changePlayButtonImageAsPlay();
    EXPECT_EQ(style("play"), "video/play");
    EXPECT_EQ(mock::fake_access().record(button("play")).name, "WDS_MUSIC_OPT_PLAY");
    EXPECT_EQ(mock::fake_access().record(button("play")).reading_info, 3u);
}

TEST_F(PlayerViewButtons, LetterboxChangesTheDescriptionAndKeepsTheName) {
    push();
    view().changeDisplaymodeButtonImageAsLetterbox();
    EXPECT_EQ(style("displaymode"), "video/displaymode/letterbox");
    const auto record = mock::fake_access().record(button("displaymode"));
    EXPECT_EQ(record.name, "IDS_DVBH_BUTTON_SCREEN_RATIO");
    EXPECT_EQ(record.description, "WDS_GALLERY_TBOPT_FIT_TO_SCREEN");
    EXPECT_EQ(record.reading_info, 7u);
}

TEST_F(PlayerViewButtons, FullChangesTheDescriptionBack) {
    push();
    view().changeDisplaymodeButtonImageAsLetterbox();
    view().changeDisplaymodeButtonImageAsFull();
    EXPECT_EQ(style("displaymode"), "video/displaymode/full");
    EXPECT_EQ(mock::fake_access().record(button("displaymode")).description,
              "WDS_GALLERY_TBOPT_CROP_TO_FIT");
}

TEST_F(PlayerViewButtons, VolumeImagesLeaveTheNameAlone) {
    push();
    EXPECT_CALL(mock::access(), elm_atspi_accessible_name_set(_, _)).Times(0);
    view().changeVolumeButtonImageAsVolumeMute();
    EXPECT_EQ(style("volume"), "video/volume/mute");
    view().changeVolumeButtonImageAsVolumeOn();
    EXPECT_EQ(style("volume"), "video/volume/on");
}

TEST_F(PlayerViewButtons, DisabledVolumeButtonStaysOnMute) {
    push();
    view().disableVolumeButton();
    EXPECT_TRUE(elm_object_disabled_get(button("volume")));
    EXPECT_EQ(style("volume"), "video/volume/mute");
    view().changeVolumeButtonImageAsVolumeOn();
    EXPECT_EQ(style("volume"), "video/volume/mute");
    EXPECT_TRUE(
        LoggedInfo("VolumeButton is disabled. So, It will be not changed as volume on button."));
}

TEST_F(PlayerViewButtons, DisabledVolumeButtonStillTakesTheMuteImage) {
    push();
    view().disableVolumeButton();
    elm_object_style_set(button("volume"), "video/volume/on");
    view().changeVolumeButtonImageAsVolumeMute();
    EXPECT_EQ(style("volume"), "video/volume/mute");
}

TEST_F(PlayerViewButtons, EnablingTheVolumeButtonLeavesTheMuteImage) {
    push();
    view().disableVolumeButton();
    view().enableVolumeButton();
    EXPECT_FALSE(elm_object_disabled_get(button("volume")));
    EXPECT_EQ(style("volume"), "video/volume/mute");
}

TEST_F(PlayerViewButtons, PlayButtonReportsAPress) {
    push_shown();
    tap(button("play"));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, 0)));
    EXPECT_EQ(style("play"), "video/play");
    EXPECT_TRUE(controls_visible());
}

TEST_F(PlayerViewButtons, DisplayModeButtonReportsAPress) {
    push_shown();
    tap(button("displaymode"));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE, 0)));
    EXPECT_EQ(style("displaymode"), "video/displaymode/full");
}

TEST_F(PlayerViewButtons, VolumeButtonHidesTheControlsBeforeItReports) {
    push_shown();
    tap(button("volume"));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW, 0)));
    EXPECT_THAT(signals(), ElementsAre(hide_more, hide_content));
}

TEST_F(PlayerViewButtons, VolumeButtonHasHiddenTheControlsWhenItReports) {
    push_shown();
    bool hidden = false;
    unsigned int listener =
        TslSignalMgr::getInstance()->getSignal().addListener([&hidden](TslSignalType, void *) {
            hidden = static_cast<bool>(LoggedIn("_hidePlayViewUi", DLOG_INFO, ""));
        });
    tap(button("volume"));
    TslSignalMgr::getInstance()->getSignal().removeListener(listener);
    EXPECT_TRUE(hidden);
}

TEST_F(PlayerViewButtons, VolumeButtonHidesNothingUnderAScreenReader) {
    push_shown();
    mock::fake_uxt().set_screen_reader(true);
    tap(button("volume"));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW, 0)));
    EXPECT_THAT(signals(), IsEmpty());
}

TEST_F(PlayerViewButtons, DisabledVolumeButtonSwallowsAPress) {
    push_shown();
    view().disableVolumeButton();
    support::run_loop_turns();
    tap(button("volume"));
    EXPECT_THAT(emissions(), IsEmpty());
    EXPECT_THAT(signals(), IsEmpty());
}

using PlayerViewVisibility = PlayerViewTest;

TEST_F(PlayerViewVisibility, TapShowsHiddenControls) {
    push_hidden();
    tap_beside_the_controls();
    EXPECT_THAT(signals(), ElementsAre(show_content, show_more));
    EXPECT_TRUE(support::run_main_loop_until([this] { return controls_visible(); }));
}

TEST_F(PlayerViewVisibility, MoreOptionComesAndGoesWithTheControls) {
    push_hidden();
    EXPECT_FALSE(is_shown(content_part));
    EXPECT_FALSE(is_shown(more_option_part));
    view().showPlayViewUi();
    support::run_loop_turns();
    EXPECT_TRUE(is_shown(content_part));
    EXPECT_TRUE(is_shown(more_option_part));
    view().hidePlayViewUi();
    EXPECT_TRUE(support::run_main_loop_until(
        [this] { return !is_shown(content_part) && !is_shown(more_option_part); }));
}

TEST_F(PlayerViewVisibility, TapHidesShownControlsAtOnce) {
    push_shown();
    tap_beside_the_controls();
    EXPECT_THAT(signals(), ElementsAre(hide_more, hide_content));
    EXPECT_TRUE(support::run_main_loop_until([this] { return !controls_visible(); }, 1.0));
    EXPECT_EQ(toolkit::timers.count_kept(hide_delay_s), 0)
        << "nothing stays behind to hide them again";
}

TEST_F(PlayerViewVisibility, ControlsHideAfterThreeSeconds) {
    push_hidden();
    const double start = ecore_time_get();
    view().showPlayViewUi();
    support::run_loop_turns();
    forget_signals();
    ASSERT_TRUE(support::run_main_loop_until([this] { return !signals().empty(); }));
    EXPECT_GE(ecore_time_get() - start, hide_delay_s - 0.05);
    EXPECT_THAT(signals(), ElementsAre(hide_more, hide_content));
}

TEST_F(PlayerViewVisibility, ShowingShownControlsLeavesTheTimer) {
    push_hidden();
    view().showPlayViewUi();
    toolkit::timers.made.clear();
    view().showPlayViewUi();
    EXPECT_EQ(toolkit::timers.count_made(hide_delay_s), 0);
    EXPECT_EQ(toolkit::timers.count_kept(hide_delay_s), 1);
}

TEST_F(PlayerViewVisibility, PressOfPlayKeepsTheControlsForAnotherThreeSeconds) {
    push_shown();
    support::run_main_loop_for(2.6);
    tap(button("play"));
    const double pressed = ecore_time_get();
    ASSERT_TRUE(support::run_main_loop_until([this] { return !signals().empty(); }));
    EXPECT_GE(ecore_time_get() - pressed, hide_delay_s - 0.1);
}

TEST_F(PlayerViewVisibility, DetentRestartsTheThreeSeconds) {
    push_shown();
    toolkit::timers.made.clear();
    ASSERT_TRUE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 5));
    EXPECT_EQ(toolkit::timers.count_made(hide_delay_s), 1);
    EXPECT_EQ(toolkit::timers.count_kept(hide_delay_s), 1);
    support::run_loop_turns();
    EXPECT_THAT(signals(), IsEmpty());
}

TEST_F(PlayerViewVisibility, DetentShowsHiddenControls) {
    push_hidden();
    EXPECT_TRUE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 5));
    support::run_loop_turns();
    EXPECT_THAT(signals(), ElementsAre(show_content, show_more));
}

TEST_F(PlayerViewVisibility, TapLeavesShownControlsUnderAScreenReader) {
    push_shown();
    mock::fake_uxt().set_screen_reader(true);
    tap_beside_the_controls();
    EXPECT_THAT(signals(), IsEmpty());
    EXPECT_TRUE(controls_visible());
}

TEST_F(PlayerViewVisibility, ExpiryChangesNothingUnderAScreenReader) {
    toolkit::timers.made.clear();
    push_shown();
    mock::fake_uxt().set_screen_reader(true);
    // The timer that was started when the controls came expires, and isn't started again.
    ASSERT_TRUE(support::run_main_loop_until(
        [] { return static_cast<bool>(LoggedIn("_hidePlayViewUi", DLOG_INFO, "")); }));
    EXPECT_THAT(signals(), IsEmpty());
    EXPECT_TRUE(controls_visible());
    EXPECT_EQ(toolkit::timers.count_made(hide_delay_s), 1);
}

TEST_F(PlayerViewVisibility, WhatStartsTheThreeSecondsAnewDoesSoBeforeItReports) {
    push_shown();
    std::vector<std::pair<TslSignalType, std::ptrdiff_t>> started;
    unsigned int listener = TslSignalMgr::getInstance()->getSignal().addListener(
        [&started](TslSignalType type, void *) {
            started.emplace_back(type, toolkit::timers.count_made(hide_delay_s));
        });
    toolkit::timers.made.clear();
    tap(button("play"));
    tap(button("displaymode"));
    mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    TslSignalMgr::getInstance()->getSignal().removeListener(listener);
    EXPECT_THAT(started, ElementsAre(std::pair(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, 1),
                                     std::pair(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE, 2),
                                     std::pair(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 3)));
    EXPECT_EQ(toolkit::timers.count_made(hide_delay_s), 3);
}

TEST_F(PlayerViewVisibility, DetentThatShowsTheControlsStartsTheTimeTwice) {
    push_hidden();
    toolkit::timers.made.clear();
    mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    EXPECT_EQ(toolkit::timers.count_made(hide_delay_s), 2);
    EXPECT_EQ(toolkit::timers.count_kept(hide_delay_s), 1);
}

using PlayerViewRotary = PlayerViewTest;

TEST_F(PlayerViewRotary, ReportsBothDirections) {
    push_hidden();
    EXPECT_TRUE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    EXPECT_TRUE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE, 2));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 0),
                                         Emission(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 1)));
}

TEST_F(PlayerViewRotary, ReportsAnUnknownDirectionAsAllOnes) {
    Eext_Rotary_Event_Cb callback = nullptr;
    const void *data = nullptr;
    EXPECT_CALL(mock::rotary(), eext_rotary_object_event_callback_add(_, _, _))
        .WillOnce(DoAll(SaveArg<1>(&callback), SaveArg<2>(&data), Return(EINA_TRUE)));
    push_hidden();
    Eext_Rotary_Event_Info info{};
    const int direction = 7;
    static_assert(sizeof(info.direction) == sizeof(direction));
    std::memcpy(&info.direction, &direction, sizeof(direction));
    EXPECT_TRUE(callback(const_cast<void *>(data), base(), &info));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, -1)));
    EXPECT_FALSE(callback(nullptr, base(), &info));
    EXPECT_TRUE(LoggedError("* Critical * UserData is nullptr."));
}

TEST_F(PlayerViewRotary, TakesTheBezelBackWhenItBecomesTheTop) {
    push_hidden();
    EXPECT_EQ(mock::fake_rotary().active(), base());
    auto *above = new app_assist::WContentViewController();
    ASSERT_TRUE(naviframe().push(above, "above"));
    mock::fake_rotary().eext_rotary_object_event_activated_set(above->getEvasObject(), EINA_TRUE);
    ASSERT_NE(mock::fake_rotary().active(), base());
    // The toolkit takes no page away that is still on its way in.
    EXPECT_TRUE(support::run_main_loop_until([this, above] {
        above->popOut();
        return mock::fake_rotary().active() == base();
    }));
}

TEST_F(PlayerViewRotary, GetsTheBezelBackFromAPageThatIsDestroyed) {
    push_hidden();
    auto *above = new app_assist::WContentViewController();
    ASSERT_TRUE(naviframe().push(above, "above"));
    mock::fake_rotary().eext_rotary_object_event_activated_set(above->getEvasObject(), EINA_TRUE);
    above->destroy();
    EXPECT_TRUE(mock::fake_rotary().detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 5));
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 0)));
}

TEST_F(PlayerViewRotary, GivesTheBezelUpWhenItIsPopped) {
    push_hidden();
    naviframe().setLastItemPopHandler([](bool *pop_out) { *pop_out = false; });
    elm_naviframe_item_pop(naviframe().getEvasObject());
    EXPECT_EQ(mock::fake_rotary().active(), nullptr);
    EXPECT_EQ(mock::fake_rotary().callbacks(base()), 0);
}

using PlayerViewTimes = PlayerViewTest;

TEST_F(PlayerViewTimes, ShowsMinutesAndSeconds) {
    push_hidden();
    view().setProgressValues(61000, 3725000);
    EXPECT_EQ(text(played_part), "01:01");
    EXPECT_EQ(text(duration_part), "02:05");
}

TEST_F(PlayerViewTimes, ShowThreeFieldsOfNoughtWhenTheirTextsCannotBeMade) {
    push_hidden();
    view().setProgressValues(61000, 3725000);
    g_no_time_texts = true;
    view().setProgressValues(62000, 3725000);
    g_no_time_texts = false;
    EXPECT_EQ(text(played_part), "00:00:00");
    EXPECT_EQ(text(duration_part), "00:00:00");
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is failed to get played time."),
                                  logs::warn("It is failed to get duration time.")}));
}

TEST_F(PlayerViewTimes, ReportsAMissingLayout) {
    view().setProgressValues(0, 0);
    EXPECT_TRUE(
        LoggedIn("_setPlayedTime", DLOG_ERROR, "* Critical * m_pPlayerViewLayout is not existed."));
    EXPECT_TRUE(LoggedIn("_setDurationTime", DLOG_ERROR,
                         "* Critical * m_pPlayerViewLayout is not existed."));
    view().destroy();
}

TEST_F(PlayerViewTimes, AsksForTheTimesThreeTimesASecondUntilStopped) {
    push_hidden();
    view().createProgressTimer();
    EXPECT_EQ(toolkit::timers.count_kept(progress_s), 1);
    ASSERT_TRUE(support::run_main_loop_until([this] { return emissions().size() >= 3; }));
    for (const Emission &emission : emissions()) {
        EXPECT_EQ(emission, Emission(SIGNAL_PLAYER_VIEW_PROGRESS_TICK, 0));
    }
    view().destroyProgressTimer();
    EXPECT_EQ(toolkit::timers.count_kept(progress_s), 0);
}

TEST_F(PlayerViewTimes, HasOneTimerHoweverOftenItIsCreated) {
    push_hidden();
    view().createProgressTimer();
    view().createProgressTimer();
    EXPECT_EQ(toolkit::timers.count_made(progress_s), 2);
    EXPECT_EQ(toolkit::timers.count_kept(progress_s), 1);
}

using PlayerViewItem = PlayerViewTest;

TEST_F(PlayerViewItem, IsTransparentAndWithoutTitle) {
    push_hidden();
    Elm_Object_Item *item = view().getNaviItem();
    EXPECT_FALSE(elm_naviframe_item_title_enabled_get(item));
    EXPECT_STREQ(elm_naviframe_item_style_get(item), "basic/transparent");
}

TEST_F(PlayerViewItem, ReportsAMissingItem) {
    auto *open = new OpenPlayerView();
    open->onPushed(nullptr);
    EXPECT_TRUE(LoggedError("* Critical * There is no pNaviItem."));
    open->destroy();
    view().destroy();
}

TEST_F(PlayerViewItem, TakesEverythingAlongWhenItGoes) {
    push_shown();
    view().createProgressTimer();
    logs::clear();
    forget_emissions();
    ASSERT_EQ(toolkit::timers.count_kept(hide_delay_s), 1);
    ASSERT_EQ(toolkit::timers.count_kept(progress_s), 1);
    view().destroy();
    EXPECT_EQ(toolkit::timers.count_kept(hide_delay_s), 0);
    EXPECT_EQ(toolkit::timers.count_kept(progress_s), 0);
    EXPECT_TRUE(LoggedInfo("It is destroying gesture layer."));
    EXPECT_EQ(naviframe().getTopContentView(), nullptr);
    support::run_main_loop_for(0.5);
    EXPECT_THAT(emissions(), IsEmpty());
}

/// The texts of the catalogue, and the callback that the screen reader asks for the time.
class PlayerViewSentence : public PlayerViewTest {
protected:
    void SetUp() override {
        PlayerViewTest::SetUp();
        setlocale(LC_ALL, "C.UTF-8");
        use_language("en");
        TslExpandedUtils::bindTextDomain();
        EXPECT_CALL(mock::access(), elm_atspi_accessible_name_cb_set(_, _, _))
            .WillRepeatedly(
                DoAll(SaveArg<0>(&m_object), SaveArg<1>(&m_callback), SaveArg<2>(&m_data)));
    }

    void TearDown() override {
        use_language("");
        PlayerViewTest::TearDown();
    }

    static void use_language(const char *language) {
        setenv("LANGUAGE", language, 1);
        ++_nl_msg_cat_cntr;
    }

    [[nodiscard]] std::string sentence() const {
        const std::unique_ptr<char, decltype(&std::free)> found(
            m_callback(const_cast<void *>(m_data), m_object), &std::free);
        return found != nullptr ? found.get() : "";
    }

    void push_with_timer() {
        push_hidden();
        view().createProgressTimer();
        ASSERT_NE(m_callback, nullptr);
    }

private:
    Eo *m_object = nullptr;
    Elm_Atspi_Reading_Info_Cb m_callback = nullptr;
    const void *m_data = nullptr;
};

TEST_F(PlayerViewSentence, IsAskedForOnTheTimeArea) {
    push_with_timer();
    set_texts("00:05", "02:07");
    EXPECT_EQ(sentence(), "5 seconds of 2 minutes 7 seconds");
    EXPECT_TRUE(LoggedInfo("displayTime : 5 seconds of 2 minutes 7 seconds"));
}

TEST_F(PlayerViewSentence, IsRegisteredAnewWithEachTimer) {
    push_hidden();
    EXPECT_CALL(mock::access(), elm_atspi_accessible_name_cb_set(_, testing::NotNull(), _))
        .Times(2);
    view().createProgressTimer();
    view().createProgressTimer();
}

TEST_F(PlayerViewSentence, FollowsTheTableOfPhrases) {
    push_with_timer();
    const std::pair<const char *, const char *> rows[] = {
        {"00:00", "0"},         {"00:01", "1 second"},           {"00:59", "59 seconds"},
        {"01:00", "1 minute"},  {"01:01", "1 minute 1 second"},  {"01:30", "1 minute 30 seconds"},
        {"02:00", "2 minutes"}, {"02:01", "2 minutes 1 second"}, {"59:59", "59 minutes 59 seconds"},
    };
    for (const auto &[time, phrase] : rows) {
        set_texts(time, "01:00");
        EXPECT_EQ(sentence(), std::string(phrase) + " of 1 minute") << time;
        set_texts("01:00", time);
        EXPECT_EQ(sentence(), "1 minute of " + std::string(phrase)) << time;
    }
}

TEST_F(PlayerViewSentence, IsMissingUntilBothTextsAreThere) {
    push_with_timer();
    logs::clear();
    EXPECT_EQ(sentence(), "");
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Playing time is nullptr")}));
    elm_object_part_text_set(layout(), played_part, "00:05");
    logs::clear();
    EXPECT_EQ(sentence(), "");
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Duration is nullptr")}));
}

TEST_F(PlayerViewSentence, ReadsTheFallbackAsNothing) {
    push_with_timer();
    set_texts("00:00:00", "00:00:00");
    EXPECT_EQ(sentence(), "0 of 0");
}

TEST_F(PlayerViewSentence, LooksFormatsUpAmongThePlatformsTextsAndPlainTextsNot) {
    push_with_timer();
    mock::fake_i18n().set_text("%d seconds", "%d s");
    mock::fake_i18n().set_text("1 minute", "one min");
    mock::fake_i18n().set_text("%1$s of %2$s", "%2$s, %1$s");
    set_texts("00:07", "01:00");
    EXPECT_EQ(sentence(), "1 minute, 7 s");
}

TEST_F(PlayerViewSentence, IsTheIdWhereThereIsNoTranslation) {
    use_language("xx");
    push_with_timer();
    set_texts("00:05", "01:00");
    EXPECT_EQ(sentence(), "WDS_GALLERY_TBOPT_P1SS_OF_P2SS_M_TIME");
}

TEST_F(PlayerViewSentence, NamesThePageInTheUsersLanguage) {
    push_hidden();
    const auto record = mock::fake_access().record(view().getNaviItem());
    EXPECT_EQ(record.name, "Video player");
    EXPECT_EQ(record.reading_info, 5u);
}

}  // namespace

template struct support::OpenMember<Inside, &TslPlayerView::m_pPlayerlViewInside>;
