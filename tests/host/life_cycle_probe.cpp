// An application that tells on standard output what the life cycle does with it, one line each, and
// does in each callback what its environment asks for: PROBE_CREATE=exit, PROBE_CONTROL=fail and so
// on.

#include <Elementary.h>
#include <app.h>
#include <dlfcn.h>
#include <dlog.h>
#include <efl_extension.h>
#include <libintl.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>

#include "app/lifecycle.h"
#include "common/main_loop.h"

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
using Text = std::unique_ptr<char, Free>;

void tell(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

bool asked(const char *variable, const char *what) {
    const char *value = std::getenv(variable);
    return value != nullptr && std::strcmp(value, what) == 0;
}

bool has_threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks)) > 1;
}

std::string or_none(const char *text) {
    return text != nullptr ? text : "(none)";
}

std::string field(app_control_h request, int (*get)(app_control_h, char **)) {
    char *text = nullptr;
    const bool got = get(request, &text) == APP_CONTROL_ERROR_NONE;
    const Text owner(text);
    return got ? or_none(text) : "(error)";
}

std::string extra(app_control_h request, const char *key) {
    char *text = nullptr;
    const bool got = app_control_get_extra_data(request, key, &text) == APP_CONTROL_ERROR_NONE;
    const Text owner(text);
    return got ? or_none(text) : "(none)";
}

void tell_locale() {
    tell("language " + or_none(std::getenv("LANGUAGE")) + " messages " +
         or_none(std::setlocale(LC_MESSAGES, nullptr)) + " letters " +
         or_none(std::setlocale(LC_CTYPE, nullptr)) + " numbers " +
         or_none(std::setlocale(LC_NUMERIC, nullptr)) + " domain " + or_none(textdomain(nullptr)));
}

void add_window() {
    Evas_Object *window = elm_win_add(nullptr, "probe", ELM_WIN_BASIC);
    elm_win_fullscreen_set(window, EINA_TRUE);
    evas_object_show(window);
    if (asked("PROBE_CREATE", "popup")) {
        Evas_Object *popup = elm_popup_add(window);
        eext_object_event_callback_add(
            popup, EEXT_CALLBACK_BACK,
            [](void *, Evas_Object *, void *) {
                tell("back");
                elm_exit();
            },
            nullptr);
        evas_object_show(popup);
    }
}

bool create(void *) {
    tell("create");
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "PROBE", "created");
    tell_locale();
    if (asked("PROBE_CREATE", "exit")) {
        elm_exit();
    }
    if (asked("PROBE_CREATE", "signals")) {
        raise(SIGTERM);
        raise(SIGTERM);
    }
    if (asked("PROBE_CREATE", "refuse")) {
        return false;
    }
    add_window();
    return true;
}

void terminate(void *) {
    tell("terminate");
    if (asked("PROBE_TERMINATE", "slow")) {
        // Until the next signal, or so long that the test has seen what it is about.
        usleep(20000000);
    }
}

void pause(void *) {
    tell("pause");
    if (!asked("PROBE_PAUSE", "stay")) {
        elm_exit();
    }
}

void resume(void *) {
    tell("resume");
}

void control(app_control_h request, void *) {
    tell("control operation " + field(request, app_control_get_operation) + " uri " +
         field(request, app_control_get_uri) + " path " + extra(request, APP_CONTROL_DATA_PATH) +
         " mime " + field(request, app_control_get_mime) + " colour " + extra(request, "colour") +
         " caller " + field(request, app_control_get_caller));
    if (asked("PROBE_CONTROL", "exit")) {
        elm_exit();
    } else if (asked("PROBE_CONTROL", "fail")) {
        host::report_playback_failure("cannot play clip.mp4: no such file");
        elm_exit();
    } else if (asked("PROBE_CONTROL", "complete")) {
        host::report_playback_failure("cannot play clip.mp4: no such file");
        host::report_playback_completed();
        elm_exit();
    } else if (asked("PROBE_CONTROL", "home")) {
        host::post_to_main_loop(host::leave_foreground);
    }
}

}  // namespace

int main(int argc, char **argv) {
    ui_app_lifecycle_callback_s callbacks{create, terminate, pause, resume, control};
    const int status = ui_app_main(argc, argv, &callbacks, nullptr);
    tell("returned " + std::to_string(status));
    return status;
}

/// In the place of the C library's: another thread may be reading the environment.
extern "C" int setenv(const char *name, const char *value, int replace) noexcept {
    using Setenv = int (*)(const char *, const char *, int);
    static const auto real = reinterpret_cast<Setenv>(dlsym(RTLD_NEXT, "setenv"));
    if (has_threads()) {
        tell(std::string("changed beside threads: ") + name);
    }
    return real(name, value, replace);
}
