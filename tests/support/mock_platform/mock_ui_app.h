#pragma once

#include <gmock/gmock.h>

#include "fake_ui_app.h"

/// Forwards to FakeUiApp unless a test says otherwise.
class MockUiApp {
public:
    MockUiApp();
    virtual ~MockUiApp();

    MOCK_METHOD(int, ui_app_main, (int, char **, ui_app_lifecycle_callback_s *, void *));
    MOCK_METHOD(void, ui_app_exit, ());
    MOCK_METHOD(int, ui_app_add_event_handler,
                (app_event_handler_h *, app_event_type_e, app_event_cb, void *));
    MOCK_METHOD(int, ui_app_remove_event_handler, (app_event_handler_h));
    MOCK_METHOD(int, app_get_id, (char **));
    MOCK_METHOD(char *, app_get_resource_path, ());
    MOCK_METHOD(char *, app_get_shared_resource_path, ());
};

namespace mock {
MockUiApp &ui_app();
}
