#include <cstdlib>
#include <cstring>

#include "TslLog.h"
#include "TslPlayerMgr.h"
#include "TslPlayerMgrInside.h"

// The crossing from the platform's threads to the main loop: what the platform's player tells is
// copied into one pipe per event, and the pipe's reader runs on the main loop.

namespace {

TslPlayerMgrInside *inside() {
    return s_pPlayerMgrInside.load(std::memory_order_acquire);
}

}  // namespace

// Macros, because a log line names the function that it stands in.

#define RETURN_WITHOUT_USER_DATA(pUserData) \
    if ((pUserData) == nullptr) {           \
        TslError("User Data is nullptr.");  \
        return;                             \
    }

// Declares pPipe, the pipe to write to.
#define RETURN_WITHOUT_PIPE(slot, name)                                \
    TslPlayerMgrInside *pInside = inside();                            \
    if (pInside == nullptr) {                                          \
        TslError("PlayerMgrInside is nullptr.");                       \
        return;                                                        \
    }                                                                  \
    Ecore_Pipe *pPipe = pInside->slot.load(std::memory_order_acquire); \
    if (pPipe == nullptr) {                                            \
        TslError(name " for cb is nullptr.");                          \
        return;                                                        \
    }

#define WRITE_PIPE(pBuffer, nByte)                               \
    if (ecore_pipe_write(pPipe, pBuffer, nByte) == EINA_FALSE) { \
        TslError("ecore_pipe_write is failed.");                 \
    }

#define WRITE_PIPE_VALUE(nValue)                                     \
    do {                                                             \
        auto *pMessage = static_cast<int *>(calloc(1, sizeof(int))); \
        if (pMessage == nullptr) {                                   \
            return;                                                  \
        }                                                            \
        *pMessage = (nValue);                                        \
        WRITE_PIPE(pMessage, sizeof(int));                           \
        free(pMessage);                                              \
    } while (0)

// ---- writers, on threads of the platform

void _playerErrorCb(int nErrorCode, void *) {
    RETURN_WITHOUT_PIPE(m_pErrorPipe, "ErrorPipe");
    TslInfo("");
    WRITE_PIPE_VALUE(TslMmPlayer::getPlayerErrorType(nErrorCode));
}

void _playerCompletedCb(void *pUserData) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    RETURN_WITHOUT_PIPE(m_pCompletedPipe, "CompletedPipe");
    TslInfo("");
    WRITE_PIPE(nullptr, 0);
}

void _playerInterruptedCb(player_interrupted_code_e code, void *pUserData) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    RETURN_WITHOUT_PIPE(m_pInterruptedPipe, "InterruptedPipe");
    TslInfo("");
    WRITE_PIPE_VALUE(code);
}

void _playerMissedPluginInfoCb(player_missed_plugin_type_e type, const char *, void *pUserData) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    RETURN_WITHOUT_PIPE(m_pMissedPluginInfoPipe, "MissedPluginInfoPipe");
    TslInfo("Missed Plugin Type is [%d]", static_cast<int>(type));
    WRITE_PIPE_VALUE(type);
}

void _playerBufferingCb(int nPercent, void *pUserData) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    RETURN_WITHOUT_PIPE(m_pBufferingPipe, "BufferingPipe");
    TslInfo("Buffering: [%d %%]", nPercent);
    WRITE_PIPE_VALUE(nPercent);
}

void _playerPdMessageCb(player_pd_message_type_e type, void *pUserData) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    RETURN_WITHOUT_PIPE(m_pPdMessagePipe, "PdMessagePipe");
    TslInfo("");
    WRITE_PIPE_VALUE(type);
}

