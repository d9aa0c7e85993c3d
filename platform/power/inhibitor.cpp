#include "power/inhibitor.h"

#include <dlog.h>
#include <gio/gunixfdlist.h>

#include <atomic>
#include <optional>

#include "common/gobject.h"
#include "common/service_thread.h"
#include "common/unique_fd.h"
#include "messaging/session_bus.h"
#include "messaging/system_bus.h"

namespace host {
namespace {

constexpr const char *kWho = "Tessel";
constexpr const char *kWhy = "Playing a video";
constexpr const char *kIdle = "idle";

/// A request of the desktop's screen saver, which goes with the connection or when it is released.
struct ScreenSaverHold {
    static constexpr const char *name = "org.freedesktop.ScreenSaver";
    static constexpr const char *path = "/org/freedesktop/ScreenSaver";

    GObjectPtr<GDBusConnection> bus;
    guint32 cookie;

    ScreenSaverHold(GDBusConnection *bus_, guint32 cookie_)
        : bus(G_DBUS_CONNECTION(g_object_ref(bus_))), cookie(cookie_) {}
    ScreenSaverHold(const ScreenSaverHold &) = delete;
    ScreenSaverHold &operator=(const ScreenSaverHold &) = delete;
    ~ScreenSaverHold() {
        g_dbus_connection_call(bus.get(), name, path, name, "UnInhibit",
                               g_variant_new("(u)", cookie), nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
    }
};

}  // namespace

/// Lives on the service thread; the inhibitor holds it only to say that it is no longer wanted.
struct Inhibitor::Request : std::enable_shared_from_this<Request> {
    std::string what;
    std::atomic<bool> wanted{true};
    UniqueFd held;
    std::optional<ScreenSaverHold> screen_saver;
    std::string why_not_logind;

    explicit Request(std::string what_) : what(std::move(what_)) {}

    void start();
    void call_logind(GDBusConnection *bus);
    void take(GDBusConnection *bus, GAsyncResult *result);
    /// logind can't; `reason` says why.
    void fall_back(const char *reason);
    void call_screen_saver(GDBusConnection *bus);
    void take_cookie(GDBusConnection *bus, GAsyncResult *result);
    void release();
    static void log_absence(const std::string &reason);

    /// Keeps the request alive across an asynchronous call.
    gpointer hold() { return new std::shared_ptr<Request>(shared_from_this()); }
    static std::shared_ptr<Request> unhold(gpointer data) {
        std::unique_ptr<std::shared_ptr<Request>> holder(
            static_cast<std::shared_ptr<Request> *>(data));
        return *holder;
    }
};

void Inhibitor::Request::log_absence(const std::string &reason) {
    static std::atomic<bool> logged{false};
    if (!logged.exchange(true)) {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "The machine can't be kept awake: %s",
                     reason.c_str());
    }
}

void Inhibitor::Request::start() {
    with_system_bus([self = shared_from_this()](GDBusConnection *bus, const char *why_not) {
        if (bus == nullptr) {
            self->fall_back(why_not);
        } else if (self->wanted) {
            self->call_logind(bus);
        }
    });
}

void Inhibitor::Request::call_logind(GDBusConnection *bus) {
    g_dbus_connection_call_with_unix_fd_list(
        bus, "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
        "Inhibit", g_variant_new("(ssss)", what.c_str(), kWho, kWhy, "block"),
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
        fall_back(error ? error->message : "the answer holds no descriptor");
        return;
    }
    gint32 handle = -1;
    g_variant_get(reply.get(), "(h)", &handle);
    UniqueFd fd(g_unix_fd_list_get(list.get(), handle, nullptr));
    if (wanted) {
        held = std::move(fd);
    }
}

void Inhibitor::Request::fall_back(const char *reason) {
    if (what != kIdle) {
        log_absence(reason);
        return;
    }
    why_not_logind = reason;
    with_session_bus([self = shared_from_this()](GDBusConnection *bus) {
        if (bus == nullptr) {
            log_absence(self->why_not_logind);
        } else if (self->wanted) {
            self->call_screen_saver(bus);
        }
    });
}

void Inhibitor::Request::call_screen_saver(GDBusConnection *bus) {
    g_dbus_connection_call(
        bus, ScreenSaverHold::name, ScreenSaverHold::path, ScreenSaverHold::name, "Inhibit",
        g_variant_new("(ss)", kWho, kWhy), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NO_AUTO_START,
        -1, nullptr,
        [](GObject *source, GAsyncResult *result, gpointer data) {
            unhold(data)->take_cookie(G_DBUS_CONNECTION(source), result);
        },
        hold());
}

void Inhibitor::Request::take_cookie(GDBusConnection *bus, GAsyncResult *result) {
    GErrorPtr error;
    const GVariantPtr reply(g_dbus_connection_call_finish(bus, result, out(error)));
    if (!reply) {
        log_absence(why_not_logind + "; " + error->message);
        return;
    }
    guint32 cookie = 0;
    g_variant_get(reply.get(), "(u)", &cookie);
    // One that is no longer wanted goes with this request, at the end of this call.
    screen_saver.emplace(bus, cookie);
}

void Inhibitor::Request::release() {
    held.reset();
    screen_saver.reset();
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
        post_to_service_thread([request = std::move(request_)] { request->release(); });
    }
}

}  // namespace host
