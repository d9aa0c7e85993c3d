#include "mock_service_app.h"

#include "fake_ui_app.h"
#include "slot.h"

namespace mock {

MockServiceApp &service_app() {
    static Slot<testing::NiceMock<MockServiceApp>> slot;
    return slot.get();
}

}  // namespace mock

MockServiceApp::MockServiceApp() {
    ON_CALL(*this, service_app_add_event_handler).WillByDefault([](auto... arguments) {
        return mock::fake_ui_app().ui_app_add_event_handler(arguments...);
    });
    ON_CALL(*this, service_app_remove_event_handler).WillByDefault([](auto... arguments) {
        return mock::fake_ui_app().ui_app_remove_event_handler(arguments...);
    });
}

MockServiceApp::~MockServiceApp() = default;

extern "C" {

int service_app_main(int argc, char **argv, service_app_lifecycle_callback_s *callback,
                     void *user_data) {
    return mock::service_app().service_app_main(argc, argv, callback, user_data);
}

void service_app_exit() {
    return mock::service_app().service_app_exit();
}

int service_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                                  app_event_cb callback, void *user_data) {
    return mock::service_app().service_app_add_event_handler(handler, event_type, callback,
                                                             user_data);
}

int service_app_remove_event_handler(app_event_handler_h handler) {
    return mock::service_app().service_app_remove_event_handler(handler);
}

}  // extern "C"
