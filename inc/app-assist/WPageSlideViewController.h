#pragma once

#include <Elementary.h>

#include <functional>

#include "app-assist/WContentViewController.h"

namespace app_assist {

struct _WPageSlideViewControllerImpl;

/// A content view that shows several pages side by side in a horizontally paging scroller. Pages
/// are added when it is created; a page's view dies with its page. Main loop only.
class WPageSlideViewController : public WContentViewController {
public:
    WPageSlideViewController();
    explicit WPageSlideViewController(const char *name);

    const char *getClassName() override { return "WPageSlideViewController"; }

    /// Adds a page behind the last one. Whether `vc` could be created isn't looked at.
    /// @param vc  created below the page; a content view is told of its place
    /// @return false, with a log line, before create(); `vc` is then left alone
    bool appendPage(WViewController *vc);
    bool appendPage(WContentViewController *vc);
    /// Adds an empty page, for setPageContent().
    bool appendPage();
    /// Destroys the page and the view in it.
    /// @param index  from 0
    /// @return false, with a log line, when there is no such page
    bool removePage(int index);

    /// Fills an empty page. Whether `vc` could be created isn't looked at.
    /// @param index  from 0; for the number of pages `vc` is created without a parent
    /// @return false, with log lines, when the page isn't there or holds a view
    bool setPageContent(int index, WViewController *vc);
    bool setPageContent(int index, WContentViewController *vc);
    /// Takes the view out of the page, which stays; the caller places or destroys the view.
    /// @return null, with a log line, when there is no such page or no view in it
    WViewController *unsetPageContent(int index);

    /// Scrolls to a page.
    /// @param index  from 0; one that is out of range is logged and changes nothing
    void showPage(int index, bool animate);

    int getPageCount() const;
    /// @return null for an empty page and out of range
    WViewController *getPageContent(int index) const;
    /// @return index of the page in view
    int getCurrentPage() const;
    /// @return null until created
    Evas_Object *getScroller() const;

    /// Whether a scroll bar may show, which it may at first. Only before create().
    void setScrollbarVisible(bool visible);
    /// Gives all pages the scroller's present size.
    void resizePages();

    /// @param handler  when not empty, takes the place of onInitScroller()
    void setInitScrollerHandler(std::function<void(Evas_Object *)> handler);
    /// @param handler  gets the current page's index minus the one before when scrolling comes to
    ///                 rest
    void setPageChangedHandler(std::function<void(int)> handler);

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *viewParam) override;
    ~WPageSlideViewController() override;
    void onAttachedToNaviframe(WNaviframeController *naviframe, Elm_Object_Item *naviItem) override;

    /// @return a layout with a part "scroller", in which the pages then stand; null for none
    virtual Evas_Object *onCreateLayout(Evas_Object *parent, void *viewParam);
    /// The scroller has its settings and stands in no part yet.
    virtual void onInitScroller(Evas_Object *scroller);

private:
    void _givePlace(WContentViewController *vc);

    _WPageSlideViewControllerImpl *_pv;
};

}  // namespace app_assist
