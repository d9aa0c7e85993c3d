// A service: it greets whom each launch request names, and ends on a low battery or when a request
// asks for it.
//
//     example-service --extra name=Ada        starts it, or asks the one that runs
//     example-service --extra stop=yes        ends it

#include <app_control.h>
#include <service_app.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "app-assist/WServiceApp.h"
#include "app-assist/WServiceAppEventHandler.h"

namespace {

void say(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

/// The extra text under `key`, empty when there is none.
std::string extraText(app_control_h request, const char *key) {
    char *text = nullptr;
    if (app_control_get_extra_data(request, key, &text) != APP_CONTROL_ERROR_NONE) {
        return std::string();
    }
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text;
}

class GreetingService : public app_assist::WServiceApp {
protected:
    bool onCreate() override {
        say("ready");
        const int result = m_lowBattery.addEventHandler(
            APP_EVENT_LOW_BATTERY,
            [](app_event_info_h, void *) {
                say("low battery");
                service_app_exit();
            },
            nullptr);
        return result == APP_ERROR_NONE;
    }

    void onAppControl(app_control_h request, bool firstLaunch) override {
        const std::string name = extraText(request, "name");
        say((firstLaunch ? "hello " : "hello again ") + (name.empty() ? "world" : name));
        if (!extraText(request, "stop").empty()) {
            service_app_exit();
        }
    }

    void onTerminate() override { say("goodbye"); }

private:
    app_assist::WServiceAppEventHandler m_lowBattery;
};

}  // namespace

int main(int argc, char *argv[]) {
    return GreetingService().start(argc, argv);
}
