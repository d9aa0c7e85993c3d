#include "TslMmPlayer.h"

#include <cstdlib>
#include <cstring>

#include "TslLog.h"

namespace {

player_h s_pPlayerHandle = nullptr;

struct PlayerErrorRow {
    PlayerErrorType type;
    int nPlatformError;
    const char *szName;  ///< null: printed as a value without a row
};

const PlayerErrorRow PLAYER_ERROR_TABLE[] = {
    {PLAYER_ERROR_TYPE_NONE, PLAYER_ERROR_NONE, "PLAYER_ERROR_NONE"},
    {PLAYER_ERROR_TYPE_OUT_OF_MEMORY, PLAYER_ERROR_OUT_OF_MEMORY, "PLAYER_ERROR_OUT_OF_MEMORY"},
    {PLAYER_ERROR_TYPE_INVALID_PARAMETER, PLAYER_ERROR_INVALID_PARAMETER,
     "PLAYER_ERROR_INVALID_PARAMETER"},
    {PLAYER_ERROR_TYPE_NO_SUCH_FILE, PLAYER_ERROR_NO_SUCH_FILE, "PLAYER_ERROR_NO_SUCH_FILE"},
    {PLAYER_ERROR_TYPE_INVALID_OPERATION, PLAYER_ERROR_INVALID_OPERATION,
     "PLAYER_ERROR_INVALID_OPERATION"},
    {PLAYER_ERROR_TYPE_FILE_NO_SPACE_ON_DEVICE, PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE,
     "PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE"},
    {PLAYER_ERROR_TYPE_FEATURE_NOT_SUPPORTED_ON_DEVICE,
     PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE, nullptr},
    {PLAYER_ERROR_TYPE_SEEK_FAILED, PLAYER_ERROR_SEEK_FAILED, "PLAYER_ERROR_SEEK_FAILED"},
    {PLAYER_ERROR_TYPE_INVALID_STATE, PLAYER_ERROR_INVALID_STATE, "PLAYER_ERROR_INVALID_STATE"},
    {PLAYER_ERROR_TYPE_NOT_SUPPORTED_FILE, PLAYER_ERROR_NOT_SUPPORTED_FILE,
     "PLAYER_ERROR_NOT_SUPPORTED_FILE"},
    {PLAYER_ERROR_TYPE_INVALID_URI, PLAYER_ERROR_INVALID_URI, "PLAYER_ERROR_INVALID_URI"},
    {PLAYER_ERROR_TYPE_SOUND_POLICY, PLAYER_ERROR_SOUND_POLICY, "PLAYER_ERROR_SOUND_POLICY"},
    {PLAYER_ERROR_TYPE_CONNECTION_FAILED, PLAYER_ERROR_CONNECTION_FAILED,
     "PLAYER_ERROR_CONNECTION_FAILED"},
    {PLAYER_ERROR_TYPE_VIDEO_CAPTURE_FAILED, PLAYER_ERROR_VIDEO_CAPTURE_FAILED,
     "PLAYER_ERROR_VIDEO_CAPTURE_FAILED"},
    {PLAYER_ERROR_TYPE_RESOURCE_LIMIT, PLAYER_ERROR_RESOURCE_LIMIT, "PLAYER_ERROR_RESOURCE_LIMIT"},
    {PLAYER_ERROR_TYPE_PERMISSION_DENIED, PLAYER_ERROR_PERMISSION_DENIED,
     "PLAYER_ERROR_PERMISSION_DENIED"},
};

const float MIN_PLAY_RATE = 0.5F;
const float MAX_PLAY_RATE = 1.5F;

// The platform's enumerations are C's: what it writes into one may be any number, which C++ must
// not read as an enumerator.
template <typename Enumeration>
int toNumber(const Enumeration &enumeration) {
    static_assert(sizeof(Enumeration) == sizeof(int), "an enumeration of C is an int");
    int nNumber = 0;
    memcpy(&nNumber, &enumeration, sizeof(nNumber));
    return nNumber;
}

bool isDisplayMode(int nMode) {
    return nMode >= PLAYER_DISPLAY_MODE_LETTER_BOX && nMode <= PLAYER_DISPLAY_MODE_DST_ROI;
}

bool isDisplayRotation(int nRotation) {
    return nRotation >= PLAYER_DISPLAY_ROTATION_NONE && nRotation <= PLAYER_DISPLAY_ROTATION_270;
}

}  // namespace

