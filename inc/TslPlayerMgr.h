#pragma once

#include <Ecore.h>

#include "TslMmPlayer.h"

/// State of the player; the platform's own numbers.
enum PlayStateType : int {
    PLAY_STATE_NONE = 0,   ///< no player, or the state could not be read
    PLAY_STATE_IDLE = 1,   ///< created, nothing prepared
    PLAY_STATE_READY = 2,  ///< prepared
    PLAY_STATE_PLAY = 3,
    PLAY_STATE_PAUSE = 4
};

/// A reader of a callback pipe, run on the main loop with user data, bytes and their count. A null
/// function stands for a missing reader.
using TslPipeCb = void (*)(void *pData, void *pBuffer, unsigned int nByte);

/// The gate to the platform's player: decides from the player's state whether a request may pass,
/// and brings the player's callbacks to the main loop.
///
/// Instances are empty and share one state: the first one creates it, the destruction of any of
/// them clears it for all. Main loop only. Unless stated otherwise an operation answers true, and
/// false (0, null) when there is no shared state, no player, or the player's state forbids it.
class TslPlayerMgr {
public:
    TslPlayerMgr();
    ~TslPlayerMgr();
    TslPlayerMgr(const TslPlayerMgr &) = delete;
    TslPlayerMgr &operator=(const TslPlayerMgr &) = delete;

    /// Creates the player and registers its callbacks; true also when a registration failed.
    /// @return false while there is a player
    bool createPlayer();
    /// Destroys the player, whatever it does. The pipes stay for the next one.
    bool destroyPlayer();

    /// Prepares synchronously, in idle; the prepared message is empty and comes on a later loop
    /// turn. Failures also go out as an error message.
    /// @param szItemPath  path or URI, copied
    bool ready(const char *szItemPath);
    /// Prepares asynchronously, in idle; the prepared message carries the bytes of the path.
    /// Failures also go out as an error message.
    /// @param szItemPath  path or URI, copied; null is refused
    bool readyAsync(const char *szItemPath);
    /// Starts or goes on, from ready onwards; asks the platform also while it plays.
    bool play();
    /// Whether the state admits it is left to the platform.
    bool pause();
    /// Stops and unprepares as far as the state asks for it; true whatever the platform answered.
    bool stop();

    /// Long-press seek: 2 s per second until cancelLongpressSeek(), which ends with an accurate
    /// seek. A running long press is neither restarted nor reversed.
    bool rewind();
    bool fastForward();
    bool cancelLongpressSeek();

    /// @param nPosition  milliseconds; @param bAccurate  comes back as first byte of the message
    bool setPosition(int nPosition, bool bAccurate);
    /// The same, with the completion on a pipe of its own.
    bool setPositionAsLatestPlayedPosition(int nPosition, bool bAccurate);
    /// While playing or paused; true also when the platform refuses the rate.
    /// @param nSpeedRate  0.5 to 1.5, 1.0 being the medium's own speed
    bool setPlaySpeedRate(float nSpeedRate);
    /// @param szSubtitlePath  file with subtitles, copied; null is refused
    bool setSubtitlePath(const char *szSubtitlePath);
    /// Shows or hides the video, from ready onwards.
    bool setDisplayVisible(bool bVisible);
    /// @param nDisplayMode  0 to 5; true also when the platform refuses the mode
    bool setDisplayMode(PlayerDisplayMode nDisplayMode);
    /// @param nDisplayRotation  0 to 3; anything else is sent as none
    bool setDisplayRotation(PlayerDisplayRotation nDisplayRotation);
    /// True also when the platform refuses the display.
    /// @param pDisplayId  handed to free() when the player's state is none, otherwise the caller's
    bool setDisplayID(void *pDisplayId, PlayerDisplayType type);
    /// @param pStreamInfo  stays with the caller; only tested
    bool setAudioPolicyInfo(void *pStreamInfo);
    /// @param fLeft, fRight  0.0 to 1.0
    bool setPlayerVolume(float fLeft, float fRight);

    /// @return milliseconds
    int getPosition();
    /// @return milliseconds
    int getDuration();
    /// @return PLAY_STATE_NONE without a player or when the state can't be read
    PlayStateType getPlayerState();
    /// @return PLAYER_DISPLAY_MODE_TYPE_INVALID without a player
    PlayerDisplayMode getDisplayMode();
    PlayerDisplayRotation getDisplayRotation();
    /// @return 0.0 to 1.0, -1.0 on failure
    float getVolumeLeft();
    float getVolumeRight();
    bool getDisplayVisible();
    /// @return heap copy that the caller frees, or null
    char *getVideoCodecInfo();
    bool getClosedCaptionExisted();

    /// Add operations: each replaces the pipe of an event by one with the given reader, which runs
    /// on the main loop with pUserData. They need no player, and the pipes outlive it.
    bool addCbPipeOfPlay(const TslPipeCb &pPreparedPipeCb, const TslPipeCb &pErrorPipeCb,
                         const TslPipeCb &pInterruptedPipeCb,
                         const TslPipeCb &pMissedPluginInfoPipeCb, void *pUserData);
    bool addCbPipeOfStream(const TslPipeCb &pBufferingPipeCb, const TslPipeCb &pPdMessagePipeCb,
                           void *pUserData);
    bool addCbPipeOfSubtitle(const TslPipeCb &pSubtitleUpdatedPipeCb, void *pUserData);
    bool addCbPipeOfCompletion(const TslPipeCb &pCompletedPipeCb, void *pUserData);
    /// False, and the old pipe stays, without a reader.
    bool addCbPipeOfSetPosition(const TslPipeCb &pSeekCompletedPipeCb, void *pUserData);
    /// False, and the old pipe stays, without a reader.
    bool addCbPipeOfSetPositionAsLatestPlayedPosition(
        const TslPipeCb &pSeekCompletedAsLatestPlayedPositionPipeCb, void *pUserData);
    /// The function runs on a thread of the platform, once per decoded frame.
    /// @param pUserData  passed to it; null is refused
    bool addCbOfVideoFrameDecode(player_media_packet_video_decoded_cb pVideoFrameDecodeCb,
                                 void *pUserData);
    /// The function isn't called any more afterwards.
    bool delCbOfVideoFrameDecode();
};
