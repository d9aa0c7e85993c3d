#include "mock_keys.h"

#include "slot.h"

namespace mock {

MockKeys &keys() {
    static Slot<testing::NiceMock<MockKeys>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_keys().function(arguments...);           \
    })

MockKeys::MockKeys() {
    DELEGATE(eext_object_event_callback_add);
    DELEGATE(eext_object_event_callback_del);
}

MockKeys::~MockKeys() = default;

extern "C" {

void eext_object_event_callback_add(Evas_Object *obj, Eext_Callback_Type type, Eext_Event_Cb func,
                                    void *data) {
    return mock::keys().eext_object_event_callback_add(obj, type, func, data);
}

void *eext_object_event_callback_del(Evas_Object *obj, Eext_Callback_Type type,
                                     Eext_Event_Cb func) {
    return mock::keys().eext_object_event_callback_del(obj, type, func);
}

}  // extern "C"
