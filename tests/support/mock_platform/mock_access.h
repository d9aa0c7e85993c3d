#pragma once

#include <gmock/gmock.h>

#include "fake_access.h"

/// Forwards to FakeAccess unless a test says otherwise.
class MockAccess {
public:
    MockAccess();
    virtual ~MockAccess();

    MOCK_METHOD(void, elm_atspi_accessible_name_set,
                (Elm_Interface_Atspi_Accessible *, const char *));
    MOCK_METHOD(void, elm_atspi_accessible_description_set,
                (Elm_Interface_Atspi_Accessible *, const char *));
    MOCK_METHOD(void, elm_atspi_accessible_role_set,
                (Elm_Interface_Atspi_Accessible *, Elm_Atspi_Role));
    MOCK_METHOD(void, elm_atspi_accessible_reading_info_type_set,
                (Elm_Interface_Atspi_Accessible *, Elm_Accessible_Reading_Info_Type));
    MOCK_METHOD(void, elm_atspi_accessible_translation_domain_set,
                (Elm_Interface_Atspi_Accessible *, const char *));
    MOCK_METHOD(void, elm_atspi_accessible_name_cb_set,
                (Elm_Interface_Atspi_Accessible *, Elm_Atspi_Reading_Info_Cb, const void *));
    MOCK_METHOD(void, elm_atspi_accessible_can_highlight_set,
                (Elm_Interface_Atspi_Accessible *, Eina_Bool));
    MOCK_METHOD(void, elm_atspi_bridge_utils_say,
                (const char *, Eina_Bool, const Elm_Atspi_Say_Signal_Cb, const void *));
};

namespace mock {
MockAccess &access();
}
