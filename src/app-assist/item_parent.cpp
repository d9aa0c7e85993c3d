#include "item_parent.h"

#include "app-assist/WViewController.h"

namespace app_assist {

WViewController *viewAboveItem(Elm_Object_Item *item) {
    Evas_Object *widget = elm_object_item_widget_get(item);
    while (widget != nullptr) {
        WViewController *view = wview_get_instance(widget);
        if (view != nullptr) {
            return view;
        }
        widget = elm_object_parent_widget_get(widget);
    }
    return nullptr;
}

}  // namespace app_assist
