#include "app-assist/WPageSlideViewController.h"

#include <cstring>
#include <memory>

#include "app-assist/WNaviframeController.h"
#include "framework_fixture.h"
#include "mock_platform/mock_ui_app.h"

namespace {

using app_assist::WContentViewController;
using app_assist::WNaviframeController;
using app_assist::WPageSlideViewController;
using app_assist::WViewController;
using app_assist::WViewWeakPtr;
using framework::Journal;
using framework::Recording;
using framework::View;
using support::run_main_loop_until;

constexpr std::string_view tag = logs::framework_tag;
constexpr int side = 360;

/// A page's view that writes down what it is told of its place.
class PageView : public Recording<WContentViewController> {
public:
    using Recording::Recording;

    std::function<void()> in_attached;
    std::function<void()> in_page_content;
    WNaviframeController *attached_to = nullptr;
    Elm_Object_Item *attached_item = nullptr;
    Elm_Object_Item *page_item = nullptr;

protected:
    void onAttachedToNaviframe(WNaviframeController *naviframe, Elm_Object_Item *item) override {
        note("onAttachedToNaviframe");
        attached_to = naviframe;
        attached_item = item;
        call(in_attached);
    }
    void onBecamePageContent(Elm_Object_Item *item) override {
        note("onBecamePageContent");
        page_item = item;
        call(in_page_content);
    }

private:
    // A copy, since the function may delete the view that holds it.
    static void call(std::function<void()> function) {
        if (function) {
            function();
        }
    }
};

/// A page slide that lets the test act in its operations.
class Slide : public WPageSlideViewController {
public:
    explicit Slide(Journal &journal) : m_journal(journal) {}

    bool make_layout = false;
    std::function<void()> in_layout;
    std::function<void(Evas_Object *)> in_init;
    std::function<void()> in_created;
    void *layout_param = nullptr;

protected:
    ~Slide() override { m_journal.emplace_back("slide.gone"); }

    Evas_Object *onCreateLayout(Evas_Object *parent, void *param) override {
        m_journal.emplace_back("slide.onCreateLayout");
        layout_param = param;
        if (in_layout) {
            const auto act = in_layout;
            act();
            return nullptr;
        }
        if (!make_layout) {
            return nullptr;
        }
        Evas_Object *layout = elm_layout_add(parent);
        elm_layout_file_set(layout, TESSEL_TEST_THEME, "slide-frame");
        return layout;
    }

    void onInitScroller(Evas_Object *scroller) override {
        m_journal.emplace_back("slide.onInitScroller");
        if (in_init) {
            const auto act = in_init;
            act(scroller);
        }
    }

    void onCreated() override {
        if (in_created) {
            const auto act = in_created;
            act();
        }
    }

private:
    Journal &m_journal;
};

class PageSlideTest : public framework::WindowedTest {
protected:
    void SetUp() override {
        WindowedTest::SetUp();
        m_slide = new Slide(m_journal);
    }

    void TearDown() override {
        if (m_slide != nullptr && m_slide->getEvasObject() == nullptr) {
            m_slide->destroy();
        }
        WindowedTest::TearDown();
    }

    /// Below the base layout, as large as the window.
    Slide *create() {
        EXPECT_TRUE(m_slide->create(base_layout(), nullptr));
        elm_win_resize_object_add(win(), object());
        m_journal.clear();
        return m_slide;
    }

    /// A live slide of empty pages, laid out.
    Slide *create_with_pages(int count) {
        create();
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(m_slide->appendPage());
        }
        lay_out();
        return m_slide;
    }

    void lay_out() {
        ASSERT_TRUE(run_main_loop_until([&] { return width_of(object()) == side; }))
            << width_of(object()) << " of " << width_of(win());
        m_slide->resizePages();
        evas_smart_objects_calculate(evas_object_evas_get(win()));
        support::run_loop_turns(4);
    }

    Evas_Object *object() { return m_slide->getEvasObject(); }

    static int width_of(Evas_Object *object) {
        int width = 0;
        evas_object_geometry_get(object, nullptr, nullptr, &width, nullptr);
        return width;
    }

    /// The page's own layout, found above what stands in its part.
    static Evas_Object *base_of(WViewController *view) {
        return elm_object_parent_widget_get(view->getEvasObject());
    }

    int shown_page() {
        int page = -1;
        elm_scroller_current_page_get(m_slide->getScroller(), &page, nullptr);
        return page;
    }

    static int box_x(Slide *slide) {
        int x = 0;
        evas_object_geometry_get(elm_object_content_get(slide->getScroller()), &x, nullptr, nullptr,
                                 nullptr);
        return x;
    }

    /// A finger over the middle of the window, in steps as a screen reports them.
    void swipe(int from, int to) {
        Evas *canvas = evas_object_evas_get(win());
        const int steps = 8;
        evas_event_feed_mouse_in(canvas, m_now, nullptr);
        evas_event_feed_mouse_move(canvas, from, side / 2, m_now, nullptr);
        evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, m_now, nullptr);
        for (int step = 1; step <= steps; ++step) {
            m_now += 12;
            evas_event_feed_mouse_move(canvas, from + (to - from) * step / steps, side / 2, m_now,
                                       nullptr);
            support::run_main_loop_for(0.012);
        }
        m_now += 12;
        evas_event_feed_mouse_up(canvas, 1, EVAS_BUTTON_NONE, m_now, nullptr);
        m_now += 1000;
    }

    Slide *m_slide = nullptr;
    unsigned m_now = 1000;
};

