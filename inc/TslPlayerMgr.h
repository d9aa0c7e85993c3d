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

    bool createPlayer();
    bool destroyPlayer();

    /// Prepares synchronously; the prepared message is empty and comes on a later loop turn.
    bool ready(const char *szItemPath);
    /// Prepares asynchronously; the prepared message carries the bytes of the path. Failures also
    /// go out as an error message.
    bool readyAsync(const char *szItemPath);
    bool play();
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
    /// True also when the platform refuses the rate.
    bool setPlaySpeedRate(float nSpeedRate);
    bool setSubtitlePath(const char *szSubtitlePath);
    bool setDisplayVisible(bool bVisible);
    /// @param nDisplayMode  0 to 5; true also when the platform refuses the mode
    bool setDisplayMode(PlayerDisplayMode nDisplayMode);
    bool setDisplayRotation(PlayerDisplayRotation nDisplayRotation);
    /// True also when the platform refuses the display.
    /// @param pDisplayId  handed to free() when the player's state is none, otherwise the caller's
    bool setDisplayID(void *pDisplayId, PlayerDisplayType type);
    bool setAudioPolicyInfo(void *pStreamInfo);
    /// @param fLeft, fRight  0.0 to 1.0
    bool setPlayerVolume(float fLeft, float fRight);

    /// @return milliseconds
    int getPosition();
    int getDuration();
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
    bool addCbOfVideoFrameDecode(player_media_packet_video_decoded_cb pVideoFrameDecodeCb,
                                 void *pUserData);
    bool delCbOfVideoFrameDecode();
};
