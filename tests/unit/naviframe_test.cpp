#include "app-assist/WNaviframeController.h"

#include <dlfcn.h>

#include <cstring>
#include <memory>

#include "app-assist/WPopupController.h"
#include "framework_fixture.h"
#include "mock_platform/mock_keys.h"
#include "mock_platform/mock_ui_app.h"

namespace {

Evas_Object *g_lowered = nullptr;

/// The content of the item part that only the device's theme has.
struct MorePart {
    Elm_Object_Item *item = nullptr;
    Evas_Object *button = nullptr;
} g_more;

constexpr const char *more_part = "toolbar_more_btn";

template <typename Function>
Function *real(Function *, const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The program's calls come here first.
extern "C" {

// Without a window manager the toolkit's own leaves no trace.
void elm_win_lower(Evas_Object *obj) {
    g_lowered = obj;
}

void elm_object_item_part_content_set(Elm_Object_Item *it, const char *part, Evas_Object *content) {
    static auto *const next =
        real(&elm_object_item_part_content_set, "elm_object_item_part_content_set");
    if (part != nullptr && std::strcmp(part, more_part) == 0) {
        g_more = {it, content};
    } else {
        next(it, part, content);
    }
}

Evas_Object *elm_object_item_part_content_get(const Elm_Object_Item *it, const char *part) {
    static auto *const next =
        real(&elm_object_item_part_content_get, "elm_object_item_part_content_get");
    if (part != nullptr && std::strcmp(part, more_part) == 0) {
        return it == g_more.item ? g_more.button : nullptr;
    }
    return next(it, part);
}

}  // extern "C"

namespace {

using app_assist::WContentViewController;
using app_assist::WNaviframeController;
using app_assist::WViewController;
using app_assist::WViewWeakPtr;
using framework::Journal;
using framework::Recording;
using support::run_main_loop_until;

constexpr std::string_view tag = logs::framework_tag;

/// A page that writes down what it is told.
class Page : public Recording<WContentViewController> {
public:
    using Recording::Recording;

    bool accept_pop = true;
    bool push_own_item = false;
    std::function<void()> in_attached;
    std::function<void()> in_pushed;
    std::function<void()> in_pop;
    std::function<void()> in_become_top;
    WNaviframeController *attached_to = nullptr;
    Elm_Object_Item *attached_item = nullptr;
    Elm_Object_Item *pushed_item = nullptr;
    Elm_Object_Item *own_item = nullptr;
    WNaviframeController *asked_by = nullptr;

protected:
    void onAttachedToNaviframe(WNaviframeController *naviframe, Elm_Object_Item *item) override {
        note("onAttachedToNaviframe");
        attached_to = naviframe;
        attached_item = item;
        call(in_attached);
    }

    Elm_Object_Item *onCreateNaviItem(Evas_Object *naviframe) override {
        note("onCreateNaviItem");
        asked_by = getNaviframeController();
        if (push_own_item) {
            own_item = elm_naviframe_item_push(naviframe, "own", nullptr, nullptr, getEvasObject(),
                                               nullptr);
        }
        return own_item;
    }

    void onPushed(Elm_Object_Item *item) override {
        note("onPushed");
        pushed_item = item;
        call(in_pushed);
    }

    bool onPop() override {
        note("onPop");
        const bool accept = accept_pop;
        call(in_pop);
        return accept;
    }

    void onBecomeTop() override {
        note("onBecomeTop");
        call(in_become_top);
    }

private:
    // A copy, since the function may delete the page that holds it.
    static void call(std::function<void()> function) {
        if (function) {
            function();
        }
    }
};

class Naviframe : public WNaviframeController {
public:
    explicit Naviframe(Journal &journal) : m_journal(journal) {}

protected:
    ~Naviframe() override { m_journal.emplace_back("naviframe.gone"); }
    void onDestroy() override { m_journal.emplace_back("naviframe.onDestroy"); }

private:
    Journal &m_journal;
};

class NaviframeTest : public framework::WindowedTest {
protected:
    void SetUp() override {
        WindowedTest::SetUp();
        g_lowered = nullptr;
        g_more = {};
        m_naviframe = new Naviframe(m_journal);
        ASSERT_TRUE(window().attachBaseViewController(m_naviframe));
        m_journal.clear();
    }

    Page *pushed(const std::string &name) {
        auto *page = new Page(m_journal, name);
        const bool covers = depth() > 0;
        bool finished = !covers;
        evas_object_smart_callback_add(frame(), "transition,finished", set, &finished);
        EXPECT_TRUE(m_naviframe->push(page, name.c_str()));
        // The toolkit refuses a pop while the page still comes in.
        EXPECT_TRUE(run_main_loop_until([&] { return finished; }));
        evas_object_smart_callback_del_full(frame(), "transition,finished", set, &finished);
        return page;
    }

    static void set(void *data, Evas_Object *, void *) { *static_cast<bool *>(data) = true; }

    Evas_Object *frame() { return m_naviframe->getEvasObject(); }
    unsigned depth() {
        Eina_List *items = elm_naviframe_items_get(frame());
        const unsigned count = eina_list_count(items);
        eina_list_free(items);
        return count;
    }
    bool noted(const std::string &what) {
        return std::count(m_journal.begin(), m_journal.end(), what) == 1;
    }
    // A popped page goes when the toolkit's transition is over.
    bool wait_for(const std::string &what) {
        return run_main_loop_until([&] { return noted(what); });
    }

    Naviframe *m_naviframe = nullptr;
};

TEST_F(NaviframeTest, AnswersItsClassName) {
    EXPECT_STREQ(m_naviframe->getClassName(), "WNaviframeController");
    EXPECT_STREQ(pushed("page")->getClassName(), "WContentViewController");
}

TEST_F(NaviframeTest, CarriesItsKeyAndIsShown) {
    EXPECT_EQ(evas_object_data_get(frame(), "__@WNaviframeInstance"),
              static_cast<WNaviframeController *>(m_naviframe));
    EXPECT_TRUE(evas_object_visible_get(frame()));
    EXPECT_STREQ(elm_object_widget_type_get(frame()), "Elm_Naviframe");
}

TEST_F(NaviframeTest, CreationThatFailsSetsNoKey) {
    auto *naviframe = new Naviframe(m_journal);
    naviframe->setCreateViewHandler([](Evas_Object *, void *) -> Evas_Object * { return nullptr; });
    EXPECT_FALSE(naviframe->create(base_layout(), nullptr));
    naviframe->destroy();
    EXPECT_EQ(m_journal, (Journal{"naviframe.onDestroy", "naviframe.gone"}));
}

TEST_F(NaviframeTest, PushTellsThePageInOrder) {
    pushed("page");
    EXPECT_EQ(m_journal,
              (Journal{"page.onCreate", "page.onCreateView", "page.onCreated",
                       "page.onCreateNaviItem", "page.onAttachedToNaviframe", "page.onPushed"}));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(NaviframeTest, PushedPageStandsOnTop) {
    Page *page = pushed("page");
    Elm_Object_Item *top = elm_naviframe_top_item_get(frame());
    EXPECT_EQ(page->getNaviItem(), top);
    EXPECT_EQ(page->getNaviframeController(), m_naviframe);
    EXPECT_EQ(page->attached_to, m_naviframe);
    EXPECT_EQ(page->attached_item, top);
    EXPECT_EQ(page->pushed_item, top);
    EXPECT_EQ(elm_object_item_data_get(top), static_cast<WContentViewController *>(page));
    EXPECT_EQ(elm_object_item_content_get(top), page->getEvasObject());
    EXPECT_TRUE(m_naviframe->isTopContentView(page));
    EXPECT_EQ(m_naviframe->getTopContentView(), page);
}

TEST_F(NaviframeTest, PageKnowsItsPlaceFromItsItemOn) {
    auto *page = new Page(m_journal, "page");
    WContentViewController *top = nullptr;
    page->in_attached = [&] { top = m_naviframe->getTopContentView(); };
    EXPECT_TRUE(m_naviframe->push(page, "page"));
    EXPECT_EQ(page->asked_by, m_naviframe);
    EXPECT_EQ(top, page);
}

TEST_F(NaviframeTest, PushGivesThePageItsName) {
    auto *page = new Page(m_journal, "page");
    EXPECT_TRUE(m_naviframe->push(page, "tsl_player_view"));
    EXPECT_STREQ(page->getName(), "tsl_player_view");
    EXPECT_STREQ(evas_object_name_get(page->getEvasObject()), "tsl_player_view");
}

TEST_F(NaviframeTest, NullNameLeavesTheNameAlone) {
    auto *page = new Page(m_journal, "page");
    page->setName("own");
    EXPECT_TRUE(m_naviframe->push(page, nullptr));
    EXPECT_STREQ(page->getName(), "own");
}

TEST_F(NaviframeTest, PushHandsItsParameterOn) {
    auto *page = new Page(m_journal, "page");
    int param = 0;
    EXPECT_TRUE(m_naviframe->push(page, "page", &param));
    EXPECT_EQ(page->seen_param, &param);
    auto *other = new Page(m_journal, "other");
    other->seen_param = &param;
    EXPECT_TRUE(m_naviframe->push(other, "other"));
    EXPECT_EQ(other->seen_param, nullptr);
}

TEST_F(NaviframeTest, TitleIsTheItemsTitle) {
    auto *page = new Page(m_journal, "page");
    page->setTitle("Now playing");
    m_naviframe->push(page, nullptr);
    EXPECT_STREQ(elm_object_item_text_get(page->getNaviItem()), "Now playing");
}

TEST_F(NaviframeTest, TitleIsCopiedAndReplaced) {
    auto *page = new Page(m_journal, "page");
    EXPECT_EQ(page->getTitle(), nullptr);
    std::string title = "first";
    page->setTitle(title.c_str());
    title = "other";
    EXPECT_STREQ(page->getTitle(), "first");
    page->setTitle(nullptr);
    EXPECT_EQ(page->getTitle(), nullptr);
    page->destroy();
}

TEST_F(NaviframeTest, PageMayPushItsOwnItem) {
    auto *page = new Page(m_journal, "page");
    page->push_own_item = true;
    EXPECT_TRUE(m_naviframe->push(page, nullptr));
    EXPECT_EQ(page->getNaviItem(), page->own_item);
    EXPECT_EQ(depth(), 1U);
}

TEST_F(NaviframeTest, PushedHandlerTakesThePlaceOfOnPushed) {
    auto *page = new Page(m_journal, "page");
    Elm_Object_Item *seen = nullptr;
    page->setPushedHandler([&](Elm_Object_Item *item) { seen = item; });
    m_naviframe->push(page, nullptr);
    EXPECT_EQ(seen, page->getNaviItem());
    EXPECT_FALSE(noted("page.onPushed"));
}

TEST_F(NaviframeTest, PageThatCantBeCreatedIsNotPushed) {
    auto *page = new Page(m_journal, "page");
    page->accept_creation = false;
    EXPECT_FALSE(m_naviframe->push(page, "page"));
    EXPECT_TRUE(LoggedIn("onPush", DLOG_ERROR, "* Critical * Failed to create a vc!", tag));
    EXPECT_EQ(depth(), 0U);
    m_journal.clear();
    page->destroy();
    EXPECT_EQ(m_journal, (Journal{"page.onDestroy", "page.gone"}));
}

TEST_F(NaviframeTest, PushBeforeCreationFailsTheAssertion) {
    EXPECT_ASSERTION((new Naviframe(m_journal))->push(new Page(m_journal, "page"), "page"),
                     "(getEvasObject() != nullptr)", "getEvasObject() != nullptr");
}

TEST_F(NaviframeTest, PageNeverPushedHasNoPlace) {
    auto *page = new Page(m_journal, "page");
    EXPECT_EQ(page->getNaviframeController(), nullptr);
    EXPECT_EQ(page->getNaviItem(), nullptr);
    EXPECT_TRUE(LoggedIn("getNaviframeController", DLOG_WARN, "naviframe does not exist!", tag));
    EXPECT_TRUE(LoggedIn("getNaviItem", DLOG_WARN, "naviItem does not exist!", tag));
    page->destroy();
}

TEST_F(NaviframeTest, PageNeverPushedIsNotOnTop) {
    pushed("other");
    auto *page = new Page(m_journal, "page");
    logs::clear();
    EXPECT_FALSE(m_naviframe->isTopContentView(page));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("naviItem does not exist!")}, tag));
    page->destroy();
}

TEST_F(NaviframeTest, EmptyOrMissingStackHasNoTop) {
    Page *page = new Page(m_journal, "page");
    EXPECT_FALSE(m_naviframe->isTopContentView(page));
    EXPECT_EQ(m_naviframe->getTopContentView(), nullptr);
    auto *missing = new Naviframe(m_journal);
    EXPECT_FALSE(missing->isTopContentView(page));
    EXPECT_EQ(missing->getTopContentView(), nullptr);
    EXPECT_TRUE(NoFaultLogged(tag));
    missing->destroy();
    page->destroy();
}

TEST_F(NaviframeTest, CoveredPageIsNotOnTop) {
    Page *below = pushed("below");
    pushed("above");
    EXPECT_FALSE(m_naviframe->isTopContentView(below));
}

// ---- leaving

TEST_F(NaviframeTest, BackKeyPopsTheTopPageInOrder) {
    pushed("below");
    pushed("above");
    m_journal.clear();
    EXPECT_TRUE(mock::fake_keys().press_back());
    ASSERT_TRUE(wait_for("above.gone"));
    EXPECT_EQ(m_journal,
              (Journal{"above.onPop", "below.onBecomeTop", "above.onDestroy", "above.gone"}));
    EXPECT_EQ(depth(), 1U);
}

TEST_F(NaviframeTest, RefusedPopLeavesTheStack) {
    pushed("below");
    Page *above = pushed("above");
    above->accept_pop = false;
    m_journal.clear();
    EXPECT_TRUE(mock::fake_keys().press_back());
    support::run_main_loop_for(0.05);
    EXPECT_EQ(m_journal, Journal{"above.onPop"});
    EXPECT_EQ(depth(), 2U);
    // The next try is asked again.
    above->accept_pop = true;
    EXPECT_TRUE(mock::fake_keys().press_back());
    EXPECT_TRUE(wait_for("above.gone"));
}

TEST_F(NaviframeTest, PopOfThreeTellsThePageBelowTheTop) {
    pushed("bottom");
    pushed("middle");
    pushed("top");
    m_journal.clear();
    mock::fake_keys().press_back();
    ASSERT_TRUE(wait_for("top.gone"));
    EXPECT_TRUE(noted("middle.onBecomeTop"));
    EXPECT_FALSE(noted("bottom.onBecomeTop"));
}

TEST_F(NaviframeTest, BottomPageStaysAndTheWindowIsLowered) {
    pushed("page");
    m_journal.clear();
    mock::fake_keys().press_back();
    support::run_main_loop_for(0.05);
    EXPECT_EQ(m_journal, Journal{"page.onPop"});
    EXPECT_EQ(g_lowered, win());
    EXPECT_EQ(depth(), 1U);
}

TEST_F(NaviframeTest, BottomPageThatRefusesAsksNobodyElse) {
    Page *page = pushed("page");
    page->accept_pop = false;
    bool asked = false;
    m_naviframe->setLastItemPopHandler([&](bool *) { asked = true; });
    mock::fake_keys().press_back();
    support::run_main_loop_for(0.05);
    EXPECT_FALSE(asked);
    EXPECT_EQ(g_lowered, nullptr);
    EXPECT_EQ(m_naviframe->getTopContentView(), page);
}

TEST_F(NaviframeTest, LastItemHandlerTakesThePlaceOfLowering) {
    pushed("page");
    bool flag = false;
    m_naviframe->setLastItemPopHandler([&](bool *pop_out) {
        flag = *pop_out;
        *pop_out = false;
    });
    m_journal.clear();
    mock::fake_keys().press_back();
    support::run_main_loop_for(0.05);
    EXPECT_TRUE(flag);
    EXPECT_EQ(g_lowered, nullptr);
    EXPECT_EQ(depth(), 1U);
    EXPECT_EQ(m_journal, Journal{"page.onPop"});
}

TEST_F(NaviframeTest, LastItemHandlerThatLeavesTheFlagPopsTheLastPage) {
    pushed("page");
    m_naviframe->setLastItemPopHandler([](bool *) {});
    m_journal.clear();
    mock::fake_keys().press_back();
    ASSERT_TRUE(wait_for("page.gone"));
    EXPECT_EQ(m_journal, (Journal{"page.onPop", "page.onDestroy", "page.gone"}));
    EXPECT_EQ(depth(), 0U);
}

TEST_F(NaviframeTest, PopOutTakesTheRoadOfTheBackKey) {
    pushed("below");
    Page *above = pushed("above");
    m_journal.clear();
    EXPECT_TRUE(above->popOut());
    ASSERT_TRUE(wait_for("above.gone"));
    EXPECT_EQ(m_journal,
              (Journal{"above.onPop", "below.onBecomeTop", "above.onDestroy", "above.gone"}));
}

TEST_F(NaviframeTest, PopOutIsTrueEvenWhenRefused) {
    pushed("below");
    Page *above = pushed("above");
    above->accept_pop = false;
    EXPECT_TRUE(above->popOut());
    EXPECT_EQ(depth(), 2U);
}

TEST_F(NaviframeTest, PopOutDestroysAnAttachedPopupEvenWhenRefused) {
    pushed("below");
    Page *above = pushed("above");
    above->accept_pop = false;
    above->attachPopup(new framework::View(m_journal, "popup"));
    m_journal.clear();
    EXPECT_TRUE(above->popOut());
    EXPECT_EQ(m_journal, (Journal{"popup.onDestroy", "popup.gone", "above.onPop"}));
}

TEST_F(NaviframeTest, PopOutBeforeCreationIsAWarning) {
    auto *page = new Page(m_journal, "page");
    EXPECT_FALSE(page->popOut());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Not created view! No Evas Object!")}, tag));
    EXPECT_TRUE(LoggedIn("popOut", DLOG_WARN, "Not created view! No Evas Object!", tag));
    page->destroy();
}

TEST_F(NaviframeTest, PopOutBeforeThePushIsAWarning) {
    auto *page = new Page(m_journal, "page");
    ASSERT_TRUE(page->create(base_layout(), nullptr));
    EXPECT_FALSE(page->popOut());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Not pushed to naviframe!")}, tag));
}

TEST_F(NaviframeTest, PopOutOfACoveredPageFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            Page *below = pushed("below");
            pushed("above");
            below->popOut();
        },
        "(0)", "This view is not on Top of Naviframe!");
}