// ---- creation

TEST_F(PageSlideTest, AnswersItsClassName) {
    EXPECT_STREQ(m_slide->getClassName(), "WPageSlideViewController");
}

TEST_F(PageSlideTest, MayHaveANameFromTheStart) {
    struct Named : WPageSlideViewController {
        Named() : WPageSlideViewController("slide") {}
    };
    auto *named = new Named;
    EXPECT_STREQ(named->getName(), "slide");
    named->destroy();
}

TEST_F(PageSlideTest, IsEmptyUntilCreated) {
    EXPECT_EQ(m_slide->getScroller(), nullptr);
    EXPECT_EQ(m_slide->getPageCount(), 0);
    EXPECT_EQ(m_slide->getCurrentPage(), 0);
    EXPECT_EQ(m_slide->getPageContent(0), nullptr);
    m_slide->resizePages();
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(PageSlideTest, WithoutALayoutTheScrollerIsTheView) {
    int param = 0;
    ASSERT_TRUE(m_slide->create(base_layout(), &param));
    EXPECT_EQ(m_slide->layout_param, &param);
    EXPECT_EQ(m_slide->getScroller(), object());
    EXPECT_STREQ(elm_object_widget_type_get(object()), "Elm_Scroller");
    EXPECT_TRUE(evas_object_visible_get(object()));
    EXPECT_EQ(m_journal, (Journal{"slide.onCreateLayout", "slide.onInitScroller"}));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(PageSlideTest, WithALayoutTheScrollerStandsInItsPart) {
    m_slide->make_layout = true;
    create();
    EXPECT_NE(m_slide->getScroller(), object());
    EXPECT_EQ(elm_object_part_content_get(object(), "scroller"), m_slide->getScroller());
    EXPECT_EQ(elm_object_parent_widget_get(m_slide->getScroller()), object());
    EXPECT_TRUE(evas_object_visible_get(m_slide->getScroller()));
}

TEST_F(PageSlideTest, ScrollerPagesHorizontallyOneAtATime) {
    create();
    Evas_Object *scroller = m_slide->getScroller();
    Eina_Bool loops_h = EINA_TRUE;
    Eina_Bool loops_v = EINA_TRUE;
    elm_scroller_loop_get(scroller, &loops_h, &loops_v);
    EXPECT_FALSE(loops_h || loops_v);
    double x = 0.0;
    double y = 0.0;
    evas_object_size_hint_weight_get(scroller, &x, &y);
    EXPECT_EQ(std::pair(x, y), std::pair(1.0, 1.0));
    evas_object_size_hint_align_get(scroller, &x, &y);
    EXPECT_EQ(std::pair(x, y), std::pair(-1.0, -1.0));
    elm_scroller_page_relative_get(scroller, &x, &y);
    EXPECT_EQ(std::pair(x, y), std::pair(1.0, 0.0));
    int limit = -1;
    elm_scroller_page_scroll_limit_get(scroller, &limit, nullptr);
    EXPECT_EQ(limit, 1);
    EXPECT_TRUE(elm_object_scroll_lock_y_get(scroller));
    EXPECT_FALSE(elm_object_scroll_lock_x_get(scroller));
    EXPECT_EQ(elm_scroller_single_direction_get(scroller), ELM_SCROLLER_SINGLE_DIRECTION_HARD);
}

TEST_F(PageSlideTest, ScrollBarMayShowHorizontallyOnly) {
    create();
    Elm_Scroller_Policy horizontal = ELM_SCROLLER_POLICY_LAST;
    Elm_Scroller_Policy vertical = ELM_SCROLLER_POLICY_LAST;
    elm_scroller_policy_get(m_slide->getScroller(), &horizontal, &vertical);
    EXPECT_EQ(horizontal, ELM_SCROLLER_POLICY_AUTO);
    EXPECT_EQ(vertical, ELM_SCROLLER_POLICY_OFF);
}

TEST_F(PageSlideTest, ScrollBarMayBeSwitchedOffBeforeCreation) {
    m_slide->setScrollbarVisible(false);
    create();
    Elm_Scroller_Policy horizontal = ELM_SCROLLER_POLICY_LAST;
    Elm_Scroller_Policy vertical = ELM_SCROLLER_POLICY_LAST;
    elm_scroller_policy_get(m_slide->getScroller(), &horizontal, &vertical);
    EXPECT_EQ(horizontal, ELM_SCROLLER_POLICY_OFF);
    EXPECT_EQ(vertical, ELM_SCROLLER_POLICY_OFF);
}

TEST_F(PageSlideTest, BoxLiesHorizontallyInTheScroller) {
    create();
    Evas_Object *box = elm_object_content_get(m_slide->getScroller());
    ASSERT_NE(box, nullptr);
    EXPECT_STREQ(elm_object_widget_type_get(box), "Elm_Box");
    EXPECT_TRUE(elm_box_horizontal_get(box));
    EXPECT_TRUE(evas_object_visible_get(box));
}

TEST_F(PageSlideTest, InitHandlerTakesThePlaceOfTheOperation) {
    Evas_Object *seen = nullptr;
    int limit = 0;
    m_slide->setInitScrollerHandler([&](Evas_Object *scroller) {
        seen = scroller;
        elm_scroller_page_scroll_limit_get(scroller, &limit, nullptr);
    });
    ASSERT_TRUE(m_slide->create(base_layout(), nullptr));
    EXPECT_EQ(seen, m_slide->getScroller());
    // It comes after the settings, so that it can change them.
    EXPECT_EQ(limit, 1);
    EXPECT_EQ(m_journal, Journal{"slide.onCreateLayout"});
}

TEST_F(PageSlideTest, InitHandlerRunsBeforeTheScrollerStandsInItsPart) {
    m_slide->make_layout = true;
    bool placed = true;
    m_slide->setInitScrollerHandler([&](Evas_Object *scroller) {
        Evas_Object *layout = elm_object_parent_widget_get(scroller);
        placed = elm_object_part_content_get(layout, "scroller") != nullptr;
    });
    create();
    EXPECT_FALSE(placed);
}

TEST_F(PageSlideTest, MayBeDestroyedInItsInitHandler) {
    Slide *slide = m_slide;
    m_slide->setInitScrollerHandler([slide](Evas_Object *) { slide->destroy(); });
    EXPECT_TRUE(m_slide->create(base_layout(), nullptr));
    m_slide = nullptr;
    EXPECT_EQ(m_journal, (Journal{"slide.onCreateLayout", "slide.gone"}));
    support::run_loop_turns();
}

TEST_F(PageSlideTest, MayBeDestroyedWhileItsLayoutIsMade) {
    Slide *slide = m_slide;
    m_slide->in_layout = [slide] { slide->destroy(); };
    EXPECT_TRUE(m_slide->create(base_layout(), nullptr));
    m_slide = nullptr;
    EXPECT_EQ(m_journal.back(), "slide.gone");
}

// ---- size

TEST_F(PageSlideTest, PagesGetTheirSizeAtTheNextTurnOfTheLoop) {
    create();
    ASSERT_TRUE(m_slide->appendPage());
    ASSERT_TRUE(m_slide->appendPage());
    EXPECT_TRUE(run_main_loop_until(
        [&] { return width_of(elm_object_content_get(m_slide->getScroller())) == 2 * side; }));
}

TEST_F(PageSlideTest, PageLaterAddedGetsItsSizeWhenAskedFor) {
    create_with_pages(1);
    auto *view = new View(m_journal);
    ASSERT_TRUE(m_slide->appendPage(view));
    Evas_Object *sizer = elm_object_part_content_get(base_of(view), "sizer");
    int width = -1;
    int height = -1;
    evas_object_size_hint_min_get(sizer, &width, &height);
    EXPECT_EQ(std::pair(width, height), std::pair(0, 0));
    m_slide->resizePages();
    evas_object_size_hint_min_get(sizer, &width, &height);
    EXPECT_EQ(std::pair(width, height), std::pair(side, side));
}

TEST_F(PageSlideTest, CurrentPageSurvivesAResize) {
    create_with_pages(4);
    m_slide->showPage(2, false);
    ASSERT_TRUE(run_main_loop_until([&] { return box_x(m_slide) == -2 * side; }));
    evas_object_resize(win(), 300, 300);
    ASSERT_TRUE(run_main_loop_until([&] { return box_x(m_slide) == -2 * 300; }));
    EXPECT_EQ(m_slide->getCurrentPage(), 2);
    int width = 0;
    int height = 0;
    elm_scroller_page_size_get(m_slide->getScroller(), &width, &height);
    EXPECT_EQ(std::pair(width, height), std::pair(300, 300));
}

TEST_F(PageSlideTest, SizeOfTheLayoutIsThatOfThePages) {
    m_slide->make_layout = true;
    create();
    auto *view = new View(m_journal);
    ASSERT_TRUE(m_slide->appendPage(view));
    Evas_Object *sizer = elm_object_part_content_get(base_of(view), "sizer");
    const auto has_size = [&](int expected) {
        int width = 0;
        evas_object_size_hint_min_get(sizer, &width, nullptr);
        return width == expected;
    };
    EXPECT_TRUE(run_main_loop_until([&] { return has_size(side); }));
    // The scroller's part is narrower than the layout by 20 pixels on each side.
    m_slide->resizePages();
    EXPECT_TRUE(has_size(side - 40));
    evas_object_resize(win(), 300, 300);
    EXPECT_TRUE(run_main_loop_until([&] { return has_size(300); }));
}

TEST_F(PageSlideTest, DestroyedBeforeItsFirstSizeLeavesNoTimer) {
    create();
    m_slide->destroy();
    m_slide = nullptr;
    support::run_main_loop_for(0.03);
    EXPECT_EQ(m_journal, Journal{"slide.gone"});
}

// ---- appending

TEST_F(PageSlideTest, NothingIsAppendedBeforeCreation) {
    auto *view = new View(m_journal);
    auto *page = new PageView(m_journal);
    EXPECT_FALSE(m_slide->appendPage(view));
    EXPECT_FALSE(m_slide->appendPage(page));
    EXPECT_FALSE(m_slide->appendPage());
    EXPECT_TRUE(LoggedTimes(3, DLOG_ERROR, "* Critical * Fail to attach the page!", tag));
    EXPECT_TRUE(LoggedIn("appendPage", DLOG_ERROR, "* Critical * Fail to attach the page!", tag));
    EXPECT_EQ(m_journal, Journal());
    EXPECT_EQ(m_slide->getPageCount(), 0);
    view->destroy();
    page->destroy();
}

TEST_F(PageSlideTest, AppendedViewStandsInItsPage) {
    create();
    auto *view = new View(m_journal);
    ASSERT_TRUE(m_slide->appendPage(view));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    EXPECT_EQ(m_slide->getPageContent(0), view);
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated"}));
    Evas_Object *base = base_of(view);
    const char *file = nullptr;
    const char *group = nullptr;
    elm_layout_file_get(base, &file, &group);
    EXPECT_STREQ(file, TESSEL_STAGE_DATADIR "/res/edje/app-assist-efl.edj");
    EXPECT_STREQ(group, "page");
    EXPECT_EQ(elm_object_part_content_get(base, "sw"), view->getEvasObject());
    EXPECT_EQ(elm_object_parent_widget_get(base), elm_object_content_get(m_slide->getScroller()));
    EXPECT_TRUE(evas_object_visible_get(base));
    double x = 0.0;
    double y = 0.0;
    evas_object_size_hint_weight_get(base, &x, &y);
    EXPECT_EQ(std::pair(x, y), std::pair(1.0, 1.0));
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(PageSlideTest, SizerOfAPageIsInvisibleAndShown) {
    create();
    auto *view = new View(m_journal);
    ASSERT_TRUE(m_slide->appendPage(view));
    Evas_Object *sizer = elm_object_part_content_get(base_of(view), "sizer");
    ASSERT_NE(sizer, nullptr);
    int r = 1;
    int g = 1;
    int b = 1;
    int a = 1;
    evas_object_color_get(sizer, &r, &g, &b, &a);
    EXPECT_EQ(std::vector({r, g, b, a}), std::vector({0, 0, 0, 0}));
    EXPECT_TRUE(evas_object_visible_get(sizer));
    double x = 0.0;
    double y = 0.0;
    evas_object_size_hint_weight_get(sizer, &x, &y);
    EXPECT_EQ(std::pair(x, y), std::pair(1.0, 1.0));
}

TEST_F(PageSlideTest, PlainViewIsNotToldOfAPlace) {
    create();
    auto *page = new PageView(m_journal);
    // As a plain view, whatever it is.
    ASSERT_TRUE(m_slide->appendPage(static_cast<WViewController *>(page)));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated"}));
}

TEST_F(PageSlideTest, PagesStandInTheOrderOfAppending) {
    create();
    auto *first = new View(m_journal);
    auto *last = new View(m_journal);
    m_slide->appendPage(first);
    m_slide->appendPage();
    m_slide->appendPage(last);
    EXPECT_EQ(m_slide->getPageCount(), 3);
    EXPECT_EQ(m_slide->getPageContent(0), first);
    EXPECT_EQ(m_slide->getPageContent(1), nullptr);
    EXPECT_EQ(m_slide->getPageContent(2), last);
    EXPECT_EQ(m_slide->getPageContent(3), nullptr);
    EXPECT_EQ(m_slide->getPageContent(-1), nullptr);
    Eina_List *children = elm_box_children_get(elm_object_content_get(m_slide->getScroller()));
    EXPECT_EQ(eina_list_count(children), 3U);
    EXPECT_EQ(eina_list_nth(children, 2), base_of(last));
    eina_list_free(children);
}

TEST_F(PageSlideTest, NoViewIsNotAppended) {
    create();
    EXPECT_FALSE(m_slide->appendPage(static_cast<WViewController *>(nullptr)));
    EXPECT_FALSE(m_slide->appendPage(static_cast<WContentViewController *>(nullptr)));
    EXPECT_EQ(m_slide->getPageCount(), 0);
}

TEST_F(PageSlideTest, PageWhoseViewCouldNotBeCreatedIsBlank) {
    create();
    auto *view = new View(m_journal);
    view->accept_creation = false;
    EXPECT_TRUE(m_slide->appendPage(view));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    EXPECT_EQ(m_slide->getPageContent(0), nullptr);
    view->destroy();
    EXPECT_EQ(m_slide->unsetPageContent(0), nullptr);
}

TEST_F(PageSlideTest, MissingResourcePathGivesABlankPage) {
    create();
    EXPECT_CALL(mock::ui_app(), app_get_resource_path())
        .WillOnce(testing::Return(static_cast<char *>(nullptr)));
    EXPECT_TRUE(m_slide->appendPage());
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * Failed to get resource path=nullptr!!!")}, tag));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    m_slide->resizePages();
}

TEST_F(PageSlideTest, MissingThemeFileGivesABlankPage) {
    create();
    EXPECT_CALL(mock::ui_app(), app_get_resource_path()).WillOnce([] {
        return strdup("/nowhere/");
    });
    auto *view = new View(m_journal);
    EXPECT_TRUE(m_slide->appendPage(view));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to set layout. Check EDJ "
                                              "file(/nowhere/edje/app-assist-efl.edj)")},
                                 tag));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    m_slide->resizePages();
}

