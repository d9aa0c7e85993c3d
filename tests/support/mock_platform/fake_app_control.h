#pragma once

#include <app_control.h>

#include <memory>
#include <string>
#include <vector>

/// Launch requests as values. A sent request is remembered, not carried out.
class FakeAppControl {
public:
    struct Sent {
        std::string operation;
        std::string uri;
        std::string mime;
        std::string category;
        std::string app_id;
        bool terminate = false;
        app_control_reply_cb callback = nullptr;
        void *user_data = nullptr;
    };

    FakeAppControl();
    ~FakeAppControl();

    /// Number of requests not destroyed yet.
    int live() const;
    /// As if another application had sent the request.
    void set_caller(app_control_h app_control, std::string id);
    const std::vector<Sent> &sent() const { return m_sent; }

    int app_control_create(app_control_h *app_control);
    int app_control_destroy(app_control_h app_control);
    int app_control_clone(app_control_h *clone, app_control_h app_control);
    int app_control_set_operation(app_control_h app_control, const char *operation);
    int app_control_get_operation(app_control_h app_control, char **operation);
    int app_control_set_uri(app_control_h app_control, const char *uri);
    int app_control_get_uri(app_control_h app_control, char **uri);
    int app_control_set_mime(app_control_h app_control, const char *mime);
    int app_control_get_mime(app_control_h app_control, char **mime);
    int app_control_set_category(app_control_h app_control, const char *category);
    int app_control_get_category(app_control_h app_control, char **category);
    int app_control_set_app_id(app_control_h app_control, const char *app_id);
    int app_control_get_app_id(app_control_h app_control, char **app_id);
    int app_control_get_caller(app_control_h app_control, char **id);
    int app_control_set_launch_mode(app_control_h app_control, app_control_launch_mode_e mode);
    int app_control_get_launch_mode(app_control_h app_control, app_control_launch_mode_e *mode);
    int app_control_add_extra_data(app_control_h app_control, const char *key, const char *value);
    int app_control_add_extra_data_array(app_control_h app_control, const char *key,
                                         const char **value, int length);
    int app_control_remove_extra_data(app_control_h app_control, const char *key);
    int app_control_get_extra_data(app_control_h app_control, const char *key, char **value);
    int app_control_get_extra_data_array(app_control_h app_control, const char *key, char ***value,
                                         int *length);
    int app_control_send_launch_request(app_control_h app_control, app_control_reply_cb callback,
                                        void *user_data);
    int app_control_send_terminate_request(app_control_h app_control);

private:
    bool is_live(app_control_h app_control) const;
    int get(app_control_h app_control, std::string app_control_s::*field, char **text) const;
    int set(app_control_h app_control, std::string app_control_s::*field, const char *text);
    static Sent summary(app_control_h app_control);

    std::vector<std::unique_ptr<app_control_s>> m_requests;
    std::vector<Sent> m_sent;
};

namespace mock {
FakeAppControl &fake_app_control();
}
