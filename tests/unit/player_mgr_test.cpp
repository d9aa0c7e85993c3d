#include "TslPlayerMgr.h"

#include <Ecore.h>
#include <dlog.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "TslPlayerMgrInside.h"
#include "block_watch.h"
#include "log_lines.h"
#include "main_loop.h"
#include "mock_platform/mock_player.h"

namespace {

using app_assist::WTimer;
using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SaveArg;
using testing::SetArgPointee;

constexpr char path[] = "/video/a.mp4";
int the_display = 0;
int the_stream = 0;

const std::string no_inside = "* Critical * PlayerMgrInside is nullptr.";
const std::string no_player = "* Critical * m_pMmPlayerHandle is not existed.";

TslPlayerMgrInside &shared() {
    return *s_pPlayerMgrInside.load();
}

// Messages that reached the main loop.
std::vector<std::string> prepared_messages;
std::vector<int> error_messages;
std::vector<int> seek_messages;

void read_prepared(void *, void *buffer, unsigned int size) {
    prepared_messages.emplace_back(static_cast<char *>(buffer), size);
}
void read_error(void *, void *buffer, unsigned int) {
    error_messages.push_back(*static_cast<int *>(buffer));
}
void read_seek(void *, void *buffer, unsigned int) {
    seek_messages.push_back(*static_cast<unsigned char *>(buffer));
}
void read_nothing(void *, void *, unsigned int) {}

// Succeeds and writes a number, which need not be one of the enumerators, as a C platform can.
ACTION_P(GiveNumber, number) {
    const int value = number;
    std::memcpy(arg1, &value, sizeof value);
    return 0;
}

class PlayerMgr : public testing::Test {
protected:
    void SetUp() override {
        prepared_messages.clear();
        error_messages.clear();
        seek_messages.clear();
        mock::fake_player().stop_clock();
    }

    // With pipes and player, in state idle, and an empty log.
    void create() {
        m_mgr = std::make_unique<TslPlayerMgr>();
        m_mgr->addCbPipeOfSetPosition(read_seek, this);
        m_mgr->addCbPipeOfPlay(read_prepared, read_error, read_nothing, read_nothing, this);
        m_mgr->createPlayer();
        logs::clear();
    }

    void create_prepared() {
        create();
        m_mgr->readyAsync(path);
        mock::fake_player().drain();
        ASSERT_TRUE(support::run_main_loop_until([] { return !prepared_messages.empty(); }));
        prepared_messages.clear();
        logs::clear();
    }

    // The platform answers this state from here on, whatever it does.
    static void pretend_state(int state) {
        ON_CALL(mock::player(), player_get_state).WillByDefault(GiveNumber(state));
    }

    static void verify() { testing::Mock::VerifyAndClearExpectations(&mock::player()); }

    std::unique_ptr<TslPlayerMgr> m_mgr;
};

// ---- guards, a row for each operation

struct Operation {
    std::string name;
    std::function<double(TslPlayerMgr &)> run;
    double failure = 0;
    logs::Expected without_player = logs::error(no_player);
};

std::ostream &operator<<(std::ostream &stream, const Operation &row) {
    return stream << row.name;
}

#define RUN(call) [](TslPlayerMgr &mgr) -> double { return mgr.call; }

std::vector<Operation> operations() {
    return {
        {"destroyPlayer", RUN(destroyPlayer())},
        {"ready", RUN(ready(path))},
        {"readyAsync", RUN(readyAsync(path))},
        {"play", RUN(play())},
        {"pause", RUN(pause())},
        {"stop", RUN(stop()), 0, logs::warn("m_pMmPlayerHandle is not existed.")},
        {"rewind", RUN(rewind())},
        {"fastForward", RUN(fastForward())},
        {"cancelLongpressSeek", RUN(cancelLongpressSeek())},
        {"setPosition", RUN(setPosition(1, true))},
        {"setPositionAsLatestPlayedPosition", RUN(setPositionAsLatestPlayedPosition(1, true))},
        {"setPlaySpeedRate", RUN(setPlaySpeedRate(1.0F))},
        {"setSubtitlePath", RUN(setSubtitlePath("/a.srt"))},
        {"setDisplayVisible", RUN(setDisplayVisible(true))},
        {"setDisplayMode", RUN(setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL))},
        {"setDisplayRotation", RUN(setDisplayRotation(PLAYER_DISPLAY_ROTATION_TYPE_NONE))},
        {"setDisplayID", RUN(setDisplayID(&the_display, PLAYER_DISPLAY_TYPE_OF_OVERLAY))},
        {"setAudioPolicyInfo", RUN(setAudioPolicyInfo(&the_stream))},
        {"setPlayerVolume", RUN(setPlayerVolume(1.0F, 1.0F))},
        {"getPosition", RUN(getPosition())},
        {"getDuration", RUN(getDuration())},
        {"getPlayerState", RUN(getPlayerState())},
        {"getDisplayMode", RUN(getDisplayMode()), -1},
        {"getDisplayRotation", RUN(getDisplayRotation())},
        {"getVolumeLeft", RUN(getVolumeLeft()), -1},
        {"getVolumeRight", RUN(getVolumeRight()), -1},
        {"getDisplayVisible", RUN(getDisplayVisible())},
        {"getVideoCodecInfo", RUN(getVideoCodecInfo() != nullptr)},
        {"getClosedCaptionExisted", RUN(getClosedCaptionExisted())},
    };
}

class PlayerMgrGuard : public PlayerMgr, public testing::WithParamInterface<Operation> {};

TEST_P(PlayerMgrGuard, AnswersFailureWithoutSharedState) {
    TslPlayerMgr first;
    { const TslPlayerMgr second; }
    logs::clear();
    EXPECT_EQ(GetParam().run(first), GetParam().failure);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_inside)}));
    EXPECT_TRUE(LoggedIn(GetParam().name, DLOG_ERROR, no_inside));
}

TEST_P(PlayerMgrGuard, AnswersFailureWithoutPlayer) {
    TslPlayerMgr mgr;
    logs::clear();
    EXPECT_EQ(GetParam().run(mgr), GetParam().failure);
    EXPECT_TRUE(OnlyFaultsLogged({GetParam().without_player}));
    EXPECT_TRUE(LoggedIn(GetParam().name, GetParam().without_player.level,
                         GetParam().without_player.message));
}

