// Seeking with the bezel: a platform's seek is slow and a bezel fast, so detents are collected, one
// rough seek follows a short rest or every third quick detent, and one exact seek a longer rest.

#include <cstring>

#include "TslLog.h"
#include "TslNaviframeController.h"
#include "TslPlayerMgr.h"
#include "TslVideoPlayerMgrInside.h"
#include "app-assist/WContentViewController.h"
#include "app-assist/WTimer.h"

using app_assist::WTimer;
using app_assist::WTimerWeakPtr;

namespace {

constexpr double ROUGH_SEEK_DELAY = 0.5;
constexpr double ACCURATE_SEEK_DELAY = 1.0;
constexpr int DETENTS_OF_ROUGH_SEEK = 3;

constexpr int LONG_VIDEO_DURATION = 60000;
constexpr int STEP_IN_SHORT_VIDEO = 5000;
constexpr int STEP_IN_LONG_VIDEO = 10000;

int s_nRotaryEventCount = 0;  // detents since the last rough seek
int s_nSecondToMove = 0;      // signed offset since then, in milliseconds in spite of its name
WTimerWeakPtr s_hSeekTimer;
WTimerWeakPtr s_hAccurateSeekTimer;

}  // namespace

void TslVideoPlayerMgrInside::_eventHandlingForRotaryEvent(RotaryDirection nDirection) {
    if (m_pPlayerMgr == nullptr) {
        TslError("There is no m_pPlayerMgr.");
        return;
    }
    if (m_pSoundMgr == nullptr) {
        TslError("There is no m_pSoundMgr .");
        return;
    }
    if (m_pNaviframeCtrl == nullptr) {
        TslError("There is no m_pNaviframeCtrl.");
        return;
    }
    if (!_isPlayerViewOnTop()) {
        return;
    }

    _destroySeekTimers();
    ++s_nRotaryEventCount;
    const int nPosition = _moveSeekTarget(nDirection);

    if (s_nRotaryEventCount < DETENTS_OF_ROUGH_SEEK) {
        TslWarn("\n=== Event count: [%d] === SecondToMove: [%d] ===\n", s_nRotaryEventCount,
                s_nSecondToMove);
        s_hSeekTimer = WTimer::addTimer(
            ROUGH_SEEK_DELAY,
            [nPosition](void *pUserData) { return _roughSeekTimerCb(pUserData, nPosition); }, this);
    } else if (!_seekRoughly(nPosition)) {
        return;
    }

    s_hAccurateSeekTimer = WTimer::addTimer(
        ACCURATE_SEEK_DELAY,
        [nPosition](void *pUserData) { return _accurateSeekTimerCb(pUserData, nPosition); }, this);
}

bool TslVideoPlayerMgrInside::_isPlayerViewOnTop() {
    app_assist::WContentViewController *pTopView = m_pNaviframeCtrl->getTopContentView();
    if (pTopView == nullptr || pTopView->getEvasObject() == nullptr) {
        TslError("There is no view or no view layout..");
        return false;
    }
    const char *szName = pTopView->getName();
    if (szName == nullptr) {
        TslError("View name is nullptr.");
        return false;
    }
    return strcmp(szName, TSL_PLAYER_VIEW_NAME) == 0;
}

int TslVideoPlayerMgrInside::_moveSeekTarget(RotaryDirection nDirection) {
    const int nDuration = m_pPlayerMgr->getDuration();
    const int nStep = nDuration < LONG_VIDEO_DURATION ? STEP_IN_SHORT_VIDEO : STEP_IN_LONG_VIDEO;
    if (nDirection == ROTARY_DIRECTION_CLOCKWISE) {
        s_nSecondToMove += nStep;
    } else {
        s_nSecondToMove -= nStep;
    }

    const int nTarget = m_pPlayerMgr->getPosition() + s_nSecondToMove;
    if (nTarget > nDuration) {
        return nDuration;
    }
    return nTarget < 0 ? 0 : nTarget;
}

bool TslVideoPlayerMgrInside::_seekRoughly(int nPosition) {
    if (m_nPlayerStateBeforeSeek == 0) {
        m_nPlayerStateBeforeSeek = m_pPlayerMgr->getPlayerState();
    }
    if (m_pPlayerMgr->getPlayerState() == PLAY_STATE_PLAY) {
        _emitSignal(SIGNAL_PLAYER_PAUSE);
    }
    if (!m_pPlayerMgr->setPosition(nPosition, false)) {
        TslError("It is failed to set position by rotary_seek.");
        return false;
    }

    s_nSecondToMove = 0;
    s_nRotaryEventCount = 0;
    return true;
}

bool TslVideoPlayerMgrInside::_roughSeekTimerCb(void *pUserData, int nPosition) {
    if (pUserData == nullptr) {
        TslError("There is no user data.");
        return false;
    }
    TslInfo("Lamda function to check rotary event is finished.");

    static_cast<TslVideoPlayerMgrInside *>(pUserData)->_seekRoughly(nPosition);
    return false;
}

bool TslVideoPlayerMgrInside::_accurateSeekTimerCb(void *pUserData, int nPosition) {
    if (pUserData == nullptr) {
        TslError("There is no user data.");
        return false;
    }
    TslInfo("Lamda function to check rotary event is finished.");

    auto *pInside = static_cast<TslVideoPlayerMgrInside *>(pUserData);
    if (!pInside->m_pPlayerMgr->setPosition(nPosition, true)) {
        TslError("It is failed to set position by rotary_seek.");
    }
    return false;
}

void TslVideoPlayerMgrInside::_destroySeekTimers() {
    WTimer::destroy(s_hAccurateSeekTimer);
    WTimer::destroy(s_hSeekTimer);
}
