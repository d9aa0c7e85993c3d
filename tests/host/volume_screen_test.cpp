// The volume screen with the platform's own circle, theme and numbers.

#include <Elementary.h>
#include <malloc.h>

#include <cstddef>
#include <cstdlib>

#include "TslNaviframeController.h"
#include "TslResourceCtrl.h"
#include "TslUtils.h"
#include "TslVolumeView.h"
#include "TslWindowCtrl.h"
#include "app-assist/WContentViewController.h"
#include "main_loop.h"

#include <gtest/gtest.h>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

std::size_t bytes_in_use() {
    // A sanitizer has a heap of its own.
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return __sanitizer_get_current_allocated_bytes();
    }
    return mallinfo2().uordblks;
}

/// Each takes its time; the environment may ask for more.
std::size_t many() {
    const char *asked = std::getenv("TESSEL_OPENINGS");
    return asked != nullptr ? std::strtoul(asked, nullptr, 10) : 40;
}

class VolumeScreen : public testing::Test {
protected:
    void SetUp() override {
        elm_theme_extension_add(nullptr, platform_theme);
        elm_theme_extension_add(nullptr, program_theme);
        m_window = new TslWindowCtrl();
        ASSERT_TRUE(m_window->createAndShow());
        m_naviframe = new TslNaviframeController();
        ASSERT_TRUE(m_window->attachBaseViewController(m_naviframe));
        evas_object_resize(m_window->getEvasObject(), 360, 360);
        TslUtils::setGlobalWindow(m_window->getEvasObject());
        ASSERT_TRUE(m_naviframe->push(new app_assist::WContentViewController(), "below"));
        support::run_loop_turns();
    }
    void TearDown() override {
        TslUtils::setGlobalWindow(nullptr);
        evas_object_del(m_window->getEvasObject());
        support::run_loop_turns();
        elm_theme_extension_del(nullptr, program_theme);
        elm_theme_extension_del(nullptr, platform_theme);
    }

    /// As the user does it: the page comes, a level is set, back takes the page away. The bottom
    /// page stays.
    void open_and_close(std::size_t times) {
        for (std::size_t i = 0; i < times; ++i) {
            auto *view = new TslVolumeView(5, 15, 9);
            const app_assist::WViewWeakPtr alive = view->getWeakPtr();
            ASSERT_TRUE(m_naviframe->push(view, "tsl_volume_view"));
            elm_object_signal_emit(view->getEvasObject(), "layout,swallow,show",
                                   "tsl.volume.view.base.layout.swallow.content");
            view->setVolume(10 + static_cast<int>(i % 5));
            // It goes when its way in is over.
            view->pop();
            ASSERT_TRUE(support::run_main_loop_until([&alive] { return alive.expired(); }));
        }
        support::run_loop_turns();
        evas_render(evas_object_evas_get(m_window->getEvasObject()));
        // What the toolkit frees when it has time.
        eina_freeq_clear(eina_freeq_main_get());
    }

    static constexpr char platform_theme[] = TESSEL_STAGE_DATADIR "/platform/host-theme.edj";
    static constexpr char program_theme[] = TESSEL_STAGE_DATADIR "/res/edje/tessel.edj";

private:
    TslWindowCtrl *m_window = nullptr;
    TslNaviframeController *m_naviframe = nullptr;
};

TEST_F(VolumeScreen, OpeningsLeaveTheHeapAsItWas) {
    // Caches fill first.
    open_and_close(20);
    const std::size_t before = bytes_in_use();
    open_and_close(many());
    // The toolkit itself keeps some of each page and button that came and went.
    EXPECT_LT(bytes_in_use(), before + many() * 4096);
}

}  // namespace
