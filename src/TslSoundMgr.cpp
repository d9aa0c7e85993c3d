#include "TslSoundMgr.h"

#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "TslLog.h"
#include "TslSignalMgr.h"
#include "TslSoundMgrInside.h"

namespace {

const int FADE_STEPS = 20;
const float FADE_STEP = 20.0F;
const float FADE_TOP = 400.0F;
const useconds_t FADE_STEP_TIME = 50000;  // microseconds

const int SAFETY_VOLUME_LEVEL = 9;

int s_nLastVolume = -1;

void deletePipe(std::atomic<Ecore_Pipe *> &slot) {
    Ecore_Pipe *pPipe = slot.load(std::memory_order_relaxed);
    if (pPipe == nullptr) {
        return;
    }
    // Emptied first: a writer that comes now gives up instead of writing to a pipe that goes.
    slot.store(nullptr, std::memory_order_release);
    ecore_pipe_del(pPipe);
}

bool writeValue(Ecore_Pipe *pPipe, int nValue) {
    auto *pMessage = static_cast<int *>(calloc(1, sizeof(int)));
    if (pMessage == nullptr) {
        return false;
    }
    *pMessage = nValue;
    const bool bWritten = ecore_pipe_write(pPipe, pMessage, sizeof(int)) == EINA_TRUE;
    free(pMessage);
    return bWritten;
}

void emitSignal(TslSignalType type, void *pPayload) {
    TslSignalMgr::getInstance()->getSignal().emit(type, pPayload);
}

void emitFadeStep(float fVolume) {
    usleep(FADE_STEP_TIME);
    emitSignal(SIGNAL_SOUND_MGR_FADE_VOLUME, &fVolume);
}

void fadeOut() {
    for (int nStep = 1; nStep <= FADE_STEPS; ++nStep) {
        emitFadeStep(FADE_TOP - FADE_STEP * static_cast<float>(nStep));
    }
}

void fadeIn() {
    for (int nStep = 1; nStep <= FADE_STEPS; ++nStep) {
        emitFadeStep(FADE_STEP * static_cast<float>(nStep));
    }
}

}  // namespace

// ---- TslSoundMgrInside: life

TslSoundMgrInside::TslSoundMgrInside() {
    TslInfo("");
    _updateAudioEnableDeviceState();
    _initAudioFocus();
    _initSoundMgrEnvironment();
    _createEcorePipe();
}

TslSoundMgrInside::~TslSoundMgrInside() {
    TslInfo("");
    _releaseAudioFocus();
    _destroyEcorePipe();
    _deinitSoundMgrEnvironment();
    _deinitAudioFocus();
}

bool TslSoundMgrInside::_initAudioFocus() {
    TslInfo("");
    if (m_pStreamInfo != nullptr) {
        TslWarn("m_pStreamInfo is already existed.");
        return true;
    }
    const int nRet = sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA, _audioFocusCb,
                                                             this, &m_pStreamInfo);
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError(
            "It is failed to create streaming information. - "
            "sound_manager_create_stream_information()");
        return false;
    }
    return true;
}

bool TslSoundMgrInside::_deinitAudioFocus() {
    TslInfo("");
    if (m_pStreamInfo == nullptr) {
        TslWarn("m_pStreamInfo is already not existed.");
        return true;
    }
    const int nRet = sound_manager_destroy_stream_information(m_pStreamInfo);
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError(
            "It is failed to destroy streaming information. - "
            "sound_manager_destroy_stream_information()");
        return false;
    }
    m_pStreamInfo = nullptr;
    return true;
}

void TslSoundMgrInside::_initSoundMgrEnvironment() {
    TslInfo("");
    if (sound_manager_set_safety_volume(0) != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_set_safety_volume is failed.");
    }
    if (sound_manager_set_volume_changed_cb(_volumeChangedCb, this) != SOUND_MANAGER_ERROR_NONE) {
        TslError("Error: sound_manager_set_volume_changed_cb is failed.");
    }
    if (sound_manager_add_device_connection_changed_cb(
            SOUND_DEVICE_TYPE_EXTERNAL_MASK, _onDeviceConnectionChangedCb, this,
            &m_nDeviceConnectionCbId) != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_add_device_connection_changed_cb is failed.");
    }
}

