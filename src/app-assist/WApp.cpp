#include "app-assist/WApp.h"

#include <cstdio>

#include "app-assist/WLog.h"
#include "app-assist/WMenuPopupController.h"
#include "app-assist/WWindowController.h"

namespace app_assist {

namespace {

constexpr int VERSION_MAJOR = 2;
constexpr int VERSION_MINOR = 2;
constexpr int VERSION_PATCH = 0;

const char *frameworkVersion() {
    static char s_szVersion[24];
    if (s_szVersion[0] == '\0') {
        std::snprintf(s_szVersion, sizeof(s_szVersion), "%d.%d.%d", VERSION_MAJOR, VERSION_MINOR,
                      VERSION_PATCH);
    }
    return s_szVersion;
}

}  // namespace

struct _WAppImpl {
    WWindowController *_window = nullptr;
    bool _firstLaunch = true;
    // Watched, so that a window that closes by itself leaves no stale controller behind.
    Evas_Object *_windowObject = nullptr;
};

WApp::WApp() : _pv(new _WAppImpl) {
    frameworkVersion();
}

WApp::~WApp() {
    if (_pv->_windowObject != nullptr) {
        evas_object_event_callback_del_full(_pv->_windowObject, EVAS_CALLBACK_DEL, _windowDeletedCb,
                                            _pv);
    }
    delete _pv;
}

int WApp::start(int argc, char *argv[]) {
    return onStart(argc, argv);
}

bool WApp::attachWindowController(WWindowController *window) {
    WASSERT(_pv->_window == nullptr);
    _pv->_window = window;
    const bool created = window->createAndShow();
    if (created) {
        _pv->_windowObject = window->getEvasObject();
        evas_object_event_callback_add(_pv->_windowObject, EVAS_CALLBACK_DEL, _windowDeletedCb,
                                       _pv);
    }
    return created;
}

WWindowController *WApp::getWindowController() {
    return _pv->_window;
}

int WApp::onStart(int argc, char *argv[]) {
    ui_app_lifecycle_callback_s callbacks = {_createCb, _terminateCb, _pauseCb, _resumeCb,
                                             _appControlCb};
    return ui_app_main(argc, argv, &callbacks, this);
}

bool WApp::onCreate() {
    return true;
}

void WApp::onTerminate() {}

void WApp::onPause() {}

void WApp::onResume() {}

void WApp::onAppControl(app_control_h, bool) {}

bool WApp::_createCb(void *data) {
    return static_cast<WApp *>(data)->onCreate();
}

void WApp::_terminateCb(void *data) {
    auto *app = static_cast<WApp *>(data);
    app->onTerminate();
    if (app->_pv->_window != nullptr) {
        app->_pv->_window->destroyBaseViewController();
    }
}

void WApp::_pauseCb(void *data) {
    WMenuPopupController::destroyLastMenuPopup();
    static_cast<WApp *>(data)->onPause();
}

void WApp::_resumeCb(void *data) {
    static_cast<WApp *>(data)->onResume();
}

void WApp::_appControlCb(app_control_h request, void *data) {
    auto *app = static_cast<WApp *>(data);
    app->onAppControl(request, app->_pv->_firstLaunch);
    app->_pv->_firstLaunch = false;
}

void WApp::_windowDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *impl = static_cast<_WAppImpl *>(data);
    impl->_window = nullptr;
    impl->_windowObject = nullptr;
}

}  // namespace app_assist