// Macros, because a log line names the function that it stands in.

#define RETURN_WITHOUT_HANDLE(failure)        \
    if (s_pPlayerHandle == nullptr) {         \
        TslError("PlayerHandle is nullptr."); \
        return failure;                       \
    }

#define RETURN_IF_NULL(pointer, failure, message) \
    if ((pointer) == nullptr) {                   \
        TslError(message);                        \
        return failure;                           \
    }

// Calls the platform and, on failure, logs its name and result and returns.
#define CALL_PLAYER(failure, function, ...)                  \
    do {                                                     \
        const int nRet = function(__VA_ARGS__);              \
        if (nRet != PLAYER_ERROR_NONE) {                     \
            TslError(#function "() failed .. [0x%x]", nRet); \
            _playerErrorPrint(nRet);                         \
            return failure;                                  \
        }                                                    \
    } while (0)

TslMmPlayer::TslMmPlayer() {
    TslInfo("");
    if (!_createPlayer()) {
        TslError("Fail to Create Player Handle.");
    }
}

TslMmPlayer::~TslMmPlayer() {
    TslInfo("");
    unsetErrorCb();
    unsetBufferingCb();
    unsetCompletedCb();
    unsetInterruptedCb();
    unsetSubtitleUpdatedCb();
    unsetProgressiveDownloadMessageCb();
    unsetMediaPacketVideoFrameDecodeCb();
    if (!_destroyPlayer()) {
        TslError("Fail to Destroy Player Handle.");
    }
}

bool TslMmPlayer::_createPlayer() {
    TslInfo("");
    if (s_pPlayerHandle != nullptr) {
        TslWarn("PlayerHandle has been existed already. Need to destroy it.");
        _destroyPlayer();
    }
    player_h pPlayerHandle = nullptr;
    CALL_PLAYER(false, player_create, &pPlayerHandle);
    if (pPlayerHandle == nullptr) {
        TslError("player_create() failed .. [0x%x]", PLAYER_ERROR_NONE);
        return false;
    }
    s_pPlayerHandle = pPlayerHandle;
    return true;
}

bool TslMmPlayer::_destroyPlayer() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_destroy, s_pPlayerHandle);
    s_pPlayerHandle = nullptr;
    return true;
}

PlayerErrorType TslMmPlayer::getPlayerErrorType(int nPlatformError) {
    for (const PlayerErrorRow &row : PLAYER_ERROR_TABLE) {
        if (row.nPlatformError == nPlatformError) {
            return row.type;
        }
    }
    return PLAYER_ERROR_TYPE_UNKNOWN;
}

int TslMmPlayer::getPlatformErrorCode(int nPlayerErrorType) {
    for (const PlayerErrorRow &row : PLAYER_ERROR_TABLE) {
        if (row.type == nPlayerErrorType) {
            return row.nPlatformError;
        }
    }
    return PLAYER_ERROR_NONE;
}

void TslMmPlayer::_playerErrorPrint(int nPlatformError) {
    for (const PlayerErrorRow &row : PLAYER_ERROR_TABLE) {
        if (row.nPlatformError != nPlatformError || row.szName == nullptr) {
            continue;
        }
        TslError("%s", row.szName);
        if (row.type == PLAYER_ERROR_TYPE_INVALID_STATE) {
            getState();
        }
        return;
    }
    TslError("Can't find error match");
}

