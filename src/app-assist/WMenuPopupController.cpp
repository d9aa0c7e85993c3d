#include "app-assist/WMenuPopupController.h"

#include <efl_extension.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "app-assist/WLog.h"

namespace app_assist {

namespace {

Evas_Object *s_pLastMenuPopup = nullptr;

void dismissCb(void *, Evas_Object *obj, void *) {
    elm_ctxpopup_dismiss(obj);
}

void deleteCb(void *, Evas_Object *obj, void *) {
    evas_object_del(obj);
}

}  // namespace

struct WMenuPopupControllerImpl {
    Evas_Object *_win = nullptr;
    Evas_Object *_naviframe = nullptr;
    Evas_Object *_popup = nullptr;
    std::vector<std::function<void()>> _itemHandlers;

    ~WMenuPopupControllerImpl();

    Evas_Object *createPopup();
    void place();
    void unhook();

    static void _resizedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);
    static void _rotatedCb(void *data, Evas_Object *obj, void *eventInfo);
};

WMenuPopupControllerImpl::~WMenuPopupControllerImpl() {
    if (s_pLastMenuPopup == _popup) {
        s_pLastMenuPopup = nullptr;
    }
}

Evas_Object *WMenuPopupControllerImpl::createPopup() {
    Evas_Object *popup = elm_ctxpopup_add(_win);
    elm_object_style_set(popup, "more/default");
    elm_ctxpopup_auto_hide_disabled_set(popup, EINA_TRUE);
    eext_object_event_callback_add(popup, EEXT_CALLBACK_BACK, dismissCb, nullptr);
    eext_object_event_callback_add(popup, EEXT_CALLBACK_MORE, dismissCb, nullptr);
    evas_object_event_callback_add(_naviframe, EVAS_CALLBACK_RESIZE, _resizedCb, this);
    evas_object_smart_callback_add(_win, "rotation,changed", _rotatedCb, this);
    elm_ctxpopup_direction_priority_set(popup, ELM_CTXPOPUP_DIRECTION_DOWN,
                                        ELM_CTXPOPUP_DIRECTION_UP, ELM_CTXPOPUP_DIRECTION_UNKNOWN,
                                        ELM_CTXPOPUP_DIRECTION_UNKNOWN);
    evas_object_smart_callback_add(popup, "dismissed", deleteCb, nullptr);
    evas_object_smart_callback_add(popup, "language,changed", deleteCb, nullptr);
    _popup = popup;
    s_pLastMenuPopup = popup;
    return popup;
}

void WMenuPopupControllerImpl::place() {
    int width = 0;
    int height = 0;
    elm_win_screen_size_get(_win, nullptr, nullptr, &width, &height);
    const int rotation = elm_win_rotation_get(_win);
    if (rotation == 90 || rotation == 270) {
        evas_object_move(_popup, height / 2, width);
    } else {
        evas_object_move(_popup, width / 2, height);
    }
    evas_object_show(_popup);
}

void WMenuPopupControllerImpl::unhook() {
    if (_naviframe != nullptr) {
        evas_object_event_callback_del_full(_naviframe, EVAS_CALLBACK_RESIZE, _resizedCb, this);
    }
    if (_win != nullptr) {
        evas_object_smart_callback_del_full(_win, "rotation,changed", _rotatedCb, this);
    }
}

void WMenuPopupControllerImpl::_resizedCb(void *data, Evas *, Evas_Object *, void *) {
    static_cast<WMenuPopupControllerImpl *>(data)->place();
}

void WMenuPopupControllerImpl::_rotatedCb(void *data, Evas_Object *, void *) {
    static_cast<WMenuPopupControllerImpl *>(data)->place();
}

WMenuPopupController::WMenuPopupController() : _pv(new WMenuPopupControllerImpl) {}

WMenuPopupController::~WMenuPopupController() {
    _pv->unhook();
    delete _pv;
}

bool WMenuPopupController::createMenu(Evas_Object *win, Evas_Object *naviframe) {
    // A menu that exists keeps the objects on which its hooks are.
    if (getEvasObject() == nullptr) {
        _pv->_win = win;
        _pv->_naviframe = naviframe;
    }
    return create(nullptr, nullptr);
}

Elm_Object_Item *WMenuPopupController::appendItem(const char *label,
                                                  std::function<void()> handler) {
    if (getEvasObject() == nullptr) {
        WERROR("Create pop-up first!");
        return nullptr;
    }
    _pv->_itemHandlers.push_back(std::move(handler));
    const std::intptr_t index = static_cast<std::intptr_t>(_pv->_itemHandlers.size()) - 1;
    return elm_ctxpopup_item_append(_pv->_popup, label, nullptr, _itemSelectedCb,
                                    reinterpret_cast<void *>(index));
}

bool WMenuPopupController::showMenu() {
    if (getEvasObject() == nullptr) {
        WERROR("Pop-up is Not created!");
        return false;
    }
    _pv->place();
    evas_object_show(getEvasObject());
    return true;
}

void WMenuPopupController::destroyLastMenuPopup() {
    if (s_pLastMenuPopup != nullptr) {
        Evas_Object *menu = s_pLastMenuPopup;
        s_pLastMenuPopup = nullptr;
        evas_object_del(menu);
    }
}

Evas_Object *WMenuPopupController::onCreateView(Evas_Object *, void *) {
    if (_pv->_win == nullptr) {
        WERROR("Call createMenu first!");
        return nullptr;
    }
    return _pv->createPopup();
}

void WMenuPopupController::onDestroy() {}

void WMenuPopupController::_itemSelectedCb(void *data, Evas_Object *obj, void *) {
    auto *menu = static_cast<WMenuPopupController *>(wview_get_instance(obj));
    // A copy, because the handler may delete the menu and the stored one with it.
    const std::function<void()> handler =
        menu->_pv->_itemHandlers[reinterpret_cast<std::uintptr_t>(data)];
    handler();
    evas_object_del(obj);
}

}  // namespace app_assist
