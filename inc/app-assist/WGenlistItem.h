#pragma once

#include <Elementary.h>

namespace app_assist {

class WViewController;
struct _WGenlistItemImpl;

/// One entry of a toolkit list. The toolkit's item and this object don't delete each other. Main
/// loop only.
class WGenlistItem {
public:
    WGenlistItem();
    virtual ~WGenlistItem();
    WGenlistItem(const WGenlistItem &) = delete;
    WGenlistItem &operator=(const WGenlistItem &) = delete;

    /// For a derived class to answer; the framework doesn't ask.
    virtual void *firstItemQuery();
    virtual void *secondItemQuery();

    /// @return null until there is one
    Elm_Object_Item *getElmObjectItem() const;
    /// Takes the toolkit's item, not owned, and calls onItemCreated().
    void setElmObjectItem(Elm_Object_Item *item);

    /// Attaches a popup to the view that the list stands in.
    /// @return false, with a log line, without an item or such a view; `popup` is then left alone
    bool attachToParentViewController(WViewController *popup);

    /// Appends an entry that stands for `item`: no parent, the item as its data, and onSelect()
    /// when it is selected.
    /// @param genlist    the list, which keeps `item` as data only
    /// @param itemClass  how it looks; stays the caller's
    /// @param item       outlives its entry
    /// @return the entry; null, with a log line, without list or item
    static Elm_Object_Item *appendItem(Evas_Object *genlist,
                                       const Elm_Genlist_Item_Class *itemClass, WGenlistItem *item,
                                       Elm_Genlist_Item_Type type);

protected:
    /// The entry was selected, and is so no more.
    virtual void onSelect(Elm_Object_Item *item);
    virtual void onItemCreated(Elm_Object_Item *item);

private:
    static void _selectedCb(void *data, Evas_Object *obj, void *eventInfo);

    _WGenlistItemImpl *_pv;
};

}  // namespace app_assist
