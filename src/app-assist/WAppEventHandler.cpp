#include "app-assist/WAppEventHandler.h"

#include <utility>

namespace app_assist {

struct _WAppEventHandlerImpl {
    app_event_handler_h _handle = nullptr;
    void *_userData = nullptr;
    std::function<void(app_event_info_h, void *)> _handler;
};

WAppEventHandler::WAppEventHandler() : _pv(new _WAppEventHandlerImpl) {}

WAppEventHandler::~WAppEventHandler() {
    removeEventHandler();
    delete _pv;
}

void WAppEventHandler::addEventHandler(app_event_type_e eventType,
                                       std::function<void(app_event_info_h, void *)> handler,
                                       void *userData) {
    removeEventHandler();
    _pv->_handler = std::move(handler);
    _pv->_userData = userData;
    ui_app_add_event_handler(&_pv->_handle, eventType, _eventCb, _pv);
}

void WAppEventHandler::removeEventHandler() {
    if (_pv->_handle == nullptr) {
        return;
    }
    ui_app_remove_event_handler(_pv->_handle);
    _pv->_handle = nullptr;
    _pv->_userData = nullptr;
}

void WAppEventHandler::_eventCb(app_event_info_h eventInfo, void *data) {
    auto *impl = static_cast<_WAppEventHandlerImpl *>(data);
    // A copy, because the handler may replace or delete the stored one.
    const std::function<void(app_event_info_h, void *)> handler = impl->_handler;
    handler(eventInfo, impl->_userData);
}

}  // namespace app_assist