TEST_F(PageSlideTest, ViewMayDestroyItselfWhileItIsAppended) {
    create();
    auto *page = new PageView(m_journal);
    page->in_created = [page] { page->destroy(); };
    EXPECT_TRUE(m_slide->appendPage(page));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    EXPECT_EQ(m_slide->getPageContent(0), nullptr);
    EXPECT_EQ(m_journal.back(), "view.gone");
}

TEST_F(PageSlideTest, ViewMayDestroyThePageSlideWhileItIsAppended) {
    create();
    auto *page = new PageView(m_journal);
    page->in_created = [this] { m_slide->destroy(); };
    EXPECT_TRUE(m_slide->appendPage(page));
    m_slide = nullptr;
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "slide.gone"), 1);
}

TEST_F(PageSlideTest, ViewMayAppendAnotherPageWhileItIsAppended) {
    create();
    auto *view = new View(m_journal);
    view->in_created = [this] { m_slide->appendPage(); };
    EXPECT_TRUE(m_slide->appendPage(view));
    EXPECT_EQ(m_slide->getPageCount(), 2);
    EXPECT_EQ(m_slide->getPageContent(1), view);
}

// ---- a content view's place

class PushedSlideTest : public PageSlideTest {
protected:
    void SetUp() override {
        PageSlideTest::SetUp();
        m_naviframe = new WNaviframeController;
        ASSERT_TRUE(window().attachBaseViewController(m_naviframe));
    }

