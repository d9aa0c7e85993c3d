#include "TslPlayerView.h"

#include <Elementary.h>
#include <efl_extension.h>
#include <libintl.h>
#include <utils_i18n.h>

#include <boost/format.hpp>
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

constexpr char BASE_GROUP[] = "tsl.player.view.base.layout";
constexpr char CONTENT_PART[] = "tsl.player.view.base.layout.swallow.content";
constexpr char GESTURE_PART[] = "tsl.player.view.base.layout.swallow.gesture";
constexpr char MORE_OPTION_PART[] = "tsl.player.view.base.layout.swallow.moreoption";
constexpr char PLAYER_GROUP[] = "tsl.player.view";
constexpr char VOLUME_BUTTON_PART[] = "tsl.player.view.volume.btn.swallow";
constexpr char DISPLAYMODE_BUTTON_PART[] = "tsl.player.view.displaymode.btn.swallow";
constexpr char PLAY_BUTTON_PART[] = "tsl.player.view.play.btn.swallow";
constexpr char PLAYED_TEXT_PART[] = "tsl.player.view.playtime.text.played";
constexpr char DURATION_TEXT_PART[] = "tsl.player.view.playtime.text.duration";
constexpr char TIME_FOCUS_PART[] = "tsl.player.view.playtime.screen.reader.focus";
constexpr char GESTURE_GROUP[] = "tsl.player.view.gesture.layout";

constexpr char STYLE_PLAY[] = "video/play";
constexpr char STYLE_PAUSE[] = "video/pause";
constexpr char STYLE_VOLUME_ON[] = "video/volume/on";
constexpr char STYLE_VOLUME_MUTE[] = "video/volume/mute";
constexpr char STYLE_DISPLAYMODE_FULL[] = "video/displaymode/full";
constexpr char STYLE_DISPLAYMODE_LETTERBOX[] = "video/displaymode/letterbox";

constexpr char TEXT_VOLUME[] = "IDS_MUSIC_OPT_VOLUME";
constexpr char TEXT_PLAY[] = "WDS_MUSIC_OPT_PLAY";
constexpr char TEXT_PAUSE[] = "WDS_MUSIC_OPT_PAUSE";
constexpr char TEXT_SCREEN_RATIO[] = "IDS_DVBH_BUTTON_SCREEN_RATIO";
constexpr char TEXT_CROP_TO_FIT[] = "WDS_GALLERY_TBOPT_CROP_TO_FIT";
constexpr char TEXT_FIT_TO_SCREEN[] = "WDS_GALLERY_TBOPT_FIT_TO_SCREEN";
constexpr char TEXT_VIDEO_PLAYER[] = "WDS_GALLERY_TBOPT_VIDEO_PLAYER";
constexpr char TEXT_TIME_OF_TIME[] = "WDS_GALLERY_TBOPT_P1SS_OF_P2SS_M_TIME";

constexpr int READ_NAME_AND_ROLE = 3;
constexpr int READ_NAME_ROLE_AND_DESCRIPTION = 7;

constexpr double UI_VISIBLE_SECONDS = 3.0;
constexpr double PROGRESS_SECONDS = 0.3;
constexpr double LINE_ANGULAR_TOLERANCE = 60.0;
constexpr double LONG_TAP_START_SECONDS = 0.3;
constexpr char FALLBACK_TIME[] = "00:00:00";

void emitSignal(TslSignalType signalType, std::intptr_t nPayload) {
    TslSignalMgr::getInstance()->getSignal().emit(signalType, reinterpret_cast<void *>(nPayload));
}

/// The translation of `szId` as a format. A translation whose placeholders don't fit is shown as
/// far as it goes, since nothing here may throw into the toolkit.
boost::format translatedFormat(const char *szId) {
    boost::format format;
    format.exceptions(boost::io::no_error_bits);
    format.parse(i18n_get_text(dgettext(TEXT_DOMAIN, szId)));
    return format;
}

std::string translated(const char *szId) {
    return dgettext(TEXT_DOMAIN, szId);
}

