#include "TslWindowCtrl.h"

#include <cstdint>
#include <cstdlib>

#include "TslLog.h"
#include "TslResourceCtrl.h"
#include "TslSignalMgr.h"

namespace {

constexpr char VIDEO_PART[] = "elm.swallow.video.display";
constexpr char BASE_LAYOUT_GROUP[] = "tsl.base.layout";
constexpr Elm_Win_Type DEFAULT_WINDOW_TYPE = static_cast<Elm_Win_Type>(1);

/// Adds the conformant, which lets the content reach below the indicator.
Evas_Object *addConformant(Evas_Object *pWindow) {
    Evas_Object *pConformant = elm_conformant_add(pWindow);
    if (pConformant == nullptr) {
        return nullptr;
    }
    evas_object_size_hint_weight_set(pConformant, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_conformant_set(pWindow, EINA_TRUE);
    elm_win_resize_object_add(pWindow, pConformant);
    elm_object_signal_emit(pConformant, "elm,state,indicator,overlap", "");
    evas_object_data_set(pConformant, "overlap", reinterpret_cast<void *>(1));
    evas_object_show(pConformant);
    return pConformant;
}

Evas_Object *addLayout(Evas_Object *pConformant, const char *szPath) {
    Evas_Object *pLayout = elm_layout_add(pConformant);
    elm_layout_file_set(pLayout, szPath, BASE_LAYOUT_GROUP);
    evas_object_size_hint_weight_set(pLayout, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_object_part_content_set(pConformant, nullptr, pLayout);
    evas_object_show(pLayout);
    return pLayout;
}

/// Adds the rectangle that clears the canvas, so that the video below the window shows.
void addVideoHole(Evas_Object *pWindow, Evas_Object *pLayout) {
    Evas_Object *pRect = evas_object_rectangle_add(evas_object_evas_get(pWindow));
    evas_object_color_set(pRect, 0, 0, 0, 0);
    evas_object_render_op_set(pRect, EVAS_RENDER_COPY);
    evas_object_size_hint_weight_set(pRect, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_object_part_content_set(pLayout, VIDEO_PART, pRect);
    evas_object_show(pRect);
    TslWarn("pRect : %x", static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(pRect)));
}

}  // namespace

TslWindowCtrl::TslWindowCtrl() : app_assist::WWindowController("", DEFAULT_WINDOW_TYPE) {}

TslWindowCtrl::TslWindowCtrl(const char *szName, Elm_Win_Type winType)
    : app_assist::WWindowController(szName, winType) {}

TslWindowCtrl::~TslWindowCtrl() {
    TslInfo("");
}

Evas_Object *TslWindowCtrl::onCreateWin() {
    TslInfo("");
    Evas_Object *pWindow = elm_win_add(nullptr, getName(), getWinType());
    if (pWindow == nullptr) {
        TslWarn("It is failed to create window handle!");
        return nullptr;
    }
    elm_win_title_set(pWindow, getName());
    elm_win_role_set(pWindow, "no-effect");
    elm_win_indicator_mode_set(pWindow, ELM_WIN_INDICATOR_SHOW);
    elm_win_indicator_opacity_set(pWindow, ELM_WIN_INDICATOR_TRANSPARENT);
    if (elm_win_wm_rotation_supported_get(pWindow)) {
        const int rotations[] = {0, 90, 180, 270};
        elm_win_wm_rotation_available_rotations_set(pWindow, rotations,
                                                    sizeof(rotations) / sizeof(rotations[0]));
    }
    evas_object_smart_callback_add(pWindow, "wm,rotation,changed", _rotateChangedCb, this);
    return pWindow;
}

Evas_Object *TslWindowCtrl::onCreateBaseLayout(Evas_Object *pWindow, Evas_Object **ppConformant) {
    TslInfo("");
    char *szPath = TslResourceCtrl::getInstance()->getResourcePath(TSL_EDJ_FILE);
    if (szPath == nullptr) {
        TslWarn("It is failed to get a edje file path from the TSL_EDJ_FILE.");
        return nullptr;
    }
    Evas_Object *pConformant = addConformant(pWindow);
    if (pConformant == nullptr) {
        TslError("It is failed to call elm_conformant_add(pWindow).");
        std::free(szPath);
        return nullptr;
    }
    Evas_Object *pLayout = addLayout(pConformant, szPath);
    addVideoHole(pWindow, pLayout);
    *ppConformant = pConformant;
    std::free(szPath);
    return pLayout;
}

void TslWindowCtrl::changeColorMode(WindowType nType) {
    TslInfo("WindowType nType : %d", static_cast<int>(nType));
    Evas_Object *pBaseLayout = getBaseLayoutEvasObject();
    if (pBaseLayout == nullptr) {
        TslWarn("It is failed to get pBaseLayout.");
        return;
    }
    Evas_Object *pRect = elm_object_part_content_get(pBaseLayout, VIDEO_PART);
    if (pRect == nullptr) {
        TslWarn("It is failed to get video_display part content.");
        return;
    }
    switch (nType) {
    case WINDOW_TYPE_VIDEO:
        evas_object_color_set(pRect, 0, 0, 0, 0);
        break;
    case WINDOW_TYPE_OPAQUE:
        evas_object_color_set(pRect, 0, 0, 0, 255);
        break;
    default:
        TslWarn("The value of the window type is not correct.");
        break;
    }
}

void TslWindowCtrl::_rotateChangedCb(void * /*pData*/, Evas_Object *pObj, void * /*pEventInfo*/) {
    TslInfo("");
    TslSignalType signalType;
    switch (elm_win_rotation_get(pObj)) {
    case 0:
        signalType = SIGNAL_WINDOW_ROTATION_0;
        break;
    case 90:
        signalType = SIGNAL_WINDOW_ROTATION_90;
        break;
    case 180:
        signalType = SIGNAL_WINDOW_ROTATION_180;
        break;
    case 270:
        signalType = SIGNAL_WINDOW_ROTATION_270;
        break;
    default:
        return;
    }
    TslSignalMgr::getInstance()->getSignal().emit(signalType, nullptr);
}
