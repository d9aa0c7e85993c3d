#pragma once

#include <Elementary.h>
#include <app_control.h>
#include <dlog.h>
#include <gtest/gtest.h>
#include <libintl.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "TslNaviframeController.h"
#include "TslPlayerMgr.h"
#include "TslPlayerView.h"
#include "TslSignalMgr.h"
#include "TslSoundMgr.h"
#include "TslUtils.h"
#include "TslVideoPlayerMgr.h"
#include "TslVideoPlayerMgrInside.h"
#include "TslVolumeView.h"
#include "TslWindowCtrl.h"
#include "log_lines.h"
#include "main_loop.h"
#include "mock_platform/mock_app_control.h"
#include "mock_platform/mock_keys.h"
#include "mock_platform/mock_player.h"
#include "mock_platform/mock_power.h"
#include "mock_platform/mock_sound.h"
#include "mock_platform/mock_ui_app.h"
#include "private_member.h"

using ManagerInside =
    support::PrivateMember<struct ManagerInsideTag, TslVideoPlayerMgrInside * TslVideoPlayerMgr::*>;
template struct support::OpenMember<ManagerInside, &TslVideoPlayerMgr::m_pVideoPlayerMgrInside>;

/// The real manager with the real window, naviframe and screens on the mocked platform. What goes
/// over the signal bus is recorded in the order in which it was emitted.
class VideoPlayerMgrTest : public testing::Test {
protected:
    static constexpr char item_path[] = "/media/clip.mp4";

    struct Emission {
        TslSignalType type;
        void *payload;
    };

    void SetUp() override {
        static const bool theme_loaded = [] {
            elm_theme_extension_add(nullptr, TESSEL_STAGE_DATADIR "/platform/host-theme.edj");
            elm_theme_extension_add(nullptr, TESSEL_STAGE_DATADIR "/res/edje/tessel.edj");
            textdomain("tessel");
            return true;
        }();
        ASSERT_TRUE(theme_loaded);

        // Before the manager's listener, so that an outer signal is noted before an inner one.
        m_recorder = TslSignalMgr::getInstance()->getSignal().addListener(
            [this](TslSignalType type, void *payload) {
                m_emissions.push_back({type, payload});
            });

        m_window = new TslWindowCtrl();
        ASSERT_TRUE(m_window->createAndShow());
        m_naviframe = new TslNaviframeController();
        ASSERT_TRUE(m_window->attachBaseViewController(m_naviframe));
        evas_object_resize(m_window->getEvasObject(), 360, 360);
        TslUtils::setGlobalWindow(m_window->getEvasObject());

        m_manager = std::make_unique<TslVideoPlayerMgr>(m_naviframe);
        forget();
    }

    void TearDown() override {
        m_manager.reset();
        m_window->destroyBaseViewController();
        m_window->destroy();
        support::run_loop_turns();
        TslUtils::setGlobalWindow(nullptr);
        TslSignalMgr::getInstance()->getSignal().removeListener(m_recorder);
    }

    TslVideoPlayerMgr &manager() { return *m_manager; }
    void delete_manager() { m_manager.reset(); }
    void renew_manager() { m_manager = std::make_unique<TslVideoPlayerMgr>(m_naviframe); }
    TslVideoPlayerMgrInside &inside() { return *((*m_manager).*member(ManagerInside{})); }
    TslVideoPlayerMgrInside *&inside_pointer() { return (*m_manager).*member(ManagerInside{}); }
    TslNaviframeController &naviframe() { return *m_naviframe; }
    TslWindowCtrl &window() { return *m_window; }
    static FakePlayer &player() { return mock::fake_player(); }
    static FakeSound &sound() { return mock::fake_sound(); }

    void forget() {
        logs::clear();
        m_emissions.clear();
    }

    // The bus.
    static void emit(TslSignalType type, void *payload = nullptr) {
        TslSignalMgr::getInstance()->getSignal().emit(type, payload);
    }
    static void emit_integer(TslSignalType type, intptr_t value) {
        emit(type, reinterpret_cast<void *>(value));
    }
    std::vector<TslSignalType> emitted() const {
        std::vector<TslSignalType> types;
        for (const Emission &emission : m_emissions) {
            types.push_back(emission.type);
        }
        return types;
    }
    int times_emitted(TslSignalType type) const {
        int times = 0;
        for (const Emission &emission : m_emissions) {
            times += emission.type == type ? 1 : 0;
        }
        return times;
    }
    bool was_emitted(TslSignalType type) const { return times_emitted(type) > 0; }
    const std::vector<Emission> &emissions() const { return m_emissions; }

