#include "TslPlayerMgr.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "TslLog.h"
#include "TslPlayerMgrInside.h"

std::atomic<TslPlayerMgrInside *> s_pPlayerMgrInside{nullptr};

namespace {

const double LONGPRESS_SEEK_PERIOD = 1.0;  // seconds
const int LONGPRESS_SEEK_STEP = 2000;      // milliseconds
const unsigned int DISPLAY_MODE_COUNT = 6;

TslPlayerMgrInside *inside() {
    return s_pPlayerMgrInside.load(std::memory_order_relaxed);
}

// The log has 32 bits for a pointer.
unsigned int toLogWord(const void *pPointer) {
    return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(pPointer));
}

}  // namespace

// Own functions, so that what the program keeps on purpose has a name in a leak report.
__attribute__((noinline)) static void *_createSeekCookie(bool bAccurate) {
    auto *pCookie = static_cast<unsigned char *>(calloc(1, 1));
    if (pCookie != nullptr) {
        *pCookie = bAccurate ? 1 : 0;
    }
    return pCookie;
}

__attribute__((noinline)) static char *_duplicateItemPath(const char *szItemPath) {
    return strndup(szItemPath, strlen(szItemPath));
}

// Macros, because a log line names the function that it stands in.

#define RETURN_WITHOUT_INSIDE(failure)           \
    if (inside() == nullptr) {                   \
        TslError("PlayerMgrInside is nullptr."); \
        return failure;                          \
    }

#define RETURN_WITHOUT_PLAYER(failure)                 \
    RETURN_WITHOUT_INSIDE(failure)                     \
    if (inside()->m_pMmPlayerHandle == nullptr) {      \
        TslError("m_pMmPlayerHandle is not existed."); \
        return failure;                                \
    }

// ---- TslPlayerMgrInside

TslPlayerMgrInside::~TslPlayerMgrInside() {
    TslInfo("");
    PipeSlot *const slots[] = {
        &m_pErrorPipe,       &m_pBufferingPipe, &m_pCompletedPipe,       &m_pPdMessagePipe,
        &m_pInterruptedPipe, &m_pReservedPipe1, &m_pSubtitleUpdatedPipe, &m_pMissedPluginInfoPipe,
        &m_pPreparedPipe,    &m_pReservedPipe2, &m_pSeekCompletedPipe,   &m_pReservedPipe3,
        &m_pReservedPipe4,
    };
    for (PipeSlot *pSlot : slots) {
        _deletePipe(*pSlot);
    }
    if (m_pLongpressSeekTimer.lock() != nullptr) {
        app_assist::WTimer::destroy(m_pLongpressSeekTimer);
    }
    _deletePipe(m_pSeekCompletedAsLatestPlayedPositionPipe);
    _destroyPlayerObj();
}

bool TslPlayerMgrInside::_createPlayerObj() {
    if (m_pMmPlayerHandle != nullptr) {
        TslWarn("m_pMmPlayerHandle is already existed.");
        return false;
    }
    m_pMmPlayerHandle = new TslMmPlayer;
    return true;
}

bool TslPlayerMgrInside::_destroyPlayerObj() {
    if (m_pMmPlayerHandle == nullptr) {
        TslWarn("m_pMmPlayerHandle is already destroyed.");
        return false;
    }
    delete m_pMmPlayerHandle;
    m_pMmPlayerHandle = nullptr;
    return true;
}

// ---- TslPlayerMgr: life

TslPlayerMgr::TslPlayerMgr() {
    TslInfo("");
    if (inside() != nullptr) {
        TslWarn("PlayerMgrInside has been existed already.");
        return;
    }
    s_pPlayerMgrInside.store(new TslPlayerMgrInside, std::memory_order_release);
}

TslPlayerMgr::~TslPlayerMgr() {
    TslInfo("");
    stop();
    delete inside();
    s_pPlayerMgrInside.store(nullptr, std::memory_order_release);
}

bool TslPlayerMgr::createPlayer() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(false);
    if (inside()->m_pMmPlayerHandle != nullptr) {
        TslError("m_pMmPlayerHandle is already existed.");
        return false;
    }
    inside()->_createPlayerObj();
    inside()->_setCallbackFuncOfPlay(this);
    inside()->_setCallbackFuncOfStream(this);
    inside()->_setCallbackFuncOfSubtitle(this);
    return true;
}

