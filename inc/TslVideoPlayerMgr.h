#pragma once

#include <app_control.h>

class TslNaviframeController;
class TslVideoPlayerMgrInside;

/// The centre of the program: ties player, sound, screens and platform events together.
///
/// Main loop only. It plays one item and then ends the process: completion, leaving the foreground,
/// low battery, the back key on the player screen and the end of an error popup all lead to
/// SIGNAL_APP_TERMINATE on the signal bus.
class TslVideoPlayerMgr {
public:
    /// @param pNaviframeCtrl  where the screens are pushed; not owned, must outlive the manager
    explicit TslVideoPlayerMgr(TslNaviframeController *pNaviframeCtrl);
    ~TslVideoPlayerMgr();
    TslVideoPlayerMgr(const TslVideoPlayerMgr &) = delete;
    TslVideoPlayerMgr &operator=(const TslVideoPlayerMgr &) = delete;

    /// Sets up toolkit, sound, event monitor and theme. No player exists afterwards: the first
    /// launch request creates it.
    void create();

    /// Plays the item that a launch request names; ends the application when it names none.
    /// @param hAppControl  the request, copied; null is logged and ignored
    /// @param bFirstLaunch  false stops what is playing and keeps the player screen
    void appControl(app_control_h hAppControl, bool bFirstLaunch);

    /// Ends the application: leaving the foreground is not survived.
    void appPause();

    /// Changes nothing.
    void appResume();

    /// Gives back the display lock. The player goes with the manager's deletion.
    void destroy();

private:
    TslVideoPlayerMgrInside *m_pVideoPlayerMgrInside;
};
