#include "app-assist/WViewController.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "app-assist/WLog.h"
#include "framework_keys.h"

namespace app_assist {

struct _WViewControllerImpl {
    Evas_Object *_evasObject;
    char *_name;
    WViewWeakPtr *_popup;
    std::function<Evas_Object *(Evas_Object *, void *)> *_createViewHandler;
    IWWindowController *_windowController;
    std::shared_ptr<WViewController> *_weakAnchor;
};

WViewController::WViewController() : _pv(new _WViewControllerImpl()) {}

WViewController::~WViewController() {
    std::free(_pv->_name);
    if (_pv->_popup != nullptr) {
        // Only the plain pointer is kept: a strong one would delay the end of the popup's weak
        // ones.
        WViewController *popup = _pv->_popup->lock().get();
        if (popup != nullptr) {
            popup->destroy();
        }
        delete _pv->_popup;
    }
    delete _pv->_createViewHandler;
    delete _pv->_weakAnchor;
    delete _pv;
}

bool WViewController::create(Evas_Object *parent, void *viewParam) {
    if (_pv->_evasObject != nullptr) {
        return true;
    }
    // Each of its own operations may destroy the view, and then nobody has to see to it any more.
    const WViewWeakPtr alive = getWeakPtr();
    if (!onCreate(viewParam)) {
        return alive.expired();
    }
    if (alive.expired()) {
        return true;
    }
    Evas_Object *object = _makeObject(parent, viewParam);
    if (alive.expired()) {
        evas_object_del(object);
        return true;
    }
    _pv->_evasObject = object;
    if (_pv->_evasObject == nullptr) {
        WERROR("No view object created!");
        return false;
    }
    _findWindowController();
    WASSERT_MESSAGE(_pv->_windowController != nullptr, "Cannot find window controll.");
    if (_pv->_name != nullptr) {
        evas_object_name_set(_pv->_evasObject, _pv->_name);
    }
    evas_object_data_set(_pv->_evasObject, VIEW_INSTANCE_KEY, this);
    evas_object_event_callback_add(_pv->_evasObject, EVAS_CALLBACK_DEL, _evasObjectDeletedCb, this);
    onCreated();
    return true;
}

Evas_Object *WViewController::_makeObject(Evas_Object *parent, void *viewParam) {
    if (_pv->_createViewHandler != nullptr && *_pv->_createViewHandler) {
        // A copy, because the handler may destroy the view and the stored one with it.
        const std::function<Evas_Object *(Evas_Object *, void *)> handler =
            *_pv->_createViewHandler;
        return handler(parent, viewParam);
    }
    return onCreateView(parent, viewParam);
}

void WViewController::destroy() {
    if (_pv->_evasObject != nullptr) {
        evas_object_del(_pv->_evasObject);
        return;
    }
    onDestroy();
    delete this;
}

Evas_Object *WViewController::getEvasObject() const {
    return _pv->_evasObject;
}

void WViewController::setName(const char *name) {
    std::free(_pv->_name);
    _pv->_name = name != nullptr ? strdup(name) : nullptr;
}

const char *WViewController::getName() const {
    return _pv->_name;
}

WViewWeakPtr WViewController::getWeakPtr() const {
    if (_pv->_weakAnchor == nullptr) {
        _pv->_weakAnchor = new std::shared_ptr<WViewController>(const_cast<WViewController *>(this),
                                                                [](WViewController *) {});
    }
    return *_pv->_weakAnchor;
}

void WViewController::attachPopup(WViewController *popup) {
    if (popup == nullptr) {
        WERROR("No popup to attach!");
        return;
    }
    const WViewWeakPtr self = getWeakPtr();
    const WViewWeakPtr attached = popup->getWeakPtr();
    Evas_Object *parent = _pv->_evasObject;
    do {
        parent = elm_object_parent_widget_get(parent);
    } while (parent != nullptr && evas_object_data_get(parent, BASE_LAYOUT_TAG_KEY) == nullptr);
    if (parent == nullptr) {
        WERROR("Cannot find parent View!");
        parent = elm_object_top_widget_get(_pv->_evasObject);
    }
    popup->create(parent, nullptr);
    if (!self.expired()) {
        destroyPopup();
    }
    // The making of one popup or the end of the other may have been the end of this view, which no
    // popup of its outlives.
    if (self.expired()) {
        if (!attached.expired()) {
            popup->destroy();
        }
        return;
    }
    if (_pv->_popup == nullptr) {
        _pv->_popup = new WViewWeakPtr;
    }
    *_pv->_popup = attached;
}

void WViewController::destroyPopup() {
    if (_pv->_popup == nullptr) {
        return;
    }
    WViewController *popup = _pv->_popup->lock().get();
    if (popup != nullptr) {
        // First, because the popup's end may be the end of this view.
        _pv->_popup->reset();
        popup->destroy();
    }
}

bool WViewController::setPartContent(const char *partName, WViewController *vc) {
    if (_pv->_evasObject == nullptr) {
        WERROR("Container object is not yet created!");
        return false;
    }
    Evas_Object *container = _pv->_evasObject;
    const WViewWeakPtr content = vc != nullptr ? vc->getWeakPtr() : WViewWeakPtr();
    if (vc == nullptr || !vc->create(container, nullptr)) {
        WERROR("Fail to create the view");
        return false;
    }
    // onCreated() may have destroyed it, alone or with this view.
    if (!content.expired()) {
        elm_object_part_content_set(container, partName, vc->getEvasObject());
    }
    return true;
}

WViewController *WViewController::getPartContent(const char *partName) {
    if (_pv->_evasObject == nullptr) {
        WERROR("Container object is not yet created!");
        return nullptr;
    }
    Evas_Object *content = elm_object_part_content_get(_pv->_evasObject, partName);
    if (content == nullptr) {
        WWARN("Content has not been set or the part does not exist!");
        return nullptr;
    }
    WViewController *view = wview_get_instance(content);
    if (view == nullptr) {
        WERROR("This is not a view controller object");
    }
    return view;
}

WViewController *WViewController::unsetPartContent(const char *partName) {
    if (_pv->_evasObject == nullptr) {
        WERROR("Container object is not yet created!");
        return nullptr;
    }
    Evas_Object *content = elm_object_part_content_unset(_pv->_evasObject, partName);
    if (content == nullptr) {
        WWARN("Content has not been set or the part does not exist!");
        return nullptr;
    }
    WViewController *view = wview_get_instance(content);
    if (view == nullptr) {
        WERROR("This is not a view controller object");
    }
    return view;
}

IWWindowController *WViewController::getWindowController() const {
    return _pv->_windowController;
}

Evas_Object *WViewController::getWindowEvasObject() {
    if (_pv->_windowController == nullptr) {
        WERROR("Fail to get window evas object!");
        return nullptr;
    }
    return _pv->_windowController->getEvasObject();
}

Evas_Object *WViewController::getWindowBaseLayoutEvasObject() {
    if (_pv->_windowController == nullptr) {
        WERROR("Fail to get base layout!");
        return nullptr;
    }
    return _pv->_windowController->getBaseLayoutEvasObject();
}

void WViewController::setCreateViewHandler(
    std::function<Evas_Object *(Evas_Object *, void *)> handler) {
    if (_pv->_createViewHandler == nullptr) {
        _pv->_createViewHandler = new std::function<Evas_Object *(Evas_Object *, void *)>;
    }
    *_pv->_createViewHandler = std::move(handler);
}

bool WViewController::onCreate(void *) {
    return true;
}

Evas_Object *WViewController::onCreateView(Evas_Object *, void *) {
    return nullptr;
}

void WViewController::onCreated() {}

void WViewController::onDestroy() {}

void WViewController::_evasObjectDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *view = static_cast<WViewController *>(data);
    view->onDestroy();
    delete view;
}

void WViewController::_findWindowController() {
    Evas_Object *ancestor = elm_object_parent_widget_get(_pv->_evasObject);
    while (ancestor != nullptr && _pv->_windowController == nullptr) {
        _pv->_windowController =
            static_cast<IWWindowController *>(evas_object_data_get(ancestor, WINDOW_INSTANCE_KEY));
        ancestor = elm_object_parent_widget_get(ancestor);
    }
}

WViewController *wview_get_instance(Evas_Object *obj) {
    return static_cast<WViewController *>(evas_object_data_get(obj, VIEW_INSTANCE_KEY));
}

}  // namespace app_assist
