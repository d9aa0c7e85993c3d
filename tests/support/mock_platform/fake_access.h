#pragma once

#include <Elementary.h>

#include <map>
#include <string>
#include <vector>

/// What was set for a screen reader, by object, and what was to be spoken.
class FakeAccess {
public:
    struct Record {
        std::string name;
        std::string description;
        std::string domain;
        Elm_Atspi_Role role = 0;
        Elm_Accessible_Reading_Info_Type reading_info = 0;
        bool can_highlight = true;
        Elm_Atspi_Reading_Info_Cb name_cb = nullptr;
        const void *name_cb_data = nullptr;
    };
    struct Spoken {
        std::string text;
        bool discardable;
    };

    /// An object that nothing was set for has an empty record.
    Record record(const Eo *obj) const;
    /// The name as a screen reader gets it: from the callback if there is one.
    std::string name(Eo *obj) const;
    const std::vector<Spoken> &spoken() const { return m_spoken; }

    void elm_atspi_accessible_name_set(Elm_Interface_Atspi_Accessible *obj, const char *name);
    void elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                              const char *description);
    void elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj, Elm_Atspi_Role role);
    void elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                    Elm_Accessible_Reading_Info_Type info);
    void elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                     const char *domain);
    void elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                          Elm_Atspi_Reading_Info_Cb name_cb, const void *data);
    void elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                                Eina_Bool can_highlight);
    void elm_atspi_bridge_utils_say(const char *text, Eina_Bool discardable,
                                    Elm_Atspi_Say_Signal_Cb func, const void *data);

private:
    std::map<const Eo *, Record> m_records;
    std::vector<Spoken> m_spoken;
};

namespace mock {
FakeAccess &fake_access();
}
