#include <system_settings.h>
#include <unicode/ucal.h>
#include <utils_i18n.h>

#include <array>
#include <cstdlib>
#include <cstring>

namespace host {
namespace {

constexpr int kMostLetters = 128;

/// The environment's zone, else that of the machine; null when neither says one.
char *time_zone() {
    std::array<i18n_uchar, kMostLetters> wide{};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucal_getHostTimeZone(wide.data(), kMostLetters - 1, &status);
    if (U_FAILURE(status) || length < 1) {
        return nullptr;
    }
    // Names of time zones are ASCII.
    std::array<char, kMostLetters> narrow{};
    i18n_ustring_copy_au_n(narrow.data(), wide.data(), kMostLetters - 1);
    return strdup(narrow.data());
}

}  // namespace
}  // namespace host

int system_settings_get_value_string(system_settings_key_e key, char **value) {
    if (value == nullptr || key != SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE) {
        return SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER;
    }
    char *const zone = host::time_zone();
    if (zone == nullptr) {
        return SYSTEM_SETTINGS_ERROR_IO_ERROR;
    }
    *value = zone;
    return SYSTEM_SETTINGS_ERROR_NONE;
}
