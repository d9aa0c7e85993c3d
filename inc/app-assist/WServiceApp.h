#pragma once

#include <app_control.h>

namespace app_assist {

struct _WServiceAppImpl;

/// An application without a user interface: the platform's life cycle as virtual operations. Main
/// thread only.
class WServiceApp {
public:
    WServiceApp();
    virtual ~WServiceApp();
    WServiceApp(const WServiceApp &) = delete;
    WServiceApp &operator=(const WServiceApp &) = delete;

    /// Runs the service to its end. Called once, by main().
    /// @return the exit status of the process
    int start(int argc, char *argv[]);

protected:
    virtual int onStart(int argc, char *argv[]);
    /// @return false to end the service
    virtual bool onCreate();
    virtual void onTerminate();
    /// @param request      valid during the call
    /// @param firstLaunch  true for the first request alone
    virtual void onAppControl(app_control_h request, bool firstLaunch);

private:
    static bool _createCb(void *data);
    static void _terminateCb(void *data);
    static void _appControlCb(app_control_h request, void *data);

    _WServiceAppImpl *_pv;
};

}  // namespace app_assist
