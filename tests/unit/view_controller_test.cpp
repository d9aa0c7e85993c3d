#include "app-assist/WViewController.h"

#include <memory>

#include "app-assist/WPopupController.h"
#include "framework_fixture.h"

namespace {

using app_assist::WPopupController;
using app_assist::wview_get_instance;
using app_assist::WViewController;
using app_assist::WViewWeakPtr;
using framework::Journal;
using framework::View;

constexpr std::string_view tag = logs::framework_tag;

class ViewTest : public framework::WindowedTest {
protected:
    View *created(const std::string &name = "view") {
        auto *view = new View(m_journal, name);
        EXPECT_TRUE(view->create(base_layout(), nullptr));
        return view;
    }
};

TEST_F(ViewTest, AnswersItsClassName) {
    View *view = created();
    EXPECT_STREQ(view->getClassName(), "WViewController");
    auto *popup = new WPopupController;
    EXPECT_STREQ(popup->getClassName(), "WViewController");
    popup->destroy();
}

TEST_F(ViewTest, CreationRunsItsOperationsInOrder) {
    created();
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated"}));
}

TEST_F(ViewTest, ParameterReachesOnCreate) {
    auto *view = new View(m_journal);
    int param = 0;
    EXPECT_TRUE(view->create(base_layout(), &param));
    EXPECT_EQ(view->seen_param, &param);
}

TEST_F(ViewTest, ParentAndParameterReachOnCreateView) {
    struct Seeing : View {
        using View::View;
        Evas_Object *seen_parent = nullptr;
        void *seen_view_param = nullptr;
        Evas_Object *onCreateView(Evas_Object *parent, void *param) override {
            seen_parent = parent;
            seen_view_param = param;
            return View::onCreateView(parent, param);
        }
    };
    auto *view = new Seeing(m_journal);
    int param = 0;
    EXPECT_TRUE(view->create(base_layout(), &param));
    EXPECT_EQ(view->seen_parent, base_layout());
    EXPECT_EQ(view->seen_view_param, &param);
}

TEST_F(ViewTest, IsWholeWhenItIsToldThatItIsCreated) {
    auto *view = new View(m_journal);
    view->setName("name");
    bool told = false;
    view->in_created = [&] {
        told = true;
        EXPECT_EQ(wview_get_instance(view->getEvasObject()), view);
        EXPECT_STREQ(evas_object_name_get(view->getEvasObject()), "name");
        EXPECT_EQ(view->getWindowController(), &window());
    };
    EXPECT_TRUE(view->create(base_layout(), nullptr));
    EXPECT_TRUE(told);
}

TEST_F(ViewTest, SecondCreationIsTrueAndCallsNothing) {
    View *view = created();
    Evas_Object *object = view->getEvasObject();
    m_journal.clear();
    EXPECT_TRUE(view->create(base_layout(), nullptr));
    EXPECT_EQ(m_journal, Journal{});
    EXPECT_EQ(view->getEvasObject(), object);
}

TEST_F(ViewTest, RefusedCreationMakesNoObject) {
    auto *view = new View(m_journal);
    view->accept_creation = false;
    EXPECT_FALSE(view->create(base_layout(), nullptr));
    EXPECT_EQ(m_journal, Journal{"view.onCreate"});
    EXPECT_EQ(view->getEvasObject(), nullptr);
    EXPECT_TRUE(NoFaultLogged(tag));
    view->destroy();
}

TEST_F(ViewTest, MissingObjectIsLoggedAndTheViewStays) {
    auto *view = new View(m_journal);
    view->make_object = false;
    EXPECT_FALSE(view->create(base_layout(), nullptr));
    EXPECT_TRUE(LoggedIn("create", DLOG_ERROR, "* Critical * No view object created!", tag));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView"}));
    view->destroy();
    EXPECT_EQ(m_journal,
              (Journal{"view.onCreate", "view.onCreateView", "view.onDestroy", "view.gone"}));
}

TEST_F(ViewTest, ViewThatFailedMayBeCreatedAgain) {
    auto *view = new View(m_journal);
    view->make_object = false;
    EXPECT_FALSE(view->create(base_layout(), nullptr));
    view->make_object = true;
    EXPECT_TRUE(view->create(base_layout(), nullptr));
    EXPECT_NE(view->getEvasObject(), nullptr);
}

TEST_F(ViewTest, DefaultViewHasNoObject) {
    struct Plain : WViewController {};
    auto *view = new Plain;
    EXPECT_FALSE(view->create(base_layout(), nullptr));
    EXPECT_TRUE(LoggedError("* Critical * No view object created!", tag));
    view->destroy();
}

TEST_F(ViewTest, HandlerTakesThePlaceOfOnCreateView) {
    auto *view = new View(m_journal);
    Evas_Object *made = nullptr;
    Evas_Object *seen_parent = nullptr;
    void *seen_param = nullptr;
    int param = 0;
    view->setCreateViewHandler([&](Evas_Object *parent, void *data) {
        seen_parent = parent;
        seen_param = data;
        return made = elm_button_add(parent);
    });
    EXPECT_TRUE(view->create(base_layout(), &param));
    EXPECT_EQ(view->getEvasObject(), made);
    EXPECT_EQ(seen_parent, base_layout());
    EXPECT_EQ(seen_param, &param);
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreated"}));
}

TEST_F(ViewTest, LaterHandlerReplacesTheEarlier) {
    auto *view = new View(m_journal);
    view->setCreateViewHandler([](Evas_Object *, void *) -> Evas_Object * { return nullptr; });
    view->setCreateViewHandler([](Evas_Object *parent, void *) { return elm_button_add(parent); });
    EXPECT_TRUE(view->create(base_layout(), nullptr));
}

TEST_F(ViewTest, ObjectCarriesNameAndController) {
    auto *view = new View(m_journal);
    view->setName("tsl_view");
    view->create(base_layout(), nullptr);
    EXPECT_STREQ(evas_object_name_get(view->getEvasObject()), "tsl_view");
    EXPECT_EQ(evas_object_data_get(view->getEvasObject(), "__@WViewInstance"),
              static_cast<WViewController *>(view));
    EXPECT_EQ(wview_get_instance(view->getEvasObject()), view);
}

TEST_F(ViewTest, ViewWithoutANameLeavesTheObjectsAlone) {
    View *view = created();
    EXPECT_EQ(view->getName(), nullptr);
    EXPECT_EQ(evas_object_name_get(view->getEvasObject()), nullptr);
}

TEST_F(ViewTest, NameIsCopiedAndReplaced) {
    auto *view = new View(m_journal);
    std::string name = "first";
    view->setName(name.c_str());
    name = "other";
    EXPECT_STREQ(view->getName(), "first");
    view->setName("second");
    EXPECT_STREQ(view->getName(), "second");
    view->setName(nullptr);
    EXPECT_EQ(view->getName(), nullptr);
    view->destroy();
}

TEST_F(ViewTest, NameMayHoldAnyBytes) {
    auto *view = new View(m_journal);
    view->setName("\xff%s\n\x01");
    view->create(base_layout(), nullptr);
    EXPECT_STREQ(view->getName(), "\xff%s\n\x01");
}

TEST_F(ViewTest, PlainObjectHasNoController) {
    EXPECT_EQ(wview_get_instance(base_layout()), nullptr);
}

TEST_F(ViewTest, FindsItsWindowAboveItsObject) {
    View *outer = created("outer");
    auto *inner = new View(m_journal, "inner");
    ASSERT_TRUE(inner->create(outer->getEvasObject(), nullptr));
    EXPECT_EQ(inner->getWindowController(), &window());
    EXPECT_EQ(inner->getWindowEvasObject(), win());
    EXPECT_EQ(inner->getWindowBaseLayoutEvasObject(), base_layout());
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(ViewTest, HasNoWindowUntilCreated) {
    auto *view = new View(m_journal);
    EXPECT_EQ(view->getWindowController(), nullptr);
    EXPECT_EQ(view->getWindowEvasObject(), nullptr);
    EXPECT_EQ(view->getWindowBaseLayoutEvasObject(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to get window evas object!"),
                                  logs::error("* Critical * Fail to get base layout!")},
                                 tag));
    EXPECT_TRUE(LoggedIn("getWindowEvasObject", DLOG_ERROR,
                         "* Critical * Fail to get window evas object!", tag));
    EXPECT_TRUE(LoggedIn("getWindowBaseLayoutEvasObject", DLOG_ERROR,
                         "* Critical * Fail to get base layout!", tag));
    view->destroy();
}

TEST_F(ViewTest, ViewOutsideAnyWindowFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            Evas_Object *stray = elm_win_add(nullptr, "stray", ELM_WIN_BASIC);
            (new View(m_journal))->create(stray, nullptr);
        },
        "(_pv->_windowController != nullptr)", "Cannot find window controll.");
}