    void push() { ASSERT_TRUE(m_naviframe->push(m_slide, "slide")); }

    WNaviframeController *m_naviframe = nullptr;
};

TEST_F(PushedSlideTest, PageAppendedLaterIsToldOfItsPlaceAtOnce) {
    push();
    m_journal.clear();
    auto *page = new PageView(m_journal);
    ASSERT_TRUE(m_slide->appendPage(page));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated",
                                  "view.onAttachedToNaviframe", "view.onBecamePageContent"}));
    EXPECT_EQ(page->attached_to, m_naviframe);
    EXPECT_EQ(page->attached_item, m_slide->getNaviItem());
    EXPECT_EQ(page->page_item, m_slide->getNaviItem());
    EXPECT_EQ(page->getNaviItem(), m_slide->getNaviItem());
    EXPECT_EQ(page->getNaviframeController(), m_naviframe);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(PushedSlideTest, PageAppendedBeforeIsToldOfItsPlaceByThePush) {
    auto *page = new PageView(m_journal, "page");
    auto *plain = new View(m_journal, "plain");
    m_slide->in_created = [&] {
        m_slide->appendPage(page);
        m_slide->appendPage(plain);
        m_slide->appendPage();
        m_journal.emplace_back("created");
    };
    push();
    const auto created = std::find(m_journal.begin(), m_journal.end(), "created");
    ASSERT_NE(created, m_journal.end());
    // Told twice: when it is added, of no place yet, and by the push.
    EXPECT_EQ(Journal(created + 1, m_journal.end()), Journal{"page.onAttachedToNaviframe"});
    EXPECT_EQ(page->attached_to, m_naviframe);
    EXPECT_EQ(page->attached_item, m_slide->getNaviItem());
    EXPECT_TRUE(LoggedTimes(2, DLOG_WARN, "naviframe does not exist!", tag));
    EXPECT_TRUE(LoggedTimes(3, DLOG_WARN, "naviItem does not exist!", tag));
}

