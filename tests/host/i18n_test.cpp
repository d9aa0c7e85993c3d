// Dates and numbers as a region writes them.

#include <gtest/gtest.h>
#include <system_settings.h>
#include <utils_i18n.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

#include "TslUtils.h"
#include "child_process.h"
#include "settings/settings.h"

namespace {

// 14 November 2023, 22:13:20 UTC.
constexpr i18n_udate kMoment = 1'700'000'000'000.0;

std::string taken(char *text) {
    const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
    return text != nullptr ? text : "(null)";
}

std::string narrow(const std::u16string &text) {
    std::array<char, 512> buffer{};
    i18n_ustring_copy_au_n(buffer.data(), text.c_str(), buffer.size() - 1);
    return buffer.data();
}

// The process' own choice of settings: a folder of its own, in the test's region.
class Region : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static const child::TemporaryFolder folder;
        setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
    }
    static void set(const char *region, int clock = 0) {
        ASSERT_TRUE(host::set_setting("db/menu_widget/regionformat", region));
        ASSERT_TRUE(
            host::set_setting("db/menu_widget/regionformat_time1224", std::to_string(clock)));
    }
    static std::string date() { return taken(TslUtils::getIcuDate(kMoment)); }
    static std::string number(int value) { return taken(TslUtils::getTextFori18n(value)); }
};

TEST_F(Region, WritesADateItsOwnWay) {
    set("en_US.UTF-8");
    EXPECT_EQ(date(), "3, Nov 14, 2023, 22:13:20");
    set("fr_FR.UTF-8");
    EXPECT_EQ(date(), "2 14 nov. 2023, 22:13:20");
    set("ar_EG");
    EXPECT_EQ(date(), "٤، ١٤ نوفمبر ٢٠٢٣، ٢٢:١٣:٢٠");
}

TEST_F(Region, HasAClockOfTwelveHours) {
    set("en_US.UTF-8", 1);
    EXPECT_EQ(date(), "3, Nov 14, 2023, 10:13:20\u202fPM");
}

// The zone that is set is the empty one, whatever the machine's is.
TEST_F(Region, WritesADateInUtc) {
    setenv("TZ", "Asia/Seoul", 1);
    set("en_US");
    EXPECT_EQ(date(), "3, Nov 14, 2023, 22:13:20");
    unsetenv("TZ");
}

TEST_F(Region, WritesANumberInItsDigits) {
    set("en_US.UTF-8");
    EXPECT_EQ(number(15), "15");
    set("ar_EG.UTF-8");
    EXPECT_EQ(number(15), "١٥");
    set("fa_IR.UTF-8");
    EXPECT_EQ(number(7), "۷");
    set("hi_IN");
    EXPECT_EQ(number(1234567), "12,34,567");
}

TEST_F(Region, ThatIsUnknownStillHasNumbers) {
    for (const char *region : {"", "xx_YY", "_", "C", "UTF-8"}) {
        set(region);
        EXPECT_EQ(number(7), "7") << region;
    }
}

// The library below falls over such names.
TEST_F(Region, ThatIsNoNameHasNoTexts) {
    for (const auto &region : {std::string(5000, 'x'), std::string("garbage garbage")}) {
        set(region.c_str());
        EXPECT_EQ(number(7), "(null)") << region;
        EXPECT_EQ(date(), "(null)") << region;
    }
}

// Such a number doesn't fit, and the part that does is whole characters.
TEST_F(Region, WritesTheLongestNumber) {
    set("ar_EG");
    const std::string text = number(INT_MIN);
    EXPECT_LE(text.size(), 20u);
    EXPECT_EQ(text.find("؜-٢٬١٤٧"), 0u) << text;
}

TEST(WideText, IsCutAtWholeCharacters) {
    std::array<i18n_uchar, 4> wide{9, 9, 9, 9};
    EXPECT_EQ(i18n_ustring_copy_ua_n(wide.data(), "a😀b", 2), wide.data());
    EXPECT_EQ(wide, (std::array<i18n_uchar, 4>{'a', 0, 9, 9}));
    std::array<char, 5> bytes{'9', '9', '9', '9', '9'};
    EXPECT_EQ(i18n_ustring_copy_au_n(bytes.data(), u"aéé", 4), bytes.data());
    EXPECT_EQ(std::string(bytes.data(), 3), "a\xc3\xa9");
    EXPECT_EQ(bytes[3], '\0');
    EXPECT_EQ(bytes[4], '9');
}

