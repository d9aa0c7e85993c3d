#include "mock_rotary.h"

#include "slot.h"

namespace mock {

MockRotary &rotary() {
    static Slot<testing::NiceMock<MockRotary>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_rotary().function(arguments...);         \
    })

MockRotary::MockRotary() {
    DELEGATE(eext_rotary_object_event_callback_add);
    DELEGATE(eext_rotary_object_event_callback_priority_add);
    DELEGATE(eext_rotary_object_event_callback_del);
    DELEGATE(eext_rotary_object_event_activated_set);
}

MockRotary::~MockRotary() = default;

extern "C" {

Eina_Bool eext_rotary_object_event_callback_add(Evas_Object *obj, Eext_Rotary_Event_Cb func,
                                                const void *data) {
    return mock::rotary().eext_rotary_object_event_callback_add(obj, func, data);
}

Eina_Bool eext_rotary_object_event_callback_priority_add(Evas_Object *obj,
                                                         Evas_Callback_Priority priority,
                                                         Eext_Rotary_Event_Cb func,
                                                         const void *data) {
    return mock::rotary().eext_rotary_object_event_callback_priority_add(obj, priority, func, data);
}

void *eext_rotary_object_event_callback_del(Evas_Object *obj, Eext_Rotary_Event_Cb func) {
    return mock::rotary().eext_rotary_object_event_callback_del(obj, func);
}

Eina_Bool eext_rotary_object_event_activated_set(Evas_Object *obj, Eina_Bool activated) {
    return mock::rotary().eext_rotary_object_event_activated_set(obj, activated);
}

}  // extern "C"
