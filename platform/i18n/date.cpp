#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/udatpg.h>
#include <unicode/ustring.h>
#include <utils_i18n.h>

#include "i18n/icu.h"

namespace host {
namespace {

UDateTimePatternGenerator *generator_of(i18n_udatepg_h handle) {
    return reinterpret_cast<UDateTimePatternGenerator *>(handle);
}

UDateFormat *format_of(i18n_udate_format_h handle) {
    return reinterpret_cast<UDateFormat *>(handle);
}

/// Hands an ICU object over as a handle.
template <typename Handle>
int hand_over(void *object, UErrorCode status, Handle *handle) {
    *handle = U_SUCCESS(status) ? static_cast<Handle>(object) : nullptr;
    return i18n_error_of(status);
}

}  // namespace
}  // namespace host

int i18n_udatepg_create(const char *locale, i18n_udatepg_h *dtpg) {
    if (dtpg == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    *dtpg = nullptr;
    if (!host::is_locale_name(locale)) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    UErrorCode status = U_ZERO_ERROR;
    void *const generator = udatpg_open(locale, &status);
    return host::hand_over(generator, status, dtpg);
}

int i18n_udatepg_destroy(i18n_udatepg_h dtpg) {
    if (dtpg == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    udatpg_close(host::generator_of(dtpg));
    return I18N_ERROR_NONE;
}

int i18n_udatepg_get_best_pattern(i18n_udatepg_h dtpg, const i18n_uchar *skeleton, int32_t length,
                                  i18n_uchar *best_pattern, int32_t best_pattern_capacity,
                                  int32_t *best_pattern_len) {
    if (best_pattern_len != nullptr) {
        *best_pattern_len = 0;
    }
    if (dtpg == nullptr || skeleton == nullptr || best_pattern == nullptr ||
        best_pattern_len == nullptr || best_pattern_capacity < 0 || length < -1) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    UErrorCode status = U_ZERO_ERROR;
    const int32_t found = udatpg_getBestPattern(host::generator_of(dtpg), skeleton,
                                                length < 0 ? u_strlen(skeleton) : length,
                                                best_pattern, best_pattern_capacity, &status);
    *best_pattern_len = U_SUCCESS(status) ? found : 0;
    return host::i18n_error_of(status);
}

int i18n_udate_create(i18n_udate_format_style_e time_style, i18n_udate_format_style_e date_style,
                      const char *locale, const i18n_uchar *tz_id, int32_t tz_id_length,
                      const i18n_uchar *pattern, int32_t pattern_length,
                      i18n_udate_format_h *format) {
    if (format == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    *format = nullptr;
    if (time_style != I18N_UDATE_PATTERN || date_style != I18N_UDATE_PATTERN ||
        pattern == nullptr || pattern_length < -1 || tz_id_length < -1 ||
        !host::is_locale_name(locale)) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    UErrorCode status = U_ZERO_ERROR;
    UDateFormat *const made = udat_open(UDAT_PATTERN, UDAT_PATTERN, locale, tz_id, tz_id_length,
                                        pattern, pattern_length, &status);
    return host::hand_over(made, status, format);
}

int i18n_udate_destroy(i18n_udate_format_h format) {
    if (format == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    udat_close(host::format_of(format));
    return I18N_ERROR_NONE;
}

int i18n_udate_format_date(i18n_udate_format_h format, i18n_udate date_to_format,
                           i18n_uchar *result, int32_t result_length,
                           i18n_ufield_position_h position, int32_t *date_format_len) {
    if (date_format_len != nullptr) {
        *date_format_len = 0;
    }
    if (format == nullptr || result == nullptr || result_length < 0 || position != nullptr ||
        date_format_len == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    UErrorCode status = U_ZERO_ERROR;
    const int32_t written = udat_format(host::format_of(format), date_to_format, result,
                                        result_length, nullptr, &status);
    *date_format_len = U_SUCCESS(status) ? written : 0;
    return host::i18n_error_of(status);
}

int i18n_ucalendar_set_default_timezone(const i18n_uchar *zone_id) {
    if (zone_id == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    UErrorCode status = U_ZERO_ERROR;
    ucal_setDefaultTimeZone(zone_id, &status);
    return host::i18n_error_of(status);
}
