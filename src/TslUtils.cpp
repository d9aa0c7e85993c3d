#include "TslUtils.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "TslLog.h"
#include "TslResourceCtrl.h"

namespace {

/// The screen that the scaled lengths are given for, unturned.
constexpr int REFERENCE_WIDTH = 1280;
constexpr int REFERENCE_HEIGHT = 720;

Evas_Object *s_pGlobalWindow = nullptr;

/// Sets the image of a new icon or image object; deletes the object when that fails.
Evas_Object *setImageFile(Evas_Object *pImage, const char *szFile, const char *szGroup) {
    char *szPath = TslResourceCtrl::getInstance()->getResourcePath(szFile);
    if (szPath == nullptr) {
        TslError("Fail to get edj path.");
        evas_object_del(pImage);
        return nullptr;
    }
    if (!elm_image_file_set(pImage, szPath, szGroup)) {
        TslError("elm_image_file_set is failed.");
        evas_object_del(pImage);
        pImage = nullptr;
    }
    std::free(szPath);
    return pImage;
}

}  // namespace

Evas_Object *TslUtils::createIcon(Evas_Object *pParent, const char *szFile, const char *szGroup) {
    if (pParent == nullptr) {
        TslError("pParent is nullptr");
        return nullptr;
    }
    Evas_Object *pIcon = elm_icon_add(pParent);
    if (pIcon == nullptr) {
        TslError("Fail to add elm_icon object.");
        return nullptr;
    }
    return setImageFile(pIcon, szFile, szGroup);
}

Evas_Object *TslUtils::createImage(Evas_Object *pParent, const char *szFile, const char *szGroup) {
    if (pParent == nullptr) {
        TslError("pParent is nullptr");
        return nullptr;
    }
    Evas_Object *pImage = elm_image_add(pParent);
    if (pImage == nullptr) {
        TslError("Fail to add elm_image object.");
        return nullptr;
    }
    return setImageFile(pImage, szFile, szGroup);
}

Evas_Object *TslUtils::createLayout(Evas_Object *pParent, const char *szEdjFile,
                                    const char *szGroupName) {
    if (pParent == nullptr) {
        TslError("There is no pParent.");
        return nullptr;
    }
    if (szEdjFile == nullptr) {
        TslError("There is no szEdjFile.");
        return nullptr;
    }
    if (szGroupName == nullptr) {
        TslError("There is no szGroupName.");
        return nullptr;
    }
    Evas_Object *pLayout = elm_layout_add(pParent);
    char *szPath = TslResourceCtrl::getInstance()->getResourcePath(szEdjFile);
    if (szPath == nullptr) {
        TslError("It is failed to get the path of the resource file.");
        evas_object_del(pLayout);
        return nullptr;
    }
    if (!elm_layout_file_set(pLayout, szPath, szGroupName)) {
        TslError("It is failed to set layout of %s", szGroupName);
        evas_object_del(pLayout);
        std::free(szPath);
        return nullptr;
    }
    std::free(szPath);
    evas_object_size_hint_weight_set(pLayout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_show(pLayout);
    return pLayout;
}

Evas_Object *TslUtils::createGenlist(Evas_Object *pParent, const char *szStyle) {
    if (pParent == nullptr) {
        TslError("There is no Parent.");
        return nullptr;
    }
    Evas_Object *pGenlist = elm_genlist_add(pParent);
    if (szStyle != nullptr) {
        elm_object_style_set(pGenlist, szStyle);
    }
    elm_genlist_homogeneous_set(pGenlist, EINA_TRUE);
    elm_genlist_mode_set(pGenlist, ELM_LIST_COMPRESS);
    evas_object_size_hint_weight_set(pGenlist, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(pGenlist, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_show(pGenlist);
    return pGenlist;
}

Evas_Object *TslUtils::createSliderText(Evas_Object *pParent, const char *szStyle,
                                        const char *szText) {
    if (pParent == nullptr) {
        TslError("There is no Parent.");
        return nullptr;
    }
    Evas_Object *pLabel = elm_label_add(pParent);
    elm_object_style_set(pLabel, szStyle);
    elm_label_slide_mode_set(pLabel, ELM_LABEL_SLIDE_MODE_AUTO);
    elm_label_wrap_width_set(pLabel, 1);
    if (szText != nullptr) {
        elm_object_part_text_set(pLabel, nullptr, szText);
    }
    evas_object_show(pLabel);
    elm_label_slide_go(pLabel);
    return pLabel;
}

Elm_Genlist_Item_Class *TslUtils::createGenlistItemClass(const char *szStyle,
                                                         Elm_Gen_Item_Text_Get_Cb textGet,
                                                         Elm_Gen_Item_Content_Get_Cb contentGet) {
    Elm_Genlist_Item_Class *pItemClass = elm_genlist_item_class_new();
    if (pItemClass == nullptr) {
        TslWarn("It is failed to add new Elm_Genlist_Item_Class.");
        return nullptr;
    }
    pItemClass->item_style = szStyle;
    pItemClass->func.text_get = textGet;
    pItemClass->func.content_get = contentGet;
    pItemClass->func.state_get = nullptr;
    pItemClass->func.del = nullptr;
    pItemClass->decorate_item_style = nullptr;
    pItemClass->decorate_all_item_style = nullptr;
    return pItemClass;
}

void TslUtils::setGlobalWindow(Evas_Object *pWindow) {
    s_pGlobalWindow = pWindow;
}

Evas_Object *TslUtils::getGlobalWindow() {
    return s_pGlobalWindow;
}

int TslUtils::getWindowWidth() {
    if (s_pGlobalWindow == nullptr) {
        TslError("The global window object is nullptr.");
        return 0;
    }
    int nWidth = 0;
    int nHeight = 0;
    elm_win_screen_size_get(s_pGlobalWindow, nullptr, nullptr, &nWidth, &nHeight);
    return isLandscape() ? nHeight : nWidth;
}

int TslUtils::getWindowHeight() {
    if (s_pGlobalWindow == nullptr) {
        TslError("The global window object is nullptr.");
        return 0;
    }
    int nWidth = 0;
    int nHeight = 0;
    elm_win_screen_size_get(s_pGlobalWindow, nullptr, nullptr, &nWidth, &nHeight);
    return isLandscape() ? nWidth : nHeight;
}

int TslUtils::getScaledWidth(int nLength) {
    const int nReference = isLandscape() ? REFERENCE_HEIGHT : REFERENCE_WIDTH;
    return getWindowWidth() / (nReference / nLength);
}

int TslUtils::getScaledHeight(int nLength) {
    const int nReference = isLandscape() ? REFERENCE_WIDTH : REFERENCE_HEIGHT;
    return getWindowHeight() / (nReference / nLength);
}

bool TslUtils::isLandscape() {
    const int nRotation = elm_win_rotation_get(s_pGlobalWindow);
    return nRotation == 90 || nRotation == 270;
}
