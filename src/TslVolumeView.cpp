#include "TslVolumeView.h"

#include <Elementary.h>
#include <efl_extension.h>
#include <libintl.h>

#include <algorithm>
#include <boost/format.hpp>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "TslButton.h"
#include "TslLog.h"
#include "TslResourceCtrl.h"
#include "TslScreenReaderCtrl.h"
#include "TslSignalMgr.h"
#include "TslUtils.h"
#include "app-assist/WTimer.h"

namespace {

constexpr char TEXT_DOMAIN[] = "tessel";

constexpr char BASE_GROUP[] = "tsl.volume.view.base.layout";
constexpr char CONTENT_PART[] = "tsl.volume.view.base.layout.swallow.content";
constexpr char PANEL_GROUP[] = "mp_volume_panel";
constexpr char MUTE_BUTTON_PART[] = "swallow,volume,btn";
constexpr char MINUS_BUTTON_PART[] = "swallow.button.minus";
constexpr char PLUS_BUTTON_PART[] = "swallow.button.plus";
constexpr char TITLE_TEXT_PART[] = "elm.text";
constexpr char LEVEL_TEXT_PART[] = "elm.text.level";
constexpr char RIM_PART[] = "event,bg";

constexpr char STYLE_MUTE[] = "video/more_volume";
constexpr char STYLE_PLUS[] = "video/volume/event_expanded_right";
constexpr char STYLE_MINUS[] = "video/volume/event_expanded_left";
constexpr char ICON_PLUS[] = "b_slider_icon_plus.png";
constexpr char ICON_MINUS[] = "b_slider_icon_minus.png";
constexpr char SIGNAL_ICON_ON[] = "volume,on";
constexpr char SIGNAL_ICON_MUTE[] = "volume,mute";
constexpr char SOURCE_ICON[] = "img";

constexpr char TEXT_VOLUME[] = "IDS_MUSIC_OPT_VOLUME";
constexpr char TEXT_MUTE[] = "WDS_ACCS_TBOPT_MUTE";
constexpr char TEXT_UNMUTE[] = "WDS_ACCS_TBOPT_UNMUTE";
constexpr char TEXT_INCREASE[] = "IDS_ACCS_OPT_INCREASE_VOLUME";
constexpr char TEXT_DECREASE[] = "IDS_ACCS_OPT_DECREASE_VOLUME";
constexpr char TEXT_SCREEN[] = "WDS_ST_MBODY_VOLUME_ABB";
constexpr char TEXT_TURN_BEZEL[] = "WDS_ACCS_TBBODY_TURN_BEZEL_TO_ADJUST_VOLUME";

constexpr char COLOR_BAR_WARNING[] = "MUSIC_AO0292";
constexpr char COLOR_GROUND_WARNING[] = "MUSIC_AO0293";
constexpr char COLOR_GROUND_NORMAL[] = "B065L3";
constexpr char ITEM_GROUND[] = "bg";

/// As the log calls them.
constexpr char PLUS_BUTTON_NAME[] = "plus button";
constexpr char MINUS_BUTTON_NAME[] = "minus button";

constexpr int READ_NAME = 1;
constexpr int READ_NAME_AND_ROLE = 3;

constexpr int NO_VOLUME = -1;
constexpr int FIRST_VOLUME = 5;
constexpr int VOLUME_AFTER_UNKNOWN_MUTE = 1;

constexpr double DEGREES_PER_LEVEL = 24.0;
constexpr double ANIMATION_FRACTION = 0.2;
constexpr double ANIMATION_END_DEGREES = 1.0;
constexpr double CLOSE_SECONDS = 3.0;
constexpr double FIRST_SHOW_SECONDS = 0.1;

constexpr int ROTARY_PRIORITY = -100;
constexpr double DEFAULT_RANGE_MIN = 0.0;
constexpr double DEFAULT_RANGE_MAX = 15.0;
/// Of the time between two detents, in milliseconds.
constexpr unsigned int PAUSE_GAP = 500;
constexpr unsigned int SPIN_GAP = 10;
constexpr int SPIN_STEP_MIN = 2;

constexpr int RIM_DEPTH = 100;
constexpr double RADIANS_TO_DEGREES = 57.295780490442965;
constexpr double FULL_TURN = 360.0;

void emitSignal(TslSignalType signalType, std::intptr_t nPayload) {
    TslSignalMgr::getInstance()->getSignal().emit(signalType, reinterpret_cast<void *>(nPayload));
}

/// The direction is taken as a number: one that the enumeration doesn't have may come as well.
int directionNumber(const Eext_Rotary_Event_Info &info) {
    int nDirection = 0;
    static_assert(sizeof(nDirection) == sizeof(info.direction), "the direction is an int");
    std::memcpy(&nDirection, &info.direction, sizeof(nDirection));
    return nDirection;
}

double distanceOf(double dX, double dY) {
    return std::sqrt(dX * dX + dY * dY);
}

/// Degrees from 12 o'clock, clockwise, at which a point lies as seen from the centre.
double angleOfPoint(int nCentreX, int nCentreY, int nX, int nY) {
    // The law of cosines on the centre, the point and a point straight above the centre.
    const double dToTop = 1.0;
    const double dToPoint = distanceOf(nCentreX - nX, nCentreY - nY);
    const double dTopToPoint = distanceOf(nCentreX - nX, nCentreY - 1 - nY);
    const double dCosine = (dToTop * dToTop + dToPoint * dToPoint - dTopToPoint * dTopToPoint) /
                           (2.0 * dToTop * dToPoint);
    const double dAngle = std::acos(dCosine) * RADIANS_TO_DEGREES;
    return nCentreX > nX ? FULL_TURN - dAngle : dAngle;
}

void deleteObject(Evas_Object *&pObject) {
    evas_object_del(pObject);
    pObject = nullptr;
}

}  // namespace