std::string secondsPhrase(int nSeconds) {
    switch (nSeconds) {
    case 0:
        return (boost::format("%s") % nSeconds).str();
    case 1:
        return translated("WDS_ST_OPT_1_SECOND");
    default:
        return (translatedFormat("WDS_ST_OPT_PD_SECONDS_ABB") % nSeconds).str();
    }
}

std::string oneMinutePhrase(int nSeconds) {
    switch (nSeconds) {
    case 0:
        return translated("WDS_ST_OPT_1_MINUTE_ABB");
    case 1:
        return translated("WDS_ST_OPT_1_MINUTE_1_SECOND_ABB");
    default:
        return (translatedFormat("WDS_ST_OPT_1_MINUTE_PD_SECONDS_ABB") % nSeconds).str();
    }
}

std::string minutesPhrase(int nMinutes, int nSeconds) {
    switch (nSeconds) {
    case 0:
        return (translatedFormat("WDS_ST_OPT_PD_MINUTES_ABB") % nMinutes).str();
    case 1:
        return (translatedFormat("WDS_ST_OPT_PD_MINUTES_1_SECOND_ABB") % nMinutes).str();
    default:
        return (translatedFormat("WDS_ST_OPT_P1SD_MINUTES_P2SD_SECONDS_ABB") % nMinutes % nSeconds)
            .str();
    }
}

/// Puts a time of the screen, "MM:SS", into words.
std::string timePhrase(const std::string &strTime) {
    const int nMinutes = std::stoi(strTime.substr(0, 2));
    const int nSeconds = std::stoi(strTime.substr(3, 2));
    switch (nMinutes) {
    case 0:
        return secondsPhrase(nSeconds);
    case 1:
        return oneMinutePhrase(nSeconds);
    default:
        return minutesPhrase(nMinutes, nSeconds);
    }
}

/// The direction is taken as a number: one that the enumeration doesn't have may come as well.
std::intptr_t directionPayload(const Eext_Rotary_Event_Info &info) {
    int nDirection = 0;
    static_assert(sizeof(nDirection) == sizeof(info.direction), "the direction is an int");
    std::memcpy(&nDirection, &info.direction, sizeof(nDirection));
    switch (nDirection) {
    case EEXT_ROTARY_DIRECTION_CLOCKWISE:
        return 0;
    case EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE:
        return 1;
    default:
        return -1;
    }
}

void deleteObject(Evas_Object *&pObject) {
    evas_object_del(pObject);
    pObject = nullptr;
}

}  // namespace

class TslPlayerViewInside {
public:
    TslPlayerViewInside();
    ~TslPlayerViewInside();
    TslPlayerViewInside(const TslPlayerViewInside &) = delete;
    TslPlayerViewInside &operator=(const TslPlayerViewInside &) = delete;

    Evas_Object *_createView(Evas_Object *pParent);
    void _pushed(Elm_Object_Item *pNaviItem);
    void _activateRotary();
    void _deactivateRotary();

    void _showPlayViewUi();
    void _hidePlayViewUi();
    void _enableVolumeButton();
    void _disableVolumeButton();
    void _createProgressTimer();
    void _destroyProgressTimer();
    void _setPlayedTime(int nTime);
    void _setDurationTime(int nTime);
    void _changeButtonImageAsPlay();
    void _changeButtonImageAsPause();
    void _changeVolumeButtonImageAsVolumeOn();
    void _changeVolumeButtonImageAsVolumeMute();
    void _changeDisplaymodeButtonImageAsFull();
    void _changeDisplaymodeButtonImageAsLetterbox();

private:
    TslButton *_createButton(Evas_Object *pParent, const char *szStyle);
    TslButton *_createControl(Evas_Object *pParent, const char *szStyle, Evas_Smart_Cb clickedCb,
                              const char *szName, const char *szDescription, int nReadingInfo);
    Evas_Object *_createVolumeButton(Evas_Object *pParent);
    Evas_Object *_createPlayPauseButton(Evas_Object *pParent);
    Evas_Object *_createDisplaymodeButton(Evas_Object *pParent);
    void _destroyButton(TslButton *&pButton);