INSTANTIATE_TEST_SUITE_P(Every, PlayerMgrGuard, testing::ValuesIn(operations()),
                         [](const auto &info) { return info.param.name; });

TEST_F(PlayerMgr, CreatePlayerNeedsSharedState) {
    TslPlayerMgr first;
    { const TslPlayerMgr second; }
    logs::clear();
    EXPECT_FALSE(first.createPlayer());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_inside)}));
}

TEST_F(PlayerMgr, NullPathIsTestedBeforeTheGuard) {
    TslPlayerMgr mgr;
    logs::clear();
    EXPECT_FALSE(mgr.readyAsync(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no szItemPath.")}));
}

TEST_F(PlayerMgr, NullDisplayIsTestedBeforeTheGuard) {
    TslPlayerMgr mgr;
    logs::clear();
    EXPECT_FALSE(mgr.setDisplayID(nullptr, PLAYER_DISPLAY_TYPE_OF_OVERLAY));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("pDisplayId is not existed.")}));
}

TEST_F(PlayerMgr, NullStreamIsTestedBeforeTheGuard) {
    TslPlayerMgr mgr;
    logs::clear();
    EXPECT_FALSE(mgr.setAudioPolicyInfo(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pStreamInfo is nullptr.")}));
}

// ---- life

TEST(PlayerMgrObject, IsEmptyAndHasNoVirtualOperations) {
    EXPECT_TRUE(std::is_empty_v<TslPlayerMgr>);
}

TEST_F(PlayerMgr, SecondInstanceSharesTheState) {
    create();
    TslPlayerMgr second;
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("PlayerMgrInside has been existed already.")}));
    EXPECT_EQ(second.getPlayerState(), PLAY_STATE_IDLE);
}

TEST_F(PlayerMgr, DestroyingEitherInstanceClearsTheStateForBoth) {
    create();
    { const TslPlayerMgr second; }
    EXPECT_EQ(s_pPlayerMgrInside.load(), nullptr);
    EXPECT_EQ(mock::fake_player().players(), 0);
    EXPECT_EQ(m_mgr->getPlayerState(), PLAY_STATE_NONE);
}

TEST_F(PlayerMgr, CreatePlayerRegistersPlayThenStreamThenSubtitle) {
    TslPlayerMgr mgr;
    const InSequence in_order;
    EXPECT_CALL(mock::player(), player_create);
    EXPECT_CALL(mock::player(), player_set_error_cb(_, _playerErrorCb, &mgr));
    EXPECT_CALL(mock::player(), player_set_completed_cb(_, _playerCompletedCb, &mgr));
    EXPECT_CALL(mock::player(), player_set_interrupted_cb(_, _playerInterruptedCb, &mgr));
    EXPECT_CALL(mock::player(),
                player_set_missed_plugin_info_cb(_, _playerMissedPluginInfoCb, &mgr));
    EXPECT_CALL(mock::player(), player_set_buffering_cb(_, _playerBufferingCb, &mgr));
    EXPECT_CALL(mock::player(),
                player_set_progressive_download_message_cb(_, _playerPdMessageCb, &mgr));
    EXPECT_CALL(mock::player(), player_set_subtitle_updated_cb(_, _playerSubtitleUpdatedCb, &mgr));
    EXPECT_TRUE(mgr.createPlayer());
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerMgr, CreatePlayerIsRefusedWhileThereIsOne) {
    create();
    EXPECT_CALL(mock::player(), player_create).Times(0);
    EXPECT_FALSE(m_mgr->createPlayer());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * m_pMmPlayerHandle is already existed.")}));
}

TEST_F(PlayerMgr, CreatePlayerIsTrueWhateverTheRegistrationsReturn) {
    TslPlayerMgr mgr;
    EXPECT_CALL(mock::player(), player_set_error_cb).WillOnce(Return(PLAYER_ERROR_INVALID_STATE));
    EXPECT_CALL(mock::player(), player_set_buffering_cb)
        .WillOnce(Return(PLAYER_ERROR_INVALID_STATE));
    EXPECT_CALL(mock::player(), player_set_subtitle_updated_cb)
        .WillOnce(Return(PLAYER_ERROR_INVALID_STATE));
    EXPECT_TRUE(mgr.createPlayer());
}

TEST_F(PlayerMgr, DestroyPlayerEndsThePlayerOnly) {
    create();
    EXPECT_TRUE(m_mgr->destroyPlayer());
    EXPECT_EQ(mock::fake_player().players(), 0);
    EXPECT_EQ(shared().m_pMmPlayerHandle, nullptr);
    EXPECT_NE(shared().m_pPreparedPipe.load(), nullptr);
    EXPECT_TRUE(m_mgr->createPlayer());
    EXPECT_EQ(mock::fake_player().players(), 1);
}

TEST_F(PlayerMgr, CreatePlayerObjWarnsWhenThereIsOne) {
    create();
    EXPECT_FALSE(shared()._createPlayerObj());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pMmPlayerHandle is already existed.")}));
}

TEST_F(PlayerMgr, DestroyPlayerObjWarnsWhenThereIsNone) {
    const TslPlayerMgr mgr;
    logs::clear();
    EXPECT_FALSE(shared()._destroyPlayerObj());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pMmPlayerHandle is already destroyed.")}));
}

TEST_F(PlayerMgr, DestructorStopsThenEmptiesThePipesThenDestroysThePlayer) {
    create_prepared();
    m_mgr->play();
    m_mgr->rewind();
    const app_assist::WTimerWeakPtr timer = shared().m_pLongpressSeekTimer;
    logs::clear();
    const InSequence in_order;
    EXPECT_CALL(mock::player(), player_stop);
    EXPECT_CALL(mock::player(), player_unprepare);
    EXPECT_CALL(mock::player(), player_unset_error_cb).WillOnce([&](player_h) {
        EXPECT_EQ(shared().m_pErrorPipe.load(), nullptr);
        EXPECT_EQ(shared().m_pPreparedPipe.load(), nullptr);
        EXPECT_EQ(shared().m_pInterruptedPipe.load(), nullptr);
        EXPECT_EQ(shared().m_pMissedPluginInfoPipe.load(), nullptr);
        EXPECT_EQ(shared().m_pSeekCompletedPipe.load(), nullptr);
        EXPECT_TRUE(timer.expired());
        return 0;
    });
    EXPECT_CALL(mock::player(), player_destroy);
    m_mgr.reset();
    EXPECT_EQ(s_pPlayerMgrInside.load(), nullptr);
}

