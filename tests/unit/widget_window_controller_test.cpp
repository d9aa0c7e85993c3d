#include "app-assist/WWidgetWindowController.h"

#include <string>

#include "framework_fixture.h"
#include "mock_platform/mock_widget_app.h"
#include "vtable_slot.h"

namespace {

using app_assist::IWWindowController;
using app_assist::WViewController;
using app_assist::WWidgetWindowController;
using framework::Journal;
using framework::View;
using support::vtable_slot;

constexpr std::string_view tag = logs::framework_tag;

struct Operations : WWidgetWindowController {
    static void check() {
        EXPECT_EQ(vtable_slot(&Operations::getClassName), 0U);
        EXPECT_EQ(vtable_slot(&Operations::getEvasObject), 1U);
        EXPECT_EQ(vtable_slot(&Operations::getBaseLayoutEvasObject), 2U);
        EXPECT_EQ(vtable_slot(&Operations::getConformantEvasObject), 3U);
        EXPECT_EQ(vtable_slot(&Operations::getBaseViewController), 4U);
        // The destructors have the slots 5 and 6.
        EXPECT_EQ(vtable_slot(&Operations::onCreateWin), 7U);
        EXPECT_EQ(vtable_slot(&Operations::onDestroy), 8U);
        EXPECT_EQ(vtable_slot(&Operations::onCreateBaseLayout), 9U);
        EXPECT_EQ(vtable_slot(&Operations::onAttachBaseViewController), 10U);
        EXPECT_EQ(vtable_slot(&Operations::onDetachBaseViewController), 11U);
    }
};

/// Nothing but the class itself, with its default operations.
struct Plain : WWidgetWindowController {};

class Window : public WWidgetWindowController {
public:
    explicit Window(Journal &journal) : m_journal(journal) {}
    ~Window() override { m_journal.emplace_back("window.gone"); }

    bool make_base_layout = false;
    bool default_attach = true;
    Evas_Object *conformant_before = nullptr;
    Evas_Object *win_before = nullptr;
    void *key_before = nullptr;
    Evas_Object *frame = nullptr;

protected:
    Evas_Object *onCreateBaseLayout(Evas_Object *win, Evas_Object **conformant) override {
        m_journal.emplace_back("window.onCreateBaseLayout");
        conformant_before = *conformant;
        win_before = getEvasObject();
        key_before = evas_object_data_get(win, "__@WWindowInstance");
        if (!make_base_layout) {
            return nullptr;
        }
        *conformant = frame = elm_conformant_add(win);
        Evas_Object *layout = elm_layout_add(win);
        elm_layout_theme_set(layout, "layout", "application", "titlebar");
        evas_object_show(layout);
        return layout;
    }
    void onAttachBaseViewController(WViewController *view) override {
        m_journal.emplace_back(getBaseViewController() == nullptr ? "window.attach"
                                                                  : "window.attach too late");
        if (default_attach) {
            WWidgetWindowController::onAttachBaseViewController(view);
        }
    }
    void onDetachBaseViewController(WViewController *view) override {
        m_journal.emplace_back(view != nullptr ? "window.detached" : "window.detached nothing");
    }
    void onDestroy() override { m_journal.emplace_back("window.onDestroy"); }

private:
    Journal &m_journal;
};

class WidgetWindowTest : public testing::Test {
protected:
    void SetUp() override {
        m_context = mock::fake_widget_app().add_context();
        m_window = new Window(m_journal);
    }
    void TearDown() override {
        support::run_loop_turns();
        if (win() != nullptr) {
            evas_object_event_callback_del_full(win(), EVAS_CALLBACK_DEL, win_gone, this);
            evas_object_del(win());
        }
        support::run_loop_turns();
    }

    void create() {
        ASSERT_TRUE(m_window->create(m_context, 300, 200));
        evas_object_event_callback_add(win(), EVAS_CALLBACK_DEL, win_gone, this);
        m_journal.clear();
    }
    Evas_Object *win() { return m_context->window; }