void _playerSubtitleUpdatedCb(unsigned long duration, char *szText, void *pUserData) {
    RETURN_WITHOUT_USER_DATA(pUserData);
    RETURN_WITHOUT_PIPE(m_pSubtitleUpdatedPipe, "SubtitleUpdatedPipe");
    TslInfo("");
    auto *pMessage = static_cast<SubtitlePipeMessage *>(calloc(1, sizeof(SubtitlePipeMessage)));
    if (pMessage == nullptr) {
        return;
    }
    pMessage->duration = static_cast<unsigned int>(duration);
    pMessage->text = szText != nullptr ? strdup(szText) : nullptr;
    WRITE_PIPE(pMessage, sizeof(SubtitlePipeMessage));
    free(pMessage->text);
    free(pMessage);
}

void _playerPreparedCb(void *pPath) {
    RETURN_WITHOUT_PIPE(m_pPreparedPipe, "PreparedPipe");
    TslInfo("");
    auto *szPath = static_cast<char *>(pPath);
    if (szPath == nullptr) {
        WRITE_PIPE(nullptr, 0);
        return;
    }
    if (ecore_pipe_write(pPipe, szPath, static_cast<unsigned int>(strlen(szPath))) == EINA_FALSE) {
        TslError("ecore_pipe_write is failed.");
        return;
    }
    free(szPath);
}

void _playerSeekCompletedCb(void *pCookie) {
    RETURN_WITHOUT_USER_DATA(pCookie);
    RETURN_WITHOUT_PIPE(m_pSeekCompletedPipe, "SeekCompletedPipe");
    TslInfo("");
    const unsigned char message[SEEK_MESSAGE_SIZE] = {*static_cast<unsigned char *>(pCookie)};
    WRITE_PIPE(message, SEEK_MESSAGE_SIZE);
    free(pCookie);
}

void _playerSeekCompletedAsLatestPlayedPositionCb(void *pCookie) {
    RETURN_WITHOUT_USER_DATA(pCookie);
    RETURN_WITHOUT_PIPE(m_pSeekCompletedAsLatestPlayedPositionPipe, "SeekCompletedPipe");
    TslInfo("");
    const unsigned char message[SEEK_MESSAGE_SIZE] = {*static_cast<unsigned char *>(pCookie)};
    WRITE_PIPE(message, SEEK_MESSAGE_SIZE);
    free(pCookie);
}

// ---- registration

bool TslPlayerMgrInside::_setCallbackFuncOfPlay(void *pUserData) {
    TslInfo("");
    if (m_pMmPlayerHandle == nullptr) {
        TslError("m_pMmPlayerHandle is nullptr.");
        return false;
    }
    if (!m_pMmPlayerHandle->setErrorCb(_playerErrorCb, pUserData)) {
        TslWarn("It is failed to set a callback function about Error.");
        return false;
    }
    if (!m_pMmPlayerHandle->setCompletedCb(_playerCompletedCb, pUserData)) {
        TslWarn("It is failed to set a callback function about Complete.");
        return false;
    }
    if (!m_pMmPlayerHandle->setInterruptedCb(_playerInterruptedCb, pUserData)) {
        TslWarn("It is failed to set a callback function about Interrupt.");
        return false;
    }
    if (!m_pMmPlayerHandle->setMissedPluginInfoCb(_playerMissedPluginInfoCb, pUserData)) {
        TslWarn("It is failed to set a callback function about Missed Plug in.");
        return false;
    }
    return true;
}

bool TslPlayerMgrInside::_setCallbackFuncOfStream(void *pUserData) {
    TslInfo("");
    if (m_pMmPlayerHandle == nullptr) {
        TslError("m_pMmPlayerHandle is nullptr.");
        return false;
    }
    if (!m_pMmPlayerHandle->setBufferingCb(_playerBufferingCb, pUserData)) {
        TslWarn("It is failed to set a callback function about buffering.");
        return false;
    }
    if (!m_pMmPlayerHandle->setProgressiveDownloadMessageCb(_playerPdMessageCb, pUserData)) {
        TslWarn("It is failed to set a callback function about buffering.");
        return false;
    }
    return true;
}