TEST_F(PlayerMgr, DestructorDeletesThePipeOfEverySlot) {
    create();
    TslPlayerMgrInside::PipeSlot TslPlayerMgrInside::*const slots[] = {
        &TslPlayerMgrInside::m_pErrorPipe,
        &TslPlayerMgrInside::m_pBufferingPipe,
        &TslPlayerMgrInside::m_pCompletedPipe,
        &TslPlayerMgrInside::m_pPdMessagePipe,
        &TslPlayerMgrInside::m_pInterruptedPipe,
        &TslPlayerMgrInside::m_pReservedPipe1,
        &TslPlayerMgrInside::m_pSubtitleUpdatedPipe,
        &TslPlayerMgrInside::m_pMissedPluginInfoPipe,
        &TslPlayerMgrInside::m_pPreparedPipe,
        &TslPlayerMgrInside::m_pReservedPipe2,
        &TslPlayerMgrInside::m_pSeekCompletedPipe,
        &TslPlayerMgrInside::m_pReservedPipe3,
        &TslPlayerMgrInside::m_pReservedPipe4,
        &TslPlayerMgrInside::m_pSeekCompletedAsLatestPlayedPositionPipe,
    };
    // Pipes over descriptors that the test knows: a deleted pipe has closed its own.
    std::vector<int> write_ends;
    for (const auto slot : slots) {
        TslPlayerMgrInside::_deletePipe(shared().*slot);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        write_ends.push_back(ends[1]);
        (shared().*slot) =
            ecore_pipe_full_add(read_nothing, this, ends[0], ends[1], EINA_FALSE, EINA_FALSE);
    }
    EXPECT_CALL(mock::player(), player_unset_error_cb).WillOnce([&](player_h) {
        for (const auto slot : slots) {
            EXPECT_EQ((shared().*slot).load(), nullptr);
        }
        for (const int end : write_ends) {
            EXPECT_EQ(fcntl(end, F_GETFD), -1);
        }
        return 0;
    });
    m_mgr.reset();
    EXPECT_TRUE(LoggedIn("~TslPlayerMgrInside", DLOG_INFO, ""));
}

TEST_F(PlayerMgr, DestructorWithoutPlayerStillClearsTheState) {
    auto mgr = std::make_unique<TslPlayerMgr>();
    logs::clear();
    mgr.reset();
    EXPECT_EQ(s_pPlayerMgrInside.load(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pMmPlayerHandle is not existed."),
                                  logs::warn("m_pMmPlayerHandle is already destroyed.")}));
}

// ---- which state admits what

struct Admission {
    std::string name;
    std::function<bool(TslPlayerMgr &)> run;
    std::function<void(int times)> expect;
    std::set<int> states;
    std::string refusal;
};

std::ostream &operator<<(std::ostream &stream, const Admission &row) {
    return stream << row.name;
}

#define TIMES(function)                                             \
    [](int times) {                                                 \
        ON_CALL(mock::player(), function).WillByDefault(Return(0)); \
        EXPECT_CALL(mock::player(), function).Times(times);         \
    }

std::vector<Admission> admissions() {
    const std::string invalid = "The state of the player is invalid.";
    const std::string seek = "The state of the player is not in pause or play or ready.";
    return {
        {"ready",
         RUN(ready(path)),
         TIMES(player_prepare),
         {1},
         "The state of the player is not in idle."},
        {"play",
         RUN(play()),
         TIMES(player_start),
         {2, 3, 4},
         "The state of the player is not in ready or pause."},
        {"pause", RUN(pause()), TIMES(player_pause), {0, 1, 2, 3, 4}, ""},
        {"setPlaySpeedRate",
         RUN(setPlaySpeedRate(1.0F)),
         TIMES(player_set_playback_rate_ex),
         {3, 4},
         "The state of the player is not in pause or play."},
        {"setSubtitlePath",
         RUN(setSubtitlePath("/a.srt")),
         TIMES(player_set_subtitle_path),
         {1, 2, 3, 4},
         invalid},
        {"setDisplayVisible",
         RUN(setDisplayVisible(true)),
         TIMES(player_set_display_visible),
         {2, 3, 4},
         invalid},
        {"setDisplayMode",
         RUN(setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL)),
         TIMES(player_set_display_mode),
         {1, 2, 3, 4},
         invalid},
        {"setDisplayRotation",
         RUN(setDisplayRotation(PLAYER_DISPLAY_ROTATION_TYPE_90)),
         TIMES(player_set_display_rotation),
         {1, 2, 3, 4},
         invalid},
        {"setDisplayID",
         [](TslPlayerMgr &mgr) {
             // State none frees it.
             void *display = std::malloc(16);
             const bool result = mgr.setDisplayID(display, PLAYER_DISPLAY_TYPE_OF_OVERLAY);
             if (mgr.getPlayerState() != PLAY_STATE_NONE) {
                 std::free(display);
             }
             return result;
         },
         TIMES(player_set_display),
         {1, 2, 3, 4},
         invalid},
        {"setAudioPolicyInfo",
         RUN(setAudioPolicyInfo(&the_stream)),
         [](int) {},
         {0, 1, 2, 3, 4},
         ""},
        {"setPlayerVolume",
         RUN(setPlayerVolume(1.0F, 1.0F)),
         TIMES(player_set_volume),
         {0, 1, 2, 3, 4},
         ""},
        {"cancelLongpressSeek", RUN(cancelLongpressSeek()), [](int) {}, {0, 1, 2, 3, 4}, ""},
        {"rewind", RUN(rewind()), [](int) {}, {0, 1, 2, 3, 4}, ""},
        {"fastForward", RUN(fastForward()), [](int) {}, {0, 1, 2, 3, 4}, ""},
    };
}

class PlayerMgrAdmission : public PlayerMgr, public testing::WithParamInterface<Admission> {};