bool TslMmPlayer::start() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_start, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::stop() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_stop, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::pause() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_pause, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::prepare() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_prepare, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unprepare() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unprepare, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::prepareAsync(player_prepared_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "PlayerHandle is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_prepare_async, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setUri(const char *szUri) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(szUri, false, "Player URI to set is nullptr.");
    CALL_PLAYER(false, player_set_uri, s_pPlayerHandle, szUri);
    return true;
}

bool TslMmPlayer::setPosition(int nPosition, bool bAccurate, player_seek_completed_cb cb,
                              void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("Position will be set as [%d ms].", nPosition);
    CALL_PLAYER(false, player_set_play_position, s_pPlayerHandle, nPosition, bAccurate, cb,
                pUserData);
    return true;
}

bool TslMmPlayer::setErrorCb(player_error_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Error Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_error_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setBufferingCb(player_buffering_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Buffering Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_buffering_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setCompletedCb(player_completed_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Completed Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_completed_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setInterruptedCb(player_interrupted_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Interrupted Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_interrupted_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setSubtitleUpdatedCb(player_subtitle_updated_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Subtitle updated Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_subtitle_updated_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setProgressiveDownloadMessageCb(player_pd_message_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Progressive Download Message Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_progressive_download_message_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::setMediaPacketVideoFrameDecodeCb(player_media_packet_video_decoded_cb cb,
                                                   void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    // Both messages are those of the progressive download.
    RETURN_IF_NULL(cb, false, "Progressive Download Message Callback to set is nullptr.");
    TslInfo("");
    const int nRet = player_set_media_packet_video_frame_decoded_cb(s_pPlayerHandle, cb, pUserData);
    if (nRet != PLAYER_ERROR_NONE) {
        TslError("player_set_progressive_download_message_cb() failed .. [0x%x]", nRet);
        _playerErrorPrint(nRet);
        return false;
    }
    return true;
}

bool TslMmPlayer::setMissedPluginInfoCb(player_missed_plugin_info_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(cb, false, "Missed Plugin Info Callback to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_missed_plugin_info_cb, s_pPlayerHandle, cb, pUserData);
    return true;
}

bool TslMmPlayer::unsetErrorCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unset_error_cb, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unsetBufferingCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unset_buffering_cb, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unsetCompletedCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unset_completed_cb, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unsetInterruptedCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unset_interrupted_cb, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unsetSubtitleUpdatedCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unset_subtitle_updated_cb, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unsetProgressiveDownloadMessageCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_unset_progressive_download_message_cb, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::unsetMediaPacketVideoFrameDecodeCb() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    const int nRet = player_unset_media_packet_video_frame_decoded_cb(s_pPlayerHandle);
    if (nRet != PLAYER_ERROR_NONE) {
        TslWarn("player_unset_media_packet_video_frame_decoded_cb() failed .. [0x%x]", nRet);
        _playerErrorPrint(nRet);
        return false;
    }
    return true;
}

bool TslMmPlayer::setDisplayVisible(bool bVisible) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("DisplayVisible will be set as [Boolean %d]", bVisible);
    CALL_PLAYER(false, player_set_display_visible, s_pPlayerHandle, bVisible);
    return true;
}

bool TslMmPlayer::setSubtitlePath(const char *szPath) {
    RETURN_WITHOUT_HANDLE(false);
    if (szPath == nullptr) {
        TslWarn("Passed Subtitle path is nullptr.");
    }
    TslInfo("");
    CALL_PLAYER(false, player_set_subtitle_path, s_pPlayerHandle, szPath);
    return true;
}

bool TslMmPlayer::setSubtitlePositionOffset(int nOffset) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("Offset to set is [%d ms]", nOffset);
    CALL_PLAYER(false, player_set_subtitle_position_offset, s_pPlayerHandle, nOffset);
    return true;
}

bool TslMmPlayer::setStreamingCookie(const char *szCookie) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(szCookie, false, "Streaming Cookie to set is nullptr.");
    CALL_PLAYER(false, player_set_streaming_cookie, s_pPlayerHandle, szCookie,
                static_cast<int>(strlen(szCookie)));
    return true;
}

bool TslMmPlayer::setStreamingUserAgent(const char *szUserAgent) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(szUserAgent, false, "Streaming UserAgent to set is nullptr.");
    CALL_PLAYER(false, player_set_streaming_user_agent, s_pPlayerHandle, szUserAgent,
                static_cast<int>(strlen(szUserAgent)));
    return true;
}

bool TslMmPlayer::setDisplayMode(PlayerDisplayMode mode) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("Player DisplayMode to set is [%d]", mode);
    player_display_mode_e platformMode = PLAYER_DISPLAY_MODE_LETTER_BOX;
    if (isDisplayMode(mode)) {
        platformMode = static_cast<player_display_mode_e>(mode);
    } else {
        TslWarn("PlayerDisplayMode is invalid. Set to default.");
    }
    CALL_PLAYER(false, player_set_display_mode, s_pPlayerHandle, platformMode);
    return true;
}

bool TslMmPlayer::setMemoryBuffer(int nSize, const void *pData) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(pData, false, "MediaData is nullptr");
    TslInfo("MemoryBuffer size to set is [%d]", nSize);
    CALL_PLAYER(false, player_set_memory_buffer, s_pPlayerHandle, pData, nSize);
    return true;
}

