#include "TslButton.h"

#include <uxt.h>

#include <cstdlib>
#include <cstring>

#include "TslLog.h"
#include "TslResourceCtrl.h"

namespace {

constexpr char DEFAULT_TEXT_DOMAIN[] = "tessel";
constexpr char EVENT_CLICKED[] = "clicked";
constexpr char EVENT_PRESSED[] = "pressed";
constexpr char EVENT_UNPRESSED[] = "unpressed";

char *copyText(const char *szText) {
    return szText != nullptr ? strdup(szText) : nullptr;
}

}  // namespace

class TslButtonInside {
public:
    TslButtonInside(const char *szStyle, const char *szText, const char *szTextDomain,
                    Evas_Smart_Cb clickedCb, Evas_Smart_Cb pressedCb, Evas_Smart_Cb unpressedCb);
    ~TslButtonInside();
    TslButtonInside(const TslButtonInside &) = delete;
    TslButtonInside &operator=(const TslButtonInside &) = delete;

    void _addCallbacks(void *pData);
    void _replaceCallback(const char *szEvent, Evas_Smart_Cb &storedCb, Evas_Smart_Cb newCb,
                          void *pData);

    const char *m_pStyle;
    char *m_pText;
    char *m_pTextDomain;
    Evas_Object *m_pIcon;
    Evas_Object *m_pButton;
    Evas_Smart_Cb m_pClickedCb;
    Evas_Smart_Cb m_pPressedCb;
    Evas_Smart_Cb m_pUnpressedCb;

private:
    void _removeCallback(const char *szEvent, Evas_Smart_Cb &storedCb);
};

TslButtonInside::TslButtonInside(const char *szStyle, const char *szText, const char *szTextDomain,
                                 Evas_Smart_Cb clickedCb, Evas_Smart_Cb pressedCb,
                                 Evas_Smart_Cb unpressedCb)
    : m_pStyle(szStyle),
      m_pText(copyText(szText)),
      m_pTextDomain(copyText(szTextDomain)),
      m_pIcon(nullptr),
      m_pButton(nullptr),
      m_pClickedCb(clickedCb),
      m_pPressedCb(pressedCb),
      m_pUnpressedCb(unpressedCb) {}

TslButtonInside::~TslButtonInside() {
    m_pStyle = nullptr;
    std::free(m_pText);
    m_pText = nullptr;
    std::free(m_pTextDomain);
    m_pTextDomain = nullptr;
    _removeCallback(EVENT_CLICKED, m_pClickedCb);
    _removeCallback(EVENT_PRESSED, m_pPressedCb);
    _removeCallback(EVENT_UNPRESSED, m_pUnpressedCb);
    evas_object_del(m_pIcon);
    m_pIcon = nullptr;
    evas_object_del(m_pButton);
    m_pButton = nullptr;
}

void TslButtonInside::_addCallbacks(void *pData) {
    evas_object_smart_callback_add(m_pButton, EVENT_CLICKED, m_pClickedCb, pData);
    evas_object_smart_callback_add(m_pButton, EVENT_PRESSED, m_pPressedCb, pData);
    evas_object_smart_callback_add(m_pButton, EVENT_UNPRESSED, m_pUnpressedCb, pData);
}

void TslButtonInside::_removeCallback(const char *szEvent, Evas_Smart_Cb &storedCb) {
    if (storedCb != nullptr) {
        evas_object_smart_callback_del(m_pButton, szEvent, storedCb);
        storedCb = nullptr;
    }
}

void TslButtonInside::_replaceCallback(const char *szEvent, Evas_Smart_Cb &storedCb,
                                       Evas_Smart_Cb newCb, void *pData) {
    if (newCb != nullptr) {
        evas_object_smart_callback_add(m_pButton, szEvent, newCb, pData);
        storedCb = newCb;
    }
}

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_INSIDE(failure)         \
    if (m_pButtonInside == nullptr) {          \
        TslError("Button Handle is nullptr."); \
        return failure;                        \
    }

TslButton::TslButton(const char *szStyle, const char *szText, const char *szTextDomain,
                     Evas_Smart_Cb clickedCb, Evas_Smart_Cb pressedCb, Evas_Smart_Cb unpressedCb)
    : m_pButtonInside(
          new TslButtonInside(szStyle, szText, szTextDomain, clickedCb, pressedCb, unpressedCb)) {}

TslButton::~TslButton() {
    TslInfo("");
}

