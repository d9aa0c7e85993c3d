#include <dlog.h>
#include <libintl.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "TslExpandedUtils.h"
#include "TslResourceCtrl.h"
#include "TslSystemUtils.h"
#include "log_lines.h"
#include "mock_platform/mock_power.h"
#include "mock_platform/mock_ui_app.h"
#include "mock_platform/mock_uxt.h"

namespace {

using testing::_;
using testing::InSequence;
using testing::Invoke;
using testing::Return;
using testing::StrEq;

struct TextFree {
    void operator()(char *text) const { std::free(text); }
};
using Text = std::unique_ptr<char, TextFree>;

TslResourceCtrl &resources() {
    return *TslResourceCtrl::getInstance();
}

void set_resource_path(const std::string &path) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Invoke([path] {
        return strdup(path.c_str());
    }));
}

TEST(ResourceCtrl, PutsTheResourceFolderBeforeAName) {
    set_resource_path("/app/res/");
    const Text path(resources().getResourcePath("edje/tessel.edj"));
    EXPECT_STREQ(path.get(), "/app/res/edje/tessel.edj");
}

TEST(ResourceCtrl, AddsNoSeparator) {
    set_resource_path("/app/res");
    const Text path(resources().getResourcePath("edje"));
    EXPECT_STREQ(path.get(), "/app/resedje");
}

TEST(ResourceCtrl, GivesTheFolderItselfForAnEmptyName) {
    set_resource_path("/app/res/");
    const Text path(resources().getResourcePath(""));
    EXPECT_STREQ(path.get(), "/app/res/");
}

TEST(ResourceCtrl, GivesANewCopyAtEachCall) {
    set_resource_path("/app/res/");
    const Text first(resources().getResourcePath("a"));
    set_resource_path("/moved/");
    const Text second(resources().getResourcePath("a"));
    EXPECT_NE(first.get(), second.get());
    EXPECT_STREQ(second.get(), "/moved/a");
}

TEST(ResourceCtrl, CutsALongPathAt1023Characters) {
    set_resource_path("/" + std::string(1021, 'd'));
    const Text path(resources().getResourcePath("name"));
    EXPECT_EQ(std::string(path.get()), "/" + std::string(1021, 'd') + "n");
}

TEST(ResourceCtrl, GivesNothingForANullName) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).Times(0);
    EXPECT_EQ(resources().getResourcePath(nullptr), nullptr);
    EXPECT_TRUE(
        LoggedIn("getResourcePath", DLOG_ERROR, "* Critical * There is no szResourcePath."));
}

TEST(ResourceCtrl, GivesNothingWithoutResourceFolder) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillRepeatedly(Return(nullptr));
    EXPECT_EQ(resources().getResourcePath("a"), nullptr);
    EXPECT_TRUE(LoggedIn("getResourcePath", DLOG_ERROR,
                         "* Critical * It is failed to get app resource path."));
    EXPECT_EQ(resources().getAppResourcePath(), nullptr);
    EXPECT_TRUE(LoggedIn("getAppResourcePath", DLOG_ERROR,
                         "* Critical * It is failed to get app resource path."));
}

TEST(ResourceCtrl, HasNoTextDomainUntilOneIsSet) {
    TslResourceCtrl fresh;
    EXPECT_EQ(fresh.getTextDomain(), "");
    EXPECT_TRUE(LoggedInfo("szTextDomain: "));
    fresh.setTextDomain("films");
    EXPECT_EQ(fresh.getTextDomain(), "films");
    EXPECT_TRUE(LoggedInfo("szTextDomain: films"));
}

TEST(ResourceCtrl, LogsItsStartAndItsEnd) {
    {
        TslResourceCtrl fresh;
        EXPECT_TRUE(LoggedIn("initResourceManager", DLOG_INFO, ""));
    }
    EXPECT_TRUE(LoggedIn("releaseResourceManager", DLOG_INFO, ""));
}

TEST(ExpandedUtils, AsksForChangeableColoursAndTheLightStyle) {
    const InSequence order;
    EXPECT_CALL(mock::uxt(), uxt_theme_set_changeable_ui_enabled(1)).WillOnce(Return(0));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_style(static_cast<uxt_theme_style_e>(2)))
        .WillOnce(Return(0));
    TslExpandedUtils::setUxtTheme();
    EXPECT_TRUE(NoFaultLogged());
}

TEST(ExpandedUtils, GoesOnWhenTheThemeRefuses) {
    EXPECT_CALL(mock::uxt(), uxt_theme_set_changeable_ui_enabled(1)).WillOnce(Return(-1));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_style(UXT_THEME_STYLE_LIGHT)).WillOnce(Return(-1));
    TslExpandedUtils::setUxtTheme();
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("It is failes to set uxt_theme_set_changeable_ui_enabled"),
         logs::warn("It is failes to set uxt_theme_set_style(UXT_THEME_STYLE_LIGHT).")}));
}

TEST(ExpandedUtils, BindsTheTextDomainToTheLocaleFolder) {
    set_resource_path("/app/res/");
    TslExpandedUtils::bindTextDomain();
    EXPECT_STREQ(bindtextdomain("tessel", nullptr), "/app/res/locale");
}

TEST(ExpandedUtils, BindsTheLiteralDomainWhateverTheResourcesSay) {
    set_resource_path("/other/");
    const std::string before = resources().getTextDomain();
    resources().setTextDomain("films");
    TslExpandedUtils::bindTextDomain();
    resources().setTextDomain(before);
    EXPECT_STREQ(bindtextdomain("tessel", nullptr), "/other/locale");
}

