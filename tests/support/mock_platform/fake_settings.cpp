#include "fake_settings.h"

#include <cstring>

#include "slot.h"

namespace mock {

FakeVconf &fake_vconf() {
    static Slot<FakeVconf> slot;
    return slot.get();
}

FakePower &fake_power() {
    static Slot<FakePower> slot;
    return slot.get();
}

FakeI18n &fake_i18n() {
    static Slot<FakeI18n> slot;
    return slot.get();
}

FakeSystemSettings &fake_system_settings() {
    static Slot<FakeSystemSettings> slot;
    return slot.get();
}

}  // namespace mock

namespace {

template <typename T>
const T *find(const std::map<std::string, FakeVconf::Value> &values, const char *key) {
    if (key == nullptr) {
        return nullptr;
    }
    const auto item = values.find(key);
    return item == values.end() ? nullptr : std::get_if<T>(&item->second);
}

}  // namespace

int FakeVconf::vconf_get_int(const char *key, int *value) {
    const auto *found = find<int>(m_values, key);
    if (found == nullptr || value == nullptr) {
        return -1;
    }
    *value = *found;
    return 0;
}

int FakeVconf::vconf_get_bool(const char *key, int *value) {
    const auto *found = find<bool>(m_values, key);
    if (found == nullptr || value == nullptr) {
        return -1;
    }
    *value = *found ? 1 : 0;
    return 0;
}

char *FakeVconf::vconf_get_str(const char *key) {
    const auto *found = find<std::string>(m_values, key);
    return found == nullptr ? nullptr : strdup(found->c_str());
}

bool FakePower::is_locked(power_lock_e type) const {
    const auto item = m_locked.find(type);
    return item != m_locked.end() && item->second;
}

int FakePower::device_power_request_lock(power_lock_e type, int timeout_ms) {
    if (type > POWER_LOCK_DISPLAY_DIM || timeout_ms < 0) {
        return DEVICE_ERROR_INVALID_PARAMETER;
    }
    ++m_requests;
    m_locked[type] = true;
    return DEVICE_ERROR_NONE;
}

int FakePower::device_power_release_lock(power_lock_e type) {
    ++m_releases;
    if (!is_locked(type)) {
        return DEVICE_ERROR_OPERATION_FAILED;
    }
    m_locked[type] = false;
    return DEVICE_ERROR_NONE;
}

const char *FakeI18n::i18n_get_text(const char *message) {
    if (message == nullptr) {
        return nullptr;
    }
    const auto item = m_texts.find(message);
    return item == m_texts.end() ? message : item->second.c_str();
}

namespace {

std::u16string wide(const std::string &ascii) {
    return {ascii.begin(), ascii.end()};
}

/// As the platform does it: terminated if there is room.
int put(const std::u16string &text, i18n_uchar *result, int32_t capacity) {
    const auto length = static_cast<int32_t>(text.size());
    text.copy(result, static_cast<std::size_t>(capacity));
    if (length < capacity) {
        result[length] = 0;
    }
    return length <= capacity ? I18N_ERROR_NONE : I18N_ERROR_BUFFER_OVERFLOW;
}

}  // namespace

template <typename Handle>
int FakeI18n::create(const std::u16string &made_from, Handle *handle) {
    *handle = reinterpret_cast<Handle>(++m_last_handle);
    m_handles[*handle] = made_from;
    return I18N_ERROR_NONE;
}

int FakeI18n::destroy(const void *handle) {
    return m_handles.erase(handle) == 1 ? I18N_ERROR_NONE : I18N_ERROR_INVALID_PARAMETER;
}

i18n_uchar *FakeI18n::i18n_ustring_copy_ua_n(i18n_uchar *dest, const char *src, int32_t n) {
    put(wide(src), dest, n);
    return dest;
}

char *FakeI18n::i18n_ustring_copy_au_n(char *dest, const i18n_uchar *src, int32_t n) {
    const std::u16string text(src);
    return std::strncpy(dest, std::string(text.begin(), text.end()).c_str(),
                        static_cast<std::size_t>(n));
}

int32_t FakeI18n::i18n_ustring_get_length(const i18n_uchar *s) {
    return static_cast<int32_t>(std::char_traits<i18n_uchar>::length(s));
}

int FakeI18n::i18n_udatepg_create(const char *locale, i18n_udatepg_h *dtpg) {
    return create(wide(locale), dtpg);
}

int FakeI18n::i18n_udatepg_destroy(i18n_udatepg_h dtpg) {
    return destroy(dtpg);
}

int FakeI18n::i18n_udatepg_get_best_pattern(i18n_udatepg_h, const i18n_uchar *skeleton,
                                            int32_t length, i18n_uchar *best_pattern,
                                            int32_t best_pattern_capacity,
                                            int32_t *best_pattern_len) {
    const auto pattern = std::u16string(skeleton, static_cast<std::size_t>(length)) + u"!";
    *best_pattern_len = static_cast<int32_t>(pattern.size());
    return put(pattern, best_pattern, best_pattern_capacity);
}

int FakeI18n::i18n_udate_create(i18n_udate_format_style_e, i18n_udate_format_style_e,
                                const char *locale, const i18n_uchar *, int32_t,
                                const i18n_uchar *pattern, int32_t, i18n_udate_format_h *format) {
    return create(wide(locale) + u"|" + pattern, format);
}

int FakeI18n::i18n_udate_destroy(i18n_udate_format_h format) {
    return destroy(format);
}

int FakeI18n::i18n_udate_format_date(i18n_udate_format_h format, i18n_udate date_to_format,
                                     i18n_uchar *result, int32_t result_length,
                                     i18n_ufield_position_h, int32_t *date_format_len) {
    const auto milliseconds = static_cast<long long>(date_to_format);
    const auto text = m_handles[format] + u"|" + wide(std::to_string(milliseconds));
    *date_format_len = static_cast<int32_t>(text.size());
    return put(text, result, result_length);
}

int FakeI18n::i18n_ucalendar_set_default_timezone(const i18n_uchar *) {
    return I18N_ERROR_NONE;
}

int FakeI18n::i18n_unumber_create(i18n_unumber_format_style_e, const i18n_uchar *, int32_t,
                                  const char *, i18n_uparse_error_s *,
                                  i18n_unumber_format_h *num_format) {
    return create(u"", num_format);
}

int FakeI18n::i18n_unumber_destroy(i18n_unumber_format_h num_format) {
    return destroy(num_format);
}

int32_t FakeI18n::i18n_unumber_format(i18n_unumber_format_h, int32_t number, i18n_uchar *result,
                                      int32_t result_len, i18n_ufield_position_h,
                                      i18n_error_code_e *err) {
    const auto text = wide(std::to_string(number));
    *err = static_cast<i18n_error_code_e>(put(text, result, result_len));
    return static_cast<int32_t>(text.size());
}

int FakeSystemSettings::system_settings_get_value_string(system_settings_key_e key, char **value) {
    if (key != SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE || !m_time_zone) {
        return SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER;
    }
    *value = strdup(m_time_zone->c_str());
    return SYSTEM_SETTINGS_ERROR_NONE;
}
