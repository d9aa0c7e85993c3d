#pragma once

#include <player.h>

/// The program's number for an error of the platform's player.
enum PlayerErrorType : int {
    PLAYER_ERROR_TYPE_UNKNOWN = -1,
    PLAYER_ERROR_TYPE_NONE = 0,
    PLAYER_ERROR_TYPE_OUT_OF_MEMORY = 1,
    PLAYER_ERROR_TYPE_INVALID_PARAMETER = 2,
    PLAYER_ERROR_TYPE_NO_SUCH_FILE = 3,
    PLAYER_ERROR_TYPE_INVALID_OPERATION = 4,
    PLAYER_ERROR_TYPE_FILE_NO_SPACE_ON_DEVICE = 5,
    PLAYER_ERROR_TYPE_FEATURE_NOT_SUPPORTED_ON_DEVICE = 6,
    PLAYER_ERROR_TYPE_SEEK_FAILED = 7,
    PLAYER_ERROR_TYPE_INVALID_STATE = 8,
    PLAYER_ERROR_TYPE_NOT_SUPPORTED_FILE = 9,
    PLAYER_ERROR_TYPE_INVALID_URI = 10,
    PLAYER_ERROR_TYPE_SOUND_POLICY = 11,
    PLAYER_ERROR_TYPE_CONNECTION_FAILED = 12,
    PLAYER_ERROR_TYPE_VIDEO_CAPTURE_FAILED = 13,
    PLAYER_ERROR_TYPE_RESOURCE_LIMIT = 18,
    PLAYER_ERROR_TYPE_PERMISSION_DENIED = 19
};

/// How the video fills the display; the platform's own numbers.
enum PlayerDisplayMode : int {
    PLAYER_DISPLAY_MODE_TYPE_INVALID = -1,
    PLAYER_DISPLAY_MODE_TYPE_LETTER_BOX = 0,
    PLAYER_DISPLAY_MODE_TYPE_ORIGIN_SIZE = 1,
    PLAYER_DISPLAY_MODE_TYPE_FULL_SCREEN = 2,
    PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL = 3,
    PLAYER_DISPLAY_MODE_TYPE_ORIGIN_OR_LETTER = 4,
    PLAYER_DISPLAY_MODE_TYPE_DST_ROI = 5
};

/// Clockwise rotation of the video; the platform's own numbers.
enum PlayerDisplayRotation : int {
    PLAYER_DISPLAY_ROTATION_TYPE_NONE = 0,
    PLAYER_DISPLAY_ROTATION_TYPE_90 = 1,
    PLAYER_DISPLAY_ROTATION_TYPE_180 = 2,
    PLAYER_DISPLAY_ROTATION_TYPE_270 = 3
};

/// Where the video is shown; not the platform's numbers.
enum PlayerDisplayType : int {
    PLAYER_DISPLAY_TYPE_OF_EVAS = 0,    ///< no display is handed on
    PLAYER_DISPLAY_TYPE_OF_OVERLAY = 1  ///< the video plane of a window
};

/// The platform's player reduced to true and false, with one log line per failure.
///
/// Instances are empty: all of them work on the one platform handle of the process, which the
/// constructor creates and the destructor destroys. Main loop only, except getPlayerErrorType().
/// Without a handle every operation logs and answers its failure value.
class TslMmPlayer {
public:
    TslMmPlayer();
    ~TslMmPlayer();
    TslMmPlayer(const TslMmPlayer &) = delete;
    TslMmPlayer &operator=(const TslMmPlayer &) = delete;

    /// @return the program's number of a platform error, PLAYER_ERROR_TYPE_UNKNOWN for a value that
    /// has none. Any thread.
    static PlayerErrorType getPlayerErrorType(int nPlatformError);
    /// @return the platform's number of a program error, 0 for a type that has none. Any thread.
    static int getPlatformErrorCode(int nPlayerErrorType);

    // Transport. Which state admits which operation is for the platform to say: a refusal is
    // logged and answered with false.
    bool start();
    bool stop();
    bool pause();
    bool prepare();
    bool unprepare();
    /// @param cb  called once, on a thread of the platform, with pUserData
    bool prepareAsync(player_prepared_cb cb, void *pUserData);
    /// @param szUri  path or URI, copied; null is refused
    bool setUri(const char *szUri);
    /// @param nPosition  milliseconds from the start
    /// @param bAccurate  false when the nearest key frame will do
    /// @param cb         called once on a thread of the platform, which then owns pUserData
    bool setPosition(int nPosition, bool bAccurate, player_seek_completed_cb cb, void *pUserData);

