#include "mock_app_control.h"

#include "slot.h"

namespace mock {

MockAppControl &app_control() {
    static Slot<testing::NiceMock<MockAppControl>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_app_control().function(arguments...);    \
    })

MockAppControl::MockAppControl() {
    DELEGATE(app_control_create);
    DELEGATE(app_control_destroy);
    DELEGATE(app_control_clone);
    DELEGATE(app_control_set_operation);
    DELEGATE(app_control_get_operation);
    DELEGATE(app_control_set_uri);
    DELEGATE(app_control_get_uri);
    DELEGATE(app_control_set_mime);
    DELEGATE(app_control_get_mime);
    DELEGATE(app_control_set_category);
    DELEGATE(app_control_get_category);
    DELEGATE(app_control_set_app_id);
    DELEGATE(app_control_get_app_id);
    DELEGATE(app_control_get_caller);
    DELEGATE(app_control_set_launch_mode);
    DELEGATE(app_control_get_launch_mode);
    DELEGATE(app_control_add_extra_data);
    DELEGATE(app_control_add_extra_data_array);
    DELEGATE(app_control_remove_extra_data);
    DELEGATE(app_control_get_extra_data);
    DELEGATE(app_control_get_extra_data_array);
    DELEGATE(app_control_send_launch_request);
    DELEGATE(app_control_send_terminate_request);
}

MockAppControl::~MockAppControl() = default;

extern "C" {

int app_control_create(app_control_h *app_control) {
    return mock::app_control().app_control_create(app_control);
}

int app_control_destroy(app_control_h app_control) {
    return mock::app_control().app_control_destroy(app_control);
}

int app_control_clone(app_control_h *clone, app_control_h app_control) {
    return mock::app_control().app_control_clone(clone, app_control);
}

int app_control_set_operation(app_control_h app_control, const char *operation) {
    return mock::app_control().app_control_set_operation(app_control, operation);
}

int app_control_get_operation(app_control_h app_control, char **operation) {
    return mock::app_control().app_control_get_operation(app_control, operation);
}

int app_control_set_uri(app_control_h app_control, const char *uri) {
    return mock::app_control().app_control_set_uri(app_control, uri);
}

int app_control_get_uri(app_control_h app_control, char **uri) {
    return mock::app_control().app_control_get_uri(app_control, uri);
}

int app_control_set_mime(app_control_h app_control, const char *mime) {
    return mock::app_control().app_control_set_mime(app_control, mime);
}

int app_control_get_mime(app_control_h app_control, char **mime) {
    return mock::app_control().app_control_get_mime(app_control, mime);
}

int app_control_set_category(app_control_h app_control, const char *category) {
    return mock::app_control().app_control_set_category(app_control, category);
}

int app_control_get_category(app_control_h app_control, char **category) {
    return mock::app_control().app_control_get_category(app_control, category);
}

int app_control_set_app_id(app_control_h app_control, const char *app_id) {
    return mock::app_control().app_control_set_app_id(app_control, app_id);
}

int app_control_get_app_id(app_control_h app_control, char **app_id) {
    return mock::app_control().app_control_get_app_id(app_control, app_id);
}

int app_control_get_caller(app_control_h app_control, char **id) {
    return mock::app_control().app_control_get_caller(app_control, id);
}

int app_control_set_launch_mode(app_control_h app_control, app_control_launch_mode_e mode) {
    return mock::app_control().app_control_set_launch_mode(app_control, mode);
}

int app_control_get_launch_mode(app_control_h app_control, app_control_launch_mode_e *mode) {
    return mock::app_control().app_control_get_launch_mode(app_control, mode);
}

int app_control_add_extra_data(app_control_h app_control, const char *key, const char *value) {
    return mock::app_control().app_control_add_extra_data(app_control, key, value);
}

int app_control_add_extra_data_array(app_control_h app_control, const char *key, const char **value,
                                     int length) {
    return mock::app_control().app_control_add_extra_data_array(app_control, key, value, length);
}

int app_control_remove_extra_data(app_control_h app_control, const char *key) {
    return mock::app_control().app_control_remove_extra_data(app_control, key);
}

int app_control_get_extra_data(app_control_h app_control, const char *key, char **value) {
    return mock::app_control().app_control_get_extra_data(app_control, key, value);
}

int app_control_get_extra_data_array(app_control_h app_control, const char *key, char ***value,
                                     int *length) {
    return mock::app_control().app_control_get_extra_data_array(app_control, key, value, length);
}

int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void *user_data) {
    return mock::app_control().app_control_send_launch_request(app_control, callback, user_data);
}

int app_control_send_terminate_request(app_control_h app_control) {
    return mock::app_control().app_control_send_terminate_request(app_control);
}

}  // extern "C"
