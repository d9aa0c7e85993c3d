#include <dlfcn.h>
#include <dlog.h>
#include <gmock/gmock.h>

#include <string>

#include "TslScreenReaderCtrl.h"
#include "log_lines.h"
#include "mock_platform/mock_access.h"
#include "mock_platform/mock_uxt.h"
#include "private_member.h"
#include "window_fixture.h"

namespace {

bool g_no_access_objects = false;

}  // namespace

// The program's calls come here first.
extern "C" Evas_Object *elm_access_object_register(Evas_Object *object, Evas_Object *parent) {
    static auto *const own = reinterpret_cast<decltype(&elm_access_object_register)>(
        dlsym(RTLD_NEXT, "elm_access_object_register"));
    return g_no_access_objects ? nullptr : own(object, parent);
}

namespace {

using testing::_;
using testing::InSequence;
using testing::Return;
using testing::StrEq;

using Inside =
    support::PrivateMember<struct InsideTag, TslScreenReaderCtrlInside * TslScreenReaderCtrl::*>;

constexpr AccessibleRoleType button_role = AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON;
constexpr AccessibleRoleType no_role = AccessibleRoleType::ELM_ATSPI_ROLE_INVALID;

constexpr char no_target[] =
    "* Critical * It is failed to set accessible contents because evas_object is not existed. - "
    "pTargetObject == nullptr";
constexpr char no_parent[] =
    "* Critical * It is failed to set accessible contents because evas_object is not existed. - "
    "pParentObject == nullptr";
constexpr char no_callback[] =
    "* Critical * It is failed to set accessible contents because screenReaderNameCb is not "
    "existed. - screenReaderNameCb == nullptr";

constexpr char no_access_object[] =
    "* Critical * pAccessObject is not existed. - pAccessObject == nullptr";
constexpr char not_set[] =
    "* Critical * It is failed to set accessible name callback because pAccessObject is not "
    "existed. - pAccessObject == nullptr";

char *dynamic_name(void *, Elm_Interface_Atspi_Accessible *) {
    return nullptr;
}

class ScreenReaderTest : public support::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        g_no_access_objects = false;
        m_button = elm_button_add(window());
        m_plain = evas_object_rectangle_add(evas_object_evas_get(window()));
        logs::clear();
    }

    [[nodiscard]] FakeAccess::Record record(const Eo *object) const {
        return mock::fake_access().record(object);
    }

    TslScreenReaderCtrl ctrl;
    Evas_Object *m_button = nullptr;
    Evas_Object *m_plain = nullptr;
};

using ScreenReaderContents = ScreenReaderTest;

TEST_F(ScreenReaderContents, SetTheDomainFirst) {
    const InSequence order;
    EXPECT_CALL(mock::access(),
                elm_atspi_accessible_translation_domain_set(m_button, StrEq("tessel")));
    EXPECT_CALL(mock::access(), elm_atspi_accessible_name_set(m_button, StrEq("NAME")));
    EXPECT_CALL(mock::access(), elm_atspi_accessible_description_set(m_button, StrEq("TEXT")));
    EXPECT_CALL(mock::access(), elm_atspi_accessible_role_set(m_button, 43));
    EXPECT_CALL(mock::access(), elm_atspi_accessible_reading_info_type_set(m_button, 7u));
    EXPECT_TRUE(ctrl.setAccessibleContents(m_button, "NAME", "TEXT", button_role, 7));
}

TEST_F(ScreenReaderContents, RefuseANameOfOneCharacter) {
    EXPECT_CALL(mock::access(), elm_atspi_accessible_name_set(_, _)).Times(0);
    EXPECT_TRUE(ctrl.setAccessibleContents(m_button, "N", "TEXT", button_role, 3));
    EXPECT_TRUE(
        LoggedIn("_setAccessibleName", DLOG_INFO,
                 "Length of strName is 0. So, It cannot set elm_atspi_accessible_name_set()."));
}

TEST_F(ScreenReaderContents, TakeANameOfTwoCharacters) {
    EXPECT_TRUE(ctrl.setAccessibleContents(m_button, "NN", "", button_role, 3));
    EXPECT_EQ(record(m_button).name, "NN");
}

TEST_F(ScreenReaderContents, LeaveTheDescriptionForAnEmptyOne) {
    ctrl.setAccessibleContents(m_button, "NAME", "BEFORE", button_role, 7);
    EXPECT_TRUE(ctrl.setAccessibleContents(m_button, "NAME", "", button_role, 3));
    EXPECT_EQ(record(m_button).description, "BEFORE");
    EXPECT_TRUE(LoggedIn("_setAccessibleDescription", DLOG_INFO,
                         "Length of strDescription is 0.  So, It cannot set "
                         "elm_atspi_accessible_description_set()."));
}

