#include "TslButton.h"

#include <dlfcn.h>
#include <dlog.h>

#include <cstring>
#include <memory>
#include <string>

#include "TslResourceCtrl.h"
#include "TslUtils.h"
#include "mock_platform/mock_ui_app.h"
#include "mock_platform/mock_uxt.h"
#include "private_member.h"
#include "screen_fixture.h"

namespace {

using testing::_;
using testing::Return;
using testing::StrEq;

using Inside = support::PrivateMember<struct InsideTag, TslButtonInside * TslButton::*>;

constexpr char check_icon[] = "tw_ic_popup_btn_check.png";
constexpr char icon_part[] = "icon";

/// The text domain of the label that was set last.
std::string g_domain;

}  // namespace

// The program's calls come here first.
extern "C" void elm_object_domain_translatable_part_text_set(Evas_Object *object, const char *part,
                                                             const char *domain, const char *text) {
    static auto *const own =
        reinterpret_cast<decltype(&elm_object_domain_translatable_part_text_set)>(
            dlsym(RTLD_NEXT, "elm_object_domain_translatable_part_text_set"));
    g_domain = domain != nullptr ? domain : "none";
    own(object, part, domain, text);
}

namespace {

void count(void *data, Evas_Object *, void *) {
    ++*static_cast<int *>(data);
}
void count_too(void *data, Evas_Object *, void *) {
    ++*static_cast<int *>(data);
}

class ButtonTest : public screens::ScreenTest {
protected:
    /// A button of the toolkit's own style, which has text and icon.
    TslButton *add(const char *style = nullptr, const char *text = nullptr,
                   const char *domain = nullptr, Evas_Smart_Cb clicked = nullptr,
                   Evas_Smart_Cb pressed = nullptr, Evas_Smart_Cb unpressed = nullptr,
                   void *data = nullptr) {
        auto *button = new TslButton(style, text, domain, clicked, pressed, unpressed);
        EXPECT_TRUE(button->create(naviframe().getEvasObject(), data));
        return button;
    }

    static void call(const TslButton *button, const char *event) {
        evas_object_smart_callback_call(button->getEvasObject(), event, nullptr);
    }

    static Evas_Object *icon(const TslButton *button) {
        return TslUtils::createImage(button->getEvasObject(), TSL_EDJ_FILE, check_icon);
    }
};

using ButtonCreation = ButtonTest;

TEST_F(ButtonCreation, StartsFromTheDefaultStyle) {
    EXPECT_CALL(mock::uxt(), uxt_button_add(naviframe().getEvasObject(), StrEq("default")));
    add();
}

TEST_F(ButtonCreation, TakesStyleHintsAndIsShown) {
    const TslButton *button = add("video/play");
    Evas_Object *object = button->getEvasObject();
    EXPECT_STREQ(elm_object_style_get(object), "video/play");
    double x = 0.0;
    double y = 0.0;
    evas_object_size_hint_align_get(object, &x, &y);
    EXPECT_EQ(x, -1.0);
    EXPECT_EQ(y, -1.0);
    evas_object_size_hint_weight_get(object, &x, &y);
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, 1.0);
    EXPECT_TRUE(evas_object_visible_get(object));
    EXPECT_STREQ(const_cast<TslButton *>(button)->getClassName(), "WViewController");
}

TEST_F(ButtonCreation, HooksItsCallbacksWithTheDataOfCreate) {
    int calls = 0;
    const TslButton *button = add(nullptr, nullptr, nullptr, count, count, count, &calls);
    call(button, "clicked");
    call(button, "pressed");
    call(button, "unpressed");
    EXPECT_EQ(calls, 3);
}

