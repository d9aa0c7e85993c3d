#pragma once

#include <Elementary.h>

#include <functional>
#include <memory>

#include "app-assist/IWWindowController.h"

namespace app_assist {

class WViewController;
struct _WViewControllerImpl;

/// Tells whether a view still exists; a locked pointer doesn't keep it alive.
using WViewWeakPtr = std::weak_ptr<WViewController>;

/// Binds a widget tree to an object. A view lives exactly as long as its Evas object: whoever
/// deletes the Evas object deletes the view, and nobody else does. Main loop only.
class WViewController {
public:
    virtual const char *getClassName() { return "WViewController"; }

    /// Makes the widget tree: onCreate(), then the create-view handler or onCreateView(), then
    /// onCreated(). A view that is already created is left alone.
    /// @param parent     widget below a window that a window controller made
    /// @param viewParam  handed to onCreate() and onCreateView()
    /// @return false when onCreate() refused or no object was made; the view then still exists and
    ///         its owner calls destroy(). true also when one of the view's own operations has
    ///         destroyed it.
    virtual bool create(Evas_Object *parent, void *viewParam);
    /// Asks for the deletion of the object, and so of the view; without an object the view is
    /// deleted at once.
    virtual void destroy();

    /// @return the bound object, null until created
    Evas_Object *getEvasObject() const;

    /// @param name  copied; null for none. Given to the object when it is made.
    void setName(const char *name);
    /// @return the view's own text, null when it has no name
    const char *getName() const;

    /// @return pointer that expires when the view's destructor has run
    WViewWeakPtr getWeakPtr() const;

    /// Creates `popup` above the window's base layout. It lives no longer than this view and is
    /// destroyed by the next attachPopup(). Ownership passes to the popup's own object.
    void attachPopup(WViewController *popup);
    /// Destroys the attached popup, if it is still there.
    void destroyPopup();

    /// Creates `vc` below this view and puts it into a part.
    /// @return false, with a log line, before create() or when `vc` can't be created
    bool setPartContent(const char *partName, WViewController *vc);
    /// @return the view in the part; null, with a log line, when there is none
    WViewController *getPartContent(const char *partName);
    /// Takes the view out of the part; the caller places or destroys it.
    /// @return the view; null, with a log line, when there is none
    WViewController *unsetPartContent(const char *partName);

    /// @return the controller of the window above this view, null until created
    IWWindowController *getWindowController() const;
    /// @return null, with a log line, until created
    Evas_Object *getWindowEvasObject();
    /// @return null when the window has none; null with a log line until created
    Evas_Object *getWindowBaseLayoutEvasObject();

    /// @param handler  when not empty, takes the place of onCreateView()
    void setCreateViewHandler(std::function<Evas_Object *(Evas_Object *, void *)> handler);

protected:
    WViewController();

    /// @return false to refuse the creation
    virtual bool onCreate(void *viewParam);
    /// @return the view's object, made below `parent`
    virtual Evas_Object *onCreateView(Evas_Object *parent, void *viewParam);
    virtual void onCreated();
    /// Runs while the object is being deleted; child and parent widgets may be on their way out.
    virtual void onDestroy();

    virtual ~WViewController();
    WViewController(const WViewController &) = delete;
    WViewController &operator=(const WViewController &) = delete;

private:
    static void _evasObjectDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);

    Evas_Object *_makeObject(Evas_Object *parent, void *viewParam);
    void _findWindowController();

    _WViewControllerImpl *_pv;
};

/// @return the view bound to `obj`, or null
WViewController *wview_get_instance(Evas_Object *obj);

}  // namespace app_assist