    widget_context_h m_context = nullptr;
    Window *m_window = nullptr;
    Journal m_journal;

private:
    static void win_gone(void *data, Evas *, Evas_Object *, void *) {
        static_cast<WidgetWindowTest *>(data)->m_context->window = nullptr;
    }
};

TEST(WidgetWindow, OperationsStandInTheirOrder) {
    Operations::check();
}

TEST_F(WidgetWindowTest, HasNothingUntilCreated) {
    EXPECT_STREQ(m_window->getClassName(), "WWidgetWindowController");
    EXPECT_EQ(m_window->getEvasObject(), nullptr);
    EXPECT_EQ(m_window->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(m_window->getConformantEvasObject(), nullptr);
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    m_window->destroy();
}

TEST_F(WidgetWindowTest, DestroyWithoutAWindowTellsAndDeletes) {
    m_window->destroy();
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(WidgetWindowTest, CreationTakesTheWidgetsWindowInItsSizeAndShowsIt) {
    create();
    EXPECT_EQ(m_window->getEvasObject(), win());
    int width = 0;
    int height = 0;
    evas_object_geometry_get(win(), nullptr, nullptr, &width, &height);
    EXPECT_EQ(width, 300);
    EXPECT_EQ(height, 200);
    EXPECT_TRUE(evas_object_visible_get(win()));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(WidgetWindowTest, PlatformWithoutAWindowIsLoggedTwice) {
    EXPECT_CALL(mock::widget_app(), widget_app_get_elm_win).WillOnce(testing::Return(-7));
    EXPECT_FALSE(m_window->create(m_context, 300, 200));
    EXPECT_TRUE(LoggedIn("onCreateWin", DLOG_ERROR, "* Critical * Fail to get window. -7", tag));
    EXPECT_TRUE(LoggedIn("create", DLOG_ERROR, "* Critical * Failed to create an window!", tag));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to get window. -7"),
                                  logs::error("* Critical * Failed to create an window!")},
                                 tag));
    EXPECT_EQ(m_window->getEvasObject(), nullptr);
    EXPECT_EQ(m_journal, Journal{});
    m_window->destroy();
}

TEST_F(WidgetWindowTest, BaseLayoutIsMadeWhenTheWindowHasItsKeyAndIsNotStored) {
    m_window->make_base_layout = true;
    create();
    IWWindowController *instance = m_window;
    EXPECT_EQ(m_window->key_before, instance);
    EXPECT_EQ(m_window->win_before, nullptr);
    EXPECT_EQ(m_window->conformant_before, nullptr);
    EXPECT_NE(m_window->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(m_window->getConformantEvasObject(), m_window->frame);
    EXPECT_EQ(evas_object_data_get(win(), "__@WWindowInstance"), instance);
}

TEST_F(WidgetWindowTest, NoBaseLayoutCarriesTheTag) {
    m_window->make_base_layout = true;
    create();
    EXPECT_EQ(evas_object_data_get(m_window->getBaseLayoutEvasObject(), "__@WBaselayoutTag"),
              nullptr);
}

TEST_F(WidgetWindowTest, DefaultHasNeitherBaseLayoutNorConformant) {
    auto *plain = new Plain;
    ASSERT_TRUE(plain->create(m_context, 300, 200));
    EXPECT_EQ(plain->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(plain->getConformantEvasObject(), nullptr);
    EXPECT_EQ(plain->detachBaseViewController(), nullptr);
    m_window->destroy();
    evas_object_del(win());
    m_context->window = nullptr;
}

TEST_F(WidgetWindowTest, DeletionOfTheWindowDeletesTheController) {
    create();
    evas_object_del(win());
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(WidgetWindowTest, DestroyDeletesTheWindowAndLeavesTheController) {
    m_window->make_base_layout = true;
    create();
    m_window->attachBaseViewController(new View(m_journal), nullptr);
    m_journal.clear();
    m_window->destroy();
    EXPECT_EQ(win(), nullptr);
    support::run_loop_turns();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
    EXPECT_EQ(m_window->getEvasObject(), nullptr);
    EXPECT_EQ(m_window->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(m_window->getConformantEvasObject(), nullptr);
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    delete m_window;
}

TEST_F(WidgetWindowTest, SecondDestroyDeletesTheController) {
    create();
    m_window->destroy();
    m_window->destroy();
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(WidgetWindowTest, SecondCreationKeepsOneHookOnTheWindow) {
    create();
    EXPECT_TRUE(m_window->create(m_context, 300, 200));
    EXPECT_EQ(m_journal, Journal{"window.onCreateBaseLayout"});
    m_journal.clear();
    evas_object_del(win());
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(WidgetWindowTest, ControllerMayGoWithItsWindow) {
    create();
    evas_object_event_callback_add(
        win(), EVAS_CALLBACK_DEL,
        [](void *data, Evas *, Evas_Object *, void *) { delete static_cast<Window *>(data); },
        m_window);
    m_window->destroy();
    EXPECT_EQ(m_journal, Journal{"window.gone"});
}

TEST_F(WidgetWindowTest, CloseRequestEndsTheMainLoopAndDeletesNothing) {
    create();
    ecore_job_add(
        [](void *data) {
            evas_object_smart_callback_call(static_cast<Evas_Object *>(data), "delete,request",
                                            nullptr);
        },
        win());
    // Returns only because the request ends it.
    Ecore_Timer *watchdog = ecore_timer_add(
        20.0, [](void *) -> Eina_Bool { std::abort(); }, nullptr);
    elm_run();
    ecore_timer_del(watchdog);
    EXPECT_EQ(m_journal, Journal{});
}

// ---- its view

TEST_F(WidgetWindowTest, BaseViewIsCreatedInTheBaseLayoutAndPlacedInItsDefaultPart) {
    m_window->make_base_layout = true;
    create();
    Evas_Object *layout = m_window->getBaseLayoutEvasObject();
    auto *view = new View(m_journal);
    int param = 0;
    EXPECT_TRUE(m_window->attachBaseViewController(view, &param));
    EXPECT_EQ(view->seen_param, &param);
    EXPECT_EQ(elm_object_parent_widget_get(view->getEvasObject()), layout);
    EXPECT_EQ(elm_object_part_content_get(layout, nullptr), view->getEvasObject());
    EXPECT_EQ(m_window->getBaseLayoutEvasObject(), layout);
    EXPECT_EQ(m_window->getBaseViewController(), view);
    EXPECT_EQ(m_journal,
              (Journal{"view.onCreate", "view.onCreateView", "view.onCreated", "window.attach"}));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(WidgetWindowTest, BaseViewThatCantBeCreatedIsNeitherPlacedNorStored) {
    m_window->make_base_layout = true;
    create();
    auto *view = new View(m_journal);
    view->accept_creation = false;
    EXPECT_FALSE(m_window->attachBaseViewController(view, nullptr));
    EXPECT_EQ(m_journal, Journal{"view.onCreate"});
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    view->destroy();
}

TEST_F(WidgetWindowTest, WithoutBaseLayoutTheViewsObjectBecomesIt) {
    create();
    auto *view = new View(m_journal);
    EXPECT_TRUE(m_window->attachBaseViewController(view, nullptr));
    EXPECT_EQ(m_window->getBaseLayoutEvasObject(), view->getEvasObject());
    EXPECT_EQ(m_window->getBaseViewController(), view);
    EXPECT_TRUE(evas_object_visible_get(view->getEvasObject()));
    EXPECT_EQ(m_journal,
              (Journal{"view.onCreate", "view.onCreateView", "view.onCreated", "window.attach"}));
    // As a resize object it has the window's size.
    support::run_loop_turns();
    int width = 0;
    int height = 0;
    evas_object_geometry_get(view->getEvasObject(), nullptr, nullptr, &width, &height);
    EXPECT_EQ(width, 300);
    EXPECT_EQ(height, 200);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(WidgetWindowTest, WithoutBaseLayoutAFailedViewIsNotStored) {
    create();
    auto *view = new View(m_journal);
    view->make_object = false;
    EXPECT_FALSE(m_window->attachBaseViewController(view, nullptr));
    EXPECT_EQ(m_window->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView"}));
    view->destroy();
    // Another view may take the place.
    EXPECT_TRUE(m_window->attachBaseViewController(new View(m_journal), nullptr));
}

TEST_F(WidgetWindowTest, BaseViewThatEndsInItsOwnCreationIsNeitherPlacedNorStored) {
    for (const bool with_base_layout : {false, true}) {
        SCOPED_TRACE(with_base_layout);
        m_window->make_base_layout = with_base_layout;
        create();
        m_journal.clear();
        auto *view = new View(m_journal);
        view->in_created = [view] { view->destroy(); };
        EXPECT_TRUE(m_window->attachBaseViewController(view, nullptr));
        EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated",
                                      "view.onDestroy", "view.gone"}));
        EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    }
}

TEST_F(WidgetWindowTest, DefaultPlacingAsksTheVirtualOperationForTheLayout) {
    struct WithoutLayout : WWidgetWindowController {
        Evas_Object *getBaseLayoutEvasObject() override { return nullptr; }
    };
    auto *window = new WithoutLayout;
    ASSERT_TRUE(window->create(m_context, 300, 200));
    EXPECT_TRUE(window->attachBaseViewController(new View(m_journal), nullptr));
    EXPECT_TRUE(
        LoggedIn("onAttachBaseViewController", DLOG_WARN, "base layout does not exist!", tag));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("base layout does not exist!")}, tag));
    m_window->destroy();
    evas_object_del(win());
    m_context->window = nullptr;
}

TEST_F(WidgetWindowTest, SecondBaseViewFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            create();
            m_window->attachBaseViewController(new View(m_journal, "first"), nullptr);
            m_window->attachBaseViewController(new View(m_journal, "second"), nullptr);
        },
        "(_pv->_baseViewController == nullptr)", "_pv->_baseViewController == nullptr");
    m_window->destroy();
}

TEST_F(WidgetWindowTest, DetachedBaseViewStaysAlive) {
    m_window->make_base_layout = true;
    create();
    auto *view = new View(m_journal);
    m_window->attachBaseViewController(view, nullptr);
    m_journal.clear();
    EXPECT_EQ(m_window->detachBaseViewController(), view);
    EXPECT_EQ(m_journal, Journal{"window.detached"});
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    EXPECT_NE(view->getEvasObject(), nullptr);
}

TEST_F(WidgetWindowTest, DetachingNothingIsToldAndGivesNull) {
    create();
    EXPECT_EQ(m_window->detachBaseViewController(), nullptr);
    EXPECT_EQ(m_journal, Journal{"window.detached nothing"});
}

TEST_F(WidgetWindowTest, BaseViewThatWentByItselfIsNotGivenOut) {
    m_window->make_base_layout = true;
    create();
    auto *view = new View(m_journal);
    m_window->attachBaseViewController(view, nullptr);
    view->destroy();
    EXPECT_EQ(m_window->getBaseViewController(), nullptr);
    m_journal.clear();
    EXPECT_EQ(m_window->detachBaseViewController(), nullptr);
    EXPECT_EQ(m_journal, Journal{"window.detached nothing"});
}

}  // namespace
