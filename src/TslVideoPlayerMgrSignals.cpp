// The one listener on the signal bus, and the transitions behind its signals.

#include <cstdint>

#include "TslLog.h"
#include "TslPlayerMgr.h"
#include "TslPlayerView.h"
#include "TslSoundMgr.h"
#include "TslSystemUtils.h"
#include "TslVideoPlayerMgrInside.h"
#include "TslVolumeView.h"

namespace {

int toInteger(void *pPayload) {
    return static_cast<int>(reinterpret_cast<intptr_t>(pPayload));
}

const void *toPayload(int nValue) {
    return reinterpret_cast<const void *>(static_cast<intptr_t>(nValue));
}

}  // namespace

// Runs on a thread of the platform too, for the fade signal: the default branch touches nothing.
void TslVideoPlayerMgrInside::_getSignalMessage(TslSignalType nSignalType, void *pPayload) {
    switch (nSignalType) {
    case SIGNAL_PLAYER_PLAY:
    case SIGNAL_PLAYER_RESUME:
        TslInfo("SIGNAL_PLAYER_PLAY");
        TslInfo("SIGNAL_PLAYER_RESUME");
        _eventHandlingToPlay();
        break;
    case SIGNAL_PLAYER_PAUSE:
        TslInfo("SIGNAL_PLAYER_PAUSE");
        _eventHandlingToPause();
        break;
    case SIGNAL_PLAYER_STOP:
        TslInfo("SIGNAL_PLAYER_STOP");
        _eventHandlingToStop();
        break;
    case SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE:
        _eventHandlingToPlayOrPause();
        break;
    case SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE:
        _eventHandlingToChangeDisplayMode();
        break;
    case SIGNAL_PLAYER_VIEW_ROTARY_EVENT:
        _eventHandlingForRotaryEvent(static_cast<RotaryDirection>(toInteger(pPayload)));
        break;
    case SIGNAL_POPUP_MISSED_VIDEO_PLUGIN:
    case SIGNAL_POPUP_MISSED_AUDIO_PLUGIN:
        _eventHandlingForMissedPluginPopupToast(static_cast<const char *>(pPayload));
        break;
    case SIGNAL_POPUP_ERROR_TOAST:
        _eventHandlingForErrorPopupToast(static_cast<const char *>(pPayload));
        break;
    case SIGNAL_POPUP_ERROR_ONE_BUTTON:
        _eventHandlingForErrorPopupOneButton(static_cast<const char *>(pPayload));
        break;
    case SIGNAL_SOUND_MGR_VOLUME_CHANGED:
        TslInfo("SIGNAL_SOUND_MGR_VOLUME_CHANGED");
        _eventHandlingForVolumeChanged(toInteger(pPayload));
        break;
    case SIGNAL_SOUND_MGR_ROUTE_CHANGED:
    case SIGNAL_SOUND_MGR_DEVICE_DISCONNECT:
        TslInfo("SIGNAL_SOUND_MGR_ROUTE_CHANGED");
        TslInfo("SIGNAL_SOUND_MGR_DEVICE_DISCONNECT");
        _eventHandlingForRouteChanged();
        break;
    case SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW:
        TslInfo("SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW");
        _pushVolumeView();
        break;
    case SIGNAL_PLAYER_VIEW_PROGRESS_TICK:
        _eventHandlingForProgressTimerTicked();
        break;
    case SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR:
        TslInfo("SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR");
        _eventHandlingToSetVolume(toInteger(pPayload));
        break;
    case SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR:
        TslInfo("SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR");
        _eventHandlingToGetVolume();
        break;
    case SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR:
        TslInfo("SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR");
        _eventHandlingToInitVolumeBar();
        break;
    case SIGNAL_APP_TERMINATE:
        TslInfo("SIGNAL_APP_TERMINATE");
        _exit();
        break;
    default:
        TslInfo("Default");
        break;
    }
}

