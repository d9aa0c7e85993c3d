#pragma once

#include <app.h>

#include <functional>

namespace app_assist {

struct _WAppEventHandlerImpl;

/// One subscription to a system event, ended by the destructor. Main thread only.
class WAppEventHandler {
public:
    WAppEventHandler();
    virtual ~WAppEventHandler();
    WAppEventHandler(const WAppEventHandler &) = delete;
    WAppEventHandler &operator=(const WAppEventHandler &) = delete;

    /// Subscribes, in place of an earlier subscription.
    /// @param handler   gets the event's information, valid during the call, and `userData`. An
    ///                  empty one throws std::bad_function_call at the event.
    /// @param userData  not owned
    void addEventHandler(app_event_type_e eventType,
                         std::function<void(app_event_info_h, void *)> handler, void *userData);
    /// Ends the subscription, if there is one.
    void removeEventHandler();

private:
    static void _eventCb(app_event_info_h eventInfo, void *data);

    _WAppEventHandlerImpl *_pv;
};

}  // namespace app_assist