bool TslMmPlayer::setProgressiveDownloadPath(const char *szPath) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(szPath, false, "Progressive Download Path to set is nullptr.");
    TslInfo("");
    CALL_PLAYER(false, player_set_progressive_download_path, s_pPlayerHandle, szPath);
    return true;
}

bool TslMmPlayer::setDisplayRotation(PlayerDisplayRotation rotation) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("Player DisplayRotation will be set as [%d]", rotation);
    player_display_rotation_e platformRotation = PLAYER_DISPLAY_ROTATION_NONE;
    if (isDisplayRotation(rotation)) {
        platformRotation = static_cast<player_display_rotation_e>(rotation);
    } else {
        TslWarn("PlayerDisplayRotation is invalid. Set to default.");
    }
    CALL_PLAYER(false, player_set_display_rotation, s_pPlayerHandle, platformRotation);
    return true;
}

bool TslMmPlayer::setPlayerVolume(float fLeft, float fRight) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_set_volume, s_pPlayerHandle, fLeft, fRight);
    return true;
}

bool TslMmPlayer::setDisplayType(PlayerDisplayType type, void *pDisplay) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(pDisplay, false, "Display to set type is nullptr.");
    TslInfo("Player DisplayType to set is [%d]", type);
    player_display_type_e platformType = PLAYER_DISPLAY_TYPE_OVERLAY;
    player_display_h pPlatformDisplay = pDisplay;
    if (type == PLAYER_DISPLAY_TYPE_OF_EVAS) {
        platformType = PLAYER_DISPLAY_TYPE_EVAS;
        pPlatformDisplay = nullptr;
    } else if (type != PLAYER_DISPLAY_TYPE_OF_OVERLAY) {
        TslWarn("PlayerDisplayType is invalid. Set to default.");
    }
    CALL_PLAYER(false, player_set_display, s_pPlayerHandle, platformType, pPlatformDisplay);
    return true;
}

bool TslMmPlayer::setRichAudio() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_set_rich_audio, s_pPlayerHandle);
    return true;
}

bool TslMmPlayer::setPlayRate(float fRate) {
    RETURN_WITHOUT_HANDLE(false);
    if (fRate < MIN_PLAY_RATE || fRate > MAX_PLAY_RATE) {
        TslWarn("Rate should be ranged from 0.5 to 1.5. Rate :[%f]", fRate);
        return false;
    }
    TslInfo("Set Playback Rate as [%f]", fRate);
    CALL_PLAYER(false, player_set_playback_rate_ex, s_pPlayerHandle, fRate);
    return true;
}

bool TslMmPlayer::setSyncHandler(bool bEnable) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_enable_sync_handler, s_pPlayerHandle, bEnable);
    return true;
}