TEST_F(PushedSlideTest, DestroyOfAPageDeletesItsObjectOnly) {
    push();
    auto *page = new PageView(m_journal);
    m_slide->appendPage(page);
    m_journal.clear();
    page->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
    EXPECT_TRUE(m_naviframe->isTopContentView(m_slide));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    EXPECT_EQ(m_slide->getPageContent(0), nullptr);
    // Its page can be filled again.
    auto *next = new View(m_journal);
    EXPECT_TRUE(m_slide->setPageContent(0, next));
    EXPECT_EQ(m_slide->getPageContent(0), next);
}

TEST_F(PushedSlideTest, PageAppendedBeforeThePushOwnsNoItemEither) {
    auto *page = new PageView(m_journal);
    m_slide->in_created = [&] { m_slide->appendPage(page); };
    push();
    EXPECT_EQ(page->getNaviItem(), m_slide->getNaviItem());
    page->destroy();
    EXPECT_EQ(m_journal.back(), "view.gone");
    EXPECT_TRUE(m_naviframe->isTopContentView(m_slide));
}

TEST_F(PushedSlideTest, PagesGoWithThePageSlide) {
    push();
    m_slide->appendPage(new PageView(m_journal, "first"));
    m_slide->appendPage(new PageView(m_journal, "second"));
    m_journal.clear();
    m_slide->destroy();
    m_slide = nullptr;
    ASSERT_TRUE(run_main_loop_until([&] {
        return std::count(m_journal.begin(), m_journal.end(), "slide.gone") == 1 &&
               std::count(m_journal.begin(), m_journal.end(), "first.gone") == 1 &&
               std::count(m_journal.begin(), m_journal.end(), "second.gone") == 1;
    }));
}

TEST_F(PushedSlideTest, PageMayDestroyItselfWhenItIsToldOfItsPlace) {
    push();
    auto *page = new PageView(m_journal);
    page->in_attached = [page] { page->destroy(); };
    m_journal.clear();
    EXPECT_TRUE(m_slide->appendPage(page));
    EXPECT_EQ(m_journal.back(), "view.gone");
    EXPECT_EQ(m_slide->getPageContent(0), nullptr);
}

TEST_F(PushedSlideTest, PageMayDestroyItselfAsPageContent) {
    push();
    auto *page = new PageView(m_journal);
    page->in_page_content = [page] { page->destroy(); };
    EXPECT_TRUE(m_slide->appendPage(page));
    EXPECT_EQ(m_journal.back(), "view.gone");
}