TEST(WideText, HasNoEndWhereThereIsNoRoom) {
    std::array<char, 4> bytes{'9', '9', '9', '9'};
    i18n_ustring_copy_au_n(bytes.data(), u"abcdef", 3);
    EXPECT_EQ(std::string(bytes.data(), 4), "abc9");
}

TEST(WideText, OfDamagedTextHasMarksInItsPlaces) {
    std::array<i18n_uchar, 4> wide{};
    i18n_ustring_copy_ua_n(wide.data(), "\xff", 3);
    EXPECT_EQ(wide[0], 0xfffd);
    const std::array<i18n_uchar, 2> half{0xd800, 0};
    std::array<char, 8> bytes{};
    i18n_ustring_copy_au_n(bytes.data(), half.data(), 7);
    EXPECT_STREQ(bytes.data(), "\xef\xbf\xbd");
}

TEST(WideText, NeedsBothTexts) {
    std::array<i18n_uchar, 2> wide{7, 7};
    std::array<char, 2> bytes{'7', '7'};
    EXPECT_EQ(i18n_ustring_copy_ua_n(nullptr, "a", 1), nullptr);
    EXPECT_EQ(i18n_ustring_copy_ua_n(wide.data(), nullptr, 1), nullptr);
    EXPECT_EQ(i18n_ustring_copy_ua_n(wide.data(), "a", -1), nullptr);
    EXPECT_EQ(i18n_ustring_copy_au_n(nullptr, u"a", 1), nullptr);
    EXPECT_EQ(i18n_ustring_copy_au_n(bytes.data(), nullptr, 1), nullptr);
    EXPECT_EQ(i18n_ustring_copy_au_n(bytes.data(), u"a", -1), nullptr);
    EXPECT_EQ(wide[0], 7);
    EXPECT_EQ(bytes[0], '7');
    EXPECT_EQ(i18n_ustring_get_length(nullptr), 0);
    EXPECT_EQ(i18n_ustring_get_length(u"four"), 4);
}

