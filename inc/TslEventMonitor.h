#pragma once

#include <app_common.h>

#include <functional>
#include <vector>

/// Keeps registrations for application events and owns what keeps each of them alive: destroying
/// the monitor ends them all.
///
/// Main loop only, the registered functions included.
class TslEventMonitor {
public:
    using AppEventHandlerFunc = std::function<void(app_event_info_h, void *)>;

    /// One registration.
    struct EventHandlerItem {
        void *pHandler;    ///< owned; for kind 0 a WAppEventHandler
        int nHandlerType;  ///< 0: application event, 1: preference key
        void *pKey;        ///< owned; for kind 0 the event type as an integer
    };

    TslEventMonitor();
    ~TslEventMonitor();
    TslEventMonitor(const TslEventMonitor &) = delete;
    TslEventMonitor &operator=(const TslEventMonitor &) = delete;

    /// Registers for an event, beside earlier registrations for it.
    /// @param pHandlerFunc  called with the event and pUserData; empty is refused
    /// @return 0, or -1 when refused. A registration that the platform refuses isn't noticed here.
    int addEventHandler(app_event_type_e nType, AppEventHandlerFunc pHandlerFunc, void *pUserData);

    /// Ends the first registration for an event.
    /// @return true when there was one
    bool removeEventHandler(app_event_type_e nType);

    /// Ends all registrations, in the order in which they were made.
    void destroy();

    /// Ends one registration and frees its record. A record of an unknown kind is left alone.
    /// @param pHandlerItem  null is logged
    static void destroyItem(EventHandlerItem *pHandlerItem);

private:
    std::vector<EventHandlerItem *> m_pHandlerItems;
};
