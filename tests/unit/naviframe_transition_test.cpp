// The toolkit doesn't pop while a page comes in: what is asked for then isn't lost.

#include <app-assist/WContentViewController.h>

#include "mock_platform/fake_efl_extension.h"
#include "screen_fixture.h"

namespace {

/// A page that says what became of it.
class Page : public app_assist::WContentViewController {
public:
    explicit Page(int &pops) : m_pops(pops) {}
    void refuse() { m_refuses = true; }

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        Evas_Object *layout = elm_layout_add(parent);
        evas_object_show(layout);
        return layout;
    }
    void onPushed(Elm_Object_Item *item) override {
        elm_naviframe_item_style_set(item, "basic/transparent");
    }
    bool onPop() override {
        ++m_pops;
        return !m_refuses;
    }

private:
    int &m_pops;
    bool m_refuses = false;
};

class NaviframeTransition : public screens::ScreenTest {
protected:
    static constexpr double transition_s = 0.5;

    void SetUp() override {
        ScreenTest::SetUp();
        push(new Page(m_pops));
        m_pops = 0;
        m_page = new Page(m_pops);
        m_alive = m_page->getWeakPtr();
    }

    void push(Page *page) { ASSERT_TRUE(naviframe().push(page, "page")); }
    [[nodiscard]] bool is_alive() const { return !m_alive.expired(); }
    [[nodiscard]] bool goes() const {
        return support::run_main_loop_until([this] { return !is_alive(); });
    }
    [[nodiscard]] Page &page() const { return *m_page; }
    [[nodiscard]] int pops() const { return m_pops; }
    [[nodiscard]] int &pops() { return m_pops; }

private:
    int m_pops = 0;
    Page *m_page = nullptr;
    app_assist::WViewWeakPtr m_alive;
};

TEST_F(NaviframeTransition, APageThatIsPoppedOnItsWayInGoesWhenItIsThere) {
    push(&page());
    EXPECT_TRUE(page().popOut());
    EXPECT_EQ(pops(), 0);
    EXPECT_TRUE(goes());
    EXPECT_EQ(pops(), 1);
}

TEST_F(NaviframeTransition, TheBackKeyCountsOnTheWayInToo) {
    push(&page());
    support::run_loop_turns();
    mock::fake_keys().press_back();
    EXPECT_TRUE(goes());
    EXPECT_EQ(pops(), 1);
}

TEST_F(NaviframeTransition, ToldTwiceItGoesOnce) {
    push(&page());
    page().popOut();
    page().popOut();
    EXPECT_TRUE(goes());
    support::run_main_loop_for(transition_s);
    EXPECT_EQ(pops(), 1);
    EXPECT_NE(naviframe().getTopContentView(), nullptr);
}

TEST_F(NaviframeTransition, APageThatRefusesIsAskedOnce) {
    push(&page());
    page().refuse();
    page().popOut();
    EXPECT_TRUE(support::run_main_loop_until([this] { return pops() == 1; }));
    support::run_main_loop_for(transition_s);
    EXPECT_EQ(pops(), 1);
    EXPECT_TRUE(is_alive());
}

TEST_F(NaviframeTransition, AnotherPageOnTopIsntPoppedInItsPlace) {
    push(&page());
    page().popOut();
    auto *above = new Page(pops());
    push(above);
    support::run_main_loop_for(transition_s);
    EXPECT_EQ(naviframe().getTopContentView(), above);
    EXPECT_EQ(pops(), 0);
}

TEST_F(NaviframeTransition, APageThatIsDestroyedMeanwhileLeavesTheOneBelow) {
    push(&page());
    page().popOut();
    page().destroy();
    support::run_main_loop_for(transition_s);
    EXPECT_FALSE(is_alive());
    EXPECT_EQ(pops(), 0);
    EXPECT_NE(naviframe().getTopContentView(), nullptr);
}

}  // namespace
