#include "app-assist/WContentViewController.h"

#include <app.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "app-assist/WLog.h"
#include "app-assist/WNaviframeController.h"
#include "framework_theme.h"

namespace app_assist {

namespace {

constexpr const char *DEFAULT_VIEW_GROUP = "default-view";

Evas_Object *addFilledRectangle(Evas_Object *layout) {
    Evas_Object *rect = evas_object_rectangle_add(evas_object_evas_get(layout));
    const int red = std::rand() % 256;
    const int green = std::rand() % 256;
    const int blue = std::rand() % 256;
    evas_object_color_set(rect, red, green, blue, 255);
    evas_object_size_hint_weight_set(rect, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(rect, EVAS_HINT_FILL, EVAS_HINT_FILL);
    return rect;
}

}  // namespace

struct _WContentViewControllerImpl {
    char *_title = nullptr;
    Elm_Object_Item *_naviItem = nullptr;
    bool _isNaviItemOwner = true;
    WNaviframeController *_naviframe = nullptr;
    std::function<void(Elm_Object_Item *)> _pushedHandler;
};

WContentViewController::WContentViewController() : _pv(new _WContentViewControllerImpl) {}

WContentViewController::WContentViewController(const char *name)
    : _pv(new _WContentViewControllerImpl) {
    setName(name);
}

WContentViewController::~WContentViewController() {
    std::free(_pv->_title);
    delete _pv;
}

void WContentViewController::destroy() {
    if (getEvasObject() == nullptr) {
        onDestroy();
        delete this;
        return;
    }
    if (_pv->_naviItem != nullptr && _pv->_isNaviItemOwner) {
        elm_object_item_del(_pv->_naviItem);
        return;
    }
    evas_object_del(getEvasObject());
}

void WContentViewController::setTitle(const char *title) {
    std::free(_pv->_title);
    _pv->_title = title != nullptr ? strdup(title) : nullptr;
}

const char *WContentViewController::getTitle() const {
    return _pv->_title;
}

void WContentViewController::setPushedHandler(std::function<void(Elm_Object_Item *)> handler) {
    _pv->_pushedHandler = std::move(handler);
}

WNaviframeController *WContentViewController::getNaviframeController() const {
    if (_pv->_naviframe == nullptr) {
        WWARN("naviframe does not exist!");
    }
    return _pv->_naviframe;
}

Elm_Object_Item *WContentViewController::getNaviItem() const {
    if (_pv->_naviItem == nullptr) {
        WWARN("naviItem does not exist!");
    }
    return _pv->_naviItem;
}

bool WContentViewController::popOut() {
    if (getEvasObject() == nullptr) {
        WWARN("Not created view! No Evas Object!");
        return false;
    }
    if (_pv->_naviframe == nullptr) {
        WWARN("Not pushed to naviframe!");
        return false;
    }
    Evas_Object *naviframe = _pv->_naviframe->getEvasObject();
    if (_pv->_naviItem != elm_naviframe_top_item_get(naviframe)) {
        WASSERT_MESSAGE(0, "This view is not on Top of Naviframe!");
    }
    // The popup's end may be the end of this view, and then there is nothing left to pop.
    WNaviframeController *controller = _pv->_naviframe;
    const WViewWeakPtr self = getWeakPtr();
    destroyPopup();
    if (!self.expired()) {
        controller->popTopItem();
    }
    return true;
}

bool WContentViewController::setMoreButton(Elm_Object_Item *naviItem, Evas_Smart_Cb clicked,
                                           void *userData) {
    onAddMoreButton(naviItem, clicked, userData);
    return true;
}

Evas_Object *WContentViewController::onCreateView(Evas_Object *parent, void *) {
    Evas_Object *layout = elm_layout_add(parent);
    evas_object_size_hint_weight_set(layout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    char *resourcePath = app_get_resource_path();
    if (resourcePath == nullptr) {
        WERROR("Failed to get resource path=nullptr");
        return layout;
    }
    const std::string theme = std::string(resourcePath) + FRAMEWORK_THEME;
    std::free(resourcePath);
    if (elm_layout_file_set(layout, theme.c_str(), DEFAULT_VIEW_GROUP)) {
        elm_object_part_content_set(layout, "rect", addFilledRectangle(layout));
        if (getName() != nullptr) {
            elm_object_part_text_set(layout, "name", getName());
        }
    } else {
        WERROR("Fail to set layout. Check EDJ file(%s)", theme.c_str());
    }
    evas_object_show(layout);
    return layout;
}

void WContentViewController::onAttachedToNaviframe(WNaviframeController *, Elm_Object_Item *) {}

Elm_Object_Item *WContentViewController::onCreateNaviItem(Evas_Object *) {
    return nullptr;
}

void WContentViewController::onPushed(Elm_Object_Item *) {}

bool WContentViewController::onPop() {
    return true;
}

void WContentViewController::onBecomeTop() {}

void WContentViewController::onBecamePageContent(Elm_Object_Item *) {}

void WContentViewController::onAddMoreButton(Elm_Object_Item *naviItem, Evas_Smart_Cb clicked,
                                             void *userData) {
    WNaviframeController *naviframe = getNaviframeController();
    if (naviframe == nullptr) {
        return;
    }
    Evas_Object *button = elm_button_add(naviframe->getEvasObject());
    elm_object_style_set(button, "naviframe/more/default");
    evas_object_show(button);
    evas_object_smart_callback_add(button, "clicked", clicked, userData);
    elm_object_item_part_content_set(naviItem, "toolbar_more_btn", button);
}

void WContentViewController::setNaviframeController(WNaviframeController *naviframe) {
    _pv->_naviframe = naviframe;
}

void WContentViewController::setNaviItem(Elm_Object_Item *item, bool isOwner) {
    _pv->_naviItem = item;
    _pv->_isNaviItemOwner = isOwner;
}

void WContentViewController::notifyPushed(Elm_Object_Item *item) {
    // A copy, because the handler may destroy the view and the stored one with it.
    const std::function<void(Elm_Object_Item *)> handler = _pv->_pushedHandler;
    if (handler) {
        handler(item);
    } else {
        onPushed(item);
    }
}

void WContentViewController::notifyAttached() {
    onAttachedToNaviframe(getNaviframeController(), getNaviItem());
}

}  // namespace app_assist
