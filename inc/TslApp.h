#pragma once

#include "app-assist/WApp.h"

class TslVideoPlayerMgr;

/// The application as the platform sees it: brings up theme, window, naviframe and player manager,
/// and forwards the life-cycle events to the manager.
///
/// Main loop only. Owns the manager from onCreate() to onTerminate(); window and naviframe belong
/// to the base class.
class TslApp : public app_assist::WApp {
public:
    TslApp();
    ~TslApp() override;
    TslApp(const TslApp &) = delete;
    TslApp &operator=(const TslApp &) = delete;

protected:
    /// Builds everything up to the idle player. A failure is logged and start-up goes on with what
    /// is there.
    /// @return true, always
    bool onCreate() override;

    /// Ends and deletes the manager, if there is one.
    void onTerminate() override;

    /// Requires a preceding onCreate().
    void onPause() override;

    /// Requires a preceding onCreate().
    void onResume() override;

    /// Hands a launch request to the manager. Requires a preceding onCreate().
    /// @param request  the platform's, valid during the call only
    /// @param firstLaunch  true for the first request of the process alone
    void onAppControl(app_control_h request, bool firstLaunch) override;

private:
    TslVideoPlayerMgr *m_pVideoPlayerMgr;
};
