#pragma once

#include <Elementary.h>
#include <widget_app.h>

#include "app-assist/IWWindowController.h"

namespace app_assist {

struct _WWidgetWindowControllerImpl;

/// The window of one widget, which the platform supplies. A window that is deleted by others
/// deletes the controller; destroy() leaves the controller to its owner. Main loop only.
class WWidgetWindowController : public IWWindowController {
public:
    WWidgetWindowController();
    WWidgetWindowController(const WWidgetWindowController &) = delete;
    WWidgetWindowController &operator=(const WWidgetWindowController &) = delete;

    const char *getClassName() override { return "WWidgetWindowController"; }
    Evas_Object *getEvasObject() override;
    Evas_Object *getBaseLayoutEvasObject() override;
    Evas_Object *getConformantEvasObject() override;
    WViewController *getBaseViewController() override;

    /// Only for a controller without a window: one that destroy() has left, or that has none yet.
    ~WWidgetWindowController() override;

    /// Takes and shows the widget's window.
    /// @param width, height  pixels
    /// @return false, with a log line, when there is no window
    bool create(widget_context_h context, int width, int height);
    /// Deletes the window, and leaves the controller without one, onDestroy() not called; without
    /// a window calls onDestroy() and deletes the controller.
    void destroy();

    /// Creates `view` below the base layout, or else below the window, and places it there. A
    /// second view ends the process.
    /// @return false when the view can't be created; the caller then destroys it
    bool attachBaseViewController(WViewController *view, void *viewParam);
    /// @return the former view, which stays alive and is the caller's to place or destroy, or null
    WViewController *detachBaseViewController();

protected:
    virtual Evas_Object *onCreateWin(widget_context_h context, int width, int height);
    virtual void onDestroy();
    /// @param[out] conformant  set when the window has one
    /// @return the base layout; null for none, which makes the first view's object the layout
    virtual Evas_Object *onCreateBaseLayout(Evas_Object *win, Evas_Object **conformant);
    /// Places the view's object. The default uses the base layout's default part.
    virtual void onAttachBaseViewController(WViewController *view);
    virtual void onDetachBaseViewController(WViewController *view);

private:
    static void _deleteRequestCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _winDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);

    void _unhookWindow();

    _WWidgetWindowControllerImpl *_pv;
};

}  // namespace app_assist
