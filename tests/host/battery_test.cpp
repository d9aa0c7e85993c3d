// The battery as UPower tells it, over a system bus of the test's own.

#include "power/battery.h"

#include <Ecore.h>
#include <app.h>
#include <gtest/gtest.h>
#include <vconf.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

#include "common/service_thread.h"
#include "main_loop.h"
#include "private_bus.h"

namespace {

constexpr const char *kName = "org.freedesktop.UPower";
constexpr const char *kDevice = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char *kInterface = "org.freedesktop.UPower.Device";

// What UPower's interface numbers.
enum Warning : guint32 { kUnknown, kNone, kDischargingOnly, kLow, kCritical, kAction };
enum State : guint32 { kCharging = 1, kDischarging = 2, kFull = 4 };

int status() {
    int value = -1;
    vconf_get_int("memory/sysman/battery_status_low", &value);
    return value;
}

class Battery : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ecore_init();
        bus_ = std::make_unique<child::PrivateBus>();
        setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_->address().c_str(), 1);
        connection_ = bus_->connect();
    }
    static void TearDownTestSuite() {
        host::stop_service_thread();
        connection_.reset();
        bus_.reset();
        ecore_shutdown();
    }

    Battery() {
        ui_app_add_event_handler(
            &handler_, APP_EVENT_LOW_BATTERY,
            [](app_event_info_h, void *data) { ++*static_cast<int *>(data); }, &events_);
        testing::internal::CaptureStderr();
    }
    ~Battery() override {
        host::stop_battery_watch();
        ui_app_remove_event_handler(handler_);
        host::note_battery({});
        if (capturing_) {
            testing::internal::GetCapturedStderr();
        }
    }

    void start_upower() {
        upower_ = std::make_unique<child::MockService>(
            *bus_, kName,
            std::vector<std::string>{"--template", "upower", "-p",
                                     R"({"DaemonVersion":"0.99.20"})"});
    }
    // Both in one signal, as the daemon tells what changed together.
    static void set_battery(Warning warning, State state) {
        GVariantBuilder properties;
        g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
        g_variant_builder_add(&properties, "{sv}", "WarningLevel", g_variant_new_uint32(warning));
        g_variant_builder_add(&properties, "{sv}", "State", g_variant_new_uint32(state));
        ASSERT_TRUE(child::call(connection_.get(), kName, kDevice, "org.freedesktop.DBus.Mock",
                                "UpdateProperties",
                                g_variant_new("(sa{sv})", kInterface, &properties)));
    }
    static bool becomes(int expected) {
        return support::run_main_loop_until([expected] { return status() == expected; }, 30.0);
    }
    /// Starts the watch with UPower in this state, and waits until it has found that.
    void start_watch_with(Warning warning, State state, int expected) {
        start_upower();
        set_battery(warning, state);
        host::note_battery({});
        ASSERT_NE(status(), expected);
        host::start_battery_watch();
        ASSERT_TRUE(becomes(expected));
    }
    std::string lines() {
        capturing_ = false;
        return testing::internal::GetCapturedStderr();
    }

    static std::unique_ptr<child::PrivateBus> bus_;
    static host::GObjectPtr<GDBusConnection> connection_;
    std::unique_ptr<child::MockService> upower_;
    app_event_handler_h handler_ = nullptr;
    int events_ = 0;
    bool capturing_ = true;
};

std::unique_ptr<child::PrivateBus> Battery::bus_;
host::GObjectPtr<GDBusConnection> Battery::connection_;

TEST_F(Battery, ThatReachesTheCriticalLevelWhileDischargingRaisesTheEventWithOneLine) {
    start_watch_with(kLow, kDischarging, 3);
    set_battery(kCritical, kDischarging);
    EXPECT_TRUE(becomes(2));
    EXPECT_EQ(events_, 1);
    EXPECT_EQ(lines(), "tessel: the battery is critically low\n");
}

TEST_F(Battery, ThatGoesOnToTheActionLevelRaisesItAgain) {
    start_watch_with(kLow, kDischarging, 3);
    set_battery(kCritical, kDischarging);
    EXPECT_TRUE(becomes(2));
    set_battery(kAction, kDischarging);
    EXPECT_TRUE(becomes(1));
    EXPECT_EQ(events_, 2);
    EXPECT_EQ(lines(), "tessel: the battery is critically low\ntessel: the battery is empty\n");
}

TEST_F(Battery, ThatWasCriticalAtTheStartRaisesNothing) {
    start_watch_with(kCritical, kDischarging, 2);
    EXPECT_EQ(events_, 0);
    EXPECT_EQ(lines(), "");
}

TEST_F(Battery, ThatIsLowOrChargesRaisesNothing) {
    start_watch_with(kLow, kDischarging, 3);
    set_battery(kNone, kCharging);
    EXPECT_TRUE(becomes(4));
    set_battery(kLow, kDischarging);
    EXPECT_TRUE(becomes(3));
    set_battery(kCritical, kCharging);
    EXPECT_TRUE(becomes(4));
    EXPECT_EQ(events_, 0);
    EXPECT_EQ(lines(), "");
}

TEST_F(Battery, ThatIsCriticalWhenTheCableIsPulledRaisesTheEvent) {
    start_watch_with(kLow, kDischarging, 3);
    set_battery(kCritical, kCharging);
    EXPECT_TRUE(becomes(4));
    set_battery(kCritical, kDischarging);
    EXPECT_TRUE(becomes(2));
    EXPECT_EQ(events_, 1);
}

TEST_F(Battery, IsFoundWhenUPowerComesLaterAndAgain) {
    host::start_battery_watch();
    start_upower();
    set_battery(kLow, kDischarging);
    EXPECT_TRUE(becomes(3));
    upower_.reset();
    EXPECT_TRUE(becomes(4));
    start_upower();
    // Whether the watch sees this as found or as changed, a low battery is no alarm.
    set_battery(kLow, kDischarging);
    EXPECT_TRUE(becomes(3));
    set_battery(kCritical, kDischarging);
    EXPECT_TRUE(becomes(2));
    EXPECT_EQ(events_, 1);
}

TEST_F(Battery, OfAnUnknownKindCountsAsGood) {
    start_watch_with(kLow, kDischarging, 3);
    set_battery(static_cast<Warning>(77), kDischarging);
    EXPECT_TRUE(becomes(4));
    EXPECT_EQ(events_, 0);
}

TEST_F(Battery, IsNotWatchedAfterTheEnd) {
    start_watch_with(kLow, kDischarging, 3);
    host::stop_battery_watch();
    set_battery(kCritical, kDischarging);
    // Another watch sees it later than the first one would have.
    host::start_battery_watch();
    EXPECT_TRUE(becomes(2));
    EXPECT_EQ(events_, 0);
}

TEST_F(Battery, OfATesterIsAsGoodAsUPowers) {
    host::report_battery({host::BatteryLevel::low, true});
    EXPECT_EQ(status(), 3);
    host::report_battery({host::BatteryLevel::critical, false});
    EXPECT_EQ(status(), 4);
    EXPECT_EQ(events_, 0);
    host::report_battery({host::BatteryLevel::critical, true});
    EXPECT_EQ(status(), 2);
    host::report_battery({host::BatteryLevel::critical, true});
    EXPECT_EQ(events_, 1);
    EXPECT_EQ(lines(), "tessel: the battery is critically low\n");
}

}  // namespace
