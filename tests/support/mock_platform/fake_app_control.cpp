#include "fake_app_control.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

#include "slot.h"

struct app_control_s {
    struct Value {
        std::vector<std::string> texts;
        bool is_array = false;
    };
    std::string operation;
    std::string uri;
    std::string mime;
    std::string category;
    std::string app_id;
    std::string caller;
    app_control_launch_mode_e launch_mode = APP_CONTROL_LAUNCH_MODE_SINGLE;
    std::map<std::string, Value> extra;
};

namespace mock {

FakeAppControl &fake_app_control() {
    static Slot<FakeAppControl> slot;
    return slot.get();
}

}  // namespace mock

FakeAppControl::FakeAppControl() = default;
FakeAppControl::~FakeAppControl() = default;

int FakeAppControl::live() const {
    return static_cast<int>(m_requests.size());
}

void FakeAppControl::set_caller(app_control_h app_control, std::string id) {
    app_control->caller = std::move(id);
}

bool FakeAppControl::is_live(app_control_h app_control) const {
    return std::any_of(m_requests.begin(), m_requests.end(),
                       [app_control](const auto &item) { return item.get() == app_control; });
}

int FakeAppControl::get(app_control_h app_control, std::string app_control_s::*field,
                        char **text) const {
    if (!is_live(app_control) || text == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const std::string &value = app_control->*field;
    *text = value.empty() ? nullptr : strdup(value.c_str());
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::set(app_control_h app_control, std::string app_control_s::*field,
                        const char *text) {
    if (!is_live(app_control)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    app_control->*field = text == nullptr ? "" : text;
    return APP_CONTROL_ERROR_NONE;
}

FakeAppControl::Sent FakeAppControl::summary(app_control_h app_control) {
    Sent sent;
    sent.operation = app_control->operation;
    sent.uri = app_control->uri;
    sent.mime = app_control->mime;
    sent.category = app_control->category;
    sent.app_id = app_control->app_id;
    return sent;
}

int FakeAppControl::app_control_create(app_control_h *app_control) {
    if (app_control == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    m_requests.push_back(std::make_unique<app_control_s>());
    *app_control = m_requests.back().get();
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_destroy(app_control_h app_control) {
    const auto erased = std::erase_if(
        m_requests, [app_control](const auto &item) { return item.get() == app_control; });
    return erased == 0 ? APP_CONTROL_ERROR_INVALID_PARAMETER : APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_clone(app_control_h *clone, app_control_h app_control) {
    if (clone == nullptr || !is_live(app_control)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    m_requests.push_back(std::make_unique<app_control_s>(*app_control));
    *clone = m_requests.back().get();
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_set_operation(app_control_h app_control, const char *operation) {
    return set(app_control, &app_control_s::operation, operation);
}

int FakeAppControl::app_control_get_operation(app_control_h app_control, char **operation) {
    const int result = get(app_control, &app_control_s::operation, operation);
    if (result == 0 && *operation == nullptr) {
        *operation = strdup(APP_CONTROL_OPERATION_DEFAULT);
    }
    return result;
}

int FakeAppControl::app_control_set_uri(app_control_h app_control, const char *uri) {
    return set(app_control, &app_control_s::uri, uri);
}

int FakeAppControl::app_control_get_uri(app_control_h app_control, char **uri) {
    return get(app_control, &app_control_s::uri, uri);
}

int FakeAppControl::app_control_set_mime(app_control_h app_control, const char *mime) {
    return set(app_control, &app_control_s::mime, mime);
}

int FakeAppControl::app_control_get_mime(app_control_h app_control, char **mime) {
    return get(app_control, &app_control_s::mime, mime);
}

int FakeAppControl::app_control_set_category(app_control_h app_control, const char *category) {
    return set(app_control, &app_control_s::category, category);
}

int FakeAppControl::app_control_get_category(app_control_h app_control, char **category) {
    return get(app_control, &app_control_s::category, category);
}

int FakeAppControl::app_control_set_app_id(app_control_h app_control, const char *app_id) {
    return set(app_control, &app_control_s::app_id, app_id);
}

int FakeAppControl::app_control_get_app_id(app_control_h app_control, char **app_id) {
    return get(app_control, &app_control_s::app_id, app_id);
}

int FakeAppControl::app_control_get_caller(app_control_h app_control, char **id) {
    if (is_live(app_control) && app_control->caller.empty()) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    return get(app_control, &app_control_s::caller, id);
}

int FakeAppControl::app_control_set_launch_mode(app_control_h app_control,
                                                app_control_launch_mode_e mode) {
    if (!is_live(app_control)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    app_control->launch_mode = mode;
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_get_launch_mode(app_control_h app_control,
                                                app_control_launch_mode_e *mode) {
    if (!is_live(app_control) || mode == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    *mode = app_control->launch_mode;
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_add_extra_data(app_control_h app_control, const char *key,
                                               const char *value) {
    if (!is_live(app_control) || key == nullptr || *key == '\0' || value == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    app_control->extra[key] = {{value}, false};
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_add_extra_data_array(app_control_h app_control, const char *key,
                                                     const char **value, int length) {
    if (!is_live(app_control) || key == nullptr || *key == '\0' || value == nullptr ||
        length <= 0) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    app_control->extra[key] = {std::vector<std::string>(value, value + length), true};
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_remove_extra_data(app_control_h app_control, const char *key) {
    if (!is_live(app_control) || key == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    return app_control->extra.erase(key) == 0 ? APP_CONTROL_ERROR_KEY_NOT_FOUND
                                              : APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_get_extra_data(app_control_h app_control, const char *key,
                                               char **value) {
    if (!is_live(app_control) || key == nullptr || value == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const auto item = app_control->extra.find(key);
    if (item == app_control->extra.end()) {
        return APP_CONTROL_ERROR_KEY_NOT_FOUND;
    }
    if (item->second.is_array) {
        return APP_CONTROL_ERROR_INVALID_DATA_TYPE;
    }
    *value = strdup(item->second.texts.front().c_str());
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_get_extra_data_array(app_control_h app_control, const char *key,
                                                     char ***value, int *length) {
    if (!is_live(app_control) || key == nullptr || value == nullptr || length == nullptr) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    const auto item = app_control->extra.find(key);
    if (item == app_control->extra.end()) {
        return APP_CONTROL_ERROR_KEY_NOT_FOUND;
    }
    if (!item->second.is_array) {
        return APP_CONTROL_ERROR_INVALID_DATA_TYPE;
    }
    const auto &texts = item->second.texts;
    *value = static_cast<char **>(std::calloc(texts.size(), sizeof(char *)));
    std::transform(texts.begin(), texts.end(), *value,
                   [](const std::string &text) { return strdup(text.c_str()); });
    *length = static_cast<int>(texts.size());
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_send_launch_request(app_control_h app_control,
                                                    app_control_reply_cb callback,
                                                    void *user_data) {
    if (!is_live(app_control)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    Sent sent = summary(app_control);
    sent.callback = callback;
    sent.user_data = user_data;
    m_sent.push_back(std::move(sent));
    return APP_CONTROL_ERROR_NONE;
}

int FakeAppControl::app_control_send_terminate_request(app_control_h app_control) {
    if (!is_live(app_control)) {
        return APP_CONTROL_ERROR_INVALID_PARAMETER;
    }
    Sent sent = summary(app_control);
    sent.terminate = true;
    m_sent.push_back(std::move(sent));
    return APP_CONTROL_ERROR_NONE;
}
