#include "app-assist/WServiceApp.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app-assist/WServiceAppEventHandler.h"
#include "log_lines.h"
#include "mock_platform/mock_service_app.h"
#include "mock_platform/mock_ui_app.h"
#include "vtable_slot.h"

namespace {

using app_assist::WServiceApp;
using app_assist::WServiceAppEventHandler;
using support::vtable_slot;
using Journal = std::vector<std::string>;

/// The operations as a derived class names them.
struct Operations : WServiceApp {
    using WServiceApp::onAppControl;
    using WServiceApp::onCreate;
    using WServiceApp::onStart;
    using WServiceApp::onTerminate;
    static void check() {
        // The destructors have the slots 0 and 1.
        EXPECT_EQ(vtable_slot(&Operations::onStart), 2U);
        EXPECT_EQ(vtable_slot(&Operations::onCreate), 3U);
        EXPECT_EQ(vtable_slot(&Operations::onTerminate), 4U);
        EXPECT_EQ(vtable_slot(&Operations::onAppControl), 5U);
    }
};

class Service : public WServiceApp {
public:
    explicit Service(Journal &journal) : m_journal(journal) {}

    bool create_result = true;
    std::function<void(app_control_h)> in_app_control;

protected:
    bool onCreate() override {
        m_journal.emplace_back("create");
        return create_result;
    }
    void onTerminate() override { m_journal.emplace_back("terminate"); }
    void onAppControl(app_control_h request, bool first) override {
        m_journal.emplace_back(first ? "first request" : "later request");
        if (in_app_control) {
            in_app_control(request);
        }
    }

private:
    Journal &m_journal;
};

using Callbacks = service_app_lifecycle_callback_s;

class ServiceAppTest : public testing::Test {
protected:
    /// Runs the service, with the test as its platform.
    int run(WServiceApp &app, std::function<int(Callbacks &, void *)> platform) {
        EXPECT_CALL(mock::service_app(), service_app_main)
            .WillOnce([&](int, char **, Callbacks *callbacks, void *data) {
                return platform(*callbacks, data);
            });
        char name[] = "service";
        char *argv[] = {name, nullptr};
        return app.start(1, argv);
    }

