#include "TslEventMonitor.h"

#include <algorithm>
#include <utility>

#include "TslLog.h"
#include "app-assist/WAppEventHandler.h"

namespace {

constexpr int HANDLER_TYPE_APP_EVENT = 0;

}  // namespace

TslEventMonitor::TslEventMonitor() = default;

TslEventMonitor::~TslEventMonitor() {
    destroy();
}

int TslEventMonitor::addEventHandler(app_event_type_e nType, AppEventHandlerFunc pHandlerFunc,
                                     void *pUserData) {
    if (!pHandlerFunc) {
        TslError("There is no pHandlerFunc.");
        return -1;
    }

    auto *pHandler = new app_assist::WAppEventHandler();
    auto *pItem =
        new EventHandlerItem{pHandler, HANDLER_TYPE_APP_EVENT, new int(static_cast<int>(nType))};
    pHandler->addEventHandler(nType, std::move(pHandlerFunc), pUserData);
    m_pHandlerItems.push_back(pItem);
    return 0;
}

bool TslEventMonitor::removeEventHandler(app_event_type_e nType) {
    const auto itItem =
        std::find_if(m_pHandlerItems.begin(), m_pHandlerItems.end(), [nType](const auto *pItem) {
            return pItem->nHandlerType == HANDLER_TYPE_APP_EVENT &&
                   *static_cast<const int *>(pItem->pKey) == static_cast<int>(nType);
        });
    if (itItem == m_pHandlerItems.end()) {
        return false;
    }

    EventHandlerItem *pItem = *itItem;
    TslWarn("Remove EventHandler: %p", static_cast<void *>(pItem));
    m_pHandlerItems.erase(itItem);
    destroyItem(pItem);
    return true;
}

void TslEventMonitor::destroy() {
    for (EventHandlerItem *pItem : m_pHandlerItems) {
        if (pItem != nullptr) {
            destroyItem(pItem);
        }
    }
    m_pHandlerItems.clear();
}

void TslEventMonitor::destroyItem(EventHandlerItem *pHandlerItem) {
    if (pHandlerItem == nullptr) {
        TslError("There is no pHandlerItem.");
        return;
    }

    if (pHandlerItem->nHandlerType == HANDLER_TYPE_APP_EVENT) {
        delete static_cast<int *>(pHandlerItem->pKey);
        delete static_cast<app_assist::WAppEventHandler *>(pHandlerItem->pHandler);
        delete pHandlerItem;
    }
}
