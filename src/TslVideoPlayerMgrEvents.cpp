// What the player reports, on the main loop: each report becomes a signal, and the signal switch
// does the work.

#include "TslLog.h"
#include "TslMmPlayer.h"
#include "TslPlayerMgr.h"
#include "TslPlayerView.h"
#include "TslVideoPlayerMgrInside.h"

namespace {

constexpr char TEXT_UNABLE_TO_PLAY[] = "IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO";
constexpr char TEXT_FILE_DOES_NOT_EXIST[] = "IDS_MP_POP_THIS_FILE_DOES_NOT_EXIST";
constexpr char TEXT_UNSUPPORTED_FORMAT[] = "WDS_GALLERY_TPOP_UNSUPPORTED_FORMAT_ABB";
constexpr char TEXT_INVALID_URL[] = "IDS_VPL_POP_INVALID_URL";
constexpr char TEXT_UNSUPPORTED_VIDEO[] = "IDS_VPL_POP_UNSUPPORTED_VIDEO_FORMAT";
constexpr char TEXT_UNSUPPORTED_AUDIO[] = "IDS_VPL_POP_UNSUPPORTED_AUDIO_FORMAT";

constexpr int MISSED_PLUGIN_VIDEO = 1;
constexpr int MISSED_PLUGIN_AUDIO = 2;

}  // namespace

// A macro, because a log line names the function that it stands in.
#define RETURN_WITHOUT_USER_DATA(pUserData) \
    if ((pUserData) == nullptr) {           \
        TslError("There is no user data."); \
        return;                             \
    }

void TslVideoPlayerMgrInside::_preparedCb(void *pUserData, void * /*pBuffer*/,
                                          unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");

    auto *pInside = static_cast<TslVideoPlayerMgrInside *>(pUserData);
    // The media may be ready before the screen is there.
    TslPlayerView *pPlayerView = pInside->_findPlayerView();
    if (pPlayerView != nullptr) {
        pPlayerView->createProgressTimer();
    }
    _emitSignal(SIGNAL_PLAYER_PLAY);
}

void TslVideoPlayerMgrInside::_completedCb(void *pUserData, void * /*pBuffer*/,
                                           unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");

    auto *pInside = static_cast<TslVideoPlayerMgrInside *>(pUserData);
    TslPlayerView *pPlayerView = pInside->_findPlayerView();
    if (pPlayerView != nullptr) {
        pPlayerView->destroyProgressTimer();
    }
    _emitSignal(SIGNAL_APP_TERMINATE);
}

void TslVideoPlayerMgrInside::_interruptedCb(void *pUserData, void * /*pBuffer*/,
                                             unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");

    _emitSignal(SIGNAL_PLAYER_PAUSE);
}

void TslVideoPlayerMgrInside::_errorCb(void *pUserData, void *pBuffer, unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");
    if (pBuffer == nullptr) {
        TslError("Buffer, include occured error data, is nullptr.");
        return;
    }

    switch (*static_cast<const int *>(pBuffer)) {
    case PLAYER_ERROR_TYPE_OUT_OF_MEMORY:
    case PLAYER_ERROR_TYPE_INVALID_PARAMETER:
    case PLAYER_ERROR_TYPE_INVALID_OPERATION:
    case PLAYER_ERROR_TYPE_FILE_NO_SPACE_ON_DEVICE:
        _emitSignal(SIGNAL_POPUP_ERROR_TOAST, TEXT_UNABLE_TO_PLAY);
        break;
    case PLAYER_ERROR_TYPE_NO_SUCH_FILE:
        _emitSignal(SIGNAL_POPUP_ERROR_TOAST, TEXT_FILE_DOES_NOT_EXIST);
        break;
    case PLAYER_ERROR_TYPE_NOT_SUPPORTED_FILE:
        _emitSignal(SIGNAL_POPUP_ERROR_ONE_BUTTON, TEXT_UNSUPPORTED_FORMAT);
        break;
    case PLAYER_ERROR_TYPE_INVALID_URI:
        _emitSignal(SIGNAL_POPUP_ERROR_TOAST, TEXT_INVALID_URL);
        break;
    default:
        // A failed seek, a refused state or a lacking feature leaves playback as it is.
        break;
    }
}

void TslVideoPlayerMgrInside::_seekCompletedCb(void *pUserData, void *pBuffer,
                                               unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");

    const bool bAccurate = *static_cast<const unsigned char *>(pBuffer) != 0;
    if (!bAccurate) {
        return;
    }

    auto *pInside = static_cast<TslVideoPlayerMgrInside *>(pUserData);
    if (pInside->m_nPlayerStateBeforeSeek == PLAY_STATE_PLAY) {
        _emitSignal(SIGNAL_PLAYER_RESUME);
    }
    pInside->m_nPlayerStateBeforeSeek = 0;
}

void TslVideoPlayerMgrInside::_bufferingCb(void *pUserData, void * /*pBuffer*/,
                                           unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");
}

void TslVideoPlayerMgrInside::_pdMessageCb(void *pUserData, void * /*pBuffer*/,
                                           unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");
}

// The record's text is freed by the time it arrives: it must not be followed.
void TslVideoPlayerMgrInside::_subtitleUpdatedCb(void *pUserData, void * /*pBuffer*/,
                                                 unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");
}

void TslVideoPlayerMgrInside::_missedPluginInfoCb(void *pUserData, void *pBuffer,
                                                  unsigned int /*nBytes*/) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    TslInfo("");

    switch (*static_cast<const int *>(pBuffer)) {
    case MISSED_PLUGIN_VIDEO:
        _emitSignal(SIGNAL_POPUP_MISSED_VIDEO_PLUGIN, TEXT_UNSUPPORTED_VIDEO);
        break;
    case MISSED_PLUGIN_AUDIO:
        _emitSignal(SIGNAL_POPUP_MISSED_AUDIO_PLUGIN, TEXT_UNSUPPORTED_AUDIO);
        break;
    default:
        break;
    }
}