TEST_F(ScreenReaderContents, SkipNoRoleAndNoReadingInformation) {
    EXPECT_CALL(mock::access(), elm_atspi_accessible_role_set(_, _)).Times(0);
    EXPECT_CALL(mock::access(), elm_atspi_accessible_reading_info_type_set(_, _)).Times(0);
    EXPECT_TRUE(ctrl.setAccessibleContents(m_button, "NAME", "TEXT", no_role, 0));
    EXPECT_TRUE(LoggedIn("_setAccessibleRole", DLOG_INFO,
                         "(roleType != AccessibleRoleType::ELM_ATSPI_ROLE_INVALID).  So, It cannot "
                         "set elm_atspi_accessible_role_set()."));
    EXPECT_TRUE(LoggedIn("_setReadingInfoType", DLOG_INFO,
                         "(roleType != AccessibleRoleType::ELM_ATSPI_ROLE_INVALID).  So, It cannot "
                         "set elm_atspi_accessible_reading_info_type_set()."));
}

TEST_F(ScreenReaderContents, NeedATarget) {
    EXPECT_FALSE(ctrl.setAccessibleContents(nullptr, "NAME", "", button_role, 3));
    EXPECT_FALSE(ctrl.setAccessibleContents(nullptr, window(), "NAME", "", button_role, 3));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_target), logs::error(no_target)}));
}

TEST_F(ScreenReaderContents, OfAPlainObjectNeedAParent) {
    EXPECT_FALSE(ctrl.setAccessibleContents(m_plain, nullptr, "NAME", "", button_role, 3));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_parent)}));
}

TEST_F(ScreenReaderContents, OfAPlainObjectGoToItsAccessObject) {
    Eo *access_object = nullptr;
    EXPECT_CALL(mock::access(), elm_atspi_accessible_name_set(_, StrEq("NAME")))
        .WillOnce(testing::SaveArg<0>(&access_object));
    EXPECT_TRUE(ctrl.setAccessibleContents(m_plain, window(), "NAME", "TEXT", button_role, 1));
    EXPECT_NE(access_object, m_plain);
    EXPECT_EQ(access_object, elm_access_object_get(m_plain));
    EXPECT_EQ(record(access_object).domain, "tessel");
    EXPECT_EQ(record(access_object).description, "TEXT");
    EXPECT_EQ(record(access_object).role, 43);
    EXPECT_EQ(record(access_object).reading_info, 1u);
}

TEST_F(ScreenReaderContents, OfAPlainObjectNeedItsAccessObject) {
    g_no_access_objects = true;
    EXPECT_FALSE(ctrl.setAccessibleContents(m_plain, window(), "NAME", "TEXT", button_role, 1));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_access_object), logs::error(not_set)}));
    EXPECT_EQ(record(m_plain).name, "");
}

using ScreenReaderPage = ScreenReaderTest;

TEST_F(ScreenReaderPage, IsReadWithNameAndDescription) {
    Evas_Object *naviframe = elm_naviframe_add(window());
    Elm_Object_Item *item = elm_naviframe_item_push(naviframe, nullptr, nullptr, nullptr,
                                                    elm_layout_add(naviframe), nullptr);
    EXPECT_TRUE(ctrl.setAccessibleNaviframe(item, "Page", "About"));
    EXPECT_EQ(record(item).domain, "tessel");
    EXPECT_EQ(record(item).name, "Page");
    EXPECT_EQ(record(item).description, "About");
    EXPECT_EQ(record(item).reading_info, 5u);
    EXPECT_EQ(record(item).role, 0);
}

TEST_F(ScreenReaderPage, NeedsAnItem) {
    EXPECT_FALSE(ctrl.setAccessibleNaviframe(nullptr, "Page", ""));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * It is failed to set accessible contents because "
                     "Elm_Object_Item is not existed. - pTargetObject == nullptr")}));
}

using ScreenReaderName = ScreenReaderTest;

TEST_F(ScreenReaderName, IsAskedForOnAWidget) {
    int data = 0;
    EXPECT_TRUE(ctrl.setCallbackOfAccessibleName(m_button, dynamic_name, &data));
    EXPECT_EQ(record(m_button).name_cb, &dynamic_name);
    EXPECT_EQ(record(m_button).name_cb_data, &data);
    EXPECT_EQ(record(m_button).reading_info, 1u);
}

