#pragma once

#include "TSingleton.h"
#include "app-assist/WSignal.h"

/// What an emission on the bus tells. The payload is one word: nothing where none is named, an
/// integer itself (not a pointer to it), or a pointer that is valid during the emission.
enum TslSignalType {
    SIGNAL_WINDOW_ROTATION_0 = 5,
    SIGNAL_WINDOW_ROTATION_90 = 6,
    SIGNAL_WINDOW_ROTATION_180 = 7,
    SIGNAL_WINDOW_ROTATION_270 = 8,

    SIGNAL_PLAYER_PLAY = 9,
    SIGNAL_PLAYER_STOP = 10,
    SIGNAL_PLAYER_PAUSE = 12,
    SIGNAL_PLAYER_RESUME = 13,

    SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE = 15,
    SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE = 21,
    SIGNAL_SOUND_MGR_FADE_VOLUME = 22,      ///< float *, in the emitter's frame
    SIGNAL_PLAYER_VIEW_ROTARY_EVENT = 25,   ///< integer: 0 clockwise, 1 counter-clockwise, else -1
    SIGNAL_POPUP_MISSED_VIDEO_PLUGIN = 31,  ///< const char *, string id
    SIGNAL_POPUP_MISSED_AUDIO_PLUGIN = 32,  ///< const char *, string id
    SIGNAL_POPUP_ERROR_TOAST = 34,          ///< const char *, string id
    SIGNAL_POPUP_ERROR_ONE_BUTTON = 35,     ///< const char *, string id

    SIGNAL_SOUND_MGR_VOLUME_CHANGED = 38,  ///< integer: volume level
    SIGNAL_SOUND_MGR_ROUTE_CHANGED = 39,
    SIGNAL_SOUND_MGR_DEVICE_DISCONNECT = 40,

    SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW = 43,
    SIGNAL_PLAYER_VIEW_PROGRESS_TICK = 44,
    SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR = 45,  ///< integer: volume level
    SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR = 46,
    SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR = 47,

    SIGNAL_APP_TERMINATE = 50
};

extern template class app_assist::WSignal<void(TslSignalType, void *)>;

/// The process-wide bus on which views, the sound manager and the window tell the player's centre
/// what happened. Emission, addition and removal belong on the main loop.
class TslSignalMgr : public TSingleton<TslSignalMgr> {
public:
    ~TslSignalMgr() override;

    /// The one signal; it lives as long as the process.
    app_assist::WSignal<void(TslSignalType, void *)> &getSignal();

private:
    friend class TSingleton<TslSignalMgr>;
    TslSignalMgr();

    app_assist::WSignal<void(TslSignalType, void *)> m_signal;
};

extern template class TSingleton<TslSignalMgr>;
