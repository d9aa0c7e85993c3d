#pragma once

#include <Elementary.h>
#include <app.h>

namespace app_assist {

class WWindowController;
struct _WAppImpl;

/// An application with a user interface: the platform's life cycle as virtual operations. Main
/// thread only.
class WApp {
public:
    WApp();
    virtual ~WApp();
    WApp(const WApp &) = delete;
    WApp &operator=(const WApp &) = delete;

    /// Runs the application to its end. Called once, by main().
    /// @return the exit status of the process
    int start(int argc, char *argv[]);

    /// Takes the application's window controller and creates and shows its window, unless that
    /// exists. A second one ends the process. The controller lives as long as its window.
    /// @return false when the window can't be made; the controller stays attached
    bool attachWindowController(WWindowController *window);
    /// @return null when none is attached or its window has gone
    WWindowController *getWindowController();

protected:
    virtual int onStart(int argc, char *argv[]);
    /// @return false to end the application
    virtual bool onCreate();
    virtual void onTerminate();
    virtual void onPause();
    virtual void onResume();
    /// @param request      valid during the call
    /// @param firstLaunch  true for the first request alone
    virtual void onAppControl(app_control_h request, bool firstLaunch);

private:
    static bool _createCb(void *data);
    static void _terminateCb(void *data);
    static void _pauseCb(void *data);
    static void _resumeCb(void *data);
    static void _appControlCb(app_control_h request, void *data);
    static void _windowDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);

    _WAppImpl *_pv;
};

}  // namespace app_assist