class TslVolumeViewInside {
public:
    TslVolumeViewInside();
    ~TslVolumeViewInside();
    TslVolumeViewInside(const TslVolumeViewInside &) = delete;
    TslVolumeViewInside &operator=(const TslVolumeViewInside &) = delete;

    Evas_Object *_createView(Evas_Object *pParent);
    void _pushed(Elm_Object_Item *pNaviItem);
    void _popped();

    void _setVolume(int nCurrentVolume);
    void _setSafetyVolume(int nVolume);
    void _readCurrentVolumeLevel();

    int m_nMaxVolume;
    int m_nSafetyVolume;
    int m_nCurrentVolume;
    bool m_bWarningColor;

private:
    TslButton *_createButton(Evas_Object *pParent, const char *szStyle);
    TslButton *_createControl(Evas_Object *pParent, const char *szStyle, Evas_Smart_Cb clickedCb);
    Evas_Object *_createMuteButton(Evas_Object *pParent);
    Evas_Object *_createPlusButton(Evas_Object *pParent);
    Evas_Object *_createMinusButton(Evas_Object *pParent);
    void _setIcon(TslButton *pButton, Evas_Object *pParent, const char *szGroup);
    void _destroyButton(TslButton *&pButton);

    void _createSurfaceOfProgressBar();
    void _addRimCallbacks();
    void _setAccessibleCallbackToTextObjects();
    void _setAccessibleNameOfMuteButton(const char *szName);
    void _setVolumeLevelText(int nVolume);

    void _setProgressBarColor();
    void _setWarningColors();
    void _setNormalColors();
    void _setGroundColor(const char *szColorCode);
    void _setIconOfMuteButton();
    void _updateButtons();
    static void _setDisabled(const TslButton *pButton, const char *szName, Eina_Bool bDisabled);
    void _enablePlusButton();
    void _disablePlusButton();
    void _enableMinusButton();
    void _disableMinusButton();

    void _createAnimator();
    bool _animate();
    void _createVolumeViewUiTimer();
    void _close();

    void _setRotaryEvent();
    void _unsetRotaryEvent();
    int _weightedStep(unsigned int nTimeStamp, double dMin, double dMax);

    TslVolumeView *_findView() const;
    /// What every handler tests first, with its log line.
    static TslVolumeViewInside *_insideOf(void *pUserData, const Evas_Object *pObj);

    static void _muteButtonClickedCb(void *pUserData, Evas_Object *pObj, void *pEventInfo);
    static void _plusVolumeButtonClickedCb(void *pUserData, Evas_Object *pObj, void *pEventInfo);
    static void _minusVolumeButtonClickedCb(void *pUserData, Evas_Object *pObj, void *pEventInfo);
    static Eina_Bool _rotaryEventCbForVolume(void *pUserData, Evas_Object *pObj,
                                             Eext_Rotary_Event_Info *pInfo);
    static void _volumeBgMouseDownCb(void *pUserData, Evas *pEvas, Evas_Object *pObj,
                                     void *pEventInfo);
    static void _volumeBgMouseUpCb(void *pUserData, Evas *pEvas, Evas_Object *pObj,
                                   void *pEventInfo);
    static char *_volumeLevelAccessibleNameCb(void *pUserData,
                                              Elm_Interface_Atspi_Accessible *pObj);

    int m_nVolumeBeforeMute;
    TslButton *m_pMuteButton;
    TslButton *m_pPlusButton;
    TslButton *m_pMinusButton;
    Evas_Object *m_pProgressbar;
    Evas_Object *m_pVolumeViewLayout;
    Evas_Object *m_pBaseLayout;
    int m_nBarRed;
    int m_nBarGreen;
    int m_nBarBlue;
    int m_nBarAlpha;
    int m_nMouseDownX;
    int m_nMouseDownY;
    unsigned int m_nLastRotaryTime;
    double m_dStartAngle;
    double m_dTargetAngle;
    double m_nDiff;
    app_assist::WTimerWeakPtr m_pAnimator;
    app_assist::WTimerWeakPtr m_pUiTimer;
    TslScreenReaderCtrl *m_pScreenReaderCtrl;
};

TslVolumeViewInside::TslVolumeViewInside()
    : m_nMaxVolume(0),
      m_nSafetyVolume(0),
      m_nCurrentVolume(FIRST_VOLUME),
      m_bWarningColor(true),
      m_nVolumeBeforeMute(0),
      m_pMuteButton(nullptr),
      m_pPlusButton(nullptr),
      m_pMinusButton(nullptr),
      m_pProgressbar(nullptr),
      m_pVolumeViewLayout(nullptr),
      m_pBaseLayout(nullptr),
      m_nBarRed(0),
      m_nBarGreen(0),
      m_nBarBlue(0),
      m_nBarAlpha(0),
      m_nMouseDownX(0),
      m_nMouseDownY(0),
      m_nLastRotaryTime(0),
      m_dStartAngle(0.0),
      m_dTargetAngle(0.0),
      m_nDiff(0.0),
      m_pScreenReaderCtrl(new TslScreenReaderCtrl()) {}