    Journal m_journal;
};

TEST(ServiceApp, OperationsStandInTheirOrder) {
    Operations::check();
}

TEST_F(ServiceAppTest, StartGivesArgumentsToThePlatformAndItsResultBack) {
    Service app(m_journal);
    char name[] = "service";
    char *argv[] = {name, nullptr};
    EXPECT_CALL(mock::service_app(), service_app_main(1, argv, testing::NotNull(), &app))
        .WillOnce([](int, char **, Callbacks *callbacks, void *) {
            EXPECT_NE(callbacks->create, nullptr);
            EXPECT_NE(callbacks->terminate, nullptr);
            EXPECT_NE(callbacks->app_control, nullptr);
            return 42;
        });
    EXPECT_EQ(app.start(1, argv), 42);
}

TEST_F(ServiceAppTest, StartRunsTheVirtualOnStart) {
    struct OwnStart : WServiceApp {
        int onStart(int argc, char *[]) override { return argc + 1; }
    } app;
    EXPECT_CALL(mock::service_app(), service_app_main).Times(0);
    EXPECT_EQ(app.start(6, nullptr), 7);
}

TEST_F(ServiceAppTest, EachPlatformEventIsOneCall) {
    Service app(m_journal);
    auto *const request = reinterpret_cast<app_control_h>(this);
    app_control_h seen = nullptr;
    app.in_app_control = [&](app_control_h given) { seen = given; };
    run(app, [&](Callbacks &callbacks, void *data) {
        EXPECT_TRUE(callbacks.create(data));
        callbacks.app_control(request, data);
        callbacks.app_control(request, data);
        callbacks.terminate(data);
        return 0;
    });
    EXPECT_EQ(seen, request);
    EXPECT_EQ(m_journal, (Journal{"create", "first request", "later request", "terminate"}));
}

TEST_F(ServiceAppTest, RefusedCreationIsToldToThePlatform) {
    Service app(m_journal);
    app.create_result = false;
    run(app, [](Callbacks &callbacks, void *data) {
        EXPECT_FALSE(callbacks.create(data));
        return 0;
    });
}

TEST_F(ServiceAppTest, FlagIsClearedAfterTheFirstRequestHasRun) {
    Service app(m_journal);
    bool nested = false;
    run(app, [&](Callbacks &callbacks, void *data) {
        app.in_app_control = [&](app_control_h) {
            if (!std::exchange(nested, true)) {
                callbacks.app_control(nullptr, data);
            }
        };
        callbacks.app_control(nullptr, data);
        callbacks.app_control(nullptr, data);
        return 0;
    });
    EXPECT_EQ(m_journal, (Journal{"first request", "first request", "later request"}));
}

TEST_F(ServiceAppTest, DefaultsDoNothingAndAcceptCreation) {
    WServiceApp app;
    run(app, [](Callbacks &callbacks, void *data) {
        EXPECT_TRUE(callbacks.create(data));
        callbacks.app_control(nullptr, data);
        callbacks.terminate(data);
        return 0;
    });
    EXPECT_TRUE(NoFaultLogged(logs::framework_tag));
}

// ---- system events

class ServiceEventTest : public testing::Test {
protected:
    FakeUiApp &platform() { return mock::fake_ui_app(); }
};

TEST_F(ServiceEventTest, SubscriberGetsTheEventAndItsData) {
    WServiceAppEventHandler handler;
    int data = 0;
    app_event_info_h info = nullptr;
    void *seen = nullptr;
    EXPECT_EQ(handler.addEventHandler(
                  APP_EVENT_LANGUAGE_CHANGED,
                  [&](app_event_info_h given, void *user_data) {
                      info = given;
                      seen = user_data;
                  },
                  &data),
              APP_ERROR_NONE);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(info, nullptr);
    platform().raise_event(APP_EVENT_LANGUAGE_CHANGED);
    EXPECT_NE(info, nullptr);
    EXPECT_EQ(seen, &data);
}

TEST_F(ServiceEventTest, PlatformsRefusalIsTheResult) {
    EXPECT_CALL(mock::service_app(), service_app_add_event_handler)
        .WillOnce(testing::Return(APP_ERROR_OUT_OF_MEMORY));
    EXPECT_CALL(mock::service_app(), service_app_remove_event_handler).Times(0);
    WServiceAppEventHandler handler;
    EXPECT_EQ(handler.addEventHandler(
                  APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr),
              APP_ERROR_OUT_OF_MEMORY);
}

TEST_F(ServiceEventTest, SecondSubscriptionReplacesTheFirst) {
    WServiceAppEventHandler handler;
    auto token = std::make_shared<int>(0);
    int first = 0;
    int second = 0;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [&first, token](app_event_info_h, void *) { ++first; }, nullptr);
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [&second](app_event_info_h, void *) { ++second; }, nullptr);
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(platform().handlers(), 1);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(ServiceEventTest, RemovalOfNothingDoesNothing) {
    EXPECT_CALL(mock::service_app(), service_app_remove_event_handler).Times(0);
    WServiceAppEventHandler handler;
    handler.removeEventHandler();
}

TEST_F(ServiceEventTest, SecondRemovalDoesNothing) {
    EXPECT_CALL(mock::service_app(), service_app_remove_event_handler).Times(1);
    WServiceAppEventHandler handler;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr);
    handler.removeEventHandler();
    handler.removeEventHandler();
}

TEST_F(ServiceEventTest, DestructionEndsTheSubscription) {
    auto token = std::make_shared<int>(0);
    {
        WServiceAppEventHandler handler;
        handler.addEventHandler(
            APP_EVENT_LOW_BATTERY, [token](app_event_info_h, void *) {}, nullptr);
        EXPECT_EQ(platform().handlers(), 1);
    }
    EXPECT_EQ(platform().handlers(), 0);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(ServiceEventTest, EmptySubscriberThrowsAtTheEvent) {
    WServiceAppEventHandler handler;
    handler.addEventHandler(APP_EVENT_LOW_BATTERY, nullptr, nullptr);
    EXPECT_THROW(platform().raise_event(APP_EVENT_LOW_BATTERY), std::bad_function_call);
}

TEST_F(ServiceEventTest, SubscriberMayDeleteItsHandlerAndGoOn) {
    auto *handler = new WServiceAppEventHandler;
    auto token = std::make_shared<int>(0);
    handler->addEventHandler(
        APP_EVENT_LOW_BATTERY,
        [handler, token](app_event_info_h, void *) {
            delete handler;
            // What the subscriber holds is still there.
            EXPECT_GE(token.use_count(), 2);
        },
        nullptr);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(platform().handlers(), 0);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(ServiceEventTest, SubscriberMayReplaceItself) {
    WServiceAppEventHandler handler;
    auto token = std::make_shared<int>(0);
    int later = 0;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY,
        [&handler, &later, token](app_event_info_h, void *) {
            handler.addEventHandler(
                APP_EVENT_LOW_MEMORY, [&later](app_event_info_h, void *) { ++later; }, nullptr);
            EXPECT_GE(token.use_count(), 2);
        },
        nullptr);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    platform().raise_event(APP_EVENT_LOW_MEMORY);
    EXPECT_EQ(later, 1);
}

}  // namespace