    Evas_Object *_createGestureLayerLayout(Evas_Object *pParent);
    void _clearGestureCallbacks();

    void _createUiVisibleTimer();
    void _destroyUiVisibleTimer();

    static bool _isButtonExisted(const TslButton *pButton, const char *szName);
    bool _isVolumeButtonExisted();
    bool _isPlayPauseButtonExisted();
    bool _isDisplaymodeButtonExisted();

    static void _volumeButtonClickedCb(void *pUserData, Evas_Object *pObj, void *pEventInfo);
    static void _clickedCbForPlayButton(void *pUserData, Evas_Object *pObj, void *pEventInfo);
    static void _displaymodeButtonClickedCb(void *pUserData, Evas_Object *pObj, void *pEventInfo);
    static Evas_Event_Flags _gestureTabStartCb(void *pUserData, void *pEventInfo);
    static Evas_Event_Flags _gestureTabEndCb(void *pUserData, void *pEventInfo);
    static void _gestureLayerDeletedCb(void *pUserData, Evas *pEvas, Evas_Object *pObj,
                                       void *pEventInfo);
    static Eina_Bool _rotaryEventCbForSetPosition(void *pUserData, Evas_Object *pObj,
                                                  Eext_Rotary_Event_Info *pInfo);
    static char *_playedTimeAccessibleNameCb(void *pUserData, Elm_Interface_Atspi_Accessible *pObj);

    Evas_Object *m_pGestureLayer;
    Evas_Object *m_pPlayerViewLayout;
    Evas_Object *m_pGestureLayout;
    Evas_Object *m_pBaseLayout;
    TslButton *m_pVolumeButton;
    TslButton *m_pPlayPauseButton;
    TslButton *m_pDisplaymodeButton;
    app_assist::WTimerWeakPtr m_pUiVisibleTimer;
    app_assist::WTimerWeakPtr m_pProgressTimer;
    bool m_bUiVisible;
    TslScreenReaderCtrl *m_pScreenReaderCtrl;
};

TslPlayerViewInside::TslPlayerViewInside()
    : m_pGestureLayer(nullptr),
      m_pPlayerViewLayout(nullptr),
      m_pGestureLayout(nullptr),
      m_pBaseLayout(nullptr),
      m_pVolumeButton(nullptr),
      m_pPlayPauseButton(nullptr),
      m_pDisplaymodeButton(nullptr),
      m_bUiVisible(true),
      m_pScreenReaderCtrl(new TslScreenReaderCtrl()) {}

TslPlayerViewInside::~TslPlayerViewInside() {
    _destroyProgressTimer();
    _destroyUiVisibleTimer();
    _destroyButton(m_pPlayPauseButton);
    _destroyButton(m_pVolumeButton);
    _destroyButton(m_pDisplaymodeButton);
    delete m_pScreenReaderCtrl;
    m_pScreenReaderCtrl = nullptr;
    deleteObject(m_pGestureLayer);
    deleteObject(m_pPlayerViewLayout);
    deleteObject(m_pGestureLayout);
    deleteObject(m_pBaseLayout);
}

Evas_Object *TslPlayerViewInside::_createView(Evas_Object *pParent) {
    m_pBaseLayout = TslUtils::createLayout(pParent, TSL_EDJ_FILE, BASE_GROUP);
    eext_rotary_object_event_callback_add(m_pBaseLayout, _rotaryEventCbForSetPosition, this);
    eext_rotary_object_event_activated_set(m_pBaseLayout, EINA_TRUE);

    m_pPlayerViewLayout = TslUtils::createLayout(m_pBaseLayout, TSL_EDJ_FILE, PLAYER_GROUP);
    elm_object_part_content_set(m_pBaseLayout, CONTENT_PART, m_pPlayerViewLayout);

    m_pGestureLayout = _createGestureLayerLayout(m_pBaseLayout);
    elm_object_part_content_set(m_pBaseLayout, GESTURE_PART, m_pGestureLayout);

    elm_object_part_content_set(m_pPlayerViewLayout, VOLUME_BUTTON_PART,
                                _createVolumeButton(m_pPlayerViewLayout));
    elm_object_part_content_set(m_pPlayerViewLayout, DISPLAYMODE_BUTTON_PART,
                                _createDisplaymodeButton(m_pPlayerViewLayout));
    elm_object_part_content_set(m_pPlayerViewLayout, PLAY_BUTTON_PART,
                                _createPlayPauseButton(m_pPlayerViewLayout));
    _hidePlayViewUi();
    return m_pBaseLayout;
}

