#include "app/exit_status.h"

#include <mutex>

#include "app/lifecycle.h"

namespace host {
namespace {

struct Fate {
    std::mutex mutex;
    std::optional<std::string> failure;
};

// Never destroyed: a thread of the player may report to the end.
Fate &fate() {
    static auto *const instance = new Fate;
    return *instance;
}

void set_failure(std::optional<std::string> failure) {
    const std::lock_guard lock(fate().mutex);
    fate().failure = std::move(failure);
}

}  // namespace

void begin_launch() {
    set_failure(std::nullopt);
}

std::optional<std::string> launch_failure() {
    const std::lock_guard lock(fate().mutex);
    return fate().failure;
}

void report_playback_failure(const std::string &why) {
    set_failure(why);
}

void report_playback_completed() {
    set_failure(std::nullopt);
}

}  // namespace host
