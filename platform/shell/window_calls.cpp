// The toolkit's window calls that the program makes, answered for a window of the shell. Other
// windows, and the toolkit's own calls, take the usual road.

#include "shell/window_calls.h"

#include "app/lifecycle.h"
#include "shell/shell_instance.h"

#include <vector>

namespace {

constexpr char kTitle[] = "Tessel";

host::ProgramWindow *program_window_of(const Evas_Object *object) {
    host::Shell *shell = host::shell();
    return shell == nullptr ? nullptr : shell->find(object);
}

}  // namespace

extern "C" {

Evas_Object *__wrap_elm_win_add(Evas_Object *parent, const char *name, Elm_Win_Type type);
void __wrap_elm_win_lower(Evas_Object *obj);
void __wrap_elm_win_title_set(Evas_Object *obj, const char *title);
int __wrap_elm_win_rotation_get(const Evas_Object *obj);
Eina_Bool __wrap_elm_win_wm_rotation_supported_get(const Evas_Object *obj);
void __wrap_elm_win_wm_rotation_available_rotations_set(Evas_Object *obj, const int *rotations,
                                                        unsigned int count);
void __wrap_elm_win_screen_size_get(const Evas_Object *obj, int *x, int *y, int *w, int *h);

Evas_Object *__wrap_elm_win_add(Evas_Object *parent, const char *name, Elm_Win_Type type) {
    host::Shell *shell = host::shell();
    if (parent != nullptr || shell == nullptr) {
        return __real_elm_win_add(parent, name, type);
    }
    return shell->add_window(name);
}

void __wrap_elm_win_lower(Evas_Object *obj) {
    if (program_window_of(obj) != nullptr) {
        host::leave_foreground();
    } else {
        __real_elm_win_lower(obj);
    }
}

void __wrap_elm_win_title_set(Evas_Object *obj, const char *title) {
    // A screen reader says the window's title: one without must not be nameless.
    const bool unnamed = title == nullptr || *title == '\0';
    __real_elm_win_title_set(obj, unnamed && program_window_of(obj) != nullptr ? kTitle : title);
}

int __wrap_elm_win_rotation_get(const Evas_Object *obj) {
    const host::ProgramWindow *window = program_window_of(obj);
    return window != nullptr ? window->rotation() : __real_elm_win_rotation_get(obj);
}

Eina_Bool __wrap_elm_win_wm_rotation_supported_get(const Evas_Object *obj) {
    return program_window_of(obj) != nullptr ? EINA_TRUE
                                             : __real_elm_win_wm_rotation_supported_get(obj);
}

void __wrap_elm_win_wm_rotation_available_rotations_set(Evas_Object *obj, const int *rotations,
                                                        unsigned int count) {
    host::ProgramWindow *window = program_window_of(obj);
    if (window == nullptr) {
        __real_elm_win_wm_rotation_available_rotations_set(obj, rotations, count);
        return;
    }
    window->set_available_rotations(
        rotations == nullptr ? std::vector<int>() : std::vector<int>(rotations, rotations + count));
}

void __wrap_elm_win_screen_size_get(const Evas_Object *obj, int *x, int *y, int *w, int *h) {
    if (program_window_of(obj) == nullptr) {
        __real_elm_win_screen_size_get(obj, x, y, w, h);
        return;
    }
    const auto set = [](int *out, int value) {
        if (out != nullptr) {
            *out = value;
        }
    };
    const host::Rect &screen = host::shell()->geometry().screen;
    set(x, 0);
    set(y, 0);
    set(w, screen.w);
    set(h, screen.h);
}
}