TEST_F(ViewTest, ObjectThatIsItsOwnWindowFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            auto *view = new View(m_journal);
            // The object itself isn't asked, only what is above it.
            view->setCreateViewHandler([this](Evas_Object *, void *) { return win(); });
            view->create(nullptr, nullptr);
        },
        "(_pv->_windowController != nullptr)", "Cannot find window controll.");
}

TEST_F(ViewTest, DestroyDeletesTheObjectAndSoTheView) {
    View *view = created();
    const WViewWeakPtr weak = view->getWeakPtr();
    m_journal.clear();
    view->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
    EXPECT_TRUE(weak.expired());
}

TEST_F(ViewTest, DestroyWithoutAnObjectDeletesAtOnce) {
    auto *view = new View(m_journal);
    view->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
}

TEST_F(ViewTest, DeletionOfTheObjectDeletesTheView) {
    View *view = created();
    m_journal.clear();
    evas_object_del(view->getEvasObject());
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
}

TEST_F(ViewTest, ChildGoesWithItsParent) {
    View *outer = created("outer");
    auto *inner = new View(m_journal, "inner");
    ASSERT_TRUE(inner->create(outer->getEvasObject(), nullptr));
    m_journal.clear();
    outer->destroy();
    support::run_loop_turns();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "inner.onDestroy"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "inner.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "outer.gone"), 1);
}