bool TslMmPlayer::setAudioPolicyInfo(void *pStreamInfo) {
    RETURN_WITHOUT_HANDLE(false);
    RETURN_IF_NULL(pStreamInfo, false, "pStreamInfo is nullptr.");
    TslInfo("");
    return true;
}

int TslMmPlayer::getDuration() {
    RETURN_WITHOUT_HANDLE(0);
    int nDuration = 0;
    const int nRet = player_get_duration(s_pPlayerHandle, &nDuration);
    if (nRet != PLAYER_ERROR_NONE) {
        TslError("player_get_duration() is failed. [0x%x]", nRet);
        return 0;
    }
    return nDuration;
}

int TslMmPlayer::getVideoWidth() {
    RETURN_WITHOUT_HANDLE(0);
    TslInfo("");
    int nWidth = 0;
    int nHeight = 0;
    const int nRet = player_get_video_size(s_pPlayerHandle, &nWidth, &nHeight);
    if (nRet != PLAYER_ERROR_NONE) {
        TslError("player_get_video_size() is failed. [0x%x]", nRet);
        return 0;
    }
    TslInfo("Succeed to Get Video Size. Width: [%d] | Height: [%d]", nWidth, nHeight);
    return nWidth;
}

int TslMmPlayer::getVideoHeight() {
    RETURN_WITHOUT_HANDLE(0);
    TslInfo("");
    int nWidth = 0;
    int nHeight = 0;
    const int nRet = player_get_video_size(s_pPlayerHandle, &nWidth, &nHeight);
    if (nRet != PLAYER_ERROR_NONE) {
        TslError("player_get_video_size() is failed. [0x%x]", nRet);
        return 0;
    }
    TslInfo("Succeed to Get Video Size. Width: [%d] | Height: [%d]", nWidth, nHeight);
    return nHeight;
}

int TslMmPlayer::getPosition() {
    RETURN_WITHOUT_HANDLE(0);
    int nPosition = 0;
    CALL_PLAYER(0, player_get_play_position, s_pPlayerHandle, &nPosition);
    return nPosition;
}

float TslMmPlayer::getVolumeLeft() {
    RETURN_WITHOUT_HANDLE(-1.0F);
    TslInfo("");
    float fLeft = -1.0F;
    float fRight = -1.0F;
    CALL_PLAYER(-1.0F, player_get_volume, s_pPlayerHandle, &fLeft, &fRight);
    return fLeft;
}

float TslMmPlayer::getVolumeRight() {
    RETURN_WITHOUT_HANDLE(-1.0F);
    TslInfo("");
    float fLeft = -1.0F;
    float fRight = -1.0F;
    CALL_PLAYER(-1.0F, player_get_volume, s_pPlayerHandle, &fLeft, &fRight);
    return fRight;
}

char *TslMmPlayer::getAudioCodecInfo() {
    RETURN_WITHOUT_HANDLE(nullptr);
    TslInfo("");
    char *szAudioCodec = nullptr;
    char *szVideoCodec = nullptr;
    CALL_PLAYER(nullptr, player_get_codec_info, s_pPlayerHandle, &szAudioCodec, &szVideoCodec);
    free(szVideoCodec);
    return szAudioCodec;
}

char *TslMmPlayer::getVideoCodecInfo() {
    RETURN_WITHOUT_HANDLE(nullptr);
    TslInfo("");
    char *szAudioCodec = nullptr;
    char *szVideoCodec = nullptr;
    CALL_PLAYER(nullptr, player_get_codec_info, s_pPlayerHandle, &szAudioCodec, &szVideoCodec);
    free(szAudioCodec);
    return szVideoCodec;
}

bool TslMmPlayer::getDisplayVisible() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    bool bVisible = false;
    CALL_PLAYER(false, player_is_display_visible, s_pPlayerHandle, &bVisible);
    TslInfo("DisplayVisible is [Boolean %d]", bVisible);
    return bVisible;
}

