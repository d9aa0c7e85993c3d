#include "TslVideoPlayerMgr.h"

#include <Elementary.h>

#include <cstdlib>

#include "TSingleton.h"
#include "TslAppParserCtrl.h"
#include "TslEventMonitor.h"
#include "TslExpandedUtils.h"
#include "TslLog.h"
#include "TslNaviframeController.h"
#include "TslPlayerMgr.h"
#include "TslPlayerView.h"
#include "TslSignalMgr.h"
#include "TslSoundMgr.h"
#include "TslSystemUtils.h"
#include "TslUtils.h"
#include "TslVideoPlayerMgrInside.h"
#include "TslVolumeView.h"

namespace {

constexpr double APP_BASE_SCALE = 1.3;
constexpr char ACCEL_PREFERENCE[] = "gl";

}  // namespace

TslVideoPlayerMgrInside::TslVideoPlayerMgrInside(TslNaviframeController *pNaviframeCtrl)
    : m_pPlayerMgr(nullptr),
      m_pSoundMgr(nullptr),
      m_pEventMonitor(nullptr),
      m_pAppParserCtrl(nullptr),
      m_nSignalListenerId(0),
      m_pNaviframeCtrl(nullptr),
      m_nPlayerStateBeforeSeek(0) {
    TslInfo("");

    m_nSignalListenerId = TslSignalMgr::getInstance()->getSignal().addListener(
        [this](TslSignalType nSignalType, void *pPayload) {
            _getSignalMessage(nSignalType, pPayload);
        });
    m_pNaviframeCtrl = pNaviframeCtrl;
    // The flag stays true: the bottom screen may go, the application goes with it.
    m_pNaviframeCtrl->setLastItemPopHandler(
        [](bool * /*pPopOut*/) { _emitSignal(SIGNAL_APP_TERMINATE); });
    m_nPlayerStateBeforeSeek = 0;
}

TslVideoPlayerMgrInside::~TslVideoPlayerMgrInside() {
    TslInfo("");

    _destroySeekTimers();

    delete m_pPlayerMgr;
    m_pPlayerMgr = nullptr;
    delete m_pSoundMgr;
    m_pSoundMgr = nullptr;
    delete m_pEventMonitor;
    m_pEventMonitor = nullptr;
    _deleteAppParser();

    if (m_nSignalListenerId != 0) {
        TslSignalMgr::getInstance()->getSignal().removeListener(m_nSignalListenerId);
    }
}

void TslVideoPlayerMgrInside::_initAppConfig() {
    TslInfo("");
    elm_app_base_scale_set(APP_BASE_SCALE);
    elm_config_accel_preference_set(ACCEL_PREFERENCE);
}

void TslVideoPlayerMgrInside::_initPreference() {
    TslInfo("");
}

void TslVideoPlayerMgrInside::_initSoundEnvironment() {
    if (m_pSoundMgr != nullptr) {
        TslWarn("SoundMgr object has been existed already.");
        return;
    }
    m_pSoundMgr = new TslSoundMgr();
}

void TslVideoPlayerMgrInside::_createEventMonitor() {
    if (m_pEventMonitor != nullptr) {
        TslWarn("Event monitor has been created already.");
        return;
    }

    m_pEventMonitor = new TslEventMonitor();
    m_pEventMonitor->addEventHandler(
        APP_EVENT_LOW_BATTERY,
        [](app_event_info_h /*hEventInfo*/, void * /*pUserData*/) {
            TslInfo("APP_EVENT_LOW_BATTERY");
            _emitSignal(SIGNAL_APP_TERMINATE);
        },
        nullptr);
    m_pEventMonitor->addEventHandler(
        APP_EVENT_LANGUAGE_CHANGED,
        [](app_event_info_h /*hEventInfo*/, void * /*pUserData*/) {
            TslInfo("APP_EVENT_LANGUAGE_CHANGED");
            TslUtils::updateLanguageSet();
        },
        nullptr);
}

