#pragma once

#include <gmock/gmock.h>

#include "fake_efl_extension.h"

/// Forwards to FakeRotary unless a test says otherwise.
class MockRotary {
public:
    MockRotary();
    virtual ~MockRotary();

    MOCK_METHOD(Eina_Bool, eext_rotary_object_event_callback_add,
                (Evas_Object *, Eext_Rotary_Event_Cb, const void *));
    MOCK_METHOD(Eina_Bool, eext_rotary_object_event_callback_priority_add,
                (Evas_Object *, Evas_Callback_Priority, Eext_Rotary_Event_Cb, const void *));
    MOCK_METHOD(void *, eext_rotary_object_event_callback_del,
                (Evas_Object *, Eext_Rotary_Event_Cb));
    MOCK_METHOD(Eina_Bool, eext_rotary_object_event_activated_set, (Evas_Object *, Eina_Bool));
};

namespace mock {
MockRotary &rotary();
}
