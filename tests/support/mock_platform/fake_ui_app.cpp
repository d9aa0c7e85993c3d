#include "fake_ui_app.h"

#include <Ecore.h>

#include <algorithm>
#include <cstring>

#include "fake_app_control.h"
#include "slot.h"

struct app_event_handler {
    app_event_type_e type;
    app_event_cb callback;
    void *user_data;
};

struct app_event_info {
    app_event_type_e type;
};

namespace mock {

FakeUiApp &fake_ui_app() {
    static Slot<FakeUiApp> slot;
    return slot.get();
}

}  // namespace mock

FakeUiApp::FakeUiApp() = default;
FakeUiApp::~FakeUiApp() = default;

void FakeUiApp::set_launch(app_control_h app_control) {
    m_launch = app_control;
}

void FakeUiApp::send_app_control(app_control_h app_control) {
    if (m_callback.app_control != nullptr) {
        m_callback.app_control(app_control, m_user_data);
    }
}

void FakeUiApp::pause() {
    if (m_callback.pause != nullptr) {
        m_callback.pause(m_user_data);
    }
}

void FakeUiApp::resume() {
    if (m_callback.resume != nullptr) {
        m_callback.resume(m_user_data);
    }
}

void FakeUiApp::raise_event(app_event_type_e type) {
    std::vector<app_event_handler> due;
    for (const auto &handler : m_handlers) {
        if (handler->type == type) {
            due.push_back(*handler);
        }
    }
    app_event_info info{type};
    for (const auto &handler : due) {
        handler.callback(&info, handler.user_data);
    }
}

int FakeUiApp::handlers() const {
    return static_cast<int>(m_handlers.size());
}

int FakeUiApp::handlers(app_event_type_e type) const {
    return static_cast<int>(
        std::count_if(m_handlers.begin(), m_handlers.end(),
                      [type](const auto &handler) { return handler->type == type; }));
}

void FakeUiApp::started(void *data) {
    auto &self = *static_cast<FakeUiApp *>(data);
    self.m_created = self.m_callback.create == nullptr || self.m_callback.create(self.m_user_data);
    if (!self.m_created) {
        ecore_main_loop_quit();
        return;
    }
    app_control_h request = self.m_launch;
    if (request == nullptr) {
        mock::fake_app_control().app_control_create(&request);
    }
    self.send_app_control(request);
    if (self.m_launch == nullptr) {
        mock::fake_app_control().app_control_destroy(request);
    }
    self.m_launch = nullptr;
}

int FakeUiApp::ui_app_main(int argc, char **argv, ui_app_lifecycle_callback_s *callback,
                           void *user_data) {
    if (argc < 0 || argv == nullptr || callback == nullptr || m_running) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    m_callback = *callback;
    m_user_data = user_data;
    m_running = true;
    m_created = false;
    ecore_job_add(started, this);
    ecore_main_loop_begin();
    if (m_created && m_callback.terminate != nullptr) {
        m_callback.terminate(m_user_data);
    }
    m_running = false;
    m_callback = {};
    return APP_ERROR_NONE;
}

void FakeUiApp::ui_app_exit() {
    ecore_main_loop_quit();
}

int FakeUiApp::ui_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                                        app_event_cb callback, void *user_data) {
    if (handler == nullptr || callback == nullptr) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    m_handlers.push_back(
        std::make_unique<app_event_handler>(app_event_handler{event_type, callback, user_data}));
    *handler = m_handlers.back().get();
    return APP_ERROR_NONE;
}

int FakeUiApp::ui_app_remove_event_handler(app_event_handler_h handler) {
    const auto erased =
        std::erase_if(m_handlers, [handler](const auto &item) { return item.get() == handler; });
    return erased == 0 ? APP_ERROR_INVALID_PARAMETER : APP_ERROR_NONE;
}

int FakeUiApp::app_get_id(char **id) {
    if (id == nullptr) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    *id = strdup("com.orvane.tessel");
    return APP_ERROR_NONE;
}

char *FakeUiApp::app_get_resource_path() {
    return strdup(TESSEL_STAGE_DATADIR "/res/");
}

char *FakeUiApp::app_get_shared_resource_path() {
    return strdup(TESSEL_STAGE_DATADIR "/shared/");
}