TEST_F(ViewTest, ViewGoesWithItsWindow) {
    created();
    m_journal.clear();
    delete_window();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "window.gone"), 1);
}

TEST_F(ViewTest, MayDestroyItselfInOnCreated) {
    auto *view = new View(m_journal);
    view->in_created = [view] { view->destroy(); };
    EXPECT_TRUE(view->create(base_layout(), nullptr));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated",
                                  "view.onDestroy", "view.gone"}));
}

// A view that has ended in its own creation needs nobody to destroy it any more.

struct EndsInCreation : View {
    using View::View;
    bool ends_in_on_create = false;
    bool result = true;
    bool onCreate(void *param) override {
        View::onCreate(param);
        const bool accepted = result;
        if (ends_in_on_create) {
            destroy();
        }
        return accepted;
    }
};

TEST_F(ViewTest, MayDestroyItselfInOnCreate) {
    for (const bool result : {true, false}) {
        m_journal.clear();
        auto *view = new EndsInCreation(m_journal);
        view->ends_in_on_create = true;
        view->result = result;
        EXPECT_TRUE(view->create(base_layout(), nullptr));
        EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onDestroy", "view.gone"}));
    }
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(ViewTest, MayDestroyItselfWhileItsObjectIsMade) {
    auto *view = new View(m_journal);
    Evas_Object *made = nullptr;
    bool deleted = false;
    std::weak_ptr<int> watch;
    auto token = std::make_shared<int>(0);
    watch = token;
    view->setCreateViewHandler([&, token = std::move(token)](Evas_Object *parent, void *) {
        view->destroy();
        // What the handler holds outlives the view.
        EXPECT_FALSE(watch.expired());
        made = elm_button_add(parent);
        evas_object_event_callback_add(
            made, EVAS_CALLBACK_DEL,
            [](void *data, Evas *, Evas_Object *, void *) { *static_cast<bool *>(data) = true; },
            &deleted);
        return made;
    });
    EXPECT_TRUE(view->create(base_layout(), nullptr));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onDestroy", "view.gone"}));
    EXPECT_TRUE(deleted);
    EXPECT_TRUE(watch.expired());
}

TEST_F(ViewTest, MayDestroyItselfAgainInOnDestroy) {
    View *view = created();
    view->in_destroy = [view] { evas_object_del(view->getEvasObject()); };
    m_journal.clear();
    view->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
}

TEST_F(ViewTest, WeakPointersShareOneAnchor) {
    View *view = created();
    const WViewWeakPtr one = view->getWeakPtr();
    const WViewWeakPtr other = view->getWeakPtr();
    EXPECT_FALSE(one.owner_before(other) || other.owner_before(one));
    EXPECT_EQ(one.use_count(), 1);
    EXPECT_EQ(one.lock().get(), view);
    evas_object_del(view->getEvasObject());
    EXPECT_TRUE(one.expired());
    EXPECT_TRUE(other.expired());
}

TEST_F(ViewTest, WeakPointerStillGivesTheViewInOnDestroy) {
    View *view = created();
    const WViewWeakPtr weak = view->getWeakPtr();
    WViewController *seen = nullptr;
    view->in_destroy = [&] { seen = weak.lock().get(); };
    view->destroy();
    EXPECT_EQ(seen, view);
    EXPECT_TRUE(weak.expired());
}

TEST_F(ViewTest, StrongPointerDoesNotKeepTheViewAlive) {
    View *view = created();
    m_journal.clear();
    {
        const auto strong = view->getWeakPtr().lock();
        view->destroy();
        EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
    }
}

TEST_F(ViewTest, WeakPointerOfAViewWithoutObjectExpiresAtDestroy) {
    auto *view = new View(m_journal);
    const WViewWeakPtr weak = view->getWeakPtr();
    EXPECT_FALSE(weak.expired());
    view->destroy();
    EXPECT_TRUE(weak.expired());
}

// ---- popups of a view

TEST_F(ViewTest, PopupIsCreatedBelowTheBaseLayout) {
    View *view = created();
    auto *popup = new View(m_journal, "popup");
    view->attachPopup(popup);
    EXPECT_EQ(elm_object_parent_widget_get(popup->getEvasObject()), base_layout());
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(ViewTest, SecondPopupIsCreatedBeforeTheFirstGoes) {
    View *view = created();
    view->attachPopup(new View(m_journal, "first"));
    m_journal.clear();
    view->attachPopup(new View(m_journal, "second"));
    EXPECT_EQ(m_journal, (Journal{"second.onCreate", "second.onCreateView", "second.onCreated",
                                  "first.onDestroy", "first.gone"}));
    m_journal.clear();
    view->destroyPopup();
    EXPECT_EQ(m_journal, (Journal{"second.onDestroy", "second.gone"}));
}

TEST_F(ViewTest, DestroyPopupWithoutAPopupDoesNothing) {
    View *view = created();
    m_journal.clear();
    view->destroyPopup();
    EXPECT_EQ(m_journal, Journal{});
}

TEST_F(ViewTest, PopupThatWentByItselfIsForgotten) {
    View *view = created();
    auto *popup = new View(m_journal, "popup");
    view->attachPopup(popup);
    evas_object_del(popup->getEvasObject());
    m_journal.clear();
    view->destroyPopup();
    EXPECT_EQ(m_journal, Journal{});
    view->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
}

TEST_F(ViewTest, PopupGoesWithItsView) {
    View *view = created();
    auto *popup = new View(m_journal, "popup");
    view->attachPopup(popup);
    const WViewWeakPtr weak = popup->getWeakPtr();
    m_journal.clear();
    view->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone", "popup.onDestroy", "popup.gone"}));
    EXPECT_TRUE(weak.expired());
}

TEST_F(ViewTest, PopupGoesBeforeTheWeakPointersOfItsViewExpire) {
    View *view = created();
    const WViewWeakPtr weak = view->getWeakPtr();
    auto *popup = new View(m_journal, "popup");
    bool expired = true;
    popup->in_destroy = [&] { expired = weak.expired(); };
    view->attachPopup(popup);
    view->destroy();
    EXPECT_FALSE(expired);
    EXPECT_TRUE(weak.expired());
}

TEST_F(ViewTest, PopupThatCouldNotBeCreatedIsKeptAndDestroyed) {
    View *view = created();
    auto *popup = new View(m_journal, "popup");
    popup->make_object = false;
    view->attachPopup(popup);
    m_journal.clear();
    view->destroyPopup();
    EXPECT_EQ(m_journal, (Journal{"popup.onDestroy", "popup.gone"}));
}

TEST_F(ViewTest, SamePopupAttachedTwiceGoesOnce) {
    View *view = created();
    auto *popup = new View(m_journal, "popup");
    view->attachPopup(popup);
    m_journal.clear();
    view->attachPopup(popup);
    EXPECT_EQ(m_journal, (Journal{"popup.onDestroy", "popup.gone"}));
    view->destroyPopup();
}

TEST_F(ViewTest, PopupMayDestroyItsViewInOnDestroy) {
    View *view = created();
    auto *popup = new View(m_journal, "popup");
    popup->in_destroy = [view] { view->destroy(); };
    view->attachPopup(popup);
    m_journal.clear();
    view->destroyPopup();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "popup.gone"), 1);
}