bool TslPlayerMgr::destroyPlayer() {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    inside()->_destroyPlayerObj();
    return true;
}

// ---- TslPlayerMgr: transport

bool TslPlayerMgr::ready(const char *szItemPath) {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    TslMmPlayer *pMmPlayer = inside()->m_pMmPlayerHandle;
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType != PLAY_STATE_IDLE) {
        TslWarn("The state of the player is not in idle. nPlayStateType: %d", nPlayStateType);
        return false;
    }
    if (!pMmPlayer->setUri(szItemPath)) {
        TslError("It is fail to set a url of the video item.");
        _playerErrorCb(TslMmPlayer::getPlatformErrorCode(PLAYER_ERROR_TYPE_INVALID_URI), nullptr);
        return false;
    }
    if (!pMmPlayer->prepare()) {
        TslError("It is failed to prepare playing. It means realization is failed.");
        _playerErrorCb(TslMmPlayer::getPlatformErrorCode(PLAYER_ERROR_TYPE_NOT_SUPPORTED_FILE),
                       nullptr);
        return false;
    }
    TslInfo("It is succeed to prepare player. Customized prepared_callback will be called.");
    _playerPreparedCb(nullptr);
    return true;
}

bool TslPlayerMgr::readyAsync(const char *szItemPath) {
    TslInfo("");
    if (szItemPath == nullptr) {
        TslError("There is no szItemPath.");
        return false;
    }
    RETURN_WITHOUT_PLAYER(false);
    TslMmPlayer *pMmPlayer = inside()->m_pMmPlayerHandle;
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType != PLAY_STATE_IDLE) {
        TslWarn("The state of the player is not in idle. nPlayStateType: %d", nPlayStateType);
        return false;
    }
    if (!pMmPlayer->setUri(szItemPath)) {
        TslError("It is fail to set a url of the video item.");
        _playerErrorCb(TslMmPlayer::getPlatformErrorCode(PLAYER_ERROR_TYPE_INVALID_URI), nullptr);
        return false;
    }
    // Not freed on failure: the platform may have taken it.
    char *szDuplicate = _duplicateItemPath(szItemPath);
    if (!pMmPlayer->prepareAsync(_playerPreparedCb, szDuplicate)) {
        TslError("It is failed to prepare playing. It means realization is failed.");
        _playerErrorCb(TslMmPlayer::getPlatformErrorCode(PLAYER_ERROR_TYPE_NOT_SUPPORTED_FILE),
                       nullptr);
        return false;
    }
    return true;
}

bool TslPlayerMgr::play() {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType < PLAY_STATE_READY) {
        TslWarn("The state of the player is not in ready or pause. nPlayStateType: %d",
                nPlayStateType);
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->start()) {
        TslError("It is failed to play a video item.");
        return false;
    }
    return true;
}

bool TslPlayerMgr::pause() {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    return inside()->m_pMmPlayerHandle->pause();
}

bool TslPlayerMgr::stop() {
    TslInfo("");
    RETURN_WITHOUT_INSIDE(false);
    TslMmPlayer *pMmPlayer = inside()->m_pMmPlayerHandle;
    if (pMmPlayer == nullptr) {
        TslWarn("m_pMmPlayerHandle is not existed.");
        return false;
    }
    PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType == PLAY_STATE_PLAY || nPlayStateType == PLAY_STATE_PAUSE) {
        if (!pMmPlayer->stop()) {
            TslError("It is failed to stop playing a video item.");
        }
    } else {
        TslWarn("The state of the player is not in play or pause. nPlayStateType: %d",
                nPlayStateType);
    }

    nPlayStateType = getPlayerState();
    TslInfo("pMmPlayer: %x, nPlayStateType: %d --- After stop", toLogWord(pMmPlayer),
            nPlayStateType);
    if (nPlayStateType >= PLAY_STATE_READY) {
        if (!pMmPlayer->unprepare()) {
            TslError("It is failed to unprepare.");
        }
    } else {
        TslWarn("It was already unrealize. nPlayStateType: %d", nPlayStateType);
    }

    nPlayStateType = getPlayerState();
    TslInfo("pMmPlayer: %x, nPlayStateType: %d --- After unrealize", toLogWord(pMmPlayer),
            nPlayStateType);
    return true;
}