void TslVideoPlayerMgrInside::_appControl(app_control_h hAppControl, bool bFirstLaunch) {
    TslInfo("=== App Control ===");
    if (hAppControl == nullptr) {
        TslError("There is no AppControlInfo.");
        return;
    }

    auto *pAppParserCtrl = new TslAppParserCtrl(hAppControl);
    if (!bFirstLaunch) {
        _clearPreviousLaunch();
    }
    m_pAppParserCtrl = pAppParserCtrl;

    if (!_createPlayerMgr()) {
        TslError("It is failed to create player manager.");
        _deleteAppParser();
        _emitSignal(SIGNAL_APP_TERMINATE);
        return;
    }

    char *szUri = m_pAppParserCtrl->getMediaUri();
    if (szUri == nullptr) {
        TslError("Media url is nullptr.");
        _deleteAppParser();
        _emitSignal(SIGNAL_APP_TERMINATE);
        return;
    }

    // The preparation starts before there is a screen, so that both go on at the same time.
    const bool bPlaying = _playMediaItem(szUri);
    if (!bPlaying) {
        TslError("It is failed to play using media url.");
    }
    free(szUri);
    if (!bPlaying) {
        // The process stays for the next request.
        _deleteAppParser();
        return;
    }

    if (!bFirstLaunch) {
        return;
    }

    TslWarn("== The video player is launched first time. ==");
    if (!_pushPlayerView()) {
        TslError("It is failed to push player view.");
        _deleteAppParser();
        _emitSignal(SIGNAL_APP_TERMINATE);
    }
}

void TslVideoPlayerMgrInside::_clearPreviousLaunch() {
    TslVolumeView *pVolumeView = _findVolumeView();
    if (pVolumeView != nullptr) {
        pVolumeView->pop();
    }
    _deleteAppParser();
    _emitSignal(SIGNAL_PLAYER_STOP);
}

void TslVideoPlayerMgrInside::_deleteAppParser() {
    delete m_pAppParserCtrl;
    m_pAppParserCtrl = nullptr;
}

void TslVideoPlayerMgrInside::_appPause() {
    TslInfo("=== App Pause ===");
    _emitSignal(SIGNAL_APP_TERMINATE);
}

void TslVideoPlayerMgrInside::_appResume() {
    TslInfo("=== App Resume ===");
}

void TslVideoPlayerMgrInside::_exit() {
    TslInfo("");
    elm_exit();
}

bool TslVideoPlayerMgrInside::_createPlayerMgr() {
    if (m_pPlayerMgr != nullptr) {
        TslWarn("Ther PlayerMgr has been created already.");
        return true;
    }

    m_pPlayerMgr = new TslPlayerMgr();
    TslInfo("");
    _registerPlayerCallbacks();
    return true;
}

void TslVideoPlayerMgrInside::_registerPlayerCallbacks() {
    if (!m_pPlayerMgr->addCbPipeOfCompletion(_completedCb, this)) {
        TslError("It is failed to add callback_pipe of completion.");
    }
    if (!m_pPlayerMgr->addCbPipeOfSubtitle(_subtitleUpdatedCb, this)) {
        TslError("It is failed to add callback_pipe of subtitle.");
    }
    if (!m_pPlayerMgr->addCbPipeOfSetPosition(_seekCompletedCb, this)) {
        TslError("It is failed to add callback_pipe of setPosition.");
    }
    if (!m_pPlayerMgr->addCbPipeOfStream(_bufferingCb, _pdMessageCb, this)) {
        TslError("It is failed to add callback_pipe of stream.");
    }
    if (!m_pPlayerMgr->addCbPipeOfPlay(_preparedCb, _errorCb, _interruptedCb, _missedPluginInfoCb,
                                       this)) {
        TslError("It is failed to add callback_pipe of play.");
    }
}