void TslPlayerViewInside::_pushed(Elm_Object_Item *pNaviItem) {
    elm_naviframe_item_title_enabled_set(pNaviItem, EINA_FALSE, EINA_FALSE);
    elm_naviframe_item_style_set(pNaviItem, "basic/transparent");
    m_pScreenReaderCtrl->setAccessibleNaviframe(pNaviItem, translated(TEXT_VIDEO_PLAYER), "");
}

void TslPlayerViewInside::_activateRotary() {
    eext_rotary_object_event_activated_set(m_pBaseLayout, EINA_TRUE);
}

void TslPlayerViewInside::_deactivateRotary() {
    eext_rotary_object_event_activated_set(m_pBaseLayout, EINA_FALSE);
    eext_rotary_object_event_callback_del(m_pBaseLayout, _rotaryEventCbForSetPosition);
}

TslButton *TslPlayerViewInside::_createButton(Evas_Object *pParent, const char *szStyle) {
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

TslButton *TslPlayerViewInside::_createControl(Evas_Object *pParent, const char *szStyle,
                                               Evas_Smart_Cb clickedCb, const char *szName,
                                               const char *szDescription, int nReadingInfo) {
    TslButton *pButton = _createButton(pParent, szStyle);
    if (pButton == nullptr) {
        TslError("It is failed to create play/pause button.");
        return nullptr;
    }
    pButton->setCallback(clickedCb, nullptr, nullptr, this);
    m_pScreenReaderCtrl->setAccessibleContents(pButton->getEvasObject(), szName, szDescription,
                                               AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON,
                                               nReadingInfo);
    return pButton;
}

Evas_Object *TslPlayerViewInside::_createVolumeButton(Evas_Object *pParent) {
    m_pVolumeButton = _createControl(pParent, STYLE_VOLUME_ON, _volumeButtonClickedCb, TEXT_VOLUME,
                                     "", READ_NAME_AND_ROLE);
    return m_pVolumeButton != nullptr ? m_pVolumeButton->getEvasObject() : nullptr;
}

Evas_Object *TslPlayerViewInside::_createPlayPauseButton(Evas_Object *pParent) {
    m_pPlayPauseButton = _createControl(pParent, STYLE_PLAY, _clickedCbForPlayButton, TEXT_PLAY, "",
                                        READ_NAME_AND_ROLE);
    return m_pPlayPauseButton != nullptr ? m_pPlayPauseButton->getEvasObject() : nullptr;
}

Evas_Object *TslPlayerViewInside::_createDisplaymodeButton(Evas_Object *pParent) {
    m_pDisplaymodeButton =
        _createControl(pParent, STYLE_DISPLAYMODE_FULL, _displaymodeButtonClickedCb,
                       TEXT_SCREEN_RATIO, TEXT_CROP_TO_FIT, READ_NAME_ROLE_AND_DESCRIPTION);
    return m_pDisplaymodeButton != nullptr ? m_pDisplaymodeButton->getEvasObject() : nullptr;
}

void TslPlayerViewInside::_destroyButton(TslButton *&pButton) {
    if (pButton != nullptr) {
        pButton->destroy();
        pButton = nullptr;
    }
}

Evas_Object *TslPlayerViewInside::_createGestureLayerLayout(Evas_Object *pParent) {
    Evas_Object *pLayout = TslUtils::createLayout(pParent, TSL_EDJ_FILE, GESTURE_GROUP);
    if (pLayout == nullptr) {
        TslError("It is failed to create Gesture Layout.");
        return nullptr;
    }
    m_pGestureLayer = elm_gesture_layer_add(pLayout);
    if (m_pGestureLayer == nullptr) {
        TslError("It is failed to create Gesture Layer.");
        evas_object_del(pLayout);
        return nullptr;
    }
    elm_gesture_layer_hold_events_set(m_pGestureLayer, EINA_FALSE);
    elm_gesture_layer_line_angular_tolerance_set(m_pGestureLayer, LINE_ANGULAR_TOLERANCE);
    elm_gesture_layer_long_tap_start_timeout_set(m_pGestureLayer, LONG_TAP_START_SECONDS);
    elm_gesture_layer_attach(m_pGestureLayer, pLayout);
    elm_gesture_layer_cb_set(m_pGestureLayer, ELM_GESTURE_N_TAPS, ELM_GESTURE_STATE_START,
                             _gestureTabStartCb, this);
    elm_gesture_layer_cb_set(m_pGestureLayer, ELM_GESTURE_N_TAPS, ELM_GESTURE_STATE_END,
                             _gestureTabEndCb, this);
    evas_object_event_callback_add(m_pGestureLayer, EVAS_CALLBACK_DEL, _gestureLayerDeletedCb,
                                   this);
    return pLayout;
}

void TslPlayerViewInside::_clearGestureCallbacks() {
    if (m_pGestureLayout == nullptr) {
        TslError("There is no GestureLayout.");
        return;
    }
    if (m_pGestureLayer == nullptr) {
        TslError("There is no GestureLayer.");
    }
}

void TslPlayerViewInside::_showPlayViewUi() {
    TslInfo("");
    if (m_bUiVisible) {
        return;
    }
    m_bUiVisible = true;
    _createUiVisibleTimer();
    elm_object_signal_emit(m_pBaseLayout, "layout,swallow,show", CONTENT_PART);
    elm_object_signal_emit(m_pBaseLayout, "moreoption,swallow,show", MORE_OPTION_PART);
}

void TslPlayerViewInside::_hidePlayViewUi() {
    TslInfo("");
    if (m_pScreenReaderCtrl->isEnabledToAccessAccessibility()) {
        TslInfo("m_pScreenReaderCtrl->isEnabledToAccessAccessibility() == true");
        return;
    }
    if (!m_bUiVisible) {
        return;
    }
    m_bUiVisible = false;
    _destroyUiVisibleTimer();
    elm_object_signal_emit(m_pBaseLayout, "moreoption,swallow,hide", MORE_OPTION_PART);
    elm_object_signal_emit(m_pBaseLayout, "layout,swallow,hide", CONTENT_PART);
}

void TslPlayerViewInside::_createUiVisibleTimer() {
    app_assist::WTimer::destroy(m_pUiVisibleTimer);
    m_pUiVisibleTimer = app_assist::WTimer::addTimer(
        UI_VISIBLE_SECONDS,
        [](void *pUserData) -> bool {
            auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
            if (pInside == nullptr) {
                TslError("UserData is nullptr.");
                return false;
            }
            if (!pInside->m_pUiVisibleTimer.expired()) {
                pInside->_hidePlayViewUi();
            }
            return false;
        },
        this);
}

void TslPlayerViewInside::_destroyUiVisibleTimer() {
    app_assist::WTimer::destroy(m_pUiVisibleTimer);
}

void TslPlayerViewInside::_createProgressTimer() {
    app_assist::WTimer::destroy(m_pProgressTimer);
    m_pProgressTimer = app_assist::WTimer::addTimer(
        PROGRESS_SECONDS,
        [](void *) -> bool {
            emitSignal(SIGNAL_PLAYER_VIEW_PROGRESS_TICK, 0);
            return true;
        },
        nullptr);

    Evas_Object *pEdje = elm_layout_edje_get(m_pPlayerViewLayout);
    auto *pTimeArea =
        const_cast<Evas_Object *>(edje_object_part_object_get(pEdje, TIME_FOCUS_PART));
    m_pScreenReaderCtrl->setCallbackOfAccessibleName(pTimeArea, m_pBaseLayout,
                                                     _playedTimeAccessibleNameCb, this);
}

void TslPlayerViewInside::_destroyProgressTimer() {
    app_assist::WTimer::destroy(m_pProgressTimer);
}

void TslPlayerViewInside::_setPlayedTime(int nTime) {
    if (m_pPlayerViewLayout == nullptr) {
        TslError("m_pPlayerViewLayout is not existed.");
        return;
    }
    char *szTime = TslUtils::convertPlayTimeToStringFormat(nTime);
    if (szTime == nullptr) {
        TslWarn("It is failed to get played time.");
        elm_object_part_text_set(m_pPlayerViewLayout, PLAYED_TEXT_PART, FALLBACK_TIME);
        return;
    }
    elm_object_part_text_set(m_pPlayerViewLayout, PLAYED_TEXT_PART, szTime);
    std::free(szTime);
}

void TslPlayerViewInside::_setDurationTime(int nTime) {
    if (m_pPlayerViewLayout == nullptr) {
        TslError("m_pPlayerViewLayout is not existed.");
        return;
    }
    char *szTime = TslUtils::convertPlayTimeToStringFormat(nTime);
    if (szTime == nullptr) {
        TslWarn("It is failed to get duration time.");
        elm_object_part_text_set(m_pPlayerViewLayout, DURATION_TEXT_PART, FALLBACK_TIME);
        return;
    }
    elm_object_part_text_set(m_pPlayerViewLayout, DURATION_TEXT_PART, szTime);
    std::free(szTime);
}

bool TslPlayerViewInside::_isButtonExisted(const TslButton *pButton, const char *szName) {
    if (pButton == nullptr) {
        TslError("%s is not existed.", szName);
        return false;
    }
    if (pButton->getEvasObject() == nullptr) {
        TslError("Evas object of %s is not existed.", szName);
        return false;
    }
    return true;
}

bool TslPlayerViewInside::_isVolumeButtonExisted() {
    return _isButtonExisted(m_pVolumeButton, "m_pVolumeButton");
}

bool TslPlayerViewInside::_isPlayPauseButtonExisted() {
    return _isButtonExisted(m_pPlayPauseButton, "m_pPlayPauseButton");
}

bool TslPlayerViewInside::_isDisplaymodeButtonExisted() {
    return _isButtonExisted(m_pDisplaymodeButton, "m_pDisplaymodeButton");
}

void TslPlayerViewInside::_enableVolumeButton() {
    if (!_isVolumeButtonExisted()) {
        return;
    }
    elm_object_disabled_set(m_pVolumeButton->getEvasObject(), EINA_FALSE);
}

void TslPlayerViewInside::_disableVolumeButton() {
    if (!_isVolumeButtonExisted()) {
        return;
    }
    _changeVolumeButtonImageAsVolumeMute();
    elm_object_disabled_set(m_pVolumeButton->getEvasObject(), EINA_TRUE);
}

void TslPlayerViewInside::_changeButtonImageAsPlay() {
    if (!_isPlayPauseButtonExisted()) {
        return;
    }
    m_pPlayPauseButton->setStyle(STYLE_PLAY);
    m_pScreenReaderCtrl->setAccessibleContents(m_pPlayPauseButton->getEvasObject(), TEXT_PLAY, "",
                                               AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON,
                                               READ_NAME_AND_ROLE);
}

void TslPlayerViewInside::_changeButtonImageAsPause() {
    if (!_isPlayPauseButtonExisted()) {
        return;
    }
    m_pPlayPauseButton->setStyle(STYLE_PAUSE);
    m_pScreenReaderCtrl->setAccessibleContents(m_pPlayPauseButton->getEvasObject(), TEXT_PAUSE, "",
                                               AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON,
                                               READ_NAME_AND_ROLE);
}

void TslPlayerViewInside::_changeVolumeButtonImageAsVolumeOn() {
    if (!_isVolumeButtonExisted()) {
        return;
    }
    if (elm_object_disabled_get(m_pVolumeButton->getEvasObject())) {
        TslInfo("VolumeButton is disabled. So, It will be not changed as volume on button.");
        return;
    }
    m_pVolumeButton->setStyle(STYLE_VOLUME_ON);
}

void TslPlayerViewInside::_changeVolumeButtonImageAsVolumeMute() {
    if (!_isVolumeButtonExisted()) {
        return;
    }
    m_pVolumeButton->setStyle(STYLE_VOLUME_MUTE);
}

void TslPlayerViewInside::_changeDisplaymodeButtonImageAsFull() {
    if (!_isDisplaymodeButtonExisted()) {
        return;
    }
    m_pDisplaymodeButton->setStyle(STYLE_DISPLAYMODE_FULL);
    m_pScreenReaderCtrl->setAccessibleContents(
        m_pDisplaymodeButton->getEvasObject(), TEXT_SCREEN_RATIO, TEXT_CROP_TO_FIT,
        AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON, READ_NAME_ROLE_AND_DESCRIPTION);
}

void TslPlayerViewInside::_changeDisplaymodeButtonImageAsLetterbox() {
    if (!_isDisplaymodeButtonExisted()) {
        return;
    }
    m_pDisplaymodeButton->setStyle(STYLE_DISPLAYMODE_LETTERBOX);
    m_pScreenReaderCtrl->setAccessibleContents(
        m_pDisplaymodeButton->getEvasObject(), TEXT_SCREEN_RATIO, TEXT_FIT_TO_SCREEN,
        AccessibleRoleType::ELM_ATSPI_ROLE_PUSH_BUTTON, READ_NAME_ROLE_AND_DESCRIPTION);
}

void TslPlayerViewInside::_volumeButtonClickedCb(void *pUserData, Evas_Object * /*pObj*/,
                                                 void * /*pEventInfo*/) {
    TslInfo("");
    auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("There is no pUserData.");
        return;
    }
    pInside->_hidePlayViewUi();
    emitSignal(SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW, 0);
}

