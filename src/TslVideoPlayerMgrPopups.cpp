// What the user may learn of a failure.

#include <Elementary.h>
#include <libintl.h>

#include <cstdlib>
#include <string>

#include "TslLog.h"
#include "TslNaviframeController.h"
#include "TslResourceCtrl.h"
#include "TslVideoPlayerMgrInside.h"
#include "app-assist/WPopupController.h"

using app_assist::WPopupController;

namespace {

constexpr char TEXT_DOMAIN[] = "tessel";
constexpr char TEXT_PART[] = "elm.text";
constexpr double TOAST_SECONDS = 2.0;

constexpr char BUTTON_ICON_GROUP[] = "tw_ic_popup_btn_check.png";
constexpr char BUTTON_ICON_PART[] = "elm.swallow.content";

void setTranslatableText(Evas_Object *pObject, const std::string &strId) {
    elm_object_domain_translatable_part_text_set(pObject, TEXT_PART, textdomain(nullptr),
                                                 strId.c_str());
}

void setUpToast(Evas_Object *pPopup, const std::string &strId) {
    elm_object_style_set(pPopup, "toast/circle");
    setTranslatableText(pPopup, strId);
    elm_popup_timeout_set(pPopup, TOAST_SECONDS);
}

Evas_Object *createPopupContent(Evas_Object *pParent, const std::string &strId) {
    TslInfo("Lamda to set content to popup.");
    if (pParent == nullptr) {
        TslError("Parent is nullptr.");
        return nullptr;
    }

    Evas_Object *pLayout = elm_layout_add(pParent);
    elm_layout_theme_set(pLayout, "layout", "popup", "content/circle");
    setTranslatableText(pLayout, strId);
    return pLayout;
}

void setUpPopupButton(Evas_Object *pButton) {
    elm_object_style_set(pButton, "popup/circle");

    char *szEdjPath = TslResourceCtrl::getInstance()->getResourcePath(TSL_EDJ_FILE);
    if (szEdjPath == nullptr) {
        TslError("There is no an edj file of the video player.");
        return;
    }
    Evas_Object *pIcon = elm_image_add(pButton);
    elm_image_file_set(pIcon, szEdjPath, BUTTON_ICON_GROUP);
    free(szEdjPath);
    elm_object_part_content_set(pButton, BUTTON_ICON_PART, pIcon);
}

}  // namespace

bool TslVideoPlayerMgrInside::_canShowPopup(const char *szErrorId) {
    if (szErrorId == nullptr) {
        TslError("Error message is nullptr.");
        return false;
    }
    if (m_pNaviframeCtrl == nullptr) {
        TslError("NaviframeCtrl is nullptr.");
        return false;
    }
    return true;
}

void TslVideoPlayerMgrInside::_eventHandlingForErrorPopupToast(const char *szErrorId) {
    if (!_canShowPopup(szErrorId)) {
        return;
    }

    const std::string strId(szErrorId);
    auto *pPopup = new WPopupController();
    pPopup->setCreationHook([strId](Evas_Object *pObject) {
        setUpToast(pObject, strId);
        evas_object_smart_callback_add(pObject, "timeout", _errorToastTimeoutCb, nullptr);
    });
    pPopup->setTextDomain(TEXT_DOMAIN);
    pPopup->setBackHandler([](bool *pDestroy) {
        *pDestroy = true;
        _emitSignal(SIGNAL_APP_TERMINATE);
    });
    m_pNaviframeCtrl->attachPopup(pPopup);
}

void TslVideoPlayerMgrInside::_errorToastTimeoutCb(void * /*pData*/, Evas_Object * /*pObject*/,
                                                   void * /*pEventInfo*/) {
    _emitSignal(SIGNAL_APP_TERMINATE);
}

void TslVideoPlayerMgrInside::_eventHandlingForMissedPluginPopupToast(const char *szErrorId) {
    if (!_canShowPopup(szErrorId)) {
        return;
    }

    const std::string strId(szErrorId);
    auto *pPopup = new WPopupController();
    pPopup->setCreationHook([strId](Evas_Object *pObject) { setUpToast(pObject, strId); });
    pPopup->setTextDomain(TEXT_DOMAIN);
    pPopup->setBackHandler([](bool *pDestroy) { *pDestroy = true; });
    m_pNaviframeCtrl->attachPopup(pPopup);
}

// Button and back key only start the popup's way off the screen; the application ends when the
// popup is gone.
void TslVideoPlayerMgrInside::_eventHandlingForErrorPopupOneButton(const char *szErrorId) {
    if (!_canShowPopup(szErrorId)) {
        return;
    }

    const std::string strId(szErrorId);
    auto *pPopup = new WPopupController();
    pPopup->setCreationHook([](Evas_Object *pObject) {
        elm_object_style_set(pObject, "circle");
        evas_object_smart_callback_add(pObject, "dismissed", _oneButtonPopupDismissedCb, nullptr);
    });
    pPopup->setTextDomain(TEXT_DOMAIN);
    pPopup->setContent(
        [strId](Evas_Object *pParent) { return createPopupContent(pParent, strId); });
    pPopup->setBackHandler([pPopup](bool *pDestroy) {
        TslInfo("OneButtonPopup::onBack");
        *pDestroy = false;
        elm_popup_dismiss(pPopup->getEvasObject());
    });
    pPopup->addButton(
        "",
        [pPopup](bool *pDestroy) {
            TslInfo("OneButtonPopup::ButtonClicked");
            *pDestroy = false;
            elm_popup_dismiss(pPopup->getEvasObject());
        },
        setUpPopupButton);
    m_pNaviframeCtrl->attachPopup(pPopup);
}

void TslVideoPlayerMgrInside::_oneButtonPopupDismissedCb(void * /*pData*/, Evas_Object *pObject,
                                                         void * /*pEventInfo*/) {
    TslInfo("Dismissed callback of one button popup.");
    if (pObject != nullptr) {
        evas_object_del(pObject);
    }
    _emitSignal(SIGNAL_APP_TERMINATE);
}