TEST_F(PushedSlideTest, PagesMayBeRemovedWhileTheyAreToldOfThePush) {
    auto *first = new PageView(m_journal, "first");
    auto *second = new PageView(m_journal, "second");
    m_slide->in_created = [&] {
        m_slide->appendPage(first);
        m_slide->appendPage(second);
        first->in_attached = [this] {
            m_slide->removePage(1);
            m_slide->removePage(0);
        };
    };
    push();
    EXPECT_EQ(m_slide->getPageCount(), 0);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "first.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "second.gone"), 1);
}

TEST_F(PushedSlideTest, PageMayDestroyThePageSlideWhenItIsToldOfThePush) {
    auto *first = new PageView(m_journal, "first");
    m_slide->in_created = [&] {
        m_slide->appendPage(first);
        m_slide->appendPage(new PageView(m_journal, "second"));
        first->in_attached = [this] { m_slide->destroy(); };
    };
    push();
    m_slide = nullptr;
    EXPECT_TRUE(run_main_loop_until(
        [&] { return std::count(m_journal.begin(), m_journal.end(), "second.gone") == 1; }));
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "slide.gone"), 1);
}

// ---- filling and emptying

TEST_F(PageSlideTest, EmptyPageTakesAView) {
    create_with_pages(2);
    auto *view = new View(m_journal);
    EXPECT_TRUE(m_slide->setPageContent(1, view));
    EXPECT_EQ(m_slide->getPageContent(1), view);
    EXPECT_EQ(elm_object_part_content_get(base_of(view), "sw"), view->getEvasObject());
    EXPECT_EQ(m_slide->getPageCount(), 2);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(PushedSlideTest, EmptyPageTellsAContentViewOfItsPlace) {
    push();
    m_slide->appendPage();
    auto *page = new PageView(m_journal);
    m_journal.clear();
    EXPECT_TRUE(m_slide->setPageContent(0, page));
    EXPECT_EQ(m_journal, (Journal{"view.onCreate", "view.onCreateView", "view.onCreated",
                                  "view.onAttachedToNaviframe", "view.onBecamePageContent"}));
    EXPECT_EQ(page->page_item, m_slide->getNaviItem());
}

TEST_F(PageSlideTest, IndexOutOfRangeIsLoggedAndTakesNothing) {
    create_with_pages(2);
    auto *view = new View(m_journal);
    EXPECT_FALSE(m_slide->setPageContent(-1, view));
    EXPECT_FALSE(m_slide->setPageContent(3, view));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * Index is not in range(index=-1,count=2)"),
                          logs::error("* Critical * Fail to set page content -1!"),
                          logs::error("* Critical * Index is not in range(index=3,count=2)"),
                          logs::error("* Critical * Fail to set page content 3!")},
                         tag));
    EXPECT_TRUE(
        LoggedIn("setPageContent", DLOG_ERROR, "* Critical * Fail to set page content 3!", tag));
    EXPECT_EQ(m_journal, Journal());
    view->destroy();
}

TEST_F(PageSlideTest, IndexBehindTheLastPageCreatesTheViewWithoutAParent) {
    create_with_pages(2);
    struct Watching : View {
        using View::View;
        Evas_Object *seen_parent = reinterpret_cast<Evas_Object *>(this);
        Evas_Object *onCreateView(Evas_Object *parent, void *) override {
            seen_parent = parent;
            return nullptr;
        }
    };
    auto *view = new Watching(m_journal);
    EXPECT_TRUE(m_slide->setPageContent(2, view));
    EXPECT_EQ(view->seen_parent, nullptr);
    EXPECT_EQ(m_slide->getPageCount(), 2);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * No view object created!")}, tag));
    view->destroy();
}

TEST_F(PageSlideTest, OccupiedPageKeepsItsView) {
    create_with_pages(1);
    auto *view = new View(m_journal);
    auto *other = new View(m_journal);
    ASSERT_TRUE(m_slide->setPageContent(0, view));
    m_journal.clear();
    EXPECT_FALSE(m_slide->setPageContent(0, other));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Index is already occupied(index=0)"),
                                  logs::error("* Critical * Fail to set page content 0!")},
                                 tag));
    EXPECT_EQ(m_slide->getPageContent(0), view);
    EXPECT_EQ(m_journal, Journal());
    other->destroy();
}

TEST_F(PageSlideTest, PlainWidgetInAPageRefusesAView) {
    create();
    auto *view = new View(m_journal);
    m_slide->appendPage(view);
    Evas_Object *base = base_of(view);
    view->destroy();
    elm_object_part_content_set(base, "sw", elm_button_add(base));
    auto *other = new View(m_journal);
    logs::clear();
    m_journal.clear();
    EXPECT_FALSE(m_slide->setPageContent(0, other));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Fail to set page content 0!")}, tag));
    EXPECT_EQ(m_journal, Journal());
    other->destroy();
}

TEST_F(PageSlideTest, NoViewFillsNoPage) {
    create_with_pages(1);
    EXPECT_FALSE(m_slide->setPageContent(0, static_cast<WViewController *>(nullptr)));
    EXPECT_FALSE(m_slide->setPageContent(0, static_cast<WContentViewController *>(nullptr)));
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * Fail to set page content 0!", tag));
}

TEST_F(PageSlideTest, ViewMayDestroyThePageSlideWhileItFillsAPage) {
    create_with_pages(1);
    auto *page = new PageView(m_journal);
    page->in_created = [this] { m_slide->destroy(); };
    EXPECT_TRUE(m_slide->setPageContent(0, page));
    m_slide = nullptr;
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
}

