#pragma once

#include <gio/gio.h>

#include <functional>

namespace host {

/// Calls `ready` on the service thread with the machine's system bus, or with null and the reason
/// why there is none. Both are borrowed for the call. Nothing is waited for. Any thread.
void with_system_bus(std::function<void(GDBusConnection *bus, const char *why_not)> ready);

}  // namespace host
