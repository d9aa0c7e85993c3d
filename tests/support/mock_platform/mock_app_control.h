#pragma once

#include <gmock/gmock.h>

#include "fake_app_control.h"

/// Forwards to FakeAppControl unless a test says otherwise.
class MockAppControl {
public:
    MockAppControl();
    virtual ~MockAppControl();

    MOCK_METHOD(int, app_control_create, (app_control_h *));
    MOCK_METHOD(int, app_control_destroy, (app_control_h));
    MOCK_METHOD(int, app_control_clone, (app_control_h *, app_control_h));
    MOCK_METHOD(int, app_control_set_operation, (app_control_h, const char *));
    MOCK_METHOD(int, app_control_get_operation, (app_control_h, char **));
    MOCK_METHOD(int, app_control_set_uri, (app_control_h, const char *));
    MOCK_METHOD(int, app_control_get_uri, (app_control_h, char **));
    MOCK_METHOD(int, app_control_set_mime, (app_control_h, const char *));
    MOCK_METHOD(int, app_control_get_mime, (app_control_h, char **));
    MOCK_METHOD(int, app_control_set_category, (app_control_h, const char *));
    MOCK_METHOD(int, app_control_get_category, (app_control_h, char **));
    MOCK_METHOD(int, app_control_set_app_id, (app_control_h, const char *));
    MOCK_METHOD(int, app_control_get_app_id, (app_control_h, char **));
    MOCK_METHOD(int, app_control_get_caller, (app_control_h, char **));
    MOCK_METHOD(int, app_control_set_launch_mode, (app_control_h, app_control_launch_mode_e));
    MOCK_METHOD(int, app_control_get_launch_mode, (app_control_h, app_control_launch_mode_e *));
    MOCK_METHOD(int, app_control_add_extra_data, (app_control_h, const char *, const char *));
    MOCK_METHOD(int, app_control_add_extra_data_array,
                (app_control_h, const char *, const char **, int));
    MOCK_METHOD(int, app_control_remove_extra_data, (app_control_h, const char *));
    MOCK_METHOD(int, app_control_get_extra_data, (app_control_h, const char *, char **));
    MOCK_METHOD(int, app_control_get_extra_data_array,
                (app_control_h, const char *, char ***, int *));
    MOCK_METHOD(int, app_control_send_launch_request,
                (app_control_h, app_control_reply_cb, void *));
    MOCK_METHOD(int, app_control_send_terminate_request, (app_control_h));
};

namespace mock {
MockAppControl &app_control();
}
