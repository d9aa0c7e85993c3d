#include <dlfcn.h>
#include <dlog.h>
#include <gmock/gmock.h>
#include <libintl.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "TslUtils.h"
#include "log_lines.h"
#include "mock_platform/fake_theme.h"
#include "mock_platform/mock_i18n.h"
#include "mock_platform/mock_vconf.h"

namespace {

/// Where the time zone's link points to; the machine has none.
std::string zone_link;

/// In which domain the program looked a text of its own up, and what it is given for its id.
const char *looked_up_in = nullptr;
const char *translation = nullptr;

}  // namespace

extern "C" char *dcgettext(const char *domain, const char *id, int) noexcept {
    // The libraries have their texts too.
    if (std::strncmp(id, "IDS_", 4) != 0) {
        return const_cast<char *>(id);
    }
    looked_up_in = domain;
    return const_cast<char *>(translation != nullptr ? translation : id);
}
extern "C" char *dgettext(const char *domain, const char *id) noexcept {
    return dcgettext(domain, id, LC_MESSAGES);
}

// The system call of the program, answered by the test for the link alone.
extern "C" ssize_t readlink(const char *path, char *buffer, size_t size) {
    static auto *const own = reinterpret_cast<decltype(readlink) *>(dlsym(RTLD_NEXT, "readlink"));
    if (std::strcmp(path, "/opt/etc/localtime") != 0) {
        return own(path, buffer, size);
    }
    if (zone_link.empty()) {
        return -1;
    }
    return static_cast<ssize_t>(zone_link.copy(buffer, size));
}

namespace {

using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Invoke;
using testing::IsNull;
using testing::NotNull;
using testing::Return;
using testing::SetArgPointee;
using testing::StrEq;

/// What the program gave as a heap copy, or "(null)".
std::string taken(char *text) {
    const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
    return text != nullptr ? text : "(null)";
}

std::string play_time(int milliseconds) {
    return taken(TslUtils::convertPlayTimeToStringFormat(milliseconds));
}

TEST(PlayTime, DropsTheRestOfASecond) {
    EXPECT_EQ(play_time(0), "00:00");
    EXPECT_EQ(play_time(999), "00:00");
    EXPECT_EQ(play_time(59999), "00:59");
    EXPECT_EQ(play_time(60000), "01:00");
}

TEST(PlayTime, WrapsAtAnHour) {
    EXPECT_EQ(play_time(3599999), "59:59");
    EXPECT_EQ(play_time(3600000), "00:00");
    EXPECT_EQ(play_time(3725000), "02:05");
}

TEST(PlayTime, TakesTheLargestTime) {
    EXPECT_EQ(play_time(2147483647), "31:23");
}

class DateTest : public testing::Test {
protected:
    void SetUp() override {
        zone_link.clear();
        mock::fake_vconf().set_int("db/menu_widget/regionformat_time1224", 2);
        mock::fake_vconf().set_str("db/menu_widget/regionformat", "fr_FR.UTF-8");
    }

    static std::string date() { return taken(TslUtils::getIcuDate(86400000.0)); }

    /// The narrow text of the time zone when it is about to be overwritten; empty when it isn't.
    static std::string zone_before_the_copy() {
        std::string zone;
        EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 128)).Times(testing::AnyNumber());
        EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 64))
            .Times(testing::AtMost(1))
            .WillOnce(Invoke([&zone](char *narrow, const i18n_uchar *wide, int32_t) {
                zone = narrow;
                EXPECT_EQ(wide[0], 0);
                narrow[0] = '\0';
                return narrow;
            }));
        date();
        return zone;
    }
};

using Date = DateTest;

TEST_F(Date, IsWrittenForTheRegionWithoutItsCodeSet) {
    EXPECT_EQ(date(), "fr_FR|eyMMMdHms!|86400000");
    EXPECT_EQ(mock::fake_i18n().handles(), 0);
    EXPECT_TRUE(logs::all().empty());
}

TEST_F(Date, HasTwelveHoursForTheNumberOneAlone) {
    mock::fake_vconf().set_int("db/menu_widget/regionformat_time1224", 1);
    EXPECT_EQ(date(), "fr_FR|eyMMMdhms!|86400000");
    mock::fake_vconf().set_int("db/menu_widget/regionformat_time1224", 3);
    EXPECT_EQ(date(), "fr_FR|eyMMMdHms!|86400000");
}

