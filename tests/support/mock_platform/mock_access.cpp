#include "mock_access.h"

#include "slot.h"

namespace mock {

MockAccess &access() {
    static Slot<testing::NiceMock<MockAccess>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_access().function(arguments...);         \
    })

MockAccess::MockAccess() {
    DELEGATE(elm_atspi_accessible_name_set);
    DELEGATE(elm_atspi_accessible_description_set);
    DELEGATE(elm_atspi_accessible_role_set);
    DELEGATE(elm_atspi_accessible_reading_info_type_set);
    DELEGATE(elm_atspi_accessible_translation_domain_set);
    DELEGATE(elm_atspi_accessible_name_cb_set);
    DELEGATE(elm_atspi_accessible_can_highlight_set);
    DELEGATE(elm_atspi_bridge_utils_say);
}

MockAccess::~MockAccess() = default;

extern "C" {

void elm_atspi_accessible_name_set(Elm_Interface_Atspi_Accessible *obj, const char *name) {
    return mock::access().elm_atspi_accessible_name_set(obj, name);
}

void elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                          const char *description) {
    return mock::access().elm_atspi_accessible_description_set(obj, description);
}

void elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj, Elm_Atspi_Role role) {
    return mock::access().elm_atspi_accessible_role_set(obj, role);
}

void elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                Elm_Accessible_Reading_Info_Type info) {
    return mock::access().elm_atspi_accessible_reading_info_type_set(obj, info);
}

void elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                 const char *domain) {
    return mock::access().elm_atspi_accessible_translation_domain_set(obj, domain);
}

void elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                      Elm_Atspi_Reading_Info_Cb name_cb, const void *data) {
    return mock::access().elm_atspi_accessible_name_cb_set(obj, name_cb, data);
}

void elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                            Eina_Bool can_highlight) {
    return mock::access().elm_atspi_accessible_can_highlight_set(obj, can_highlight);
}

void elm_atspi_bridge_utils_say(const char *text, Eina_Bool discardable,
                                const Elm_Atspi_Say_Signal_Cb func, const void *data) {
    return mock::access().elm_atspi_bridge_utils_say(text, discardable, func, data);
}

}  // extern "C"
