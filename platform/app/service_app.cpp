#include <service_app.h>

#include "app/application.h"

namespace host {
namespace {

/// An application that nobody sees.
class ServiceApplication : public ApplicationKind {
public:
    ServiceApplication(const service_app_lifecycle_callback_s &callbacks, void *user_data)
        : callbacks_(callbacks), user_data_(user_data) {}

    // It must start where there is no display, and not touch one that there is.
    void adapt(Options &options) override { options.headless = true; }
    bool create() override { return callbacks_.create == nullptr || callbacks_.create(user_data_); }
    void take(app_control_h request) override {
        if (callbacks_.app_control != nullptr) {
            callbacks_.app_control(request, user_data_);
        }
    }
    void terminate() override {
        if (callbacks_.terminate != nullptr) {
            callbacks_.terminate(user_data_);
        }
    }
    bool has_screen() const override { return false; }

private:
    const service_app_lifecycle_callback_s callbacks_;
    void *const user_data_;
};

}  // namespace
}  // namespace host

int service_app_main(int argc, char **argv, service_app_lifecycle_callback_s *callback,
                     void *user_data) {
    if (argc < 0 || argv == nullptr || callback == nullptr) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    host::ServiceApplication application(*callback, user_data);
    return host::run_application(application, argc, argv);
}