TEST_F(Date, HasTwentyFourHoursWhereTheSettingCannotBeRead) {
    mock::fake_vconf().unset("db/menu_widget/regionformat_time1224");
    EXPECT_EQ(date(), "fr_FR|eyMMMdHms!|86400000");
    EXPECT_TRUE(LoggedIn("getIcuDate", DLOG_INFO, "Failed to get runtime info[-1]!"));
}

TEST_F(Date, IsAmericanWithoutARegion) {
    mock::fake_vconf().unset("db/menu_widget/regionformat");
    EXPECT_EQ(date(), "en_US|eyMMMdHms!|86400000");
    EXPECT_TRUE(LoggedIn("getIcuDate", DLOG_INFO, "Cannot get region format."));
}

TEST_F(Date, LeavesARegionWithoutCodeSetAlone) {
    mock::fake_vconf().set_str("db/menu_widget/regionformat", "ko_KR");
    EXPECT_EQ(date(), "ko_KR|eyMMMdHms!|86400000");
}

TEST_F(Date, LeavesARegionThatBeginsWithTheCodeSetAlone) {
    mock::fake_vconf().set_str("db/menu_widget/regionformat", "UTF-8.fr");
    EXPECT_EQ(date(), "UTF-8.fr|eyMMMdHms!|86400000");
}

TEST_F(Date, CutsOneCharacterBeforeTheCodeSetWhateverItIs) {
    mock::fake_vconf().set_str("db/menu_widget/regionformat", "fr_FRxUTF-8@euro");
    EXPECT_EQ(date(), "fr_FR|eyMMMdHms!|86400000");
}

TEST_F(Date, TakesTheStepsInOrder) {
    const InSequence order;
    auto &i18n = mock::i18n();
    EXPECT_CALL(i18n, i18n_ustring_copy_ua_n(_, StrEq("eyMMMdHms"), _));
    EXPECT_CALL(mock::system_settings(),
                system_settings_get_value_string(static_cast<system_settings_key_e>(15), _));
    EXPECT_CALL(i18n, i18n_ustring_copy_au_n(_, _, 64));
    EXPECT_CALL(i18n, i18n_ucalendar_set_default_timezone(_));
    EXPECT_CALL(i18n, i18n_udatepg_create(StrEq("fr_FR"), _));
    EXPECT_CALL(i18n, i18n_ustring_get_length(_));
    EXPECT_CALL(i18n, i18n_udatepg_get_best_pattern(_, _, 9, _, 128, _));
    EXPECT_CALL(i18n, i18n_udate_create(static_cast<i18n_udate_format_style_e>(-2),
                                        static_cast<i18n_udate_format_style_e>(-2), StrEq("fr_FR"),
                                        IsNull(), -1, NotNull(), -1, _));
    EXPECT_CALL(i18n, i18n_udate_format_date(_, 86400000.0, _, 128, IsNull(), _));
    EXPECT_CALL(i18n, i18n_ustring_copy_au_n(_, _, 128));
    EXPECT_CALL(i18n, i18n_udatepg_destroy(_));
    EXPECT_CALL(i18n, i18n_udate_destroy(_));
    EXPECT_NE(date(), "(null)");
}

TEST_F(Date, IsNoneWithoutAGenerator) {
    EXPECT_CALL(mock::i18n(), i18n_udatepg_create(_, _))
        .WillOnce(Return(I18N_ERROR_MISSING_RESOURCE));
    EXPECT_CALL(mock::i18n(), i18n_udatepg_get_best_pattern(_, _, _, _, _, _)).Times(0);
    EXPECT_EQ(date(), "(null)");
}

TEST_F(Date, WithoutAPatternLeavesTheGenerator) {
    EXPECT_CALL(mock::i18n(), i18n_udatepg_get_best_pattern(_, _, _, _, _, _))
        .WillOnce(DoAll(SetArgPointee<5>(0), Return(I18N_ERROR_NONE)));
    EXPECT_CALL(mock::i18n(), i18n_udate_create(_, _, _, _, _, _, _, _)).Times(0);
    EXPECT_EQ(date(), "(null)");
    EXPECT_EQ(mock::fake_i18n().handles(), 1);
}

