#include "power/inhibitor.h"

#include <dlog.h>
#include <gio/gunixfdlist.h>

#include <atomic>

#include "common/gobject.h"
#include "common/service_thread.h"
#include "common/unique_fd.h"

namespace host {

/// Lives on the service thread; the inhibitor holds it only to say that it is no longer wanted.
struct Inhibitor::Request : std::enable_shared_from_this<Request> {
    std::string what;
    std::atomic<bool> wanted{true};
    UniqueFd held;

    explicit Request(std::string what_) : what(std::move(what_)) {}

    void start();
    void call_logind(GDBusConnection *bus);
    void take(GDBusConnection *bus, GAsyncResult *result);
    static void log_absence(const char *reason);

    /// Keeps the request alive across an asynchronous call.
    gpointer hold() { return new std::shared_ptr<Request>(shared_from_this()); }
    static std::shared_ptr<Request> unhold(gpointer data) {
        std::unique_ptr<std::shared_ptr<Request>> holder(
            static_cast<std::shared_ptr<Request> *>(data));
        return *holder;
    }
};

void Inhibitor::Request::log_absence(const char *reason) {
    static std::atomic<bool> logged{false};
    if (!logged.exchange(true)) {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "The display can't be kept on: %s", reason);
    }
}

void Inhibitor::Request::start() {
    g_bus_get(
        G_BUS_TYPE_SYSTEM, nullptr,
        [](GObject *, GAsyncResult *result, gpointer data) {
            const auto self = unhold(data);
            GErrorPtr error;
            const GObjectPtr<GDBusConnection> bus(g_bus_get_finish(result, out(error)));
            if (!bus) {
                log_absence(error->message);
                return;
            }
            // A bus that dies must not take the player with it.
            g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
            if (self->wanted) {
                self->call_logind(bus.get());
            }
        },
        hold());
}

void Inhibitor::Request::call_logind(GDBusConnection *bus) {
    g_dbus_connection_call_with_unix_fd_list(
        bus, "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
        "Inhibit", g_variant_new("(ssss)", what.c_str(), "Tessel", "Playing a video", "block"),
        G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr,
        [](GObject *source, GAsyncResult *result, gpointer data) {
            unhold(data)->take(G_DBUS_CONNECTION(source), result);
        },
        hold());
}

void Inhibitor::Request::take(GDBusConnection *bus, GAsyncResult *result) {
    GErrorPtr error;
    GUnixFDList *raw_list = nullptr;
    const GVariantPtr reply(
        g_dbus_connection_call_with_unix_fd_list_finish(bus, &raw_list, result, out(error)));
    const GObjectPtr<GUnixFDList> list(raw_list);
    if (!reply || !list) {
        log_absence(error ? error->message : "the answer holds no descriptor");
        return;
    }
    gint32 handle = -1;
    g_variant_get(reply.get(), "(h)", &handle);
    UniqueFd fd(g_unix_fd_list_get(list.get(), handle, nullptr));
    if (wanted) {
        held = std::move(fd);
    }
}

Inhibitor::Inhibitor(const std::string &what) : request_(std::make_shared<Request>(what)) {
    post_to_service_thread([request = request_] {
        if (request->wanted) {
            request->start();
        }
    });
}

Inhibitor::~Inhibitor() {
    if (request_) {
        request_->wanted = false;
        post_to_service_thread([request = std::move(request_)] { request->held.reset(); });
    }
}

}  // namespace host