    // Callbacks, run on threads of the platform with pUserData until they are unset or replaced. A
    // null function is refused. The one for missed plug-ins can't be unset.
    bool setErrorCb(player_error_cb cb, void *pUserData);
    bool setBufferingCb(player_buffering_cb cb, void *pUserData);
    bool setCompletedCb(player_completed_cb cb, void *pUserData);
    bool setInterruptedCb(player_interrupted_cb cb, void *pUserData);
    bool setSubtitleUpdatedCb(player_subtitle_updated_cb cb, void *pUserData);
    bool setProgressiveDownloadMessageCb(player_pd_message_cb cb, void *pUserData);
    bool setMediaPacketVideoFrameDecodeCb(player_media_packet_video_decoded_cb cb, void *pUserData);
    bool setMissedPluginInfoCb(player_missed_plugin_info_cb cb, void *pUserData);
    bool unsetErrorCb();
    bool unsetBufferingCb();
    bool unsetCompletedCb();
    bool unsetInterruptedCb();
    bool unsetSubtitleUpdatedCb();
    bool unsetProgressiveDownloadMessageCb();
    bool unsetMediaPacketVideoFrameDecodeCb();

    /// Shows or hides the video.
    bool setDisplayVisible(bool bVisible);
    /// @param szPath  null removes the subtitles
    bool setSubtitlePath(const char *szPath);
    /// @param nOffset  milliseconds
    bool setSubtitlePositionOffset(int nOffset);
    /// @param szCookie  copied; null is refused
    bool setStreamingCookie(const char *szCookie);
    /// @param szUserAgent  copied; null is refused
    bool setStreamingUserAgent(const char *szUserAgent);
    /// A mode out of range is sent as letter box.
    bool setDisplayMode(PlayerDisplayMode mode);
    /// @param nSize  bytes
    /// @param pData  stays with the caller and must outlive the playback
    bool setMemoryBuffer(int nSize, const void *pData);
    /// @param szPath  file to download to, copied; null is refused
    bool setProgressiveDownloadPath(const char *szPath);
    /// A rotation out of range is sent as none.
    bool setDisplayRotation(PlayerDisplayRotation rotation);
    /// @param fLeft, fRight  0.0 to 1.0
    bool setPlayerVolume(float fLeft, float fRight);
    /// @param pDisplay  stays with the caller; not null
    bool setDisplayType(PlayerDisplayType type, void *pDisplay);
    bool setRichAudio();
    /// @param fRate  0.5 to 1.5; outside of it nothing is called and the result is false
    bool setPlayRate(float fRate);
    bool setSyncHandler(bool bEnable);
    /// Only tests its argument: the stream information is not bound to the player.
    bool setAudioPolicyInfo(void *pStreamInfo);

    /// @return milliseconds, 0 on failure
    int getDuration();
    /// @return pixels, 0 on failure
    int getVideoWidth();
    /// @return pixels, 0 on failure
    int getVideoHeight();
    /// @return milliseconds, 0 on failure
    int getPosition();
    /// @return 0.0 to 1.0, -1.0 on failure
    float getVolumeLeft();
    /// @return 0.0 to 1.0, -1.0 on failure
    float getVolumeRight();
    /// @return heap copy that the caller frees, null on failure
    char *getAudioCodecInfo();
    /// @return heap copy that the caller frees, null on failure
    char *getVideoCodecInfo();
    bool getDisplayVisible();
    /// @param[out] pStart, pCurrent  percent
    bool getStreamingDownloadProgress(int *pStart, int *pCurrent);
    /// @param[out] pCurrent, pTotalSize  bytes
    bool getProgressiveDownloadStatus(unsigned long *pCurrent, unsigned long *pTotalSize);
    /// @return the platform's state number, 1 to 4; 0 on failure or for any other state
    int getState();
    /// @return letter box on failure or for a mode out of range
    PlayerDisplayMode getDisplayMode();
    /// @return none on failure or for a rotation out of range
    PlayerDisplayRotation getDisplayRotation();
    bool getClosedCaptionExisted();
    /// @param cb  called on a thread of the platform
    bool captureVideo(player_video_captured_cb cb, void *pUserData);

private:
    bool _createPlayer();
    bool _destroyPlayer();
    void _playerErrorPrint(int nPlatformError);
};