Evas_Object *TslButton::onCreateView(Evas_Object *pParent, void *viewParam) {
    TslInfo("");
    if (pParent == nullptr) {
        TslError("Parent is nullptr");
        return nullptr;
    }
    RETURN_WITHOUT_INSIDE(nullptr);
    Evas_Object *pButton = uxt_button_add(pParent, "default");
    if (pButton == nullptr) {
        TslError("Button is nullptr");
        return nullptr;
    }
    if (m_pButtonInside->m_pStyle != nullptr) {
        elm_object_style_set(pButton, m_pButtonInside->m_pStyle);
    }
    if (m_pButtonInside->m_pText != nullptr) {
        elm_object_domain_translatable_part_text_set(
            pButton, nullptr, m_pButtonInside->m_pTextDomain, m_pButtonInside->m_pText);
    }
    evas_object_size_hint_align_set(pButton, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_size_hint_weight_set(pButton, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    m_pButtonInside->m_pButton = pButton;
    m_pButtonInside->_addCallbacks(viewParam);
    evas_object_show(pButton);
    return pButton;
}

void TslButton::onDestroy() {
    TslInfo("");
    delete m_pButtonInside;
    m_pButtonInside = nullptr;
}

void TslButton::setText(const char *szText) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    std::free(m_pButtonInside->m_pText);
    m_pButtonInside->m_pText = copyText(szText);
    if (m_pButtonInside->m_pText == nullptr) {
        return;
    }
    const char *szDomain = m_pButtonInside->m_pTextDomain != nullptr
                               ? m_pButtonInside->m_pTextDomain
                               : DEFAULT_TEXT_DOMAIN;
    elm_object_domain_translatable_part_text_set(m_pButtonInside->m_pButton, nullptr, szDomain,
                                                 m_pButtonInside->m_pText);
}

void TslButton::setStyle(const char *szStyle) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (m_pButtonInside->m_pButton == nullptr) {
        TslError("Button Object is not existed.");
        return;
    }
    if (szStyle != nullptr) {
        elm_object_style_set(m_pButtonInside->m_pButton, szStyle);
    }
}

void TslButton::setDisabled(bool bDisabled) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (m_pButtonInside->m_pButton == nullptr) {
        TslError("Button Object is nullptr.");
        return;
    }
    elm_object_disabled_set(m_pButtonInside->m_pButton, bDisabled ? EINA_TRUE : EINA_FALSE);
}

void TslButton::setIconColor(const char *szColor) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (m_pButtonInside->m_pIcon == nullptr) {
        TslError("Icon is not existed. Please set icon first.");
        return;
    }
    if (uxt_theme_object_set_color(m_pButtonInside->m_pIcon, szColor) != 0) {
        TslError("uxt_theme_object_set_color() failed.");
    }
}

void TslButton::setIcon(Evas_Object *pIcon, const char *szPart) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    unsetIcon(szPart);
    evas_object_size_hint_weight_set(pIcon, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(pIcon, EVAS_HINT_FILL, EVAS_HINT_FILL);
    elm_object_part_content_set(m_pButtonInside->m_pButton, szPart, pIcon);
    evas_object_show(pIcon);
    m_pButtonInside->m_pIcon = pIcon;
}

void TslButton::unsetIcon(const char *szPart) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (m_pButtonInside->m_pButton == nullptr) {
        TslError("Button object is nullptr.");
        return;
    }
    evas_object_del(elm_object_part_content_unset(m_pButtonInside->m_pButton, szPart));
    m_pButtonInside->m_pIcon = nullptr;
}

void TslButton::updateIconImage(const char *szFile, const char *szGroup, const char *szColor,
                                const char *szPart) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (m_pButtonInside->m_pIcon == nullptr) {
        TslWarn("There is no existed icon object. You need to create icon first.");
        return;
    }
    char *szPath = TslResourceCtrl::getInstance()->getResourcePath(szFile);
    if (szPath == nullptr) {
        TslError("It is failed to get edj path.");
        return;
    }
    Evas_Object *pImage = elm_object_part_content_get(m_pButtonInside->m_pButton, szPart);
    if (pImage == nullptr) {
        std::free(szPath);
        return;
    }
    if (!elm_image_file_set(pImage, szPath, szGroup)) {
        TslError("elm_image_file_set() is fail");
        std::free(szPath);
        return;
    }
    if (szColor != nullptr && uxt_theme_object_set_color(pImage, szColor) != 0) {
        TslError("uxt_theme_object_set_color failed.");
    }
    std::free(szPath);
}

void TslButton::setCallback(Evas_Smart_Cb clickedCb, Evas_Smart_Cb pressedCb,
                            Evas_Smart_Cb unpressedCb, void *pData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    Evas_Object *pButton = m_pButtonInside->m_pButton;
    evas_object_smart_callback_del(pButton, EVENT_CLICKED, m_pButtonInside->m_pClickedCb);
    evas_object_smart_callback_del(pButton, EVENT_PRESSED, m_pButtonInside->m_pPressedCb);
    evas_object_smart_callback_del(pButton, EVENT_UNPRESSED, m_pButtonInside->m_pUnpressedCb);
    m_pButtonInside->_replaceCallback(EVENT_CLICKED, m_pButtonInside->m_pClickedCb, clickedCb,
                                      pData);
    m_pButtonInside->_replaceCallback(EVENT_PRESSED, m_pButtonInside->m_pPressedCb, pressedCb,
                                      pData);
    m_pButtonInside->_replaceCallback(EVENT_UNPRESSED, m_pButtonInside->m_pUnpressedCb, unpressedCb,
                                      pData);
}
