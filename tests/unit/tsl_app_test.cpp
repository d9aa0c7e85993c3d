#include "TslApp.h"

#include <Elementary.h>
#include <dlfcn.h>
#include <dlog.h>
#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TslNaviframeController.h"
#include "TslUtils.h"
#include "TslVideoPlayerMgr.h"
#include "TslWindowCtrl.h"
#include "log_lines.h"
#include "main_loop.h"
#include "mock_platform/mock_app_control.h"
#include "mock_platform/mock_player.h"
#include "mock_platform/mock_power.h"
#include "mock_platform/mock_sound.h"
#include "mock_platform/mock_ui_app.h"
#include "private_member.h"

using Manager = support::PrivateMember<struct ManagerTag, TslVideoPlayerMgr * TslApp::*>;
template struct support::OpenMember<Manager, &TslApp::m_pVideoPlayerMgr>;

using testing::_;

namespace {

bool refuse_windows = false;
int extensions_without_file = 0;
std::vector<std::string> steps;  // of the toolkit and the platform, as they come

}  // namespace

/// Takes the place of the toolkit's own, to which it forwards: windows can't be refused otherwise.
extern "C" Evas_Object *elm_win_add(Evas_Object *parent, const char *name, Elm_Win_Type type) {
    using Add = Evas_Object *(*)(Evas_Object *, const char *, Elm_Win_Type);
    static const auto add = reinterpret_cast<Add>(dlsym(RTLD_NEXT, "elm_win_add"));
    steps.emplace_back("window");
    return refuse_windows ? nullptr : add(parent, name, type);
}

/// The same: what is added without a file leaves no trace in the toolkit's list.
extern "C" void elm_theme_extension_add(Elm_Theme *theme, const char *item) {
    using Add = void (*)(Elm_Theme *, const char *);
    static const auto add = reinterpret_cast<Add>(dlsym(RTLD_NEXT, "elm_theme_extension_add"));
    extensions_without_file += item == nullptr ? 1 : 0;
    steps.emplace_back("theme");
    add(theme, item);
}

namespace {

class App : public testing::Test {
protected:
    void SetUp() override { m_app = std::make_unique<TslApp>(); }
    void TearDown() override {
        m_app.reset();
        // The window outlives the application, as at the end of the process.
        Evas_Object *window = TslUtils::getGlobalWindow();
        TslUtils::setGlobalWindow(nullptr);
        if (window != nullptr) {
            evas_object_del(window);
        }
        support::run_loop_turns();
    }

    TslApp &app() { return *m_app; }
    void delete_app() { m_app.reset(); }
    TslVideoPlayerMgr *manager() { return app().*member(Manager{}); }
    static FakeUiApp &platform() { return mock::fake_ui_app(); }
    static FakePlayer &player() { return mock::fake_player(); }

    /// Runs the application until it ends, and does this once the first launch has been delivered.
    int run(std::function<void()> when_launched) {
        static char name[] = "tessel";
        char *arguments[] = {name, nullptr};
        app_control_h request = nullptr;
        app_control_create(&request);
        app_control_set_uri(request, "/media/clip.mp4");
        platform().set_launch(request);
        m_when_launched = std::move(when_launched);
        Ecore_Timer *poll = ecore_timer_add(0.01, poll_for_launch, this);
        Ecore_Timer *guard = ecore_timer_add(10.0, end_by_force, this);
        const int result = app().start(1, arguments);
        ecore_timer_del(guard);
        ecore_timer_del(poll);
        app_control_destroy(request);
        EXPECT_FALSE(m_ended_by_force);
        return result;
    }

    /// The platform's calls as they come, without a main loop.
    struct LifeCycle {
        ui_app_lifecycle_callback_s callback{};
        void *data = nullptr;
    };
    LifeCycle start_without_loop() {
        LifeCycle life_cycle;
        EXPECT_CALL(mock::ui_app(), ui_app_main)
            .WillOnce(
                [&life_cycle](int, char **, ui_app_lifecycle_callback_s *callback, void *data) {
                    life_cycle.callback = *callback;
                    life_cycle.data = data;
                    return 7;
                });
        EXPECT_EQ(app().start(0, nullptr), 7);
        return life_cycle;
    }

private:
    static Eina_Bool poll_for_launch(void *data) {
        auto &self = *static_cast<App *>(data);
        if (self.m_when_launched && !NotLogged("=== App Control ===")) {
            const auto task = std::exchange(self.m_when_launched, nullptr);
            task();
        }
        return ECORE_CALLBACK_RENEW;
    }
    static Eina_Bool end_by_force(void *data) {
        static_cast<App *>(data)->m_ended_by_force = true;
        elm_exit();
        return ECORE_CALLBACK_RENEW;
    }