TEST_F(NaviframeTest, DestroyedPageIsNotAskedAndTellsNobody) {
    pushed("below");
    Page *above = pushed("above");
    m_journal.clear();
    above->destroy();
    ASSERT_TRUE(wait_for("above.gone"));
    EXPECT_EQ(m_journal, (Journal{"above.onDestroy", "above.gone"}));
    EXPECT_EQ(depth(), 1U);
}

TEST_F(NaviframeTest, CoveredPageMayBeDestroyed) {
    Page *below = pushed("below");
    Page *above = pushed("above");
    m_journal.clear();
    below->destroy();
    ASSERT_TRUE(wait_for("below.gone"));
    EXPECT_EQ(m_journal, (Journal{"below.onDestroy", "below.gone"}));
    EXPECT_TRUE(m_naviframe->isTopContentView(above));
}

TEST_F(NaviframeTest, PageCreatedAndNotPushedIsDestroyedByItsObject) {
    auto *page = new Page(m_journal, "page");
    ASSERT_TRUE(page->create(base_layout(), nullptr));
    m_journal.clear();
    page->destroy();
    EXPECT_EQ(m_journal, (Journal{"page.onDestroy", "page.gone"}));
}

TEST_F(NaviframeTest, DestroyedNaviframeTakesItsPagesFromTheBottomUp) {
    pushed("below");
    pushed("above");
    m_journal.clear();
    window().destroyBaseViewController();
    ASSERT_TRUE(wait_for("naviframe.gone"));
    EXPECT_EQ(m_journal, (Journal{"below.onDestroy", "below.gone", "above.onDestroy", "above.gone",
                                  "naviframe.onDestroy", "naviframe.gone"}));
}

