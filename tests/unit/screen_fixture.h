#pragma once

#include <Elementary.h>
#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "TslNaviframeController.h"
#include "TslResourceCtrl.h"
#include "TslSignalMgr.h"
#include "TslWindowCtrl.h"
#include "log_lines.h"
#include "main_loop.h"

/// The program's window, its naviframe and its theme, as the screens know them; and what they emit.
namespace screens {

using Emission = std::pair<TslSignalType, std::intptr_t>;

class ScreenTest : public testing::Test {
protected:
    static constexpr int screen_size = 360;

    void SetUp() override {
        elm_theme_extension_add(nullptr, platform_theme_file);
        elm_theme_extension_add(nullptr, theme_file().c_str());
        m_window_ctrl = new TslWindowCtrl();
        ASSERT_TRUE(m_window_ctrl->createAndShow());
        m_naviframe = new TslNaviframeController();
        ASSERT_TRUE(m_window_ctrl->attachBaseViewController(m_naviframe));
        evas_object_resize(window(), screen_size, screen_size);
        m_listener = TslSignalMgr::getInstance()->getSignal().addListener(
            [this](TslSignalType type, void *payload) {
                m_emissions.emplace_back(type, reinterpret_cast<std::intptr_t>(payload));
            });
        support::run_loop_turns();
        logs::clear();
    }

    void TearDown() override {
        TslSignalMgr::getInstance()->getSignal().removeListener(m_listener);
        if (m_window_ctrl != nullptr) {
            evas_object_del(window());
        }
        support::run_loop_turns();
        elm_theme_extension_del(nullptr, theme_file().c_str());
        elm_theme_extension_del(nullptr, platform_theme_file);
    }

    static constexpr char platform_theme_file[] = TESSEL_STAGE_DATADIR "/platform/host-theme.edj";
    static std::string theme_file() {
        return std::string(TESSEL_STAGE_DATADIR "/res/") + TSL_EDJ_FILE;
    }

    [[nodiscard]] TslWindowCtrl &window_ctrl() const { return *m_window_ctrl; }
    [[nodiscard]] TslNaviframeController &naviframe() const { return *m_naviframe; }
    [[nodiscard]] Evas_Object *window() const { return m_window_ctrl->getEvasObject(); }
    [[nodiscard]] const std::vector<Emission> &emissions() const { return m_emissions; }
    void forget_emissions() { m_emissions.clear(); }

    /// A touch of the screen, in its pixels.
    void tap(int x, int y) const {
        Evas *evas = evas_object_evas_get(window());
        // What was changed since the last frame takes its place before it is touched.
        evas_render(evas);
        evas_event_feed_mouse_in(evas, m_time, nullptr);
        evas_event_feed_mouse_move(evas, x, y, ++m_time, nullptr);
        evas_event_feed_mouse_down(evas, 1, EVAS_BUTTON_NONE, ++m_time, nullptr);
        support::run_loop_turns();
        evas_event_feed_mouse_up(evas, 1, EVAS_BUTTON_NONE, ++m_time, nullptr);
        support::run_loop_turns();
    }

    void tap(const Evas_Object *object) const {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        evas_object_geometry_get(object, &x, &y, &width, &height);
        tap(x + width / 2, y + height / 2);
    }

private:
    TslWindowCtrl *m_window_ctrl = nullptr;
    TslNaviframeController *m_naviframe = nullptr;
    unsigned int m_listener = 0;
    std::vector<Emission> m_emissions;
    mutable unsigned int m_time = 1000;
};

}  // namespace screens