    std::unique_ptr<TslApp> m_app;
    std::function<void()> m_when_launched;
    bool m_ended_by_force = false;
};

}  // namespace

TEST_F(App, StartHandsTheCommandLineToThePlatform) {
    char name[] = "tessel";
    char *arguments[] = {name, nullptr};
    EXPECT_CALL(mock::ui_app(), ui_app_main(1, arguments, _, _)).WillOnce(testing::Return(3));
    EXPECT_EQ(app().start(1, arguments), 3);
}

TEST_F(App, CreateBuildsWindowScreensAndManager) {
    const LifeCycle life = start_without_loop();
    EXPECT_EQ(manager(), nullptr);
    EXPECT_TRUE(life.callback.create(life.data));
    EXPECT_TRUE(LoggedIn("onCreate", DLOG_INFO, ""));
    EXPECT_NE(manager(), nullptr);
    ASSERT_NE(app().getWindowController(), nullptr);
    auto *window = dynamic_cast<TslWindowCtrl *>(app().getWindowController());
    ASSERT_NE(window, nullptr);
    EXPECT_NE(dynamic_cast<TslNaviframeController *>(window->getBaseViewController()), nullptr);
    EXPECT_EQ(TslUtils::getGlobalWindow(), window->getEvasObject());
    EXPECT_TRUE(NotLogged("It is failed to attach the window handle to app assist."));
    EXPECT_EQ(platform().handlers(), 2);
    life.callback.terminate(life.data);
}

TEST_F(App, CreateGoesThemeWindowManagerInThisOrder) {
    const LifeCycle life = start_without_loop();
    steps.clear();
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information)
        .WillOnce(testing::InvokeWithoutArgs([] {
            // The manager finds the window where the player will look for it.
            EXPECT_NE(TslUtils::getGlobalWindow(), nullptr);
            steps.emplace_back("manager");
            return int(SOUND_MANAGER_ERROR_INTERNAL);
        }));
    life.callback.create(life.data);
    EXPECT_EQ(steps, (std::vector<std::string>{"theme", "window", "manager"}));
    life.callback.terminate(life.data);
}

TEST_F(App, CreateExtendsTheTheme) {
    const LifeCycle life = start_without_loop();
    elm_theme_extension_del(nullptr, TESSEL_STAGE_DATADIR "/res/edje/tessel.edj");
    life.callback.create(life.data);
    bool extended = false;
    const Eina_List *item = nullptr;
    void *path = nullptr;
    EINA_LIST_FOREACH(elm_theme_extension_list_get(nullptr), item, path) {
        extended = extended || std::string(static_cast<char *>(path)) == TESSEL_STAGE_DATADIR
                                   "/res/edje/tessel.edj";
    }
    EXPECT_TRUE(extended);
    EXPECT_TRUE(NotLogged("It is failed to get edjPath."));
    life.callback.terminate(life.data);
}

TEST_F(App, AMissingResourceFolderIsLoggedAndStartUpGoesOn) {
    const LifeCycle life = start_without_loop();
    EXPECT_CALL(mock::ui_app(), app_get_resource_path).WillRepeatedly([] {
        return static_cast<char *>(nullptr);
    });
    extensions_without_file = 0;
    EXPECT_TRUE(life.callback.create(life.data));
    EXPECT_TRUE(LoggedWarn("It is failed to get edjPath. [edje/tessel.edj]"));
    EXPECT_EQ(extensions_without_file, 1);
    EXPECT_NE(manager(), nullptr);
    life.callback.terminate(life.data);
    testing::Mock::VerifyAndClearExpectations(&mock::ui_app());
}

