// Running applications as the session bus knows them: another one is a mock, this one is itself.

#include <app_manager.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "common/service_thread.h"
#include "messaging/desktop_application.h"
#include "messaging/session_bus.h"
#include "private_bus.h"

namespace {

constexpr const char *kOther = "org.example.Other-App";
constexpr const char *kOtherPath = "/org/example/Other_App";
constexpr const char *kInterface = "org.freedesktop.Application";

struct ContextDestroy {
    void operator()(app_context_h context) const { app_context_destroy(context); }
};
using Context = std::unique_ptr<app_context_s, ContextDestroy>;

class AppManager : public testing::Test {
protected:
    static void SetUpTestSuite() {
        bus_ = std::make_unique<child::PrivateBus>();
        setenv("DBUS_SESSION_BUS_ADDRESS", bus_->address().c_str(), 1);
        connection_ = bus_->connect();
    }
    static void TearDownTestSuite() {
        host::close_session_bus();
        host::stop_service_thread();
        connection_.reset();
        bus_.reset();
    }

    void start_other() {
        other_ = std::make_unique<child::MockService>(
            *bus_, kOther, std::vector<std::string>{"--session", kOther, kOtherPath, kInterface});
        ASSERT_TRUE(child::call(connection_.get(), kOther, kOtherPath, "org.freedesktop.DBus.Mock",
                                "AddMethod",
                                g_variant_new("(sssss)", kInterface, "Activate", "a{sv}", "", "")));
    }
    static gsize activations() {
        const host::GVariantPtr answer =
            child::call(connection_.get(), kOther, kOtherPath, "org.freedesktop.DBus.Mock",
                        "GetMethodCalls", g_variant_new("(s)", "Activate"));
        const host::GVariantPtr calls(answer ? g_variant_get_child_value(answer.get(), 0)
                                             : nullptr);
        return calls ? g_variant_n_children(calls.get()) : 0;
    }
    static Context context_of(const char *app_id, int expected = APP_MANAGER_ERROR_NONE) {
        app_context_h context = nullptr;
        EXPECT_EQ(app_manager_get_app_context(app_id, &context), expected);
        return Context(context);
    }

    static std::unique_ptr<child::PrivateBus> bus_;
    static host::GObjectPtr<GDBusConnection> connection_;
    std::unique_ptr<child::MockService> other_;
};

std::unique_ptr<child::PrivateBus> AppManager::bus_;
host::GObjectPtr<GDBusConnection> AppManager::connection_;

TEST_F(AppManager, KnowsAnApplicationWhileItRuns) {
    EXPECT_FALSE(context_of(kOther, APP_MANAGER_ERROR_NO_SUCH_APP));
    start_other();
    EXPECT_TRUE(context_of(kOther));
    other_.reset();
    EXPECT_TRUE(child::comes([] {
        app_context_h context = nullptr;
        const int result = app_manager_get_app_context(kOther, &context);
        const Context owner(context);
        return result == APP_MANAGER_ERROR_NO_SUCH_APP;
    }));
}

TEST_F(AppManager, BringsAnotherApplicationForward) {
    start_other();
    const Context context = context_of(kOther);
    EXPECT_EQ(app_manager_resume_app(context.get()), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(activations(), 1u);
}

TEST_F(AppManager, CannotBringForwardWhatHasEnded) {
    start_other();
    const Context context = context_of(kOther);
    other_.reset();
    EXPECT_EQ(app_manager_resume_app(context.get()), APP_MANAGER_ERROR_REQUEST_FAILED);
}

TEST_F(AppManager, DoesNotWaitForEverForWhatHangs) {
    start_other();
    const Context context = context_of(kOther);
    other_->process().send(SIGSTOP);
    EXPECT_EQ(app_manager_resume_app(context.get()), APP_MANAGER_ERROR_REQUEST_FAILED);
    other_->process().send(SIGCONT);
}

TEST_F(AppManager, BringsThisApplicationForwardWithoutTheBus) {
    int raised = 0;
    host::set_own_application({nullptr, nullptr, [&raised] { ++raised; }});
    const Context context = context_of("com.orvane.tessel");
    ASSERT_TRUE(context);
    EXPECT_EQ(app_manager_resume_app(context.get()), APP_MANAGER_ERROR_NONE);
    EXPECT_EQ(raised, 1);
    host::set_own_application({});
    EXPECT_EQ(app_manager_resume_app(context.get()), APP_MANAGER_ERROR_REQUEST_FAILED);
}

TEST_F(AppManager, RefusesWhatIsNoApplication) {
    app_context_h context = nullptr;
    EXPECT_EQ(app_manager_get_app_context(nullptr, &context), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_manager_get_app_context(kOther, nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_manager_resume_app(nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(app_context_destroy(nullptr), APP_MANAGER_ERROR_INVALID_PARAMETER);
    for (const char *app_id : {"", "name", "a b.c", "\xff.x"}) {
        EXPECT_FALSE(context_of(app_id, APP_MANAGER_ERROR_NO_SUCH_APP)) << app_id;
    }
    EXPECT_EQ(context, nullptr);
}

// Last, as it takes the bus away.
TEST_F(AppManager, KnowsNoOtherApplicationWithoutABus) {
    start_other();
    const Context context = context_of(kOther);
    bus_->kill();
    EXPECT_TRUE(child::comes([&context] {
        return app_manager_resume_app(context.get()) == APP_MANAGER_ERROR_REQUEST_FAILED;
    }));
    EXPECT_FALSE(context_of(kOther, APP_MANAGER_ERROR_NO_SUCH_APP));
}

}  // namespace
