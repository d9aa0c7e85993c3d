#define EFL_ACCESS_OBJECT_PROTECTED

#include <Elementary.h>
#include <dlog.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>

#include "access/screen_reader.h"

namespace host {
namespace {

constexpr char kNameSourceKey[] = "host::accessible_name";

bool is_accessible(const Eo *obj) {
    return obj != nullptr && efl_isa(obj, EFL_ACCESS_OBJECT_MIXIN);
}

/// The toolkit itself tells nobody when a property is set.
void report_change(Eo *obj, const char *property) {
    efl_access_object_event_emit(obj, EFL_ACCESS_OBJECT_EVENT_PROPERTY_CHANGED,
                                 const_cast<char *>(property));
}

struct TextFree {
    void operator()(char *text) const { std::free(text); }
};

/// Where the name of one object comes from while it has a callback. Goes with the object.
struct NameSource {
    Elm_Atspi_Reading_Info_Cb callback = nullptr;
    void *data = nullptr;
    /// The answer to the last query: whoever asks gets a borrowed text.
    std::unique_ptr<char, TextFree> name;

    static NameSource *of(const Eo *obj) {
        return static_cast<NameSource *>(efl_key_data_get(obj, kNameSourceKey));
    }
};

const char *queried_name(const Eo *obj, void * /*private_data*/) {
    NameSource *source = NameSource::of(obj);
    if (source != nullptr && source->callback != nullptr) {
        source->name.reset(source->callback(source->data, const_cast<Eo *>(obj)));
        if (source->name) {
            return source->name.get();
        }
    }
    return efl_access_object_i18n_name_get(efl_super(obj, EFL_OBJECT_OVERRIDE_CLASS));
}

void object_deleted(void *data, const Efl_Event *event) {
    const std::unique_ptr<NameSource> source(static_cast<NameSource *>(data));
    efl_key_data_set(event->object, kNameSourceKey, nullptr);
    // The toolkit doesn't free an override with its object.
    efl_object_override(event->object, nullptr);
}

NameSource &add_name_source(Eo *obj) {
    auto source = std::make_unique<NameSource>();
    NameSource &added = *source;
    efl_key_data_set(obj, kNameSourceKey, &added);
    efl_event_callback_add(obj, EFL_EVENT_DEL, object_deleted, source.release());
    EFL_OPS_DEFINE(operations, EFL_OBJECT_OP_FUNC(efl_access_object_i18n_name_get, queried_name));
    efl_object_override(obj, &operations);
    return added;
}

}  // namespace
}  // namespace host

void elm_atspi_accessible_name_set(Elm_Interface_Atspi_Accessible *obj, const char *name) {
    if (host::is_accessible(obj)) {
        efl_access_object_i18n_name_set(obj, name);
        host::report_change(obj, "i18n_name");
    }
}

void elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                          const char *description) {
    if (host::is_accessible(obj)) {
        efl_access_object_description_set(obj, description);
        host::report_change(obj, "description");
    }
}

void elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj, Elm_Atspi_Role role) {
    if (host::is_accessible(obj) && role > EFL_ACCESS_ROLE_INVALID &&
        role < EFL_ACCESS_ROLE_LAST_DEFINED) {
        efl_access_object_role_set(obj, static_cast<Efl_Access_Role>(role));
        host::report_change(obj, "role");
    }
}

void elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                Elm_Accessible_Reading_Info_Type info) {
    if (host::is_accessible(obj)) {
        efl_access_object_reading_info_type_set(obj,
                                                static_cast<Efl_Access_Reading_Info_Type>(info));
    }
}

void elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                 const char *domain) {
    if (host::is_accessible(obj)) {
        efl_access_object_translation_domain_set(obj, domain);
    }
}

void elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                      Elm_Atspi_Reading_Info_Cb name_cb, const void *data) {
    if (!host::is_accessible(obj)) {
        return;
    }
    host::NameSource *source = host::NameSource::of(obj);
    if (source == nullptr) {
        if (name_cb == nullptr) {
            return;
        }
        source = &host::add_name_source(obj);
    }
    source->callback = name_cb;
    source->data = const_cast<void *>(data);
    host::report_change(obj, "i18n_name");
}

void elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                            Eina_Bool can_highlight) {
    if (host::is_accessible(obj)) {
        // The toolkit has no such property. An object that is passed over in the tree of objects is
        // one where the highlight doesn't stop.
        efl_access_object_access_type_set(
            obj, can_highlight ? EFL_ACCESS_TYPE_REGULAR : EFL_ACCESS_TYPE_SKIPPED);
    }
}

void elm_atspi_bridge_utils_say(const char *text, Eina_Bool /*discardable*/,
                                const Elm_Atspi_Say_Signal_Cb /*func*/, const void * /*data*/) {
    if (text == nullptr || !host::screen_reader_enabled()) {
        return;
    }
    static std::atomic<bool> logged{false};
    if (!logged.exchange(true)) {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "No speech service: texts aren't spoken");
    }
}