TEST_F(App, AWindowThatCannotBeMadeIsLoggedAndStartUpGoesOn) {
    const LifeCycle life = start_without_loop();
    refuse_windows = true;
    EXPECT_TRUE(life.callback.create(life.data));
    refuse_windows = false;
    EXPECT_TRUE(LoggedWarn("It is failed to attach the window handle to app assist."));
    EXPECT_NE(manager(), nullptr);
    EXPECT_EQ(TslUtils::getGlobalWindow(), nullptr);
    life.callback.terminate(life.data);
    // Nothing else destroys a controller whose window never was.
    static_cast<TslWindowCtrl *>(app().getWindowController())->destroy();
}

TEST_F(App, TerminateDeletesTheManagerAfterItHasGivenBackTheDisplay) {
    const LifeCycle life = start_without_loop();
    life.callback.create(life.data);
    logs::clear();
    life.callback.terminate(life.data);
    EXPECT_EQ(manager(), nullptr);
    EXPECT_TRUE(LoggedIn("onTerminate", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("destroy", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("~TslVideoPlayerMgrInside", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("~TslNaviframeController", DLOG_INFO, ""));
    EXPECT_EQ(mock::fake_power().releases(), 1);
    EXPECT_EQ(platform().handlers(), 0);
}

TEST_F(App, TerminateWithoutCreateDoesNothing) {
    const LifeCycle life = start_without_loop();
    logs::clear();
    life.callback.terminate(life.data);
    EXPECT_TRUE(LoggedIn("onTerminate", DLOG_INFO, ""));
    EXPECT_EQ(logs::all().size(), 1u);
    EXPECT_EQ(mock::fake_power().releases(), 0);
}

TEST_F(App, TheSecondRequestIsNoFirstLaunch) {
    const LifeCycle life = start_without_loop();
    life.callback.create(life.data);
    app_control_h request = nullptr;
    app_control_create(&request);
    app_control_set_uri(request, "/media/clip.mp4");
    const char *first_launch = "== The video player is launched first time. ==";

    life.callback.app_control(request, life.data);
    EXPECT_TRUE(LoggedIn("onAppControl", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedTimes(1, DLOG_WARN, first_launch));
    EXPECT_EQ(player().uri(), "/media/clip.mp4");

    life.callback.app_control(request, life.data);
    EXPECT_TRUE(LoggedTimes(2, DLOG_INFO, "=== App Control ==="));
    EXPECT_TRUE(LoggedTimes(1, DLOG_WARN, first_launch));
    EXPECT_TRUE(LoggedInfo("SIGNAL_PLAYER_STOP"));

    app_control_destroy(request);
    life.callback.terminate(life.data);
}

TEST_F(App, PauseAndResumeReachTheManager) {
    const LifeCycle life = start_without_loop();
    life.callback.create(life.data);
    logs::clear();
    life.callback.resume(life.data);
    EXPECT_TRUE(LoggedIn("onResume", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("_appResume", DLOG_INFO, "=== App Resume ==="));
    EXPECT_TRUE(NotLogged("SIGNAL_APP_TERMINATE"));
    life.callback.pause(life.data);
    EXPECT_TRUE(LoggedIn("onPause", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("_appPause", DLOG_INFO, "=== App Pause ==="));
    EXPECT_TRUE(LoggedInfo("SIGNAL_APP_TERMINATE"));
    life.callback.terminate(life.data);
}

TEST_F(App, ItsEndIsLogged) {
    logs::clear();
    delete_app();
    EXPECT_EQ(logs::all().size(), 1u);
    EXPECT_TRUE(LoggedInfo("Video Player App is terminated."));
}

TEST_F(App, APausedApplicationLeavesTheMainLoopAndTakesEverythingWithIt) {
    bool paused = false;
    EXPECT_EQ(run([&paused] {
                  paused = true;
                  platform().pause();
              }),
              0);
    EXPECT_TRUE(paused);
    EXPECT_TRUE(LoggedInOrder({logs::warn("== The video player is launched first time. ==")}));
    EXPECT_TRUE(
        LoggedInOrder({logs::info("=== App Pause ==="), logs::info("SIGNAL_APP_TERMINATE")}));
    EXPECT_EQ(manager(), nullptr);
    EXPECT_EQ(player().players(), 0);
    EXPECT_FALSE(mock::fake_power().is_locked(POWER_LOCK_DISPLAY));
}
