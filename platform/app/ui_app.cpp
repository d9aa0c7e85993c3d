#include <app.h>

#include "app/application.h"
#include "app/exit_status.h"
#include "app/lifecycle.h"
#include "player/player_host.h"
#include "shell/shell.h"

namespace host {
namespace {

bool names_nothing(const app_control_s &request) {
    const auto path = extra_text(request, APP_CONTROL_DATA_PATH);
    return request.uri.value_or("").empty() && path.value_or("").empty();
}

/// An application with one round screen, which plays what it is asked to.
class UiApplication : public ApplicationKind {
public:
    UiApplication(const ui_app_lifecycle_callback_s &callbacks, void *user_data)
        : callbacks_(callbacks), user_data_(user_data) {}

    void warm_up() override { warm_up_player(); }
    bool start() override { return start_shell(); }
    bool create() override { return callbacks_.create == nullptr || callbacks_.create(user_data_); }
    void take(app_control_h request) override {
        begin_launch();
        // What the callback makes of the request must not change what was asked.
        const bool nothing_named = names_nothing(*request);
        *request->asked_for_media = false;
        if (callbacks_.app_control != nullptr) {
            callbacks_.app_control(request, user_data_);
        }
        if (nothing_named && *request->asked_for_media) {
            report_playback_failure("nothing to play: the request has neither a URI nor a path");
        }
    }
    void set_foreground(bool foreground) override {
        const auto callback = foreground ? callbacks_.resume : callbacks_.pause;
        if (callback != nullptr) {
            callback(user_data_);
        }
    }
    void terminate() override {
        if (callbacks_.terminate != nullptr) {
            callbacks_.terminate(user_data_);
        }
    }
    void stop() override { stop_shell(); }
    bool has_picture() const override { return player_status().frames_shown > 0; }
    std::optional<std::string> failure() const override { return launch_failure(); }

private:
    const ui_app_lifecycle_callback_s callbacks_;
    void *const user_data_;
};

}  // namespace
}  // namespace host

int ui_app_main(int argc, char **argv, ui_app_lifecycle_callback_s *callback, void *user_data) {
    if (argc < 0 || argv == nullptr || callback == nullptr) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    host::UiApplication application(*callback, user_data);
    return host::run_application(application, argc, argv);
}