TEST_F(NaviframeTest, PagesGoWithTheWindow) {
    pushed("below");
    pushed("above");
    m_journal.clear();
    delete_window();
    EXPECT_TRUE(wait_for("below.gone"));
    EXPECT_TRUE(wait_for("above.gone"));
    EXPECT_TRUE(noted("naviframe.gone"));
    EXPECT_FALSE(noted("above.onPop"));
}

TEST_F(NaviframeTest, PageBelowWithoutItsViewFailsTheAssertion) {
    EXPECT_ASSERTION(
        {
            elm_naviframe_item_push(frame(), nullptr, nullptr, nullptr, elm_box_add(frame()),
                                    nullptr);
            pushed("above");
            mock::fake_keys().press_back();
        },
        "(targetView)", "targetView");
}

// ---- deletion inside the page's own operations

TEST_F(NaviframeTest, PageMayDestroyItselfInOnCreated) {
    auto *page = new Page(m_journal, "page");
    page->in_created = [page] { page->destroy(); };
    EXPECT_TRUE(m_naviframe->push(page, "page"));
    EXPECT_TRUE(noted("page.gone"));
    EXPECT_EQ(depth(), 0U);
}

TEST_F(NaviframeTest, PageMayDestroyItselfInOnAttached) {
    auto *page = new Page(m_journal, "page");
    page->in_attached = [page] { page->destroy(); };
    EXPECT_TRUE(m_naviframe->push(page, "page"));
    ASSERT_TRUE(wait_for("page.gone"));
    EXPECT_FALSE(noted("page.onPushed"));
}

