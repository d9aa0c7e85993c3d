#pragma once

#include <Elementary.h>

namespace app_assist {

class WViewController;
struct _WGengridItemImpl;

/// One entry of a toolkit grid. The toolkit's item and this object don't delete each other. Main
/// loop only.
class WGengridItem {
public:
    WGengridItem();
    virtual ~WGengridItem();
    WGengridItem(const WGengridItem &) = delete;
    WGengridItem &operator=(const WGengridItem &) = delete;

    /// For a derived class to answer; the framework doesn't ask.
    virtual void *firstItemQuery();
    virtual void *secondItemQuery();

    /// @return null until there is one
    Elm_Object_Item *getElmObjectItem() const;
    /// Takes the toolkit's item, not owned, and calls onItemCreated().
    void setElmObjectItem(Elm_Object_Item *item);

    /// Attaches a popup to the view that the grid stands in.
    /// @return false, with a log line, without an item or such a view; `popup` is then left alone
    bool attachToParentViewController(WViewController *popup);

    /// Appends an entry that stands for `item`: the item as its data, and onSelect() when it is
    /// selected.
    /// @param gengrid    the grid, which keeps `item` as data only
    /// @param itemClass  how it looks; stays the caller's
    /// @param item       outlives its entry
    /// @return the entry; null, with a log line, without grid or item
    static Elm_Object_Item *appendItem(Evas_Object *gengrid,
                                       const Elm_Gengrid_Item_Class *itemClass, WGengridItem *item);
    /// The same with the caller's own select routine in the place of onSelect().
    /// @param item  may be null
    static Elm_Object_Item *appendItem(Evas_Object *gengrid,
                                       const Elm_Gengrid_Item_Class *itemClass, WGengridItem *item,
                                       Evas_Smart_Cb selected, const void *data);

protected:
    /// The entry was selected, and is so no more.
    virtual void onSelect(Elm_Object_Item *item);
    virtual void onItemCreated(Elm_Object_Item *item);

private:
    static void _selectedCb(void *data, Evas_Object *obj, void *eventInfo);

    _WGengridItemImpl *_pv;
};

}  // namespace app_assist