bool TslPlayerMgrInside::_setCallbackFuncOfSubtitle(void *pUserData) {
    TslInfo("");
    if (m_pMmPlayerHandle == nullptr) {
        TslError("m_pMmPlayerHandle is nullptr.");
        return false;
    }
    if (!m_pMmPlayerHandle->setSubtitleUpdatedCb(_playerSubtitleUpdatedCb, pUserData)) {
        TslWarn("It is failed to set a callback function about subtitle.");
        return false;
    }
    return true;
}

// ---- pipes

void TslPlayerMgrInside::_deletePipe(PipeSlot &slot) {
    Ecore_Pipe *pPipe = slot.load(std::memory_order_relaxed);
    if (pPipe == nullptr) {
        return;
    }
    // Emptied first: a writer that comes now gives up instead of writing to a pipe that goes.
    slot.store(nullptr, std::memory_order_release);
    ecore_pipe_del(pPipe);
}

void TslPlayerMgrInside::_addPipe(PipeSlot &slot, TslPipeCb cb, void *pUserData) {
    slot.store(ecore_pipe_add(cb, pUserData), std::memory_order_release);
}

#define RETURN_WITHOUT_INSIDE()                                \
    if (inside() == nullptr) {                                 \
        TslError("PlayerMgrInside member object is nullptr."); \
        return false;                                          \
    }

#define DELETE_OLD_PIPE(slot, name)                                           \
    if ((slot).load(std::memory_order_relaxed) != nullptr) {                  \
        TslWarn(name " is exist. Need to delete. [%p]",                       \
                static_cast<void *>((slot).load(std::memory_order_relaxed))); \
        TslPlayerMgrInside::_deletePipe(slot);                                \
    }

bool TslPlayerMgr::addCbPipeOfPlay(const TslPipeCb &pPreparedPipeCb, const TslPipeCb &pErrorPipeCb,
                                   const TslPipeCb &pInterruptedPipeCb,
                                   const TslPipeCb &pMissedPluginInfoPipeCb, void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    TslPlayerMgrInside &self = *inside();
    if (pPreparedPipeCb != nullptr) {
        DELETE_OLD_PIPE(self.m_pPreparedPipe, "PreparedPipe");
        self._addPipe(self.m_pPreparedPipe, pPreparedPipeCb, pUserData);
    } else {
        TslError("PreparedPipeCb is not set.");
    }
    if (pErrorPipeCb != nullptr) {
        DELETE_OLD_PIPE(self.m_pErrorPipe, "ErrorPipe");
        self._addPipe(self.m_pErrorPipe, pErrorPipeCb, pUserData);
    } else {
        TslError("ErrorPipeCb is not set.");
    }
    if (pInterruptedPipeCb != nullptr) {
        DELETE_OLD_PIPE(self.m_pInterruptedPipe, "InterruptedPipe");
        self._addPipe(self.m_pInterruptedPipe, pInterruptedPipeCb, pUserData);
    } else {
        TslError("InterruptedPipeCb is not set.");
    }
    if (pMissedPluginInfoPipeCb != nullptr) {
        DELETE_OLD_PIPE(self.m_pMissedPluginInfoPipe, "MissedPluginInfoPipe");
        self._addPipe(self.m_pMissedPluginInfoPipe, pMissedPluginInfoPipeCb, pUserData);
    } else {
        TslError("MissedPluginInfoPipeCb is not set.");
    }
    return true;
}

bool TslPlayerMgr::addCbPipeOfStream(const TslPipeCb &pBufferingPipeCb,
                                     const TslPipeCb &pPdMessagePipeCb, void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    TslPlayerMgrInside &self = *inside();
    DELETE_OLD_PIPE(self.m_pBufferingPipe, "BufferingPipe");
    if (pBufferingPipeCb != nullptr) {
        self._addPipe(self.m_pBufferingPipe, pBufferingPipeCb, pUserData);
    } else {
        TslWarn("BufferingPipeCb is not set.");
    }
    DELETE_OLD_PIPE(self.m_pPdMessagePipe, "PdMessagePipe");
    if (pPdMessagePipeCb != nullptr) {
        self._addPipe(self.m_pPdMessagePipe, pPdMessagePipeCb, pUserData);
    } else {
        TslWarn("PdMessagePipeCb is not set.");
    }
    return true;
}