void TslSoundMgrInside::_deinitSoundMgrEnvironment() {
    TslInfo("");
    sound_type_e type = SOUND_TYPE_SYSTEM;
    if (sound_manager_get_current_sound_type(&type) != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_get_current_sound_type fail");
    } else if (type != SOUND_TYPE_MEDIA) {
        TslInfo("There is not SOUND_TYPE_MEDIA.");
    }
    if (sound_manager_unset_safety_volume() != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_unset_safety_volume fail");
    }
    if (sound_manager_unset_current_sound_type() != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_unset_current_sound_type fail");
    }
    sound_manager_remove_device_connection_changed_cb(m_nDeviceConnectionCbId);
    sound_manager_unset_volume_changed_cb();
}

void TslSoundMgrInside::_createEcorePipe() {
    TslInfo("");
    _destroyEcorePipe();
    m_pPipeToPause.store(ecore_pipe_add(_PipeCbForPause, this), std::memory_order_release);
    m_pPipeToResume.store(ecore_pipe_add(_PipeCbForResume, this), std::memory_order_release);
    m_pPipeToVolume.store(ecore_pipe_add(_PipeCbForVolumeChanged, this), std::memory_order_release);
    m_pPipeToDeviceChanged.store(ecore_pipe_add(_PipeCbForDeviceChanged, this),
                                 std::memory_order_release);
}

void TslSoundMgrInside::_destroyEcorePipe() {
    TslInfo("");
    deletePipe(m_pPipeToPause);
    deletePipe(m_pPipeToResume);
    deletePipe(m_pPipeToVolume);
    deletePipe(m_pPipeToDeviceChanged);
}

// ---- TslSoundMgrInside: audio focus

bool TslSoundMgrInside::_acquireAudioFocus() {
    TslInfo("");
    const int nRet = sound_manager_acquire_focus(m_pStreamInfo, SOUND_STREAM_FOCUS_FOR_PLAYBACK,
                                                 SOUND_BEHAVIOR_NO_RESUME, nullptr);
    if (nRet == SOUND_MANAGER_ERROR_POLICY) {
        TslWarn("It is not possible to acquire audio focus.");
        return false;
    }
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError("It is failed to acquire audio focus. sound_manager_acquire_focus() - %d", nRet);
        return false;
    }
    return true;
}

bool TslSoundMgrInside::_releaseAudioFocus() {
    TslInfo("");
    if (m_pStreamInfo == nullptr) {
        TslWarn("m_pStreamInfo is already not existed.");
        return true;
    }
    const int nRet = sound_manager_release_focus(m_pStreamInfo, SOUND_STREAM_FOCUS_FOR_PLAYBACK,
                                                 SOUND_BEHAVIOR_NO_RESUME, nullptr);
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError("It is failed to release audio focus. sound_manager_release_focus() - %d", nRet);
        return false;
    }
    return true;
}

void TslSoundMgrInside::_audioFocusCb(sound_stream_info_h pStreamInfo, sound_stream_focus_mask_e,
                                      sound_stream_focus_state_e focusState,
                                      sound_stream_focus_change_reason_e, int nSoundBehavior,
                                      const char *, void *pUserData) {
    TslInfo("");
    if (pUserData == nullptr) {
        TslError("pUserData(Object of TslSoundMgrInside) is not existed.");
        return;
    }
    auto *pInside = static_cast<TslSoundMgrInside *>(pUserData);
    const bool bFading = (nSoundBehavior & SOUND_BEHAVIOR_FADING) != 0;

    if (focusState == SOUND_STREAM_FOCUS_STATE_RELEASED) {
        if (bFading) {
            fadeOut();
        }
        if (!pInside->_writeEcorePipeToPause()) {
            TslError("It is failed to send pause signal.");
        }
        if ((nSoundBehavior & SOUND_BEHAVIOR_NO_RESUME) != 0) {
            sound_manager_set_focus_reacquisition(pStreamInfo, false);
        }
        return;
    }

    if (!pInside->_writeEcorePipeToResume()) {
        TslError("It is failed to send resume signal.");
    }
    if (bFading) {
        fadeIn();
    }
}

bool TslSoundMgrInside::_writeEcorePipeToPause() {
    TslInfo("");
    Ecore_Pipe *pPipe = m_pPipeToPause.load(std::memory_order_acquire);
    if (pPipe == nullptr) {
        TslError("m_pPipeToPause is not existed.");
        return false;
    }
    if (ecore_pipe_write(pPipe, nullptr, 0) == EINA_FALSE) {
        TslError("ecore_pipe_write for pause is failed.");
        return false;
    }
    return true;
}

