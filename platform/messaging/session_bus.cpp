#include "messaging/session_bus.h"

#include <sys/stat.h>

#include <cstdlib>
#include <future>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "common/service_thread.h"

namespace host {
namespace {

constexpr guint kConnectTimeoutMs = 1000;

struct SourceDestroy {
    void operator()(GSource *source) const {
        g_source_destroy(source);
        g_source_unref(source);
    }
};
using SourcePtr = std::unique_ptr<GSource, SourceDestroy>;

constexpr auto kClientFlags = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

/// Cancels, on the service thread, once an attempt to connect has taken too long.
SourcePtr start_timeout(GCancellable *cancellable) {
    SourcePtr timeout(g_timeout_source_new(kConnectTimeoutMs));
    g_source_set_callback(
        timeout.get(),
        [](gpointer late) -> gboolean {
            g_cancellable_cancel(G_CANCELLABLE(late));
            return G_SOURCE_REMOVE;
        },
        g_object_ref(cancellable), &g_object_unref);
    g_source_attach(timeout.get(), service_context());
    return timeout;
}

// All of it lives on the service thread.
class SessionBus {
public:
    using Ready = std::function<void(GDBusConnection *)>;

    void with(Ready ready) {
        if (connection_ && !g_dbus_connection_is_closed(connection_.get())) {
            ready(connection_.get());
            return;
        }
        waiting_.push_back(std::move(ready));
        if (!cancellable_) {
            connect();
        }
    }

    void close() {
        closed_ = true;
        if (cancellable_) {
            g_cancellable_cancel(cancellable_.get());
        }
        finish(nullptr);
        if (connection_) {
            g_dbus_connection_flush_sync(connection_.get(), nullptr, nullptr);
            g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
            connection_.reset();
        }
    }

private:
    void connect() {
        connection_.reset();
        const auto address = closed_ ? std::nullopt : session_bus_address();
        if (!address) {
            finish(nullptr);
            return;
        }
        cancellable_.reset(g_cancellable_new());
        timeout_ = start_timeout(cancellable_.get());
        g_dbus_connection_new_for_address(
            address->c_str(), kClientFlags, nullptr, cancellable_.get(),
            [](GObject *, GAsyncResult *result, gpointer self) {
                static_cast<SessionBus *>(self)->connected(result);
            },
            this);
    }

    void connected(GAsyncResult *result) {
        GObjectPtr<GDBusConnection> connection(
            g_dbus_connection_new_for_address_finish(result, nullptr));
        timeout_.reset();
        cancellable_.reset();
        if (connection && !closed_) {
            connection_ = std::move(connection);
        }
        finish(connection_.get());
    }

    void finish(GDBusConnection *connection) {
        for (const Ready &ready : std::exchange(waiting_, {})) {
            ready(connection);
        }
    }

    GObjectPtr<GDBusConnection> connection_;
    GObjectPtr<GCancellable> cancellable_;
    SourcePtr timeout_;
    std::vector<Ready> waiting_;
    bool closed_ = false;
};

// Never destroyed, as an answer may come while the process exits; close() frees what it holds.
SessionBus &bus() {
    static auto *const instance = new SessionBus;
    return *instance;
}

}  // namespace

std::optional<std::string> session_bus_address() {
    const char *address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') {
        // "autolaunch:" would start a bus for nobody else to be on.
        const bool usable = std::string_view(address).starts_with("unix:") ||
                            std::string_view(address).starts_with("tcp:");
        return usable ? std::optional<std::string>(address) : std::nullopt;
    }
    const char *folder = std::getenv("XDG_RUNTIME_DIR");
    struct stat status {};
    const std::string socket = std::string(folder != nullptr ? folder : "") + "/bus";
    if (folder == nullptr || stat(socket.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return std::nullopt;
    }
    const std::unique_ptr<char, decltype(&g_free)> escaped(
        g_dbus_address_escape_value(socket.c_str()), &g_free);
    return std::string("unix:path=") + escaped.get();
}

void with_session_bus(std::function<void(GDBusConnection *)> ready) {
    post_to_service_thread([ready = std::move(ready)]() mutable { bus().with(std::move(ready)); });
}

GObjectPtr<GDBusConnection> session_bus() {
    if (!session_bus_address()) {
        return nullptr;
    }
    const auto promise = std::make_shared<std::promise<GDBusConnection *>>();
    std::future<GDBusConnection *> connection = promise->get_future();
    with_session_bus([promise](GDBusConnection *ready) {
        promise->set_value(ready != nullptr ? G_DBUS_CONNECTION(g_object_ref(ready)) : nullptr);
    });
    try {
        return GObjectPtr<GDBusConnection>(connection.get());
    } catch (const std::future_error &) {
        // The service thread has ended without calling back.
        return nullptr;
    }
}

GObjectPtr<GDBusConnection> open_session_bus() {
    const auto address = session_bus_address();
    if (!address) {
        return nullptr;
    }
    const GObjectPtr<GCancellable> cancellable(g_cancellable_new());
    const SourcePtr timeout = start_timeout(cancellable.get());
    return GObjectPtr<GDBusConnection>(g_dbus_connection_new_for_address_sync(
        address->c_str(), kClientFlags, nullptr, cancellable.get(), nullptr));
}

void close_session_bus() {
    run_on_service_thread([] { bus().close(); });
}

}  // namespace host