TEST(DatePattern, RefusesWhatIsMissing) {
    EXPECT_EQ(i18n_udatepg_create("en", nullptr), I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_udatepg_destroy(nullptr), I18N_ERROR_INVALID_PARAMETER);
    i18n_udatepg_h generator = nullptr;
    ASSERT_EQ(i18n_udatepg_create("en", &generator), I18N_ERROR_NONE);
    std::array<i18n_uchar, 8> pattern{};
    int32_t length = 99;
    EXPECT_EQ(i18n_udatepg_get_best_pattern(nullptr, u"y", 1, pattern.data(), 8, &length),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(i18n_udatepg_get_best_pattern(generator, nullptr, 1, pattern.data(), 8, &length),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_udatepg_get_best_pattern(generator, u"y", 1, nullptr, 8, &length),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_udatepg_get_best_pattern(generator, u"y", 1, pattern.data(), 8, nullptr),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_udatepg_get_best_pattern(generator, u"yMMMdHms", -1, pattern.data(), 8, &length),
              I18N_ERROR_BUFFER_OVERFLOW);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(i18n_udatepg_get_best_pattern(generator, u"y", -1, pattern.data(), 8, &length),
              I18N_ERROR_NONE);
    EXPECT_EQ(length, 1);
    EXPECT_EQ(i18n_udatepg_destroy(generator), I18N_ERROR_NONE);
}

TEST(DateFormat, RefusesWhatIsMissing) {
    i18n_udate_format_h format = nullptr;
    EXPECT_EQ(i18n_udate_create(I18N_UDATE_PATTERN, I18N_UDATE_PATTERN, "en", nullptr, -1, u"y", -1,
                                nullptr),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_udate_create(I18N_UDATE_PATTERN, I18N_UDATE_PATTERN, "en", nullptr, -1, nullptr,
                                -1, &format),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(format, nullptr);
    EXPECT_EQ(i18n_udate_destroy(nullptr), I18N_ERROR_INVALID_PARAMETER);
    ASSERT_EQ(i18n_udate_create(I18N_UDATE_PATTERN, I18N_UDATE_PATTERN, "en", u"Asia/Seoul", -1,
                                u"HH:mm", -1, &format),
              I18N_ERROR_NONE);
    std::array<i18n_uchar, 16> text{};
    int32_t length = 99;
    EXPECT_EQ(i18n_udate_format_date(nullptr, kMoment, text.data(), 16, nullptr, &length),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(i18n_udate_format_date(format, kMoment, nullptr, 16, nullptr, &length),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_udate_format_date(format, kMoment, text.data(), 3, nullptr, &length),
              I18N_ERROR_BUFFER_OVERFLOW);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(i18n_udate_format_date(format, kMoment, text.data(), 16, nullptr, &length),
              I18N_ERROR_NONE);
    EXPECT_EQ(narrow(text.data()), "07:13");
    EXPECT_EQ(i18n_udate_destroy(format), I18N_ERROR_NONE);
}

TEST(DefaultTimeZone, IsThatOfTheFormatsMadeAfterwards) {
    const auto hour = [] {
        i18n_udate_format_h format = nullptr;
        std::array<i18n_uchar, 16> text{};
        int32_t length = 0;
        i18n_udate_create(I18N_UDATE_PATTERN, I18N_UDATE_PATTERN, "en", nullptr, -1, u"HH", -1,
                          &format);
        i18n_udate_format_date(format, kMoment, text.data(), 16, nullptr, &length);
        i18n_udate_destroy(format);
        return narrow(text.data());
    };
    EXPECT_EQ(i18n_ucalendar_set_default_timezone(u"Asia/Seoul"), I18N_ERROR_NONE);
    EXPECT_EQ(hour(), "07");
    EXPECT_EQ(i18n_ucalendar_set_default_timezone(u""), I18N_ERROR_NONE);
    EXPECT_EQ(hour(), "22");
    EXPECT_EQ(i18n_ucalendar_set_default_timezone(nullptr), I18N_ERROR_INVALID_PARAMETER);
}

TEST(NumberFormat, OfNoLocaleIsThatOfTheProcess) {
    i18n_unumber_format_h format = nullptr;
    ASSERT_EQ(i18n_unumber_create(I18N_UNUMBER_DECIMAL, nullptr, -1, nullptr, nullptr, &format),
              I18N_ERROR_NONE);
    std::array<i18n_uchar, 16> text{};
    EXPECT_EQ(i18n_unumber_format(format, 12, text.data(), 16, nullptr, nullptr), 2);
    EXPECT_EQ(narrow(text.data()), "12");
    EXPECT_EQ(i18n_unumber_destroy(format), I18N_ERROR_NONE);
}

TEST(NumberFormat, RefusesWhatIsMissing) {
    i18n_unumber_format_h format = nullptr;
    EXPECT_EQ(i18n_unumber_create(I18N_UNUMBER_DECIMAL, nullptr, -1, "en", nullptr, nullptr),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_unumber_create(I18N_UNUMBER_DECIMAL, u"0", -1, "en", nullptr, &format),
              I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(format, nullptr);
    EXPECT_EQ(i18n_unumber_destroy(nullptr), I18N_ERROR_INVALID_PARAMETER);
    ASSERT_EQ(i18n_unumber_create(I18N_UNUMBER_DECIMAL, nullptr, -1, "en", nullptr, &format),
              I18N_ERROR_NONE);
    std::array<i18n_uchar, 3> text{};
    i18n_error_code_e error = I18N_ERROR_NONE;
    EXPECT_EQ(i18n_unumber_format(format, 12, nullptr, 3, nullptr, &error), 0);
    EXPECT_EQ(error, I18N_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(i18n_unumber_format(nullptr, 12, text.data(), 3, nullptr, nullptr), 0);
    EXPECT_EQ(i18n_unumber_format(format, 12345, text.data(), 3, nullptr, &error), 6);
    EXPECT_EQ(error, I18N_ERROR_BUFFER_OVERFLOW);
    EXPECT_EQ(i18n_unumber_format(format, 12, text.data(), 3, nullptr, &error), 2);
    EXPECT_EQ(error, I18N_ERROR_NONE);
    EXPECT_EQ(narrow(text.data()), "12");
    EXPECT_EQ(i18n_unumber_destroy(format), I18N_ERROR_NONE);
}

TEST(SystemSetting, OfTheTimeZoneIsTheEnvironments) {
    setenv("TZ", "America/New_York", 1);
    char *zone = nullptr;
    EXPECT_EQ(system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE, &zone),
              SYSTEM_SETTINGS_ERROR_NONE);
    EXPECT_EQ(taken(zone), "America/New_York");
    unsetenv("TZ");
}

TEST(SystemSetting, RefusesAnotherKeyAndNoPlaceForTheValue) {
    char *value = nullptr;
    EXPECT_EQ(system_settings_get_value_string(static_cast<system_settings_key_e>(3), &value),
              SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE, nullptr),
              SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER);
}

}  // namespace