TslVolumeViewInside::~TslVolumeViewInside() {
    // A screen that is destroyed isn't popped, and its timers would call into what is gone.
    app_assist::WTimer::destroy(m_pAnimator);
    app_assist::WTimer::destroy(m_pUiTimer);
    delete m_pScreenReaderCtrl;
    m_pScreenReaderCtrl = nullptr;
    deleteObject(m_pProgressbar);
    deleteObject(m_pVolumeViewLayout);
    deleteObject(m_pBaseLayout);
}

Evas_Object *TslVolumeViewInside::_createView(Evas_Object *pParent) {
    m_pBaseLayout = TslUtils::createLayout(pParent, TSL_EDJ_FILE, BASE_GROUP);
    m_pVolumeViewLayout = TslUtils::createLayout(pParent, TSL_EDJ_FILE, PANEL_GROUP);
    elm_object_part_content_set(m_pBaseLayout, CONTENT_PART, m_pVolumeViewLayout);

    elm_object_part_content_set(m_pVolumeViewLayout, MUTE_BUTTON_PART,
                                _createMuteButton(m_pVolumeViewLayout));
    elm_object_part_content_set(m_pVolumeViewLayout, MINUS_BUTTON_PART,
                                _createMinusButton(m_pVolumeViewLayout));
    elm_object_part_content_set(m_pVolumeViewLayout, PLUS_BUTTON_PART,
                                _createPlusButton(m_pVolumeViewLayout));
    _setVolumeLevelText(m_nCurrentVolume);
    _createSurfaceOfProgressBar();
    _setProgressBarColor();
    _setRotaryEvent();
    _createVolumeViewUiTimer();
    _setAccessibleCallbackToTextObjects();
    elm_object_signal_emit(m_pBaseLayout, "layout,swallow,hide", CONTENT_PART);
    return m_pBaseLayout;
}

void TslVolumeViewInside::_pushed(Elm_Object_Item *pNaviItem) {
    elm_naviframe_item_title_enabled_set(pNaviItem, EINA_FALSE, EINA_FALSE);
    elm_naviframe_item_style_set(pNaviItem, "basic/transparent");
    const std::string strName = std::string(dgettext(TEXT_DOMAIN, TEXT_SCREEN)) + "\n" +
                                dgettext(TEXT_DOMAIN, TEXT_TURN_BEZEL);
    m_pScreenReaderCtrl->setAccessibleNaviframe(pNaviItem, strName, "");
    // The screen may be gone by then, and the timer with it.
    app_assist::WTimer::addTimer(
        FIRST_SHOW_SECONDS,
        [](void *pUserData) -> bool {
            const auto *pInside = static_cast<TslVolumeViewInside *>(pUserData);
            elm_object_signal_emit(pInside->m_pBaseLayout, "layout,swallow,show", CONTENT_PART);
            return false;
        },
        this, m_pBaseLayout);
}

void TslVolumeViewInside::_popped() {
    _unsetRotaryEvent();
    app_assist::WTimer::destroy(m_pAnimator);
    app_assist::WTimer::destroy(m_pUiTimer);
    _destroyButton(m_pMuteButton);
    _destroyButton(m_pPlusButton);
    _destroyButton(m_pMinusButton);
}