TEST_F(NaviframeTest, PageMayDestroyItselfInOnPushed) {
    auto *page = new Page(m_journal, "page");
    page->in_pushed = [page] { page->destroy(); };
    EXPECT_TRUE(m_naviframe->push(page, "page"));
    EXPECT_TRUE(wait_for("page.gone"));
}

TEST_F(NaviframeTest, NaviframeMayGoWhileAPushIsUnderWay) {
    auto *page = new Page(m_journal, "page");
    page->in_pushed = [this] { window().destroyBaseViewController(); };
    EXPECT_TRUE(m_naviframe->push(page, "page"));
    EXPECT_TRUE(wait_for("page.gone"));
    EXPECT_TRUE(wait_for("naviframe.gone"));
}

TEST_F(NaviframeTest, NaviframeMayGoWhileThePageIsBeingCreated) {
    auto *page = new Page(m_journal, "page");
    page->in_created = [this] { window().destroyBaseViewController(); };
    EXPECT_TRUE(m_naviframe->push(page, "page"));
    EXPECT_TRUE(wait_for("page.gone"));
    EXPECT_TRUE(wait_for("naviframe.gone"));
}

TEST_F(NaviframeTest, PageMayDestroyItselfInOnPop) {
    pushed("below");
    Page *above = pushed("above");
    above->in_pop = [above] { above->destroy(); };
    m_journal.clear();
    mock::fake_keys().press_back();
    ASSERT_TRUE(wait_for("above.gone"));
    EXPECT_TRUE(noted("above.onPop"));
    EXPECT_EQ(depth(), 1U);
}