TEST_F(ScreenReaderName, IsAskedForOnTheAccessObjectOfAPlainObject) {
    int data = 0;
    EXPECT_TRUE(ctrl.setCallbackOfAccessibleName(m_plain, window(), dynamic_name, &data));
    const Eo *access_object = elm_access_object_get(m_plain);
    EXPECT_EQ(record(access_object).name_cb, &dynamic_name);
    EXPECT_EQ(record(access_object).reading_info, 1u);
    EXPECT_EQ(record(m_plain).name_cb, nullptr);
}

TEST_F(ScreenReaderName, NeedsTargetThenParentThenCallback) {
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(nullptr, nullptr, nullptr, nullptr));
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(m_plain, nullptr, nullptr, nullptr));
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(m_plain, window(), nullptr, nullptr));
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(nullptr, dynamic_name, nullptr));
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(m_button, static_cast<AccessibleNameCb>(nullptr),
                                                  nullptr));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error(no_target), logs::error(no_parent), logs::error(no_callback),
                          logs::error(no_target), logs::error(no_callback)}));
}

TEST_F(ScreenReaderName, OfAPlainObjectNeedsItsAccessObject) {
    g_no_access_objects = true;
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(m_plain, window(), dynamic_name, nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_access_object), logs::error(not_set)}));
    EXPECT_EQ(record(m_plain).name_cb, nullptr);
}

using ScreenReaderHighlight = ScreenReaderTest;

TEST_F(ScreenReaderHighlight, IsSwitchedPerObject) {
    EXPECT_TRUE(ctrl.disableHighlight(m_button));
    EXPECT_FALSE(record(m_button).can_highlight);
    EXPECT_TRUE(ctrl.enableHighlight(m_button));
    EXPECT_TRUE(record(m_button).can_highlight);
}

using ScreenReaderSpeech = ScreenReaderTest;

TEST_F(ScreenReaderSpeech, SaysATextOfOneCharacter) {
    EXPECT_TRUE(ctrl.sayManualText("7"));
    ASSERT_EQ(mock::fake_access().spoken().size(), 1u);
    EXPECT_EQ(mock::fake_access().spoken()[0].text, "7");
    EXPECT_TRUE(mock::fake_access().spoken()[0].discardable);
}

TEST_F(ScreenReaderSpeech, RefusesAnEmptyText) {
    EXPECT_FALSE(ctrl.sayManualText(""));
    EXPECT_TRUE(mock::fake_access().spoken().empty());
    EXPECT_TRUE(LoggedInfo("Length of strText is 0.  So, It cannot be said text."));
}

using ScreenReaderState = ScreenReaderTest;

TEST_F(ScreenReaderState, IsOnForAnyNumberButNought) {
    EXPECT_CALL(mock::uxt(), uxt_access_is_accessibility_enabled())
        .WillOnce(Return(1))
        .WillOnce(Return(-1));
    EXPECT_TRUE(ctrl.isEnabledToAccessAccessibility());
    EXPECT_TRUE(ctrl.isEnabledToAccessAccessibility());
    EXPECT_TRUE(NotLogged("Accessibility is not set by user."));
}

TEST_F(ScreenReaderState, IsOffWithAWord) {
    EXPECT_FALSE(ctrl.isEnabledToAccessAccessibility());
    EXPECT_TRUE(LoggedInfo("Accessibility is not set by user."));
}

using ScreenReaderInside = ScreenReaderTest;

TEST_F(ScreenReaderInside, IsNeededByEachOperation) {
    const auto pointer = member(Inside{});
    TslScreenReaderCtrlInside *const inside = ctrl.*pointer;
    ctrl.*pointer = nullptr;
    EXPECT_CALL(mock::uxt(), uxt_access_is_accessibility_enabled()).Times(0);
    EXPECT_FALSE(ctrl.setAccessibleNaviframe(nullptr, "Page", ""));
    EXPECT_FALSE(ctrl.setAccessibleContents(m_button, "NAME", "", button_role, 3));
    EXPECT_FALSE(ctrl.setAccessibleContents(m_plain, window(), "NAME", "", button_role, 3));
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(m_button, dynamic_name, nullptr));
    EXPECT_FALSE(ctrl.setCallbackOfAccessibleName(m_plain, window(), dynamic_name, nullptr));
    EXPECT_FALSE(ctrl.enableHighlight(m_button));
    EXPECT_FALSE(ctrl.disableHighlight(m_button));
    EXPECT_FALSE(ctrl.sayManualText("7"));
    EXPECT_FALSE(ctrl.isEnabledToAccessAccessibility());
    EXPECT_TRUE(OnlyFaultsLogged(std::vector<logs::Expected>(
        9, logs::error("* Critical * m_pScreenReaderCtrlInside is not exsited."))));
    ctrl.*pointer = inside;
}

}  // namespace

template struct support::OpenMember<Inside, &TslScreenReaderCtrl::m_pScreenReaderCtrlInside>;
