#include "TslApp.h"

#include <Elementary.h>

#include <cstdlib>

#include "TslLog.h"
#include "TslNaviframeController.h"
#include "TslResourceCtrl.h"
#include "TslUtils.h"
#include "TslVideoPlayerMgr.h"
#include "TslWindowCtrl.h"

namespace {

void extendTheme() {
    char *szEdjPath = TslResourceCtrl::getInstance()->getResourcePath(TSL_EDJ_FILE);
    if (szEdjPath == nullptr) {
        TslWarn("It is failed to get edjPath. [%s]", TSL_EDJ_FILE);
    }
    elm_theme_extension_add(nullptr, szEdjPath);
    free(szEdjPath);
}

}  // namespace

TslApp::TslApp() : m_pVideoPlayerMgr(nullptr) {}

TslApp::~TslApp() {
    TslInfo("Video Player App is terminated.");
}

bool TslApp::onCreate() {
    TslInfo("");

    extendTheme();

    auto *pWindowCtrl = new TslWindowCtrl();
    if (!attachWindowController(pWindowCtrl)) {
        TslWarn("It is failed to attach the window handle to app assist.");
    }

    auto *pNaviframeCtrl = new TslNaviframeController();
    pWindowCtrl->attachBaseViewController(pNaviframeCtrl);
    TslUtils::setGlobalWindow(pWindowCtrl->getEvasObject());

    m_pVideoPlayerMgr = new TslVideoPlayerMgr(pNaviframeCtrl);
    m_pVideoPlayerMgr->create();
    return true;
}

void TslApp::onTerminate() {
    TslInfo("");

    if (m_pVideoPlayerMgr != nullptr) {
        m_pVideoPlayerMgr->destroy();
        delete m_pVideoPlayerMgr;
        m_pVideoPlayerMgr = nullptr;
    }
}

void TslApp::onPause() {
    TslInfo("");
    m_pVideoPlayerMgr->appPause();
}

void TslApp::onResume() {
    TslInfo("");
    m_pVideoPlayerMgr->appResume();
}

void TslApp::onAppControl(app_control_h request, bool firstLaunch) {
    TslInfo("");
    m_pVideoPlayerMgr->appControl(request, firstLaunch);
    WApp::onAppControl(request, firstLaunch);
}