TEST_F(NaviframeTest, NaviframeMayGoInOnPop) {
    pushed("below");
    Page *above = pushed("above");
    above->in_pop = [this] { window().destroyBaseViewController(); };
    m_journal.clear();
    mock::fake_keys().press_back();
    EXPECT_TRUE(wait_for("above.gone"));
    EXPECT_TRUE(wait_for("below.gone"));
    EXPECT_TRUE(wait_for("naviframe.gone"));
}

TEST_F(NaviframeTest, NextPageMayBePushedInOnBecomeTop) {
    Page *below = pushed("below");
    pushed("above");
    below->in_become_top = [this] { pushed("next"); };
    mock::fake_keys().press_back();
    ASSERT_TRUE(wait_for("next.onPushed"));
    support::run_main_loop_for(0.5);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "next.gone"), 0);
}

// ---- more key and more button

class MoreButtonTest : public NaviframeTest {
protected:
    static void clicked(void *data, Evas_Object *, void *info) {
        ++*static_cast<int *>(data);
        s_info = info;
    }
    static inline void *s_info = nullptr;

    int m_clicks = 0;
};

TEST_F(MoreButtonTest, MoreKeyWithoutAMoreButtonDoesNothing) {
    pushed("page");
    m_journal.clear();
    EXPECT_TRUE(mock::fake_keys().press_more());
    EXPECT_EQ(m_journal, Journal{});
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(MoreButtonTest, MoreKeyOnAnEmptyStackDoesNothing) {
    EXPECT_TRUE(mock::fake_keys().press_more());
    EXPECT_EQ(m_journal, Journal{});
}

TEST_F(MoreButtonTest, IsAShownButtonInItsPartOfTheItem) {
    Page *page = pushed("page");
    EXPECT_TRUE(page->setMoreButton(page->getNaviItem(), clicked, &m_clicks));
    EXPECT_EQ(g_more.item, page->getNaviItem());
    ASSERT_NE(g_more.button, nullptr);
    EXPECT_STREQ(elm_object_widget_type_get(g_more.button), "Elm_Button");
    EXPECT_STREQ(elm_object_style_get(g_more.button), "naviframe/more/default");
    EXPECT_EQ(elm_object_parent_widget_get(g_more.button), frame());
    EXPECT_TRUE(evas_object_visible_get(g_more.button));
}

TEST_F(MoreButtonTest, MoreKeyClicksTheMoreButtonOfTheTopPage) {
    Page *page = pushed("page");
    s_info = this;
    page->setMoreButton(page->getNaviItem(), clicked, &m_clicks);
    EXPECT_TRUE(mock::fake_keys().press_more());
    EXPECT_EQ(m_clicks, 1);
    EXPECT_EQ(s_info, nullptr);
}

TEST_F(MoreButtonTest, MoreKeyLeavesTheMoreButtonOfACoveredPage) {
    Page *below = pushed("below");
    below->setMoreButton(below->getNaviItem(), clicked, &m_clicks);
    pushed("above");
    EXPECT_TRUE(mock::fake_keys().press_more());
    EXPECT_EQ(m_clicks, 0);
}

// ---- the view that a derived class doesn't fill

struct DefaultPage : WContentViewController {
    using WContentViewController::WContentViewController;
};

class DefaultViewTest : public NaviframeTest {
protected:
    static std::pair<std::string, std::string> file_of(Evas_Object *layout) {
        const char *file = nullptr;
        const char *group = nullptr;
        elm_layout_file_get(layout, &file, &group);
        return {file != nullptr ? file : "", group != nullptr ? group : ""};
    }
};

TEST_F(DefaultViewTest, ShowsAColourAndTheViewsName) {
    auto *page = new DefaultPage("home");
    ASSERT_TRUE(m_naviframe->push(page, nullptr));
    Evas_Object *layout = page->getEvasObject();
    EXPECT_EQ(file_of(layout),
              std::pair(std::string(TESSEL_STAGE_DATADIR "/res/edje/app-assist-efl.edj"),
                        std::string("default-view")));
    EXPECT_STREQ(elm_object_part_text_get(layout, "name"), "home");
    Evas_Object *rect = elm_object_part_content_get(layout, "rect");
    ASSERT_NE(rect, nullptr);
    int alpha = 0;
    evas_object_color_get(rect, nullptr, nullptr, nullptr, &alpha);
    EXPECT_EQ(alpha, 255);
    double x = 0.0;
    double y = 0.0;
    for (Evas_Object *object : {layout, rect}) {
        evas_object_size_hint_weight_get(object, &x, &y);
        EXPECT_EQ(std::pair(x, y), std::pair(1.0, 1.0));
    }
    evas_object_size_hint_align_get(rect, &x, &y);
    EXPECT_EQ(std::pair(x, y), std::pair(-1.0, -1.0));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(DefaultViewTest, IsShown) {
    auto *page = new DefaultPage;
    ASSERT_TRUE(page->create(base_layout(), nullptr));
    EXPECT_TRUE(evas_object_visible_get(page->getEvasObject()));
}

TEST_F(DefaultViewTest, ColourIsThreeRandomNumbers) {
    std::srand(42);
    const int red = std::rand() % 256;
    const int green = std::rand() % 256;
    const int blue = std::rand() % 256;
    std::srand(42);
    auto *page = new DefaultPage;
    ASSERT_TRUE(page->create(base_layout(), nullptr));
    Evas_Object *rect = elm_object_part_content_get(page->getEvasObject(), "rect");
    int r = 0;
    int g = 0;
    int b = 0;
    evas_object_color_get(rect, &r, &g, &b, nullptr);
    EXPECT_EQ(std::vector({r, g, b}), std::vector({red, green, blue}));
}

TEST_F(DefaultViewTest, MissingResourcePathGivesAnEmptyLayout) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path())
        .WillOnce(testing::Return(static_cast<char *>(nullptr)));
    auto *page = new DefaultPage;
    EXPECT_TRUE(m_naviframe->push(page, nullptr));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * Failed to get resource path=nullptr")}, tag));
    EXPECT_EQ(file_of(page->getEvasObject()), std::pair(std::string(), std::string()));
}

