#include <Elementary.h>
#include <app.h>
#include <service_app.h>
#include <widget_app.h>

#include "app/application.h"
#include "app/lifecycle.h"

extern "C" void __real_elm_exit(void);
extern "C" void __wrap_elm_exit(void);

namespace {

// Main loop.
bool exiting = false;

}  // namespace

namespace host {

bool is_exiting() {
    return exiting;
}

void request_exit() {
    __wrap_elm_exit();
}

}  // namespace host

// The loop goes on to the end of its turn; what comes in that time is told apart by the flag.
void __wrap_elm_exit(void) {
    exiting = true;
    __real_elm_exit();
}

void ui_app_exit(void) {
    host::request_exit();
}

void service_app_exit(void) {
    host::request_exit();
}

void widget_app_exit(void) {
    host::request_exit();
}
