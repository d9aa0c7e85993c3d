#include "mock_ui_app.h"

#include "slot.h"

namespace mock {

MockUiApp &ui_app() {
    static Slot<testing::NiceMock<MockUiApp>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_ui_app().function(arguments...);         \
    })

MockUiApp::MockUiApp() {
    DELEGATE(ui_app_main);
    DELEGATE(ui_app_exit);
    DELEGATE(ui_app_add_event_handler);
    DELEGATE(ui_app_remove_event_handler);
    DELEGATE(app_get_id);
    DELEGATE(app_get_resource_path);
    DELEGATE(app_get_shared_resource_path);
}

MockUiApp::~MockUiApp() = default;

extern "C" {

int ui_app_main(int argc, char **argv, ui_app_lifecycle_callback_s *callback, void *user_data) {
    return mock::ui_app().ui_app_main(argc, argv, callback, user_data);
}

void ui_app_exit() {
    return mock::ui_app().ui_app_exit();
}

int ui_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                             app_event_cb callback, void *user_data) {
    return mock::ui_app().ui_app_add_event_handler(handler, event_type, callback, user_data);
}

int ui_app_remove_event_handler(app_event_handler_h handler) {
    return mock::ui_app().ui_app_remove_event_handler(handler);
}

int app_get_id(char **id) {
    return mock::ui_app().app_get_id(id);
}

char *app_get_resource_path() {
    return mock::ui_app().app_get_resource_path();
}

char *app_get_shared_resource_path() {
    return mock::ui_app().app_get_shared_resource_path();
}

}  // extern "C"
