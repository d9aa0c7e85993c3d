#pragma once

#include <gmock/gmock.h>
#include <service_app.h>

/// The life cycle of a service: a test plays the platform in service_app_main(). Events go to and
/// come from FakeUiApp, unless a test says otherwise.
class MockServiceApp {
public:
    MockServiceApp();
    virtual ~MockServiceApp();

    MOCK_METHOD(int, service_app_main, (int, char **, service_app_lifecycle_callback_s *, void *));
    MOCK_METHOD(void, service_app_exit, ());
    MOCK_METHOD(int, service_app_add_event_handler,
                (app_event_handler_h *, app_event_type_e, app_event_cb, void *));
    MOCK_METHOD(int, service_app_remove_event_handler, (app_event_handler_h));
};

namespace mock {
MockServiceApp &service_app();
}