TEST_P(PlayerMgrAdmission, FollowsTheState) {
    const Admission &row = GetParam();
    ON_CALL(mock::player(), player_set_play_position)
        .WillByDefault([](player_h, int, bool, player_seek_completed_cb, void *cookie) {
            std::free(cookie);
            return 0;
        });
    ON_CALL(mock::player(), player_get_play_position).WillByDefault(Return(0));
    create();
    for (int state = 0; state <= 4; ++state) {
        const bool admitted = row.states.contains(state);
        pretend_state(state);
        logs::clear();
        row.expect(admitted ? 1 : 0);
        EXPECT_EQ(row.run(*m_mgr), admitted) << "state " << state;
        verify();
        if (admitted) {
            EXPECT_TRUE(NoFaultLogged());
        } else {
            const auto line = row.refusal + " nPlayStateType: " + std::to_string(state);
            EXPECT_TRUE(OnlyFaultsLogged({logs::warn(line)}));
            EXPECT_TRUE(LoggedIn(row.name, DLOG_WARN, line));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, PlayerMgrAdmission, testing::ValuesIn(admissions()),
                         [](const auto &info) { return info.param.name; });

TEST_F(PlayerMgr, ReadyAsyncIsForIdleOnly) {
    create();
    for (int state = 0; state <= 4; ++state) {
        pretend_state(state);
        logs::clear();
        EXPECT_CALL(mock::player(), player_set_uri).Times(state == 1 ? 1 : 0);
        EXPECT_EQ(m_mgr->readyAsync(path), state == 1);
        verify();
        if (state != 1) {
            EXPECT_TRUE(OnlyFaultsLogged(
                {logs::warn("The state of the player is not in idle. nPlayStateType: " +
                            std::to_string(state))}));
        }
    }
}

// ---- preparing

TEST_F(PlayerMgr, ReadyAsyncBringsThePathToThePreparedPipe) {
    create();
    EXPECT_TRUE(m_mgr->readyAsync(path));
    EXPECT_EQ(mock::fake_player().uri(), path);
    ASSERT_TRUE(support::run_main_loop_until([] { return !prepared_messages.empty(); }));
    EXPECT_EQ(prepared_messages, std::vector<std::string>{path});
    EXPECT_EQ(m_mgr->getPlayerState(), PLAY_STATE_READY);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerMgr, ReadyAsyncHandsOnADuplicateOfThePath) {
    create();
    void *duplicate = nullptr;
    EXPECT_CALL(mock::player(), player_prepare_async(_, _playerPreparedCb, _))
        .WillOnce(DoAll(SaveArg<2>(&duplicate), Return(0)));
    EXPECT_TRUE(m_mgr->readyAsync(path));
    EXPECT_NE(duplicate, path);
    EXPECT_STREQ(static_cast<char *>(duplicate), path);
    std::free(duplicate);
}

TEST_F(PlayerMgr, ReadyAsyncReportsAPathThatCannotBeSet) {
    create();
    EXPECT_CALL(mock::player(), player_set_uri).WillOnce(Return(PLAYER_ERROR_INVALID_URI));
    EXPECT_CALL(mock::player(), player_prepare_async).Times(0);
    EXPECT_FALSE(m_mgr->readyAsync(path));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * player_set_uri() failed .. [0xfe6c0024]"),
                          logs::error("* Critical * PLAYER_ERROR_INVALID_URI"),
                          logs::error("* Critical * It is fail to set a url of the video item.")}));
    ASSERT_TRUE(support::run_main_loop_until([] { return !error_messages.empty(); }));
    EXPECT_EQ(error_messages, std::vector<int>{PLAYER_ERROR_TYPE_INVALID_URI});
}

TEST_F(PlayerMgr, ReadyAsyncReportsARefusedPreparationAndKeepsTheDuplicate) {
    create();
    void *duplicate = nullptr;
    EXPECT_CALL(mock::player(), player_prepare_async)
        .WillOnce(DoAll(SaveArg<2>(&duplicate), Return(PLAYER_ERROR_SOUND_POLICY)));
    EXPECT_FALSE(m_mgr->readyAsync(path));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * player_prepare_async() failed .. [0xfe6c0025]"),
         logs::error("* Critical * PLAYER_ERROR_SOUND_POLICY"),
         logs::error("* Critical * It is failed to prepare playing. It means realization is "
                     "failed.")}));
    ASSERT_TRUE(support::run_main_loop_until([] { return !error_messages.empty(); }));
    EXPECT_EQ(error_messages, std::vector<int>{PLAYER_ERROR_TYPE_NOT_SUPPORTED_FILE});
    EXPECT_STREQ(static_cast<char *>(duplicate), path);
    std::free(duplicate);
}

TEST_F(PlayerMgr, ReadyDeliversAnEmptyMessageOnALaterTurn) {
    create();
    EXPECT_TRUE(m_mgr->ready(path));
    EXPECT_TRUE(prepared_messages.empty());
    ASSERT_TRUE(support::run_main_loop_until([] { return !prepared_messages.empty(); }));
    EXPECT_EQ(prepared_messages, std::vector<std::string>{""});
    EXPECT_EQ(m_mgr->getPlayerState(), PLAY_STATE_READY);
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_TRUE(LoggedInfo(
        "It is succeed to prepare player. Customized prepared_callback will be called."));
}

TEST_F(PlayerMgr, ReadyWithoutPathFailsInTheWrapper) {
    create();
    EXPECT_FALSE(m_mgr->ready(nullptr));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * Player URI to set is nullptr."),
                          logs::error("* Critical * It is fail to set a url of the video item.")}));
    ASSERT_TRUE(support::run_main_loop_until([] { return !error_messages.empty(); }));
    EXPECT_EQ(error_messages, std::vector<int>{10});
}

TEST_F(PlayerMgr, ReadyReportsAFailedPreparation) {
    create();
    EXPECT_CALL(mock::player(), player_prepare).WillOnce(Return(PLAYER_ERROR_CONNECTION_FAILED));
    EXPECT_FALSE(m_mgr->ready(path));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * player_prepare() failed .. [0xfe6c0026]"),
         logs::error("* Critical * PLAYER_ERROR_CONNECTION_FAILED"),
         logs::error("* Critical * It is failed to prepare playing. It means realization is "
                     "failed.")}));
    ASSERT_TRUE(support::run_main_loop_until([] { return !error_messages.empty(); }));
    EXPECT_EQ(error_messages, std::vector<int>{9});
    EXPECT_TRUE(prepared_messages.empty());
}

