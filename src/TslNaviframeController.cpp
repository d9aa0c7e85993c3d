#include "TslNaviframeController.h"

#include <Elementary.h>

#include <cstring>

#include "TslLog.h"

TslNaviframeController::TslNaviframeController() = default;

TslNaviframeController::~TslNaviframeController() {
    TslInfo("");
}

app_assist::WContentViewController *TslNaviframeController::getContentViewController(
    const char *szName) {
    Eina_List *pItems = elm_naviframe_items_get(getEvasObject());
    if (pItems == nullptr) {
        TslError("It is failed to get naviframe items list.");
        return nullptr;
    }
    app_assist::WContentViewController *pFound = nullptr;
    for (Eina_List *pNode = pItems; pNode != nullptr; pNode = eina_list_next(pNode)) {
        auto *pView = static_cast<app_assist::WContentViewController *>(
            elm_object_item_data_get(static_cast<Elm_Object_Item *>(eina_list_data_get(pNode))));
        if (pView == nullptr || pView->getName() == nullptr || szName == nullptr) {
            continue;
        }
        if (std::strcmp(pView->getName(), szName) == 0) {
            pFound = pView;
            break;
        }
    }
    eina_list_free(pItems);
    return pFound;
}