TEST_F(DefaultViewTest, MissingThemeFileIsLoggedAndGivesAShownEmptyLayout) {
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillOnce([] {
        return strdup("/nowhere/");
    });
    auto *page = new DefaultPage;
    ASSERT_TRUE(page->create(base_layout(), nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to set layout. Check EDJ "
                                              "file(/nowhere/edje/app-assist-efl.edj)")},
                                 tag));
    EXPECT_TRUE(evas_object_visible_get(page->getEvasObject()));
}

TEST_F(NaviframeTest, HandlersMayEndThePageAndGoOnWithWhatTheyHold) {
    auto *page = new Page(m_journal, "page");
    auto token = std::make_shared<int>(7);
    int seen = 0;
    page->setPushedHandler([page, token = std::move(token), &seen](Elm_Object_Item *) {
        page->destroy();
        seen = *token;
    });
    EXPECT_TRUE(m_naviframe->push(page, nullptr));
    EXPECT_EQ(seen, 7);
    EXPECT_TRUE(wait_for("page.gone"));
}

TEST_F(NaviframeTest, PopupMayEndItsPageWhileThatPopsOut) {
    Page *below = pushed("below");
    Page *above = pushed("above");
    auto *popup = new Recording<WViewController>(m_journal, "popup");
    above->attachPopup(popup);
    popup->in_destroy = [above] { above->destroy(); };
    EXPECT_TRUE(above->popOut());
    EXPECT_TRUE(wait_for("above.gone"));
    support::run_main_loop_for(0.05);
    // One page went, not two.
    EXPECT_TRUE(m_naviframe->isTopContentView(below));
    EXPECT_FALSE(noted("below.onPop"));
}