TEST_F(PageSlideTest, ViewTakenOutLivesOnAndThePageStays) {
    create_with_pages(1);
    auto *view = new View(m_journal);
    m_slide->setPageContent(0, view);
    m_journal.clear();
    EXPECT_EQ(m_slide->unsetPageContent(0), view);
    EXPECT_EQ(m_slide->getPageCount(), 1);
    EXPECT_EQ(m_slide->getPageContent(0), nullptr);
    EXPECT_EQ(m_journal, Journal());
    auto *next = new View(m_journal);
    EXPECT_TRUE(m_slide->setPageContent(0, next));
    m_journal.clear();
    view->destroy();
    EXPECT_EQ(m_journal, (Journal{"view.onDestroy", "view.gone"}));
}

TEST_F(PageSlideTest, EmptyPageHasNothingToTakeOut) {
    create_with_pages(1);
    EXPECT_EQ(m_slide->unsetPageContent(0), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * elm_object_part_content_unset obj is nullptr")}, tag));
}

TEST_F(PageSlideTest, TakingOutOfRangeIsLogged) {
    create_with_pages(1);
    EXPECT_EQ(m_slide->unsetPageContent(1), nullptr);
    EXPECT_EQ(m_slide->unsetPageContent(-1), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Out of page number(1), index=1"),
                                  logs::error("* Critical * Out of page number(1), index=-1")},
                                 tag));
}

// ---- removing

TEST_F(PageSlideTest, RemovedPageTakesItsViewAlong) {
    create_with_pages(2);
    m_slide->setPageContent(0, new View(m_journal, "first"));
    m_slide->setPageContent(1, new View(m_journal, "second"));
    m_journal.clear();
    EXPECT_TRUE(m_slide->removePage(0));
    EXPECT_EQ(m_journal, (Journal{"first.onDestroy", "first.gone"}));
    EXPECT_EQ(m_slide->getPageCount(), 1);
    ASSERT_NE(m_slide->getPageContent(0), nullptr);
    Eina_List *children = elm_box_children_get(elm_object_content_get(m_slide->getScroller()));
    EXPECT_EQ(eina_list_count(children), 1U);
    eina_list_free(children);
}

TEST_F(PageSlideTest, RemovalOfTheOnlyPageLeavesNone) {
    create_with_pages(1);
    EXPECT_TRUE(m_slide->removePage(0));
    EXPECT_EQ(m_slide->getPageCount(), 0);
    EXPECT_FALSE(m_slide->removePage(0));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * Out of page number(0), index=0")}, tag));
}

TEST_F(PageSlideTest, RemovalOutOfRangeIsLogged) {
    create_with_pages(3);
    EXPECT_FALSE(m_slide->removePage(3));
    EXPECT_FALSE(m_slide->removePage(-1));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Out of page number(3), index=3"),
                                  logs::error("* Critical * Out of page number(3), index=-1")},
                                 tag));
    EXPECT_EQ(m_slide->getPageCount(), 3);
}

TEST_F(PageSlideTest, ViewMayRemoveItsOwnPageOnceMoreInOnDestroy) {
    create_with_pages(2);
    auto *view = new View(m_journal);
    m_slide->setPageContent(0, view);
    view->in_destroy = [this] { m_slide->removePage(0); };
    EXPECT_TRUE(m_slide->removePage(0));
    EXPECT_EQ(m_slide->getPageCount(), 1);
}

TEST_F(PageSlideTest, ViewMayDestroyThePageSlideInOnDestroy) {
    create_with_pages(2);
    auto *view = new View(m_journal);
    m_slide->setPageContent(0, view);
    view->in_destroy = [this] { m_slide->destroy(); };
    EXPECT_TRUE(m_slide->removePage(0));
    m_slide = nullptr;
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "slide.gone"), 1);
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
}

TEST_F(PageSlideTest, PagesAreOutOfReachWhileThePageSlideGoes) {
    create_with_pages(1);
    auto *view = new View(m_journal);
    m_slide->setPageContent(0, view);
    const WViewWeakPtr slide = m_slide->getWeakPtr();
    bool asked = false;
    view->in_destroy = [&] {
        if (!slide.expired()) {
            asked = true;
            m_slide->getPageContent(0);
            m_slide->showPage(0, true);
            m_slide->resizePages();
        }
    };
    m_slide->destroy();
    m_slide = nullptr;
    EXPECT_EQ(std::count(m_journal.begin(), m_journal.end(), "view.gone"), 1);
    (void)asked;
}

TEST_F(PageSlideTest, WidgetsThatOutliveItByAMomentTellItNothing) {
    for (const bool with_layout : {false, true}) {
        if (with_layout) {
            m_slide = new Slide(m_journal);
            m_slide->make_layout = true;
        }
        create_with_pages(2);
        bool told = false;
        m_slide->setPageChangedHandler([&](int) { told = true; });
        Evas_Object *scroller = m_slide->getScroller();
        evas_object_event_callback_priority_add(
            object(), EVAS_CALLBACK_DEL, EVAS_CALLBACK_PRIORITY_AFTER,
            [](void *data, Evas *, Evas_Object *whole, void *) {
                auto *scroller = static_cast<Evas_Object *>(data);
                for (const char *event : {"scroll", "scroll,anim,start", "scroll,anim,stop"}) {
                    evas_object_smart_callback_call(scroller, event, nullptr);
                }
                evas_object_resize(whole, 77, 77);
            },
            scroller);
        m_slide->destroy();
        m_slide = nullptr;
        EXPECT_EQ(m_journal, Journal{"slide.gone"});
        EXPECT_FALSE(told);
    }
}

