#pragma once

#include <Ecore.h>
#include <sound_manager.h>

#include <atomic>

/// What the device pipe carries.
enum TslDeviceNotice : int {
    DEVICE_NOTICE_ROUTE_CHANGED = 1,   ///< the platform reported a connection change
    DEVICE_NOTICE_EARJACK_LOST = 2,    ///< the earjack was connected and is gone
    DEVICE_NOTICE_BLUETOOTH_LOST = 4,  ///< the Bluetooth set was connected and is gone
};

/// The media stream with its focus, the volume, the devices, and the pipes that bring the
/// platform's reports to the main loop.
///
/// Main loop, except the three callbacks and what they call. The device fields are a snapshot that
/// both the main loop and the platform's thread rewrite without a lock: a reader may see them
/// cleared during a walk, and learns of a loss from the notices.
class TslSoundMgrInside {
public:
    TslSoundMgrInside();
    ~TslSoundMgrInside();
    TslSoundMgrInside(const TslSoundMgrInside &) = delete;
    TslSoundMgrInside &operator=(const TslSoundMgrInside &) = delete;

    bool _initAudioFocus();
    bool _deinitAudioFocus();
    void _initSoundMgrEnvironment();
    void _deinitSoundMgrEnvironment();
    void _createEcorePipe();
    void _destroyEcorePipe();

    bool _acquireAudioFocus();
    bool _releaseAudioFocus();

    bool _setVolume(int nVolume);
    int _getVolume();
    int _getMaxVolumeLevel();
    int _getSafetyVolumeLevel();
    char *_getA2dpName();
    /// Walks the list of external devices from scratch. Any thread.
    void _updateAudioEnableDeviceState();

    // Each copies into its pipe and answers whether that succeeded. Any thread.
    bool _writeEcorePipeToPause();
    bool _writeEcorePipeToResume();
    bool _writeEcorePipeToVolume(int nVolume);
    bool _writeEcorePipeToDeviceChanged(int nChangedDeviceNotice);

    // Callbacks of the platform, on its threads.
    static void _audioFocusCb(sound_stream_info_h pStreamInfo, sound_stream_focus_mask_e focusMask,
                              sound_stream_focus_state_e focusState,
                              sound_stream_focus_change_reason_e reason, int nSoundBehavior,
                              const char *szExtraInfo, void *pUserData);
    static void _volumeChangedCb(sound_type_e type, unsigned int nVolume, void *pUserData);
    static void _onDeviceConnectionChangedCb(sound_device_h pDevice, bool bConnected,
                                             void *pUserData);

    // Readers of the pipes, on the main loop.
    static void _PipeCbForPause(void *pUserData, void *pBuffer, unsigned int nByte);
    static void _PipeCbForResume(void *pUserData, void *pBuffer, unsigned int nByte);
    static void _PipeCbForVolumeChanged(void *pUserData, void *pBuffer, unsigned int nByte);
    static void _PipeCbForDeviceChanged(void *pUserData, void *pBuffer, unsigned int nByte);

    std::atomic<bool> m_bHdmiConnected{false};
    std::atomic<bool> m_bEarjackConnected{false};
    std::atomic<bool> m_bBluetoothConnected{false};
    int m_nMaxVolumeLevel = 0;
    std::atomic<int> m_nAvailableDeviceCount{0};
    int m_nDeviceConnectionCbId = 0;
    std::atomic<Ecore_Pipe *> m_pPipeToPause{nullptr};
    std::atomic<Ecore_Pipe *> m_pPipeToResume{nullptr};
    std::atomic<Ecore_Pipe *> m_pPipeToVolume{nullptr};
    std::atomic<Ecore_Pipe *> m_pPipeToDeviceChanged{nullptr};
    sound_stream_info_h m_pStreamInfo = nullptr;
};
