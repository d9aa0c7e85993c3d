#include "app-assist/WWidget.h"

#include <bundle.h>

#include <functional>
#include <memory>
#include <string>

#include "app-assist/WWidgetInstance.h"
#include "app-assist/WWidgetWindowController.h"
#include "framework_fixture.h"
#include "mock_platform/mock_widget_app.h"
#include "vtable_slot.h"

namespace {

using app_assist::WWidget;
using app_assist::WWidgetInstance;
using app_assist::WWidgetWindowController;
using framework::Journal;
using support::vtable_slot;

constexpr int failed = static_cast<int>(0xFD0C0001U);

/// The operations as derived classes name them.
struct WidgetOperations : WWidget {
    static void check() {
        EXPECT_EQ(vtable_slot(&WidgetOperations::onCreate), 2U);
        EXPECT_EQ(vtable_slot(&WidgetOperations::onTerminate), 3U);
        EXPECT_EQ(vtable_slot(&WidgetOperations::onCreateWidgetInstance), 4U);
    }
};

struct InstanceOperations : WWidgetInstance {
    static void check() {
        EXPECT_EQ(vtable_slot(&InstanceOperations::onCreate), 2U);
        EXPECT_EQ(vtable_slot(&InstanceOperations::onDestroy), 3U);
        EXPECT_EQ(vtable_slot(&InstanceOperations::onPause), 4U);
        EXPECT_EQ(vtable_slot(&InstanceOperations::onResume), 5U);
        EXPECT_EQ(vtable_slot(&InstanceOperations::onUpdate), 6U);
        EXPECT_EQ(vtable_slot(&InstanceOperations::onResize), 7U);
    }
};

class Window : public WWidgetWindowController {
public:
    explicit Window(Journal &journal) : m_journal(journal) {}
    ~Window() override { m_journal.emplace_back("window.gone"); }

    bool has_window = true;

protected:
    Evas_Object *onCreateWin(widget_context_h context, int width, int height) override {
        m_journal.push_back("window " + std::to_string(width) + "x" + std::to_string(height));
        return has_window ? WWidgetWindowController::onCreateWin(context, width, height) : nullptr;
    }
    void onDestroy() override { m_journal.emplace_back("window.onDestroy"); }

private:
    Journal &m_journal;
};

/// Writes its life down; the result of each operation is the test's to choose.
class Instance : public WWidgetInstance {
public:
    explicit Instance(Journal &journal) : m_journal(journal) {}
    ~Instance() override { m_journal.emplace_back("gone"); }

    bool result = true;
    std::function<void(widget_context_h)> in_create;
    std::function<void()> in_destroy;
    widget_context_h seen_context = nullptr;
    bundle *seen_content = nullptr;
    int seen_width = 0;
    int seen_height = 0;

protected:
    bool onCreate(widget_context_h context, bundle *content, int width, int height) override {
        note("create", context, content);
        seen_width = width;
        seen_height = height;
        if (in_create) {
            in_create(context);
        }
        return result;
    }
    bool onDestroy(widget_context_h context, widget_app_destroy_type_e reason,
                   bundle *content) override {
        note(reason == WIDGET_APP_DESTROY_TYPE_PERMANENT ? "removed" : "put away", context,
             content);
        if (in_destroy) {
            in_destroy();
        }
        return result;
    }
    bool onPause(widget_context_h context) override { return note("pause", context); }
    bool onResume(widget_context_h context) override { return note("resume", context); }
    bool onUpdate(widget_context_h context, bundle *content, bool isForced) override {
        return note(isForced ? "forced update" : "update", context, content);
    }
    bool onResize(widget_context_h context, int width, int height) override {
        seen_width = width;
        seen_height = height;
        // The size is still the former one here.
        return note("resize from " + std::to_string(getWidth()), context);
    }

private:
    bool note(const std::string &what, widget_context_h context, bundle *content = nullptr) {
        m_journal.push_back(what);
        seen_context = context;
        seen_content = content;
        return result;
    }

    Journal &m_journal;
};

class Widget : public WWidget {
public:
    explicit Widget(Journal &journal) : m_journal(journal) {}

    std::function<WWidgetInstance *()> make;

protected:
    void onCreate() override { m_journal.emplace_back("app create"); }
    void onTerminate() override { m_journal.emplace_back("app terminate"); }
    WWidgetInstance *onCreateWidgetInstance() override { return make ? make() : nullptr; }

private:
    Journal &m_journal;
};

class WidgetTest : public testing::Test {
protected:
    void SetUp() override {
        m_widget.make = [this] { return m_instance = new Instance(m_journal); };
    }
    void TearDown() override { support::run_loop_turns(); }