// ---- scrolling

TEST_F(PageSlideTest, ShownPageIsTheCurrentOneAtOnce) {
    create_with_pages(3);
    m_slide->showPage(2, false);
    EXPECT_EQ(m_slide->getCurrentPage(), 2);
    EXPECT_TRUE(run_main_loop_until([&] { return box_x(m_slide) == -2 * side; }));
    EXPECT_EQ(shown_page(), 2);
}

TEST_F(PageSlideTest, AnimatedPageComesInTime) {
    create_with_pages(3);
    bool passed_between = false;
    evas_object_smart_callback_add(
        m_slide->getScroller(), "scroll",
        [](void *data, Evas_Object *scroller, void *) {
            int x = 0;
            evas_object_geometry_get(elm_object_content_get(scroller), &x, nullptr, nullptr,
                                     nullptr);
            *static_cast<bool *>(data) |= x % side != 0;
        },
        &passed_between);
    m_slide->showPage(1, true);
    EXPECT_EQ(m_slide->getCurrentPage(), 1);
    EXPECT_NE(box_x(m_slide), -side);
    EXPECT_TRUE(run_main_loop_until([&] { return box_x(m_slide) == -side; }));
    EXPECT_TRUE(passed_between);
    m_slide->destroy();
    m_slide = nullptr;
}

TEST_F(PageSlideTest, PageOutOfRangeIsLoggedAndChangesNothing) {
    create_with_pages(3);
    m_slide->showPage(1, false);
    for (const bool animate : {false, true}) {
        m_slide->showPage(-1, animate);
        m_slide->showPage(3, animate);
    }
    EXPECT_EQ(m_slide->getCurrentPage(), 1);
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * Out of page number(3), index=-1", tag));
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * Out of page number(3), index=3", tag));
    m_slide->resizePages();
    EXPECT_EQ(shown_page(), 1);
}

class SwipeTest : public PageSlideTest {
protected:
    void SetUp() override {
        // As on a touch screen.
        elm_config_scroll_thumbscroll_enabled_set(EINA_TRUE);
        PageSlideTest::SetUp();
        create_with_pages(4);
        m_slide->setPageChangedHandler([this](int change) { m_changes.push_back(change); });
    }

    void swipe_and_rest(int from, int to, int page) {
        swipe(from, to);
        const auto rests = [&] { return box_x(m_slide) == -page * side && !m_changes.empty(); };
        EXPECT_TRUE(run_main_loop_until(rests)) << box_x(m_slide);
    }

    int last_change() const { return m_changes.empty() ? 0 : m_changes.back(); }

    std::vector<int> m_changes;
};

TEST_F(SwipeTest, ToTheNextPageIsPlusOne) {
    swipe_and_rest(300, 60, 1);
    EXPECT_EQ(m_slide->getCurrentPage(), 1);
    EXPECT_EQ(last_change(), 1);
}

TEST_F(SwipeTest, ToThePageBeforeIsMinusOne) {
    m_slide->showPage(2, false);
    ASSERT_TRUE(run_main_loop_until([&] { return box_x(m_slide) == -2 * side; }));
    m_changes.clear();
    swipe_and_rest(60, 300, 1);
    EXPECT_EQ(m_slide->getCurrentPage(), 1);
    EXPECT_EQ(last_change(), -1);
}

TEST_F(SwipeTest, MovesOnePageAtATimeHoweverFar) {
    swipe_and_rest(355, 5, 1);
    m_changes.clear();
    swipe_and_rest(355, 5, 2);
    EXPECT_EQ(m_slide->getCurrentPage(), 2);
    EXPECT_EQ(last_change(), 1);
}

TEST_F(SwipeTest, LaterHandlerReplacesTheEarlier) {
    int seen = 0;
    m_slide->setPageChangedHandler([&](int change) { seen = change; });
    swipe(300, 60);
    EXPECT_TRUE(run_main_loop_until([&] { return seen == 1; }));
    EXPECT_TRUE(m_changes.empty());
}

TEST_F(SwipeTest, WithoutAHandlerThePageChangesAlone) {
    m_slide->setPageChangedHandler(nullptr);
    swipe(300, 60);
    EXPECT_TRUE(run_main_loop_until([&] { return m_slide->getCurrentPage() == 1; }));
}

TEST_F(SwipeTest, HandlerMayDestroyThePageSlide) {
    auto token = std::make_shared<int>(0);
    std::weak_ptr<int> alive_in_handler = token;
    bool usable = false;
    m_slide->setPageChangedHandler([this, token = std::move(token), &usable](int) {
        m_slide->destroy();
        m_slide = nullptr;
        // What the handler holds is still there.
        usable = token.use_count() > 0;
    });
    swipe(300, 60);
    EXPECT_TRUE(run_main_loop_until([&] { return m_slide == nullptr; }));
    EXPECT_TRUE(usable);
    EXPECT_TRUE(alive_in_handler.expired());
    support::run_main_loop_for(0.05);
    EXPECT_EQ(m_journal.back(), "slide.gone");
}

}  // namespace
