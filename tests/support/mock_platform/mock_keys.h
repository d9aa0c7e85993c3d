#pragma once

#include <gmock/gmock.h>

#include "fake_efl_extension.h"

/// Forwards to FakeKeys unless a test says otherwise.
class MockKeys {
public:
    MockKeys();
    virtual ~MockKeys();

    MOCK_METHOD(void, eext_object_event_callback_add,
                (Evas_Object *, Eext_Callback_Type, Eext_Event_Cb, void *));
    MOCK_METHOD(void *, eext_object_event_callback_del,
                (Evas_Object *, Eext_Callback_Type, Eext_Event_Cb));
};

namespace mock {
MockKeys &keys();
}
