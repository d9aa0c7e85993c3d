#include <dlfcn.h>
#include <dlog.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app-assist/WContentViewController.h"
#include "mock_platform/mock_ui_app.h"
#include "screen_fixture.h"

namespace {

/// What the toolkit is made to answer; its own answer where nothing is said.
struct Toolkit {
    bool no_window = false;
    bool no_conformant = false;
    bool conformant = false;
    bool rotations_supported = false;
    int rotation = -1;
    std::vector<int> available_rotations;
    std::vector<std::string> signals;  ///< to objects of any kind, in the order of the calls
    Elm_Win_Type type = ELM_WIN_UNKNOWN;
    std::string name;
};
Toolkit toolkit;

template <typename Function>
Function *toolkits_own(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The toolkit's calls of the program, on their way through the test.
extern "C" {
Evas_Object *elm_win_add(Evas_Object *parent, const char *name, Elm_Win_Type type) {
    toolkit.name = name;
    toolkit.type = type;
    static auto *const own = toolkits_own<decltype(elm_win_add)>("elm_win_add");
    return toolkit.no_window ? nullptr : own(parent, name, type);
}
Evas_Object *elm_conformant_add(Evas_Object *parent) {
    static auto *const own = toolkits_own<decltype(elm_conformant_add)>("elm_conformant_add");
    return toolkit.no_conformant ? nullptr : own(parent);
}
void elm_win_conformant_set(Evas_Object *, Eina_Bool conformant) {
    toolkit.conformant = conformant != EINA_FALSE;
}
Eina_Bool elm_win_wm_rotation_supported_get(const Evas_Object *) {
    return toolkit.rotations_supported ? EINA_TRUE : EINA_FALSE;
}
void elm_win_wm_rotation_available_rotations_set(Evas_Object *, const int *rotations,
                                                 unsigned int count) {
    toolkit.available_rotations.assign(rotations, rotations + count);
}
void elm_object_signal_emit(Evas_Object *object, const char *emission, const char *source) {
    toolkit.signals.push_back(std::string(emission) + "|" + source);
    static auto *const own =
        toolkits_own<decltype(elm_object_signal_emit)>("elm_object_signal_emit");
    own(object, emission, source);
}
int elm_win_rotation_get(const Evas_Object *window) {
    static auto *const own = toolkits_own<decltype(elm_win_rotation_get)>("elm_win_rotation_get");
    return toolkit.rotation >= 0 ? toolkit.rotation : own(window);
}
}

namespace {

using screens::Emission;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

constexpr char video_part[] = "elm.swallow.video.display";

class WindowCtrlTest : public screens::ScreenTest {
protected:
    void SetUp() override {
        toolkit = Toolkit{};
        ScreenTest::SetUp();
    }
    [[nodiscard]] Evas_Object *base() const { return window_ctrl().getBaseLayoutEvasObject(); }
    [[nodiscard]] Evas_Object *hole() const {
        return elm_object_part_content_get(base(), video_part);
    }
    [[nodiscard]] std::vector<int> hole_color() const {
        int r = -1;
        int g = -1;
        int b = -1;
        int a = -1;
        evas_object_color_get(hole(), &r, &g, &b, &a);
        return {r, g, b, a};
    }
};

using WindowCreation = WindowCtrlTest;

TEST_F(WindowCreation, HasNoNameAndTypeOne) {
    EXPECT_EQ(toolkit.name, "");
    EXPECT_EQ(toolkit.type, static_cast<Elm_Win_Type>(1));
    EXPECT_STREQ(elm_win_title_get(window()), "");
    EXPECT_STREQ(elm_win_role_get(window()), "no-effect");
    EXPECT_EQ(elm_win_indicator_mode_get(window()), ELM_WIN_INDICATOR_SHOW);
    EXPECT_EQ(elm_win_indicator_opacity_get(window()), ELM_WIN_INDICATOR_TRANSPARENT);
    EXPECT_TRUE(toolkit.conformant);
}

TEST_F(WindowCreation, ForwardsNameAndType) {
    auto *other = new TslWindowCtrl("other", ELM_WIN_BASIC);
    ASSERT_TRUE(other->create());
    EXPECT_EQ(toolkit.name, "other");
    EXPECT_EQ(toolkit.type, ELM_WIN_BASIC);
    EXPECT_STREQ(elm_win_title_get(other->getEvasObject()), "other");
    other->destroy();
}

TEST_F(WindowCreation, AsksForAllRotationsWhereTheyAreSupported) {
    EXPECT_THAT(toolkit.available_rotations, IsEmpty());
    toolkit.rotations_supported = true;
    auto *other = new TslWindowCtrl();
    ASSERT_TRUE(other->create());
    EXPECT_THAT(toolkit.available_rotations, ElementsAre(0, 90, 180, 270));
    other->destroy();
}

TEST_F(WindowCreation, FailsWithoutWindow) {
    toolkit.no_window = true;
    auto *other = new TslWindowCtrl();
    EXPECT_FALSE(other->create());
    EXPECT_TRUE(LoggedIn("onCreateWin", DLOG_WARN, "It is failed to create window handle!"));
    other->destroy();
}

TEST_F(WindowCreation, HasNoBaseLayoutWithoutTheme) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Return(nullptr));
    auto *other = new TslWindowCtrl();
    other->create();
    EXPECT_EQ(other->getBaseLayoutEvasObject(), nullptr);
    EXPECT_TRUE(LoggedIn("onCreateBaseLayout", DLOG_WARN,
                         "It is failed to get a edje file path from the TSL_EDJ_FILE."));
    other->destroy();
}

TEST_F(WindowCreation, HasNoBaseLayoutWithoutConformant) {
    toolkit.no_conformant = true;
    auto *other = new TslWindowCtrl();
    other->create();
    EXPECT_EQ(other->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(other->getConformantEvasObject(), nullptr);
    EXPECT_TRUE(LoggedIn("onCreateBaseLayout", DLOG_ERROR,
                         "* Critical * It is failed to call elm_conformant_add(pWindow)."));
    other->destroy();
}

TEST_F(WindowCreation, PutsTheBaseLayoutIntoAnOverlappedConformant) {
    Evas_Object *conformant = window_ctrl().getConformantEvasObject();
    ASSERT_NE(conformant, nullptr);
    EXPECT_EQ(elm_object_part_content_get(conformant, nullptr), base());
    EXPECT_EQ(evas_object_data_get(conformant, "overlap"), reinterpret_cast<void *>(1));
    EXPECT_TRUE(evas_object_visible_get(conformant));
    EXPECT_THAT(toolkit.signals, testing::Contains("elm,state,indicator,overlap|"));
}

TEST_F(WindowCreation, LetsEachOfItsObjectsTakeAllRoom) {
    for (const Evas_Object *object : {window_ctrl().getConformantEvasObject(), base(),
                                      elm_object_part_content_get(base(), video_part)}) {
        double x = 0.0;
        double y = 0.0;
        evas_object_size_hint_weight_get(object, &x, &y);
        EXPECT_EQ(x, 1.0);
        EXPECT_EQ(y, 1.0);
    }
}

TEST_F(WindowCreation, NamesTheHoleInTheLog) {
    auto *other = new TslWindowCtrl();
    ASSERT_TRUE(other->create());
    char line[64];
    std::snprintf(line, sizeof(line), "pRect : %x",
                  static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(
                      elm_object_part_content_get(other->getBaseLayoutEvasObject(), video_part))));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(line)}));
    other->destroy();
}

