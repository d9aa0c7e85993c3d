#include "app-assist/WWindowController.h"

#include <dlfcn.h>

#include <memory>

#include "framework_fixture.h"
#include "mock_platform/mock_keys.h"
#include "vtable_slot.h"

namespace {

/// What the program asked of its windows that this engine doesn't keep, or keeps from happening.
struct WindowCalls {
    bool refuse_windows = false;
    bool rotation_supported = false;
    bool conformant = false;
    std::vector<int> rotations;
    Evas_Object *parent = nullptr;
    std::string name;
    Elm_Win_Type type = ELM_WIN_UNKNOWN;
    std::vector<Evas_Object *> resized;
    std::vector<std::string> layout_theme;
} g_calls;

template <typename Function>
Function *real(Function *, const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The program's calls come here first.
extern "C" {

Evas_Object *elm_win_add(Evas_Object *parent, const char *name, Elm_Win_Type type) {
    static auto *const next = real(&elm_win_add, "elm_win_add");
    g_calls.parent = parent;
    g_calls.name = name;
    g_calls.type = type;
    return g_calls.refuse_windows ? nullptr : next(parent, name, type);
}

void elm_win_conformant_set(Evas_Object *, Eina_Bool conformant) {
    g_calls.conformant = conformant != EINA_FALSE;
}

Eina_Bool elm_win_wm_rotation_supported_get(const Evas_Object *) {
    return g_calls.rotation_supported ? EINA_TRUE : EINA_FALSE;
}

void elm_win_wm_rotation_available_rotations_set(Evas_Object *, const int *rotations,
                                                 unsigned int count) {
    g_calls.rotations.assign(rotations, rotations + count);
}

void elm_win_resize_object_add(Evas_Object *win, Evas_Object *object) {
    static auto *const next = real(&elm_win_resize_object_add, "elm_win_resize_object_add");
    g_calls.resized.push_back(object);
    next(win, object);
}

// Only the device's theme has the default layout.
Eina_Bool elm_layout_theme_set(Evas_Object *layout, const char *klass, const char *group,
                               const char *style) {
    static auto *const next = real(&elm_layout_theme_set, "elm_layout_theme_set");
    g_calls.layout_theme = {klass, group, style};
    return next(layout, klass, group, style);
}

}  // extern "C"

namespace {

using app_assist::IWWindowController;
using app_assist::WViewController;
using app_assist::WWindowController;
using framework::Journal;
using framework::View;
using framework::Window;

constexpr std::string_view tag = logs::framework_tag;

/// Nothing but the class itself, with its default operations.
struct Plain : WWindowController {
    using WWindowController::WWindowController;
};

struct Operations : WWindowController {
    static void check() {
        using support::vtable_slot;
        EXPECT_EQ(vtable_slot(&Operations::getClassName), 0U);
        EXPECT_EQ(vtable_slot(&Operations::getEvasObject), 1U);
        EXPECT_EQ(vtable_slot(&Operations::getBaseLayoutEvasObject), 2U);
        EXPECT_EQ(vtable_slot(&Operations::getConformantEvasObject), 3U);
        EXPECT_EQ(vtable_slot(&Operations::getBaseViewController), 4U);
        // The destructors have the slots 5 and 6.
        EXPECT_EQ(vtable_slot(&Operations::onCreateWin), 7U);
        EXPECT_EQ(vtable_slot(&Operations::onCreateBaseLayout), 8U);
        EXPECT_EQ(vtable_slot(&Operations::onAttachBaseViewController), 9U);
        EXPECT_EQ(vtable_slot(&Operations::onDetachBaseViewController), 10U);
        EXPECT_EQ(vtable_slot(&Operations::onDestroy), 11U);
    }
};

class WindowTest : public testing::Test {
protected:
    void SetUp() override { g_calls = {}; }
    void TearDown() override { support::run_loop_turns(); }

    Journal m_journal;
};

class ShownWindowTest : public framework::WindowedTest {};

class BareWindowTest : public framework::WindowedTest {
protected:
    bool with_base_layout() const override { return false; }
};

TEST_F(WindowTest, OperationsStandInTheirOrder) {
    Operations::check();
}

TEST_F(WindowTest, NullNameFailsTheAssertion) {
    EXPECT_ASSERTION(new Plain(nullptr, ELM_WIN_BASIC), "(name)", "name");
}

TEST_F(WindowTest, KeepsItsOwnCopyOfTheNameAndItsType) {
    std::string name = "first";
    auto *window = new Plain(name.c_str(), ELM_WIN_DIALOG_BASIC);
    name = "other";
    EXPECT_STREQ(window->getName(), "first");
    EXPECT_EQ(window->getWinType(), ELM_WIN_DIALOG_BASIC);
    window->destroy();
}

TEST_F(WindowTest, HasNothingUntilCreated) {
    auto *window = new Window(m_journal);
    EXPECT_STREQ(window->getClassName(), "WWindowController");
    EXPECT_EQ(window->getEvasObject(), nullptr);
    EXPECT_EQ(window->getBaseLayoutEvasObject(), nullptr);
    EXPECT_EQ(window->getConformantEvasObject(), nullptr);
    EXPECT_EQ(window->getBaseViewController(), nullptr);
    window->destroy();
}

TEST_F(WindowTest, DestroyWithoutAWindowDeletesAtOnce) {
    (new Window(m_journal))->destroy();
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(WindowTest, CreationDoesNotShow) {
    auto *window = new Window(m_journal);
    EXPECT_TRUE(window->create());
    EXPECT_FALSE(evas_object_visible_get(window->getEvasObject()));
    window->destroy();
}

TEST_F(WindowTest, CreateAndShowShowsANewWindow) {
    auto *window = new Window(m_journal);
    EXPECT_TRUE(window->createAndShow());
    EXPECT_TRUE(evas_object_visible_get(window->getEvasObject()));
    window->destroy();
}

TEST_F(WindowTest, CreateAndShowLeavesAnExistingWindowAlone) {
    auto *window = new Window(m_journal);
    window->create();
    EXPECT_TRUE(window->createAndShow());
    EXPECT_FALSE(evas_object_visible_get(window->getEvasObject()));
    window->destroy();
}

TEST_F(WindowTest, SecondCreationMakesNoSecondWindow) {
    auto *window = new Window(m_journal);
    int made = 0;
    window->setCreateWinHandler([&] {
        ++made;
        return elm_win_add(nullptr, "own", ELM_WIN_BASIC);
    });
    EXPECT_TRUE(window->create());
    Evas_Object *win = window->getEvasObject();
    EXPECT_TRUE(window->create());
    EXPECT_EQ(window->getEvasObject(), win);
    EXPECT_EQ(made, 1);
    window->destroy();
}

TEST_F(WindowTest, WindowThatCantBeMadeIsRefused) {
    auto *window = new Window(m_journal);
    window->setCreateWinHandler([]() -> Evas_Object * { return nullptr; });
    EXPECT_FALSE(window->create());
    EXPECT_FALSE(window->createAndShow());
    EXPECT_EQ(window->getEvasObject(), nullptr);
    window->destroy();
}

TEST_F(WindowTest, DefaultWindowHasItsTitleAndProperties) {
    auto *window = new Plain("plain window", ELM_WIN_BASIC);
    ASSERT_TRUE(window->create());
    Evas_Object *win = window->getEvasObject();
    EXPECT_EQ(g_calls.parent, nullptr);
    EXPECT_EQ(g_calls.name, "plain window");
    EXPECT_EQ(g_calls.type, ELM_WIN_BASIC);
    EXPECT_STREQ(elm_win_title_get(win), "plain window");
    EXPECT_TRUE(g_calls.conformant);
    EXPECT_TRUE(elm_win_autodel_get(win));
    EXPECT_EQ(elm_win_indicator_mode_get(win), ELM_WIN_INDICATOR_SHOW);
    EXPECT_EQ(elm_win_indicator_opacity_get(win), ELM_WIN_INDICATOR_OPAQUE);
    window->destroy();
}

TEST_F(WindowTest, DefaultWindowTurnsToAllSidesWhereTurningIsSupported) {
    g_calls.rotation_supported = true;
    auto *window = new Plain("plain window", ELM_WIN_BASIC);
    ASSERT_TRUE(window->create());
    EXPECT_EQ(g_calls.rotations, (std::vector<int>{0, 90, 180, 270}));
    window->destroy();
}

TEST_F(WindowTest, DefaultWindowNamesNoSidesWhereTurningIsNotSupported) {
    auto *window = new Plain("plain window", ELM_WIN_BASIC);
    ASSERT_TRUE(window->create());
    EXPECT_TRUE(g_calls.rotations.empty());
    window->destroy();
}

TEST_F(WindowTest, DefaultWindowThatTheToolkitRefusesIsLogged) {
    g_calls.refuse_windows = true;
    auto *window = new Plain("plain window", ELM_WIN_BASIC);
    EXPECT_FALSE(window->createAndShow());
    EXPECT_TRUE(LoggedIn("onCreateWin", DLOG_ERROR, "* Critical * Fail to create win!", tag));
    window->destroy();
}

TEST_F(WindowTest, DefaultBaseLayoutStandsInAConformant) {
    auto *window = new Plain("plain window", ELM_WIN_BASIC);
    ASSERT_TRUE(window->create());
    Evas_Object *conformant = window->getConformantEvasObject();
    Evas_Object *layout = window->getBaseLayoutEvasObject();
    ASSERT_NE(conformant, nullptr);
    ASSERT_NE(layout, nullptr);
    EXPECT_STREQ(elm_object_widget_type_get(conformant), "Elm_Conformant");
    EXPECT_EQ(elm_object_part_content_get(conformant, nullptr), layout);
    EXPECT_EQ(g_calls.layout_theme, (std::vector<std::string>{"layout", "application", "default"}));
    ASSERT_EQ(g_calls.resized.size(), 2U);
    Evas_Object *background = g_calls.resized[0];
    EXPECT_STREQ(elm_object_widget_type_get(background), "Elm_Bg");
    EXPECT_EQ(g_calls.resized[1], conformant);
    // The others are as visible as the window, which isn't shown yet.
    EXPECT_TRUE(evas_object_visible_get(background));
    EXPECT_TRUE(evas_object_visible_get(conformant));
    for (Evas_Object *object : {background, conformant, layout}) {
        double x = 0.0;
        double y = 0.0;
        evas_object_size_hint_weight_get(object, &x, &y);
        EXPECT_EQ(x, 1.0);
        EXPECT_EQ(y, 1.0);
    }
    window->destroy();
}

TEST_F(WindowTest, HandlersTakeThePlaceOfTheOperations) {
    auto *window = new Plain("plain window", ELM_WIN_BASIC);
    Evas_Object *made_win = nullptr;
    Evas_Object *made_layout = nullptr;
    Evas_Object *seen_win = nullptr;
    Evas_Object *seen_conformant = window->getEvasObject();
    Evas_Object *frame = nullptr;
    window->setCreateWinHandler(
        [&] { return made_win = elm_win_add(nullptr, "own", ELM_WIN_BASIC); });
    window->setCreateBaseLayoutHandler([&](Evas_Object *win, Evas_Object **conformant) {
        seen_win = win;
        seen_conformant = *conformant;
        // The window is stored by now, and its key comes after the base layout.
        EXPECT_EQ(window->getEvasObject(), win);
        EXPECT_EQ(evas_object_data_get(win, "__@WWindowInstance"), nullptr);
        frame = elm_box_add(win);
        *conformant = frame;
        return made_layout = elm_layout_add(win);
    });
    ASSERT_TRUE(window->create());
    EXPECT_EQ(window->getEvasObject(), made_win);
    EXPECT_EQ(window->getBaseLayoutEvasObject(), made_layout);
    EXPECT_EQ(window->getConformantEvasObject(), frame);
    EXPECT_EQ(seen_win, made_win);
    EXPECT_EQ(seen_conformant, nullptr);
    window->destroy();
}

TEST_F(ShownWindowTest, ConformantIsNullWhenTheBaseLayoutHasNone) {
    EXPECT_EQ(window().getConformantEvasObject(), nullptr);
}

TEST_F(ShownWindowTest, WindowAndBaseLayoutCarryTheirKeys) {
    IWWindowController *instance = &window();
    EXPECT_EQ(evas_object_data_get(win(), "__@WWindowInstance"), instance);
    EXPECT_EQ(evas_object_data_get(base_layout(), "__@WBaselayoutTag"), instance);
}

TEST_F(BareWindowTest, WindowWithoutBaseLayoutHasNoTag) {
    EXPECT_EQ(base_layout(), nullptr);
    EXPECT_EQ(evas_object_data_get(win(), "__@WBaselayoutTag"), nullptr);
}

TEST_F(ShownWindowTest, DeletionOfTheWindowDeletesTheController) {
    delete_window();
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(ShownWindowTest, DestroyDeletesTheWindow) {
    window().destroy();
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

TEST_F(ShownWindowTest, CloseRequestEndsTheMainLoopAndDeletesNothing) {
    bool asked = false;
    std::pair<Evas_Object *, bool *> request(win(), &asked);
    ecore_job_add(
        [](void *data) {
            auto &test = *static_cast<std::pair<Evas_Object *, bool *> *>(data);
            *test.second = true;
            evas_object_smart_callback_call(test.first, "delete,request", nullptr);
        },
        &request);
    // Returns only because the request ends it.
    Ecore_Timer *watchdog = ecore_timer_add(
        20.0, [](void *) -> Eina_Bool { std::abort(); }, nullptr);
    elm_run();
    ecore_timer_del(watchdog);
    EXPECT_TRUE(asked);
    EXPECT_EQ(m_journal, Journal{});
}

TEST_F(ShownWindowTest, BaseViewIsCreatedInTheBaseLayoutAndPlaced) {
    auto *view = new View(m_journal);
    int param = 0;
    EXPECT_TRUE(window().attachBaseViewController(view, &param));
    EXPECT_EQ(view->seen_param, &param);
    EXPECT_EQ(window().getBaseViewController(), view);
    EXPECT_EQ(elm_object_part_content_get(base_layout(), "elm.swallow.content"),
              view->getEvasObject());
    EXPECT_TRUE(NoFaultLogged(tag));
}

/// A window that looks at what it has when a view comes and goes, and that answers for its layout.
class Watching : public Window {
public:
    explicit Watching(Journal &journal) : Window(journal) {}

    bool hide_base_layout = false;
    WViewController *had_at_attach = nullptr;
    WViewController *had_at_detach = nullptr;

    Evas_Object *getBaseLayoutEvasObject() override {
        return hide_base_layout ? nullptr : Window::getBaseLayoutEvasObject();
    }

protected:
    void onAttachBaseViewController(WViewController *view) override {
        had_at_attach = getBaseViewController();
        Window::onAttachBaseViewController(view);
    }
    void onDetachBaseViewController(WViewController *) override {
        had_at_detach = getBaseViewController();
    }
};

TEST_F(WindowTest, BaseViewIsStoredAfterItIsPlacedAndForgottenAfterThatIsTold) {
    auto *window = new Watching(m_journal);
    ASSERT_TRUE(window->createAndShow());
    auto *view = new View(m_journal);
    window->had_at_attach = view;
    EXPECT_TRUE(window->attachBaseViewController(view));
    EXPECT_EQ(window->had_at_attach, nullptr);
    EXPECT_EQ(window->detachBaseViewController(), view);
    EXPECT_EQ(window->had_at_detach, view);
    window->destroy();
}

TEST_F(WindowTest, DefaultPlacingAsksTheVirtualOperationForTheLayout) {
    auto *window = new Watching(m_journal);
    ASSERT_TRUE(window->createAndShow());
    window->hide_base_layout = true;
    auto *view = new View(m_journal);
    EXPECT_TRUE(window->attachBaseViewController(view));
    // Created all the same, below the layout that the window has.
    EXPECT_NE(view->getEvasObject(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("base layout does not exist!")}, tag));
    window->destroy();
}

TEST_F(ShownWindowTest, BaseViewWithoutAParameterGetsNull) {
    auto *view = new View(m_journal);
    view->seen_param = this;
    EXPECT_TRUE(window().attachBaseViewController(view));
    EXPECT_EQ(view->seen_param, nullptr);
}

TEST_F(ShownWindowTest, BaseViewThatCantBeCreatedIsNotStored) {
    auto *view = new View(m_journal);
    view->accept_creation = false;
    EXPECT_FALSE(window().attachBaseViewController(view));
    EXPECT_EQ(window().getBaseViewController(), nullptr);
    view->destroy();
}

TEST_F(ShownWindowTest, BaseViewThatEndsInItsOwnCreationIsNeitherPlacedNorStored) {
    auto *view = new View(m_journal);
    view->in_created = [view] { view->destroy(); };
    EXPECT_TRUE(window().attachBaseViewController(view));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated",
                                  "view.onDestroy", "view.gone"}));
    EXPECT_EQ(window().getBaseViewController(), nullptr);
    EXPECT_EQ(elm_object_part_content_get(base_layout(), "elm.swallow.content"), nullptr);
    // Another view may take the place.
    EXPECT_TRUE(window().attachBaseViewController(new View(m_journal, "next")));
}

TEST_F(ShownWindowTest, SecondBaseViewFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            window().attachBaseViewController(new View(m_journal, "first"));
            window().attachBaseViewController(new View(m_journal, "second"));
        },
        "(_pv->_baseViewController == nullptr)", "_pv->_baseViewController == nullptr");
}

