#pragma once

#include <optional>
#include <string>

namespace host {

/// The bus name that stands for a port of an application, "com.orvane.tessel.port_NAME": owning it
/// is having the port open, so a process that ends has none. Bytes that a bus name can't hold
/// become "_" and two hexadecimal digits.
/// @return none for a null, empty or too long name and for what is no application's id
[[nodiscard]] std::optional<std::string> port_bus_name(const char *app_id, const char *port);

}  // namespace host
