#include "fake_access.h"

#include <cstdlib>

#include "slot.h"

namespace {

std::string text_of(const char *text) {
    return text == nullptr ? "" : text;
}

}  // namespace

namespace mock {

FakeAccess &fake_access() {
    static Slot<FakeAccess> slot;
    return slot.get();
}

}  // namespace mock

FakeAccess::Record FakeAccess::record(const Eo *obj) const {
    const auto item = m_records.find(obj);
    return item == m_records.end() ? Record{} : item->second;
}

std::string FakeAccess::name(Eo *obj) const {
    const Record found = record(obj);
    if (found.name_cb == nullptr) {
        return found.name;
    }
    char *text = found.name_cb(const_cast<void *>(found.name_cb_data), obj);
    const std::string result = text_of(text);
    std::free(text);
    return result;
}

void FakeAccess::elm_atspi_accessible_name_set(Elm_Interface_Atspi_Accessible *obj,
                                               const char *name) {
    m_records[obj].name = text_of(name);
}

void FakeAccess::elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                                      const char *description) {
    m_records[obj].description = text_of(description);
}

void FakeAccess::elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj,
                                               Elm_Atspi_Role role) {
    m_records[obj].role = role;
}

void FakeAccess::elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                            Elm_Accessible_Reading_Info_Type info) {
    m_records[obj].reading_info = info;
}

void FakeAccess::elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                             const char *domain) {
    m_records[obj].domain = text_of(domain);
}

void FakeAccess::elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                                  Elm_Atspi_Reading_Info_Cb name_cb,
                                                  const void *data) {
    m_records[obj].name_cb = name_cb;
    m_records[obj].name_cb_data = data;
}

void FakeAccess::elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                                        Eina_Bool can_highlight) {
    m_records[obj].can_highlight = can_highlight == EINA_TRUE;
}

void FakeAccess::elm_atspi_bridge_utils_say(const char *text, Eina_Bool discardable,
                                            Elm_Atspi_Say_Signal_Cb, const void *) {
    m_spoken.push_back({text_of(text), discardable == EINA_TRUE});
}