TEST_F(BareWindowTest, BaseViewWithoutBaseLayoutIsStoredAndNeverCreated) {
    auto *view = new View(m_journal);
    EXPECT_TRUE(window().attachBaseViewController(view));
    EXPECT_EQ(window().getBaseViewController(), view);
    EXPECT_EQ(view->getEvasObject(), nullptr);
    EXPECT_EQ(m_journal, Journal{});
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("base layout does not exist!")}, tag));
    EXPECT_TRUE(
        LoggedIn("onAttachBaseViewController", DLOG_WARN, "base layout does not exist!", tag));
    window().destroyBaseViewController();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
}

TEST_F(ShownWindowTest, DetachedBaseViewStaysAlive) {
    auto *view = new View(m_journal);
    window().attachBaseViewController(view);
    m_journal.clear();
    EXPECT_EQ(window().detachBaseViewController(), view);
    EXPECT_EQ(m_journal, Journal{"window.detached"});
    EXPECT_EQ(window().getBaseViewController(), nullptr);
    // It isn't the window's to destroy any more.
    window().destroyBaseViewController();
    EXPECT_NE(view->getEvasObject(), nullptr);
}

TEST_F(ShownWindowTest, DetachingNothingIsToldAndGivesNull) {
    EXPECT_EQ(window().detachBaseViewController(), nullptr);
    EXPECT_EQ(m_journal, Journal{"window.detached nothing"});
}