TEST_F(ViewTest, PopupMayDestroyItselfInItsCreation) {
    auto *view = new View(m_journal);
    ASSERT_TRUE(view->create(base_layout(), nullptr));
    auto *popup = new View(m_journal, "popup");
    popup->in_created = [popup] { popup->destroy(); };
    view->attachPopup(popup);
    EXPECT_EQ(m_journal.back(), "popup.gone");
    view->destroyPopup();
    view->destroy();
}

TEST_F(ViewTest, PopupMayDestroyItsViewInItsCreationAndGoesToo) {
    auto *view = new View(m_journal);
    ASSERT_TRUE(view->create(base_layout(), nullptr));
    auto *popup = new View(m_journal, "popup");
    popup->in_created = [view] { view->destroy(); };
    view->attachPopup(popup);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
    EXPECT_EQ(m_journal.back(), "popup.gone");
}

TEST_F(ViewTest, FormerPopupMayDestroyTheViewWhenTheNextOneComes) {
    auto *view = new View(m_journal);
    ASSERT_TRUE(view->create(base_layout(), nullptr));
    auto *former = new View(m_journal, "former");
    view->attachPopup(former);
    former->in_destroy = [view] { view->destroy(); };
    view->attachPopup(new View(m_journal, "next"));
    for (const char *what : {"view.gone", "former.gone", "next.gone"}) {
        EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), what), 1) << what;
    }
}

