#pragma once

#include <Elementary.h>
#include <app_control.h>

#include "TslSignalMgr.h"

class TslAppParserCtrl;
class TslEventMonitor;
class TslNaviframeController;
class TslPlayerMgr;
class TslPlayerView;
class TslSoundMgr;
class TslVolumeView;

/// Names of the screens on the naviframe.
constexpr char TSL_PLAYER_VIEW_NAME[] = "tsl_player_view";
constexpr char TSL_VOLUME_VIEW_NAME[] = "tsl_volume_view";

/// Direction of one detent of the bezel; anything but clockwise counts as counter-clockwise.
enum RotaryDirection : int {
    ROTARY_DIRECTION_UNKNOWN = -1,
    ROTARY_DIRECTION_CLOCKWISE = 0,
    ROTARY_DIRECTION_COUNTER_CLOCKWISE = 1,
};

/// State and behaviour of TslVideoPlayerMgr, the only listener on the signal bus.
///
/// Main loop only. It keeps no pointer to a screen and no flag of what is playing: screens are
/// found by name each time, and the player is asked for its state. Nearly every transition is
/// reached by an emission, also the manager's own, so that each has one implementation.
///
/// Sources by topic: set-up and launch in TslVideoPlayerMgr.cpp, the player's reports in
/// TslVideoPlayerMgrEvents.cpp, the signal switch in TslVideoPlayerMgrSignals.cpp, seeking with the
/// bezel in TslVideoPlayerMgrRotarySeek.cpp, popups in TslVideoPlayerMgrPopups.cpp.
class TslVideoPlayerMgrInside {
public:
    /// Registers on the signal bus and takes over the back key of the bottom screen.
    /// @param pNaviframeCtrl  not owned, must outlive this object
    explicit TslVideoPlayerMgrInside(TslNaviframeController *pNaviframeCtrl);
    ~TslVideoPlayerMgrInside();
    TslVideoPlayerMgrInside(const TslVideoPlayerMgrInside &) = delete;
    TslVideoPlayerMgrInside &operator=(const TslVideoPlayerMgrInside &) = delete;

    // Set-up.
    void _initAppConfig();
    void _initPreference();
    void _initSoundEnvironment();
    void _createEventMonitor();

    // Life cycle and launch.
    void _appControl(app_control_h hAppControl, bool bFirstLaunch);
    void _appPause();
    void _appResume();
    void _exit();

    /// @return true, always
    bool _createPlayerMgr();
    /// Makes this object the reader of all the player's reports; what fails is logged.
    void _registerPlayerCallbacks();
    /// Opens the item and starts its asynchronous preparation.
    /// @param szUri  path or URI; null fails
    /// @return false when a step failed, which is logged
    bool _playMediaItem(const char *szUri);
    /// @return false when the screen doesn't stand on the naviframe afterwards
    bool _pushPlayerView();
    /// @return false when the screen doesn't stand on the naviframe afterwards
    bool _pushVolumeView();
    /// Makes the play button name what a press would do.
    /// @return false when there is no player screen
    bool _updatePlayerViewUI();

    // The player's reports; readers of TslPlayerMgr's pipes with this object as user data.
    static void _preparedCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _completedCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _interruptedCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _errorCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _seekCompletedCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _bufferingCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _pdMessageCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _subtitleUpdatedCb(void *pUserData, void *pBuffer, unsigned int nBytes);
    static void _missedPluginInfoCb(void *pUserData, void *pBuffer, unsigned int nBytes);

    /// The listener on the signal bus.
    void _getSignalMessage(TslSignalType nSignalType, void *pPayload);

    // One operation per sequence of the switch.
    void _eventHandlingToPlay();
    void _eventHandlingToPause();
    void _eventHandlingToStop();
    void _eventHandlingToPlayOrPause();
    void _eventHandlingToChangeDisplayMode();
    void _eventHandlingForProgressTimerTicked();
    void _eventHandlingForVolumeChanged(int nVolume);
    void _eventHandlingForRouteChanged();
    void _eventHandlingToSetVolume(int nVolume);
    void _eventHandlingToGetVolume();
    void _eventHandlingToInitVolumeBar();

    /// One detent of the bezel: collects offsets, seeks roughly, and exactly after a rest.
    void _eventHandlingForRotaryEvent(RotaryDirection nDirection);
    /// Bodies of the two seek timers, with this object as user data.
    /// @param nPosition  target in milliseconds
    /// @return false: each fires once
    static bool _roughSeekTimerCb(void *pUserData, int nPosition);
    static bool _accurateSeekTimerCb(void *pUserData, int nPosition);

    // Popups.
    /// @param szErrorId  message id in the program's text domain, copied; null is logged
    void _eventHandlingForErrorPopupToast(const char *szErrorId);
    /// @param szErrorId  message id in the program's text domain, copied; null is logged
    void _eventHandlingForErrorPopupOneButton(const char *szErrorId);
    /// @param szErrorId  message id in the program's text domain, copied; null is logged
    void _eventHandlingForMissedPluginPopupToast(const char *szErrorId);

    TslPlayerMgr *m_pPlayerMgr;          ///< owned, from the first launch request on
    TslSoundMgr *m_pSoundMgr;            ///< owned
    TslEventMonitor *m_pEventMonitor;    ///< owned
    TslAppParserCtrl *m_pAppParserCtrl;  ///< owned, of the latest request; null after a failed one
    unsigned int m_nSignalListenerId;    ///< 0: none
    TslNaviframeController *m_pNaviframeCtrl;  ///< not owned
    int m_nPlayerStateBeforeSeek;  ///< state when the bezel's seek began; 0: no seek in progress

private:
    static void _emitSignal(TslSignalType nSignalType, const void *pPayload = nullptr);

    void _clearPreviousLaunch();
    void _deleteAppParser();
    bool _preparePlayer();
    void _setVolumeButtonOfPlayerView(TslPlayerView *pPlayerView);

    /// Null when the screen isn't on the naviframe, or there is no naviframe.
    TslPlayerView *_findPlayerView();
    TslVolumeView *_findVolumeView();
    /// The player screen for what needs a player too; what is missing is logged.
    TslPlayerView *_findPlayerViewOfRunningPlayer();

    bool _hasPlayerAndSound();
    bool _hasNaviframeAndSound();

    bool _isPlayerViewOnTop();
    int _moveSeekTarget(RotaryDirection nDirection);
    bool _seekRoughly(int nPosition);
    static void _destroySeekTimers();

    bool _canShowPopup(const char *szErrorId);
    static void _errorToastTimeoutCb(void *pData, Evas_Object *pObject, void *pEventInfo);
    static void _oneButtonPopupDismissedCb(void *pData, Evas_Object *pObject, void *pEventInfo);
};
