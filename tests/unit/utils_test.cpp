#include "TslUtils.h"

#include <dlfcn.h>
#include <dlog.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "TslResourceCtrl.h"
#include "log_lines.h"
#include "main_loop.h"
#include "mock_platform/fake_settings.h"
#include "mock_platform/mock_ui_app.h"
#include "window_fixture.h"

namespace {

/// What the toolkit would say about the screen; its own answers depend on the machine.
struct Screen {
    int width = 1280;
    int height = 720;
    int rotation = 0;
};
Screen screen;
std::vector<std::string> languages;
/// Labels that were told to slide.
std::vector<const Evas_Object *> sliding;
bool refuses_objects = false;

template <typename Function>
Function *toolkits_own(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The toolkit's calls of the program, answered by the test.
extern "C" {
void elm_win_screen_size_get(const Elm_Win *window, int *x, int *y, int *w, int *h) {
    EXPECT_EQ(window, TslUtils::getGlobalWindow());
    EXPECT_EQ(x, nullptr);
    EXPECT_EQ(y, nullptr);
    *w = screen.width;
    *h = screen.height;
}
int elm_win_rotation_get(const Evas_Object *window) {
    EXPECT_EQ(window, TslUtils::getGlobalWindow());
    return screen.rotation;
}
void elm_language_set(const char *language) {
    languages.emplace_back(language);
}
void elm_label_slide_go(Evas_Object *label) {
    sliding.push_back(label);
}
Evas_Object *elm_icon_add(Evas_Object *parent) {
    static auto *const own = toolkits_own<decltype(elm_icon_add)>("elm_icon_add");
    return refuses_objects ? nullptr : own(parent);
}
Evas_Object *elm_image_add(Evas_Object *parent) {
    static auto *const own = toolkits_own<decltype(elm_image_add)>("elm_image_add");
    return refuses_objects ? nullptr : own(parent);
}
Elm_Genlist_Item_Class *elm_genlist_item_class_new() {
    static auto *const own =
        toolkits_own<decltype(elm_genlist_item_class_new)>("elm_genlist_item_class_new");
    return refuses_objects ? nullptr : own();
}
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

class LanguageTest : public testing::Test {
protected:
    void SetUp() override { languages.clear(); }
};

using Language = LanguageTest;

TEST_F(Language, FollowsTheSetting) {
    mock::fake_vconf().set_str("db/menu_widget/language", "fr_FR.UTF-8");
    TslUtils::updateLanguageSet();
    EXPECT_THAT(languages, ElementsAre("fr_FR.UTF-8"));
}

TEST_F(Language, StaysWithoutSettingAndWithoutAWord) {
    TslUtils::updateLanguageSet();
    EXPECT_THAT(languages, IsEmpty());
    EXPECT_TRUE(logs::all().empty());
}

/// A window; and how many objects are left under it.
class WidgetsTest : public support::WindowTest {
protected:
    [[nodiscard]] int objects() const {
        int count = 0;
        Eina_List *all = nullptr;
        for (Evas_Object *object = evas_object_bottom_get(evas_object_evas_get(window()));
             object != nullptr; object = evas_object_above_get(object)) {
            all = eina_list_append(all, object);
        }
        count = static_cast<int>(eina_list_count(all));
        eina_list_free(all);
        return count;
    }

    static void hide_resources() {
        EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Return(nullptr));
    }
};

using Icon = WidgetsTest;

TEST_F(Icon, IsMadeFromAnImageOfTheTheme) {
    Evas_Object *icon = TslUtils::createIcon(window(), TSL_EDJ_FILE, "tw_ic_popup_btn_check.png");
    ASSERT_NE(icon, nullptr);
    EXPECT_STREQ(elm_object_widget_type_get(icon), "Elm_Icon");
    EXPECT_FALSE(evas_object_visible_get(icon));
}

TEST_F(Icon, NeedsAParent) {
    EXPECT_EQ(TslUtils::createIcon(nullptr, TSL_EDJ_FILE, "x"), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pParent is nullptr")}));
}

TEST_F(Icon, NeedsAnObjectOfTheToolkit) {
    refuses_objects = true;
    EXPECT_EQ(TslUtils::createIcon(window(), TSL_EDJ_FILE, "tw_ic_popup_btn_check.png"), nullptr);
    refuses_objects = false;
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to add elm_icon object.")}));
}

TEST_F(Icon, LeavesNothingBehindWithoutPath) {
    hide_resources();
    const int before = objects();
    EXPECT_EQ(TslUtils::createIcon(window(), TSL_EDJ_FILE, "x"), nullptr);
    EXPECT_TRUE(LoggedError("* Critical * Fail to get edj path."));
    support::run_loop_turns();
    EXPECT_EQ(objects(), before);
}

TEST_F(Icon, LeavesNothingBehindWithoutImage) {
    const int before = objects();
    EXPECT_EQ(TslUtils::createIcon(window(), TSL_EDJ_FILE, "no such group"), nullptr);
    EXPECT_TRUE(LoggedError("* Critical * elm_image_file_set is failed."));
    support::run_loop_turns();
    EXPECT_EQ(objects(), before);
}

using Image = WidgetsTest;

TEST_F(Image, IsMadeFromAnImageOfTheTheme) {
    Evas_Object *image = TslUtils::createImage(window(), TSL_EDJ_FILE, "tw_ic_popup_btn_check.png");
    ASSERT_NE(image, nullptr);
    EXPECT_STREQ(elm_object_widget_type_get(image), "Elm_Image");
    EXPECT_FALSE(evas_object_visible_get(image));
}

TEST_F(Image, NeedsAnObjectOfTheToolkit) {
    refuses_objects = true;
    EXPECT_EQ(TslUtils::createImage(window(), TSL_EDJ_FILE, "tw_ic_popup_btn_check.png"), nullptr);
    refuses_objects = false;
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to add elm_image object.")}));
}

TEST_F(Image, NeedsAParentAPathAndAGroup) {
    EXPECT_EQ(TslUtils::createImage(nullptr, TSL_EDJ_FILE, "x"), nullptr);
    EXPECT_EQ(TslUtils::createImage(window(), TSL_EDJ_FILE, "no such group"), nullptr);
    hide_resources();
    EXPECT_EQ(TslUtils::createImage(window(), TSL_EDJ_FILE, "x"), nullptr);
    EXPECT_TRUE(LoggedInOrder({logs::error("* Critical * pParent is nullptr"),
                               logs::error("* Critical * elm_image_file_set is failed."),
                               logs::error("* Critical * Fail to get edj path.")}));
}

using Layout = WidgetsTest;

TEST_F(Layout, ExpandsAndIsShown) {
    Evas_Object *layout = TslUtils::createLayout(window(), TSL_EDJ_FILE, "tsl.player.view");
    ASSERT_NE(layout, nullptr);
    double across = 0.0;
    double down = 0.0;
    evas_object_size_hint_weight_get(layout, &across, &down);
    EXPECT_EQ(across, 1.0);
    EXPECT_EQ(down, 1.0);
    EXPECT_TRUE(evas_object_visible_get(layout));
}

TEST_F(Layout, TestsItsArgumentsInOrder) {
    EXPECT_EQ(TslUtils::createLayout(nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(TslUtils::createLayout(window(), nullptr, nullptr), nullptr);
    EXPECT_EQ(TslUtils::createLayout(window(), TSL_EDJ_FILE, nullptr), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no pParent."),
                                  logs::error("* Critical * There is no szEdjFile."),
                                  logs::error("* Critical * There is no szGroupName.")}));
}

TEST_F(Layout, LeavesNothingBehindWithoutPath) {
    hide_resources();
    const int before = objects();
    EXPECT_EQ(TslUtils::createLayout(window(), TSL_EDJ_FILE, "tsl.player.view"), nullptr);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to get the path of the resource file."));
    support::run_loop_turns();
    EXPECT_EQ(objects(), before);
}

TEST_F(Layout, NamesTheGroupThatTheFileLacks) {
    const int before = objects();
    EXPECT_EQ(TslUtils::createLayout(window(), TSL_EDJ_FILE, "tsl.nothing"), nullptr);
    EXPECT_TRUE(LoggedError("* Critical * It is failed to set layout of tsl.nothing"));
    support::run_loop_turns();
    EXPECT_EQ(objects(), before);
}

using Genlist = WidgetsTest;

TEST_F(Genlist, IsHomogeneousCompressedFillingAndShown) {
    Evas_Object *list = TslUtils::createGenlist(window(), nullptr);
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(elm_genlist_homogeneous_get(list));
    EXPECT_EQ(elm_genlist_mode_get(list), ELM_LIST_COMPRESS);
    double x = 0.0;
    double y = 0.0;
    evas_object_size_hint_weight_get(list, &x, &y);
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, 1.0);
    evas_object_size_hint_align_get(list, &x, &y);
    EXPECT_EQ(x, -1.0);
    EXPECT_EQ(y, -1.0);
    EXPECT_TRUE(evas_object_visible_get(list));
    EXPECT_STREQ(elm_object_style_get(list), "default");
}

TEST_F(Genlist, TakesAStyle) {
    EXPECT_STREQ(elm_object_style_get(TslUtils::createGenlist(window(), "list/only")), "list/only");
}

TEST_F(Genlist, NeedsAParent) {
    EXPECT_EQ(TslUtils::createGenlist(nullptr, nullptr), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no Parent.")}));
}

using SliderText = WidgetsTest;

TEST_F(SliderText, SlidesWhatIsTooLong) {
    sliding.clear();
    Evas_Object *label = TslUtils::createSliderText(window(), "marker", "a text");
    ASSERT_NE(label, nullptr);
    EXPECT_STREQ(elm_object_style_get(label), "marker");
    EXPECT_THAT(sliding, ElementsAre(label));
    EXPECT_EQ(elm_label_slide_mode_get(label), static_cast<Elm_Label_Slide_Mode>(1));
    EXPECT_EQ(elm_label_wrap_width_get(label), 1);
    EXPECT_STREQ(elm_object_text_get(label), "a text");
    EXPECT_TRUE(evas_object_visible_get(label));
}

TEST_F(SliderText, MayBeEmptyAndSlidesAllTheSame) {
    sliding.clear();
    Evas_Object *label = TslUtils::createSliderText(window(), "default", nullptr);
    ASSERT_NE(label, nullptr);
    EXPECT_THAT(sliding, ElementsAre(label));
    EXPECT_STREQ(elm_object_text_get(label), elm_object_text_get(elm_label_add(window())));
}

TEST_F(SliderText, NeedsAParent) {
    EXPECT_EQ(TslUtils::createSliderText(nullptr, "default", "x"), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no Parent.")}));
}

char *item_text(void *, Evas_Object *, const char *) {
    return nullptr;
}
Evas_Object *item_content(void *, Evas_Object *, const char *) {
    return nullptr;
}

TEST(GenlistItemClass, HoldsItsStyleAndItsTwoGetters) {
    static constexpr char style[] = "1text";
    Elm_Genlist_Item_Class *item_class =
        TslUtils::createGenlistItemClass(style, item_text, item_content);
    ASSERT_NE(item_class, nullptr);
    EXPECT_EQ(item_class->item_style, style);
    EXPECT_EQ(item_class->func.text_get, &item_text);
    EXPECT_EQ(item_class->func.content_get, &item_content);
    EXPECT_EQ(item_class->func.state_get, nullptr);
    EXPECT_EQ(item_class->func.del, nullptr);
    EXPECT_EQ(item_class->decorate_item_style, nullptr);
    EXPECT_EQ(item_class->decorate_all_item_style, nullptr);
    elm_genlist_item_class_free(item_class);
}

TEST(GenlistItemClass, IsReportedWhenThereIsNone) {
    refuses_objects = true;
    EXPECT_EQ(TslUtils::createGenlistItemClass("1text", item_text, item_content), nullptr);
    refuses_objects = false;
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is failed to add new Elm_Genlist_Item_Class.")}));
}

class GlobalWindowTest : public testing::Test {
protected:
    void SetUp() override {
        screen = Screen{};
        TslUtils::setGlobalWindow(reinterpret_cast<Evas_Object *>(&screen));
    }
    void TearDown() override { TslUtils::setGlobalWindow(nullptr); }
};

using GlobalWindow = GlobalWindowTest;

TEST_F(GlobalWindow, IsKept) {
    EXPECT_EQ(TslUtils::getGlobalWindow(), reinterpret_cast<Evas_Object *>(&screen));
}

TEST_F(GlobalWindow, HasNoSizeBeforeItIsSet) {
    TslUtils::setGlobalWindow(nullptr);
    EXPECT_EQ(TslUtils::getWindowWidth(), 0);
    EXPECT_EQ(TslUtils::getWindowHeight(), 0);
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * The global window object is nullptr."));
}

TEST_F(GlobalWindow, HasTheScreensSize) {
    for (const int rotation : {0, 180, 45}) {
        screen.rotation = rotation;
        EXPECT_EQ(TslUtils::getWindowWidth(), 1280);
        EXPECT_EQ(TslUtils::getWindowHeight(), 720);
        EXPECT_FALSE(TslUtils::isLandscape());
    }
}

TEST_F(GlobalWindow, SwapsItsSizeWhenItIsTurned) {
    for (const int rotation : {90, 270}) {
        screen.rotation = rotation;
        EXPECT_EQ(TslUtils::getWindowWidth(), 720);
        EXPECT_EQ(TslUtils::getWindowHeight(), 1280);
        EXPECT_TRUE(TslUtils::isLandscape());
    }
}

TEST_F(GlobalWindow, ScalesLengthsOfTheReferenceScreenInWholeNumbers) {
    screen.width = 360;
    screen.height = 360;
    EXPECT_EQ(TslUtils::getScaledWidth(640), 180);
    EXPECT_EQ(TslUtils::getScaledHeight(360), 180);
    // 1280 / 500 is 2: the divisions drop their rests, one after the other.
    EXPECT_EQ(TslUtils::getScaledWidth(500), 180);
    EXPECT_EQ(TslUtils::getScaledHeight(200), 120);
}

TEST_F(GlobalWindow, ScalesAgainstTheTurnedReferenceScreen) {
    screen.width = 360;
    screen.height = 400;
    screen.rotation = 90;
    EXPECT_EQ(TslUtils::getScaledWidth(360), 200);
    EXPECT_EQ(TslUtils::getScaledHeight(640), 180);
}

}  // namespace