TEST_F(ShownWindowTest, DestroyBaseViewDestroysAndForgetsIt) {
    window().attachBaseViewController(new View(m_journal));
    m_journal.clear();
    window().destroyBaseViewController();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
    EXPECT_EQ(window().getBaseViewController(), nullptr);
    window().destroyBaseViewController();
    EXPECT_EQ(m_journal.size(), 2U);
}

TEST_F(ShownWindowTest, BaseViewThatWentByItselfIsNotDestroyedAgain) {
    auto *view = new View(m_journal);
    window().attachBaseViewController(view);
    m_journal.clear();
    view->destroy();
    EXPECT_EQ(window().getBaseViewController(), nullptr);
    window().destroyBaseViewController();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
    // Its place is free now.
    EXPECT_TRUE(window().attachBaseViewController(new View(m_journal, "next")));
}

TEST_F(ShownWindowTest, BaseViewThatWentByItselfIsNotGivenOut) {
    auto *view = new View(m_journal);
    window().attachBaseViewController(view);
    view->destroy();
    m_journal.clear();
    EXPECT_EQ(window().detachBaseViewController(), nullptr);
    EXPECT_EQ(m_journal, Journal{"window.detached nothing"});
}

TEST_F(ShownWindowTest, EndOfTheBaseViewMayBeTheEndOfItsWindow) {
    auto *view = new View(m_journal);
    window().attachBaseViewController(view);
    view->in_destroy = [this] { delete_window(); };
    m_journal.clear();
    window().destroyBaseViewController();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "window.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
}

