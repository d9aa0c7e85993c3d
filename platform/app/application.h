#pragma once

#include <Ecore.h>

#include <memory>
#include <optional>
#include <vector>

#include "app/application_kind.h"
#include "app/exit_signals.h"
#include "app/headless.h"
#include "app/options.h"
#include "app/screenshot.h"
#include "common/unique_fd.h"
#include "messaging/instance.h"

namespace host {

/// One run of the application: start, life-cycle calls from inside the main loop, orderly end.
/// Thread: main. One object at a time.
class Application {
public:
    /// @param kind must live as long
    explicit Application(ApplicationKind &kind);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// @return the exit status of the process
    [[nodiscard]] int run(int argc, char **argv, Options options);

    void set_foreground(bool foreground);
    /// While the screen is off nothing is in the foreground.
    void set_screen_on(bool on);
    /// Delivers a request on a later turn of the main loop.
    void launch(AppControlPtr request);
    void raise();

    /// The running one, or null.
    [[nodiscard]] static Application *current();

private:
    struct TimerDelete {
        void operator()(Ecore_Timer *timer) const { ecore_timer_del(timer); }
    };

    void join_instance();
    /// @return false when this process has nothing more to do
    [[nodiscard]] bool wait_for_role();
    [[nodiscard]] int run_kind();
    void run_loop();
    void create();
    void first_launch();
    void expect_request();
    void deliver(const app_control_s &request);
    void deliver_from_bus(const std::shared_ptr<Instance::Delivery> &delivery);
    void follow_foreground();
    void end();

    ApplicationKind &kind_;
    ExitSignals signals_;
    UniqueFd role_fd_;
    std::optional<Instance> instance_;
    AppControlPtr first_request_;
    std::optional<PopupCloser> popup_closer_;
    std::optional<ScreenshotTimer> screenshot_;
    std::vector<std::shared_ptr<Instance::Delivery>> early_;
    std::unique_ptr<Ecore_Timer, TimerDelete> patience_;  ///< while a first request is awaited
    bool created_ = false;
    bool launched_ = false;
    bool in_front_ = false;  ///< of all applications
    bool screen_on_ = true;
    bool foreground_ = false;  ///< as the application has been told
    bool ended_ = false;
};

/// Runs an application of that kind with the process's command line, for the first time in this
/// process. Thread: main.
/// @return the exit status of the process
[[nodiscard]] int run_application(ApplicationKind &kind, int argc, char **argv);

/// Whether the end of the main loop has been asked for. Main loop.
[[nodiscard]] bool is_exiting();

}  // namespace host
