#include <message_port.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "common/gobject.h"
#include "common/main_loop.h"
#include "common/service_thread.h"
#include "messaging/bundle_host.h"
#include "messaging/desktop_application.h"
#include "messaging/port_name.h"
#include "messaging/session_bus.h"

namespace host {
namespace {

constexpr int kAnswerTimeoutMs = 5000;
constexpr const char *kPath = "/com/orvane/tessel/MessagePort";
constexpr const char *kInterface = "com.orvane.tessel.MessagePort";
constexpr const char *kNoSuchPort = "org.freedesktop.DBus.Error.ServiceUnknown";
// Port, application of the sender, entries of the message.
constexpr const char *kIntrospection = R"xml(
<node><interface name="com.orvane.tessel.MessagePort"><method name="Send">
<arg type="ay" direction="in"/><arg type="s" direction="in"/>
<arg type="a(aybaay)" direction="in"/>
</method></interface></node>)xml";

constexpr guint32 kDoNotQueue = 4;
constexpr guint32 kPrimaryOwner = 1;
constexpr guint32 kAlreadyOwner = 4;

struct NodeUnref {
    void operator()(GDBusNodeInfo *info) const { g_dbus_node_info_unref(info); }
};

GVariantPtr ask_bus(GDBusConnection *bus, const char *method, GVariant *parameters) {
    return GVariantPtr(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
        parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, kAnswerTimeoutMs, nullptr, nullptr));
}

/// The ports that are open here. Main loop, but for received().
class LocalPorts {
public:
    int open(const std::string &port, const std::string &bus_name, message_port_message_cb callback,
             void *user_data) {
        const GObjectPtr<GDBusConnection> bus = session_bus();
        if (!bus) {
            return MESSAGE_PORT_ERROR_IO_ERROR;
        }
        serve(bus.get());
        const GVariantPtr answer =
            ask_bus(bus.get(), "RequestName", g_variant_new("(su)", bus_name.c_str(), kDoNotQueue));
        guint32 role = 0;
        if (!answer) {
            return MESSAGE_PORT_ERROR_IO_ERROR;
        }
        g_variant_get(answer.get(), "(u)", &role);
        if (role != kPrimaryOwner && role != kAlreadyOwner) {
            return MESSAGE_PORT_ERROR_RESOURCE_UNAVAILABLE;
        }
        const std::lock_guard lock(mutex_);
        Port &entry = ports_[port];
        if (entry.id == 0) {
            entry.id = ++last_id_;
        }
        entry.bus_name = bus_name;
        entry.callback = callback;
        entry.user_data = user_data;
        return entry.id;
    }

    int close(int id) {
        std::string bus_name;
        {
            const std::lock_guard lock(mutex_);
            auto entry = ports_.begin();
            while (entry != ports_.end() && entry->second.id != id) {
                ++entry;
            }
            if (entry == ports_.end()) {
                return MESSAGE_PORT_ERROR_PORT_NOT_FOUND;
            }
            bus_name = entry->second.bus_name;
            ports_.erase(entry);
        }
        if (bus_) {
            ask_bus(bus_.get(), "ReleaseName", g_variant_new("(s)", bus_name.c_str()));
        }
        return MESSAGE_PORT_ERROR_NONE;
    }

private:
    struct Port {
        int id = 0;
        std::string bus_name;
        message_port_message_cb callback = nullptr;
        void *user_data = nullptr;
    };
    struct Message {
        std::string port;
        std::string sender;
        bundle content;
    };

    /// Takes calls on this connection, a new one after the bus has been lost.
    void serve(GDBusConnection *bus) {
        if (bus_.get() == bus) {
            return;
        }
        bus_.reset(G_DBUS_CONNECTION(g_object_ref(bus)));
        run_on_service_thread([this] {
            const std::unique_ptr<GDBusNodeInfo, NodeUnref> node(
                g_dbus_node_info_new_for_xml(kIntrospection, nullptr));
            static const GDBusInterfaceVTable table{called, nullptr, nullptr, {}};
            g_dbus_connection_register_object(bus_.get(), kPath, node->interfaces[0], &table, this,
                                              nullptr, nullptr);
        });
    }

