#pragma once

#include <app_control.h>
#include <gio/gio.h>

#include <functional>
#include <string>

#include "messaging/app_control_host.h"

namespace host {

/// Applications on the session bus, as the desktop knows them: org.freedesktop.Application.

inline constexpr const char *kApplicationInterface = "org.freedesktop.Application";
/// Under this key of the platform data a request travels complete; what else the call carries is
/// for applications that don't know it.
inline constexpr const char *kRequestKey = "com.orvane.tessel.request";
/// Action that asks an application to end.
inline constexpr const char *kQuitAction = "quit";

/// Object path that goes with an application's id: "/com/orvane/tessel".
[[nodiscard]] std::string object_path_of(const std::string &app_id);

/// What is to be called to make an application do `request`; parameters are floating.
struct ApplicationCall {
    const char *method = nullptr;
    GVariant *parameters = nullptr;
};
[[nodiscard]] ApplicationCall call_for(const app_control_s &request);

/// The request that a call of Activate or Open carries; null when it carries none.
[[nodiscard]] AppControlPtr request_of(const std::string &method, GVariant *parameters);

/// Where a request to this process itself goes, instead of over the bus: set by the life cycle.
/// Main loop.
struct OwnApplication {
    std::function<void(AppControlPtr)> launch;
    std::function<void()> quit;
    std::function<void()> raise;
};
void set_own_application(OwnApplication own);
[[nodiscard]] const OwnApplication &own_application();

/// The id of this application: that of the player, unless the program was built with another.
extern const char *const kOwnId;

}  // namespace host
