#pragma once

#include <Elementary.h>

#include <functional>

#include "app-assist/IWWindowController.h"

namespace app_assist {

struct _WWindowControllerImpl;

/// One window with its background, conformant and base layout. It lives as long as its window: the
/// window's deletion deletes the controller. Main loop only.
class WWindowController : public IWWindowController {
public:
    /// @param name     name and title of the window, copied; null ends the process
    /// @param winType  type of the window
    WWindowController(const char *name, Elm_Win_Type winType);
    WWindowController(const WWindowController &) = delete;
    WWindowController &operator=(const WWindowController &) = delete;

    const char *getClassName() override { return "WWindowController"; }
    Evas_Object *getEvasObject() override;
    Evas_Object *getBaseLayoutEvasObject() override;
    Evas_Object *getConformantEvasObject() override;
    WViewController *getBaseViewController() override;

    /// Builds the window without showing it; an existing one is left alone.
    /// @return false when no window could be made
    bool create();
    /// create(), and the new window is shown; an existing one is left alone.
    bool createAndShow();
    /// Deletes the window, and so the controller; without a window the controller is deleted at
    /// once.
    void destroy();

    /// Creates `view` below the base layout and places it there. A second view ends the process.
    /// Without a base layout the view is stored and not created.
    /// @return false when the view can't be created; the caller then destroys it
    bool attachBaseViewController(WViewController *view, void *viewParam);
    bool attachBaseViewController(WViewController *view);
    /// @return the former view, which stays alive and is the caller's to place or destroy, or null
    WViewController *detachBaseViewController();
    /// Destroys the attached view, if any.
    void destroyBaseViewController();

    const char *getName() const;
    Elm_Win_Type getWinType() const;

    /// The handlers take the place of the operations of the same role. Only before create().
    void setCreateWinHandler(std::function<Evas_Object *()> handler);
    void setCreateBaseLayoutHandler(
        std::function<Evas_Object *(Evas_Object *, Evas_Object **)> handler);
    /// @param handler  gets the window and the key's event information. When it was set at
    ///                 creation and is empty at a key, std::bad_function_call is thrown.
    void setBackKeyHandler(std::function<void(Evas_Object *, void *)> handler);

protected:
    ~WWindowController() override;

    virtual Evas_Object *onCreateWin();
    /// @param[out] conformant  set when the window has one
    /// @return the base layout, may be null
    virtual Evas_Object *onCreateBaseLayout(Evas_Object *win, Evas_Object **conformant);
    /// Places the view's object. The default uses the base layout's part "elm.swallow.content".
    virtual void onAttachBaseViewController(WViewController *view);
    virtual void onDetachBaseViewController(WViewController *view);
    virtual void onDestroy();

private:
    static void _deleteRequestCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _winDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);
    static void _backKeyCb(void *data, Evas_Object *obj, void *eventInfo);

    _WWindowControllerImpl *_pv;
};

}  // namespace app_assist
