#pragma once

#include <gmock/gmock.h>

#include "fake_settings.h"

/// Forwards to FakeI18n unless a test says otherwise.
class MockI18n {
public:
    MockI18n();
    virtual ~MockI18n();

    MOCK_METHOD(const char *, i18n_get_text, (const char *));
    MOCK_METHOD(i18n_uchar *, i18n_ustring_copy_ua_n, (i18n_uchar *, const char *, int32_t));
    MOCK_METHOD(char *, i18n_ustring_copy_au_n, (char *, const i18n_uchar *, int32_t));
    MOCK_METHOD(int32_t, i18n_ustring_get_length, (const i18n_uchar *));
    MOCK_METHOD(int, i18n_udatepg_create, (const char *, i18n_udatepg_h *));
    MOCK_METHOD(int, i18n_udatepg_destroy, (i18n_udatepg_h));
    MOCK_METHOD(int, i18n_udatepg_get_best_pattern,
                (i18n_udatepg_h, const i18n_uchar *, int32_t, i18n_uchar *, int32_t, int32_t *));
    MOCK_METHOD(int, i18n_udate_create,
                (i18n_udate_format_style_e, i18n_udate_format_style_e, const char *,
                 const i18n_uchar *, int32_t, const i18n_uchar *, int32_t, i18n_udate_format_h *));
    MOCK_METHOD(int, i18n_udate_destroy, (i18n_udate_format_h));
    MOCK_METHOD(int, i18n_udate_format_date,
                (i18n_udate_format_h, i18n_udate, i18n_uchar *, int32_t, i18n_ufield_position_h,
                 int32_t *));
    MOCK_METHOD(int, i18n_ucalendar_set_default_timezone, (const i18n_uchar *));
    MOCK_METHOD(int, i18n_unumber_create,
                (i18n_unumber_format_style_e, const i18n_uchar *, int32_t, const char *,
                 i18n_uparse_error_s *, i18n_unumber_format_h *));
    MOCK_METHOD(int, i18n_unumber_destroy, (i18n_unumber_format_h));
    MOCK_METHOD(int32_t, i18n_unumber_format,
                (i18n_unumber_format_h, int32_t, i18n_uchar *, int32_t, i18n_ufield_position_h,
                 i18n_error_code_e *));
};

/// Forwards to FakeSystemSettings unless a test says otherwise.
class MockSystemSettings {
public:
    MockSystemSettings();
    virtual ~MockSystemSettings();

    MOCK_METHOD(int, system_settings_get_value_string, (system_settings_key_e, char **));
};

namespace mock {
MockI18n &i18n();
MockSystemSettings &system_settings();
}  // namespace mock
