#pragma once

#include <gio/gio.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>

#include "child_process.h"
#include "common/gobject.h"

namespace child {

/// A message bus of the test's own, ended with the object.
class PrivateBus {
public:
    PrivateBus()
        : daemon_({"dbus-daemon", "--session", "--nofork", "--print-address=1", "--address",
                   "unix:dir=" + folder_.path()},
                  {}) {
        EXPECT_TRUE(daemon_.prints("\n"));
        address_ = daemon_.output().substr(0, daemon_.output().find('\n'));
    }
    ~PrivateBus() {
        daemon_.send(SIGTERM);
        daemon_.wait();
    }

    [[nodiscard]] const std::string &address() const { return address_; }
    /// As the daemon's sudden end.
    void kill() { daemon_.send(SIGKILL); }

    [[nodiscard]] host::GObjectPtr<GDBusConnection> connect() const {
        return host::GObjectPtr<GDBusConnection>(g_dbus_connection_new_for_address_sync(
            address_.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
    }

private:
    TemporaryFolder folder_;
    Process daemon_;
    std::string address_;
};

/// A call with a deadline on a connection of the caller's. Null on failure.
inline host::GVariantPtr call(GDBusConnection *bus, const std::string &name,
                              const std::string &path, const std::string &interface,
                              const char *method, GVariant *parameters) {
    return host::GVariantPtr(g_dbus_connection_call_sync(
        bus, name.c_str(), path.c_str(), interface.c_str(), method, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, 20000, nullptr, nullptr));
}

inline bool has_owner(GDBusConnection *bus, const std::string &name) {
    const host::GVariantPtr answer =
        call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
             "NameHasOwner", g_variant_new("(s)", name.c_str()));
    gboolean owned = FALSE;
    if (answer) {
        g_variant_get(answer.get(), "(b)", &owned);
    }
    return owned != FALSE;
}

/// Asks again until it is so, or for so long. For what happens in other processes and threads.
[[nodiscard]] inline bool comes(const std::function<bool()> &condition) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// A mock of a system service, by python3-dbusmock, on a bus.
class MockService {
public:
    /// @param arguments  of "python3 -m dbusmock", behind the choice of the bus
    MockService(const PrivateBus &bus, const std::string &name,
                const std::vector<std::string> &arguments)
        : process_(command(arguments), {{"DBUS_SYSTEM_BUS_ADDRESS", bus.address()},
                                        {"DBUS_SESSION_BUS_ADDRESS", bus.address()}}) {
        const auto connection = bus.connect();
        EXPECT_TRUE(comes([&] { return has_owner(connection.get(), name); }))
            << "the mock of " << name << " did not start";
    }
    ~MockService() {
        process_.send(SIGTERM);
        process_.wait();
    }
    [[nodiscard]] Process &process() { return process_; }

private:
    static std::vector<std::string> command(const std::vector<std::string> &arguments) {
        // Debian's own, whatever else is in the path.
        std::vector<std::string> words{"/usr/bin/python3", "-m", "dbusmock"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return words;
    }

    Process process_;
};

}  // namespace child