bool TslPlayerMgr::addCbPipeOfSubtitle(const TslPipeCb &pSubtitleUpdatedPipeCb, void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    TslPlayerMgrInside &self = *inside();
    DELETE_OLD_PIPE(self.m_pSubtitleUpdatedPipe, "SubtitleUpdatedPipe");
    if (pSubtitleUpdatedPipeCb != nullptr) {
        self._addPipe(self.m_pSubtitleUpdatedPipe, pSubtitleUpdatedPipeCb, pUserData);
    } else {
        TslWarn("SubtitleUpdatedPipeCb is not set.");
    }
    return true;
}

bool TslPlayerMgr::addCbPipeOfCompletion(const TslPipeCb &pCompletedPipeCb, void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    TslPlayerMgrInside &self = *inside();
    if (pCompletedPipeCb != nullptr) {
        DELETE_OLD_PIPE(self.m_pCompletedPipe, "CompletedPipe");
        self._addPipe(self.m_pCompletedPipe, pCompletedPipeCb, pUserData);
    } else {
        TslWarn("CompletedPipeCb is not set.");
    }
    return true;
}

bool TslPlayerMgr::addCbPipeOfSetPosition(const TslPipeCb &pSeekCompletedPipeCb, void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    TslPlayerMgrInside &self = *inside();
    if (pSeekCompletedPipeCb == nullptr) {
        TslError("SeekCompletedPipeCb is not set.");
        return false;
    }
    DELETE_OLD_PIPE(self.m_pSeekCompletedPipe, "SeekCompletedPipe");
    self._addPipe(self.m_pSeekCompletedPipe, pSeekCompletedPipeCb, pUserData);
    return true;
}

bool TslPlayerMgr::addCbPipeOfSetPositionAsLatestPlayedPosition(
    const TslPipeCb &pSeekCompletedAsLatestPlayedPositionPipeCb, void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    TslPlayerMgrInside &self = *inside();
    if (pSeekCompletedAsLatestPlayedPositionPipeCb == nullptr) {
        TslError("pSeekCompletedAsLatestPlayedPositionPipeCb is not set.");
        return false;
    }
    DELETE_OLD_PIPE(self.m_pSeekCompletedAsLatestPlayedPositionPipe, "SeekCompletedPipe");
    self._addPipe(self.m_pSeekCompletedAsLatestPlayedPositionPipe,
                  pSeekCompletedAsLatestPlayedPositionPipeCb, pUserData);
    return true;
}

// ---- decoded frames: the one callback that crosses no pipe

bool TslPlayerMgr::addCbOfVideoFrameDecode(player_media_packet_video_decoded_cb pVideoFrameDecodeCb,
                                           void *pUserData) {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (inside()->m_pMmPlayerHandle == nullptr) {
        TslError("m_pMmPlayerHandle is not existed.");
        return false;
    }
    if (pVideoFrameDecodeCb == nullptr) {
        TslError("pVideoFrameDecodeCb is not set.");
        return false;
    }
    if (pUserData == nullptr) {
        TslError("pUserData is not set.");
        return false;
    }
    return inside()->m_pMmPlayerHandle->setMediaPacketVideoFrameDecodeCb(pVideoFrameDecodeCb,
                                                                         pUserData);
}

bool TslPlayerMgr::delCbOfVideoFrameDecode() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE();
    if (inside()->m_pMmPlayerHandle == nullptr) {
        TslError("m_pMmPlayerHandle is not existed.");
        return false;
    }
    return inside()->m_pMmPlayerHandle->unsetMediaPacketVideoFrameDecodeCb();
}