TEST_F(Date, NeedsNoMoreThanOneCharacterOfPatternAndText) {
    EXPECT_CALL(mock::i18n(), i18n_udatepg_get_best_pattern(_, _, _, _, _, _))
        .WillOnce(DoAll(SetArgPointee<3>(u'y'), SetArgPointee<5>(1), Return(I18N_ERROR_NONE)));
    EXPECT_CALL(mock::i18n(), i18n_udate_format_date(_, _, _, _, _, _))
        .WillOnce(DoAll(SetArgPointee<2>(u'7'), SetArgPointee<5>(1), Return(I18N_ERROR_NONE)));
    EXPECT_EQ(date(), "7");
}

TEST_F(Date, WithoutAFormatLeavesTheGenerator) {
    EXPECT_CALL(mock::i18n(), i18n_udate_create(_, _, _, _, _, _, _, _))
        .WillOnce(Return(I18N_ERROR_INVALID_FORMAT));
    EXPECT_EQ(date(), "(null)");
    EXPECT_EQ(mock::fake_i18n().handles(), 1);
}

TEST_F(Date, WithoutATextLeavesBoth) {
    EXPECT_CALL(mock::i18n(), i18n_udate_format_date(_, _, _, _, _, _))
        .WillOnce(DoAll(SetArgPointee<5>(0), Return(I18N_ERROR_NONE)));
    EXPECT_EQ(date(), "(null)");
    EXPECT_EQ(mock::fake_i18n().handles(), 2);
}

TEST_F(Date, ThatIsEmptyAsANarrowTextIsNone) {
    EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 64));
    EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 128)).WillOnce(testing::ReturnArg<0>());
    EXPECT_EQ(date(), "(null)");
    EXPECT_EQ(mock::fake_i18n().handles(), 0);
}

TEST_F(Date, ThatFillsItsTextIsReadNoFurther) {
    EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 64));
    EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 128))
        .WillOnce(Invoke([](char *narrow, const i18n_uchar *, int32_t n) {
            return static_cast<char *>(std::memset(narrow, 'x', static_cast<size_t>(n)));
        }));
    EXPECT_EQ(date(), std::string(128, 'x'));
}

using TimeZone = DateTest;

TEST_F(TimeZone, IsSetFromTheEmptyName) {
    EXPECT_CALL(mock::i18n(), i18n_ucalendar_set_default_timezone(_))
        .WillOnce(Invoke([](const i18n_uchar *zone) {
            EXPECT_EQ(zone[0], 0);
            return 0;
        }));
    date();
}

TEST_F(TimeZone, StaysWhereTheSettingCannotBeRead) {
    zone_link = "/usr/share/zoneinfo/Europe/Paris";
    EXPECT_CALL(mock::system_settings(), system_settings_get_value_string(_, _))
        .WillOnce(Return(SYSTEM_SETTINGS_ERROR_IO_ERROR));
    EXPECT_CALL(mock::i18n(), i18n_ucalendar_set_default_timezone(_)).Times(0);
    EXPECT_NE(date(), "(null)");
}

TEST_F(TimeZone, StaysForAnEmptyName) {
    mock::fake_system_settings().set_time_zone("");
    EXPECT_CALL(mock::i18n(), i18n_ucalendar_set_default_timezone(_)).Times(0);
    EXPECT_NE(date(), "(null)");
}

TEST_F(TimeZone, IsThatOfTheSettingsWithoutALink) {
    EXPECT_EQ(zone_before_the_copy(), "Asia/Seoul");
}

TEST_F(TimeZone, OfTheLinkHasTwoParts) {
    zone_link = "/usr/share/zoneinfo/Europe/Paris";
    EXPECT_EQ(zone_before_the_copy(), "Europe/Paris");
}

TEST_F(TimeZone, OfTheLinkHasOnePartBelowTheFolderOfAll) {
    zone_link = "/usr/share/zoneinfo/UTC";
    EXPECT_EQ(zone_before_the_copy(), "UTC");
}

