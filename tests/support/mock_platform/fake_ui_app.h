#pragma once

#include <app.h>

#include <memory>
#include <string>
#include <vector>

/// The life cycle over the toolkit's own loop: create and the first launch request are delivered
/// from inside the running loop, terminate after it has ended. Main loop only.
class FakeUiApp {
public:
    FakeUiApp();
    ~FakeUiApp();

    /// The request that the next ui_app_main() delivers after create; the caller's, not copied.
    /// Without one an empty request is delivered.
    void set_launch(app_control_h app_control);
    // While ui_app_main() runs: what the platform does to the application.
    void send_app_control(app_control_h app_control);
    void pause();
    void resume();
    [[nodiscard]] bool is_running() const { return m_running; }

    /// Calls every handler of the event, in order of registration.
    void raise_event(app_event_type_e type);
    [[nodiscard]] int handlers() const;
    [[nodiscard]] int handlers(app_event_type_e type) const;

    int ui_app_main(int argc, char **argv, ui_app_lifecycle_callback_s *callback, void *user_data);
    void ui_app_exit();
    int ui_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                                 app_event_cb callback, void *user_data);
    int ui_app_remove_event_handler(app_event_handler_h handler);
    int app_get_id(char **id);
    char *app_get_resource_path();
    char *app_get_shared_resource_path();

private:
    static void started(void *data);

    bool m_running = false;
    bool m_created = false;
    app_control_h m_launch = nullptr;
    ui_app_lifecycle_callback_s m_callback{};
    void *m_user_data = nullptr;
    std::vector<std::unique_ptr<app_event_handler>> m_handlers;
};

namespace mock {
FakeUiApp &fake_ui_app();
}
