// Calls of services on a real bus, the test's own.

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "TslUtils.h"
#include "log_lines.h"

namespace {

/// Stands in for the system bus.
class ServiceCall : public testing::Test {
protected:
    static void SetUpTestSuite() {
        // GLib remembers the connection, but no failure, so this one comes first.
        setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
        answer_without_bus_ = call("GetId");
        bus_ = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(bus_);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(bus_), 1);
        connection_ = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
        ASSERT_NE(connection_, nullptr);
        // The bus ends before the test does.
        g_dbus_connection_set_exit_on_close(connection_, FALSE);
    }
    static void TearDownTestSuite() {
        g_clear_object(&connection_);
        g_test_dbus_stop(bus_);
        g_clear_object(&bus_);
    }

    static bool call(const char *method, GVariant *body = nullptr,
                     const char *name = "org.freedesktop.DBus") {
        return TslUtils::gdbusInvokeMethodSync(name, "/org/freedesktop/DBus",
                                               "org.freedesktop.DBus", method, body);
    }
    static bool owns(const char *name) {
        GVariant *answer = g_dbus_connection_call_sync(
            connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "NameHasOwner", g_variant_new("(s)", name), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
            nullptr, nullptr);
        gboolean owned = FALSE;
        g_variant_get(answer, "(b)", &owned);
        g_variant_unref(answer);
        return owned != FALSE;
    }

    static bool answer_without_bus_;
    static GTestDBus *bus_;
    static GDBusConnection *connection_;
};

bool ServiceCall::answer_without_bus_ = true;
GTestDBus *ServiceCall::bus_ = nullptr;
GDBusConnection *ServiceCall::connection_ = nullptr;

TEST_F(ServiceCall, WithoutABusIsFalse) {
    EXPECT_FALSE(answer_without_bus_);
}

TEST_F(ServiceCall, ThatIsAnsweredIsTrue) {
    EXPECT_TRUE(call("GetId"));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(ServiceCall, DeliversItsArguments) {
    EXPECT_FALSE(owns("org.example.Taken"));
    EXPECT_TRUE(call("RequestName", g_variant_new("(su)", "org.example.Taken", 0U)));
    EXPECT_TRUE(owns("org.example.Taken"));
}

TEST_F(ServiceCall, ThatTheServiceRefusesHasAReplyTooAndIsTrue) {
    EXPECT_TRUE(call("NoSuchMethod"));
    EXPECT_TRUE(call("GetId", nullptr, "org.example.NoSuchService"));
    EXPECT_TRUE(NoFaultLogged());
}

// Last, as it takes the bus away.
TEST_F(ServiceCall, ThatLosesItsBusIsFalse) {
    ASSERT_TRUE(g_dbus_connection_close_sync(connection_, nullptr, nullptr));
    EXPECT_FALSE(call("GetId"));
    EXPECT_TRUE(LoggedInOrder(
        {logs::error("* Critical * g_dbus_pConnection_send_message_with_pReply_sync() is failed."),
         logs::error("* Critical * pError [The connection is closed]"),
         logs::error("* Critical * invoke gdbus method failed")}));
}

}  // namespace