TEST_F(NaviframeTest, LastItemHandlerMayReplaceItself) {
    pushed("page");
    auto token = std::make_shared<int>(7);
    int seen = 0;
    m_naviframe->setLastItemPopHandler([this, token = std::move(token), &seen](bool *pop_out) {
        m_naviframe->setLastItemPopHandler(nullptr);
        seen = *token;
        *pop_out = false;
    });
    mock::fake_keys().press_back();
    EXPECT_EQ(seen, 7);
    EXPECT_EQ(depth(), 1U);
}

TEST_F(NaviframeTest, NaviframeMayGoInItsLastItemHandler) {
    pushed("page");
    m_naviframe->setLastItemPopHandler([this](bool *) { m_naviframe->destroy(); });
    mock::fake_keys().press_back();
    EXPECT_TRUE(wait_for("naviframe.gone"));
    EXPECT_TRUE(noted("page.gone"));
}

TEST_F(NaviframeTest, NaviframeMayGoInOnBecomeTop) {
    Page *below = pushed("below");
    pushed("above");
    below->in_become_top = [this] { m_naviframe->destroy(); };
    mock::fake_keys().press_back();
    EXPECT_TRUE(wait_for("naviframe.gone"));
    EXPECT_TRUE(noted("below.gone"));
    EXPECT_TRUE(noted("above.gone"));
}

