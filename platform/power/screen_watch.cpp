#include "power/screen_watch.h"

#include <array>
#include <cstdlib>
#include <list>
#include <memory>
#include <string>
#include <utility>

#include "app/lifecycle.h"
#include "common/gobject.h"
#include "common/main_loop.h"
#include "common/service_thread.h"
#include "messaging/bus_signal.h"
#include "messaging/session_bus.h"
#include "messaging/system_bus.h"

namespace host {
namespace {

constexpr const char *kLogin = "org.freedesktop.login1";
constexpr const char *kManagerPath = "/org/freedesktop/login1";
constexpr const char *kManager = "org.freedesktop.login1.Manager";
constexpr const char *kSession = "org.freedesktop.login1.Session";
/// logind's name for the session of who asks, or the one that its user looks at.
constexpr const char *kOwnSessionPath = "/org/freedesktop/login1/session/auto";
constexpr std::array kScreenSavers{"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"};

/// Lives on the service thread. Calls under way hold it weakly.
class ScreenWatch : public std::enable_shared_from_this<ScreenWatch> {
public:
    /// @param session_id  that of logind; empty where it isn't known
    explicit ScreenWatch(std::string session_id) : session_id_(std::move(session_id)) {}

    void join_system_bus(GDBusConnection *bus) {
        signals_.emplace_back(bus,
                              BusSignal::Source{.sender = kLogin,
                                                .path = kManagerPath,
                                                .interface = kManager,
                                                .name = "PrepareForSleep"},
                              [this](GVariant *parameters) { set(asleep_, parameters); });
        find_session(bus);
    }

    void join_session_bus(GDBusConnection *bus) {
        for (const char *const interface : kScreenSavers) {
            signals_.emplace_back(
                bus, BusSignal::Source{.interface = interface, .name = "ActiveChanged"},
                [this](GVariant *parameters) { set(locked_, parameters); });
        }
    }

private:
    using Answered = void (ScreenWatch::*)(GDBusConnection *bus, GVariant *answer);

    /// One call to logind, whose answer reaches `answered` unless it fails or the watch has ended.
    template <Answered answered>
    void call(GDBusConnection *bus, const char *path, const char *interface, const char *method,
              GVariant *parameters, const char *type) {
        g_dbus_connection_call(
            bus, kLogin, path, interface, method, parameters, G_VARIANT_TYPE(type),
            G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
            [](GObject *source, GAsyncResult *result, gpointer data) {
                const std::unique_ptr<std::weak_ptr<ScreenWatch>> watch(
                    static_cast<std::weak_ptr<ScreenWatch> *>(data));
                GDBusConnection *const from = G_DBUS_CONNECTION(source);
                const GVariantPtr answer(g_dbus_connection_call_finish(from, result, nullptr));
                const auto self = watch->lock();
                if (self && answer) {
                    (self.get()->*answered)(from, answer.get());
                }
            },
            std::make_unique<std::weak_ptr<ScreenWatch>>(weak_from_this()).release());
    }

    void find_session(GDBusConnection *bus) {
        if (!session_id_.empty()) {
            ask_for_session(bus, session_id_.c_str());
            return;
        }
        call<&ScreenWatch::session_named>(bus, kOwnSessionPath, "org.freedesktop.DBus.Properties",
                                          "Get", g_variant_new("(ss)", kSession, "Id"), "(v)");
    }

    void session_named(GDBusConnection *bus, GVariant *answer) {
        GVariant *value = nullptr;
        g_variant_get(answer, "(v)", &value);
        const GVariantPtr id(value);
        if (g_variant_is_of_type(id.get(), G_VARIANT_TYPE_STRING) != FALSE) {
            ask_for_session(bus, g_variant_get_string(id.get(), nullptr));
        }
    }

    void ask_for_session(GDBusConnection *bus, const char *id) {
        call<&ScreenWatch::session_found>(bus, kManagerPath, kManager, "GetSession",
                                          g_variant_new("(s)", id), "(o)");
    }

    void session_found(GDBusConnection *bus, GVariant *answer) {
        const char *path = nullptr;
        g_variant_get(answer, "(&o)", &path);
        for (const bool locked : {true, false}) {
            signals_.emplace_back(bus,
                                  BusSignal::Source{.sender = kLogin,
                                                    .path = path,
                                                    .interface = kSession,
                                                    .name = locked ? "Lock" : "Unlock"},
                                  [this, locked](GVariant *) { set(locked_, locked); });
        }
    }

    void set(bool &state, GVariant *parameters) {
        if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) != FALSE) {
            gboolean value = FALSE;
            g_variant_get(parameters, "(b)", &value);
            set(state, value != FALSE);
        }
    }

    void set(bool &state, bool value) {
        const bool was_off = asleep_ || locked_;
        state = value;
        const bool is_off = asleep_ || locked_;
        if (is_off != was_off) {
            post_to_main_loop(is_off ? screen_went_off : screen_came_on);
        }
    }

    const std::string session_id_;
    bool asleep_ = false;
    /// By the newest word: what locks the session need not be what unlocks it.
    bool locked_ = false;
    std::list<BusSignal> signals_;
};

// Service thread.
std::shared_ptr<ScreenWatch> &screen_watch() {
    static std::shared_ptr<ScreenWatch> watch;
    return watch;
}

/// The session that the process was started in, as its environment says.
std::string session_of_environment() {
    const char *const id = std::getenv("XDG_SESSION_ID");
    return id != nullptr && g_utf8_validate(id, -1, nullptr) != FALSE ? id : "";
}

}  // namespace

void start_screen_watch() {
    post_to_service_thread(
        [id = session_of_environment()] { screen_watch() = std::make_shared<ScreenWatch>(id); });
    with_system_bus([](GDBusConnection *bus, const char * /*why_not*/) {
        if (bus != nullptr && screen_watch()) {
            screen_watch()->join_system_bus(bus);
        }
    });
    with_session_bus([](GDBusConnection *bus) {
        if (bus != nullptr && screen_watch()) {
            screen_watch()->join_session_bus(bus);
        }
    });
}

void stop_screen_watch() {
    run_on_service_thread([] { screen_watch().reset(); });
}

}  // namespace host
