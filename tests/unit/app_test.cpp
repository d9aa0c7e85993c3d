#include "app-assist/WApp.h"

#include <memory>

#include "app-assist/WAppEventHandler.h"
#include "app-assist/WMenuPopupController.h"
#include "framework_fixture.h"
#include "mock_platform/mock_ui_app.h"
#include "vtable_slot.h"

namespace {

using app_assist::WApp;
using app_assist::WAppEventHandler;
using app_assist::WMenuPopupController;
using framework::Journal;
using framework::View;
using framework::Window;

/// Writes its life down and lets the test act in it.
class App : public WApp {
public:
    explicit App(Journal &journal) : m_journal(journal) {}

    bool create_result = true;
    std::function<void()> in_create;
    std::function<void(app_control_h)> in_app_control;

    Window *make_window() {
        auto *window = new Window(m_journal);
        EXPECT_TRUE(attachWindowController(window));
        return window;
    }

protected:
    bool onCreate() override {
        m_journal.emplace_back("create");
        call(in_create);
        return create_result;
    }
    void onTerminate() override { m_journal.emplace_back("terminate"); }
    void onPause() override { m_journal.emplace_back("pause"); }
    void onResume() override { m_journal.emplace_back("resume"); }
    void onAppControl(app_control_h request, bool first) override {
        m_journal.emplace_back(first ? "first request" : "later request");
        if (in_app_control) {
            in_app_control(request);
        }
    }

private:
    static void call(const std::function<void()> &function) {
        if (function) {
            function();
        }
    }

    Journal &m_journal;
};

class AppTest : public testing::Test {
protected:
    void TearDown() override {
        if (m_window != nullptr) {
            m_window->destroy();
        }
        support::run_loop_turns();
    }

    int run(WApp &app) {
        char name[] = "app";
        char *argv[] = {name, nullptr};
        return app.start(1, argv);
    }

    void make_window(App &app) {
        m_window = app.make_window();
        evas_object_event_callback_add(
            m_window->getEvasObject(), EVAS_CALLBACK_DEL,
            [](void *data, Evas *, Evas_Object *, void *) {
                *static_cast<Window **>(data) = nullptr;
            },
            &m_window);
    }