// ---- TslPlayerMgr: seeking

static bool _seekByTick(void *pUserData, int nStep) {
    auto *pMmPlayer = static_cast<TslMmPlayer *>(pUserData);
    const int nDuration = pMmPlayer->getDuration();
    const int nCurrentPosition = pMmPlayer->getPosition();
    int nNewPosition = nCurrentPosition + nStep;
    if (nDuration < nNewPosition) {
        nNewPosition = nDuration;
    } else if (nNewPosition < 0) {
        nNewPosition = 0;
    }
    TslInfo("Current Positon: %d, New Position: %d", nCurrentPosition, nNewPosition);
    if (nNewPosition != nCurrentPosition) {
        pMmPlayer->setPosition(nNewPosition, false, _playerSeekCompletedCb,
                               _createSeekCookie(false));
    }
    return true;
}

bool _rewindTimerCb(void *pUserData) {
    if (pUserData == nullptr) {
        TslError("UserData is nullptr.");
        return false;
    }
    return _seekByTick(pUserData, -LONGPRESS_SEEK_STEP);
}

bool _fastForwardTimerCb(void *pUserData) {
    if (pUserData == nullptr) {
        TslError("UserData is nullptr.");
        return false;
    }
    return _seekByTick(pUserData, LONGPRESS_SEEK_STEP);
}

static void _startLongpressSeek(bool (*pTickCb)(void *)) {
    if (inside()->m_pLongpressSeekTimer.lock() != nullptr) {
        return;
    }
    inside()->m_pLongpressSeekTimer =
        app_assist::WTimer::addTimer(LONGPRESS_SEEK_PERIOD, pTickCb, inside()->m_pMmPlayerHandle);
}

bool TslPlayerMgr::rewind() {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    _startLongpressSeek(_rewindTimerCb);
    return true;
}

bool TslPlayerMgr::fastForward() {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    _startLongpressSeek(_fastForwardTimerCb);
    return true;
}

bool TslPlayerMgr::cancelLongpressSeek() {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    TslMmPlayer *pMmPlayer = inside()->m_pMmPlayerHandle;
    if (inside()->m_pLongpressSeekTimer.lock() != nullptr) {
        app_assist::WTimer::destroy(inside()->m_pLongpressSeekTimer);
    }
    const int nPosition = pMmPlayer->getPosition();
    pMmPlayer->setPosition(nPosition, true, _playerSeekCompletedCb, _createSeekCookie(true));
    return true;
}

bool TslPlayerMgr::setPosition(int nPosition, bool bAccurate) {
    RETURN_WITHOUT_PLAYER(false);
    TslInfo("nPosition: %d, bAccurate : %d", nPosition, bAccurate);
    const PlayStateType nPlayStateType = getPlayerState();
    void *pCookie = _createSeekCookie(bAccurate);
    if (nPlayStateType < PLAY_STATE_READY) {
        TslWarn("The state of the player is not in pause or play or ready. nPlayStateType: %d",
                nPlayStateType);
        free(pCookie);
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setPosition(nPosition, bAccurate, _playerSeekCompletedCb,
                                                  pCookie)) {
        TslWarn("It is failed to set position.");
        free(pCookie);
        return false;
    }
    return true;
}

bool TslPlayerMgr::setPositionAsLatestPlayedPosition(int nPosition, bool bAccurate) {
    RETURN_WITHOUT_PLAYER(false);
    TslInfo("nPosition: %d, bAccurate : %d", nPosition, bAccurate);
    const PlayStateType nPlayStateType = getPlayerState();
    void *pCookie = _createSeekCookie(bAccurate);
    if (nPlayStateType < PLAY_STATE_READY) {
        TslWarn("The state of the player is not in pause or play or ready. nPlayStateType: %d",
                nPlayStateType);
        free(pCookie);
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setPosition(
            nPosition, bAccurate, _playerSeekCompletedAsLatestPlayedPositionCb, pCookie)) {
        TslError("It is failed to set position.");
        free(pCookie);
        return false;
    }
    return true;
}

// ---- TslPlayerMgr: settings

