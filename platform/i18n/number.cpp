#include <unicode/unum.h>
#include <utils_i18n.h>

#include "i18n/icu.h"

int i18n_unumber_create(i18n_unumber_format_style_e style, const i18n_uchar *pattern,
                        int32_t /*pattern_len*/, const char *locale, i18n_uparse_error_s *parse_err,
                        i18n_unumber_format_h *num_format) {
    if (num_format == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    *num_format = nullptr;
    if (style != I18N_UNUMBER_DECIMAL || pattern != nullptr || parse_err != nullptr ||
        !host::is_locale_name(locale)) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    UErrorCode status = U_ZERO_ERROR;
    UNumberFormat *const made = unum_open(UNUM_DECIMAL, nullptr, -1, locale, nullptr, &status);
    if (U_SUCCESS(status)) {
        *num_format = static_cast<i18n_unumber_format_h>(static_cast<void *>(made));
    }
    return host::i18n_error_of(status);
}

int i18n_unumber_destroy(i18n_unumber_format_h num_format) {
    if (num_format == nullptr) {
        return I18N_ERROR_INVALID_PARAMETER;
    }
    unum_close(reinterpret_cast<UNumberFormat *>(num_format));
    return I18N_ERROR_NONE;
}

int32_t i18n_unumber_format(i18n_unumber_format_h num_format, int32_t number, i18n_uchar *result,
                            int32_t result_len, i18n_ufield_position_h field_position,
                            i18n_error_code_e *err) {
    i18n_error_code_e ignored = I18N_ERROR_NONE;
    i18n_error_code_e &error = err != nullptr ? *err : ignored;
    if (num_format == nullptr || result == nullptr || result_len < 0 || field_position != nullptr) {
        error = I18N_ERROR_INVALID_PARAMETER;
        return 0;
    }
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = unum_format(reinterpret_cast<UNumberFormat *>(num_format), number,
                                       result, result_len, nullptr, &status);
    error = host::i18n_error_of(status);
    return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR ? length : 0;
}
