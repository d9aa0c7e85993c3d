#pragma once

#include <sound_manager.h>

class TslSoundMgrInside;

/// Audio focus, media volume and output devices. Reports of the platform come back as signals on
/// the bus, on the main loop.
///
/// Main loop only. Nothing here stops the program: a failure is logged and answered.
class TslSoundMgr {
public:
    TslSoundMgr();
    ~TslSoundMgr();
    TslSoundMgr(const TslSoundMgr &) = delete;
    TslSoundMgr &operator=(const TslSoundMgr &) = delete;

    /// @return false when another stream forbids it now, or on failure
    bool acquireAudioFocus();
    /// @return true also when there is no stream to give a focus back for; false on failure
    bool releaseAudioFocus();
    /// @return the stream information, which stays with this object; null when there is none
    sound_stream_info_h getAudioPolicyInfoToSetPlayerMgr();

    /// @return the highest media volume level, -1 on failure
    int getMaxVolumeLevel();
    /// @return the first level that counts as unsafe: fixed with an earjack or a Bluetooth set, one
    /// past the maximum otherwise; -1 on failure
    int getSafetyVolumeLevel();
    /// @param nVolume  level, passed on as it is
    /// @return false when the platform refuses it
    bool setVolume(int nVolume);
    /// @return the media volume level, -1 on failure
    int getVolume();
    /// @return heap copy that the caller frees, null when no Bluetooth set is connected
    char *getA2dpName();
    /// @return whether any external output device exists
    bool isSoundRouteAvailable();
    /// @return whether an earjack or a Bluetooth set is connected
    bool isConnectEarjackOrBluetooth();

private:
    TslSoundMgrInside *m_pTslSoundMgrHandle;
};