    Journal m_journal;
    Window *m_window = nullptr;
};

struct Operations : WApp {
    static void check() {
        using support::vtable_slot;
        // The destructors have the slots 0 and 1.
        EXPECT_EQ(vtable_slot(&Operations::onStart), 2U);
        EXPECT_EQ(vtable_slot(&Operations::onCreate), 3U);
        EXPECT_EQ(vtable_slot(&Operations::onTerminate), 4U);
        EXPECT_EQ(vtable_slot(&Operations::onPause), 5U);
        EXPECT_EQ(vtable_slot(&Operations::onResume), 6U);
        EXPECT_EQ(vtable_slot(&Operations::onAppControl), 7U);
    }
};

TEST_F(AppTest, OperationsStandInTheirOrder) {
    Operations::check();
}

TEST_F(AppTest, StartGivesArgumentsToThePlatformAndItsResultBack) {
    App app(m_journal);
    char name[] = "app";
    char *argv[] = {name, nullptr};
    EXPECT_CALL(mock::ui_app(), ui_app_main(1, argv, testing::NotNull(), &app))
        .WillOnce([](int, char **, ui_app_lifecycle_callback_s *callbacks, void *) {
            EXPECT_NE(callbacks->create, nullptr);
            EXPECT_NE(callbacks->terminate, nullptr);
            EXPECT_NE(callbacks->pause, nullptr);
            EXPECT_NE(callbacks->resume, nullptr);
            EXPECT_NE(callbacks->app_control, nullptr);
            return 42;
        });
    EXPECT_EQ(app.start(1, argv), 42);
}

TEST_F(AppTest, StartRunsTheVirtualOnStart) {
    struct OwnStart : WApp {
        int onStart(int argc, char *[]) override { return argc + 1; }
    } app;
    EXPECT_EQ(app.start(6, nullptr), 7);
}

TEST_F(AppTest, LifeRunsInOrder) {
    App app(m_journal);
    app.in_app_control = [](app_control_h) {
        mock::fake_ui_app().pause();
        mock::fake_ui_app().resume();
        elm_exit();
    };
    EXPECT_EQ(run(app), 0);
    EXPECT_EQ(m_journal, (Journal{"create", "first request", "pause", "resume", "terminate"}));
}

TEST_F(AppTest, RefusedCreationEndsTheApplicationWithoutAnotherCall) {
    App app(m_journal);
    app.create_result = false;
    run(app);
    EXPECT_EQ(m_journal, Journal{"create"});
}

TEST_F(AppTest, RequestReachesTheApplication) {
    App app(m_journal);
    auto *const request = reinterpret_cast<app_control_h>(this);
    mock::fake_ui_app().set_launch(request);
    app_control_h seen = nullptr;
    app.in_app_control = [&](app_control_h given) {
        seen = given;
        elm_exit();
    };
    run(app);
    EXPECT_EQ(seen, request);
}

TEST_F(AppTest, OnlyTheFirstRequestIsTheLaunch) {
    App app(m_journal);
    int requests = 0;
    app.in_app_control = [&](app_control_h) {
        if (++requests == 3) {
            elm_exit();
            return;
        }
        ecore_job_add([](void *) { mock::fake_ui_app().send_app_control(nullptr); }, nullptr);
    };
    run(app);
    EXPECT_EQ(m_journal,
              (Journal{"create", "first request", "later request", "later request", "terminate"}));
}

TEST_F(AppTest, FlagIsClearedAfterTheFirstRequestHasRun) {
    App app(m_journal);
    bool nested = false;
    app.in_app_control = [&](app_control_h) {
        if (!nested) {
            nested = true;
            mock::fake_ui_app().send_app_control(nullptr);
        }
        elm_exit();
    };
    run(app);
    EXPECT_EQ(m_journal, (Journal{"create", "first request", "first request", "terminate"}));
}

TEST_F(AppTest, DefaultsDoNothingAndAcceptCreation) {
    WApp app;
    EXPECT_CALL(mock::ui_app(), ui_app_main)
        .WillOnce([](int, char **, ui_app_lifecycle_callback_s *callbacks, void *data) {
            EXPECT_TRUE(callbacks->create(data));
            callbacks->app_control(nullptr, data);
            callbacks->pause(data);
            callbacks->resume(data);
            callbacks->terminate(data);
            return 0;
        });
    EXPECT_EQ(run(app), 0);
    EXPECT_TRUE(NoFaultLogged(logs::framework_tag));
}

// ---- its window

TEST_F(AppTest, HasNoWindowAtFirst) {
    App app(m_journal);
    EXPECT_EQ(app.getWindowController(), nullptr);
}

TEST_F(AppTest, AttachedWindowIsCreatedAndShown) {
    App app(m_journal);
    make_window(app);
    EXPECT_EQ(app.getWindowController(), m_window);
    EXPECT_TRUE(evas_object_visible_get(m_window->getEvasObject()));
}

TEST_F(AppTest, WindowThatExistsIsLeftAlone) {
    App app(m_journal);
    auto *window = new Window(m_journal);
    window->create();
    EXPECT_TRUE(app.attachWindowController(window));
    EXPECT_FALSE(evas_object_visible_get(window->getEvasObject()));
    window->destroy();
}

TEST_F(AppTest, WindowThatCantBeMadeStaysAttached) {
    App app(m_journal);
    auto *window = new Window(m_journal);
    window->setCreateWinHandler([]() -> Evas_Object * { return nullptr; });
    EXPECT_FALSE(app.attachWindowController(window));
    EXPECT_EQ(app.getWindowController(), window);
    window->destroy();
}

TEST_F(AppTest, SecondWindowFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            App app(m_journal);
            app.attachWindowController(new Window(m_journal));
            app.attachWindowController(new Window(m_journal));
        },
        "(_pv->_window == nullptr)", "_pv->_window == nullptr");
}