bool TslVideoPlayerMgrInside::_hasPlayerAndSound() {
    if (m_pPlayerMgr == nullptr) {
        TslError("PlayerManager is nullptr.");
        return false;
    }
    if (m_pSoundMgr == nullptr) {
        TslError("SoundMgr is nullptr.");
        return false;
    }
    return true;
}

bool TslVideoPlayerMgrInside::_hasNaviframeAndSound() {
    if (m_pNaviframeCtrl == nullptr) {
        TslError("NaviframeCtrl is nullptr.");
        return false;
    }
    if (m_pSoundMgr == nullptr) {
        TslError("SoundMgr is nullptr.");
        return false;
    }
    return true;
}

void TslVideoPlayerMgrInside::_eventHandlingToPlay() {
    if (!_hasPlayerAndSound()) {
        return;
    }

    if (!m_pSoundMgr->acquireAudioFocus()) {
        TslError("It is failed to acquire audio focus.");
    }
    if (!m_pPlayerMgr->play()) {
        TslError("It is failed to play.");
        return;
    }
    TslSystemUtils::lockDisplay();
    _updatePlayerViewUI();
}

void TslVideoPlayerMgrInside::_eventHandlingToPause() {
    if (!_hasPlayerAndSound()) {
        return;
    }

    if (!m_pSoundMgr->releaseAudioFocus()) {
        TslError("It is failed to acquire audio focus.");
    }
    if (!m_pPlayerMgr->pause()) {
        TslError("It is failed to pause.");
        return;
    }
    TslSystemUtils::unlockDisplay();
    _updatePlayerViewUI();
}

void TslVideoPlayerMgrInside::_eventHandlingToStop() {
    if (!_hasPlayerAndSound()) {
        return;
    }

    if (!m_pSoundMgr->releaseAudioFocus()) {
        TslError("It is failed to acquire audio focus.");
    }
    if (!m_pPlayerMgr->stop()) {
        TslError("It is failed to stop.");
        return;
    }
    TslSystemUtils::unlockDisplay();
    _updatePlayerViewUI();
    if (!m_pPlayerMgr->destroyPlayer()) {
        TslWarn("It is failed to destroy player handle.");
    }
}

void TslVideoPlayerMgrInside::_eventHandlingToPlayOrPause() {
    if (m_pPlayerMgr == nullptr) {
        TslError("There is no m_pPlayerMgr.");
        return;
    }

    switch (m_pPlayerMgr->getPlayerState()) {
    case PLAY_STATE_NONE:
    case PLAY_STATE_IDLE:
        TslError(
            "It is not possible to play or pause because player is not initialized to prepare play "
            "or pause.");
        break;
    case PLAY_STATE_READY:
    case PLAY_STATE_PAUSE:
        _emitSignal(SIGNAL_PLAYER_PLAY);
        break;
    case PLAY_STATE_PLAY:
        _emitSignal(SIGNAL_PLAYER_PAUSE);
        break;
    default:
        TslWarn("Invalid state.");
        break;
    }
}

TslPlayerView *TslVideoPlayerMgrInside::_findPlayerViewOfRunningPlayer() {
    if (m_pPlayerMgr == nullptr) {
        TslError("There is no m_pPlayerMgr.");
        return nullptr;
    }
    if (m_pNaviframeCtrl == nullptr) {
        TslError("There is no m_pNaviframeCtrl.");
        return nullptr;
    }

    TslPlayerView *pPlayerView = _findPlayerView();
    if (pPlayerView == nullptr) {
        TslError("It is failed to get pPlayerView.");
    }
    return pPlayerView;
}

void TslVideoPlayerMgrInside::_eventHandlingToChangeDisplayMode() {
    TslPlayerView *pPlayerView = _findPlayerViewOfRunningPlayer();
    if (pPlayerView == nullptr) {
        return;
    }

    // The button shows the mode that the next press will bring.
    if (m_pPlayerMgr->getDisplayMode() == PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL) {
        if (!m_pPlayerMgr->setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_ORIGIN_OR_LETTER)) {
            TslError("It is failed to set display mode to Origin or letter.");
            return;
        }
        pPlayerView->changeDisplaymodeButtonImageAsFull();
    } else {
        if (!m_pPlayerMgr->setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL)) {
            TslError("It is failed to set display mode to Cropped full.");
            return;
        }
        pPlayerView->changeDisplaymodeButtonImageAsLetterbox();
    }
}

