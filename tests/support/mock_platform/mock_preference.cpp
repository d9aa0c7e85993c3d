#include "mock_preference.h"

#include "slot.h"

namespace mock {

MockPreference &preference() {
    static Slot<testing::NiceMock<MockPreference>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE_TO(function, target)                              \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_preference().target(arguments...);       \
    })

MockPreference::MockPreference() {
    DELEGATE_TO(preference_set_int, set);
    DELEGATE_TO(preference_set_double, set);
    DELEGATE_TO(preference_set_boolean, set);
    ON_CALL(*this, preference_set_string).WillByDefault([](const char *key, const char *value) {
        return value != nullptr ? mock::fake_preference().set(key, std::string(value))
                                : PREFERENCE_ERROR_INVALID_PARAMETER;
    });
    DELEGATE_TO(preference_get_int, get);
    DELEGATE_TO(preference_get_double, get);
    DELEGATE_TO(preference_get_boolean, get);
    DELEGATE_TO(preference_get_string, preference_get_string);
    DELEGATE_TO(preference_is_existing, preference_is_existing);
    DELEGATE_TO(preference_set_changed_cb, preference_set_changed_cb);
    DELEGATE_TO(preference_unset_changed_cb, preference_unset_changed_cb);
}

MockPreference::~MockPreference() = default;

extern "C" {

int preference_set_int(const char *key, int value) {
    return mock::preference().preference_set_int(key, value);
}

int preference_set_double(const char *key, double value) {
    return mock::preference().preference_set_double(key, value);
}

int preference_set_string(const char *key, const char *value) {
    return mock::preference().preference_set_string(key, value);
}

int preference_set_boolean(const char *key, bool value) {
    return mock::preference().preference_set_boolean(key, value);
}

int preference_get_int(const char *key, int *value) {
    return mock::preference().preference_get_int(key, value);
}

int preference_get_double(const char *key, double *value) {
    return mock::preference().preference_get_double(key, value);
}

int preference_get_string(const char *key, char **value) {
    return mock::preference().preference_get_string(key, value);
}

int preference_get_boolean(const char *key, bool *value) {
    return mock::preference().preference_get_boolean(key, value);
}

int preference_is_existing(const char *key, bool *existing) {
    return mock::preference().preference_is_existing(key, existing);
}

int preference_set_changed_cb(const char *key, preference_changed_cb callback, void *user_data) {
    return mock::preference().preference_set_changed_cb(key, callback, user_data);
}

int preference_unset_changed_cb(const char *key) {
    return mock::preference().preference_unset_changed_cb(key);
}

}  // extern "C"