TEST_F(AppTest, WindowThatClosedIsForgotten) {
    App app(m_journal);
    make_window(app);
    evas_object_del(m_window->getEvasObject());
    EXPECT_EQ(app.getWindowController(), nullptr);
}

TEST_F(AppTest, WindowMayOutliveTheApplication) {
    {
        App app(m_journal);
        make_window(app);
    }
    m_window->destroy();
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(AppTest, TerminateDestroysTheBaseViewAfterOnTerminate) {
    App app(m_journal);
    app.in_create = [&] {
        make_window(app);
        EXPECT_TRUE(m_window->attachBaseViewController(new View(m_journal)));
        m_journal.clear();
    };
    app.in_app_control = [](app_control_h) { elm_exit(); };
    run(app);
    EXPECT_EQ(m_journal, (Journal{"first request", "terminate", "view.onDestroy", "view.gone"}));
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
}

TEST_F(AppTest, TerminateWithoutAWindowOnlyCallsOnTerminate) {
    App app(m_journal);
    app.in_app_control = [](app_control_h) { elm_exit(); };
    run(app);
    EXPECT_EQ(m_journal, (Journal{"create", "first request", "terminate"}));
}

TEST_F(AppTest, TerminateAfterTheWindowClosedTouchesNothing) {
    App app(m_journal);
    app.in_create = [&] { make_window(app); };
    app.in_app_control = [&](app_control_h) {
        evas_object_del(m_window->getEvasObject());
        elm_exit();
    };
    run(app);
    EXPECT_EQ(m_journal,
              (Journal{"create", "first request", "window.onDestroy", "window.gone", "terminate"}));
}

// ---- an open menu

class Menu : public WMenuPopupController {
public:
    explicit Menu(Journal &journal) : m_journal(journal) {}

protected:
    ~Menu() override { m_journal.emplace_back("menu.gone"); }

private:
    Journal &m_journal;
};

TEST_F(AppTest, PauseRemovesAnOpenMenuBeforeOnPause) {
    App app(m_journal);
    app.in_create = [&] {
        make_window(app);
        auto *menu = new Menu(m_journal);
        EXPECT_TRUE(
            menu->createMenu(m_window->getEvasObject(), m_window->getBaseLayoutEvasObject()));
        menu->showMenu();
        m_journal.clear();
    };
    app.in_app_control = [](app_control_h) {
        mock::fake_ui_app().pause();
        elm_exit();
    };
    run(app);
    EXPECT_EQ(m_journal, (Journal{"first request", "menu.gone", "pause", "terminate"}));
}

TEST_F(AppTest, PauseAfterTheMenuClosedOnlyCallsOnPause) {
    App app(m_journal);
    app.in_create = [&] {
        make_window(app);
        auto *menu = new Menu(m_journal);
        menu->createMenu(m_window->getEvasObject(), m_window->getBaseLayoutEvasObject());
        evas_object_smart_callback_call(menu->getEvasObject(), "dismissed", nullptr);
        m_journal.clear();
    };
    app.in_app_control = [](app_control_h) {
        mock::fake_ui_app().pause();
        elm_exit();
    };
    run(app);
    EXPECT_EQ(m_journal, (Journal{"first request", "pause", "terminate"}));
}

// ---- system events

class EventHandlerTest : public testing::Test {
protected:
    FakeUiApp &platform() { return mock::fake_ui_app(); }
};

TEST_F(EventHandlerTest, SubscriberGetsTheEventAndItsData) {
    WAppEventHandler handler;
    int data = 0;
    app_event_info_h info = nullptr;
    void *seen = nullptr;
    handler.addEventHandler(
        APP_EVENT_LANGUAGE_CHANGED,
        [&](app_event_info_h given, void *user_data) {
            info = given;
            seen = user_data;
        },
        &data);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(info, nullptr);
    platform().raise_event(APP_EVENT_LANGUAGE_CHANGED);
    EXPECT_NE(info, nullptr);
    EXPECT_EQ(seen, &data);
}

TEST_F(EventHandlerTest, SecondSubscriptionReplacesTheFirst) {
    WAppEventHandler handler;
    int first = 0;
    int second = 0;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [&](app_event_info_h, void *) { ++first; }, nullptr);
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [&](app_event_info_h, void *) { ++second; }, nullptr);
    EXPECT_EQ(platform().handlers(), 1);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(EventHandlerTest, SecondSubscriptionMayBeForAnotherEvent) {
    WAppEventHandler handler;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr);
    handler.addEventHandler(
        APP_EVENT_LOW_MEMORY, [](app_event_info_h, void *) {}, nullptr);
    EXPECT_EQ(platform().handlers(APP_EVENT_LOW_BATTERY), 0);
    EXPECT_EQ(platform().handlers(APP_EVENT_LOW_MEMORY), 1);
}

