#include "i18n/icu.h"

#include <unicode/locid.h>

namespace host {

i18n_error_code_e i18n_error_of(UErrorCode status) {
    if (U_SUCCESS(status)) {
        return I18N_ERROR_NONE;
    }
    switch (status) {
    case U_MEMORY_ALLOCATION_ERROR:
        return I18N_ERROR_OUT_OF_MEMORY;
    case U_MISSING_RESOURCE_ERROR:
    case U_FILE_ACCESS_ERROR:
        return I18N_ERROR_MISSING_RESOURCE;
    case U_BUFFER_OVERFLOW_ERROR:
        return I18N_ERROR_BUFFER_OVERFLOW;
    case U_INVALID_FORMAT_ERROR:
    case U_PARSE_ERROR:
    case U_UNEXPECTED_TOKEN:
        return I18N_ERROR_INVALID_FORMAT;
    default:
        return I18N_ERROR_INVALID_PARAMETER;
    }
}

bool is_locale_name(const char *locale) {
    return locale == nullptr || !icu::Locale(locale).isBogus();
}

}  // namespace host
