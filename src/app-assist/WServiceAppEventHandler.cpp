#include "app-assist/WServiceAppEventHandler.h"

#include <service_app.h>

#include <utility>

namespace app_assist {

struct _WServiceAppEventHandlerImpl {
    app_event_handler_h _handle = nullptr;
    void *_userData = nullptr;
    std::function<void(app_event_info_h, void *)> _handler;
};

WServiceAppEventHandler::WServiceAppEventHandler() : _pv(new _WServiceAppEventHandlerImpl) {}

WServiceAppEventHandler::~WServiceAppEventHandler() {
    removeEventHandler();
    delete _pv;
}

int WServiceAppEventHandler::addEventHandler(app_event_type_e eventType,
                                             std::function<void(app_event_info_h, void *)> handler,
                                             void *userData) {
    removeEventHandler();
    _pv->_handler = std::move(handler);
    _pv->_userData = userData;
    return service_app_add_event_handler(&_pv->_handle, eventType, _eventCb, _pv);
}

void WServiceAppEventHandler::removeEventHandler() {
    if (_pv->_handle == nullptr) {
        return;
    }
    service_app_remove_event_handler(_pv->_handle);
    _pv->_handle = nullptr;
    _pv->_userData = nullptr;
}

void WServiceAppEventHandler::_eventCb(app_event_info_h eventInfo, void *data) {
    auto *impl = static_cast<_WServiceAppEventHandlerImpl *>(data);
    // A copy, because the handler may replace or delete the stored one.
    const std::function<void(app_event_info_h, void *)> handler = impl->_handler;
    handler(eventInfo, impl->_userData);
}

}  // namespace app_assist