// ---- transport

TEST_F(PlayerMgr, PlayWhilePlayingAsksThePlatformAgain) {
    create_prepared();
    EXPECT_TRUE(m_mgr->play());
    EXPECT_CALL(mock::player(), player_start).WillOnce(Return(0)).WillOnce(Return(-1));
    EXPECT_TRUE(m_mgr->play());
    EXPECT_FALSE(m_mgr->play());
    EXPECT_TRUE(LoggedError("* Critical * It is failed to play a video item."));
}

TEST_F(PlayerMgr, PauseInIdleGetsThePlatformsRefusal) {
    create();
    EXPECT_FALSE(m_mgr->pause());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * player_pause() failed .. [0xfe6c0022]"),
                                  logs::error("* Critical * PLAYER_ERROR_INVALID_STATE")}));
}

TEST_F(PlayerMgr, PlaysPausesAndPlaysOn) {
    create_prepared();
    EXPECT_TRUE(m_mgr->play());
    EXPECT_EQ(m_mgr->getPlayerState(), PLAY_STATE_PLAY);
    EXPECT_TRUE(m_mgr->pause());
    EXPECT_EQ(m_mgr->getPlayerState(), PLAY_STATE_PAUSE);
    EXPECT_TRUE(m_mgr->play());
    EXPECT_EQ(m_mgr->getPlayerState(), PLAY_STATE_PLAY);
    EXPECT_TRUE(NoFaultLogged());
}

std::string stop_line(int state, const std::string &after) {
    char text[100];
    std::snprintf(
        text, sizeof text, "pMmPlayer: %x, nPlayStateType: %d --- After %s",
        static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(shared().m_pMmPlayerHandle)), state,
        after.c_str());
    return text;
}

TEST_F(PlayerMgr, StopInIdleCallsNothing) {
    create();
    EXPECT_CALL(mock::player(), player_stop).Times(0);
    EXPECT_CALL(mock::player(), player_unprepare).Times(0);
    EXPECT_TRUE(m_mgr->stop());
    EXPECT_TRUE(LoggedInOrder(
        {logs::warn("The state of the player is not in play or pause. nPlayStateType: 1"),
         logs::info(stop_line(1, "stop")),
         logs::warn("It was already unrealize. nPlayStateType: 1"),
         logs::info(stop_line(1, "unrealize"))}));
}

TEST_F(PlayerMgr, StopInReadyOnlyUnprepares) {
    create_prepared();
    EXPECT_CALL(mock::player(), player_stop).Times(0);
    EXPECT_CALL(mock::player(), player_unprepare);
    EXPECT_TRUE(m_mgr->stop());
    EXPECT_TRUE(LoggedInOrder(
        {logs::warn("The state of the player is not in play or pause. nPlayStateType: 2"),
         logs::info(stop_line(2, "stop")), logs::info(stop_line(1, "unrealize"))}));
    EXPECT_TRUE(NotLogged("It was already unrealize"));
}

TEST_F(PlayerMgr, StopInPlayStopsAndUnprepares) {
    create_prepared();
    m_mgr->play();
    logs::clear();
    const InSequence in_order;
    EXPECT_CALL(mock::player(), player_stop);
    EXPECT_CALL(mock::player(), player_unprepare);
    EXPECT_TRUE(m_mgr->stop());
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_TRUE(
        LoggedInOrder({logs::info(stop_line(2, "stop")), logs::info(stop_line(1, "unrealize"))}));
}

TEST_F(PlayerMgr, StopInPauseStopsAndUnprepares) {
    create_prepared();
    m_mgr->play();
    m_mgr->pause();
    logs::clear();
    const InSequence in_order;
    EXPECT_CALL(mock::player(), player_stop);
    EXPECT_CALL(mock::player(), player_unprepare);
    EXPECT_TRUE(m_mgr->stop());
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerMgr, StopInNoneCallsNothing) {
    create();
    pretend_state(0);
    EXPECT_CALL(mock::player(), player_stop).Times(0);
    EXPECT_CALL(mock::player(), player_unprepare).Times(0);
    EXPECT_TRUE(m_mgr->stop());
    EXPECT_TRUE(LoggedWarn("It was already unrealize. nPlayStateType: 0"));
}

TEST_F(PlayerMgr, StopGoesOnAfterFailuresAndIsTrue) {
    create_prepared();
    m_mgr->play();
    logs::clear();
    EXPECT_CALL(mock::player(), player_stop).WillOnce(Return(PLAYER_ERROR_SEEK_FAILED));
    EXPECT_CALL(mock::player(), player_unprepare).WillOnce(Return(PLAYER_ERROR_SEEK_FAILED));
    EXPECT_TRUE(m_mgr->stop());
    EXPECT_TRUE(LoggedInOrder({
        logs::error("* Critical * player_stop() failed .. [0xfe6c0021]"),
        logs::error("* Critical * It is failed to stop playing a video item."),
        logs::info(stop_line(3, "stop")),
        logs::error("* Critical * player_unprepare() failed .. [0xfe6c0021]"),
        logs::error("* Critical * It is failed to unprepare."),
        logs::info(stop_line(3, "unrealize")),
    }));
    verify();
}

// ---- seeking

struct SeekRow {
    std::string name;
    bool (TslPlayerMgr::*seek)(int, bool);
    player_seek_completed_cb callback;
    logs::Expected failure;
};

std::ostream &operator<<(std::ostream &stream, const SeekRow &row) {
    return stream << row.name;
}

class PlayerMgrSeek : public PlayerMgr, public testing::WithParamInterface<SeekRow> {
protected:
    bool seek(int position, bool accurate) { return (*m_mgr.*GetParam().seek)(position, accurate); }
};

INSTANTIATE_TEST_SUITE_P(
    Both, PlayerMgrSeek,
    testing::Values(SeekRow{"setPosition", &TslPlayerMgr::setPosition, _playerSeekCompletedCb,
                            logs::warn("It is failed to set position.")},
                    SeekRow{"setPositionAsLatestPlayedPosition",
                            &TslPlayerMgr::setPositionAsLatestPlayedPosition,
                            _playerSeekCompletedAsLatestPlayedPositionCb,
                            logs::error("* Critical * It is failed to set position.")}),
    [](const auto &info) { return info.param.name; });

