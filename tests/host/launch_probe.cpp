// An application that asks whether another runs, launches it with a URI and asks it to end, and
// tells on standard output what each answered: launch-probe APP-ID URI.

#include <app_control.h>
#include <app_manager.h>

#include <cstdio>

#include "common/service_thread.h"
#include "messaging/session_bus.h"

int main(int argc, char **argv) {
    if (argc != 3) {
        return 2;
    }
    app_context_h context = nullptr;
    std::printf("running %d\n", app_manager_get_app_context(argv[1], &context));
    if (context != nullptr) {
        app_context_destroy(context);
    }
    app_control_h request = nullptr;
    app_control_create(&request);
    app_control_set_app_id(request, argv[1]);
    app_control_set_uri(request, argv[2]);
    std::printf("launch %d\n", app_control_send_launch_request(request, nullptr, nullptr));
    std::printf("terminate %d\n", app_control_send_terminate_request(request));
    app_control_destroy(request);
    host::close_session_bus();
    host::stop_service_thread();
    return 0;
}
