#pragma once

#include <unicode/utypes.h>
#include <utils_i18n.h>

namespace host {

/// The platform's number for what ICU reports. Warnings, as that data of a parent locale is used,
/// are successes.
[[nodiscard]] i18n_error_code_e i18n_error_of(UErrorCode status);

/// Whether ICU can read a locale's name; null is that of the process. ICU itself falls over some
/// names that it can't read.
[[nodiscard]] bool is_locale_name(const char *locale);

}  // namespace host