bool TslPlayerMgr::setPlaySpeedRate(float nSpeedRate) {
    RETURN_WITHOUT_PLAYER(false);
    TslInfo("nSpeedRate : %f", nSpeedRate);
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType != PLAY_STATE_PLAY && nPlayStateType != PLAY_STATE_PAUSE) {
        TslWarn("The state of the player is not in pause or play. nPlayStateType: %d",
                nPlayStateType);
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setPlayRate(nSpeedRate)) {
        TslWarn("It is failed to set play speed rate.");
    }
    return true;
}

bool TslPlayerMgr::setSubtitlePath(const char *szSubtitlePath) {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    const PlayStateType nPlayStateType = getPlayerState();
    if (szSubtitlePath == nullptr) {
        TslWarn("There is no subtitle path.");
        return false;
    }
    if (nPlayStateType == PLAY_STATE_NONE) {
        TslWarn("The state of the player is invalid. nPlayStateType: %d", nPlayStateType);
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setSubtitlePath(szSubtitlePath)) {
        TslWarn("It is failed to set subtitle path.");
        return false;
    }
    return true;
}

bool TslPlayerMgr::setDisplayVisible(bool bVisible) {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType < PLAY_STATE_READY) {
        TslWarn("The state of the player is invalid. nPlayStateType: %d", nPlayStateType);
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setDisplayVisible(bVisible)) {
        TslWarn("It is failed to set display visible.");
        return false;
    }
    return true;
}

bool TslPlayerMgr::setDisplayMode(PlayerDisplayMode nDisplayMode) {
    RETURN_WITHOUT_PLAYER(false);
    TslInfo("nDisplayMode: %d", nDisplayMode);
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType == PLAY_STATE_NONE) {
        TslWarn("The state of the player is invalid. nPlayStateType: %d", nPlayStateType);
        return false;
    }
    if (static_cast<unsigned int>(nDisplayMode) >= DISPLAY_MODE_COUNT) {
        TslError("Invalid DisplayMode!");
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setDisplayMode(nDisplayMode)) {
        TslWarn("It is failed to set display mode.");
    }
    return true;
}

bool TslPlayerMgr::setDisplayRotation(PlayerDisplayRotation nDisplayRotation) {
    RETURN_WITHOUT_PLAYER(false);
    TslInfo("nDisplayRotation: %d", nDisplayRotation);
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType == PLAY_STATE_NONE) {
        TslWarn("The state of the player is invalid. nPlayStateType: %d", nPlayStateType);
        return false;
    }
    PlayerDisplayRotation nRotation = PLAYER_DISPLAY_ROTATION_TYPE_NONE;
    switch (nDisplayRotation) {
    case PLAYER_DISPLAY_ROTATION_TYPE_90:
    case PLAYER_DISPLAY_ROTATION_TYPE_180:
    case PLAYER_DISPLAY_ROTATION_TYPE_270:
        nRotation = nDisplayRotation;
        break;
    default:
        break;
    }
    if (!inside()->m_pMmPlayerHandle->setDisplayRotation(nRotation)) {
        TslError("PlayerCtrl->setDisplayRotation() is failed.");
        return false;
    }
    return true;
}

bool TslPlayerMgr::setDisplayID(void *pDisplayId, PlayerDisplayType type) {
    TslInfo("");
    if (pDisplayId == nullptr) {
        TslWarn("pDisplayId is not existed.");
        return false;
    }
    RETURN_WITHOUT_PLAYER(false);
    const PlayStateType nPlayStateType = getPlayerState();
    if (nPlayStateType == PLAY_STATE_NONE) {
        TslWarn("The state of the player is invalid. nPlayStateType: %d", nPlayStateType);
        free(pDisplayId);
        return false;
    }
    if (type != PLAYER_DISPLAY_TYPE_OF_EVAS && type != PLAYER_DISPLAY_TYPE_OF_OVERLAY) {
        TslError("Invalid DisplayType!");
        return false;
    }
    if (!inside()->m_pMmPlayerHandle->setDisplayType(type, pDisplayId)) {
        TslWarn("It is failed to set display ID.");
    }
    return true;
}