    FakeWidgetApp &platform() { return mock::fake_widget_app(); }

    /// Runs the application, and `body` while it is created.
    int run(std::function<void()> body = nullptr) {
        platform().set_run([this, body = std::move(body)] {
            m_journal.clear();
            if (body) {
                body();
            }
        });
        char name[] = "widget";
        char *argv[] = {name, nullptr};
        return m_widget.start(1, argv);
    }
    /// Runs the application with one instance of 300x200.
    void run_with_instance(std::function<void(widget_context_h)> body) {
        run([this, body = std::move(body)] {
            widget_context_h context = platform().add_context();
            EXPECT_EQ(platform().create(context, nullptr, 300, 200), 0);
            m_journal.clear();
            body(context);
        });
    }
    void destroy(widget_context_h context) {
        platform().destroy(context, WIDGET_APP_DESTROY_TYPE_TEMPORARY, nullptr);
    }

    Journal m_journal;
    Widget m_widget{m_journal};
    Instance *m_instance = nullptr;
};

TEST_F(WidgetTest, OperationsStandInTheirOrder) {
    WidgetOperations::check();
    InstanceOperations::check();
}

TEST_F(WidgetTest, StartGivesArgumentsToThePlatform) {
    char name[] = "widget";
    char *argv[] = {name, nullptr};
    EXPECT_CALL(mock::widget_app(), widget_app_main(1, argv, testing::NotNull(), &m_widget))
        .WillOnce([](int, char **, widget_app_lifecycle_callback_s *callbacks, void *) {
            EXPECT_NE(callbacks->create, nullptr);
            EXPECT_NE(callbacks->terminate, nullptr);
            return 0;
        });
    EXPECT_EQ(m_widget.start(1, argv), 0);
}

TEST_F(WidgetTest, AnyFailureOfThePlatformIsMinusTwelve) {
    for (const int error : {-1, 1, failed}) {
        EXPECT_CALL(mock::widget_app(), widget_app_main).WillOnce(testing::Return(error));
        EXPECT_EQ(m_widget.start(0, nullptr), -12) << error;
    }
}

TEST_F(WidgetTest, ClassIsMadeBeforeOnCreateWithAllInstanceCalls) {
    EXPECT_CALL(mock::widget_app(), widget_app_class_create(testing::_, &m_widget))
        .WillOnce([this](widget_instance_lifecycle_callback_s callbacks, void *data) {
            m_journal.emplace_back("class");
            EXPECT_NE(callbacks.create, nullptr);
            EXPECT_NE(callbacks.destroy, nullptr);
            EXPECT_NE(callbacks.pause, nullptr);
            EXPECT_NE(callbacks.resume, nullptr);
            EXPECT_NE(callbacks.resize, nullptr);
            EXPECT_NE(callbacks.update, nullptr);
            return platform().widget_app_class_create(callbacks, data);
        });
    bool told = false;
    platform().set_run([&] { told = true; });
    EXPECT_EQ(m_widget.start(0, nullptr), 0);
    // The handle was the result, or nothing would have been run.
    EXPECT_TRUE(told);
    EXPECT_EQ(m_journal, (Journal{"class", "app create", "app terminate"}));
}

TEST_F(WidgetTest, DefaultsDoNothingAndSucceed) {
    struct Plain : WWidget {
        struct PlainInstance : WWidgetInstance {
            bool onCreate(widget_context_h, bundle *, int, int) override { return true; }
        };
        WWidgetInstance *onCreateWidgetInstance() override { return new PlainInstance; }
    } widget;
    platform().set_run([this] {
        widget_context_h context = platform().add_context();
        EXPECT_EQ(platform().create(context, nullptr, 300, 200), 0);
        EXPECT_EQ(platform().resume(context), 0);
        EXPECT_EQ(platform().update(context, nullptr, 0), 0);
        EXPECT_EQ(platform().resize(context, 10, 20), 0);
        EXPECT_EQ(WWidgetInstance::getInstance(context)->getWidth(), 10);
        EXPECT_EQ(platform().pause(context), 0);
        EXPECT_EQ(platform().destroy(context, WIDGET_APP_DESTROY_TYPE_TEMPORARY, nullptr), 0);
    });
    EXPECT_EQ(widget.start(0, nullptr), 0);
    EXPECT_TRUE(NoFaultLogged(logs::framework_tag));
}

TEST_F(WidgetTest, RefusedInstanceIsAFailureAndHasNoTag) {
    m_widget.make = nullptr;
    run([this] {
        widget_context_h context = platform().add_context();
        EXPECT_EQ(platform().create(context, nullptr, 300, 200), failed);
        EXPECT_EQ(WWidgetInstance::getInstance(context), nullptr);
        // What comes for it all the same finds nobody.
        EXPECT_EQ(platform().resume(context), failed);
        EXPECT_EQ(platform().pause(context), failed);
        EXPECT_EQ(platform().update(context, nullptr, 1), failed);
        EXPECT_EQ(platform().resize(context, 1, 2), failed);
        EXPECT_EQ(platform().destroy(context, WIDGET_APP_DESTROY_TYPE_TEMPORARY, nullptr), failed);
    });
}

TEST_F(WidgetTest, InstanceKnowsItsWidgetAndSizeBeforeOnCreate) {
    run([this] {
        widget_context_h context = platform().add_context();
        bundle *content = bundle_create();
        m_widget.make = [&] {
            m_instance = new Instance(m_journal);
            EXPECT_EQ(m_instance->getWidget(), nullptr);
            EXPECT_EQ(m_instance->getWidth(), 0);
            EXPECT_EQ(m_instance->getHeight(), 0);
            EXPECT_EQ(m_instance->getWindowController(), nullptr);
            m_instance->in_create = [&](widget_context_h given) {
                EXPECT_EQ(given, context);
                EXPECT_EQ(WWidgetInstance::getInstance(context), m_instance);
                EXPECT_EQ(m_instance->getWidget(), &m_widget);
                EXPECT_EQ(m_instance->getWidth(), 300);
                EXPECT_EQ(m_instance->getHeight(), 200);
            };
            return m_instance;
        };
        EXPECT_EQ(platform().create(context, content, 300, 200), 0);
        EXPECT_EQ(m_instance->seen_content, content);
        EXPECT_EQ(m_instance->seen_width, 300);
        EXPECT_EQ(m_instance->seen_height, 200);
        destroy(context);
        bundle_free(content);
    });
    EXPECT_EQ(m_journal, (Journal{"create", "put away", "gone", "app terminate"}));
}

TEST_F(WidgetTest, FailedCreationLeavesTheInstanceToTheDestroyCall) {
    run([this] {
        widget_context_h context = platform().add_context();
        m_widget.make = [this] {
            m_instance = new Instance(m_journal);
            m_instance->result = false;
            return m_instance;
        };
        EXPECT_EQ(platform().create(context, nullptr, 300, 200), failed);
        EXPECT_EQ(m_journal, Journal{"create"});
        EXPECT_EQ(WWidgetInstance::getInstance(context), m_instance);
        destroy(context);
    });
    EXPECT_EQ(m_journal, (Journal{"create", "put away", "gone", "app terminate"}));
}

TEST_F(WidgetTest, PauseAndResumeReachTheInstance) {
    run_with_instance([this](widget_context_h context) {
        EXPECT_EQ(platform().resume(context), 0);
        EXPECT_EQ(platform().pause(context), 0);
        EXPECT_EQ(m_instance->seen_context, context);
        EXPECT_EQ(m_journal, (Journal{"resume", "pause"}));
        m_instance->result = false;
        EXPECT_EQ(platform().resume(context), failed);
        EXPECT_EQ(platform().pause(context), failed);
        destroy(context);
    });
}

TEST_F(WidgetTest, UpdateCarriesItsContentAndWhetherItIsForced) {
    run_with_instance([this](widget_context_h context) {
        bundle *content = bundle_create();
        EXPECT_EQ(platform().update(context, content, 0), 0);
        EXPECT_EQ(m_instance->seen_content, content);
        EXPECT_EQ(platform().update(context, nullptr, 1), 0);
        EXPECT_EQ(platform().update(context, nullptr, -256), 0);
        EXPECT_EQ(m_journal, (Journal{"update", "forced update", "forced update"}));
        m_instance->result = false;
        EXPECT_EQ(platform().update(context, nullptr, 0), failed);
        destroy(context);
        bundle_free(content);
    });
}

TEST_F(WidgetTest, ResizeIsKeptAfterTheInstanceAcceptedIt) {
    run_with_instance([this](widget_context_h context) {
        EXPECT_EQ(platform().resize(context, 400, 160), 0);
        EXPECT_EQ(m_journal, Journal{"resize from 300"});
        EXPECT_EQ(m_instance->seen_width, 400);
        EXPECT_EQ(m_instance->seen_height, 160);
        EXPECT_EQ(m_instance->getWidth(), 400);
        EXPECT_EQ(m_instance->getHeight(), 160);
        destroy(context);
    });
}

TEST_F(WidgetTest, RefusedResizeKeepsTheFormerSize) {
    run_with_instance([this](widget_context_h context) {
        m_instance->result = false;
        EXPECT_EQ(platform().resize(context, 400, 160), failed);
        EXPECT_EQ(m_instance->getWidth(), 300);
        EXPECT_EQ(m_instance->getHeight(), 200);
        destroy(context);
    });
}

TEST_F(WidgetTest, DestructionTellsTheReasonAndDeletesInEveryCase) {
    run_with_instance([this](widget_context_h context) {
        bundle *content = bundle_create();
        m_instance->in_destroy = [&] { EXPECT_EQ(m_instance->seen_content, content); };
        EXPECT_EQ(platform().destroy(context, WIDGET_APP_DESTROY_TYPE_PERMANENT, content), 0);
        bundle_free(content);
        EXPECT_EQ(m_journal, (Journal{"removed", "gone"}));
    });
    run_with_instance([this](widget_context_h context) {
        m_instance->result = false;
        EXPECT_EQ(platform().destroy(context, WIDGET_APP_DESTROY_TYPE_TEMPORARY, nullptr), failed);
        EXPECT_EQ(m_journal, (Journal{"put away", "gone"}));
    });
}

TEST_F(WidgetTest, EachWidgetHasItsOwnInstance) {
    run_with_instance([this](widget_context_h first) {
        Instance *const of_first = m_instance;
        widget_context_h second = platform().add_context();
        platform().create(second, nullptr, 100, 50);
        EXPECT_NE(m_instance, of_first);
        EXPECT_EQ(WWidgetInstance::getInstance(first), of_first);
        EXPECT_EQ(WWidgetInstance::getInstance(second), m_instance);
        EXPECT_EQ(of_first->getWidth(), 300);
        EXPECT_EQ(m_instance->getWidth(), 100);
        destroy(first);
        EXPECT_EQ(platform().resume(second), 0);
        destroy(second);
    });
}

TEST_F(WidgetTest, NoInstanceWithoutAContext) {
    EXPECT_EQ(WWidgetInstance::getInstance(nullptr), nullptr);
}

// ---- its window

TEST_F(WidgetTest, WindowIsMadeInTheCurrentSize) {
    run_with_instance([this](widget_context_h context) {
        auto *window = new Window(m_journal);
        EXPECT_TRUE(m_instance->attachWindowController(context, window));
        EXPECT_EQ(m_instance->getWindowController(), window);
        EXPECT_EQ(window->getEvasObject(), context->window);
        EXPECT_EQ(m_journal, Journal{"window 300x200"});
        m_instance->in_destroy = [&] {
            EXPECT_EQ(m_instance->getWindowController(), window);
            delete window;
        };
        destroy(context);
    });
}

TEST_F(WidgetTest, WindowThatCantBeMadeStaysAttached) {
    run_with_instance([this](widget_context_h context) {
        auto *window = new Window(m_journal);
        window->has_window = false;
        EXPECT_FALSE(m_instance->attachWindowController(context, window));
        EXPECT_EQ(m_instance->getWindowController(), window);
        m_journal.clear();
        destroy(context);
        // Without a window the controller goes by its destroy().
        EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone", "put away", "gone"}));
    });
}

TEST_F(WidgetTest, DestructionEndsTheWindowFirst) {
    run_with_instance([this](widget_context_h context) {
        auto *window = new Window(m_journal);
        m_instance->attachWindowController(context, window);
        evas_object_event_callback_add(
            context->window, EVAS_CALLBACK_DEL,
            [](void *data, Evas *, Evas_Object *, void *) {
                static_cast<Journal *>(data)->emplace_back("window object.gone");
            },
            &m_journal);
        m_journal.clear();
        destroy(context);
        // Its controller is left to its owner, and isn't told.
        EXPECT_EQ(m_journal, (Journal{"window object.gone", "put away", "gone"}));
        delete window;
    });
}

TEST_F(WidgetTest, WindowThatClosedByItselfIsForgotten) {
    run_with_instance([this](widget_context_h context) {
        m_instance->attachWindowController(context, new Window(m_journal));
        m_journal.clear();
        evas_object_del(context->window);
        EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
        EXPECT_EQ(m_instance->getWindowController(), nullptr);
        destroy(context);
        EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone", "put away", "gone"}));
    });
}

TEST_F(WidgetTest, WindowMayOutliveTheInstance) {
    run_with_instance([this](widget_context_h context) {
        m_instance->in_destroy = [this, context] {
            m_instance->attachWindowController(context, new Window(m_journal));
        };
        destroy(context);
        evas_object_del(context->window);
        EXPECT_EQ(m_journal.back(), "window.gone");
    });
}

}  // namespace