bool TslVideoPlayerMgrInside::_playMediaItem(const char *szUri) {
    if (szUri == nullptr) {
        TslError("Media Url is not inputted.");
        return false;
    }
    if (m_pPlayerMgr == nullptr) {
        TslError("PlayerMgr is nullptr.");
        return false;
    }
    if (m_pSoundMgr == nullptr) {
        TslError("SoundMgr is nullptr.");
        return false;
    }

    if (!_preparePlayer()) {
        return false;
    }
    if (!m_pPlayerMgr->readyAsync(szUri)) {
        TslError("It is failed to ready async.");
        return false;
    }
    return true;
}

bool TslVideoPlayerMgrInside::_preparePlayer() {
    if (!m_pPlayerMgr->createPlayer()) {
        TslError("It is failed to creat player.");
        return false;
    }

    sound_stream_info_h hStreamInfo = m_pSoundMgr->getAudioPolicyInfoToSetPlayerMgr();
    if (hStreamInfo == nullptr) {
        TslError("It is failed to get audio policy info from sound manager.");
        return false;
    }
    if (!m_pPlayerMgr->setAudioPolicyInfo(hStreamInfo)) {
        TslError("It is failed to set audio policy info to player manager.");
        return false;
    }

    if (!m_pPlayerMgr->setDisplayID(TslUtils::getGlobalWindow(), PLAYER_DISPLAY_TYPE_OF_OVERLAY)) {
        TslError("It is failed to set display ID to player manager.");
        return false;
    }
    if (!m_pPlayerMgr->setDisplayRotation(PLAYER_DISPLAY_ROTATION_TYPE_NONE)) {
        TslError("It is failed to set display rotation.");
        return false;
    }
    if (!m_pPlayerMgr->setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL)) {
        TslError("It is failed to set display mode.");
        return false;
    }
    return true;
}

bool TslVideoPlayerMgrInside::_pushPlayerView() {
    if (!_hasNaviframeAndSound()) {
        return false;
    }
    if (m_pPlayerMgr == nullptr) {
        TslError("SoundMgr is nullptr.");
        return false;
    }

    auto *pPlayerView = new TslPlayerView();
    if (!m_pNaviframeCtrl->push(pPlayerView, TSL_PLAYER_VIEW_NAME)) {
        TslError("It is failed to push player view to naviframe.");
        pPlayerView->destroy();
        return false;
    }
    if (pPlayerView->getEvasObject() == nullptr) {
        TslError("There is no player view.");
        return false;
    }

    _setVolumeButtonOfPlayerView(pPlayerView);
    if (m_pPlayerMgr->getDisplayMode() == PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL) {
        pPlayerView->changeDisplaymodeButtonImageAsLetterbox();
    } else {
        pPlayerView->changeDisplaymodeButtonImageAsFull();
    }
    return true;
}

void TslVideoPlayerMgrInside::_setVolumeButtonOfPlayerView(TslPlayerView *pPlayerView) {
    if (m_pSoundMgr->getVolume() < 1) {
        pPlayerView->changeVolumeButtonImageAsVolumeMute();
    } else {
        pPlayerView->changeVolumeButtonImageAsVolumeOn();
    }

    if (m_pSoundMgr->isSoundRouteAvailable()) {
        pPlayerView->enableVolumeButton();
    } else {
        TslInfo(
            "Any sound route is not available. It needs to disable volume button of player view.");
        pPlayerView->disableVolumeButton();
    }
}

bool TslVideoPlayerMgrInside::_pushVolumeView() {
    if (!_hasNaviframeAndSound()) {
        return false;
    }

    const int nVolume = m_pSoundMgr->getVolume();
    const int nMaxVolume = m_pSoundMgr->getMaxVolumeLevel();
    const int nSafetyVolume = m_pSoundMgr->getSafetyVolumeLevel();
    auto *pVolumeView = new TslVolumeView(nVolume, nMaxVolume, nSafetyVolume);
    if (!m_pNaviframeCtrl->push(pVolumeView, TSL_VOLUME_VIEW_NAME)) {
        TslError("It is failed to push player view to naviframe.");
        pVolumeView->destroy();
        return false;
    }
    return true;
}

