#pragma once

#include <app_common.h>

#include <functional>

namespace app_assist {

struct _WServiceAppEventHandlerImpl;

/// One subscription of a service to a system event, ended by the destructor. Main thread only.
class WServiceAppEventHandler {
public:
    WServiceAppEventHandler();
    virtual ~WServiceAppEventHandler();
    WServiceAppEventHandler(const WServiceAppEventHandler &) = delete;
    WServiceAppEventHandler &operator=(const WServiceAppEventHandler &) = delete;

    /// Subscribes, in place of an earlier subscription.
    /// @param handler   gets the event's information, valid during the call, and `userData`. An
    ///                  empty one throws std::bad_function_call at the event.
    /// @param userData  not owned
    /// @return the platform's result, APP_ERROR_NONE when subscribed
    int addEventHandler(app_event_type_e eventType,
                        std::function<void(app_event_info_h, void *)> handler, void *userData);
    /// Ends the subscription, if there is one.
    void removeEventHandler();

private:
    static void _eventCb(app_event_info_h eventInfo, void *data);

    _WServiceAppEventHandlerImpl *_pv;
};

}  // namespace app_assist
