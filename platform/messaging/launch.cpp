#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <utility>

#include "common/main_loop.h"
#include "messaging/desktop_application.h"
#include "messaging/session_bus.h"

namespace host {
namespace {

constexpr int kAnswerTimeoutMs = 5000;

struct ErrorNumber {
    GDBusError error;
    int number;
};
constexpr std::array<ErrorNumber, 9> kBusErrors{
    {{G_DBUS_ERROR_SERVICE_UNKNOWN, APP_CONTROL_ERROR_APP_NOT_FOUND},
     {G_DBUS_ERROR_NAME_HAS_NO_OWNER, APP_CONTROL_ERROR_APP_NOT_FOUND},
     {G_DBUS_ERROR_ACCESS_DENIED, APP_CONTROL_ERROR_PERMISSION_DENIED},
     {G_DBUS_ERROR_AUTH_FAILED, APP_CONTROL_ERROR_PERMISSION_DENIED},
     {G_DBUS_ERROR_NO_MEMORY, APP_CONTROL_ERROR_OUT_OF_MEMORY},
     {G_DBUS_ERROR_NO_REPLY, APP_CONTROL_ERROR_TIMED_OUT},
     {G_DBUS_ERROR_TIMEOUT, APP_CONTROL_ERROR_TIMED_OUT},
     {G_DBUS_ERROR_DISCONNECTED, APP_CONTROL_ERROR_LAUNCH_FAILED},
     {G_DBUS_ERROR_SPAWN_FAILED, APP_CONTROL_ERROR_LAUNCH_FAILED}}};

// A refusal is what the application itself answers; the rest is the bus's.
int number_of(const GError &error) {
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) {
        return APP_CONTROL_ERROR_TIMED_OUT;
    }
    if (error.domain != G_DBUS_ERROR) {
        return g_dbus_error_is_remote_error(&error) ? APP_CONTROL_ERROR_LAUNCH_REJECTED
                                                    : APP_CONTROL_ERROR_LAUNCH_FAILED;
    }
    const auto *known = std::find_if(
        kBusErrors.begin(), kBusErrors.end(),
        [&error](const ErrorNumber &entry) { return static_cast<int>(entry.error) == error.code; });
    return known != kBusErrors.end() ? known->number : APP_CONTROL_ERROR_LAUNCH_REJECTED;
}

int call_application(const std::string &app_id, const ApplicationCall &call, GDBusCallFlags flags) {
    const GVariantPtr parameters(g_variant_ref_sink(call.parameters));
    const GObjectPtr<GDBusConnection> bus = session_bus();
    if (!bus) {
        return APP_CONTROL_ERROR_LAUNCH_FAILED;
    }
    GErrorPtr error;
    const GVariantPtr answer(g_dbus_connection_call_sync(
        bus.get(), app_id.c_str(), object_path_of(app_id).c_str(), kApplicationInterface,
        call.method, parameters.get(), nullptr, flags, kAnswerTimeoutMs, nullptr, out(error)));
    return answer ? APP_CONTROL_ERROR_NONE : number_of(*error);
}

// The application that the desktop has chosen for the request's type or scheme.
std::optional<std::string> default_application(const app_control_s &request) {
    GObjectPtr<GAppInfo> info;
    if (request.mime) {
        info.reset(g_app_info_get_default_for_type(request.mime->c_str(), FALSE));
    } else if (request.uri && is_uri(*request.uri)) {
        const std::string scheme = request.uri->substr(0, request.uri->find(':'));
        info.reset(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
    }
    const char *id = info ? g_app_info_get_id(info.get()) : nullptr;
    constexpr std::string_view suffix = ".desktop";
    if (id == nullptr || !std::string_view(id).ends_with(suffix)) {
        return std::nullopt;
    }
    return std::string(id, std::string_view(id).size() - suffix.size());
}

// Applications launched from here, which alone may be asked to end. Main loop.
std::set<std::string> &launched() {
    static std::set<std::string> instance;
    return instance;
}

int launch(const std::string &app_id, const app_control_s &request) {
    if (app_id == kOwnId && own_application().launch) {
        // Over the bus this would wait for an answer that only the waiting main loop can give.
        own_application().launch(std::make_unique<app_control_s>(request));
        return APP_CONTROL_ERROR_NONE;
    }
    if (g_dbus_is_name(app_id.c_str()) == FALSE || app_id.starts_with(':')) {
        return APP_CONTROL_ERROR_APP_NOT_FOUND;
    }
    return call_application(app_id, call_for(request), G_DBUS_CALL_FLAGS_NONE);
}

// The desktop's interface has no answer beyond the acceptance.
void reply_started(AppControlPtr request, app_control_reply_cb callback, void *user_data) {
    const std::shared_ptr<app_control_s> kept = std::move(request);
    post_to_main_loop([kept, callback, user_data] {
        app_control_s reply;
        callback(kept.get(), &reply, APP_CONTROL_RESULT_APP_STARTED, user_data);
    });
}

}  // namespace
}  // namespace host

int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                    void *user_data) {
    if (app_control == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    auto request = std::make_unique<app_control_s>(*app_control);
    request->caller = host::kOwnId;
    if (!request->operation) {
        request->operation = APP_CONTROL_OPERATION_DEFAULT;
    }
    const auto app_id = request->app_id ? request->app_id : host::default_application(*request);
    if (!app_id) {
        return APP_CONTROL_ERROR_APP_NOT_FOUND;
    }
    const int result = host::launch(*app_id, *request);
    if (result == APP_CONTROL_ERROR_NONE) {
        host::launched().insert(*app_id);
        if (callback != nullptr) {
            host::reply_started(std::move(request), callback, user_data);
        }
    }
    return result;
}

int app_control_send_terminate_request(app_control_h app_control) {
    if (app_control == nullptr || !app_control->app_id) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const std::string &app_id = *app_control->app_id;
    if (!host::launched().contains(app_id)) {
        return APP_CONTROL_ERROR_PERMISSION_DENIED;
    }
    if (app_id == host::kOwnId && host::own_application().quit) {
        host::own_application().quit();
        return APP_CONTROL_ERROR_NONE;
    }
    const host::ApplicationCall quit{
        "ActivateAction", g_variant_new_parsed("(%s, @av [], @a{sv} {})", host::kQuitAction)};
    const int result = host::call_application(app_id, quit, G_DBUS_CALL_FLAGS_NO_AUTO_START);
    if (result == APP_CONTROL_ERROR_NONE) {
        host::launched().erase(app_id);
    }
    return result;
}
