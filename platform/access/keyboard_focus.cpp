#define EFL_ACCESS_OBJECT_PROTECTED
#define EFL_ACCESS_COMPONENT_PROTECTED

#include "access/keyboard_focus.h"

#include <Elementary.h>
#include <dlfcn.h>

#include "shell/object_tree.h"
#include "shell/shell.h"

namespace host {
namespace {

/// What the toolkit itself does under the name of one of its operations.
template <typename Operation>
Operation *toolkits(Operation & /*ours*/, const char *name) {
    return reinterpret_cast<Operation *>(dlsym(RTLD_NEXT, name));
}

void emit(Efl_Access_Object *accessible, const Efl_Event_Description *event, void *info) {
    static auto *const toolkits_own =
        toolkits(efl_access_object_event_emit, "efl_access_object_event_emit");
    toolkits_own(accessible, event, info);
}

/// Whether the shell, and not the toolkit, knows if the keyboard is at it.
bool is_button_of_shell(const Eo *object) {
    return program_window() != nullptr && efl_isa(object, EFL_CANVAS_OBJECT_CLASS) &&
           type_of(object) == "elm_button";
}

bool tells_of_focus(const Efl_Event_Description *event, const void *info) {
    return event == EFL_ACCESS_OBJECT_EVENT_STATE_CHANGED && info != nullptr &&
           static_cast<const Efl_Access_Event_State_Changed_Data *>(info)->type ==
               EFL_ACCESS_STATE_TYPE_FOCUSED;
}

}  // namespace

void report_keyboard_focus(Evas_Object *button, bool has_focus) {
    Efl_Access_Event_State_Changed_Data change{};
    change.type = EFL_ACCESS_STATE_TYPE_FOCUSED;
    change.new_value = has_focus ? EINA_TRUE : EINA_FALSE;
    emit(button, EFL_ACCESS_OBJECT_EVENT_STATE_CHANGED, &change);
}

}  // namespace host

// The toolkit calls these of its operations by name, so that a definition in the program takes its
// place for the toolkit too.

Efl_Access_State_Set efl_access_object_state_set_get(const Eo *obj) {
    static auto *const toolkits_own =
        host::toolkits(efl_access_object_state_set_get, "efl_access_object_state_set_get");
    Efl_Access_State_Set states = toolkits_own(obj);
    if (host::is_button_of_shell(obj)) {
        STATE_TYPE_UNSET(states, EFL_ACCESS_STATE_TYPE_FOCUSED);
        if (obj == host::focused_button()) {
            STATE_TYPE_SET(states, EFL_ACCESS_STATE_TYPE_FOCUSED);
        }
    }
    return states;
}

Eina_Bool efl_access_component_focus_grab(Eo *obj) {
    static auto *const toolkits_own =
        host::toolkits(efl_access_component_focus_grab, "efl_access_component_focus_grab");
    if (!host::is_button_of_shell(obj)) {
        return toolkits_own(obj);
    }
    return host::focus_button(obj) ? EINA_TRUE : EINA_FALSE;
}

void efl_access_object_event_emit(Efl_Access_Object *accessible, const Efl_Event_Description *event,
                                  void *event_info) {
    if (!host::tells_of_focus(event, event_info) || !host::is_button_of_shell(accessible)) {
        host::emit(accessible, event, event_info);
    }
}