bool TslSoundMgrInside::_writeEcorePipeToResume() {
    TslInfo("");
    Ecore_Pipe *pPipe = m_pPipeToResume.load(std::memory_order_acquire);
    if (pPipe == nullptr) {
        TslError("m_pPipeToResume is not existed.");
        return false;
    }
    if (ecore_pipe_write(pPipe, nullptr, 0) == EINA_FALSE) {
        TslError("ecore_pipe_write for resume is failed.");
        return false;
    }
    return true;
}

void TslSoundMgrInside::_PipeCbForPause(void *pUserData, void *, unsigned int) {
    TslInfo("");
    if (pUserData == nullptr) {
        TslError("There is no TslSoundMgrInside handle. It may be destroied.");
        return;
    }
    emitSignal(SIGNAL_PLAYER_PAUSE, nullptr);
}

void TslSoundMgrInside::_PipeCbForResume(void *pUserData, void *, unsigned int) {
    TslInfo("");
    if (pUserData == nullptr) {
        TslError("There is no TslSoundMgrInside handle. It may be destroied.");
        return;
    }
    emitSignal(SIGNAL_PLAYER_RESUME, nullptr);
}

// ---- TslSoundMgrInside: volume

bool TslSoundMgrInside::_setVolume(int nVolume) {
    TslInfo("nVolume : %d", nVolume);
    const int nRet = sound_manager_set_volume(SOUND_TYPE_MEDIA, nVolume);
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_set_volume().. [0x%x]", nRet);
        return false;
    }
    return true;
}

int TslSoundMgrInside::_getVolume() {
    int nVolume = 0;
    const int nRet = sound_manager_get_volume(SOUND_TYPE_MEDIA, &nVolume);
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_get_volume().. [0x%x]", nRet);
        return -1;
    }
    TslInfo("nVolume : %d", nVolume);
    return nVolume;
}

int TslSoundMgrInside::_getMaxVolumeLevel() {
    const int nRet = sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &m_nMaxVolumeLevel);
    if (nRet != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_get_max_volume().. [0x%x]", nRet);
        return -1;
    }
    TslInfo("m_nMaxVolumeLevel : %d", m_nMaxVolumeLevel);
    return m_nMaxVolumeLevel;
}

int TslSoundMgrInside::_getSafetyVolumeLevel() {
    _updateAudioEnableDeviceState();
    const int nMaxVolumeLevel = _getMaxVolumeLevel();
    int nSafetyVolumeLevel = nMaxVolumeLevel + 1;
    if (m_bBluetoothConnected.load(std::memory_order_relaxed) ||
        m_bEarjackConnected.load(std::memory_order_relaxed)) {
        TslInfo("BT headset or Earjack is connected.");
        nSafetyVolumeLevel = SAFETY_VOLUME_LEVEL;
    }
    TslInfo("safety volume level : %d", nSafetyVolumeLevel);
    return nSafetyVolumeLevel;
}

void TslSoundMgrInside::_volumeChangedCb(sound_type_e type, unsigned int nVolume, void *pUserData) {
    if (pUserData == nullptr) {
        TslError("pUserData(Handle of TslSoundMgrInside) is not existed.");
        return;
    }
    if (type != SOUND_TYPE_MEDIA) {
        return;
    }
    auto *pInside = static_cast<TslSoundMgrInside *>(pUserData);
    TslInfo("nVolume: %d", static_cast<int>(nVolume));
    if (!pInside->_writeEcorePipeToVolume(static_cast<int>(nVolume))) {
        TslError("It is failed to send volume signal.");
    }
}

bool TslSoundMgrInside::_writeEcorePipeToVolume(int nVolume) {
    TslInfo("");
    Ecore_Pipe *pPipe = m_pPipeToVolume.load(std::memory_order_acquire);
    if (pPipe == nullptr) {
        TslError("m_pPipeToVolume is not existed.");
        return false;
    }
    if (!writeValue(pPipe, nVolume)) {
        TslError("ecore_pipe_write for volume is failed.");
        return false;
    }
    return true;
}

