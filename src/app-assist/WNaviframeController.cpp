#include "app-assist/WNaviframeController.h"

#include <efl_extension.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "app-assist/WContentViewController.h"
#include "app-assist/WLog.h"
#include "app-assist/WTimer.h"
#include "framework_keys.h"

namespace app_assist {

namespace {

constexpr char TRANSITION_FINISHED[] = "transition,finished";

/// The one that the toolkit has asked last since somebody wanted a pop.
const WNaviframeController *s_asked = nullptr;

/// Those whose top item the toolkit is asking about, the innermost last.
std::vector<const WNaviframeController *> s_popping;

bool isPopping(const WNaviframeController *naviframe) {
    return std::find(s_popping.begin(), s_popping.end(), naviframe) != s_popping.end();
}

}  // namespace

struct _WNaviframeControllerImpl {
    std::function<void(bool *)> _lastItemPopHandler;
};

WNaviframeController::WNaviframeController() : _pv(new _WNaviframeControllerImpl) {}

WNaviframeController::~WNaviframeController() {
    delete _pv;
}

bool WNaviframeController::create(Evas_Object *parent, void *viewParam) {
    const WViewWeakPtr self = getWeakPtr();
    if (!WViewController::create(parent, viewParam)) {
        return false;
    }
    // onCreated() may have deleted the object.
    if (!self.expired()) {
        evas_object_data_set(getEvasObject(), NAVIFRAME_INSTANCE_KEY, this);
    }
    return true;
}

void WNaviframeController::destroy() {
    Evas_Object *naviframe = getEvasObject();
    if (naviframe == nullptr) {
        onDestroy();
        delete this;
        return;
    }
    if (isPopping(this)) {
        // The toolkit doesn't survive the loss of its naviframe in the middle of a pop.
        WTimer::addJob([this](void *) { destroy(); }, nullptr, naviframe);
        return;
    }
    Eina_List *items = elm_naviframe_items_get(naviframe);
    for (Eina_List *node = items; node != nullptr; node = eina_list_next(node)) {
        elm_object_item_del(static_cast<Elm_Object_Item *>(eina_list_data_get(node)));
    }
    evas_object_del(naviframe);
}

bool WNaviframeController::push(WContentViewController *view, const char *viewName,
                                void *viewParam) {
    if (viewName != nullptr && view != nullptr) {
        view->setName(viewName);
    }
    return onPush(view, viewParam);
}

bool WNaviframeController::push(WContentViewController *view, const char *viewName) {
    return push(view, viewName, nullptr);
}

void WNaviframeController::popTopItem() {
    Evas_Object *naviframe = getEvasObject();
    Elm_Object_Item *top = elm_naviframe_top_item_get(naviframe);
    const WViewWeakPtr self = getWeakPtr();
    s_asked = nullptr;
    elm_naviframe_item_pop(naviframe);
    if (self.expired() || s_asked == this || top == nullptr ||
        top != elm_naviframe_top_item_get(naviframe)) {
        return;
    }
    // The toolkit doesn't pop while a page comes in, and forgets that it was told to.
    evas_object_smart_callback_del_full(naviframe, TRANSITION_FINISHED, _popPostponedCb, top);
    evas_object_smart_callback_add(naviframe, TRANSITION_FINISHED, _popPostponedCb, top);
}

void WNaviframeController::_popPostponedCb(void *data, Evas_Object *obj, void *) {
    evas_object_smart_callback_del_full(obj, TRANSITION_FINISHED, _popPostponedCb, data);
    // Not from within the toolkit's own call.
    WTimer::addJob(
        [obj](void *item) {
            if (item == elm_naviframe_top_item_get(obj)) {
                _backKeyCb(nullptr, obj, nullptr);
            }
        },
        data, obj);
}

bool WNaviframeController::isTopContentView(WContentViewController *view) {
    if (getEvasObject() == nullptr) {
        return false;
    }
    Elm_Object_Item *top = elm_naviframe_top_item_get(getEvasObject());
    return top != nullptr && view != nullptr && top == view->getNaviItem();
}

WContentViewController *WNaviframeController::getTopContentView() {
    if (getEvasObject() == nullptr) {
        return nullptr;
    }
    Elm_Object_Item *top = elm_naviframe_top_item_get(getEvasObject());
    return top != nullptr ? static_cast<WContentViewController *>(elm_object_item_data_get(top))
                          : nullptr;
}

void WNaviframeController::setLastItemPopHandler(std::function<void(bool *)> handler) {
    _pv->_lastItemPopHandler = std::move(handler);
}

Evas_Object *WNaviframeController::onCreateView(Evas_Object *parent, void *) {
    Evas_Object *naviframe = elm_naviframe_add(parent);
    eext_object_event_callback_add(naviframe, EEXT_CALLBACK_BACK, _backKeyCb, nullptr);
    eext_object_event_callback_add(naviframe, EEXT_CALLBACK_MORE, _moreKeyCb, nullptr);
    evas_object_show(naviframe);
    return naviframe;
}

bool WNaviframeController::onPush(WContentViewController *view, void *viewParam) {
    WASSERT(getEvasObject() != nullptr);
    if (view == nullptr) {
        WERROR("Failed to create a vc!");
        return false;
    }
    Evas_Object *naviframe = getEvasObject();
    // Each operation of the view may delete it, or this naviframe with all that is on it.
    const WViewWeakPtr self = getWeakPtr();
    const WViewWeakPtr pushed = view->getWeakPtr();
    const auto interrupted = [&self, &pushed] { return self.expired() || pushed.expired(); };

    if (!view->create(naviframe, viewParam)) {
        WERROR("Failed to create a vc!");
        return false;
    }
    if (interrupted()) {
        return pushed.expired();
    }
    view->setNaviframeController(this);
    Elm_Object_Item *item = view->onCreateNaviItem(naviframe);
    if (interrupted()) {
        return pushed.expired();
    }
    if (item == nullptr) {
        item = elm_naviframe_item_push(naviframe, view->getTitle(), nullptr, nullptr,
                                       view->getEvasObject(), nullptr);
    }
    elm_object_item_data_set(item, view);
    view->setNaviItem(item, true);
    view->notifyAttached();
    if (!interrupted()) {
        view->notifyPushed(item);
    }
    if (!interrupted()) {
        elm_naviframe_item_pop_cb_set(item, _itemPopCb, view);
    }
    return true;
}

bool WNaviframeController::onItemPop(WContentViewController *view, Elm_Object_Item *item) {
    if (item == elm_naviframe_bottom_item_get(getEvasObject())) {
        return _popBottomItem(view);
    }
    if (!view->onPop()) {
        return false;
    }
    Eina_List *items = elm_naviframe_items_get(getEvasObject());
    const unsigned int count = eina_list_count(items);
    if (count >= 2) {
        auto *below = static_cast<Elm_Object_Item *>(eina_list_nth(items, count - 2));
        auto *targetView = static_cast<WContentViewController *>(elm_object_item_data_get(below));
        WASSERT(targetView);
        targetView->onBecomeTop();
    }
    eina_list_free(items);
    return true;
}

bool WNaviframeController::_popBottomItem(WContentViewController *view) {
    if (!view->onPop()) {
        return false;
    }
    bool popOut = true;
    // A copy, because the handler may set another one.
    const std::function<void(bool *)> handler = _pv->_lastItemPopHandler;
    if (handler) {
        handler(&popOut);
    } else {
        onLastItemPop(&popOut);
    }
    return popOut;
}

void WNaviframeController::onLastItemPop(bool *popOut) {
    *popOut = false;
    elm_win_lower(getWindowEvasObject());
}

void WNaviframeController::_backKeyCb(void *, Evas_Object *obj, void *) {
    auto *naviframe =
        static_cast<WNaviframeController *>(evas_object_data_get(obj, NAVIFRAME_INSTANCE_KEY));
    naviframe->popTopItem();
}

void WNaviframeController::_moreKeyCb(void *, Evas_Object *obj, void *) {
    Elm_Object_Item *top = elm_naviframe_top_item_get(obj);
    Evas_Object *button =
        top != nullptr ? elm_object_item_part_content_get(top, "toolbar_more_btn") : nullptr;
    if (button != nullptr) {
        evas_object_smart_callback_call(button, "clicked", nullptr);
    }
}

Eina_Bool WNaviframeController::_itemPopCb(void *data, Elm_Object_Item *item) {
    auto *view = static_cast<WContentViewController *>(data);
    auto *naviframe = static_cast<WNaviframeController *>(
        evas_object_data_get(elm_object_item_widget_get(item), NAVIFRAME_INSTANCE_KEY));
    s_asked = naviframe;
    s_popping.push_back(naviframe);
    const bool pop = naviframe->onItemPop(view, item);
    s_popping.pop_back();
    return pop ? EINA_TRUE : EINA_FALSE;
}

}  // namespace app_assist
