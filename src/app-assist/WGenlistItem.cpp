#include "app-assist/WGenlistItem.h"

#include "app-assist/WLog.h"
#include "app-assist/WViewController.h"
#include "item_parent.h"

namespace app_assist {

struct _WGenlistItemImpl {
    Elm_Object_Item *_item = nullptr;
};

WGenlistItem::WGenlistItem() : _pv(new _WGenlistItemImpl) {}

WGenlistItem::~WGenlistItem() {
    delete _pv;
}

void *WGenlistItem::firstItemQuery() {
    return nullptr;
}

void *WGenlistItem::secondItemQuery() {
    return nullptr;
}

void WGenlistItem::onSelect(Elm_Object_Item *) {}

void WGenlistItem::onItemCreated(Elm_Object_Item *) {}

Elm_Object_Item *WGenlistItem::getElmObjectItem() const {
    return _pv->_item;
}

void WGenlistItem::setElmObjectItem(Elm_Object_Item *item) {
    _pv->_item = item;
    onItemCreated(item);
}

bool WGenlistItem::attachToParentViewController(WViewController *popup) {
    if (_pv->_item == nullptr) {
        WERROR("object item has not been set! call setElmObjectItem");
        return false;
    }
    WViewController *parent = viewAboveItem(_pv->_item);
    if (parent == nullptr) {
        WERROR("Can not find view instance!");
        return false;
    }
    parent->attachPopup(popup);
    return true;
}

Elm_Object_Item *WGenlistItem::appendItem(Evas_Object *genlist,
                                          const Elm_Genlist_Item_Class *itemClass,
                                          WGenlistItem *item, Elm_Genlist_Item_Type type) {
    Elm_Object_Item *entry =
        item != nullptr && genlist != nullptr
            ? elm_genlist_item_append(genlist, itemClass, item, nullptr, type, _selectedCb, item)
            : nullptr;
    if (entry == nullptr) {
        WERROR("Fail to append an item!");
        return nullptr;
    }
    item->setElmObjectItem(entry);
    return entry;
}

void WGenlistItem::_selectedCb(void *data, Evas_Object *, void *eventInfo) {
    auto *entry = static_cast<Elm_Object_Item *>(eventInfo);
    // First, so that no entry stays highlighted.
    elm_genlist_item_selected_set(entry, EINA_FALSE);
    static_cast<WGenlistItem *>(data)->onSelect(entry);
}

}  // namespace app_assist
