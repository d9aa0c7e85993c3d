#include "power/battery.h"

#include <gio/gio.h>

#include <cstdio>
#include <memory>
#include <string>

#include "app/lifecycle.h"
#include "common/gobject.h"
#include "common/main_loop.h"
#include "common/service_thread.h"
#include "settings/settings.h"

namespace host {
namespace {

constexpr const char *kName = "org.freedesktop.UPower";
constexpr const char *kDevice = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char *kInterface = "org.freedesktop.UPower.Device";
constexpr const char *kStatusKey = "memory/sysman/battery_status_low";
constexpr guint32 kDischarging = 2;

/// The number that the system's settings have for a level.
const char *status_of(const BatteryState &state) {
    if (!state.discharging) {
        return "4";
    }
    switch (state.level) {
    case BatteryLevel::action:
        return "1";
    case BatteryLevel::critical:
        return "2";
    case BatteryLevel::low:
        return "3";
    default:
        return "4";
    }
}

BatteryLevel level_of(guint32 warning) {
    switch (warning) {
    case 1:
    case 2:  // discharging, of a battery that tells no level
        return BatteryLevel::none;
    case 3:
        return BatteryLevel::low;
    case 4:
        return BatteryLevel::critical;
    case 5:
        return BatteryLevel::action;
    default:
        return BatteryLevel::unknown;
    }
}

bool is_alarming(const BatteryState &state) {
    return state.discharging &&
           (state.level == BatteryLevel::critical || state.level == BatteryLevel::action);
}

// Main loop.
BatteryState &last_state() {
    static BatteryState state;
    return state;
}

/// The watch of UPower's one device for all batteries. Lives on the service thread.
class BatteryWatch {
public:
    BatteryWatch() {
        name_ = g_bus_watch_name(
            G_BUS_TYPE_SYSTEM, kName, G_BUS_NAME_WATCHER_FLAGS_NONE,
            [](GDBusConnection *bus, const gchar *, const gchar *, gpointer self) {
                static_cast<BatteryWatch *>(self)->appeared(bus);
            },
            [](GDBusConnection *bus, const gchar *, gpointer self) {
                static_cast<BatteryWatch *>(self)->vanished(bus);
            },
            this, nullptr);
    }
    ~BatteryWatch() {
        forget_device();
        g_bus_unwatch_name(name_);
    }
    BatteryWatch(const BatteryWatch &) = delete;
    BatteryWatch &operator=(const BatteryWatch &) = delete;

private:
    void appeared(GDBusConnection *bus) {
        // A bus that dies must not take the player with it.
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        cancellable_.reset(g_cancellable_new());
        g_dbus_proxy_new(
            bus, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, nullptr, kName, kDevice, kInterface,
            cancellable_.get(),
            [](GObject *, GAsyncResult *result, gpointer self) {
                GErrorPtr error;
                GObjectPtr<GDBusProxy> device(g_dbus_proxy_new_finish(result, out(error)));
                // A cancelled watch may be gone.
                if (device) {
                    static_cast<BatteryWatch *>(self)->found(std::move(device));
                }
            },
            this);
    }

    void vanished(GDBusConnection *bus) {
        forget_device();
        if (bus != nullptr) {
            post_to_main_loop([] { note_battery(BatteryState{}); });
        }
    }

    void found(GObjectPtr<GDBusProxy> device) {
        device_ = std::move(device);
        changed_ = g_signal_connect(device_.get(), "g-properties-changed",
                                    G_CALLBACK(+[](GDBusProxy *, GVariant *, GStrv, gpointer self) {
                                        const BatteryState state =
                                            static_cast<BatteryWatch *>(self)->state();
                                        post_to_main_loop([state] { report_battery(state); });
                                    }),
                                    this);
        post_to_main_loop([state = state()] { note_battery(state); });
    }

    [[nodiscard]] BatteryState state() const {
        const auto number = [this](const char *property) {
            const GVariantPtr value(g_dbus_proxy_get_cached_property(device_.get(), property));
            return value && g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32)
                       ? g_variant_get_uint32(value.get())
                       : 0U;
        };
        return {level_of(number("WarningLevel")), number("State") == kDischarging};
    }

    void forget_device() {
        if (cancellable_) {
            g_cancellable_cancel(cancellable_.get());
        }
        if (device_) {
            g_signal_handler_disconnect(device_.get(), changed_);
            device_.reset();
        }
    }

    guint name_ = 0;
    GObjectPtr<GCancellable> cancellable_;
    GObjectPtr<GDBusProxy> device_;
    gulong changed_ = 0;
};

// Service thread.
std::unique_ptr<BatteryWatch> &battery_watch() {
    static std::unique_ptr<BatteryWatch> watch;
    return watch;
}

}  // namespace

void start_battery_watch() {
    post_to_service_thread([] { battery_watch() = std::make_unique<BatteryWatch>(); });
}

void stop_battery_watch() {
    run_on_service_thread([] { battery_watch().reset(); });
}

void note_battery(const BatteryState &state) {
    last_state() = state;
    // This one is never written, so it can't fail.
    static_cast<void>(set_setting(kStatusKey, status_of(state)));
}

void report_battery(const BatteryState &state) {
    const BatteryState before = last_state();
    note_battery(state);
    if (!is_alarming(state) || (is_alarming(before) && before.level == state.level)) {
        return;
    }
    std::fputs(state.level == BatteryLevel::action ? "tessel: the battery is empty\n"
                                                   : "tessel: the battery is critically low\n",
               stderr);
    raise_app_event(APP_EVENT_LOW_BATTERY);
}

}  // namespace host
