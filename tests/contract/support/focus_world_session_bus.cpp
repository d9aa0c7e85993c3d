#include <memory>

#include "focus_world.h"
#include "host/session_bus_daemon.h"
#include "sound/focus.h"

namespace focus_world {
namespace {

std::unique_ptr<SessionBusDaemon> bus;

}  // namespace

void begin() {
    bus = std::make_unique<SessionBusDaemon>();
    host::sound::use_focus(host::sound::create_session_bus_focus);
}

void end() {
    host::sound::use_focus(host::sound::create_builtin_focus);
    bus.reset();
}

}  // namespace focus_world