TEST_P(PlayerMgrSeek, IsRefusedBelowReadyAndLeavesNoCookie) {
    create();
    for (const int state : {0, 1}) {
        pretend_state(state);
        logs::clear();
        EXPECT_CALL(mock::player(), player_set_play_position).Times(0);
        const support::BlockWatch cookies(1);
        EXPECT_FALSE(seek(500, true));
        EXPECT_EQ(cookies.allocated(), 1);
        EXPECT_EQ(cookies.live(), 0);
        EXPECT_TRUE(OnlyFaultsLogged({logs::warn(
            "The state of the player is not in pause or play or ready. nPlayStateType: " +
            std::to_string(state))}));
        verify();
    }
}

TEST_P(PlayerMgrSeek, PassesFromReadyOnWithItsCallbackAndCookie) {
    create();
    for (const int state : {2, 3, 4}) {
        for (const bool accurate : {false, true}) {
            pretend_state(state);
            logs::clear();
            void *cookie = nullptr;
            EXPECT_CALL(mock::player(),
                        player_set_play_position(_, 4321, accurate, GetParam().callback, _))
                .WillOnce(DoAll(SaveArg<4>(&cookie), Return(0)));
            EXPECT_TRUE(seek(4321, accurate));
            EXPECT_TRUE(NoFaultLogged());
            EXPECT_TRUE(LoggedIn(GetParam().name, DLOG_INFO,
                                 "nPosition: 4321, bAccurate : " + std::to_string(accurate)));
            ASSERT_NE(cookie, nullptr);
            EXPECT_EQ(*static_cast<unsigned char *>(cookie), accurate ? 1 : 0);
            std::free(cookie);
            verify();
        }
    }
}

TEST_P(PlayerMgrSeek, FreesTheCookieWhenThePlatformRefuses) {
    create();
    pretend_state(3);
    EXPECT_CALL(mock::player(), player_set_play_position)
        .WillOnce(Return(PLAYER_ERROR_SEEK_FAILED));
    const support::BlockWatch cookies(1);
    EXPECT_FALSE(seek(500, true));
    EXPECT_EQ(cookies.allocated(), 1);
    EXPECT_EQ(cookies.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * player_set_play_position() failed .. [0xfe6c0021]"),
         logs::error("* Critical * PLAYER_ERROR_SEEK_FAILED"), GetParam().failure}));
    verify();
}

TEST_F(PlayerMgr, AccurateSeekReachesItsReaderAsOne) {
    create_prepared();
    EXPECT_TRUE(m_mgr->setPosition(1000, true));
    ASSERT_TRUE(support::run_main_loop_until([] { return !seek_messages.empty(); }));
    EXPECT_EQ(seek_messages, std::vector<int>{1});
    EXPECT_EQ(m_mgr->getPosition(), 1000);
}

// ---- long-press seek

TEST_F(PlayerMgr, LongPressStepsOncePerSecondAndNotAtOnce) {
    create_prepared();
    mock::fake_player().set_position(10000);
    EXPECT_CALL(mock::player(), player_set_play_position).Times(0);
    EXPECT_TRUE(m_mgr->rewind());
    support::run_loop_turns();
    verify();

    Ecore_Timer *timer = WTimer::getTimerHandle(shared().m_pLongpressSeekTimer);
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(ecore_timer_interval_get(timer), 1.0);
    for (const int expected : {8000, 6000}) {
        ecore_timer_delay(timer, -1.0);
        ASSERT_TRUE(support::run_main_loop_until([&] { return m_mgr->getPosition() == expected; }));
        EXPECT_EQ(WTimer::getTimerHandle(shared().m_pLongpressSeekTimer), timer);
    }
}

TEST_F(PlayerMgr, FastForwardStepsForward) {
    create_prepared();
    mock::fake_player().set_position(10000);
    EXPECT_TRUE(m_mgr->fastForward());
    ecore_timer_delay(WTimer::getTimerHandle(shared().m_pLongpressSeekTimer), -1.0);
    ASSERT_TRUE(support::run_main_loop_until([&] { return m_mgr->getPosition() == 12000; }));
}

TEST_F(PlayerMgr, RunningLongPressIsNeitherRestartedNorReversed) {
    create_prepared();
    mock::fake_player().set_position(10000);
    EXPECT_TRUE(m_mgr->rewind());
    Ecore_Timer *timer = WTimer::getTimerHandle(shared().m_pLongpressSeekTimer);
    EXPECT_TRUE(m_mgr->fastForward());
    EXPECT_TRUE(m_mgr->rewind());
    EXPECT_EQ(WTimer::getTimerHandle(shared().m_pLongpressSeekTimer), timer);
    ecore_timer_delay(timer, -1.0);
    ASSERT_TRUE(support::run_main_loop_until([&] { return m_mgr->getPosition() == 8000; }));
}

struct TickRow {
    bool forward;
    int position;
    int duration;
    int target;  ///< equal to position: no seek
};

class LongPressTick : public PlayerMgr, public testing::WithParamInterface<TickRow> {};