TEST_F(ViewTest, NoPopupIsLoggedAndChangesNothing) {
    auto *view = new View(m_journal);
    ASSERT_TRUE(view->create(base_layout(), nullptr));
    auto *popup = new View(m_journal, "popup");
    view->attachPopup(popup);
    m_journal.clear();
    view->attachPopup(nullptr);
    EXPECT_EQ(m_journal, Journal());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * No popup to attach!")}, tag));
}

TEST_F(ViewTest, PopupOfAViewWithoutObjectIsNotCreated) {
    auto *view = new View(m_journal);
    auto *popup = new View(m_journal, "popup");
    popup->make_object = false;
    view->attachPopup(popup);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Cannot find parent View!"),
                                  logs::error("* Critical * No view object created!")},
                                 tag));
    view->destroy();
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "popup.gone"), 1);
}

TEST_F(ViewTest, ViewMayDestroyItselfOrItsContainerWhileAPartTakesIt) {
    auto *container = new View(m_journal, "container");
    ASSERT_TRUE(container->create(base_layout(), nullptr));
    auto *first = new View(m_journal, "first");
    first->in_created = [first] { first->destroy(); };
    EXPECT_TRUE(container->setPartContent("elm.swallow.content", first));
    EXPECT_EQ(m_journal.back(), "first.gone");
    auto *second = new View(m_journal, "second");
    second->in_created = [container] { container->destroy(); };
    EXPECT_TRUE(container->setPartContent("elm.swallow.content", second));
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "second.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "container.gone"), 1);
}

