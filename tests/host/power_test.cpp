// The power lock against a login manager on a private system bus. The manager is this file's own,
// since the real one needs a booted system; what passes between the two is real D-Bus, descriptors
// included.

#include <Ecore.h>
#include <device/power.h>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/gobject.h"
#include "common/service_thread.h"
#include "common/unique_fd.h"

namespace {

constexpr auto kDeadline = std::chrono::seconds(10);

constexpr const char *kInterface = R"(<node><interface name="org.freedesktop.login1.Manager">
  <method name="Inhibit"><arg type="s" direction="in"/><arg type="s" direction="in"/>
  <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="h" direction="out"/>
  </method></interface></node>)";

/// Grants every inhibitor and remembers what it was asked for. Thread: its own.
class LoginManager {
public:
    struct Grant {
        std::string what, who, why, mode;
        host::UniqueFd watch;  ///< hangs up when the taker has closed its end
    };

    explicit LoginManager(const char *address)
        : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE)) {
        thread_ = std::thread([this, address = std::string(address)] { run(address); });
        wait([this] { return ready_.load(); });
    }
    ~LoginManager() {
        g_main_loop_quit(loop_);
        g_main_context_wakeup(context_);
        thread_.join();
        g_main_loop_unref(loop_);
        g_main_context_unref(context_);
    }
    LoginManager(const LoginManager &) = delete;
    LoginManager &operator=(const LoginManager &) = delete;

    std::size_t granted() {
        const std::lock_guard lock(mutex_);
        return grants_.size();
    }
    Grant &last() {
        const std::lock_guard lock(mutex_);
        return *grants_.back();
    }
    bool held() {
        pollfd poll_fd{last().watch.get(), 0, 0};
        return poll(&poll_fd, 1, 0) == 0;
    }

    template <typename Condition>
    bool wait(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + kDeadline;
        while (std::chrono::steady_clock::now() < end) {
            if (condition()) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return false;
    }

private:
    void run(const std::string &address) {
        g_main_context_push_thread_default(context_);
        const host::GObjectPtr<GDBusConnection> bus(g_dbus_connection_new_for_address_sync(
            address.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
        GDBusNodeInfo *node = g_dbus_node_info_new_for_xml(kInterface, nullptr);
        const GDBusInterfaceVTable table = {on_call, nullptr, nullptr, {}};
        g_dbus_connection_register_object(bus.get(), "/org/freedesktop/login1", node->interfaces[0],
                                          &table, this, nullptr, nullptr);
        g_bus_own_name_on_connection(
            bus.get(), "org.freedesktop.login1", G_BUS_NAME_OWNER_FLAGS_NONE,
            [](GDBusConnection *, const gchar *, gpointer self) {
                static_cast<LoginManager *>(self)->ready_ = true;
            },
            nullptr, this, nullptr);
        g_main_loop_run(loop_);
        g_dbus_node_info_unref(node);
        g_main_context_pop_thread_default(context_);
    }

    static void on_call(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                        const gchar *, GVariant *parameters, GDBusMethodInvocation *invocation,
                        gpointer data) {
        const char *what = nullptr;
        const char *who = nullptr;
        const char *why = nullptr;
        const char *mode = nullptr;
        g_variant_get(parameters, "(&s&s&s&s)", &what, &who, &why, &mode);
        int ends[2] = {-1, -1};
        ASSERT_EQ(pipe(ends), 0);
        const host::UniqueFd given(ends[1]);
        const host::GObjectPtr<GUnixFDList> list(g_unix_fd_list_new());
        g_unix_fd_list_append(list.get(), given.get(), nullptr);

        auto *self = static_cast<LoginManager *>(data);
        {
            const std::lock_guard lock(self->mutex_);
            self->grants_.push_back(
                std::make_unique<Grant>(Grant{what, who, why, mode, host::UniqueFd(ends[0])}));
        }
        g_dbus_method_invocation_return_value_with_unix_fd_list(invocation, g_variant_new("(h)", 0),
                                                                list.get());
    }

    GMainContext *context_;
    GMainLoop *loop_;
    std::thread thread_;
    std::atomic<bool> ready_{false};
    std::mutex mutex_;
    std::vector<std::unique_ptr<Grant>> grants_;
};

class PowerLock : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ecore_init();
        bus_ = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(bus_);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(bus_), 1);
        manager_ = new LoginManager(g_test_dbus_get_bus_address(bus_));
    }
    static void TearDownTestSuite() {
        delete manager_;
        host::stop_service_thread();
        g_test_dbus_stop(bus_);
        g_object_unref(bus_);
        ecore_shutdown();
    }
    void TearDown() override { device_power_release_lock(POWER_LOCK_DISPLAY); }

    static bool granted_after(std::size_t before) {
        return manager_->wait([before] { return manager_->granted() > before; });
    }

    static GTestDBus *bus_;
    static LoginManager *manager_;
};

