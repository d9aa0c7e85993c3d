#pragma once

#include <app_common.h>

#include <functional>
#include <vector>

/// Keeps registrations for application events and for changes of preferences, and owns what keeps
/// each of them alive: destroying the monitor ends them all.
///
/// Main loop only, the registered functions included.
class TslEventMonitor {
public:
    using AppEventHandlerFunc = std::function<void(app_event_info_h, void *)>;
    using PreferenceHandlerFunc = std::function<void(const char *, void *)>;

    /// One registration.
    struct EventHandlerItem {
        void *pHandler;    ///< owned; for kind 0 a WAppEventHandler, for kind 1 a PreferenceHandler
        int nHandlerType;  ///< 0: application event, 1: preference key
        void *pKey;        ///< owned; for kind 0 the event type as an int, for kind 1 a std::string
    };

    TslEventMonitor();
    ~TslEventMonitor();
    TslEventMonitor(const TslEventMonitor &) = delete;
    TslEventMonitor &operator=(const TslEventMonitor &) = delete;

    /// Registers for an event, beside earlier registrations for it.
    /// @param pHandlerFunc  called with the event and pUserData; empty is refused
    /// @return 0, or -1 when refused. A registration that the platform refuses isn't noticed here.
    int addEventHandler(app_event_type_e nType, AppEventHandlerFunc pHandlerFunc, void *pUserData);

    /// Registers for changes of a preference. The platform keeps one watch for a key: the newest
    /// registration for it is called, and ending any of them ends the watch.
    /// @param szKey         copied; null is refused
    /// @param pHandlerFunc  called with the key and pUserData; empty is refused
    /// @return as for an event
    int addEventHandler(const char *szKey, PreferenceHandlerFunc pHandlerFunc, void *pUserData);

    /// Ends the first registration for an event.
    /// @return true when there was one
    bool removeEventHandler(app_event_type_e nType);
    /// Ends the first registration for a preference. Null is none.
    /// @return true when there was one
    bool removeEventHandler(const char *szKey);

    /// Ends all registrations, in the order in which they were made.
    void destroy();

    /// Ends one registration and frees its record. A record of an unknown kind is left alone.
    /// @param pHandlerItem  null is logged
    static void destroyItem(EventHandlerItem *pHandlerItem);

private:
    bool _removeItem(std::vector<EventHandlerItem *>::iterator itItem);

    std::vector<EventHandlerItem *> m_pHandlerItems;
};
