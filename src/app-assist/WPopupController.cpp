#include "app-assist/WPopupController.h"

#include <efl_extension.h>

#include <cstdio>
#include <string>
#include <utility>

#include "app-assist/WLog.h"

namespace app_assist {

namespace {

constexpr int MAX_BUTTONS = 3;
constexpr double ALIGN_BOTTOM = 1.0;

}  // namespace

struct _WPopupControllerImpl {
    std::string _title;
    std::string _content;
    std::string _textDomain;
    WViewController *_contentView = nullptr;
    std::string _buttonTexts[MAX_BUTTONS];
    int _buttonNum = 0;
    bool _translatable = false;
    std::function<Evas_Object *(Evas_Object *)> _contentCreator;
    std::function<void(Evas_Object *)> _creationHook;
    std::function<void(bool *)> _backHandler;
    std::function<void(bool *)> _buttonHandlers[MAX_BUTTONS];
    std::function<void(Evas_Object *)> *_buttonCreationHooks[MAX_BUTTONS] = {};

    void destroyContentView();
};

void _WPopupControllerImpl::destroyContentView() {
    if (_contentView != nullptr) {
        _contentView->destroy();
        _contentView = nullptr;
    }
}

WPopupController::WPopupController() : _pv(new _WPopupControllerImpl) {}

WPopupController::WPopupController(const char *title, const char *content)
    : _pv(new _WPopupControllerImpl) {
    setTitle(title);
    setContent(content);
}

WPopupController::~WPopupController() {
    for (auto *hook : _pv->_buttonCreationHooks) {
        delete hook;
    }
    delete _pv;
}

void WPopupController::setTitle(const char *title) {
    _pv->_title = title != nullptr ? title : "";
}

void WPopupController::setContent(const char *text) {
    _pv->_content = text != nullptr ? text : "";
    _pv->destroyContentView();
}

void WPopupController::setContent(WViewController *view) {
    _pv->_content.clear();
    _pv->_contentView = view;
}

void WPopupController::setContent(std::function<Evas_Object *(Evas_Object *)> creator) {
    _pv->_content.clear();
    _pv->destroyContentView();
    _pv->_contentCreator = std::move(creator);
}

void WPopupController::setTextDomain(const char *domain) {
    _pv->_textDomain = domain != nullptr ? domain : "";
}

void WPopupController::setTextTranslatable() {
    _pv->_translatable = true;
}

void WPopupController::setCreationHook(std::function<void(Evas_Object *)> hook) {
    _pv->_creationHook = std::move(hook);
}

void WPopupController::setBackHandler(std::function<void(bool *)> handler) {
    _pv->_backHandler = std::move(handler);
}

bool WPopupController::addButton(const char *text, std::function<void(bool *)> handler,
                                 std::function<void(Evas_Object *)> creationHook) {
    if (_pv->_buttonNum > MAX_BUTTONS - 1) {
        WERROR("Over the max button number! =%d", _pv->_buttonNum);
        return false;
    }
    _pv->_buttonTexts[_pv->_buttonNum] = text;
    _pv->_buttonHandlers[_pv->_buttonNum] = std::move(handler);
    if (creationHook) {
        _pv->_buttonCreationHooks[_pv->_buttonNum] =
            new std::function<void(Evas_Object *)>(std::move(creationHook));
    }
    ++_pv->_buttonNum;
    return true;
}

bool WPopupController::addButton(const char *text, std::function<void(bool *)> handler) {
    return addButton(text, std::move(handler), nullptr);
}

Evas_Object *WPopupController::onCreateView(Evas_Object *parent, void *) {
    Evas_Object *popup = elm_popup_add(parent);
    elm_popup_align_set(popup, ELM_NOTIFY_ALIGN_FILL, ALIGN_BOTTOM);
    if (_pv->_backHandler) {
        eext_object_event_callback_add(popup, EEXT_CALLBACK_BACK, _backCb, this);
    } else {
        eext_object_event_callback_add(popup, EEXT_CALLBACK_BACK, _deletePopupCb, nullptr);
    }
    if (_pv->_creationHook) {
        _pv->_creationHook(popup);
    }
    if (!_pv->_title.empty()) {
        _setText(popup, "title,text", _pv->_title.c_str());
    }
    _addContent(popup);
    for (int i = 0; i < _pv->_buttonNum; ++i) {
        _addButtonObject(popup, i);
    }
    evas_object_show(popup);
    return popup;
}

void WPopupController::onDestroy() {}

template <int index>
void WPopupController::_buttonClickedCb(void *data, Evas_Object *, void *) {
    static_cast<WPopupController *>(data)->_buttonClicked(index);
}

void WPopupController::_backCb(void *data, Evas_Object *, void *) {
    auto *popup = static_cast<WPopupController *>(data);
    // A copy, because the handler may delete the popup and the stored one with it.
    const std::function<void(bool *)> handler = popup->_pv->_backHandler;
    const WViewWeakPtr alive = popup->getWeakPtr();
    bool close = true;
    handler(&close);
    if (!alive.expired() && close) {
        popup->destroy();
    }
}

void WPopupController::_deletePopupCb(void *, Evas_Object *obj, void *) {
    evas_object_del(obj);
}

void WPopupController::_setText(Evas_Object *obj, const char *part, const char *text) {
    if (!_pv->_textDomain.empty()) {
        elm_object_domain_translatable_part_text_set(obj, part, _pv->_textDomain.c_str(), text);
    } else if (_pv->_translatable) {
        elm_object_domain_translatable_part_text_set(obj, part, nullptr, text);
    } else {
        elm_object_part_text_set(obj, part, text);
    }
}

void WPopupController::_addContent(Evas_Object *popup) {
    if (!_pv->_content.empty()) {
        _setText(popup, nullptr, _pv->_content.c_str());
    } else if (_pv->_contentView != nullptr) {
        const WViewWeakPtr content = _pv->_contentView->getWeakPtr();
        _pv->_contentView->create(popup, nullptr);
        if (!content.expired()) {
            elm_object_part_content_set(popup, nullptr, _pv->_contentView->getEvasObject());
        }
    } else if (_pv->_contentCreator) {
        elm_object_part_content_set(popup, nullptr, _pv->_contentCreator(popup));
    }
}

void WPopupController::_addButtonObject(Evas_Object *popup, int index) {
    static const Evas_Smart_Cb clickedCbs[MAX_BUTTONS] = {_buttonClickedCb<0>, _buttonClickedCb<1>,
                                                          _buttonClickedCb<2>};

    Evas_Object *button = elm_button_add(popup);
    elm_object_style_set(button, "popup");
    _setText(button, nullptr, _pv->_buttonTexts[index].c_str());
    char part[100] = {};
    std::snprintf(part, sizeof(part) - 1, "button%d", index + 1);
    elm_object_part_content_set(popup, part, button);
    evas_object_smart_callback_add(button, "clicked", clickedCbs[index], this);
    if (_pv->_buttonCreationHooks[index] != nullptr) {
        (*_pv->_buttonCreationHooks[index])(button);
    }
    evas_object_show(button);
}

void WPopupController::_buttonClicked(int index) {
    // A copy, because the handler may delete the popup and the stored one with it.
    const std::function<void(bool *)> handler = _pv->_buttonHandlers[index];
    if (!handler) {
        evas_object_del(getEvasObject());
        return;
    }
    const WViewWeakPtr alive = getWeakPtr();
    bool close = true;
    handler(&close);
    if (!alive.expired() && close) {
        evas_object_del(getEvasObject());
    }
}

}  // namespace app_assist
