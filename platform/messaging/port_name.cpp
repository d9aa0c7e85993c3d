#include "messaging/port_name.h"

#include <gio/gio.h>

#include <cctype>
#include <cstring>

namespace host {
namespace {

constexpr std::size_t kLongestPort = 60;
constexpr const char *kDigits = "0123456789abcdef";

}  // namespace

std::optional<std::string> port_bus_name(const char *app_id, const char *port) {
    const std::size_t length = port != nullptr ? std::strlen(port) : 0;
    if (app_id == nullptr || length == 0 || length > kLongestPort) {
        return std::nullopt;
    }
    std::string name = std::string(app_id) + ".port_";
    for (const char *byte = port; *byte != '\0'; ++byte) {
        const auto value = static_cast<unsigned char>(*byte);
        // Not by the locale: the name is the same everywhere.
        if (value < 0x80 && (std::isalnum(value) != 0 || value == '-')) {
            name += *byte;
        } else {
            name += {'_', kDigits[value >> 4U], kDigits[value & 15U]};
        }
    }
    if (g_dbus_is_name(app_id) == FALSE || g_dbus_is_unique_name(app_id) != FALSE ||
        g_dbus_is_name(name.c_str()) == FALSE) {
        return std::nullopt;
    }
    return name;
}

}  // namespace host
