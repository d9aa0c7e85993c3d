#pragma once

#include <app.h>

#include <memory>
#include <optional>
#include <vector>

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
    Application(const ui_app_lifecycle_callback_s &callbacks, void *user_data);
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    /// @return the exit status of the process
    [[nodiscard]] int run(int argc, char **argv, Options options);

    void set_foreground(bool foreground);
    /// Delivers a request on a later turn of the main loop.
    void launch(AppControlPtr request);
    void raise();

    /// The running one, or null.
    [[nodiscard]] static Application *current();

private:
    void join_instance();
    /// @return false when this process has nothing more to do
    [[nodiscard]] bool wait_for_role();
    [[nodiscard]] int run_shell();
    void run_loop();
    void create();
    void first_launch();
    void deliver(const app_control_s &request);
    void deliver_from_bus(const std::shared_ptr<Instance::Delivery> &delivery);
    void end();

    const ui_app_lifecycle_callback_s callbacks_;
    void *const user_data_;
    ExitSignals signals_;
    UniqueFd role_fd_;
    std::optional<Instance> instance_;
    AppControlPtr first_request_;
    std::optional<PopupCloser> popup_closer_;
    std::optional<ScreenshotTimer> screenshot_;
    std::vector<std::shared_ptr<Instance::Delivery>> early_;
    bool created_ = false;
    bool launched_ = false;
    bool foreground_ = false;
    bool ended_ = false;
};

/// Whether the end of the main loop has been asked for. Main loop.
[[nodiscard]] bool is_exiting();

}  // namespace host