TEST_F(WindowCreation, PutsTheScreensAboveTheHole) {
    EXPECT_EQ(elm_object_part_content_get(base(), "elm.swallow.content"),
              naviframe().getEvasObject());
}

using VideoHole = WindowCtrlTest;

TEST_F(VideoHole, ClearsTheWindowOverItsWholeSize) {
    ASSERT_NE(hole(), nullptr);
    EXPECT_THAT(hole_color(), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(evas_object_render_op_get(hole()), EVAS_RENDER_COPY);
    ASSERT_TRUE(support::run_main_loop_until([this] {
        int width = 0;
        int height = 0;
        evas_object_geometry_get(hole(), nullptr, nullptr, &width, &height);
        return width == screen_size && height == screen_size;
    }));
    EXPECT_TRUE(evas_object_visible_get(hole()));
}

TEST_F(VideoHole, TurnsBlackAndBack) {
    window_ctrl().changeColorMode(WINDOW_TYPE_OPAQUE);
    EXPECT_THAT(hole_color(), ElementsAre(0, 0, 0, 255));
    EXPECT_TRUE(LoggedInfo("WindowType nType : 2"));
    window_ctrl().changeColorMode(WINDOW_TYPE_VIDEO);
    EXPECT_THAT(hole_color(), ElementsAre(0, 0, 0, 0));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(VideoHole, StaysForAnUnknownType) {
    window_ctrl().changeColorMode(WINDOW_TYPE_OPAQUE);
    window_ctrl().changeColorMode(static_cast<WindowType>(3));
    EXPECT_THAT(hole_color(), ElementsAre(0, 0, 0, 255));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("The value of the window type is not correct.")}));
}

