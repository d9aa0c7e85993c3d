// What keeps the display on: the login manager or, without one, the desktop's screen saver. Both
// are mocks on buses of the test's own.

#include <Ecore.h>
#include <device/power.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "common/service_thread.h"
#include "log/log.h"
#include "messaging/session_bus.h"
#include "private_bus.h"

namespace {

constexpr const char *kName = "org.freedesktop.ScreenSaver";
constexpr const char *kPath = "/org/freedesktop/ScreenSaver";
constexpr const char *kMock = "org.freedesktop.DBus.Mock";

class DisplayLock : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ecore_init();
        session_ = std::make_unique<child::PrivateBus>();
        setenv("DBUS_SESSION_BUS_ADDRESS", session_->address().c_str(), 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
        connection_ = session_->connect();
    }
    static void TearDownTestSuite() {
        host::close_session_bus();
        host::stop_service_thread();
        connection_.reset();
        session_.reset();
        ecore_shutdown();
    }
    ~DisplayLock() override { device_power_release_lock(POWER_LOCK_DISPLAY); }

    void start_screen_saver() {
        saver_ = std::make_unique<child::MockService>(
            *session_, kName, std::vector<std::string>{"--session", kName, kPath, kName});
        add_method("Inhibit", "ss", "u", "ret = 4711");
        add_method("UnInhibit", "u", "", "");
    }
    static void add_method(const char *name, const char *in, const char *out, const char *code) {
        ASSERT_TRUE(child::call(connection_.get(), kName, kPath, kMock, "AddMethod",
                                g_variant_new("(sssss)", kName, name, in, out, code)));
    }
    /// The arguments of each call, as GVariant's text.
    static std::vector<std::string> calls(const char *method) {
        const host::GVariantPtr answer = child::call(
            connection_.get(), kName, kPath, kMock, "GetMethodCalls", g_variant_new("(s)", method));
        std::vector<std::string> texts;
        if (!answer) {
            return texts;
        }
        const host::GVariantPtr all(g_variant_get_child_value(answer.get(), 0));
        for (gsize i = 0; i < g_variant_n_children(all.get()); ++i) {
            const host::GVariantPtr call(g_variant_get_child_value(all.get(), i));
            const host::GVariantPtr arguments(g_variant_get_child_value(call.get(), 1));
            const host::GText text(g_variant_print(arguments.get(), FALSE));
            texts.emplace_back(text.get());
        }
        return texts;
    }

    static std::unique_ptr<child::PrivateBus> session_;
    static host::GObjectPtr<GDBusConnection> connection_;
    std::unique_ptr<child::MockService> saver_;
};

std::unique_ptr<child::PrivateBus> DisplayLock::session_;
host::GObjectPtr<GDBusConnection> DisplayLock::connection_;

using Texts = std::vector<std::string>;

TEST_F(DisplayLock, HoldsTheScreenSaverOffUntilItIsReleased) {
    start_screen_saver();
    EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, 0), DEVICE_ERROR_NONE);
    EXPECT_TRUE(child::comes([] { return !calls("Inhibit").empty(); }));
    EXPECT_EQ(calls("Inhibit"), Texts{"[<'Tessel'>, <'Playing a video'>]"});
    EXPECT_EQ(calls("UnInhibit"), Texts{});
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_NONE);
    EXPECT_TRUE(child::comes([] { return !calls("UnInhibit").empty(); }));
    EXPECT_EQ(calls("UnInhibit"), Texts{"[<uint32 4711>]"});
}

TEST_F(DisplayLock, ThatIsReleasedBeforeTheAnswerHoldsNothing) {
    start_screen_saver();
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    device_power_release_lock(POWER_LOCK_DISPLAY);
    // A later lock is asked for after whatever the first one still does.
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    EXPECT_TRUE(child::comes([] { return calls("Inhibit").size() > calls("UnInhibit").size(); }));
    device_power_release_lock(POWER_LOCK_DISPLAY);
    EXPECT_TRUE(child::comes([] { return calls("Inhibit").size() == calls("UnInhibit").size(); }));
}

TEST_F(DisplayLock, ThatIsReleasedWhileTheScreenSaverThinksIsGivenBackAtOnce) {
    start_screen_saver();
    const child::TemporaryFolder folder;
    const std::string asked = folder.path() + "/asked";
    const std::string answer = folder.path() + "/answer";
    const std::string code = "import os, time\nopen('" + asked +
                             "', 'w').close()\nwhile not os.path.exists('" + answer +
                             "'): time.sleep(0.005)\nret = 4712";
    add_method("Inhibit", "ss", "u", code.c_str());
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    ASSERT_TRUE(child::comes([&asked] { return std::filesystem::exists(asked); }));
    device_power_release_lock(POWER_LOCK_DISPLAY);
    std::ofstream{answer};
    EXPECT_TRUE(child::comes([] { return !calls("UnInhibit").empty(); }));
    EXPECT_EQ(calls("UnInhibit"), Texts{"[<uint32 4712>]"});
}

TEST_F(DisplayLock, OnAMachineWithoutAnyServiceIsAcceptedAndLoggedOnce) {
    ASSERT_TRUE(host::set_log_levels("HOST:warn"));
    testing::internal::CaptureStderr();
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, 0), DEVICE_ERROR_NONE);
        EXPECT_EQ(device_power_request_lock(POWER_LOCK_CPU, 0), DEVICE_ERROR_NONE);
        // The answers come to the service thread, by way of the session bus.
        start_screen_saver();
        EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_NONE);
        EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, 0), DEVICE_ERROR_NONE);
        EXPECT_TRUE(child::comes([] { return !calls("Inhibit").empty(); }));
        EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_NONE);
        EXPECT_EQ(device_power_release_lock(POWER_LOCK_CPU), DEVICE_ERROR_NONE);
        saver_.reset();
    }
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    EXPECT_NE(log.find("The machine can't be kept awake: "), std::string::npos) << log;
    ASSERT_TRUE(host::set_log_levels("off"));
}

TEST_F(DisplayLock, OfTheProcessorIsNoneOfTheScreenSavers) {
    start_screen_saver();
    device_power_request_lock(POWER_LOCK_CPU, 0);
    // Asked for later, so answered later.
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    EXPECT_TRUE(child::comes([] { return !calls("Inhibit").empty(); }));
    EXPECT_EQ(calls("Inhibit").size(), 1u);
    device_power_release_lock(POWER_LOCK_CPU);
}

// Last: GLib keeps the system bus once it has it.
TEST_F(DisplayLock, IsTheLoginManagersWhereThereIsOne) {
    const child::PrivateBus system;
    const child::MockService logind(system, "org.freedesktop.login1", {"--template", "logind"});
    setenv("DBUS_SYSTEM_BUS_ADDRESS", system.address().c_str(), 1);
    start_screen_saver();
    const auto bus = system.connect();
    const auto inhibitors = [&bus] {
        const host::GVariantPtr answer =
            child::call(bus.get(), "org.freedesktop.login1", "/org/freedesktop/login1",
                        "org.freedesktop.login1.Manager", "ListInhibitors", nullptr);
        const host::GText text(answer ? g_variant_print(answer.get(), FALSE) : nullptr);
        return std::string(text ? text.get() : "");
    };
    EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, 0), DEVICE_ERROR_NONE);
    EXPECT_TRUE(child::comes([&] {
        return inhibitors().find("'idle', 'Tessel', 'Playing a video', 'block'") !=
               std::string::npos;
    })) << inhibitors();
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_NONE);
    EXPECT_EQ(calls("Inhibit"), Texts{});
}

}  // namespace