void TslPlayerViewInside::_clickedCbForPlayButton(void *pUserData, Evas_Object * /*pObj*/,
                                                  void * /*pEventInfo*/) {
    TslInfo("");
    auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("There is no pUserData.");
        return;
    }
    pInside->_createUiVisibleTimer();
    emitSignal(SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, 0);
}

void TslPlayerViewInside::_displaymodeButtonClickedCb(void *pUserData, Evas_Object * /*pObj*/,
                                                      void * /*pEventInfo*/) {
    TslInfo("");
    auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("There is no pUserData.");
        return;
    }
    pInside->_createUiVisibleTimer();
    emitSignal(SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE, 0);
}

Evas_Event_Flags TslPlayerViewInside::_gestureTabStartCb(void *pUserData, void * /*pEventInfo*/) {
    TslInfo("");
    if (pUserData == nullptr) {
        TslError("There is no UserData.");
    }
    return EVAS_EVENT_FLAG_NONE;
}

Evas_Event_Flags TslPlayerViewInside::_gestureTabEndCb(void *pUserData, void * /*pEventInfo*/) {
    TslInfo("");
    auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("There is no UserData.");
        return EVAS_EVENT_FLAG_NONE;
    }
    if (pInside->m_bUiVisible) {
        pInside->_hidePlayViewUi();
    } else {
        pInside->_showPlayViewUi();
    }
    return EVAS_EVENT_FLAG_NONE;
}