TEST(ExpandedUtils, BindsNothingWithoutResourceFolder) {
    bindtextdomain("tessel", "/before");
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillOnce(Return(nullptr));
    TslExpandedUtils::bindTextDomain();
    EXPECT_STREQ(bindtextdomain("tessel", nullptr), "/before");
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to get app resource path."),
                          logs::error("* Critical * It is failed to get App resource path.")}));
}

constexpr char color_file[] = "/shared//tables/com.orvane.tessel_ChangeableColorInfo.xml";
constexpr char font_file[] = "/shared//tables/com.orvane.tessel_ChangeableFontInfo.xml";

/// Any address will do for a handle: the tables are the platform's affair.
uxt_color_table_h color_table() {
    static int place;
    return reinterpret_cast<uxt_color_table_h>(&place);
}
uxt_font_table_h font_table() {
    static int place;
    return reinterpret_cast<uxt_font_table_h>(&place);
}

void set_shared_path() {
    EXPECT_CALL(mock::ui_app(), app_get_shared_resource_path()).WillOnce(Invoke([] {
        return strdup("/shared/");
    }));
}

TEST(ExpandedUtils, InstallsBothTables) {
    set_shared_path();
    const InSequence order;
    EXPECT_CALL(mock::uxt(), uxt_theme_add_color_table(StrEq(color_file)))
        .WillOnce(Return(color_table()));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_color_table(color_table())).WillOnce(Return(0));
    EXPECT_CALL(mock::uxt(), uxt_theme_add_font_table(StrEq(font_file)))
        .WillOnce(Return(font_table()));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_font_table(font_table())).WillOnce(Return(0));
    TslExpandedUtils::setChangeableGuiTables();
    EXPECT_TRUE(NoFaultLogged());
}

TEST(ExpandedUtils, InstallsTheFontsWithoutColourTable) {
    set_shared_path();
    EXPECT_CALL(mock::uxt(), uxt_theme_add_color_table(_)).WillOnce(Return(nullptr));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_color_table(_)).Times(0);
    EXPECT_CALL(mock::uxt(), uxt_theme_add_font_table(_)).WillOnce(Return(font_table()));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_font_table(font_table())).WillOnce(Return(0));
    TslExpandedUtils::setChangeableGuiTables();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is faild to create color table.")}));
}

TEST(ExpandedUtils, ReportsTablesThatAreRefused) {
    set_shared_path();
    EXPECT_CALL(mock::uxt(), uxt_theme_add_color_table(_)).WillOnce(Return(color_table()));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_color_table(_)).WillOnce(Return(-22));
    EXPECT_CALL(mock::uxt(), uxt_theme_add_font_table(_)).WillOnce(Return(font_table()));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_font_table(_)).WillOnce(Return(-22));
    TslExpandedUtils::setChangeableGuiTables();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is failed to set uxt_theme_set_color_table."),
                                  logs::warn("It is failed to set uxt_theme_set_font_table.")}));
}

TEST(ExpandedUtils, ReportsAMissingFontTable) {
    set_shared_path();
    EXPECT_CALL(mock::uxt(), uxt_theme_add_font_table(_)).WillOnce(Return(nullptr));
    EXPECT_CALL(mock::uxt(), uxt_theme_add_color_table(_)).WillOnce(Return(color_table()));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_color_table(_)).WillOnce(Return(0));
    EXPECT_CALL(mock::uxt(), uxt_theme_set_font_table(_)).Times(0);
    TslExpandedUtils::setChangeableGuiTables();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is faild to create font table.")}));
}

TEST(ExpandedUtils, InstallsNoTableWithoutSharedFolder) {
    EXPECT_CALL(mock::ui_app(), app_get_shared_resource_path()).WillOnce(Return(nullptr));
    EXPECT_CALL(mock::uxt(), uxt_theme_add_color_table(_)).Times(0);
    EXPECT_CALL(mock::uxt(), uxt_theme_add_font_table(_)).Times(0);
    TslExpandedUtils::setChangeableGuiTables();
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to get shared resource path.")}));
}

TEST(SystemUtils, LocksTheDisplayWithoutTimeLimit) {
    EXPECT_CALL(mock::power(), device_power_request_lock(static_cast<power_lock_e>(1), 0));
    TslSystemUtils::lockDisplay();
    EXPECT_TRUE(LoggedIn("lockDisplay", DLOG_INFO, ""));
}

TEST(SystemUtils, UnlocksTheDisplay) {
    EXPECT_CALL(mock::power(), device_power_release_lock(static_cast<power_lock_e>(1)));
    TslSystemUtils::unlockDisplay();
    EXPECT_TRUE(LoggedIn("unlockDisplay", DLOG_INFO, ""));
}

TEST(SystemUtils, OneUnlockEndsTwoLocks) {
    TslSystemUtils::lockDisplay();
    TslSystemUtils::lockDisplay();
    TslSystemUtils::unlockDisplay();
    EXPECT_FALSE(mock::fake_power().is_locked(POWER_LOCK_DISPLAY));
}

TEST(SystemUtils, LooksAtNoResult) {
    EXPECT_CALL(mock::power(), device_power_request_lock(_, _)).WillOnce(Return(-1));
    EXPECT_CALL(mock::power(), device_power_release_lock(_)).WillOnce(Return(-1));
    TslSystemUtils::lockDisplay();
    TslSystemUtils::unlockDisplay();
    EXPECT_TRUE(NoFaultLogged());
}

}  // namespace