bool TslVideoPlayerMgrInside::_updatePlayerViewUI() {
    if (m_pNaviframeCtrl == nullptr) {
        TslError("Naviframe controller is nullptr.");
        return false;
    }
    if (m_pPlayerMgr == nullptr) {
        TslError("Player manager is nullptr.");
        return false;
    }

    TslPlayerView *pPlayerView = _findPlayerView();
    if (pPlayerView == nullptr) {
        TslError("It is failed to get top view controller.");
        return false;
    }

    if (m_pPlayerMgr->getPlayerState() == PLAY_STATE_PLAY) {
        pPlayerView->changePlayButtonImageAsPause();
    } else {
        pPlayerView->changePlayButtonImageAsPlay();
    }
    return true;
}

TslPlayerView *TslVideoPlayerMgrInside::_findPlayerView() {
    if (m_pNaviframeCtrl == nullptr) {
        return nullptr;
    }
    return static_cast<TslPlayerView *>(
        m_pNaviframeCtrl->getContentViewController(TSL_PLAYER_VIEW_NAME));
}

TslVolumeView *TslVideoPlayerMgrInside::_findVolumeView() {
    if (m_pNaviframeCtrl == nullptr) {
        return nullptr;
    }
    return static_cast<TslVolumeView *>(
        m_pNaviframeCtrl->getContentViewController(TSL_VOLUME_VIEW_NAME));
}

void TslVideoPlayerMgrInside::_emitSignal(TslSignalType nSignalType, const void *pPayload) {
    TslSignalMgr::getInstance()->getSignal().emit(nSignalType, const_cast<void *>(pPayload));
}

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_INSIDE()                  \
    if (m_pVideoPlayerMgrInside == nullptr) {    \
        TslError("There is no manager handle."); \
        return;                                  \
    }

TslVideoPlayerMgr::TslVideoPlayerMgr(TslNaviframeController *pNaviframeCtrl)
    : m_pVideoPlayerMgrInside(new TslVideoPlayerMgrInside(pNaviframeCtrl)) {}

TslVideoPlayerMgr::~TslVideoPlayerMgr() {
    if (m_pVideoPlayerMgrInside == nullptr) {
        TslWarn("Manager handle has been deleted already.");
        return;
    }
    TslInfo("");

    delete m_pVideoPlayerMgrInside;
    m_pVideoPlayerMgrInside = nullptr;
}

void TslVideoPlayerMgr::create() {
    RETURN_WITHOUT_INSIDE();
    TslInfo("");

    m_pVideoPlayerMgrInside->_initAppConfig();
    m_pVideoPlayerMgrInside->_initPreference();
    m_pVideoPlayerMgrInside->_initSoundEnvironment();
    m_pVideoPlayerMgrInside->_createEventMonitor();

    TslExpandedUtils::setUxtTheme();
    TslExpandedUtils::bindTextDomain();
    TslExpandedUtils::setChangeableGuiTables();
}

void TslVideoPlayerMgr::appControl(app_control_h hAppControl, bool bFirstLaunch) {
    RETURN_WITHOUT_INSIDE();
    TslInfo("");

    m_pVideoPlayerMgrInside->_appControl(hAppControl, bFirstLaunch);
}

void TslVideoPlayerMgr::appPause() {
    RETURN_WITHOUT_INSIDE();
    TslInfo("");

    m_pVideoPlayerMgrInside->_appPause();
}

void TslVideoPlayerMgr::appResume() {
    RETURN_WITHOUT_INSIDE();
    TslInfo("");

    m_pVideoPlayerMgrInside->_appResume();
}

void TslVideoPlayerMgr::destroy() {
    if (m_pVideoPlayerMgrInside == nullptr) {
        TslWarn("Manager handle has been deleted already.");
        return;
    }
    TslInfo("");

    TslSystemUtils::unlockDisplay();
}
