#include <app.h>
#include <service_app.h>

#include <list>
#include <memory>
#include <vector>

#include "app/lifecycle.h"

struct app_event_info {
    app_event_type_e type;
};

struct app_event_handler {
    app_event_type_e type;
    app_event_cb callback;
    void *user_data;
    bool removed = false;
};

namespace {

using Handlers = std::list<std::shared_ptr<app_event_handler>>;

// Main loop.
Handlers &handlers() {
    static Handlers instance;
    return instance;
}

bool is_event(app_event_type_e type) {
    return type >= APP_EVENT_LOW_MEMORY && type <= APP_EVENT_SUSPENDED_STATE_CHANGED;
}

}  // namespace

namespace host {

void raise_app_event(app_event_type_e event) {
    app_event_info info{event};
    // A handler may remove any other, and add new ones, which don't see this event.
    const std::vector<std::shared_ptr<app_event_handler>> present(handlers().begin(),
                                                                  handlers().end());
    for (const auto &handler : present) {
        if (handler->type == event && !handler->removed) {
            handler->callback(&info, handler->user_data);
        }
    }
}

}  // namespace host

int ui_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                             app_event_cb callback, void *user_data) {
    if (handler == nullptr || callback == nullptr || !is_event(event_type)) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    handlers().push_back(
        std::make_shared<app_event_handler>(app_event_handler{event_type, callback, user_data}));
    *handler = handlers().back().get();
    return APP_ERROR_NONE;
}

int ui_app_remove_event_handler(app_event_handler_h handler) {
    for (auto entry = handlers().begin(); entry != handlers().end(); ++entry) {
        if (entry->get() == handler) {
            (*entry)->removed = true;
            handlers().erase(entry);
            return APP_ERROR_NONE;
        }
    }
    return APP_ERROR_INVALID_PARAMETER;
}

// One process is one application: what is raised is for whatever kind it is.
int service_app_add_event_handler(app_event_handler_h *handler, app_event_type_e event_type,
                                  app_event_cb callback, void *user_data) {
    return ui_app_add_event_handler(handler, event_type, callback, user_data);
}

int service_app_remove_event_handler(app_event_handler_h handler) {
    return ui_app_remove_event_handler(handler);
}
