// The operations of TslUtils that write times, dates, numbers, sizes and colours as texts.

#include <libintl.h>
#include <system_settings.h>
#include <unistd.h>
#include <utils_i18n.h>
#include <uxt.h>
#include <vconf.h>

#include <algorithm>
#include <boost/format.hpp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "TslLog.h"
#include "TslUtils.h"

namespace {

constexpr char TEXT_DOMAIN[] = "tessel";
constexpr char REGION_KEY[] = "db/menu_widget/regionformat";
constexpr char CLOCK_KEY[] = "db/menu_widget/regionformat_time1224";
constexpr char DEFAULT_REGION[] = "en_US";
constexpr char CODE_SET[] = "UTF-8";
constexpr char TIME_ZONE_LINK[] = "/opt/etc/localtime";
constexpr char ZONE_FOLDER[] = "zoneinfo";

constexpr int MILLISECONDS_PER_SECOND = 1000;
constexpr int SECONDS_PER_MINUTE = 60;
constexpr int MINUTES_PER_HOUR = 60;

constexpr int TWELVE_HOURS = 1;
constexpr char SKELETON_12_HOURS[] = "eyMMMdhms";
constexpr char SKELETON_24_HOURS[] = "eyMMMdHms";

/// Characters of a date, of its pattern and of the name of a time zone.
constexpr int DATE_CAPACITY = 128;
constexpr int WIDE_ZONE_CAPACITY = 64;
constexpr int NUMBER_CAPACITY = 20;
constexpr int RESOLUTION_CAPACITY = 15;
constexpr int FILE_SIZE_CAPACITY = 64;

constexpr double PER_1024 = 0.0009765625;
constexpr double UNIT_BOUND = 1024.0;
constexpr unsigned long long SMALLEST_SIZE_SHOWN = 1024;

/// Name of the zone that a link to its file ends in: one part below the folder of all zones, or
/// two.
std::string zoneOfLink(const std::string &strLink) {
    std::vector<std::string> parts;
    std::string::size_type nBegin = 0;
    while (nBegin <= strLink.length()) {
        const auto nEnd = std::min(strLink.find('/', nBegin), strLink.length());
        parts.push_back(strLink.substr(nBegin, nEnd - nBegin));
        nBegin = nEnd + 1;
    }
    const std::string strLast = parts.back();
    const std::string strLastButOne = parts.size() > 1 ? parts[parts.size() - 2] : "";
    return strLastButOne == ZONE_FOLDER ? strLast : strLastButOne + "/" + strLast;
}

void setDefaultTimeZone() {
    char *szValue = nullptr;
    if (system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE, &szValue) != 0) {
        return;
    }
    char szZone[DATE_CAPACITY] = {};
    std::strncpy(szZone, szValue, DATE_CAPACITY - 1);
    std::free(szValue);

    char szLink[DATE_CAPACITY] = {};
    if (readlink(TIME_ZONE_LINK, szLink, DATE_CAPACITY - 1) > 0) {
        std::strncpy(szZone, zoneOfLink(szLink).c_str(), DATE_CAPACITY - 1);
    }
    if (szZone[0] == '\0') {
        return;
    }
    // The copy runs from wide to narrow: the zone that is set is the empty one, and so dates are
    // written in UTC, whichever zone the user is in. What shows them counts on that.
    i18n_uchar wideZone[WIDE_ZONE_CAPACITY] = {};
    i18n_ustring_copy_au_n(szZone, wideZone, WIDE_ZONE_CAPACITY);
    i18n_ucalendar_set_default_timezone(wideZone);
}

/// A failure leaves the handles that were made before it to the process.
char *formatDate(const char *szLocale, const i18n_uchar *pSkeleton, i18n_udate date) {
    setDefaultTimeZone();

    i18n_udatepg_h generator = nullptr;
    i18n_udatepg_create(szLocale, &generator);
    if (generator == nullptr) {
        return nullptr;
    }
    i18n_uchar pattern[DATE_CAPACITY] = {};
    int32_t nLength = 0;
    i18n_udatepg_get_best_pattern(generator, pSkeleton, i18n_ustring_get_length(pSkeleton), pattern,
                                  DATE_CAPACITY, &nLength);
    if (nLength < 1) {
        return nullptr;
    }
    i18n_udate_format_h format = nullptr;
    i18n_udate_create(I18N_UDATE_PATTERN, I18N_UDATE_PATTERN, szLocale, nullptr, -1, pattern, -1,
                      &format);
    if (format == nullptr) {
        return nullptr;
    }
    i18n_uchar wideText[DATE_CAPACITY] = {};
    i18n_udate_format_date(format, date, wideText, DATE_CAPACITY, nullptr, &nLength);
    if (nLength < 1) {
        return nullptr;
    }
    // One byte more than is copied, so that the text always ends.
    char szText[DATE_CAPACITY + 1] = {};
    i18n_ustring_copy_au_n(szText, wideText, DATE_CAPACITY);
    i18n_udatepg_destroy(generator);
    i18n_udate_destroy(format);
    return szText[0] != '\0' ? strdup(szText) : nullptr;
}

/// A region without its code set.
std::string withoutCodeSet(const std::string &strRegion) {
    const auto nCodeSet = strRegion.find(CODE_SET);
    return nCodeSet != std::string::npos && nCodeSet > 0 ? strRegion.substr(0, nCodeSet - 1)
                                                         : strRegion;
}

struct FileSize {
    double dValue;
    const char *szUnit;
};

