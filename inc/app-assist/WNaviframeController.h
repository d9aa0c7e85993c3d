#pragma once

#include <Elementary.h>

#include <functional>

#include "app-assist/WViewController.h"

namespace app_assist {

class WContentViewController;
struct _WNaviframeControllerImpl;

/// The view that owns a navigation stack. Main loop only.
class WNaviframeController : public WViewController {
public:
    WNaviframeController();

    const char *getClassName() override { return "WNaviframeController"; }
    bool create(Evas_Object *parent, void *viewParam) override;
    /// Deletes all pushed views and the naviframe, without onPop() and onBecomeTop(). Inside a pop,
    /// that is in onPop(), onBecomeTop() or the last item's handler, the deletion follows in the
    /// next turn of the main loop.
    void destroy() override;

    /// Creates `view` below the naviframe and puts it on top. Before create() the process ends.
    /// @param viewName  given to the view's setName() when not null
    /// @return false when the view can't be created; the caller then destroys it
    bool push(WContentViewController *view, const char *viewName, void *viewParam);
    bool push(WContentViewController *view, const char *viewName);

    /// Pops the top item, as the back key does. While a page still comes in, it goes as soon as it
    /// is there.
    void popTopItem();

    bool isTopContentView(WContentViewController *view);
    /// @return null when there is none
    WContentViewController *getTopContentView();

    /// @param handler  when not empty, takes the place of onLastItemPop()
    void setLastItemPopHandler(std::function<void(bool *)> handler);

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *viewParam) override;
    ~WNaviframeController() override;

    virtual bool onPush(WContentViewController *view, void *viewParam);
    /// @return false to keep the item
    virtual bool onItemPop(WContentViewController *view, Elm_Object_Item *item);
    /// The bottom item is about to go. The default keeps it and lowers the window.
    /// @param[in,out] popOut  false to keep the item
    virtual void onLastItemPop(bool *popOut);

private:
    static void _backKeyCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _moreKeyCb(void *data, Evas_Object *obj, void *eventInfo);
    static Eina_Bool _itemPopCb(void *data, Elm_Object_Item *item);
    static void _popPostponedCb(void *data, Evas_Object *obj, void *eventInfo);

    bool _popBottomItem(WContentViewController *view);

    _WNaviframeControllerImpl *_pv;
};

}  // namespace app_assist
