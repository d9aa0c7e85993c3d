#include "TslEventMonitor.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "TslLog.h"
#include "TslPreferenceHandler.h"
#include "app-assist/WAppEventHandler.h"

namespace {

constexpr int HANDLER_TYPE_APP_EVENT = 0;
constexpr int HANDLER_TYPE_PREFERENCE = 1;

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

int TslEventMonitor::addEventHandler(const char *szKey, PreferenceHandlerFunc pHandlerFunc,
                                     void *pUserData) {
    if (szKey == nullptr) {
        TslError("There is no szKey.");
        return -1;
    }
    if (!pHandlerFunc) {
        TslError("There is no pHandlerFunc.");
        return -1;
    }

    auto *pHandler = new PreferenceHandler();
    auto *pItem = new EventHandlerItem{pHandler, HANDLER_TYPE_PREFERENCE, new std::string(szKey)};
    pHandler->addEventHandler(szKey, std::move(pHandlerFunc), pUserData);
    m_pHandlerItems.push_back(pItem);
    return 0;
}

bool TslEventMonitor::removeEventHandler(app_event_type_e nType) {
    return _removeItem(
        std::find_if(m_pHandlerItems.begin(), m_pHandlerItems.end(), [nType](const auto *pItem) {
            return pItem->nHandlerType == HANDLER_TYPE_APP_EVENT &&
                   *static_cast<const int *>(pItem->pKey) == static_cast<int>(nType);
        }));
}

bool TslEventMonitor::removeEventHandler(const char *szKey) {
    if (szKey == nullptr) {
        TslInfo("There is no szKey.");
        return false;
    }
    return _removeItem(
        std::find_if(m_pHandlerItems.begin(), m_pHandlerItems.end(), [szKey](const auto *pItem) {
            return pItem->nHandlerType == HANDLER_TYPE_PREFERENCE &&
                   std::strcmp(static_cast<const std::string *>(pItem->pKey)->c_str(), szKey) == 0;
        }));
}

bool TslEventMonitor::_removeItem(std::vector<EventHandlerItem *>::iterator itItem) {
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
    } else if (pHandlerItem->nHandlerType == HANDLER_TYPE_PREFERENCE) {
        delete static_cast<std::string *>(pHandlerItem->pKey);
        delete static_cast<PreferenceHandler *>(pHandlerItem->pHandler);
        delete pHandlerItem;
    }
}