TEST_F(TimeZone, OfTheLinkIsItsEndWhateverStandsBefore) {
    zone_link = "America/Argentina/Ushuaia";
    EXPECT_EQ(zone_before_the_copy(), "Argentina/Ushuaia");
}

TEST_F(TimeZone, IsCutAfter127Characters) {
    mock::fake_system_settings().set_time_zone(std::string(200, 'z'));
    EXPECT_EQ(zone_before_the_copy(), std::string(127, 'z'));
    zone_link = "/" + std::string(200, 'y');
    EXPECT_EQ(zone_before_the_copy(), "/" + std::string(126, 'y'));
}

class NumberTest : public testing::Test {
protected:
    void SetUp() override {
        mock::fake_vconf().set_str("db/menu_widget/regionformat", "ar_EG.UTF-8");
    }
};

using Number = NumberTest;

TEST_F(Number, IsWrittenForTheWholeRegion) {
    EXPECT_CALL(mock::i18n(), i18n_unumber_create(static_cast<i18n_unumber_format_style_e>(1),
                                                  IsNull(), -1, StrEq("ar_EG.UTF-8"), IsNull(), _));
    EXPECT_CALL(mock::i18n(), i18n_unumber_format(_, 15, _, 20, IsNull(), NotNull()));
    EXPECT_EQ(taken(TslUtils::getTextFori18n(15)), "15");
    EXPECT_EQ(mock::fake_i18n().handles(), 0);
}

TEST_F(Number, IsWrittenWithoutARegionToo) {
    mock::fake_vconf().unset("db/menu_widget/regionformat");
    EXPECT_CALL(mock::i18n(), i18n_unumber_create(_, _, _, IsNull(), _, _));
    EXPECT_EQ(taken(TslUtils::getTextFori18n(-3)), "-3");
}

TEST_F(Number, IsNoneForAnInvalidParameter) {
    EXPECT_CALL(mock::i18n(), i18n_unumber_create(_, _, _, _, _, _)).WillOnce(Return(-22));
    EXPECT_EQ(taken(TslUtils::getTextFori18n(1)), "(null)");
    EXPECT_TRUE(
        LoggedIn("getTextFori18n", DLOG_ERROR, "* Critical * i18n_unumber_create is failed."));
}

TEST_F(Number, IsNoneWithoutAFormatAndWithoutAWord) {
    EXPECT_CALL(mock::i18n(), i18n_unumber_create(_, _, _, _, _, _))
        .WillOnce(Return(I18N_ERROR_MISSING_RESOURCE));
    EXPECT_CALL(mock::i18n(), i18n_unumber_format(_, _, _, _, _, _)).Times(0);
    EXPECT_EQ(taken(TslUtils::getTextFori18n(1)), "(null)");
    EXPECT_TRUE(logs::all().empty());
}

TEST_F(Number, ThatFillsItsTextIsReadNoFurther) {
    EXPECT_CALL(mock::i18n(), i18n_ustring_copy_au_n(_, _, 20))
        .WillOnce(Invoke([](char *narrow, const i18n_uchar *, int32_t n) {
            return static_cast<char *>(std::memset(narrow, '7', static_cast<size_t>(n)));
        }));
    EXPECT_EQ(taken(TslUtils::getTextFori18n(1)), std::string(20, '7'));
}

TEST(Resolution, HasACapitalX) {
    EXPECT_EQ(taken(TslUtils::getResolutionToString(1280, 720)), "1280X720");
}

TEST(Resolution, NeedsOneSideOnly) {
    EXPECT_EQ(taken(TslUtils::getResolutionToString(0, 720)), "0X720");
    EXPECT_EQ(taken(TslUtils::getResolutionToString(1280, -1)), "1280X-1");
    EXPECT_EQ(taken(TslUtils::getResolutionToString(1, 0)), "1X0");
    EXPECT_EQ(taken(TslUtils::getResolutionToString(0, 1)), "0X1");
}

TEST(Resolution, IsNoneWithoutASide) {
    EXPECT_EQ(taken(TslUtils::getResolutionToString(0, 0)), "(null)");
    EXPECT_TRUE(LoggedIn("getResolutionToString", DLOG_WARN,
                         "Video Width and Height are too small. Width [0] | Height [0]"));
}