void TslSoundMgrInside::_PipeCbForVolumeChanged(void *pUserData, void *pBuffer, unsigned int) {
    TslInfo("");
    if (pUserData == nullptr) {
        TslError("There is no TslSoundMgrInside handle. It may be destroied.");
        return;
    }
    const int nVolume = *static_cast<int *>(pBuffer);
    if (nVolume == s_nLastVolume) {
        TslInfo("Volume has not been changed yet.");
        return;
    }
    s_nLastVolume = nVolume;
    emitSignal(SIGNAL_SOUND_MGR_VOLUME_CHANGED,
               reinterpret_cast<void *>(static_cast<std::intptr_t>(nVolume)));
}

// ---- TslSoundMgrInside: devices

void TslSoundMgrInside::_updateAudioEnableDeviceState() {
    TslInfo("");
    m_bHdmiConnected.store(false, std::memory_order_relaxed);
    m_bEarjackConnected.store(false, std::memory_order_relaxed);
    m_bBluetoothConnected.store(false, std::memory_order_relaxed);
    m_nAvailableDeviceCount.store(0, std::memory_order_relaxed);

    sound_device_list_h pDeviceList = nullptr;
    if (sound_manager_get_device_list(SOUND_DEVICE_TYPE_EXTERNAL_MASK, &pDeviceList) ==
        SOUND_MANAGER_ERROR_NONE) {
        sound_device_h pDevice = nullptr;
        while (sound_manager_get_next_device(pDeviceList, &pDevice) == SOUND_MANAGER_ERROR_NONE) {
            sound_device_type_e type = SOUND_DEVICE_BUILTIN_SPEAKER;
            sound_manager_get_device_type(pDevice, &type);
            if (type == SOUND_DEVICE_BLUETOOTH) {
                m_bBluetoothConnected.store(true, std::memory_order_relaxed);
            } else if (type == SOUND_DEVICE_HDMI) {
                m_bHdmiConnected.store(true, std::memory_order_relaxed);
            } else if (type == SOUND_DEVICE_AUDIO_JACK) {
                m_bEarjackConnected.store(true, std::memory_order_relaxed);
            }
            m_nAvailableDeviceCount.fetch_add(1, std::memory_order_relaxed);
        }
    }
    if (pDeviceList != nullptr) {
        const int nRet = sound_manager_free_device_list(pDeviceList);
        if (nRet != SOUND_MANAGER_ERROR_NONE) {
            TslError("It is failed to free device list: [%d]", nRet);
        }
    }
}

char *TslSoundMgrInside::_getA2dpName() {
    TslInfo("");
    bool bConnected = false;
    char *szName = nullptr;
    if (sound_manager_get_a2dp_status(&bConnected, &szName) != SOUND_MANAGER_ERROR_NONE) {
        TslError("sound_manager_get_a2dp_status fail");
        free(szName);
        return nullptr;
    }
    if (!bConnected) {
        TslError("Not connected BT");
        free(szName);
        return nullptr;
    }
    return szName;
}

void TslSoundMgrInside::_onDeviceConnectionChangedCb(sound_device_h, bool, void *pUserData) {
    TslInfo("");
    if (pUserData == nullptr) {
        TslError("pUserData is not existed.");
        return;
    }
    auto *pInside = static_cast<TslSoundMgrInside *>(pUserData);
    const bool bEarjack = pInside->m_bEarjackConnected.load(std::memory_order_relaxed);
    const bool bBluetooth = pInside->m_bBluetoothConnected.load(std::memory_order_relaxed);
    if (!pInside->_writeEcorePipeToDeviceChanged(DEVICE_NOTICE_ROUTE_CHANGED)) {
        TslError("It is failed to send device changed signal.");
    }
    pInside->_updateAudioEnableDeviceState();
    if (bEarjack && !pInside->m_bEarjackConnected.load(std::memory_order_relaxed)) {
        if (!pInside->_writeEcorePipeToDeviceChanged(DEVICE_NOTICE_EARJACK_LOST)) {
            TslError("It is failed to send device changed signal.");
        }
    }
    if (bBluetooth && !pInside->m_bBluetoothConnected.load(std::memory_order_relaxed)) {
        if (!pInside->_writeEcorePipeToDeviceChanged(DEVICE_NOTICE_BLUETOOTH_LOST)) {
            TslError("It is failed to send device changed signal.");
        }
    }
}