TEST_F(NaviframeTest, PageMayDestroyItselfInOnCreateViewOfAPush) {
    auto *page = new Page(m_journal, "page");
    page->setCreateViewHandler([page](Evas_Object *, void *) -> Evas_Object * {
        page->destroy();
        return nullptr;
    });
    EXPECT_TRUE(m_naviframe->push(page, nullptr));
    EXPECT_TRUE(noted("page.gone"));
    EXPECT_EQ(depth(), 0U);
}

TEST_F(NaviframeTest, NoPageIsNotPushed) {
    EXPECT_FALSE(m_naviframe->push(nullptr, "page"));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Failed to create a vc!")}, tag));
    pushed("page");
    EXPECT_FALSE(m_naviframe->isTopContentView(nullptr));
}

TEST_F(NaviframeTest, NameMayHoldAnyBytes) {
    const char *odd = "\xff\x01%s\n\"'/../\xe2\x82";
    auto *page = new Page(m_journal, "page");
    page->setTitle(odd);
    EXPECT_TRUE(m_naviframe->push(page, odd));
    EXPECT_STREQ(page->getName(), odd);
    EXPECT_STREQ(page->getTitle(), odd);
    EXPECT_STREQ(evas_object_name_get(page->getEvasObject()), odd);
}

TEST_F(MoreButtonTest, PageWithoutAPlaceGetsNone) {
    auto *page = new Page(m_journal, "page");
    EXPECT_TRUE(page->setMoreButton(nullptr, clicked, nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("naviframe does not exist!")}, tag));
    page->destroy();
}

}  // namespace