void TslPlayerViewInside::_gestureLayerDeletedCb(void *pUserData, Evas * /*pEvas*/,
                                                 Evas_Object * /*pObj*/, void * /*pEventInfo*/) {
    TslInfo("It is destroying gesture layer.");
    static_cast<TslPlayerViewInside *>(pUserData)->_clearGestureCallbacks();
}

Eina_Bool TslPlayerViewInside::_rotaryEventCbForSetPosition(void *pUserData, Evas_Object * /*pObj*/,
                                                            Eext_Rotary_Event_Info *pInfo) {
    auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("UserData is nullptr.");
        return EINA_FALSE;
    }
    pInside->_showPlayViewUi();
    pInside->_createUiVisibleTimer();

    emitSignal(SIGNAL_PLAYER_VIEW_ROTARY_EVENT, directionPayload(*pInfo));
    return EINA_TRUE;
}

char *TslPlayerViewInside::_playedTimeAccessibleNameCb(void *pUserData,
                                                       Elm_Interface_Atspi_Accessible * /*pObj*/) {
    auto *pInside = static_cast<TslPlayerViewInside *>(pUserData);
    if (pInside == nullptr) {
        TslError("UserData is nullptr.");
        return nullptr;
    }
    const char *szPlayed = elm_object_part_text_get(pInside->m_pPlayerViewLayout, PLAYED_TEXT_PART);
    if (szPlayed == nullptr) {
        TslError("Playing time is nullptr");
        return nullptr;
    }
    const char *szDuration =
        elm_object_part_text_get(pInside->m_pPlayerViewLayout, DURATION_TEXT_PART);
    if (szDuration == nullptr) {
        TslError("Duration is nullptr");
        return nullptr;
    }
    const std::string strPlayed = timePhrase(szPlayed);
    const std::string strDuration = timePhrase(szDuration);
    const std::string strDisplayTime =
        (translatedFormat(TEXT_TIME_OF_TIME) % strPlayed % strDuration).str();
    TslInfo("displayTime : %s", strDisplayTime.c_str());
    return strdup(strDisplayTime.c_str());
}

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_INSIDE(failure)                        \
    if (m_pPlayerlViewInside == nullptr) {                    \
        TslError("There is no m_pPlayerlViewInside Handle."); \
        return failure;                                       \
    }