    static void called(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                       const gchar *, GVariant *parameters, GDBusMethodInvocation *invocation,
                       gpointer self) {
        static_cast<LocalPorts *>(self)->received(parameters, invocation);
    }

    /// Answers at once, however busy the main loop is. Service thread.
    void received(GVariant *parameters, GDBusMethodInvocation *invocation) {
        const auto message = std::make_shared<Message>();
        const char *port = nullptr;
        const char *sender = nullptr;
        GVariant *entries = nullptr;
        g_variant_get(parameters, "(^&ay&s@a(aybaay))", &port, &sender, &entries);
        const GVariantPtr owner(entries);
        message->port = port;
        message->sender = sender;
        bundle_from_variant(entries, message->content);
        {
            const std::lock_guard lock(mutex_);
            if (!ports_.contains(message->port)) {
                g_dbus_method_invocation_return_dbus_error(invocation, kNoSuchPort,
                                                           "The port is not open");
                return;
            }
        }
        post_to_main_loop([this, message] { deliver(*message); });
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    void deliver(Message &message) {
        Port port;
        {
            const std::lock_guard lock(mutex_);
            const auto found = ports_.find(message.port);
            if (found == ports_.end()) {
                return;
            }
            port = found->second;
        }
        port.callback(port.id, message.sender.empty() ? nullptr : message.sender.c_str(), nullptr,
                      false, &message.content, port.user_data);
    }

    std::mutex mutex_;
    std::map<std::string, Port> ports_;
    GObjectPtr<GDBusConnection> bus_;
    int last_id_ = 0;
};

// Never destroyed: a message may come while the process exits.
LocalPorts &local_ports() {
    static auto *const instance = new LocalPorts;
    return *instance;
}

int number_of(const GErrorPtr &error) {
    const bool absent =
        g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
        g_error_matches(error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE;
    return absent ? MESSAGE_PORT_ERROR_PORT_NOT_FOUND : MESSAGE_PORT_ERROR_IO_ERROR;
}

}  // namespace
}  // namespace host

int message_port_register_local_port(const char *local_port, message_port_message_cb callback,
                                     void *user_data) {
    const auto bus_name = host::port_bus_name(host::kOwnId, local_port);
    if (!bus_name || callback == nullptr) {
        return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
    }
    return host::local_ports().open(local_port, *bus_name, callback, user_data);
}

int message_port_unregister_local_port(int local_port_id) {
    return host::local_ports().close(local_port_id);
}

int message_port_check_remote_port(const char *remote_app_id, const char *remote_port,
                                   bool *exist) {
    const auto bus_name = host::port_bus_name(remote_app_id, remote_port);
    if (!bus_name || exist == nullptr) {
        return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
    }
    const host::GObjectPtr<GDBusConnection> bus = host::session_bus();
    const host::GVariantPtr answer =
        bus ? host::ask_bus(bus.get(), "NameHasOwner", g_variant_new("(s)", bus_name->c_str()))
            : nullptr;
    if (!answer) {
        return MESSAGE_PORT_ERROR_IO_ERROR;
    }
    gboolean owned = FALSE;
    g_variant_get(answer.get(), "(b)", &owned);
    *exist = owned != FALSE;
    return MESSAGE_PORT_ERROR_NONE;
}

int message_port_send_message(const char *remote_app_id, const char *remote_port, bundle *message) {
    const auto bus_name = host::port_bus_name(remote_app_id, remote_port);
    if (!bus_name || message == nullptr) {
        return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
    }
    const host::GObjectPtr<GDBusConnection> bus = host::session_bus();
    if (!bus) {
        return MESSAGE_PORT_ERROR_IO_ERROR;
    }
    host::GErrorPtr error;
    const host::GVariantPtr answer(g_dbus_connection_call_sync(
        bus.get(), bus_name->c_str(), host::kPath, host::kInterface, "Send",
        g_variant_new("(@ays@a(aybaay))", g_variant_new_bytestring(remote_port), host::kOwnId,
                      host::bundle_to_variant(*message)),
        nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, host::kAnswerTimeoutMs, nullptr,
        host::out(error)));
    return answer ? MESSAGE_PORT_ERROR_NONE : host::number_of(error);
}