TEST_F(EventHandlerTest, ReplacedSubscriberIsFreed) {
    WAppEventHandler handler;
    auto token = std::make_shared<int>(0);
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [token](app_event_info_h, void *) {}, nullptr);
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(EventHandlerTest, RemovedSubscriberHearsNothing) {
    WAppEventHandler handler;
    int calls = 0;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [&](app_event_info_h, void *) { ++calls; }, nullptr);
    handler.removeEventHandler();
    EXPECT_EQ(platform().handlers(), 0);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(calls, 0);
}

TEST_F(EventHandlerTest, RemovalOfNothingDoesNothing) {
    EXPECT_CALL(mock::ui_app(), ui_app_remove_event_handler).Times(0);
    WAppEventHandler handler;
    handler.removeEventHandler();
}

TEST_F(EventHandlerTest, SecondRemovalDoesNothing) {
    EXPECT_CALL(mock::ui_app(), ui_app_remove_event_handler).Times(1);
    WAppEventHandler handler;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr);
    handler.removeEventHandler();
    handler.removeEventHandler();
}

TEST_F(EventHandlerTest, DestructionEndsTheSubscription) {
    auto token = std::make_shared<int>(0);
    {
        WAppEventHandler handler;
        handler.addEventHandler(
            APP_EVENT_LOW_BATTERY, [token](app_event_info_h, void *) {}, nullptr);
        EXPECT_EQ(platform().handlers(), 1);
    }
    EXPECT_EQ(platform().handlers(), 0);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(EventHandlerTest, RefusedSubscriptionIsNotLookedAt) {
    EXPECT_CALL(mock::ui_app(), ui_app_add_event_handler)
        .WillOnce(testing::Return(APP_ERROR_OUT_OF_MEMORY));
    EXPECT_CALL(mock::ui_app(), ui_app_remove_event_handler).Times(0);
    WAppEventHandler handler;
    handler.addEventHandler(
        APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr);
    EXPECT_TRUE(NoFaultLogged(logs::framework_tag));
}

TEST_F(EventHandlerTest, EmptySubscriberThrowsAtTheEvent) {
    WAppEventHandler handler;
    handler.addEventHandler(APP_EVENT_LOW_BATTERY, nullptr, nullptr);
    EXPECT_THROW(platform().raise_event(APP_EVENT_LOW_BATTERY), std::bad_function_call);
}

TEST_F(EventHandlerTest, SubscriberMayDeleteItsHandlerAndGoOn) {
    auto *handler = new WAppEventHandler;
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

TEST_F(EventHandlerTest, SubscriberMayReplaceItself) {
    WAppEventHandler handler;
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