TEST_F(ViewTest, PartRefusesNoView) {
    auto *container = new View(m_journal, "container");
    ASSERT_TRUE(container->create(base_layout(), nullptr));
    EXPECT_FALSE(container->setPartContent("elm.swallow.content", nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to create the view")}, tag));
}

class ViewWithoutBaseLayoutTest : public ViewTest {
protected:
    bool with_base_layout() const override { return false; }
};

TEST_F(ViewWithoutBaseLayoutTest, PopupFallsBackToTheTopWidgetWithALogLine) {
    auto *view = new View(m_journal);
    ASSERT_TRUE(view->create(win(), nullptr));
    auto *popup = new View(m_journal, "popup");
    view->attachPopup(popup);
    EXPECT_TRUE(LoggedIn("attachPopup", DLOG_ERROR, "* Critical * Cannot find parent View!", tag));
    EXPECT_EQ(elm_object_parent_widget_get(popup->getEvasObject()),
              elm_object_top_widget_get(view->getEvasObject()));
}

TEST_F(ViewWithoutBaseLayoutTest, WindowBaseLayoutIsNullWithoutALogLine) {
    auto *view = new View(m_journal);
    ASSERT_TRUE(view->create(win(), nullptr));
    EXPECT_EQ(view->getWindowBaseLayoutEvasObject(), nullptr);
    EXPECT_TRUE(NoFaultLogged(tag));
}

// ---- parts

constexpr const char *part = "elm.swallow.content";
constexpr const char *container_missing = "* Critical * Container object is not yet created!";

TEST_F(ViewTest, PartTakesAView) {
    View *outer = created("outer");
    auto *inner = new View(m_journal, "inner");
    EXPECT_TRUE(outer->setPartContent(part, inner));
    EXPECT_EQ(elm_object_part_content_get(outer->getEvasObject(), part), inner->getEvasObject());
    EXPECT_EQ(outer->getPartContent(part), inner);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(ViewTest, PartRefusesAViewThatCantBeCreated) {
    View *outer = created("outer");
    auto *inner = new View(m_journal, "inner");
    inner->accept_creation = false;
    EXPECT_FALSE(outer->setPartContent(part, inner));
    EXPECT_TRUE(
        LoggedIn("setPartContent", DLOG_ERROR, "* Critical * Fail to create the view", tag));
    inner->destroy();
}

TEST_F(ViewTest, PartsNeedACreatedView) {
    auto *view = new View(m_journal);
    auto *inner = new View(m_journal, "inner");
    EXPECT_FALSE(view->setPartContent(part, inner));
    EXPECT_EQ(view->getPartContent(part), nullptr);
    EXPECT_EQ(view->unsetPartContent(part), nullptr);
    EXPECT_EQ(m_journal, Journal{});
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(container_missing), logs::error(container_missing),
                                  logs::error(container_missing)},
                                 tag));
    for (const char *function : {"setPartContent", "getPartContent", "unsetPartContent"}) {
        EXPECT_TRUE(LoggedIn(function, DLOG_ERROR, container_missing, tag));
    }
    view->destroy();
    inner->destroy();
}

TEST_F(ViewTest, EmptyPartIsAWarning) {
    View *view = created();
    EXPECT_EQ(view->getPartContent(part), nullptr);
    EXPECT_EQ(view->unsetPartContent("no such part"), nullptr);
    const std::string text = "Content has not been set or the part does not exist!";
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(text), logs::warn(text)}, tag));
    EXPECT_TRUE(LoggedIn("getPartContent", DLOG_WARN, text, tag));
    EXPECT_TRUE(LoggedIn("unsetPartContent", DLOG_WARN, text, tag));
}

TEST_F(ViewTest, PlainWidgetInAPartIsAnError) {
    View *view = created();
    Evas_Object *button = elm_button_add(view->getEvasObject());
    elm_object_part_content_set(view->getEvasObject(), part, button);
    EXPECT_EQ(view->getPartContent(part), nullptr);
    EXPECT_EQ(view->unsetPartContent(part), nullptr);
    const std::string text = "* Critical * This is not a view controller object";
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(text), logs::error(text)}, tag));
    evas_object_del(button);
}

TEST_F(ViewTest, ViewTakenOutOfItsPartLivesOnWithItsHookArmed) {
    View *outer = created("outer");
    auto *inner = new View(m_journal, "inner");
    outer->setPartContent(part, inner);
    m_journal.clear();
    EXPECT_EQ(outer->unsetPartContent(part), inner);
    EXPECT_EQ(m_journal, Journal{});
    EXPECT_EQ(elm_object_part_content_get(outer->getEvasObject(), part), nullptr);
    evas_object_del(inner->getEvasObject());
    EXPECT_EQ(m_journal, (Journal{"inner.onDestroy", "inner.gone"}));
}

}  // namespace
