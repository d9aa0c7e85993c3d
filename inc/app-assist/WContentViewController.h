#pragma once

#include <Elementary.h>

#include <functional>

#include "app-assist/WViewController.h"

namespace app_assist {

class WNaviframeController;
struct _WContentViewControllerImpl;

/// A view that can stand on a navigation stack or as a page of a page slide. Main loop only.
class WContentViewController : public WViewController {
public:
    WContentViewController();
    explicit WContentViewController(const char *name);

    const char *getClassName() override { return "WContentViewController"; }
    /// Deletes the view with its naviframe item, without onPop() and onBecomeTop().
    void destroy() override;

    /// @param title  title of the naviframe item, copied; null for none. Only before the push.
    void setTitle(const char *title);
    const char *getTitle() const;
    /// @param handler  when not empty, takes the place of onPushed()
    void setPushedHandler(std::function<void(Elm_Object_Item *)> handler);

    /// @return null, with a log line, until pushed
    WNaviframeController *getNaviframeController() const;
    /// @return the view's own item, or for a page the item of its page slide; null, with a log
    ///         line, until pushed
    Elm_Object_Item *getNaviItem() const;

    /// Pops this view as the back key does: an attached popup is destroyed first, and onPop() can
    /// still refuse. A view that isn't the top one ends the process.
    /// @return false, with a log line, when the view isn't created or isn't pushed
    bool popOut();
    /// Adds a more button to the item.
    /// @param clicked  smart callback of the button, with `userData`
    bool setMoreButton(Elm_Object_Item *naviItem, Evas_Smart_Cb clicked, void *userData);

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *viewParam) override;
    ~WContentViewController() override;

    virtual void onAttachedToNaviframe(WNaviframeController *naviframe, Elm_Object_Item *naviItem);
    /// @return the item that the view pushed itself; null to have a plain one pushed
    virtual Elm_Object_Item *onCreateNaviItem(Evas_Object *naviframe);
    virtual void onPushed(Elm_Object_Item *naviItem);
    /// @return false to refuse the pop
    virtual bool onPop();
    /// The view above goes and this one is on top again.
    virtual void onBecomeTop();
    virtual void onBecamePageContent(Elm_Object_Item *parentNaviItem);
    virtual void onAddMoreButton(Elm_Object_Item *naviItem, Evas_Smart_Cb clicked, void *userData);

private:
    friend class WNaviframeController;
    friend class WPageSlideViewController;

    void setNaviframeController(WNaviframeController *naviframe);
    void setNaviItem(Elm_Object_Item *item, bool isOwner);
    void notifyAttached();
    void notifyPushed(Elm_Object_Item *item);

    _WContentViewControllerImpl *_pv;
};

}  // namespace app_assist
