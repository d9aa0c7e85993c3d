#pragma once

#include <gio/gio.h>

#include <functional>
#include <optional>
#include <string>

#include "common/gobject.h"

namespace host {

/// The user's session bus. None is ever started, and one that doesn't answer counts as none after a
/// second.

/// Where the bus is, when there is one to be used. Any thread.
[[nodiscard]] std::optional<std::string> session_bus_address();

/// Calls `ready` on the service thread with the connection, or with null when there is none. It is
/// borrowed for the call. Any thread.
void with_session_bus(std::function<void(GDBusConnection *)> ready);

/// Waits for the connection; null when there is none. Not on the service thread.
[[nodiscard]] GObjectPtr<GDBusConnection> session_bus();

/// Opens a connection of the caller's own, a second member of the bus: another name owner, beside
/// the shared one. Waits for it; null when there is no bus. Not on the service thread.
[[nodiscard]] GObjectPtr<GDBusConnection> open_session_bus();

/// Sends what waits and closes the connection. Not on the service thread.
void close_session_bus();

}  // namespace host