TslButton *TslVolumeViewInside::_createButton(Evas_Object *pParent, const char *szStyle) {
    if (pParent == nullptr) {
        TslInfo("There is no pParent.");
        return nullptr;
    }
    if (szStyle == nullptr) {
        TslInfo("There is no szStyle.");
        return nullptr;
    }
    auto *pButton = new TslButton(szStyle, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (!pButton->create(pParent, nullptr)) {
        TslError("It is failed to create Button.");
        pButton->destroy();
        return nullptr;
    }
    return pButton;
}

TslButton *TslVolumeViewInside::_createControl(Evas_Object *pParent, const char *szStyle,
                                               Evas_Smart_Cb clickedCb) {
    TslButton *pButton = _createButton(pParent, szStyle);
    if (pButton == nullptr) {
        // The same words for all three.
        TslError("It is failed to create mute button.");
        return nullptr;
    }
    pButton->setCallback(clickedCb, nullptr, nullptr, this);
    return pButton;
}

Evas_Object *TslVolumeViewInside::_createMuteButton(Evas_Object *pParent) {
    m_pMuteButton = _createControl(pParent, STYLE_MUTE, _muteButtonClickedCb);
    if (m_pMuteButton == nullptr) {
        return nullptr;
    }
    const bool bMuted = m_nCurrentVolume == 0;
    elm_object_signal_emit(m_pMuteButton->getEvasObject(),
                           bMuted ? SIGNAL_ICON_MUTE : SIGNAL_ICON_ON, SOURCE_ICON);
    _setAccessibleNameOfMuteButton(bMuted ? TEXT_UNMUTE : TEXT_MUTE);
    return m_pMuteButton->getEvasObject();
}

Evas_Object *TslVolumeViewInside::_createPlusButton(Evas_Object *pParent) {
    m_pPlusButton = _createControl(pParent, STYLE_PLUS, _plusVolumeButtonClickedCb);
    if (m_pPlusButton == nullptr) {
        return nullptr;
    }
    _setIcon(m_pPlusButton, pParent, ICON_PLUS);
    m_pScreenReaderCtrl->setAccessibleContents(m_pPlusButton->getEvasObject(), TEXT_INCREASE, "",
                                               AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON,
                                               READ_NAME_AND_ROLE);
    if (m_nCurrentVolume >= m_nMaxVolume) {
        elm_object_disabled_set(m_pPlusButton->getEvasObject(), EINA_TRUE);
    }
    return m_pPlusButton->getEvasObject();
}

Evas_Object *TslVolumeViewInside::_createMinusButton(Evas_Object *pParent) {
    m_pMinusButton = _createControl(pParent, STYLE_MINUS, _minusVolumeButtonClickedCb);
    if (m_pMinusButton == nullptr) {
        return nullptr;
    }
    _setIcon(m_pMinusButton, pParent, ICON_MINUS);
    m_pScreenReaderCtrl->setAccessibleContents(m_pMinusButton->getEvasObject(), TEXT_DECREASE, "",
                                               AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON,
                                               READ_NAME_AND_ROLE);
    if (m_nCurrentVolume < 1) {
        elm_object_disabled_set(m_pMinusButton->getEvasObject(), EINA_TRUE);
    }
    return m_pMinusButton->getEvasObject();
}

void TslVolumeViewInside::_setIcon(TslButton *pButton, Evas_Object *pParent, const char *szGroup) {
    Evas_Object *pIcon = TslUtils::createImage(pParent, TSL_EDJ_FILE, szGroup);
    if (pIcon != nullptr) {
        pButton->setIcon(pIcon, nullptr);
    }
}

void TslVolumeViewInside::_destroyButton(TslButton *&pButton) {
    if (pButton != nullptr) {
        pButton->destroy();
        pButton = nullptr;
    }
}

void TslVolumeViewInside::_createSurfaceOfProgressBar() {
    Eext_Circle_Surface *pSurface = eext_circle_surface_layout_add(TslUtils::getGlobalWindow());
    m_pProgressbar = eext_circle_object_progressbar_add(m_pVolumeViewLayout, pSurface);
    TslInfo("m_nMaxVolume : %d", m_nMaxVolume);
    TslInfo("m_nCurrentVolume : %d", m_nCurrentVolume);
    eext_circle_object_value_min_max_set(m_pProgressbar, 0.0, static_cast<double>(m_nMaxVolume));
    eext_circle_object_value_set(m_pProgressbar, static_cast<double>(m_nCurrentVolume));
    eext_circle_object_color_get(m_pProgressbar, &m_nBarRed, &m_nBarGreen, &m_nBarBlue,
                                 &m_nBarAlpha);
    _addRimCallbacks();
    m_pScreenReaderCtrl->disableHighlight(m_pProgressbar);
}

void TslVolumeViewInside::_addRimCallbacks() {
    Evas_Object *pEdje = elm_layout_edje_get(m_pVolumeViewLayout);
    if (pEdje == nullptr) {
        TslError("It is failed to get pEdjeOfLayout.");
    }
    evas_object_smart_member_add(m_pProgressbar, pEdje);
    auto *pDragArea = const_cast<Evas_Object *>(edje_object_part_object_get(pEdje, RIM_PART));
    if (pDragArea == nullptr) {
        TslError("pDragArea is not existed.");
    }
    evas_object_event_callback_add(pDragArea, EVAS_CALLBACK_MOUSE_UP, _volumeBgMouseUpCb, this);
    evas_object_event_callback_add(pDragArea, EVAS_CALLBACK_MOUSE_DOWN, _volumeBgMouseDownCb, this);
}

void TslVolumeViewInside::_setAccessibleCallbackToTextObjects() {
    if (m_pVolumeViewLayout == nullptr) {
        TslError("Volume view layout is nullptr.");
        return;
    }
    if (m_pScreenReaderCtrl == nullptr) {
        TslError("Screen reader ctrl object is nullptr.");
        return;
    }
    Evas_Object *pEdje = elm_layout_edje_get(m_pVolumeViewLayout);
    auto *pTitle = const_cast<Evas_Object *>(edje_object_part_object_get(pEdje, TITLE_TEXT_PART));
    m_pScreenReaderCtrl->setAccessibleContents(pTitle, m_pVolumeViewLayout, TEXT_VOLUME, "",
                                               AccessibleRoleType::ELM_ATSPI_ROLE_INVALID,
                                               READ_NAME);
    auto *pLevel = const_cast<Evas_Object *>(edje_object_part_object_get(pEdje, LEVEL_TEXT_PART));
    m_pScreenReaderCtrl->setCallbackOfAccessibleName(pLevel, m_pVolumeViewLayout,
                                                     _volumeLevelAccessibleNameCb, this);
}

void TslVolumeViewInside::_setAccessibleNameOfMuteButton(const char *szName) {
    m_pScreenReaderCtrl->setAccessibleContents(m_pMuteButton->getEvasObject(), szName, "",
                                               AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON,
                                               READ_NAME_AND_ROLE);
}

void TslVolumeViewInside::_setVolumeLevelText(int nVolume) {
    elm_object_domain_translatable_part_text_set(m_pVolumeViewLayout, TITLE_TEXT_PART,
                                                 textdomain(nullptr), TEXT_VOLUME);
    char *szLevel = TslUtils::getTextFori18n(nVolume);
    elm_object_part_text_set(m_pVolumeViewLayout, LEVEL_TEXT_PART, szLevel);
    std::free(szLevel);
}

void TslVolumeViewInside::_setVolume(int nCurrentVolume) {
    TslInfo("nCurrentVolume : %d", nCurrentVolume);
    if (nCurrentVolume < 0 || nCurrentVolume > m_nMaxVolume) {
        TslError("The volume is not correct. It needs to check the value is right or not.");
        return;
    }
    m_nCurrentVolume = nCurrentVolume;
    _setVolumeLevelText(nCurrentVolume);
    _setProgressBarColor();
    _setIconOfMuteButton();
    _updateButtons();

    if (m_pProgressbar == nullptr) {
        return;
    }
    m_dStartAngle = eext_circle_object_angle_get(m_pProgressbar);
    m_dTargetAngle = nCurrentVolume * DEGREES_PER_LEVEL;
    m_nDiff = m_dTargetAngle - m_dStartAngle;
    if (m_nDiff == 0.0) {
        TslInfo("pVolumeViewInside->m_nDiff == 0.0 ----> return;");
        return;
    }
    _createAnimator();
    _createVolumeViewUiTimer();
}

void TslVolumeViewInside::_setSafetyVolume(int nVolume) {
    TslInfo("nCurrentVolume : %d", nVolume);
    // One above the scale means that the bar never warns.
    if (nVolume < 0 || nVolume > m_nMaxVolume + 1) {
        TslError("The volume is not correct. It needs to check the value is right or not.");
        return;
    }
    m_nSafetyVolume = nVolume;
}

void TslVolumeViewInside::_setProgressBarColor() {
    TslInfo("m_nSafetyVolume : %d", m_nSafetyVolume);
    const bool bAbove = m_nCurrentVolume > m_nSafetyVolume;
    if (bAbove == m_bWarningColor) {
        TslWarn("Nothing choose, set color of progressbar.");
    } else if (bAbove) {
        _setWarningColors();
    } else {
        _setNormalColors();
    }
}

void TslVolumeViewInside::_setWarningColors() {
    TslWarn("set red color");
    double dRed = 0.0;
    double dGreen = 0.0;
    double dBlue = 0.0;
    double dAlpha = 0.0;
    if (TslUtils::getRGBA(COLOR_BAR_WARNING, &dRed, &dGreen, &dBlue, &dAlpha)) {
        eext_circle_object_color_set(m_pProgressbar, static_cast<int>(dRed),
                                     static_cast<int>(dGreen), static_cast<int>(dBlue),
                                     static_cast<int>(dAlpha));
    }
    _setGroundColor(COLOR_GROUND_WARNING);
    m_bWarningColor = true;
    elm_layout_signal_emit(m_pVolumeViewLayout, "warning", "*");
}

void TslVolumeViewInside::_setNormalColors() {
    TslWarn("set blue color");
    eext_circle_object_color_set(m_pProgressbar, m_nBarRed, m_nBarGreen, m_nBarBlue, m_nBarAlpha);
    _setGroundColor(COLOR_GROUND_NORMAL);
    m_bWarningColor = false;
    elm_layout_signal_emit(m_pVolumeViewLayout, "normal", "*");
}

void TslVolumeViewInside::_setGroundColor(const char *szColorCode) {
    double dRed = 0.0;
    double dGreen = 0.0;
    double dBlue = 0.0;
    double dAlpha = 0.0;
    if (TslUtils::getRGBA(szColorCode, &dRed, &dGreen, &dBlue, &dAlpha)) {
        eext_circle_object_item_color_set(m_pProgressbar, ITEM_GROUND, static_cast<int>(dRed),
                                          static_cast<int>(dGreen), static_cast<int>(dBlue),
                                          static_cast<int>(dAlpha));
    }
}

void TslVolumeViewInside::_setIconOfMuteButton() {
    const bool bMuted = m_nCurrentVolume == 0;
    if (bMuted) {
        TslInfo("Set icon of mute.");
    } else {
        TslInfo("Set icon of volume on.");
    }
    // A level may still come between the pop of the screen and its end.
    if (m_pMuteButton != nullptr) {
        elm_object_signal_emit(m_pMuteButton->getEvasObject(),
                               bMuted ? SIGNAL_ICON_MUTE : SIGNAL_ICON_ON, SOURCE_ICON);
    }
}

void TslVolumeViewInside::_updateButtons() {
    if (m_nCurrentVolume < 1) {
        _enablePlusButton();
        _disableMinusButton();
    } else if (m_nCurrentVolume < m_nMaxVolume) {
        _enablePlusButton();
        _enableMinusButton();
    } else {
        _enableMinusButton();
        _disablePlusButton();
    }
}

void TslVolumeViewInside::_setDisabled(const TslButton *pButton, const char *szName,
                                       Eina_Bool bDisabled) {
    if (pButton == nullptr) {
        TslError("The %s is nullptr.", szName);
        return;
    }
    if (pButton->getEvasObject() == nullptr) {
        TslError("The evas object of %s is nullptr.", szName);
        return;
    }
    elm_object_disabled_set(pButton->getEvasObject(), bDisabled);
}

void TslVolumeViewInside::_enablePlusButton() {
    _setDisabled(m_pPlusButton, PLUS_BUTTON_NAME, EINA_FALSE);
}

void TslVolumeViewInside::_disablePlusButton() {
    _setDisabled(m_pPlusButton, PLUS_BUTTON_NAME, EINA_TRUE);
}

void TslVolumeViewInside::_enableMinusButton() {
    _setDisabled(m_pMinusButton, MINUS_BUTTON_NAME, EINA_FALSE);
}

void TslVolumeViewInside::_disableMinusButton() {
    _setDisabled(m_pMinusButton, MINUS_BUTTON_NAME, EINA_TRUE);
}

void TslVolumeViewInside::_createAnimator() {
    app_assist::WTimer::destroy(m_pAnimator);
    m_pAnimator = app_assist::WTimer::addAnimator(
        [](void *pUserData) -> bool {
            TslInfo("This is lamda for _createAnimator()");
            auto *pInside = static_cast<TslVolumeViewInside *>(pUserData);
            if (pInside == nullptr) {
                TslError("UserData is nullptr.");
                return false;
            }
            return pInside->_animate();
        },
        this);
}

bool TslVolumeViewInside::_animate() {
    if (_findView() == nullptr) {
        TslWarn("pVolumeView is not existed.");
        return false;
    }
    if (m_pProgressbar == nullptr) {
        TslError("_createAnimator() :: m_pProgressbar is not existed.");
        return true;
    }
    const double dAngle = eext_circle_object_angle_get(m_pProgressbar);
    const double dRemaining = m_dTargetAngle - dAngle;
    if (std::fabs(dRemaining) < ANIMATION_END_DEGREES) {
        TslWarn("animation is finished");
        eext_circle_object_angle_set(m_pProgressbar, m_dTargetAngle);
        m_dStartAngle = 0.0;
        m_dTargetAngle = 0.0;
        m_nDiff = 0.0;
        app_assist::WTimer::destroy(m_pAnimator);
        return false;
    }
    eext_circle_object_angle_set(m_pProgressbar, dAngle + dRemaining * ANIMATION_FRACTION);
    return true;
}

void TslVolumeViewInside::_createVolumeViewUiTimer() {
    app_assist::WTimer::destroy(m_pUiTimer);
    if (m_pScreenReaderCtrl->isEnabledToAccessAccessibility()) {
        TslInfo("m_pScreenReaderCtrl->isEnabledToAccessAccessibility() == true");
        return;
    }
    m_pUiTimer = app_assist::WTimer::addTimer(
        CLOSE_SECONDS,
        [](void *pUserData) -> bool {
            TslInfo("This is lamda for _createVolumeViewUiTimer()");
            auto *pInside = static_cast<TslVolumeViewInside *>(pUserData);
            if (pInside == nullptr) {
                TslError("UserData is nullptr.");
                return false;
            }
            pInside->_close();
            return false;
        },
        this);
}

void TslVolumeViewInside::_close() {
    if (m_pUiTimer.expired()) {
        TslWarn("UiTimer has been expired already.");
        return;
    }
    app_assist::WTimer::destroy(m_pUiTimer);
    TslVolumeView *pVolumeView = _findView();
    if (pVolumeView == nullptr || pVolumeView->getEvasObject() == nullptr) {
        TslWarn("pVolumeView is not existed.");
        return;
    }
    pVolumeView->pop();
}

void TslVolumeViewInside::_readCurrentVolumeLevel() {
    char *szVolumeText = TslUtils::getTextFori18n(m_nCurrentVolume);
    if (szVolumeText == nullptr) {
        TslError("szVolumeText is nullptr.");
        return;
    }
    m_pScreenReaderCtrl->sayManualText(szVolumeText);
    std::free(szVolumeText);
}

void TslVolumeViewInside::_setRotaryEvent() {
    eext_rotary_object_event_callback_priority_add(m_pVolumeViewLayout, ROTARY_PRIORITY,
                                                   _rotaryEventCbForVolume, this);
    eext_rotary_object_event_activated_set(m_pVolumeViewLayout, EINA_TRUE);
}

void TslVolumeViewInside::_unsetRotaryEvent() {
    eext_rotary_object_event_callback_priority_add(m_pVolumeViewLayout, ROTARY_PRIORITY, nullptr,
                                                   nullptr);
    eext_rotary_object_event_callback_del(m_pVolumeViewLayout, _rotaryEventCbForVolume);
}

int TslVolumeViewInside::_weightedStep(unsigned int nTimeStamp, double dMin, double dMax) {
    // A time stamp that runs backwards counts as a large gap.
    unsigned int nEventGap = nTimeStamp - m_nLastRotaryTime;
    TslInfo("nEventGap: %d", static_cast<int>(nEventGap));
    int nWeightedStep = 1;
    if (nEventGap > PAUSE_GAP) {
        m_nLastRotaryTime = nTimeStamp;
    } else if (nEventGap >= SPIN_GAP) {
        TslWarn("Nothing choose, rotary event.");
    } else {
        nEventGap = SPIN_GAP;
        nWeightedStep = static_cast<int>((dMax - dMin) * 12.0 / 10.0);
        if (nWeightedStep < SPIN_STEP_MIN) {
            nWeightedStep = SPIN_STEP_MIN;
        } else {
            TslWarn("Nothing choose, nWeightedStep.");
        }
    }
    TslInfo("nWeightedStep[%d], nEventGap[%d]", nWeightedStep, static_cast<int>(nEventGap));
    return nWeightedStep;
}

TslVolumeView *TslVolumeViewInside::_findView() const {
    return static_cast<TslVolumeView *>(app_assist::wview_get_instance(m_pBaseLayout));
}

TslVolumeViewInside *TslVolumeViewInside::_insideOf(void *pUserData, const Evas_Object *pObj) {
    auto *pVolumeViewInside = static_cast<TslVolumeViewInside *>(pUserData);
    if (pVolumeViewInside == nullptr) {
        TslError("pUserData is not existed.");
        return nullptr;
    }
    if (pObj == nullptr) {
        TslError("EvasObject is nullptr.");
        return nullptr;
    }
    if (pVolumeViewInside->m_pVolumeViewLayout == nullptr) {
        TslError("pVolumeViewInside->m_pVolumeViewLayout == nullptr");
        return nullptr;
    }
    if (pVolumeViewInside->_findView() == nullptr) {
        TslError("pVolumeView is not existed.");
        return nullptr;
    }
    return pVolumeViewInside;
}

void TslVolumeViewInside::_muteButtonClickedCb(void *pUserData, Evas_Object *pObj,
                                               void * /*pEventInfo*/) {
    TslInfo("");
    TslVolumeViewInside *pInside = _insideOf(pUserData, pObj);
    if (pInside == nullptr) {
        return;
    }
    pInside->_createVolumeViewUiTimer();
    emitSignal(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, 0);
    if (pInside->m_nCurrentVolume > 0) {
        pInside->m_nVolumeBeforeMute = pInside->m_nCurrentVolume;
        pInside->m_nCurrentVolume = 0;
        pInside->_setAccessibleNameOfMuteButton(TEXT_UNMUTE);
    } else {
        pInside->m_nCurrentVolume = pInside->m_nVolumeBeforeMute != 0 ? pInside->m_nVolumeBeforeMute
                                                                      : VOLUME_AFTER_UNKNOWN_MUTE;
        pInside->_setAccessibleNameOfMuteButton(TEXT_MUTE);
    }
    emitSignal(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR, pInside->m_nCurrentVolume);
}

void TslVolumeViewInside::_plusVolumeButtonClickedCb(void *pUserData, Evas_Object *pObj,
                                                     void * /*pEventInfo*/) {
    TslInfo("");
    TslVolumeViewInside *pInside = _insideOf(pUserData, pObj);
    if (pInside == nullptr) {
        return;
    }
    pInside->_createVolumeViewUiTimer();
    emitSignal(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, 0);
    emitSignal(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR,
               pInside->m_nCurrentVolume >= pInside->m_nMaxVolume ? pInside->m_nMaxVolume
                                                                  : pInside->m_nCurrentVolume + 1);
}

void TslVolumeViewInside::_minusVolumeButtonClickedCb(void *pUserData, Evas_Object *pObj,
                                                      void * /*pEventInfo*/) {
    TslInfo("");
    TslVolumeViewInside *pInside = _insideOf(pUserData, pObj);
    if (pInside == nullptr) {
        return;
    }
    pInside->_createVolumeViewUiTimer();
    emitSignal(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, 0);
    emitSignal(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR,
               pInside->m_nCurrentVolume < 1 ? 0 : pInside->m_nCurrentVolume - 1);
}

Eina_Bool TslVolumeViewInside::_rotaryEventCbForVolume(void *pUserData, Evas_Object *pObj,
                                                       Eext_Rotary_Event_Info *pInfo) {
    TslVolumeViewInside *pInside = _insideOf(pUserData, pObj);
    if (pInside == nullptr) {
        return EINA_FALSE;
    }
    if (pInside->m_pProgressbar == nullptr) {
        TslError("pVolumeViewInside->m_pProgressbar is not existed");
        return EINA_FALSE;
    }
    if (pInside->m_pVolumeViewLayout == nullptr) {
        TslError("pVolumeViewInside->m_pVolumeViewLayout is not existed");
        return EINA_FALSE;
    }
    const int nDirection = directionNumber(*pInfo);
    TslInfo("EEXT_ROTARY_STATUS_DETENT_DETECTED direction[%d]", nDirection);

    double dMin = DEFAULT_RANGE_MIN;
    double dMax = DEFAULT_RANGE_MAX;
    eext_circle_object_value_min_max_get(pInside->m_pProgressbar, &dMin, &dMax);
    const int nWeightedStep = pInside->_weightedStep(pInfo->time_stamp, dMin, dMax);

    emitSignal(SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, 0);
    if (nDirection == EEXT_ROTARY_DIRECTION_CLOCKWISE) {
        pInside->m_nCurrentVolume =
            std::min(pInside->m_nCurrentVolume + nWeightedStep, static_cast<int>(dMax));
    } else if (nDirection == EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE) {
        pInside->m_nCurrentVolume = std::max(pInside->m_nCurrentVolume - nWeightedStep, 0);
    } else {
        TslWarn("Nothing choose, rotary direction.");
    }
    emitSignal(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR, pInside->m_nCurrentVolume);
    return EINA_FALSE;
}

void TslVolumeViewInside::_volumeBgMouseDownCb(void *pUserData, Evas * /*pEvas*/, Evas_Object *pObj,
                                               void *pEventInfo) {
    TslVolumeViewInside *pInside = _insideOf(pUserData, pObj);
    if (pInside == nullptr) {
        return;
    }
    const auto *pEvent = static_cast<Evas_Event_Mouse_Down *>(pEventInfo);
    pInside->m_nMouseDownX = pEvent->output.x;
    pInside->m_nMouseDownY = pEvent->output.y;
}

void TslVolumeViewInside::_volumeBgMouseUpCb(void *pUserData, Evas * /*pEvas*/, Evas_Object *pObj,
                                             void *pEventInfo) {
    TslVolumeViewInside *pInside = _insideOf(pUserData, pObj);
    if (pInside == nullptr) {
        return;
    }
    int nWidth = 0;
    int nHeight = 0;
    evas_object_geometry_get(pObj, nullptr, nullptr, &nWidth, &nHeight);
    const int nCentreX = nWidth / 2;
    const int nCentreY = nHeight / 2;
    pInside->_createVolumeViewUiTimer();

    const auto *pEvent = static_cast<Evas_Event_Mouse_Up *>(pEventInfo);
    const int nX = pEvent->output.x;
    const int nY = pEvent->output.y;
    const int nDistance = static_cast<int>(distanceOf(nCentreX - nX, nCentreY - nY));
    if (nDistance < nCentreY - RIM_DEPTH) {
        TslWarn("under valid gap[%d]", nDistance);
        return;
    }
    const int nMovement = static_cast<int>(distanceOf(pInside->m_nMouseDownX - pEvent->canvas.x,
                                                      pInside->m_nMouseDownY - pEvent->canvas.y));
    if (nMovement > static_cast<int>(elm_config_scroll_thumbscroll_threshold_get())) {
        TslWarn("move event");
        return;
    }
    const double dAngle = angleOfPoint(nCentreX, nCentreY, nX, nY);
    emitSignal(SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR,
               static_cast<int>((pInside->m_nMaxVolume + 0.5) * dAngle / FULL_TURN));
}

char *TslVolumeViewInside::_volumeLevelAccessibleNameCb(void *pUserData,
                                                        Elm_Interface_Atspi_Accessible * /*pObj*/) {
    const auto *pInside = static_cast<TslVolumeViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("UserData is nullptr.");
        return nullptr;
    }
    const char *szLevel = elm_object_part_text_get(pInside->m_pVolumeViewLayout, LEVEL_TEXT_PART);
    const std::string strVolumeLevel =
        (boost::format("%s") % (szLevel != nullptr ? szLevel : "")).str();
    TslInfo("volumeLevel : %s", strVolumeLevel.c_str());
    return strdup(strVolumeLevel.c_str());
}

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_INSIDE(failure)                   \
    if (m_pVolumeViewInside == nullptr) {                \
        TslError("m_pVolumeViewInside is not existed."); \
        return failure;                                  \
    }

