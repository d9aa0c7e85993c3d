#define EFL_ACCESS_OBJECT_PROTECTED

#include <Elementary.h>
#include <dlog.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "access/screen_reader.h"
#include "access/speech.h"
#include "i18n/locale.h"

namespace host {
namespace {

constexpr char kNameSourceKey[] = "host::accessible_name";
constexpr std::string_view kPageClass = "Elm.Naviframe.Item";

bool is_accessible(const Eo *obj) {
    return obj != nullptr && efl_isa(obj, EFL_ACCESS_OBJECT_MIXIN);
}

/// The object that assistive technologies know `obj` as, or null. A page of a naviframe is known as
/// the widget around its content, and the page's own object as nothing.
Eo *accessible_of(Eo *obj) {
    if (obj != nullptr && kPageClass == efl_class_name_get(obj)) {
        Evas_Object *content = elm_object_item_content_get(obj);
        obj = content != nullptr ? elm_object_parent_widget_get(content) : nullptr;
    }
    return is_accessible(obj) ? obj : nullptr;
}

const char *say_signal(Spoken how) {
    switch (how) {
    case Spoken::whole:
        return "ReadingStopped";
    case Spoken::cancelled:
        return "ReadingCancelled";
    case Spoken::skipped:
        break;
    }
    return "ReadingSkipped";
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
    if (Eo *const target = host::accessible_of(obj)) {
        efl_access_object_i18n_name_set(target, name);
        host::report_change(target, "i18n_name");
    }
}

void elm_atspi_accessible_description_set(Elm_Interface_Atspi_Accessible *obj,
                                          const char *description) {
    if (Eo *const target = host::accessible_of(obj)) {
        efl_access_object_description_set(target, description);
        host::report_change(target, "description");
    }
}

void elm_atspi_accessible_role_set(Elm_Interface_Atspi_Accessible *obj, Elm_Atspi_Role role) {
    Eo *const target = host::accessible_of(obj);
    if (target != nullptr && role > EFL_ACCESS_ROLE_INVALID &&
        role < EFL_ACCESS_ROLE_LAST_DEFINED) {
        efl_access_object_role_set(target, static_cast<Efl_Access_Role>(role));
        host::report_change(target, "role");
    }
}

void elm_atspi_accessible_reading_info_type_set(Elm_Interface_Atspi_Accessible *obj,
                                                Elm_Accessible_Reading_Info_Type info) {
    if (Eo *const target = host::accessible_of(obj)) {
        efl_access_object_reading_info_type_set(target,
                                                static_cast<Efl_Access_Reading_Info_Type>(info));
    }
}

void elm_atspi_accessible_translation_domain_set(Elm_Interface_Atspi_Accessible *obj,
                                                 const char *domain) {
    if (Eo *const target = host::accessible_of(obj)) {
        efl_access_object_translation_domain_set(target, domain);
    }
}

void elm_atspi_accessible_name_cb_set(Elm_Interface_Atspi_Accessible *obj,
                                      Elm_Atspi_Reading_Info_Cb name_cb, const void *data) {
    Eo *const target = host::accessible_of(obj);
    if (target == nullptr) {
        return;
    }
    host::NameSource *source = host::NameSource::of(target);
    if (source == nullptr) {
        if (name_cb == nullptr) {
            return;
        }
        source = &host::add_name_source(target);
    }
    source->callback = name_cb;
    source->data = const_cast<void *>(data);
    host::report_change(target, "i18n_name");
}

void elm_atspi_accessible_can_highlight_set(Elm_Interface_Atspi_Accessible *obj,
                                            Eina_Bool can_highlight) {
    if (Eo *const target = host::accessible_of(obj)) {
        // The toolkit has no such property. An object that is passed over in the tree of objects is
        // one where the highlight doesn't stop.
        efl_access_object_access_type_set(
            target, can_highlight ? EFL_ACCESS_TYPE_REGULAR : EFL_ACCESS_TYPE_SKIPPED);
    }
}

void elm_atspi_bridge_utils_say(const char *text, Eina_Bool discardable,
                                const Elm_Atspi_Say_Signal_Cb func, const void *data) {
    if (text == nullptr || !host::screen_reader_enabled()) {
        return;
    }
    std::function<void(host::Spoken)> told;
    if (func != nullptr) {
        told = [func, data](host::Spoken how) {
            func(const_cast<void *>(data), host::say_signal(how));
        };
    }
    host::speak(text, host::current_language(), discardable != EINA_FALSE, std::move(told));
}