FileSize scaleFileSize(unsigned long long nBytes) {
    if (nBytes < SMALLEST_SIZE_SHOWN) {
        return {0.0, "IDS_VIDEO_BODY_B"};
    }
    const double dKilobytes = static_cast<double>(nBytes) * PER_1024;
    if (dKilobytes < UNIT_BOUND) {
        return {dKilobytes, "IDS_VIDEO_BODY_KB"};
    }
    const double dMegabytes = dKilobytes * PER_1024;
    if (dMegabytes < UNIT_BOUND) {
        return {dMegabytes, "IDS_VIDEO_BODY_MB"};
    }
    return {dMegabytes * PER_1024, "IDS_VIDEO_BODY_GB"};
}

}  // namespace

char *TslUtils::convertPlayTimeToStringFormat(int nPlayTimeMs) {
    const int nSeconds = nPlayTimeMs / MILLISECONDS_PER_SECOND;
    const std::string strTime =
        (boost::format("%02u:%02u") % ((nSeconds / SECONDS_PER_MINUTE) % MINUTES_PER_HOUR) %
         (nSeconds % SECONDS_PER_MINUTE))
            .str();
    if (strTime.empty()) {
        TslWarn("It is failed to convert PlayTime to string format.");
        return nullptr;
    }
    return strdup(strTime.c_str());
}

char *TslUtils::getIcuDate(i18n_udate date) {
    int nClock = 0;
    const int nResult = vconf_get_int(CLOCK_KEY, &nClock);
    if (nResult != 0) {
        TslInfo("Failed to get runtime info[%d]!", nResult);
    }
    i18n_uchar skeleton[DATE_CAPACITY] = {};
    i18n_ustring_copy_ua_n(skeleton, nClock == TWELVE_HOURS ? SKELETON_12_HOURS : SKELETON_24_HOURS,
                           DATE_CAPACITY - 1);
    char *szRegion = vconf_get_str(REGION_KEY);
    if (szRegion == nullptr) {
        TslInfo("Cannot get region format.");
        return formatDate(DEFAULT_REGION, skeleton, date);
    }
    const std::string strLocale = withoutCodeSet(szRegion);
    std::free(szRegion);
    return formatDate(strLocale.c_str(), skeleton, date);
}

char *TslUtils::getTextFori18n(int nNumber) {
    char *szLocale = vconf_get_str(REGION_KEY);
    i18n_unumber_format_h format = nullptr;
    const int nResult =
        i18n_unumber_create(I18N_UNUMBER_DECIMAL, nullptr, -1, szLocale, nullptr, &format);
    if (nResult == I18N_ERROR_INVALID_PARAMETER) {
        TslError("i18n_unumber_create is failed.");
        std::free(szLocale);
        return nullptr;
    }
    std::free(szLocale);
    if (format == nullptr) {
        return nullptr;
    }
    i18n_uchar wideText[NUMBER_CAPACITY] = {};
    i18n_error_code_e status = I18N_ERROR_NONE;
    i18n_unumber_format(format, nNumber, wideText, NUMBER_CAPACITY, nullptr, &status);
    // One byte more than is copied, so that the text always ends.
    char szText[NUMBER_CAPACITY + 1] = {};
    i18n_ustring_copy_au_n(szText, wideText, NUMBER_CAPACITY);
    i18n_unumber_destroy(format);
    return strdup(szText);
}

char *TslUtils::getResolutionToString(int nWidth, int nHeight) {
    if (nWidth < 1 && nHeight < 1) {
        TslWarn("Video Width and Height are too small. Width [%d] | Height [%d]", nWidth, nHeight);
        return nullptr;
    }
    const std::string strText = (boost::format("%dX%d") % nWidth % nHeight).str();
    return strndup(strText.c_str(), RESOLUTION_CAPACITY - 1);
}

char *TslUtils::getFileSizeText(unsigned long long nBytes) {
    auto *szText = static_cast<char *>(std::calloc(FILE_SIZE_CAPACITY + 1, sizeof(char)));
    if (szText == nullptr) {
        return nullptr;
    }
    const FileSize size = scaleFileSize(nBytes);
    std::snprintf(szText, FILE_SIZE_CAPACITY, "%0.1lf %s", size.dValue,
                  dgettext(TEXT_DOMAIN, size.szUnit));
    return szText;
}

bool TslUtils::getRGBA(const char *szColorCode, double *pR, double *pG, double *pB, double *pA) {
    int nR = 0;
    int nG = 0;
    int nB = 0;
    int nA = 0;
    const int nResult = uxt_theme_get_color(szColorCode, &nR, &nG, &nB, &nA, nullptr, nullptr,
                                            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (nResult != 0) {
        TslError("uxt_theme_get_color failed\t[%d]", nResult);
        return false;
    }
    *pR = nR;
    *pG = nG;
    *pB = nB;
    *pA = nA;
    return true;
}

char *TslUtils::getHexColorCodeFromRGBA(int nR, int nG, int nB, int nA) {
    if (nR < 0 || nG < 0 || nB < 0 || nA < 0) {
        TslWarn("Color values are strange. R[%d] | G[%d] | B[%d] | A[%d]", nR, nG, nB, nA);
        return nullptr;
    }
    const std::string strCode = (boost::format("#%02x%02x%02x%02x") % nR % nG % nB % nA).str();
    TslInfo("Color Hex string: [%s]", strCode.c_str());
    return strdup(strCode.c_str());
}
