#include "app-assist/WWidgetWindowController.h"

#include <widget_app_efl.h>

#include <memory>

#include "app-assist/WLog.h"
#include "app-assist/WViewController.h"
#include "framework_keys.h"

namespace app_assist {

struct _WWidgetWindowControllerImpl {
    Evas_Object *_win;
    Evas_Object *_baseLayout;
    Evas_Object *_conformant;
    WViewController *_baseViewController;
    // Watched, so that a view that went by itself is not given out.
    WViewWeakPtr _baseViewLife;
    // Expires with the record: what goes with the window may take the controller along.
    std::shared_ptr<bool> _life;
};

WWidgetWindowController::WWidgetWindowController() : _pv(new _WWidgetWindowControllerImpl()) {
    _pv->_life = std::make_shared<bool>(true);
}

WWidgetWindowController::~WWidgetWindowController() {
    delete _pv;
}

Evas_Object *WWidgetWindowController::getEvasObject() {
    return _pv->_win;
}

Evas_Object *WWidgetWindowController::getBaseLayoutEvasObject() {
    return _pv->_baseLayout;
}

Evas_Object *WWidgetWindowController::getConformantEvasObject() {
    return _pv->_conformant;
}

WViewController *WWidgetWindowController::getBaseViewController() {
    return _pv->_baseViewLife.expired() ? nullptr : _pv->_baseViewController;
}

bool WWidgetWindowController::create(widget_context_h context, int width, int height) {
    Evas_Object *win = onCreateWin(context, width, height);
    if (win == nullptr) {
        WERROR("Failed to create an window!");
        return false;
    }
    // The readers know the interface alone.
    IWWindowController *instance = this;
    evas_object_data_set(win, WINDOW_INSTANCE_KEY, instance);
    // A second creation must not have the controller deleted twice.
    _unhookWindow();
    evas_object_smart_callback_add(win, "delete,request", _deleteRequestCb, this);
    evas_object_event_callback_add(win, EVAS_CALLBACK_DEL, _winDeletedCb, this);

    Evas_Object *conformant = nullptr;
    Evas_Object *baseLayout = onCreateBaseLayout(win, &conformant);
    _pv->_win = win;
    _pv->_baseLayout = baseLayout;
    _pv->_conformant = conformant;
    return true;
}

void WWidgetWindowController::destroy() {
    if (_pv->_win != nullptr) {
        _unhookWindow();
        const std::weak_ptr<bool> life = _pv->_life;
        evas_object_del(_pv->_win);
        if (!life.expired()) {
            _pv->_win = nullptr;
            _pv->_baseLayout = nullptr;
            _pv->_conformant = nullptr;
            _pv->_baseViewController = nullptr;
        }
        return;
    }
    onDestroy();
    delete this;
}

bool WWidgetWindowController::attachBaseViewController(WViewController *view, void *viewParam) {
    WASSERT(_pv->_baseViewController == nullptr);
    // Its own creation or placing may be its end; nobody has to see to it any more then.
    const WViewWeakPtr alive = view->getWeakPtr();
    Evas_Object *parent = _pv->_baseLayout != nullptr ? _pv->_baseLayout : _pv->_win;
    const bool created = view->create(parent, viewParam);
    if (_pv->_baseLayout == nullptr && !alive.expired()) {
        _pv->_baseLayout = view->getEvasObject();
        elm_win_resize_object_add(_pv->_win, _pv->_baseLayout);
        evas_object_show(_pv->_baseLayout);
    }
    if (!created) {
        return false;
    }
    if (!alive.expired()) {
        onAttachBaseViewController(view);
    }
    if (!alive.expired()) {
        _pv->_baseViewController = view;
        _pv->_baseViewLife = alive;
    }
    return true;
}

WViewController *WWidgetWindowController::detachBaseViewController() {
    WViewController *view = getBaseViewController();
    onDetachBaseViewController(view);
    _pv->_baseViewController = nullptr;
    return view;
}

Evas_Object *WWidgetWindowController::onCreateWin(widget_context_h context, int width, int height) {
    Evas_Object *win = nullptr;
    const int result = widget_app_get_elm_win(context, &win);
    if (result != WIDGET_ERROR_NONE) {
        WERROR("Fail to get window. %d", result);
        return nullptr;
    }
    evas_object_resize(win, width, height);
    evas_object_show(win);
    return win;
}

void WWidgetWindowController::onDestroy() {}

Evas_Object *WWidgetWindowController::onCreateBaseLayout(Evas_Object *, Evas_Object **) {
    return nullptr;
}

void WWidgetWindowController::onAttachBaseViewController(WViewController *view) {
    Evas_Object *layout = getBaseLayoutEvasObject();
    if (layout == nullptr) {
        WWARN("base layout does not exist!");
        return;
    }
    elm_object_part_content_set(layout, nullptr, view->getEvasObject());
}

void WWidgetWindowController::onDetachBaseViewController(WViewController *) {}

void WWidgetWindowController::_deleteRequestCb(void *, Evas_Object *, void *) {
    elm_exit();
}

void WWidgetWindowController::_winDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *controller = static_cast<WWidgetWindowController *>(data);
    controller->onDestroy();
    delete controller;
}

void WWidgetWindowController::_unhookWindow() {
    if (_pv->_win != nullptr) {
        evas_object_smart_callback_del_full(_pv->_win, "delete,request", _deleteRequestCb, this);
        evas_object_event_callback_del_full(_pv->_win, EVAS_CALLBACK_DEL, _winDeletedCb, this);
    }
}

}  // namespace app_assist
