#include "mock_i18n.h"

#include "slot.h"

namespace mock {

MockI18n &i18n() {
    static Slot<testing::NiceMock<MockI18n>> slot;
    return slot.get();
}

MockSystemSettings &system_settings() {
    static Slot<testing::NiceMock<MockSystemSettings>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_i18n().function(arguments...);           \
    })

MockI18n::MockI18n() {
    DELEGATE(i18n_get_text);
    DELEGATE(i18n_ustring_copy_ua_n);
    DELEGATE(i18n_ustring_copy_au_n);
    DELEGATE(i18n_ustring_get_length);
    DELEGATE(i18n_udatepg_create);
    DELEGATE(i18n_udatepg_destroy);
    DELEGATE(i18n_udatepg_get_best_pattern);
    DELEGATE(i18n_udate_create);
    DELEGATE(i18n_udate_destroy);
    DELEGATE(i18n_udate_format_date);
    DELEGATE(i18n_ucalendar_set_default_timezone);
    DELEGATE(i18n_unumber_create);
    DELEGATE(i18n_unumber_destroy);
    DELEGATE(i18n_unumber_format);
}

MockI18n::~MockI18n() = default;

MockSystemSettings::MockSystemSettings() {
    ON_CALL(*this, system_settings_get_value_string).WillByDefault([](auto... arguments) {
        return mock::fake_system_settings().system_settings_get_value_string(arguments...);
    });
}

MockSystemSettings::~MockSystemSettings() = default;

extern "C" {

const char *i18n_get_text(const char *message) {
    return mock::i18n().i18n_get_text(message);
}

i18n_uchar *i18n_ustring_copy_ua_n(i18n_uchar *dest, const char *src, int32_t n) {
    return mock::i18n().i18n_ustring_copy_ua_n(dest, src, n);
}

char *i18n_ustring_copy_au_n(char *dest, const i18n_uchar *src, int32_t n) {
    return mock::i18n().i18n_ustring_copy_au_n(dest, src, n);
}

int32_t i18n_ustring_get_length(const i18n_uchar *s) {
    return mock::i18n().i18n_ustring_get_length(s);
}

int i18n_udatepg_create(const char *locale, i18n_udatepg_h *dtpg) {
    return mock::i18n().i18n_udatepg_create(locale, dtpg);
}

int i18n_udatepg_destroy(i18n_udatepg_h dtpg) {
    return mock::i18n().i18n_udatepg_destroy(dtpg);
}

int i18n_udatepg_get_best_pattern(i18n_udatepg_h dtpg, const i18n_uchar *skeleton, int32_t length,
                                  i18n_uchar *best_pattern, int32_t best_pattern_capacity,
                                  int32_t *best_pattern_len) {
    return mock::i18n().i18n_udatepg_get_best_pattern(dtpg, skeleton, length, best_pattern,
                                                      best_pattern_capacity, best_pattern_len);
}

int i18n_udate_create(i18n_udate_format_style_e time_style, i18n_udate_format_style_e date_style,
                      const char *locale, const i18n_uchar *tz_id, int32_t tz_id_length,
                      const i18n_uchar *pattern, int32_t pattern_length,
                      i18n_udate_format_h *format) {
    return mock::i18n().i18n_udate_create(time_style, date_style, locale, tz_id, tz_id_length,
                                          pattern, pattern_length, format);
}

int i18n_udate_destroy(i18n_udate_format_h format) {
    return mock::i18n().i18n_udate_destroy(format);
}

int i18n_udate_format_date(i18n_udate_format_h format, i18n_udate date_to_format,
                           i18n_uchar *result, int32_t result_length,
                           i18n_ufield_position_h position, int32_t *date_format_len) {
    return mock::i18n().i18n_udate_format_date(format, date_to_format, result, result_length,
                                               position, date_format_len);
}

int i18n_ucalendar_set_default_timezone(const i18n_uchar *zone_id) {
    return mock::i18n().i18n_ucalendar_set_default_timezone(zone_id);
}

int i18n_unumber_create(i18n_unumber_format_style_e style, const i18n_uchar *pattern,
                        int32_t pattern_len, const char *locale, i18n_uparse_error_s *parse_err,
                        i18n_unumber_format_h *num_format) {
    return mock::i18n().i18n_unumber_create(style, pattern, pattern_len, locale, parse_err,
                                            num_format);
}

int i18n_unumber_destroy(i18n_unumber_format_h num_format) {
    return mock::i18n().i18n_unumber_destroy(num_format);
}

int32_t i18n_unumber_format(i18n_unumber_format_h num_format, int32_t number, i18n_uchar *result,
                            int32_t result_len, i18n_ufield_position_h field_position,
                            i18n_error_code_e *err) {
    return mock::i18n().i18n_unumber_format(num_format, number, result, result_len, field_position,
                                            err);
}

int system_settings_get_value_string(system_settings_key_e key, char **value) {
    return mock::system_settings().system_settings_get_value_string(key, value);
}

}  // extern "C"
