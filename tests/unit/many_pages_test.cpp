// Many pages come and go in one process, and nothing of them stays.

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "app-assist/WNaviframeController.h"
#include "app-assist/WPageSlideViewController.h"
#include "app-assist/WPopupController.h"
#include "app-assist/WTimer.h"
#include "framework_fixture.h"

namespace {

std::atomic<long> g_bytes{0};

}  // namespace

// What the framework keeps as objects and functions, to the byte.

void *operator new(std::size_t size) {
    void *block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    g_bytes += static_cast<long>(malloc_usable_size(block));
    return block;
}

void operator delete(void *block) noexcept {
    if (block != nullptr) {
        g_bytes -= static_cast<long>(malloc_usable_size(block));
        std::free(block);
    }
}

void operator delete(void *block, std::size_t) noexcept {
    operator delete(block);
}

// There only in a sanitized program, whose own leak detector sees to what is no object.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

using app_assist::WContentViewController;
using app_assist::WNaviframeController;
using app_assist::WPageSlideViewController;
using app_assist::WPopupController;
using app_assist::WTimer;
using app_assist::WTimerWeakPtr;
using support::run_main_loop_until;

constexpr int few = 100;

const std::string long_text(2000, 'x');

bool is_sanitized() {
    return __sanitizer_get_current_allocated_bytes != nullptr;
}

/// A sanitizer makes each page many times dearer, and fewer show the same.
int many() {
    return is_sanitized() ? 200 : 10'000;
}

class PlainPage : public WContentViewController {
protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *) override {
        Evas_Object *box = elm_box_add(parent);
        evas_object_show(box);
        return box;
    }
};

/// A page that comes and goes without a transition.
class QuickPage : public PlainPage {
protected:
    Elm_Object_Item *onCreateNaviItem(Evas_Object *naviframe) override {
        return elm_naviframe_item_push(naviframe, getTitle(), nullptr, nullptr, getEvasObject(),
                                       "instant");
    }
};

class ManyPages : public framework::WindowedTest {
protected:
    void SetUp() override {
        elm_theme_overlay_add(nullptr, TESSEL_TEST_THEME);
        WindowedTest::SetUp();
        m_naviframe = new WNaviframeController;
        ASSERT_TRUE(window().attachBaseViewController(m_naviframe));
        m_root = new QuickPage;
        ASSERT_TRUE(m_naviframe->push(m_root, "root"));
    }

    void TearDown() override {
        WindowedTest::TearDown();
        elm_theme_overlay_del(nullptr, TESSEL_TEST_THEME);
    }

    QuickPage *pushed_page() {
        auto *page = new QuickPage;
        page->setPushedHandler([this](Elm_Object_Item *) { ++m_pushed; });
        EXPECT_TRUE(m_naviframe->push(page, long_text.c_str()));
        // Too late to be shown: what the toolkit keeps of a shown text isn't asked about.
        page->setTitle(long_text.c_str());
        return page;
    }

    /// Does it so often and expects as many bytes of the framework's as after the first time.
    template <typename Act>
    void expect_nothing_left(int times, const Act &act) {
        act();
        const long bytes = g_bytes;
        for (int i = 0; i < times && !HasFailure(); ++i) {
            act();
        }
        EXPECT_EQ(g_bytes, bytes);
    }

    WNaviframeController *m_naviframe = nullptr;
    QuickPage *m_root = nullptr;
    int m_pushed = 0;
};

TEST_F(ManyPages, PushedAndPoppedLeaveNothing) {
    expect_nothing_left(few, [this] {
        QuickPage *page = pushed_page();
        const app_assist::WViewWeakPtr alive = page->getWeakPtr();
        // The toolkit refuses a pop until the page has come.
        const auto popped = [&] {
            if (!alive.expired() && m_naviframe->isTopContentView(page)) {
                page->popOut();
            }
            return alive.expired();
        };
        ASSERT_TRUE(run_main_loop_until(popped));
    });
    EXPECT_EQ(m_pushed, few + 1);
    EXPECT_TRUE(m_naviframe->isTopContentView(m_root));
}

TEST_F(ManyPages, DestroyedLeaveNothing) {
    const auto push_and_destroy = [this] {
        auto *page = new PlainPage;
        ASSERT_TRUE(m_naviframe->push(page, long_text.c_str()));
        // Too late to be shown: what the toolkit keeps of a shown text isn't asked about.
        page->setTitle(long_text.c_str());
        support::run_loop_turns(1);
        page->destroy();
        support::run_loop_turns(1);
    };
    // The toolkit's pools and caches fill up first.
    for (int i = 0; i < few; ++i) {
        push_and_destroy();
    }
    // What the toolkit still has in transition goes in a moment.
    const auto settled_bytes = [] {
        support::run_main_loop_for(1.0);
        return mallinfo2().uordblks;
    };
    const std::size_t before = settled_bytes();
    expect_nothing_left(many(), push_and_destroy);
    if (!is_sanitized()) {
        // The toolkit itself keeps some 150 bytes of each page that came and went; a text that the
        // framework kept would show against that.
        EXPECT_LT(settled_bytes(),
                  before + static_cast<std::size_t>(many()) * long_text.size() / 2);
    }
    EXPECT_TRUE(m_naviframe->isTopContentView(m_root));
}

TEST_F(ManyPages, PopupsLeaveNothing) {
    expect_nothing_left(few, [this] {
        auto *popup = new WPopupController(long_text.c_str(), long_text.c_str());
        popup->addButton(
            "button", [](bool *) {}, [](Evas_Object *) {});
        m_root->attachPopup(popup);
        m_root->destroyPopup();
        support::run_loop_turns(1);
    });
}

TEST_F(ManyPages, PagesOfAPageSlideLeaveNothing) {
    auto *slide = new WPageSlideViewController;
    ASSERT_TRUE(m_naviframe->push(slide, "slide"));
    // Its first size has been seen to, and the timer of that is over.
    ASSERT_TRUE(run_main_loop_until([slide] {
        int width = 0;
        elm_scroller_page_size_get(slide->getScroller(), &width, nullptr);
        return width > 0;
    }));
    support::run_loop_turns();
    expect_nothing_left(few, [slide] {
        slide->appendPage(static_cast<WContentViewController *>(new QuickPage));
        slide->removePage(0);
        support::run_loop_turns(1);
    });
}

TEST_F(ManyPages, TimersLeaveNothing) {
    expect_nothing_left(many(), [this] {
        WTimerWeakPtr timer = WTimer::addTimer(
            1.0, [this](void *) { return true; }, nullptr, win());
        WTimer::addJob([this](void *) { ++m_pushed; }, nullptr, win());
        WTimer::destroy(timer);
        support::run_loop_turns(1);
    });
}

}  // namespace
