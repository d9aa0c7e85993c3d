#pragma once

#include <Ecore.h>

#include <atomic>

#include "TslPlayerMgr.h"
#include "app-assist/WTimer.h"

/// The state that all instances of TslPlayerMgr share: the pipes that bring the player's callbacks
/// to the main loop, the player, and the long-press timer.
///
/// Fields are written on the main loop only. The callbacks, on threads of the platform, read the
/// pipe slots without a lock and give up on an empty one.
class TslPlayerMgrInside {
public:
    using PipeSlot = std::atomic<Ecore_Pipe *>;

    TslPlayerMgrInside() = default;
    ~TslPlayerMgrInside();
    TslPlayerMgrInside(const TslPlayerMgrInside &) = delete;
    TslPlayerMgrInside &operator=(const TslPlayerMgrInside &) = delete;

    bool _createPlayerObj();
    bool _destroyPlayerObj();

    /// Each registers its callbacks in order and stops at the first failure.
    bool _setCallbackFuncOfPlay(void *pUserData);
    bool _setCallbackFuncOfStream(void *pUserData);
    bool _setCallbackFuncOfSubtitle(void *pUserData);

    static void _deletePipe(PipeSlot &slot);
    /// The result of the platform's add is stored untested.
    static void _addPipe(PipeSlot &slot, TslPipeCb cb, void *pUserData);

    PipeSlot m_pErrorPipe{nullptr};
    PipeSlot m_pBufferingPipe{nullptr};
    PipeSlot m_pCompletedPipe{nullptr};
    PipeSlot m_pPdMessagePipe{nullptr};
    PipeSlot m_pInterruptedPipe{nullptr};
    PipeSlot m_pReservedPipe1{nullptr};
    PipeSlot m_pSubtitleUpdatedPipe{nullptr};
    PipeSlot m_pMissedPluginInfoPipe{nullptr};
    PipeSlot m_pPreparedPipe{nullptr};
    PipeSlot m_pReservedPipe2{nullptr};
    PipeSlot m_pSeekCompletedPipe{nullptr};
    PipeSlot m_pReservedPipe3{nullptr};
    PipeSlot m_pReservedPipe4{nullptr};
    PipeSlot m_pSeekCompletedAsLatestPlayedPositionPipe{nullptr};
    TslMmPlayer *m_pMmPlayerHandle = nullptr;
    app_assist::WTimerWeakPtr m_pLongpressSeekTimer;
};

/// Null until the first TslPlayerMgr and again after the destruction of any.
extern std::atomic<TslPlayerMgrInside *> s_pPlayerMgrInside;

/// What the subtitle pipe carries. The text is freed once the message is written: nobody may follow
/// the pointer.
struct SubtitlePipeMessage {
    unsigned int duration;  ///< milliseconds
    char *text;
};

/// Size of a seek message. Only its first byte has a meaning, and only that byte is allocated.
constexpr unsigned int SEEK_MESSAGE_SIZE = 4;

/// The platform's callbacks. Any thread: they copy what they are given into a pipe and free it.
void _playerErrorCb(int nErrorCode, void *pUserData);
void _playerCompletedCb(void *pUserData);
void _playerInterruptedCb(player_interrupted_code_e code, void *pUserData);
void _playerMissedPluginInfoCb(player_missed_plugin_type_e type, const char *szDetail,
                               void *pUserData);
void _playerBufferingCb(int nPercent, void *pUserData);
void _playerPdMessageCb(player_pd_message_type_e type, void *pUserData);
void _playerSubtitleUpdatedCb(unsigned long duration, char *szText, void *pUserData);
/// @param pPath  heap copy of the path, or null
void _playerPreparedCb(void *pPath);
/// @param pCookie  one heap byte: whether the seek was accurate
void _playerSeekCompletedCb(void *pCookie);
void _playerSeekCompletedAsLatestPlayedPositionCb(void *pCookie);

/// Ticks of the long-press seek, on the main loop.
/// @param pUserData  the TslMmPlayer
/// @return whether the timer goes on
bool _rewindTimerCb(void *pUserData);
bool _fastForwardTimerCb(void *pUserData);
