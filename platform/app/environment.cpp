#include "app/environment.h"

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/unique_fd.h"
#include "i18n/locale.h"
#include "log/log.h"
#include "messaging/session_bus.h"

namespace host {
namespace {

constexpr int kKeep = 0;
constexpr int kReplace = 1;

/// Empty, too, when there is no such variable.
std::string variable(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

void choose_engine(Options &options) {
    if (options.headless) {
        setenv("ELM_ENGINE", "buffer", kReplace);
    } else if (variable("DISPLAY").empty() && variable("WAYLAND_DISPLAY").empty()) {
        setenv("ELM_ENGINE", "buffer", kKeep);
    } else if (variable("DISPLAY").empty()) {
        setenv("ELM_DISPLAY", "wl", kKeep);
        setenv("ELM_ENGINE", "wayland_shm", kKeep);
    }
    options.headless = variable("ELM_ENGINE") == "buffer";
}

/// Without one, the toolkit of the superuser would make its folders in the root of the machine.
void find_home() {
    if (!variable("HOME").empty()) {
        return;
    }
    const passwd *const user = getpwuid(getuid());
    if (user != nullptr && user->pw_dir != nullptr) {
        setenv("HOME", user->pw_dir, kReplace);
    }
}

void set_up_log(const Options &options) {
    if (options.log) {
        // The command line has been accepted with it.
        static_cast<void>(set_log_levels(*options.log));
    } else if (const std::string levels = variable("TESSEL_LOG");
               !levels.empty() && !is_log_spec(levels)) {
        std::fprintf(stderr, "tessel: TESSEL_LOG is not understood, nothing is logged: '%s'\n",
                     levels.c_str());
    }
}

/// While there are threads, the kernel replaces the table of descriptors by a larger one only when
/// none of them can be reading it, and all that open a file wait for that: tens of milliseconds of
/// the start.
void grow_descriptor_table() {
    constexpr int kMoreThanAPlaybackNeeds = 511;
    const UniqueFd any(open("/dev/null", O_RDONLY | O_CLOEXEC));
    const UniqueFd highest(fcntl(any.get(), F_DUPFD_CLOEXEC, kMoreThanAPlaybackNeeds));
}

}  // namespace

// All of it before there is any other thread, which may be reading the environment.
void prepare_environment(Options &options) {
    set_up_log(options);
    find_home();
    // Without a system bus the toolkit prints pages that tell the user nothing.
    setenv("EINA_LOG_LEVEL", "0", kKeep);
    setenv("EINA_LOG_BACKTRACE", "-1", kKeep);
    // They speak to the system bus while the process waits, without end when it doesn't answer, and
    // what they learn there the host asks for itself.
    setenv("ECORE_NO_SYSTEM_MODULES", "1", kKeep);
    // A frame is drawn in less time than it takes to hand it to the toolkit's drawing thread.
    setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", kKeep);
    choose_engine(options);
    if (!session_bus_address()) {
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", kReplace);
    }
    start_locale();
    grow_descriptor_table();
}

void occupy_standard_descriptors() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(fd, F_GETFD) < 0) {
            // The lowest free number, which is this one.
            static_cast<void>(open("/dev/null", O_RDWR));
        }
    }
}

}  // namespace host