TEST_P(LongPressTick, SeeksToItsTarget) {
    const TickRow &row = GetParam();
    create_prepared();
    mock::fake_player().set_duration(row.duration);
    ON_CALL(mock::player(), player_get_play_position)
        .WillByDefault(DoAll(SetArgPointee<1>(row.position), Return(0)));
    void *cookie = nullptr;
    if (row.target != row.position) {
        EXPECT_CALL(mock::player(),
                    player_set_play_position(_, row.target, false, _playerSeekCompletedCb, _))
            .WillOnce(DoAll(SaveArg<4>(&cookie), Return(0)));
    } else {
        EXPECT_CALL(mock::player(), player_set_play_position).Times(0);
    }
    const auto tick = row.forward ? _fastForwardTimerCb : _rewindTimerCb;
    EXPECT_TRUE(tick(shared().m_pMmPlayerHandle));
    EXPECT_TRUE(LoggedInfo("Current Positon: " + std::to_string(row.position) +
                           ", New Position: " + std::to_string(row.target)));
    if (cookie != nullptr) {
        EXPECT_EQ(*static_cast<unsigned char *>(cookie), 0);
        std::free(cookie);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Every, LongPressTick,
    testing::Values(TickRow{false, 10000, 60000, 8000}, TickRow{false, 2000, 60000, 0},
                    TickRow{false, 1000, 60000, 0}, TickRow{false, 0, 60000, 0},
                    TickRow{false, 70000, 60000, 60000}, TickRow{true, 10000, 60000, 12000},
                    TickRow{true, 58000, 60000, 60000}, TickRow{true, 59000, 60000, 60000},
                    TickRow{true, 60000, 60000, 60000}, TickRow{true, 500, 0, 0}));

TEST_F(PlayerMgr, LongPressTickWithoutPlayerEndsTheTimer) {
    for (const auto tick : {_rewindTimerCb, _fastForwardTimerCb}) {
        logs::clear();
        EXPECT_FALSE(tick(nullptr));
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * UserData is nullptr.")}));
    }
}

TEST_F(PlayerMgr, LongPressTickGoesOnWhenTheSeekFails) {
    create_prepared();
    mock::fake_player().set_position(10000);
    EXPECT_CALL(mock::player(), player_set_play_position)
        .WillOnce([](player_h, int, bool, player_seek_completed_cb, void *cookie) {
            std::free(cookie);
            return static_cast<int>(PLAYER_ERROR_SEEK_FAILED);
        });
    EXPECT_TRUE(_rewindTimerCb(shared().m_pMmPlayerHandle));
}

TEST_F(PlayerMgr, CancelEndsTheLongPressWithAnAccurateSeek) {
    create_prepared();
    mock::fake_player().set_position(10000);
    m_mgr->fastForward();
    const app_assist::WTimerWeakPtr timer = shared().m_pLongpressSeekTimer;
    EXPECT_CALL(mock::player(),
                player_set_play_position(_, 10000, true, _playerSeekCompletedCb, _));
    EXPECT_TRUE(m_mgr->cancelLongpressSeek());
    EXPECT_TRUE(timer.expired());
    ASSERT_TRUE(support::run_main_loop_until([] { return !seek_messages.empty(); }));
    EXPECT_EQ(seek_messages, std::vector<int>{1});
    verify();
}

TEST_F(PlayerMgr, CancelWithoutLongPressStillSeeks) {
    create_prepared();
    mock::fake_player().set_position(777);
    EXPECT_CALL(mock::player(), player_set_play_position(_, 777, true, _, _));
    EXPECT_TRUE(m_mgr->cancelLongpressSeek());
    verify();
}

// ---- settings

TEST_F(PlayerMgr, SpeedRateIsTrueThoughThePlatformRefuses) {
    create_prepared();
    m_mgr->play();
    logs::clear();
    EXPECT_TRUE(m_mgr->setPlaySpeedRate(1.25F));
    EXPECT_EQ(mock::fake_player().rate(), 1.25F);
    EXPECT_TRUE(LoggedInfo("nSpeedRate : 1.250000"));
    EXPECT_TRUE(m_mgr->setPlaySpeedRate(2.0F));
    EXPECT_EQ(mock::fake_player().rate(), 1.25F);
    EXPECT_TRUE(LoggedWarn("It is failed to set play speed rate."));
}

TEST_F(PlayerMgr, NullSubtitlePathIsJudgedAfterTheStateIsRead) {
    create();
    EXPECT_CALL(mock::player(), player_get_state)
        .WillOnce(DoAll(SetArgPointee<1>(PLAYER_STATE_NONE), Return(0)));
    EXPECT_FALSE(m_mgr->setSubtitlePath(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no subtitle path.")}));
    verify();
}

TEST_F(PlayerMgr, FailedSubtitlePathIsFalse) {
    create();
    EXPECT_CALL(mock::player(), player_set_subtitle_path).WillOnce(Return(-2));
    EXPECT_FALSE(m_mgr->setSubtitlePath("/a.srt"));
    EXPECT_TRUE(LoggedWarn("It is failed to set subtitle path."));
}

TEST_F(PlayerMgr, FailedDisplayVisibleIsFalse) {
    create_prepared();
    EXPECT_CALL(mock::player(), player_set_display_visible(_, false)).WillOnce(Return(-2));
    EXPECT_FALSE(m_mgr->setDisplayVisible(false));
    EXPECT_TRUE(LoggedWarn("It is failed to set display visible."));
}

TEST_F(PlayerMgr, DisplayModesPassUnchanged) {
    create();
    for (int mode = 0; mode <= 5; ++mode) {
        EXPECT_TRUE(m_mgr->setDisplayMode(static_cast<PlayerDisplayMode>(mode)));
        EXPECT_EQ(mock::fake_player().display_mode(), mode);
        EXPECT_TRUE(LoggedIn("setDisplayMode", DLOG_INFO, "nDisplayMode: " + std::to_string(mode)));
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerMgr, DisplayModeSixAndAboveIsInvalid) {
    create();
    EXPECT_CALL(mock::player(), player_set_display_mode).Times(0);
    for (const int mode : {6, 7, 100}) {
        logs::clear();
        EXPECT_FALSE(m_mgr->setDisplayMode(static_cast<PlayerDisplayMode>(mode)));
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Invalid DisplayMode!")}));
    }
}

TEST_F(PlayerMgr, TheStateIsJudgedBeforeTheModeOrTypeOfTheDisplay) {
    create();
    pretend_state(0);
    const auto invalid = logs::warn("The state of the player is invalid. nPlayStateType: 0");
    EXPECT_FALSE(m_mgr->setDisplayMode(static_cast<PlayerDisplayMode>(6)));
    EXPECT_FALSE(m_mgr->setDisplayID(std::malloc(1), static_cast<PlayerDisplayType>(2)));
    EXPECT_TRUE(OnlyFaultsLogged({invalid, invalid}));
}

TEST_F(PlayerMgr, FailedDisplayModeIsTrue) {
    create();
    EXPECT_CALL(mock::player(), player_set_display_mode).WillOnce(Return(-2));
    EXPECT_TRUE(m_mgr->setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL));
    EXPECT_TRUE(LoggedWarn("It is failed to set display mode."));
}

TEST_F(PlayerMgr, DisplayRotationsPassAndOthersBecomeNone) {
    create();
    for (const auto &[rotation, sent] : std::vector<std::pair<int, int>>{
             {1, 1}, {2, 2}, {3, 3}, {0, 0}, {4, 0}, {7, 0}, {-1, 0}}) {
        EXPECT_CALL(mock::player(),
                    player_set_display_rotation(_, static_cast<player_display_rotation_e>(sent)))
            .WillOnce(Return(0));
        EXPECT_TRUE(m_mgr->setDisplayRotation(static_cast<PlayerDisplayRotation>(rotation)));
        EXPECT_TRUE(LoggedIn("setDisplayRotation", DLOG_INFO,
                             "nDisplayRotation: " + std::to_string(rotation)));
        verify();
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerMgr, FailedDisplayRotationIsFalse) {
    create();
    EXPECT_CALL(mock::player(), player_set_display_rotation).WillOnce(Return(-2));
    EXPECT_FALSE(m_mgr->setDisplayRotation(static_cast<PlayerDisplayRotation>(7)));
    EXPECT_TRUE(LoggedError("* Critical * PlayerCtrl->setDisplayRotation() is failed."));
}

TEST_F(PlayerMgr, DisplayIdPassesWithItsType) {
    create();
    EXPECT_TRUE(m_mgr->setDisplayID(&the_display, PLAYER_DISPLAY_TYPE_OF_OVERLAY));
    EXPECT_EQ(mock::fake_player().display(), &the_display);
    EXPECT_EQ(mock::fake_player().display_type(), PLAYER_DISPLAY_TYPE_OVERLAY);
    EXPECT_TRUE(m_mgr->setDisplayID(&the_display, PLAYER_DISPLAY_TYPE_OF_EVAS));
    EXPECT_EQ(mock::fake_player().display(), nullptr);
    EXPECT_EQ(mock::fake_player().display_type(), PLAYER_DISPLAY_TYPE_EVAS);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerMgr, DisplayIdRefusesOtherTypes) {
    create();
    EXPECT_CALL(mock::player(), player_set_display).Times(0);
    EXPECT_FALSE(m_mgr->setDisplayID(&the_display, static_cast<PlayerDisplayType>(2)));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Invalid DisplayType!")}));
}

TEST_F(PlayerMgr, FailedDisplayIdIsTrue) {
    create();
    EXPECT_CALL(mock::player(), player_set_display).WillOnce(Return(-2));
    EXPECT_TRUE(m_mgr->setDisplayID(&the_display, PLAYER_DISPLAY_TYPE_OF_OVERLAY));
    EXPECT_TRUE(LoggedWarn("It is failed to set display ID."));
}

TEST_F(PlayerMgr, DisplayIdInNoneFreesTheDisplay) {
    create();
    pretend_state(0);
    const support::BlockWatch blocks(7777);
    void *display = std::calloc(1, 7777);
    ASSERT_EQ(blocks.live(), 1);
    EXPECT_FALSE(m_mgr->setDisplayID(display, PLAYER_DISPLAY_TYPE_OF_OVERLAY));
    EXPECT_EQ(blocks.live(), 0);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("The state of the player is invalid. nPlayStateType: 0")}));
}

TEST_F(PlayerMgr, AudioPolicyInfoFailsWithTheWrapper) {
    EXPECT_CALL(mock::player(), player_create).WillOnce(Return(PLAYER_ERROR_OUT_OF_MEMORY));
    create();
    EXPECT_FALSE(m_mgr->setAudioPolicyInfo(&the_stream));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerHandle is nullptr."),
                                  logs::warn("It is failed to set policy stream information.")}));
}