    // Launches.
    void launch(const char *uri, bool first = true) {
        app_control_h request = nullptr;
        ASSERT_EQ(app_control_create(&request), APP_CONTROL_ERROR_NONE);
        if (uri != nullptr) {
            ASSERT_EQ(app_control_set_uri(request, uri), APP_CONTROL_ERROR_NONE);
        }
        app_control_set_operation(request, APP_CONTROL_OPERATION_VIEW);
        m_manager->appControl(request, first);
        app_control_destroy(request);
    }
    /// Leaves the player playing under its screen, with nothing recorded.
    void start_playing() {
        m_manager->create();
        launch(item_path);
        ASSERT_TRUE(support::run_main_loop_until(
            [this] { return player().state() == PLAYER_STATE_PLAYING; }));
        ASSERT_NE(player_view(), nullptr);
        forget();
    }
    void start_paused() {
        start_playing();
        emit(SIGNAL_PLAYER_PAUSE);
        ASSERT_EQ(player().state(), PLAYER_STATE_PAUSED);
        forget();
    }

    // The screens, as the user sees them.
    TslPlayerView *player_view() {
        return static_cast<TslPlayerView *>(
            naviframe().getContentViewController("tsl_player_view"));
    }
    TslVolumeView *volume_view() {
        return static_cast<TslVolumeView *>(
            naviframe().getContentViewController("tsl_volume_view"));
    }
    /// Puts a volume screen on the naviframe.
    TslVolumeView *show_volume_view(int level = 5, int maximum = 15, int safety = 16) {
        auto *view = new TslVolumeView(level, maximum, safety);
        EXPECT_TRUE(naviframe().push(view, "tsl_volume_view"));
        return view;
    }
    /// The same, with its way onto the screen finished: the toolkit ignores a pop before that.
    void show_volume_view_and_wait(int level = 5, int maximum = 15, int safety = 16) {
        bool finished = false;
        Evas_Object *stack = naviframe().getEvasObject();
        const auto note = [](void *data, Evas_Object *, void *) {
            *static_cast<bool *>(data) = true;
        };
        evas_object_smart_callback_add(stack, "transition,finished", note, &finished);
        show_volume_view(level, maximum, safety);
        EXPECT_TRUE(support::run_main_loop_until([&finished] { return finished; }));
        evas_object_smart_callback_del_full(stack, "transition,finished", note, &finished);
    }
    Evas_Object *player_layout() {
        return elm_object_part_content_get(player_view()->getEvasObject(),
                                           "tsl.player.view.base.layout.swallow.content");
    }
    Evas_Object *button(const std::string &name) {
        return elm_object_part_content_get(player_layout(),
                                           ("tsl.player.view." + name + ".btn.swallow").c_str());
    }
    std::string play_button() { return elm_object_style_get(button("play")); }
    std::string volume_button() { return elm_object_style_get(button("volume")); }
    std::string displaymode_button() { return elm_object_style_get(button("displaymode")); }
    bool volume_button_responds() { return !elm_object_disabled_get(button("volume")); }
    std::string time_text(const std::string &which) {
        const char *text = elm_object_part_text_get(
            player_layout(), ("tsl.player.view.playtime.text." + which).c_str());
        return text != nullptr ? text : "";
    }

    /// Whether the first line of one function stands in the log before the first of another.
    static testing::AssertionResult entered_before(const std::string &first,
                                                   const std::string &second) {
        for (const logs::Line &line : logs::all()) {
            if (line.function == first) {
                return testing::AssertionSuccess();
            }
            if (line.function == second) {
                break;
            }
        }
        return testing::AssertionFailure() << first << " didn't come before " << second;
    }
    static bool exited() { return bool(LoggedIn("_exit", DLOG_INFO, "")); }

private:
    unsigned int m_recorder = 0;
    std::vector<Emission> m_emissions;
    TslWindowCtrl *m_window = nullptr;
    TslNaviframeController *m_naviframe = nullptr;
    std::unique_ptr<TslVideoPlayerMgr> m_manager;
};

/// Takes a part away from the manager for a scope.
template <typename T>
class Without {
public:
    explicit Without(T *&field) : m_field(field), m_value(field) { m_field = nullptr; }
    ~Without() { m_field = m_value; }
    Without(const Without &) = delete;
    Without &operator=(const Without &) = delete;

private:
    T *&m_field;
    T *m_value;
};