bool TslPlayerMgr::setAudioPolicyInfo(void *pStreamInfo) {
    TslInfo("");
    if (pStreamInfo == nullptr) {
        TslError("pStreamInfo is nullptr.");
        return false;
    }
    RETURN_WITHOUT_PLAYER(false);
    if (!inside()->m_pMmPlayerHandle->setAudioPolicyInfo(pStreamInfo)) {
        TslWarn("It is failed to set policy stream information.");
        return false;
    }
    return true;
}

bool TslPlayerMgr::setPlayerVolume(float fLeft, float fRight) {
    TslInfo("");
    RETURN_WITHOUT_PLAYER(false);
    if (!inside()->m_pMmPlayerHandle->setPlayerVolume(fLeft, fRight)) {
        TslWarn("It is failed to set player volume.");
        return false;
    }
    return true;
}

// ---- TslPlayerMgr: getters

int TslPlayerMgr::getPosition() {
    RETURN_WITHOUT_PLAYER(0);
    return inside()->m_pMmPlayerHandle->getPosition();
}

int TslPlayerMgr::getDuration() {
    RETURN_WITHOUT_PLAYER(0);
    return inside()->m_pMmPlayerHandle->getDuration();
}

PlayStateType TslPlayerMgr::getPlayerState() {
    RETURN_WITHOUT_PLAYER(PLAY_STATE_NONE);
    switch (inside()->m_pMmPlayerHandle->getState()) {
    case PLAYER_STATE_IDLE:
        return PLAY_STATE_IDLE;
    case PLAYER_STATE_READY:
        return PLAY_STATE_READY;
    case PLAYER_STATE_PLAYING:
        return PLAY_STATE_PLAY;
    case PLAYER_STATE_PAUSED:
        return PLAY_STATE_PAUSE;
    default:
        return PLAY_STATE_NONE;
    }
}

PlayerDisplayMode TslPlayerMgr::getDisplayMode() {
    RETURN_WITHOUT_PLAYER(PLAYER_DISPLAY_MODE_TYPE_INVALID);
    const PlayerDisplayMode nDisplayMode = inside()->m_pMmPlayerHandle->getDisplayMode();
    switch (nDisplayMode) {
    case PLAYER_DISPLAY_MODE_TYPE_ORIGIN_SIZE:
    case PLAYER_DISPLAY_MODE_TYPE_FULL_SCREEN:
    case PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL:
    case PLAYER_DISPLAY_MODE_TYPE_ORIGIN_OR_LETTER:
    case PLAYER_DISPLAY_MODE_TYPE_DST_ROI:
        return nDisplayMode;
    default:
        return PLAYER_DISPLAY_MODE_TYPE_LETTER_BOX;
    }
}

PlayerDisplayRotation TslPlayerMgr::getDisplayRotation() {
    RETURN_WITHOUT_PLAYER(PLAYER_DISPLAY_ROTATION_TYPE_NONE);
    const PlayerDisplayRotation nRotation = inside()->m_pMmPlayerHandle->getDisplayRotation();
    switch (nRotation) {
    case PLAYER_DISPLAY_ROTATION_TYPE_90:
    case PLAYER_DISPLAY_ROTATION_TYPE_180:
    case PLAYER_DISPLAY_ROTATION_TYPE_270:
        return nRotation;
    default:
        return PLAYER_DISPLAY_ROTATION_TYPE_NONE;
    }
}

float TslPlayerMgr::getVolumeLeft() {
    RETURN_WITHOUT_PLAYER(-1.0F);
    return inside()->m_pMmPlayerHandle->getVolumeLeft();
}

float TslPlayerMgr::getVolumeRight() {
    RETURN_WITHOUT_PLAYER(-1.0F);
    return inside()->m_pMmPlayerHandle->getVolumeRight();
}

bool TslPlayerMgr::getDisplayVisible() {
    RETURN_WITHOUT_PLAYER(false);
    return inside()->m_pMmPlayerHandle->getDisplayVisible();
}

char *TslPlayerMgr::getVideoCodecInfo() {
    RETURN_WITHOUT_PLAYER(nullptr);
    return inside()->m_pMmPlayerHandle->getVideoCodecInfo();
}

bool TslPlayerMgr::getClosedCaptionExisted() {
    RETURN_WITHOUT_PLAYER(false);
    return inside()->m_pMmPlayerHandle->getClosedCaptionExisted();
}
