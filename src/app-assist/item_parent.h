#pragma once

#include <Elementary.h>

namespace app_assist {

class WViewController;

/// @return the view that the item's widget is, or the nearest one above it; null when there is none
WViewController *viewAboveItem(Elm_Object_Item *item);

}  // namespace app_assist