TslVolumeView::TslVolumeView(int nCurrentVolume, int nMaxVolume, int nSafetyVolume)
    : m_pVolumeViewInside(new TslVolumeViewInside()) {
    m_pVolumeViewInside->m_nMaxVolume = nMaxVolume;
    m_pVolumeViewInside->m_nSafetyVolume = nSafetyVolume;
    m_pVolumeViewInside->m_nCurrentVolume = nCurrentVolume;
    // Below the safety level the screen believes that it warns, so that the first look at the
    // colours paints the normal ones.
    if (nSafetyVolume <= nCurrentVolume) {
        m_pVolumeViewInside->m_bWarningColor = false;
    }
}

TslVolumeView::~TslVolumeView() {
    TslInfo("");
    delete m_pVolumeViewInside;
    m_pVolumeViewInside = nullptr;
}

bool TslVolumeView::onCreate(void * /*viewParam*/) {
    TslInfo("");
    return true;
}

Evas_Object *TslVolumeView::onCreateView(Evas_Object *pParent, void * /*viewParam*/) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(nullptr);
    return m_pVolumeViewInside->_createView(pParent);
}

void TslVolumeView::onDestroy() {
    TslInfo("");
}

void TslVolumeView::onPushed(Elm_Object_Item *pNaviItem) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (pNaviItem == nullptr) {
        TslError("There is no pNaviItem.");
        return;
    }
    m_pVolumeViewInside->_pushed(pNaviItem);
}

bool TslVolumeView::onPop() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(false);
    m_pVolumeViewInside->_popped();
    return true;
}

void TslVolumeView::setVolume(int nCurrentVolume) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pVolumeViewInside->_setVolume(nCurrentVolume);
}

int TslVolumeView::getVolume() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(NO_VOLUME);
    return m_pVolumeViewInside->m_nCurrentVolume;
}

void TslVolumeView::setSafetyVolume(int nVolume) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pVolumeViewInside->_setSafetyVolume(nVolume);
}

int TslVolumeView::getSafetyVolume() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(NO_VOLUME);
    return m_pVolumeViewInside->m_nSafetyVolume;
}

void TslVolumeView::setMaxVolume(int nMaxVolume) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pVolumeViewInside->m_nMaxVolume = nMaxVolume;
}

int TslVolumeView::getMaxVolume() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(NO_VOLUME);
    return m_pVolumeViewInside->m_nMaxVolume;
}

void TslVolumeView::readCurrentVolumeLevel() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pVolumeViewInside->_readCurrentVolumeLevel();
}

void TslVolumeView::pop() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    popOut();
}