void TslVideoPlayerMgrInside::_eventHandlingForProgressTimerTicked() {
    TslPlayerView *pPlayerView = _findPlayerViewOfRunningPlayer();
    if (pPlayerView == nullptr) {
        return;
    }

    const int nPosition = m_pPlayerMgr->getPosition();
    const int nDuration = m_pPlayerMgr->getDuration();
    pPlayerView->setProgressValues(nPosition, nDuration);
}

void TslVideoPlayerMgrInside::_eventHandlingForVolumeChanged(int nVolume) {
    if (!_hasNaviframeAndSound()) {
        return;
    }

    TslPlayerView *pPlayerView = _findPlayerView();
    if (pPlayerView == nullptr) {
        TslError("There is no player view.");
        return;
    }
    if (nVolume < 1) {
        pPlayerView->changeVolumeButtonImageAsVolumeMute();
    } else {
        pPlayerView->changeVolumeButtonImageAsVolumeOn();
    }

    TslVolumeView *pVolumeView = _findVolumeView();
    if (pVolumeView == nullptr) {
        TslError("There is no volume view.");
        return;
    }
    pVolumeView->setVolume(nVolume);
    pVolumeView->readCurrentVolumeLevel();
}

void TslVideoPlayerMgrInside::_eventHandlingForRouteChanged() {
    if (!_hasNaviframeAndSound()) {
        return;
    }

    TslPlayerView *pPlayerView = _findPlayerView();
    if (pPlayerView == nullptr || pPlayerView->getEvasObject() == nullptr) {
        TslError("There is no player view.");
        return;
    }
    TslVolumeView *pVolumeView = _findVolumeView();
    const bool bVolumeViewShown = pVolumeView != nullptr && pVolumeView->getEvasObject() != nullptr;

    if (m_pSoundMgr->isSoundRouteAvailable()) {
        pPlayerView->enableVolumeButton();
        if (bVolumeViewShown) {
            pVolumeView->setMaxVolume(m_pSoundMgr->getMaxVolumeLevel());
            pVolumeView->setSafetyVolume(m_pSoundMgr->getSafetyVolumeLevel());
        }
        _emitSignal(SIGNAL_SOUND_MGR_VOLUME_CHANGED, toPayload(m_pSoundMgr->getVolume()));
    } else {
        TslInfo("Any sound route is not available.");
        if (bVolumeViewShown) {
            pVolumeView->destroy();
        }
        TslInfo("It needs to disable volume button of player view.");
        pPlayerView->disableVolumeButton();
    }
}

void TslVideoPlayerMgrInside::_eventHandlingToSetVolume(int nVolume) {
    if (m_pSoundMgr == nullptr) {
        TslError("SoundMgr is nullptr.");
        return;
    }
    m_pSoundMgr->setVolume(nVolume);
}

void TslVideoPlayerMgrInside::_eventHandlingToGetVolume() {
    if (!_hasNaviframeAndSound()) {
        return;
    }

    TslVolumeView *pVolumeView = _findVolumeView();
    if (pVolumeView == nullptr) {
        TslError("There is no volume view.");
        return;
    }
    pVolumeView->setVolume(m_pSoundMgr->getVolume());
}

void TslVideoPlayerMgrInside::_eventHandlingToInitVolumeBar() {
    if (!_hasNaviframeAndSound()) {
        return;
    }

    TslVolumeView *pVolumeView = _findVolumeView();
    if (pVolumeView == nullptr) {
        TslError("There is no player view.");
        return;
    }
    pVolumeView->setVolume(m_pSoundMgr->getVolume());
    pVolumeView->setMaxVolume(m_pSoundMgr->getMaxVolumeLevel());
    pVolumeView->setSafetyVolume(m_pSoundMgr->getSafetyVolumeLevel());
}