bool TslMmPlayer::getStreamingDownloadProgress(int *pStart, int *pCurrent) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_get_streaming_download_progress, s_pPlayerHandle, pStart, pCurrent);
    TslInfo("Get Streaming Download Progress. Start: [%d ms] | Current: [%d ms]", *pStart,
            *pCurrent);
    return true;
}

bool TslMmPlayer::getProgressiveDownloadStatus(unsigned long *pCurrent, unsigned long *pTotalSize) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    const int nRet = player_get_progressive_download_status(s_pPlayerHandle, pCurrent, pTotalSize);
    if (nRet != PLAYER_ERROR_NONE) {
        // The message names another function.
        TslError("player_set_progressive_download_path() failed .. [0x%x]", nRet);
        _playerErrorPrint(nRet);
        return false;
    }
    TslInfo("Succeed to get Progressive Download Status. Current: [%lu] | TotalSize: [%lu]",
            *pCurrent, *pTotalSize);
    return true;
}

int TslMmPlayer::getState() {
    RETURN_WITHOUT_HANDLE(PLAYER_STATE_NONE);
    player_state_e state = PLAYER_STATE_NONE;
    CALL_PLAYER(PLAYER_STATE_NONE, player_get_state, s_pPlayerHandle, &state);
    const int nState = toNumber(state);
    if (nState < PLAYER_STATE_IDLE || nState > PLAYER_STATE_PAUSED) {
        return PLAYER_STATE_NONE;
    }
    return nState;
}

PlayerDisplayMode TslMmPlayer::getDisplayMode() {
    RETURN_WITHOUT_HANDLE(PLAYER_DISPLAY_MODE_TYPE_LETTER_BOX);
    TslInfo("");
    player_display_mode_e mode = PLAYER_DISPLAY_MODE_LETTER_BOX;
    const int nRet = player_get_display_mode(s_pPlayerHandle, &mode);
    if (nRet != PLAYER_ERROR_NONE) {
        // The message names the setter.
        TslError("player_set_display_mode() failed .. [0x%x]", nRet);
        _playerErrorPrint(nRet);
        return PLAYER_DISPLAY_MODE_TYPE_LETTER_BOX;
    }
    const int nMode = toNumber(mode);
    TslInfo("Current Player DisplayMode is [%d]", nMode);
    if (!isDisplayMode(nMode)) {
        TslWarn("player_display_mode_e mode is invalid. Set to default.");
        return PLAYER_DISPLAY_MODE_TYPE_LETTER_BOX;
    }
    return static_cast<PlayerDisplayMode>(nMode);
}

PlayerDisplayRotation TslMmPlayer::getDisplayRotation() {
    RETURN_WITHOUT_HANDLE(PLAYER_DISPLAY_ROTATION_TYPE_NONE);
    TslInfo("");
    player_display_rotation_e rotation = PLAYER_DISPLAY_ROTATION_NONE;
    CALL_PLAYER(PLAYER_DISPLAY_ROTATION_TYPE_NONE, player_get_display_rotation, s_pPlayerHandle,
                &rotation);
    const int nRotation = toNumber(rotation);
    TslInfo("Current Player DisplayRotation is [%d]", nRotation);
    if (!isDisplayRotation(nRotation)) {
        TslWarn("player_display_rotation_e rotation is invalid. Set to default.");
        return PLAYER_DISPLAY_ROTATION_TYPE_NONE;
    }
    return static_cast<PlayerDisplayRotation>(nRotation);
}

bool TslMmPlayer::getClosedCaptionExisted() {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    bool bExisted = false;
    CALL_PLAYER(false, player_has_closed_caption, s_pPlayerHandle, &bExisted);
    TslInfo("Has Closed Caption? [Boolean %d]", bExisted);
    return bExisted;
}

bool TslMmPlayer::captureVideo(player_video_captured_cb cb, void *pUserData) {
    RETURN_WITHOUT_HANDLE(false);
    TslInfo("");
    CALL_PLAYER(false, player_capture_video, s_pPlayerHandle, cb, pUserData);
    return true;
}