TEST_F(ButtonCreation, NeedsAParent) {
    auto *button = new TslButton(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(button->create(nullptr, nullptr));
    EXPECT_TRUE(LoggedIn("onCreateView", DLOG_ERROR, "* Critical * Parent is nullptr"));
    button->destroy();
}

TEST_F(ButtonCreation, NeedsAButtonOfThePlatform) {
    EXPECT_CALL(mock::uxt(), uxt_button_add(_, _)).WillOnce(Return(nullptr));
    auto *button = new TslButton(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(button->create(naviframe().getEvasObject(), nullptr));
    EXPECT_TRUE(LoggedIn("onCreateView", DLOG_ERROR, "* Critical * Button is nullptr"));
    button->destroy();
}

TEST_F(ButtonCreation, EachOperationNeedsTheInsideObject) {
    auto *button = new TslButton(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    const auto pointer = member(Inside{});
    TslButtonInside *const inside = button->*pointer;
    button->*pointer = nullptr;
    button->setText("SOME_ID");
    button->setStyle("video/play");
    button->setDisabled(true);
    button->setIconColor("CODE");
    button->setIcon(nullptr, icon_part);
    button->unsetIcon(icon_part);
    button->updateIconImage(TSL_EDJ_FILE, check_icon, nullptr, icon_part);
    button->setCallback(count, count, count, nullptr);
    EXPECT_CALL(mock::uxt(), uxt_button_add(_, _)).Times(0);
    EXPECT_FALSE(button->create(naviframe().getEvasObject(), nullptr));
    EXPECT_TRUE(OnlyFaultsLogged(
        std::vector<logs::Expected>(9, logs::error("* Critical * Button Handle is nullptr."))));
    EXPECT_TRUE(LoggedIn("onCreateView", DLOG_ERROR, "* Critical * Button Handle is nullptr."));
    button->*pointer = inside;
    button->destroy();
}

using ButtonText = ButtonTest;

TEST_F(ButtonText, IsALabelOfTheGivenDomain) {
    const TslButton *button = add(nullptr, "SOME_ID", "films");
    EXPECT_EQ(g_domain, "films");
    EXPECT_STREQ(elm_object_translatable_part_text_get(button->getEvasObject(), nullptr),
                 "SOME_ID");
    EXPECT_STREQ(elm_object_text_get(button->getEvasObject()), "SOME_ID");
}

TEST_F(ButtonText, HasNoDomainAtFirstWhereNoneWasGiven) {
    add(nullptr, "SOME_ID", nullptr);
    EXPECT_EQ(g_domain, "none");
}

TEST_F(ButtonText, IsReplacedInItsDomain) {
    TslButton *button = add(nullptr, "SOME_ID", "films");
    g_domain.clear();
    button->setText("OTHER_ID");
    EXPECT_STREQ(elm_object_text_get(button->getEvasObject()), "OTHER_ID");
    EXPECT_EQ(g_domain, "films");
}

TEST_F(ButtonText, IsReplacedInTheProgramsDomainWhereNoneWasGiven) {
    TslButton *button = add(nullptr, "SOME_ID", nullptr);
    button->setText("OTHER_ID");
    EXPECT_EQ(g_domain, "tessel");
}

TEST_F(ButtonText, StaysOnScreenForANullText) {
    TslButton *button = add(nullptr, "SOME_ID", nullptr);
    button->setText(nullptr);
    EXPECT_STREQ(elm_object_text_get(button->getEvasObject()), "SOME_ID");
}

TEST_F(ButtonText, IsCopied) {
    auto text = std::make_unique<char[]>(8);
    std::strcpy(text.get(), "SOME_ID");
    auto *button = new TslButton(nullptr, text.get(), nullptr, nullptr, nullptr, nullptr);
    text.reset();
    ASSERT_TRUE(button->create(naviframe().getEvasObject(), nullptr));
    EXPECT_STREQ(elm_object_text_get(button->getEvasObject()), "SOME_ID");
}

using ButtonStyle = ButtonTest;

TEST_F(ButtonStyle, IsChanged) {
    TslButton *button = add("video/play");
    button->setStyle("video/pause");
    EXPECT_STREQ(elm_object_style_get(button->getEvasObject()), "video/pause");
}

TEST_F(ButtonStyle, StaysForANullStyle) {
    TslButton *button = add("video/play");
    button->setStyle(nullptr);
    EXPECT_STREQ(elm_object_style_get(button->getEvasObject()), "video/play");
}

TEST_F(ButtonStyle, NeedsTheObjectAndSoDoesDisabling) {
    auto *button = new TslButton(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    button->setStyle("video/play");
    button->setDisabled(true);
    button->unsetIcon(icon_part);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Button Object is not existed."),
                                  logs::error("* Critical * Button Object is nullptr."),
                                  logs::error("* Critical * Button object is nullptr.")}));
    button->destroy();
}

TEST_F(ButtonStyle, DisablesAndEnables) {
    TslButton *button = add();
    button->setDisabled(true);
    EXPECT_TRUE(elm_object_disabled_get(button->getEvasObject()));
    button->setDisabled(false);
    EXPECT_FALSE(elm_object_disabled_get(button->getEvasObject()));
}

using ButtonCallbacks = ButtonTest;

TEST_F(ButtonCallbacks, AreReplacedWithTheirData) {
    int before = 0;
    int after = 0;
    TslButton *button = add(nullptr, nullptr, nullptr, count, count, count, &before);
    button->setCallback(count_too, nullptr, count_too, &after);
    call(button, "clicked");
    call(button, "pressed");
    call(button, "unpressed");
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, 2);
}

TEST_F(ButtonCallbacks, AreAllGoneAfterThreeNulls) {
    int calls = 0;
    TslButton *button = add(nullptr, nullptr, nullptr, count, count, count, &calls);
    button->setCallback(nullptr, nullptr, nullptr, &calls);
    call(button, "clicked");
    call(button, "pressed");
    call(button, "unpressed");
    EXPECT_EQ(calls, 0);
    button->destroy();
    EXPECT_TRUE(NoFaultLogged());
}

using ButtonIcon = ButtonTest;

