#pragma once

#include <device/power.h>
#include <system_settings.h>
#include <utils_i18n.h>
#include <vconf.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>

/// Settings by key and type.
class FakeVconf {
public:
    using Value = std::variant<int, bool, std::string>;

    void set_int(const std::string &key, int value) { m_values[key] = value; }
    void set_bool(const std::string &key, bool value) { m_values[key] = value; }
    void set_str(const std::string &key, const std::string &value) { m_values[key] = value; }
    void unset(const std::string &key) { m_values.erase(key); }

    int vconf_get_int(const char *key, int *value);
    int vconf_get_bool(const char *key, int *value);
    char *vconf_get_str(const char *key);

private:
    std::map<std::string, Value> m_values;
};

/// Locks, with the number of calls. Requests aren't counted: one release ends any number.
class FakePower {
public:
    bool is_locked(power_lock_e type) const;
    int requests() const { return m_requests; }
    int releases() const { return m_releases; }

    int device_power_request_lock(power_lock_e type, int timeout_ms);
    int device_power_release_lock(power_lock_e type);

private:
    std::map<power_lock_e, bool> m_locked;
    int m_requests = 0;
    int m_releases = 0;
};

/// Texts of the platform; a text it doesn't know comes back as it is. Dates and numbers are written
/// so that a test sees what they were made from: a date is "locale|pattern|milliseconds", a pattern
/// "skeleton!".
class FakeI18n {
public:
    void set_text(const std::string &message, const std::string &text) { m_texts[message] = text; }
    /// Generators and formats that weren't destroyed.
    int handles() const { return static_cast<int>(m_handles.size()); }

    const char *i18n_get_text(const char *message);
    i18n_uchar *i18n_ustring_copy_ua_n(i18n_uchar *dest, const char *src, int32_t n);
    char *i18n_ustring_copy_au_n(char *dest, const i18n_uchar *src, int32_t n);
    int32_t i18n_ustring_get_length(const i18n_uchar *s);
    int i18n_udatepg_create(const char *locale, i18n_udatepg_h *dtpg);
    int i18n_udatepg_destroy(i18n_udatepg_h dtpg);
    int i18n_udatepg_get_best_pattern(i18n_udatepg_h dtpg, const i18n_uchar *skeleton,
                                      int32_t length, i18n_uchar *best_pattern,
                                      int32_t best_pattern_capacity, int32_t *best_pattern_len);
    int i18n_udate_create(i18n_udate_format_style_e time_style,
                          i18n_udate_format_style_e date_style, const char *locale,
                          const i18n_uchar *tz_id, int32_t tz_id_length, const i18n_uchar *pattern,
                          int32_t pattern_length, i18n_udate_format_h *format);
    int i18n_udate_destroy(i18n_udate_format_h format);
    int i18n_udate_format_date(i18n_udate_format_h format, i18n_udate date_to_format,
                               i18n_uchar *result, int32_t result_length,
                               i18n_ufield_position_h position, int32_t *date_format_len);
    int i18n_ucalendar_set_default_timezone(const i18n_uchar *zone_id);
    int i18n_unumber_create(i18n_unumber_format_style_e style, const i18n_uchar *pattern,
                            int32_t pattern_len, const char *locale, i18n_uparse_error_s *parse_err,
                            i18n_unumber_format_h *num_format);
    int i18n_unumber_destroy(i18n_unumber_format_h num_format);
    int32_t i18n_unumber_format(i18n_unumber_format_h num_format, int32_t number,
                                i18n_uchar *result, int32_t result_len,
                                i18n_ufield_position_h field_position, i18n_error_code_e *err);

private:
    using Handles = std::map<const void *, std::u16string>;

    template <typename Handle>
    int create(const std::u16string &made_from, Handle *handle);
    int destroy(const void *handle);

    std::map<std::string, std::string> m_texts;
    Handles m_handles;
    std::uintptr_t m_last_handle = 0;
};

/// Settings of the whole system: a time zone, unless a test takes it away.
class FakeSystemSettings {
public:
    void set_time_zone(const std::string &zone) { m_time_zone = zone; }
    void unset_time_zone() { m_time_zone.reset(); }

    int system_settings_get_value_string(system_settings_key_e key, char **value);

private:
    std::optional<std::string> m_time_zone = "Asia/Seoul";
};

namespace mock {
FakeVconf &fake_vconf();
FakePower &fake_power();
FakeI18n &fake_i18n();
FakeSystemSettings &fake_system_settings();
}  // namespace mock