GTestDBus *PowerLock::bus_ = nullptr;
LoginManager *PowerLock::manager_ = nullptr;

TEST_F(PowerLock, DisplayLockBlocksIdleUntilItIsReleased) {
    const auto before = manager_->granted();
    EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, 0), DEVICE_ERROR_NONE);
    ASSERT_TRUE(granted_after(before));
    EXPECT_EQ(manager_->last().what, "idle");
    EXPECT_EQ(manager_->last().who, "Tessel");
    EXPECT_EQ(manager_->last().mode, "block");
    EXPECT_TRUE(manager_->held());

    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_NONE);
    EXPECT_TRUE(manager_->wait([] { return !manager_->held(); }));
}

TEST_F(PowerLock, ProcessorLockBlocksSleep) {
    const auto before = manager_->granted();
    EXPECT_EQ(device_power_request_lock(POWER_LOCK_CPU, 0), DEVICE_ERROR_NONE);
    ASSERT_TRUE(granted_after(before));
    EXPECT_EQ(manager_->last().what, "sleep");
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_CPU), DEVICE_ERROR_NONE);
}

TEST_F(PowerLock, OneReleaseEndsTwoRequests) {
    const auto before = manager_->granted();
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    ASSERT_TRUE(granted_after(before));
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_NONE);
    EXPECT_TRUE(manager_->wait([] { return !manager_->held(); }));
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_OPERATION_FAILED);
    EXPECT_EQ(manager_->granted(), before + 1);
}

TEST_F(PowerLock, ReleaseBeforeTheAnswerHoldsNothing) {
    const auto before = manager_->granted();
    device_power_request_lock(POWER_LOCK_DISPLAY, 0);
    device_power_release_lock(POWER_LOCK_DISPLAY);
    // A second request's answer comes after whatever the first one still brings.
    device_power_request_lock(POWER_LOCK_CPU, 0);
    ASSERT_TRUE(manager_->wait(
        [before] { return manager_->granted() > before && manager_->last().what == "sleep"; }));
    device_power_release_lock(POWER_LOCK_CPU);
    EXPECT_TRUE(manager_->wait([] { return !manager_->held(); }));
}

TEST_F(PowerLock, TimedLockEndsByItself) {
    const auto before = manager_->granted();
    EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, 50), DEVICE_ERROR_NONE);
    ASSERT_TRUE(granted_after(before));
    EXPECT_TRUE(manager_->wait([] {
        ecore_main_loop_iterate();
        return !manager_->held();
    }));
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_OPERATION_FAILED);
}

TEST_F(PowerLock, BadArgumentsAreRefused) {
    EXPECT_EQ(device_power_request_lock(static_cast<power_lock_e>(3), 0),
              DEVICE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(device_power_request_lock(POWER_LOCK_DISPLAY, -1), DEVICE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(device_power_release_lock(static_cast<power_lock_e>(3)),
              DEVICE_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(device_power_release_lock(POWER_LOCK_DISPLAY), DEVICE_ERROR_OPERATION_FAILED);
}

}  // namespace
