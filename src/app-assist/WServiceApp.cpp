#include "app-assist/WServiceApp.h"

#include <service_app.h>

namespace app_assist {

struct _WServiceAppImpl {
    bool _firstLaunch = true;
};

WServiceApp::WServiceApp() : _pv(new _WServiceAppImpl) {}

WServiceApp::~WServiceApp() {
    delete _pv;
}

int WServiceApp::start(int argc, char *argv[]) {
    return onStart(argc, argv);
}

int WServiceApp::onStart(int argc, char *argv[]) {
    service_app_lifecycle_callback_s callbacks = {_createCb, _terminateCb, _appControlCb};
    return service_app_main(argc, argv, &callbacks, this);
}

bool WServiceApp::onCreate() {
    return true;
}

void WServiceApp::onTerminate() {}

void WServiceApp::onAppControl(app_control_h, bool) {}

bool WServiceApp::_createCb(void *data) {
    return static_cast<WServiceApp *>(data)->onCreate();
}

void WServiceApp::_terminateCb(void *data) {
    static_cast<WServiceApp *>(data)->onTerminate();
}

void WServiceApp::_appControlCb(app_control_h request, void *data) {
    auto *app = static_cast<WServiceApp *>(data);
    app->onAppControl(request, app->_pv->_firstLaunch);
    app->_pv->_firstLaunch = false;
}

}  // namespace app_assist
