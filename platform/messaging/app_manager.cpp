#include <app_manager.h>

#include <memory>
#include <string>

#include "messaging/desktop_application.h"
#include "messaging/session_bus.h"

struct app_context_s {
    std::string app_id;
};

namespace {

constexpr int kAnswerTimeoutMs = 5000;

host::GVariantPtr ask(GDBusConnection *bus, const std::string &name, const std::string &path,
                      const char *interface, const char *method, GVariant *parameters) {
    return host::GVariantPtr(g_dbus_connection_call_sync(
        bus, name.c_str(), path.c_str(), interface, method, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, kAnswerTimeoutMs, nullptr, nullptr));
}

bool is_running(const std::string &app_id) {
    if (app_id == host::kOwnId) {
        return true;
    }
    const host::GObjectPtr<GDBusConnection> bus = host::session_bus();
    if (!bus || g_dbus_is_name(app_id.c_str()) == FALSE) {
        return false;
    }
    const host::GVariantPtr answer =
        ask(bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "NameHasOwner", g_variant_new("(s)", app_id.c_str()));
    gboolean owned = FALSE;
    if (answer) {
        g_variant_get(answer.get(), "(b)", &owned);
    }
    return owned != FALSE;
}

}  // namespace

int app_manager_get_app_context(const char *app_id, app_context_h *app_context) {
    if (app_id == nullptr || app_context == nullptr) {
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (!is_running(app_id)) {
        return APP_MANAGER_ERROR_NO_SUCH_APP;
    }
    *app_context = new app_context_s{app_id};
    return APP_MANAGER_ERROR_NONE;
}

int app_manager_resume_app(app_context_h app_context) {
    if (app_context == nullptr) {
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (app_context->app_id == host::kOwnId && host::own_application().raise) {
        host::own_application().raise();
        return APP_MANAGER_ERROR_NONE;
    }
    const host::GObjectPtr<GDBusConnection> bus = host::session_bus();
    const host::GVariantPtr answer =
        bus ? ask(bus.get(), app_context->app_id, host::object_path_of(app_context->app_id),
                  host::kApplicationInterface, "Activate", g_variant_new_parsed("(@a{sv} {},)"))
            : nullptr;
    return answer ? APP_MANAGER_ERROR_NONE : APP_MANAGER_ERROR_REQUEST_FAILED;
}

int app_context_destroy(app_context_h app_context) {
    if (app_context == nullptr) {
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    }
    delete app_context;
    return APP_MANAGER_ERROR_NONE;
}