TEST(Resolution, IsCutAfterFourteenCharacters) {
    EXPECT_EQ(taken(TslUtils::getResolutionToString(12345678, 87654321)), "12345678X87654");
}

std::string file_size(unsigned long long bytes) {
    return taken(TslUtils::getFileSizeText(bytes));
}

TEST(FileSize, IsNoughtBelowAKilobyte) {
    EXPECT_EQ(file_size(0), "0.0 IDS_VIDEO_BODY_B");
    EXPECT_EQ(file_size(1023), "0.0 IDS_VIDEO_BODY_B");
}

TEST(FileSize, HasItsUnitFromTheProgramsTexts) {
    translation = "octets";
    EXPECT_EQ(file_size(2048), "2.0 octets");
    EXPECT_STREQ(looked_up_in, "tessel");
    // However long a translation is, there is room for 63 characters.
    const std::string endless(100, 'o');
    translation = endless.c_str();
    EXPECT_EQ(file_size(2048), "2.0 " + std::string(59, 'o'));
    translation = nullptr;
}

TEST(FileSize, IsInTheLargestUnitThatItFills) {
    EXPECT_EQ(file_size(1024), "1.0 IDS_VIDEO_BODY_KB");
    EXPECT_EQ(file_size(1048575), "1024.0 IDS_VIDEO_BODY_KB");
    EXPECT_EQ(file_size(1048576), "1.0 IDS_VIDEO_BODY_MB");
    EXPECT_EQ(file_size(1572864), "1.5 IDS_VIDEO_BODY_MB");
    EXPECT_EQ(file_size(1073741824), "1.0 IDS_VIDEO_BODY_GB");
}

TEST(FileSize, HasNoUnitBeyondGigabytes) {
    EXPECT_EQ(file_size(1ULL << 40), "1024.0 IDS_VIDEO_BODY_GB");
    EXPECT_EQ(file_size(~0ULL), "17179869184.0 IDS_VIDEO_BODY_GB");
}

TEST(Colour, IsThatOfTheTheme) {
    mock::fake_uxt().set_color("B065L3", {12, 34, 56, 255});
    double r = -1;
    double g = -1;
    double b = -1;
    double a = -1;
    EXPECT_TRUE(TslUtils::getRGBA("B065L3", &r, &g, &b, &a));
    EXPECT_EQ(r, 12.0);
    EXPECT_EQ(g, 34.0);
    EXPECT_EQ(b, 56.0);
    EXPECT_EQ(a, 255.0);
}

TEST(Colour, ThatTheThemeDoesNotHaveChangesNothing) {
    double value = -1;
    EXPECT_FALSE(TslUtils::getRGBA("none", &value, &value, &value, &value));
    EXPECT_EQ(value, -1.0);
    const int result = mock::fake_uxt().uxt_theme_get_color(
        "none", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
        nullptr, nullptr, nullptr);
    EXPECT_TRUE(
        LoggedIn("getRGBA", DLOG_ERROR,
                 "* Critical * uxt_theme_get_color failed\t[" + std::to_string(result) + "]"));
}

TEST(ColourCode, HasTwoDigitsForEachValue) {
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(255, 0, 16, 255)), "#ff0010ff");
    EXPECT_TRUE(LoggedIn("getHexColorCodeFromRGBA", DLOG_INFO, "Color Hex string: [#ff0010ff]"));
}

TEST(ColourCode, HasMoreDigitsForALargerValue) {
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(256, 0, 16, 255)), "#1000010ff");
}

TEST(ColourCode, MayBeAllNought) {
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(0, 0, 0, 0)), "#00000000");
}

TEST(ColourCode, IsNoneForANegativeValue) {
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(1, -1, 3, 4)), "(null)");
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(1, 2, -1, 4)), "(null)");
    logs::clear();
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(1, 2, 3, -1)), "(null)");
    EXPECT_EQ(taken(TslUtils::getHexColorCodeFromRGBA(-1, 2, 3, 4)), "(null)");
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("Color values are strange. R[1] | G[2] | B[3] | A[-1]"),
                          logs::warn("Color values are strange. R[-1] | G[2] | B[3] | A[4]")}));
}

}  // namespace