TEST_F(ShownWindowTest, BaseViewGoesWithTheWindow) {
    window().attachBaseViewController(new View(m_journal));
    m_journal.clear();
    delete_window();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
}

TEST_F(WindowTest, BackKeyHandlerGetsTheKeyOfTheWindow) {
    auto *window = new Window(m_journal);
    Evas_Object *seen = nullptr;
    window->setBackKeyHandler([&](Evas_Object *obj, void *) { seen = obj; });
    ASSERT_TRUE(window->createAndShow());
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_EQ(seen, window->getEvasObject());
    window->destroy();
}

TEST_F(WindowTest, WindowWithoutBackKeyHandlerAsksForNoKey) {
    auto *window = new Window(m_journal);
    ASSERT_TRUE(window->createAndShow());
    EXPECT_EQ(mock::fake_keys().callbacks(window->getEvasObject()), 0);
    // Too late: only what is there at creation asks for the key.
    window->setBackKeyHandler([](Evas_Object *, void *) {});
    EXPECT_EQ(mock::fake_keys().callbacks(window->getEvasObject()), 0);
    window->destroy();
}

TEST_F(WindowTest, BackKeyHandlerClearedAfterCreationThrows) {
    auto *window = new Window(m_journal);
    window->setBackKeyHandler([](Evas_Object *, void *) {});
    ASSERT_TRUE(window->createAndShow());
    window->setBackKeyHandler(nullptr);
    EXPECT_THROW(mock::fake_keys().press_back(), std::bad_function_call);
    window->destroy();
}

TEST_F(WindowTest, BackKeyHandlerMayDestroyTheWindow) {
    auto *window = new Window(m_journal);
    auto token = std::make_shared<int>(0);
    window->setBackKeyHandler([window, token](Evas_Object *, void *) {
        window->destroy();
        // What the handler holds is still there.
        EXPECT_GE(token.use_count(), 2);
    });
    ASSERT_TRUE(window->createAndShow());
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(m_journal, (Journal{"window.onDestroy", "window.gone"}));
}

}  // namespace
