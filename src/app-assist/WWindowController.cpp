#include "app-assist/WWindowController.h"

#include <efl_extension.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "app-assist/WLog.h"
#include "app-assist/WViewController.h"
#include "framework_keys.h"

namespace app_assist {

struct _WWindowControllerImpl {
    Evas_Object *_win;
    Evas_Object *_baseLayout;
    Evas_Object *_conformant;
    WViewController *_baseViewController;
    char *_name;
    Elm_Win_Type _winType;
    std::function<Evas_Object *()> _createWinHandler;
    std::function<Evas_Object *(Evas_Object *, Evas_Object **)> _createBaseLayoutHandler;
    std::function<void(Evas_Object *, void *)> _backKeyHandler;
    // Watched, so that a view that went by itself is not destroyed again.
    WViewWeakPtr _baseViewLife;
    // Expires with the record: the end of a view may be the end of its window.
    std::shared_ptr<bool> _life = std::make_shared<bool>(true);
};

WWindowController::WWindowController(const char *name, Elm_Win_Type winType)
    : _pv(new _WWindowControllerImpl()) {
    WASSERT(name);
    _pv->_name = strdup(name);
    _pv->_winType = winType;
}

WWindowController::~WWindowController() {
    std::free(_pv->_name);
    delete _pv;
}

Evas_Object *WWindowController::getEvasObject() {
    return _pv->_win;
}

Evas_Object *WWindowController::getBaseLayoutEvasObject() {
    return _pv->_baseLayout;
}

Evas_Object *WWindowController::getConformantEvasObject() {
    return _pv->_conformant;
}

WViewController *WWindowController::getBaseViewController() {
    return _pv->_baseViewLife.expired() ? nullptr : _pv->_baseViewController;
}

bool WWindowController::create() {
    if (_pv->_win != nullptr) {
        return true;
    }
    _pv->_win = _pv->_createWinHandler ? _pv->_createWinHandler() : onCreateWin();
    if (_pv->_win == nullptr) {
        return false;
    }
    Evas_Object *conformant = nullptr;
    _pv->_baseLayout = _pv->_createBaseLayoutHandler
                           ? _pv->_createBaseLayoutHandler(_pv->_win, &conformant)
                           : onCreateBaseLayout(_pv->_win, &conformant);
    _pv->_conformant = conformant;

    // The readers know the interface alone.
    IWWindowController *instance = this;
    evas_object_data_set(_pv->_win, WINDOW_INSTANCE_KEY, instance);
    if (_pv->_baseLayout != nullptr) {
        evas_object_data_set(_pv->_baseLayout, BASE_LAYOUT_TAG_KEY, instance);
    }
    evas_object_smart_callback_add(_pv->_win, "delete,request", _deleteRequestCb, this);
    evas_object_event_callback_add(_pv->_win, EVAS_CALLBACK_DEL, _winDeletedCb, this);
    if (_pv->_backKeyHandler) {
        eext_object_event_callback_add(_pv->_win, EEXT_CALLBACK_BACK, _backKeyCb, this);
    }
    return true;
}

bool WWindowController::createAndShow() {
    if (_pv->_win != nullptr) {
        return true;
    }
    if (!create()) {
        return false;
    }
    evas_object_show(_pv->_win);
    return true;
}

void WWindowController::destroy() {
    if (_pv->_win != nullptr) {
        evas_object_del(_pv->_win);
        return;
    }
    onDestroy();
    delete this;
}

bool WWindowController::attachBaseViewController(WViewController *view, void *viewParam) {
    WASSERT(_pv->_baseViewController == nullptr);
    // Its own creation or placing may be its end; nobody has to see to it any more then.
    const WViewWeakPtr alive = view->getWeakPtr();
    if (_pv->_baseLayout != nullptr && !view->create(_pv->_baseLayout, viewParam)) {
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

bool WWindowController::attachBaseViewController(WViewController *view) {
    return attachBaseViewController(view, nullptr);
}

WViewController *WWindowController::detachBaseViewController() {
    WViewController *view = getBaseViewController();
    onDetachBaseViewController(view);
    _pv->_baseViewController = nullptr;
    return view;
}

void WWindowController::destroyBaseViewController() {
    const std::weak_ptr<bool> life = _pv->_life;
    if (_pv->_baseViewController != nullptr && !_pv->_baseViewLife.expired()) {
        _pv->_baseViewController->destroy();
    }
    if (!life.expired()) {
        _pv->_baseViewController = nullptr;
    }
}

const char *WWindowController::getName() const {
    return _pv->_name;
}

Elm_Win_Type WWindowController::getWinType() const {
    return _pv->_winType;
}

void WWindowController::setCreateWinHandler(std::function<Evas_Object *()> handler) {
    _pv->_createWinHandler = std::move(handler);
}

void WWindowController::setCreateBaseLayoutHandler(
    std::function<Evas_Object *(Evas_Object *, Evas_Object **)> handler) {
    _pv->_createBaseLayoutHandler = std::move(handler);
}

void WWindowController::setBackKeyHandler(std::function<void(Evas_Object *, void *)> handler) {
    _pv->_backKeyHandler = std::move(handler);
}

Evas_Object *WWindowController::onCreateWin() {
    Evas_Object *win = elm_win_add(nullptr, _pv->_name, _pv->_winType);
    if (win == nullptr) {
        WERROR("Fail to create win!");
        return nullptr;
    }
    elm_win_title_set(win, _pv->_name);
    elm_win_conformant_set(win, EINA_TRUE);
    elm_win_autodel_set(win, EINA_TRUE);
    if (elm_win_wm_rotation_supported_get(win)) {
        const int rotations[] = {0, 90, 180, 270};
        elm_win_wm_rotation_available_rotations_set(win, rotations, 4);
    }
    elm_win_indicator_mode_set(win, ELM_WIN_INDICATOR_SHOW);
    elm_win_indicator_opacity_set(win, ELM_WIN_INDICATOR_OPAQUE);
    return win;
}

Evas_Object *WWindowController::onCreateBaseLayout(Evas_Object *win, Evas_Object **conformant) {
    Evas_Object *background = elm_bg_add(win);
    evas_object_size_hint_weight_set(background, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(win, background);
    evas_object_show(background);

    Evas_Object *frame = elm_conformant_add(win);
    evas_object_size_hint_weight_set(frame, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(win, frame);
    evas_object_show(frame);

    Evas_Object *layout = elm_layout_add(frame);
    elm_layout_theme_set(layout, "layout", "application", "default");
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_object_part_content_set(frame, nullptr, layout);
    evas_object_show(layout);

    *conformant = frame;
    return layout;
}

void WWindowController::onAttachBaseViewController(WViewController *view) {
    Evas_Object *layout = getBaseLayoutEvasObject();
    if (layout == nullptr) {
        WWARN("base layout does not exist!");
        return;
    }
    elm_object_part_content_set(layout, "elm.swallow.content", view->getEvasObject());
}

void WWindowController::onDetachBaseViewController(WViewController *) {}

void WWindowController::onDestroy() {}

void WWindowController::_deleteRequestCb(void *, Evas_Object *, void *) {
    elm_exit();
}

void WWindowController::_winDeletedCb(void *data, Evas *, Evas_Object *, void *) {
    auto *controller = static_cast<WWindowController *>(data);
    controller->onDestroy();
    delete controller;
}

void WWindowController::_backKeyCb(void *data, Evas_Object *obj, void *eventInfo) {
    // A copy, because the handler may delete the window and the stored one with it.
    const std::function<void(Evas_Object *, void *)> handler =
        static_cast<WWindowController *>(data)->_pv->_backKeyHandler;
    handler(obj, eventInfo);
}

}  // namespace app_assist