TslPlayerView::TslPlayerView() : m_pPlayerlViewInside(new TslPlayerViewInside()) {}

TslPlayerView::~TslPlayerView() {
    TslInfo("");
    delete m_pPlayerlViewInside;
    m_pPlayerlViewInside = nullptr;
}

bool TslPlayerView::onCreate(void * /*viewParam*/) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(false);
    return true;
}

Evas_Object *TslPlayerView::onCreateView(Evas_Object *pParent, void * /*viewParam*/) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(nullptr);
    return m_pPlayerlViewInside->_createView(pParent);
}

void TslPlayerView::onDestroy() {
    TslInfo("");
}

void TslPlayerView::onPushed(Elm_Object_Item *pNaviItem) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (pNaviItem == nullptr) {
        TslError("There is no pNaviItem.");
        return;
    }
    m_pPlayerlViewInside->_pushed(pNaviItem);
}

bool TslPlayerView::onPop() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(false);
    m_pPlayerlViewInside->_deactivateRotary();
    return true;
}

void TslPlayerView::onBecomeTop() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_activateRotary();
}

void TslPlayerView::showPlayViewUi() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_showPlayViewUi();
}

void TslPlayerView::hidePlayViewUi() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_hidePlayViewUi();
}

void TslPlayerView::enableVolumeButton() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_enableVolumeButton();
}

void TslPlayerView::disableVolumeButton() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_disableVolumeButton();
}

void TslPlayerView::createProgressTimer() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_createProgressTimer();
}

void TslPlayerView::destroyProgressTimer() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_destroyProgressTimer();
}

void TslPlayerView::setProgressValues(int nPlayedTime, int nDuration) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_setPlayedTime(nPlayedTime);
    m_pPlayerlViewInside->_setDurationTime(nDuration);
}

void TslPlayerView::changePlayButtonImageAsPlay() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_changeButtonImageAsPlay();
}

void TslPlayerView::changePlayButtonImageAsPause() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_changeButtonImageAsPause();
}

void TslPlayerView::changeVolumeButtonImageAsVolumeOn() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_changeVolumeButtonImageAsVolumeOn();
}

void TslPlayerView::changeVolumeButtonImageAsVolumeMute() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_changeVolumeButtonImageAsVolumeMute();
}

void TslPlayerView::changeDisplaymodeButtonImageAsFull() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_changeDisplaymodeButtonImageAsFull();
}

void TslPlayerView::changeDisplaymodeButtonImageAsLetterbox() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    m_pPlayerlViewInside->_changeDisplaymodeButtonImageAsLetterbox();
}