TEST_F(ButtonIcon, FillsItsPart) {
    TslButton *button = add();
    Evas_Object *image = icon(button);
    button->setIcon(image, icon_part);
    EXPECT_EQ(elm_object_part_content_get(button->getEvasObject(), icon_part), image);
    EXPECT_TRUE(evas_object_visible_get(image));
    double x = 0.0;
    double y = 0.0;
    evas_object_size_hint_weight_get(image, &x, &y);
    EXPECT_EQ(x, 1.0);
    EXPECT_EQ(y, 1.0);
    evas_object_size_hint_align_get(image, &x, &y);
    EXPECT_EQ(x, -1.0);
    EXPECT_EQ(y, -1.0);
}

TEST_F(ButtonIcon, ReplacesTheFormerOne) {
    TslButton *button = add();
    bool gone = false;
    Evas_Object *first = icon(button);
    evas_object_event_callback_add(
        first, EVAS_CALLBACK_DEL,
        [](void *data, Evas *, Evas_Object *, void *) { *static_cast<bool *>(data) = true; },
        &gone);
    button->setIcon(first, icon_part);
    Evas_Object *second = icon(button);
    button->setIcon(second, icon_part);
    EXPECT_TRUE(gone);
    EXPECT_EQ(elm_object_part_content_get(button->getEvasObject(), icon_part), second);
}

TEST_F(ButtonIcon, IsTakenOutAndDeleted) {
    TslButton *button = add();
    button->setIcon(icon(button), icon_part);
    button->unsetIcon(icon_part);
    EXPECT_EQ(elm_object_part_content_get(button->getEvasObject(), icon_part), nullptr);
    button->setIconColor("CODE");
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * Icon is not existed. Please set icon first.")}));
}

TEST_F(ButtonIcon, IsColoured) {
    TslButton *button = add();
    Evas_Object *image = icon(button);
    button->setIcon(image, icon_part);
    EXPECT_CALL(mock::uxt(), uxt_theme_object_set_color(image, StrEq("CODE")))
        .WillOnce(Return(0))
        .WillOnce(Return(-2));
    button->setIconColor("CODE");
    EXPECT_TRUE(NoFaultLogged());
    button->setIconColor("CODE");
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * uxt_theme_object_set_color() failed.")}));
}

TEST_F(ButtonIcon, HasNoImageToChangeBeforeItIsSet) {
    TslButton *button = add();
    button->updateIconImage(TSL_EDJ_FILE, check_icon, nullptr, icon_part);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There is no existed icon object. You need to create icon first.")}));
}

TEST_F(ButtonIcon, ChangesItsImageAndColour) {
    TslButton *button = add();
    Evas_Object *image = elm_image_add(button->getEvasObject());
    button->setIcon(image, icon_part);
    EXPECT_CALL(mock::uxt(), uxt_theme_object_set_color(image, StrEq("CODE"))).WillOnce(Return(-2));
    button->updateIconImage(TSL_EDJ_FILE, check_icon, "CODE", icon_part);
    const char *group = nullptr;
    elm_image_file_get(image, nullptr, &group);
    EXPECT_STREQ(group, check_icon);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * uxt_theme_object_set_color failed.")}));
}

TEST_F(ButtonIcon, ReportsAnImageThatIsNotThere) {
    TslButton *button = add();
    button->setIcon(elm_image_add(button->getEvasObject()), icon_part);
    button->updateIconImage(TSL_EDJ_FILE, "no such group", "CODE", icon_part);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * elm_image_file_set() is fail")}));
}

TEST_F(ButtonIcon, ReportsAFileWithoutPath) {
    TslButton *button = add();
    button->setIcon(elm_image_add(button->getEvasObject()), icon_part);
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Return(nullptr));
    button->updateIconImage(TSL_EDJ_FILE, check_icon, nullptr, icon_part);
    EXPECT_TRUE(
        LoggedIn("updateIconImage", DLOG_ERROR, "* Critical * It is failed to get edj path."));
}

TEST_F(ButtonIcon, IgnoresAPartWithoutIcon) {
    TslButton *button = add();
    button->setIcon(elm_image_add(button->getEvasObject()), icon_part);
    button->updateIconImage(TSL_EDJ_FILE, check_icon, nullptr, "no such part");
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(ButtonIcon, GoesWithTheButton) {
    TslButton *button = add(nullptr, nullptr, nullptr, count, count, count, nullptr);
    bool gone = false;
    Evas_Object *image = icon(button);
    evas_object_event_callback_add(
        image, EVAS_CALLBACK_DEL,
        [](void *data, Evas *, Evas_Object *, void *) { *static_cast<bool *>(data) = true; },
        &gone);
    button->setIcon(image, icon_part);
    button->destroy();
    support::run_loop_turns();
    EXPECT_TRUE(gone);
}

}  // namespace

template struct support::OpenMember<Inside, &TslButton::m_pButtonInside>;
