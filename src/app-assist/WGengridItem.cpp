#include "app-assist/WGengridItem.h"

#include "app-assist/WLog.h"
#include "app-assist/WViewController.h"
#include "item_parent.h"

namespace app_assist {

struct _WGengridItemImpl {
    Elm_Object_Item *_item = nullptr;
};

WGengridItem::WGengridItem() : _pv(new _WGengridItemImpl) {}

WGengridItem::~WGengridItem() {
    delete _pv;
}

void *WGengridItem::firstItemQuery() {
    return nullptr;
}

void *WGengridItem::secondItemQuery() {
    return nullptr;
}

void WGengridItem::onSelect(Elm_Object_Item *) {}

void WGengridItem::onItemCreated(Elm_Object_Item *) {}

Elm_Object_Item *WGengridItem::getElmObjectItem() const {
    return _pv->_item;
}

void WGengridItem::setElmObjectItem(Elm_Object_Item *item) {
    _pv->_item = item;
    onItemCreated(item);
}

bool WGengridItem::attachToParentViewController(WViewController *popup) {
    if (_pv->_item == nullptr) {
        WERROR("object item is not created!");
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

Elm_Object_Item *WGengridItem::appendItem(Evas_Object *gengrid,
                                          const Elm_Gengrid_Item_Class *itemClass,
                                          WGengridItem *item) {
    if (item == nullptr) {
        WERROR("Fail to append an item!");
        return nullptr;
    }
    return appendItem(gengrid, itemClass, item, _selectedCb, item);
}

Elm_Object_Item *WGengridItem::appendItem(Evas_Object *gengrid,
                                          const Elm_Gengrid_Item_Class *itemClass,
                                          WGengridItem *item, Evas_Smart_Cb selected,
                                          const void *data) {
    Elm_Object_Item *entry = gengrid != nullptr
                                 ? elm_gengrid_item_append(gengrid, itemClass, item, selected, data)
                                 : nullptr;
    if (entry == nullptr) {
        WERROR("Fail to append an item!");
        return nullptr;
    }
    if (item != nullptr) {
        item->setElmObjectItem(entry);
    }
    return entry;
}

void WGengridItem::_selectedCb(void *data, Evas_Object *, void *eventInfo) {
    auto *entry = static_cast<Elm_Object_Item *>(eventInfo);
    // First, so that no entry stays highlighted.
    elm_gengrid_item_selected_set(entry, EINA_FALSE);
    static_cast<WGengridItem *>(data)->onSelect(entry);
}

}  // namespace app_assist