TEST_F(VideoHole, NeedsTheBaseLayout) {
    auto *other = new TslWindowCtrl();
    other->changeColorMode(WINDOW_TYPE_VIDEO);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is failed to get pBaseLayout.")}));
    other->destroy();
}

TEST_F(VideoHole, ReportsThatItIsGone) {
    evas_object_del(hole());
    window_ctrl().changeColorMode(WINDOW_TYPE_VIDEO);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is failed to get video_display part content.")}));
}

using WindowRotation = WindowCtrlTest;

TEST_F(WindowRotation, IsReported) {
    for (const int rotation : {0, 90, 180, 270}) {
        toolkit.rotation = rotation;
        evas_object_smart_callback_call(window(), "wm,rotation,changed", nullptr);
    }
    EXPECT_THAT(emissions(), ElementsAre(Emission(SIGNAL_WINDOW_ROTATION_0, 0),
                                         Emission(SIGNAL_WINDOW_ROTATION_90, 0),
                                         Emission(SIGNAL_WINDOW_ROTATION_180, 0),
                                         Emission(SIGNAL_WINDOW_ROTATION_270, 0)));
}

TEST_F(WindowRotation, OfAnotherAngleIsNot) {
    toolkit.rotation = 45;
    evas_object_smart_callback_call(window(), "wm,rotation,changed", nullptr);
    EXPECT_THAT(emissions(), IsEmpty());
}

using PageLookUp = WindowCtrlTest;

TEST_F(PageLookUp, FindsAPageByItsName) {
    auto *first = new app_assist::WContentViewController();
    auto *second = new app_assist::WContentViewController();
    ASSERT_TRUE(naviframe().push(first, "first"));
    ASSERT_TRUE(naviframe().push(second, "second"));
    EXPECT_EQ(naviframe().getContentViewController("first"), first);
    EXPECT_EQ(naviframe().getContentViewController("second"), second);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PageLookUp, TakesTheLowestOfTwo) {
    auto *lower = new app_assist::WContentViewController();
    ASSERT_TRUE(naviframe().push(lower, "same"));
    ASSERT_TRUE(naviframe().push(new app_assist::WContentViewController(), "same"));
    EXPECT_EQ(naviframe().getContentViewController("same"), lower);
}

TEST_F(PageLookUp, PassesANamelessPageOver) {
    ASSERT_TRUE(naviframe().push(new app_assist::WContentViewController(), nullptr));
    auto *named = new app_assist::WContentViewController();
    ASSERT_TRUE(naviframe().push(named, "named"));
    EXPECT_EQ(naviframe().getContentViewController("named"), named);
}

TEST_F(PageLookUp, FindsNothingUnderAnotherName) {
    ASSERT_TRUE(naviframe().push(new app_assist::WContentViewController(), "first"));
    EXPECT_EQ(naviframe().getContentViewController("other"), nullptr);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PageLookUp, ReportsAnEmptyNaviframe) {
    EXPECT_EQ(naviframe().getContentViewController("first"), nullptr);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to get naviframe items list.")}));
}

}  // namespace