bool TslSoundMgrInside::_writeEcorePipeToDeviceChanged(int nChangedDeviceNotice) {
    TslInfo("");
    Ecore_Pipe *pPipe = m_pPipeToDeviceChanged.load(std::memory_order_acquire);
    if (pPipe == nullptr) {
        TslError("m_pPipeToDeviceChanged is not existed.");
        return false;
    }
    if (!writeValue(pPipe, nChangedDeviceNotice)) {
        TslError("ecore_pipe_write for device changed is failed.");
        return false;
    }
    return true;
}

void TslSoundMgrInside::_PipeCbForDeviceChanged(void *pUserData, void *pBuffer, unsigned int) {
    if (pUserData == nullptr) {
        TslError("There is no TslSoundMgrInside handle. It may be destroied.");
        return;
    }
    const int nChangedDeviceNotice = *static_cast<int *>(pBuffer);
    TslInfo("nChangedDeviceNotice %d", nChangedDeviceNotice);
    switch (nChangedDeviceNotice) {
    case DEVICE_NOTICE_ROUTE_CHANGED:
        emitSignal(SIGNAL_SOUND_MGR_ROUTE_CHANGED, nullptr);
        break;
    case DEVICE_NOTICE_EARJACK_LOST:
    case DEVICE_NOTICE_BLUETOOTH_LOST:
        emitSignal(SIGNAL_SOUND_MGR_DEVICE_DISCONNECT, nullptr);
        break;
    default:
        break;
    }
}

// ---- TslSoundMgr

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_INSIDE(failure)                 \
    if (m_pTslSoundMgrHandle == nullptr) {             \
        TslError("There is no m_pTslSoundMgrHandle."); \
        return failure;                                \
    }

TslSoundMgr::TslSoundMgr() : m_pTslSoundMgrHandle(nullptr) {
    TslInfo("");
    m_pTslSoundMgrHandle = new TslSoundMgrInside;
}

TslSoundMgr::~TslSoundMgr() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    delete m_pTslSoundMgrHandle;
    m_pTslSoundMgrHandle = nullptr;
}

bool TslSoundMgr::acquireAudioFocus() {
    RETURN_WITHOUT_INSIDE(false);
    return m_pTslSoundMgrHandle->_acquireAudioFocus();
}

bool TslSoundMgr::releaseAudioFocus() {
    RETURN_WITHOUT_INSIDE(false);
    return m_pTslSoundMgrHandle->_releaseAudioFocus();
}

sound_stream_info_h TslSoundMgr::getAudioPolicyInfoToSetPlayerMgr() {
    RETURN_WITHOUT_INSIDE(nullptr);
    if (m_pTslSoundMgrHandle->m_pStreamInfo == nullptr) {
        TslWarn("pSoundMgrInside->m_pStreamInfo is nullptr");
        return nullptr;
    }
    return m_pTslSoundMgrHandle->m_pStreamInfo;
}

int TslSoundMgr::getMaxVolumeLevel() {
    RETURN_WITHOUT_INSIDE(-1);
    return m_pTslSoundMgrHandle->_getMaxVolumeLevel();
}

int TslSoundMgr::getSafetyVolumeLevel() {
    RETURN_WITHOUT_INSIDE(-1);
    return m_pTslSoundMgrHandle->_getSafetyVolumeLevel();
}

bool TslSoundMgr::setVolume(int nVolume) {
    RETURN_WITHOUT_INSIDE(false);
    return m_pTslSoundMgrHandle->_setVolume(nVolume);
}

int TslSoundMgr::getVolume() {
    RETURN_WITHOUT_INSIDE(-1);
    return m_pTslSoundMgrHandle->_getVolume();
}

char *TslSoundMgr::getA2dpName() {
    RETURN_WITHOUT_INSIDE(nullptr);
    return m_pTslSoundMgrHandle->_getA2dpName();
}

bool TslSoundMgr::isSoundRouteAvailable() {
    RETURN_WITHOUT_INSIDE(false);
    m_pTslSoundMgrHandle->_updateAudioEnableDeviceState();
    return m_pTslSoundMgrHandle->m_nAvailableDeviceCount.load(std::memory_order_relaxed) > 0;
}

bool TslSoundMgr::isConnectEarjackOrBluetooth() {
    RETURN_WITHOUT_INSIDE(false);
    m_pTslSoundMgrHandle->_updateAudioEnableDeviceState();
    return m_pTslSoundMgrHandle->m_bBluetoothConnected.load(std::memory_order_relaxed) ||
           m_pTslSoundMgrHandle->m_bEarjackConnected.load(std::memory_order_relaxed);
}
