#include "app-assist/WWidgetInstance.h"

#include "app-assist/WWidgetWindowController.h"
#include "widget_instance_record.h"

namespace app_assist {

WWidgetInstance::WWidgetInstance() : _pv(new _WWidgetInstanceImpl) {}

WWidgetInstance::~WWidgetInstance() {
    _unwatchWindow();
    delete _pv;
}

bool WWidgetInstance::attachWindowController(widget_context_h context,
                                             WWidgetWindowController *window) {
    _unwatchWindow();
    _pv->_windowController = window;
    const bool created = window->create(context, _pv->_width, _pv->_height);
    if (created) {
        _pv->_windowObject = window->getEvasObject();
        evas_object_event_callback_add(_pv->_windowObject, EVAS_CALLBACK_DEL, _windowDeletedCb,
                                       _pv);
    }
    return created;
}

WWidgetWindowController *WWidgetInstance::getWindowController() const {
    return _pv->_windowController;
}

WWidget *WWidgetInstance::getWidget() const {
    return _pv->_widget;
}

int WWidgetInstance::getWidth() const {
    return _pv->_width;
}

int WWidgetInstance::getHeight() const {
    return _pv->_height;
}

WWidgetInstance *WWidgetInstance::getInstance(widget_context_h context) {
    void *tag = nullptr;
    widget_app_context_get_tag(context, &tag);
    return static_cast<WWidgetInstance *>(tag);
}

bool WWidgetInstance::onDestroy(widget_context_h, widget_app_destroy_type_e, bundle *) {
    return true;
}

bool WWidgetInstance::onPause(widget_context_h) {
    return true;
}

bool WWidgetInstance::onResume(widget_context_h) {
    return true;
}

bool WWidgetInstance::onUpdate(widget_context_h, bundle *, bool) {
    return true;
}

bool WWidgetInstance::onResize(widget_context_h, int, int) {
    return true;
}

void WWidgetInstance::_windowDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *impl = static_cast<_WWidgetInstanceImpl *>(data);
    impl->_windowController = nullptr;
    impl->_windowObject = nullptr;
}

void WWidgetInstance::_unwatchWindow() {
    if (_pv->_windowObject != nullptr) {
        evas_object_event_callback_del_full(_pv->_windowObject, EVAS_CALLBACK_DEL, _windowDeletedCb,
                                            _pv);
        _pv->_windowObject = nullptr;
    }
}

}  // namespace app_assist