TEST_F(PlayerMgr, FailedVolumeIsFalse) {
    create();
    EXPECT_TRUE(m_mgr->setPlayerVolume(0.25F, 0.5F));
    EXPECT_EQ(m_mgr->getVolumeLeft(), 0.25F);
    EXPECT_EQ(m_mgr->getVolumeRight(), 0.5F);
    EXPECT_FALSE(m_mgr->setPlayerVolume(3.0F, 0.5F));
    EXPECT_TRUE(LoggedWarn("It is failed to set player volume."));
}

// ---- getters

TEST_F(PlayerMgr, PositionAndDurationAreThePlatforms) {
    create_prepared();
    mock::fake_player().set_duration(90000);
    mock::fake_player().set_position(1234);
    EXPECT_EQ(m_mgr->getPosition(), 1234);
    EXPECT_EQ(m_mgr->getDuration(), 90000);
}

TEST_F(PlayerMgr, StateIsThePlatforms) {
    create();
    for (const auto &[platform, state] :
         std::vector<std::pair<int, int>>{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 0}, {9, 0}}) {
        pretend_state(platform);
        EXPECT_EQ(m_mgr->getPlayerState(), state);
    }
}

TEST_F(PlayerMgr, DisplayModeAndRotationAreThePlatforms) {
    create();
    for (const auto &[platform, mode] :
         std::vector<std::pair<int, int>>{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 0}}) {
        ON_CALL(mock::player(), player_get_display_mode).WillByDefault(GiveNumber(platform));
        EXPECT_EQ(m_mgr->getDisplayMode(), mode);
    }
    for (const auto &[platform, rotation] :
         std::vector<std::pair<int, int>>{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 0}}) {
        ON_CALL(mock::player(), player_get_display_rotation).WillByDefault(GiveNumber(platform));
        EXPECT_EQ(m_mgr->getDisplayRotation(), rotation);
    }
}

TEST_F(PlayerMgr, VisibilityCodecAndCaptionsAreThePlatforms) {
    create_prepared();
    EXPECT_TRUE(m_mgr->setDisplayVisible(false));
    EXPECT_FALSE(m_mgr->getDisplayVisible());
    EXPECT_TRUE(m_mgr->setDisplayVisible(true));
    EXPECT_TRUE(m_mgr->getDisplayVisible());
    mock::fake_player().set_codecs("opus", "vp9");
    char *codec = m_mgr->getVideoCodecInfo();
    EXPECT_STREQ(codec, "vp9");
    std::free(codec);
    EXPECT_FALSE(m_mgr->getClosedCaptionExisted());
    mock::fake_player().set_closed_caption(true);
    EXPECT_TRUE(m_mgr->getClosedCaptionExisted());
}

}  // namespace
