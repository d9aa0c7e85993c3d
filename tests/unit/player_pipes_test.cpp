#include <Ecore.h>
#include <dlog.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "TslPlayerMgr.h"
#include "TslPlayerMgrInside.h"
#include "block_watch.h"
#include "log_lines.h"
#include "main_loop.h"
#include "mock_platform/mock_player.h"

namespace {

using testing::_;
using testing::Return;

using Slot = TslPlayerMgrInside::PipeSlot TslPlayerMgrInside::*;

const std::string no_member_object = "* Critical * PlayerMgrInside member object is nullptr.";

TslPlayerMgrInside &shared() {
    return *s_pPlayerMgrInside.load();
}

// ---- what the readers got

struct Message {
    std::string pipe;
    std::string bytes;
    void *user_data;
    std::thread::id thread;
};

std::vector<Message> messages;

void take(const char *pipe, void *user_data, void *buffer, unsigned int size) {
    const auto *bytes = static_cast<const char *>(buffer);
    messages.push_back({pipe, bytes == nullptr ? std::string() : std::string(bytes, size),
                        user_data, std::this_thread::get_id()});
}

#define READER(name)                                                     \
    void read_##name(void *user_data, void *buffer, unsigned int size) { \
        take(#name, user_data, buffer, size);                            \
    }

READER(prepared)
READER(error)
READER(interrupted)
READER(missed_plugin)
READER(buffering)
READER(pd_message)
READER(subtitle)
READER(completed)
READER(seek)
READER(latest_seek)
READER(other)

std::string bytes_of(int value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

bool got(std::size_t count) {
    return support::run_main_loop_until([count] { return messages.size() >= count; });
}

class PlayerPipes : public testing::Test {
protected:
    void SetUp() override {
        messages.clear();
        mock::fake_player().stop_clock();
        m_mgr = std::make_unique<TslPlayerMgr>();
    }

    void add_all() {
        m_mgr->addCbPipeOfCompletion(read_completed, this);
        m_mgr->addCbPipeOfSubtitle(read_subtitle, this);
        m_mgr->addCbPipeOfSetPosition(read_seek, this);
        m_mgr->addCbPipeOfSetPositionAsLatestPlayedPosition(read_latest_seek, this);
        m_mgr->addCbPipeOfStream(read_buffering, read_pd_message, this);
        m_mgr->addCbPipeOfPlay(read_prepared, read_error, read_interrupted, read_missed_plugin,
                               this);
        logs::clear();
    }

    void create_prepared() {
        add_all();
        m_mgr->createPlayer();
        m_mgr->readyAsync("/video/a.mp4");
        mock::fake_player().drain();
        ASSERT_TRUE(got(1));
        messages.clear();
        logs::clear();
    }

    static void verify() { testing::Mock::VerifyAndClearExpectations(&mock::player()); }

    std::unique_ptr<TslPlayerMgr> m_mgr;
    int m_mark = 0;  ///< user data for writers
};

// ---- writers, a row for each

struct Writer {
    std::string name;
    std::string function;
    Slot slot;
    std::string slot_name;  ///< as the missing-pipe line has it
    bool needs_user_data;
    std::function<void(void *)> write;  ///< with this user data
    std::string bytes;                  ///< what the reader gets
    std::string line;                   ///< what the writer logs
    bool allocates;                     ///< its own message
};

std::ostream &operator<<(std::ostream &stream, const Writer &row) {
    return stream << row.name;
}

std::vector<Writer> writers() {
    return {
        {"error", "_playerErrorCb", &TslPlayerMgrInside::m_pErrorPipe, "ErrorPipe", false,
         [](void *data) { _playerErrorCb(PLAYER_ERROR_NO_SUCH_FILE, data); }, bytes_of(3), "",
         true},
        {"completed", "_playerCompletedCb", &TslPlayerMgrInside::m_pCompletedPipe, "CompletedPipe",
         true, [](void *data) { _playerCompletedCb(data); }, "", "", false},
        {"interrupted", "_playerInterruptedCb", &TslPlayerMgrInside::m_pInterruptedPipe,
         "InterruptedPipe", true,
         [](void *data) { _playerInterruptedCb(PLAYER_INTERRUPTED_BY_EARJACK_UNPLUG, data); },
         bytes_of(3), "", true},
        {"missed_plugin", "_playerMissedPluginInfoCb", &TslPlayerMgrInside::m_pMissedPluginInfoPipe,
         "MissedPluginInfoPipe", true,
         [](void *data) { _playerMissedPluginInfoCb(PLAYER_MISSED_PLUGIN_AUDIO, nullptr, data); },
         bytes_of(2), "Missed Plugin Type is [2]", true},
        {"buffering", "_playerBufferingCb", &TslPlayerMgrInside::m_pBufferingPipe, "BufferingPipe",
         true, [](void *data) { _playerBufferingCb(50, data); }, bytes_of(50), "Buffering: [50 %]",
         true},
        {"pd_message", "_playerPdMessageCb", &TslPlayerMgrInside::m_pPdMessagePipe, "PdMessagePipe",
         true, [](void *data) { _playerPdMessageCb(PLAYER_PD_COMPLETED, data); }, bytes_of(1), "",
         true},
        {"prepared", "_playerPreparedCb", &TslPlayerMgrInside::m_pPreparedPipe, "PreparedPipe",
         false, [](void *) { _playerPreparedCb(nullptr); }, "", "", false},
    };
}

class PipeWriter : public PlayerPipes, public testing::WithParamInterface<Writer> {
protected:
    // On a thread of its own, as the platform calls.
    void write(void *user_data) {
        std::thread([&] { GetParam().write(user_data); }).join();
    }
};

INSTANTIATE_TEST_SUITE_P(Every, PipeWriter, testing::ValuesIn(writers()),
                         [](const auto &info) { return info.param.name; });

TEST_P(PipeWriter, BringsItsMessageToTheMainLoop) {
    const Writer &row = GetParam();
    add_all();
    write(&m_mark);
    EXPECT_TRUE(messages.empty());
    ASSERT_TRUE(got(1));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].pipe, row.name);
    EXPECT_EQ(messages[0].bytes, row.bytes);
    EXPECT_EQ(messages[0].user_data, this);
    EXPECT_EQ(messages[0].thread, std::this_thread::get_id());
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_TRUE(LoggedIn(row.function, DLOG_INFO, row.line));
}

TEST_P(PipeWriter, GivesUpWithoutPipe) {
    const Writer &row = GetParam();
    logs::clear();
    write(&m_mark);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * " + row.slot_name + " for cb is nullptr.")}));
    EXPECT_TRUE(LoggedTimes(0, DLOG_INFO, row.line));
}

TEST_P(PipeWriter, GivesUpWithoutSharedState) {
    m_mgr.reset();
    logs::clear();
    write(&m_mark);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerMgrInside is nullptr.")}));
    EXPECT_TRUE(
        LoggedIn(GetParam().function, DLOG_ERROR, "* Critical * PlayerMgrInside is nullptr."));
}

TEST_P(PipeWriter, TestsTheUserDataFirstWhereItHasSome) {
    const Writer &row = GetParam();
    m_mgr.reset();
    logs::clear();
    write(nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error(row.needs_user_data ? "* Critical * User Data is nullptr."
                                         : "* Critical * PlayerMgrInside is nullptr.")}));
}

TEST_P(PipeWriter, LogsAFailedWriteAndKeepsNothing) {
    const Writer &row = GetParam();
    add_all();
    ecore_pipe_write_close((shared().*row.slot).load());
    const support::BlockWatch blocks(4);
    write(&m_mark);
    EXPECT_EQ(blocks.allocated(), row.allocates ? 1 : 0);
    EXPECT_EQ(blocks.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * ecore_pipe_write is failed.")}));
    EXPECT_TRUE(LoggedIn(row.function, DLOG_ERROR, "* Critical * ecore_pipe_write is failed."));
}

TEST_F(PlayerPipes, ErrorWithoutUserDataIsDelivered) {
    add_all();
    _playerErrorCb(PLAYER_ERROR_INVALID_URI, nullptr);
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].bytes, bytes_of(10));
}

TEST_F(PlayerPipes, UnknownErrorTravelsAsMinusOne) {
    add_all();
    _playerErrorCb(-1, nullptr);
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].bytes, bytes_of(-1));
}

TEST_F(PlayerPipes, ErrorWithoutPlayerIsDelivered) {
    add_all();
    ASSERT_EQ(shared().m_pMmPlayerHandle, nullptr);
    std::thread([] { _playerErrorCb(PLAYER_ERROR_NO_SUCH_FILE, nullptr); }).join();
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].bytes, bytes_of(3));
}

// ---- subtitles

TEST_F(PlayerPipes, SubtitleTravelsAsARecordWhoseTextIsGone) {
    add_all();
    char text[] = "Hello";
    const support::BlockWatch records(sizeof(SubtitlePipeMessage));
    std::thread([&] { _playerSubtitleUpdatedCb(1500, text, &m_mark); }).join();
    EXPECT_EQ(records.allocated(), 1);
    EXPECT_EQ(records.live(), 0);
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].pipe, "subtitle");
    ASSERT_EQ(messages[0].bytes.size(), sizeof(SubtitlePipeMessage));
    SubtitlePipeMessage message;
    std::memcpy(&message, messages[0].bytes.data(), sizeof message);
    EXPECT_EQ(message.duration, 1500U);
    EXPECT_NE(message.text, nullptr);
    EXPECT_NE(message.text, text);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerPipes, SubtitleRefusalsComeInOrder) {
    char text[] = "Hello";
    logs::clear();
    _playerSubtitleUpdatedCb(1, text, &m_mark);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * SubtitleUpdatedPipe for cb is nullptr.")}));
    m_mgr.reset();
    logs::clear();
    _playerSubtitleUpdatedCb(1, text, &m_mark);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerMgrInside is nullptr.")}));
    logs::clear();
    _playerSubtitleUpdatedCb(1, text, nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * User Data is nullptr.")}));
}

TEST_F(PlayerPipes, SubtitleIsFreedWhenTheWriteFails) {
    add_all();
    ecore_pipe_write_close(shared().m_pSubtitleUpdatedPipe.load());
    char text[] = "Hello";
    const support::BlockWatch records(sizeof(SubtitlePipeMessage));
    _playerSubtitleUpdatedCb(1, text, &m_mark);
    EXPECT_EQ(records.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * ecore_pipe_write is failed.")}));
}

// ---- preparation

TEST_F(PlayerPipes, PreparedPathTravelsWithoutTerminator) {
    add_all();
    auto *path = static_cast<char *>(std::calloc(1, 321));
    std::strcpy(path, "/video/a.mp4");
    std::thread([path] { _playerPreparedCb(path); }).join();
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].pipe, "prepared");
    EXPECT_EQ(messages[0].bytes, "/video/a.mp4");
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerPipes, PreparedPathIsFreedOnceWritten) {
    add_all();
    const support::BlockWatch paths(321);
    auto *path = static_cast<char *>(std::calloc(1, 321));
    std::strcpy(path, "/video/a.mp4");
    ASSERT_EQ(paths.live(), 1);
    _playerPreparedCb(path);
    EXPECT_EQ(paths.live(), 0);
}

TEST_F(PlayerPipes, PreparedPathIsKeptWhenTheWriteFails) {
    add_all();
    ecore_pipe_write_close(shared().m_pPreparedPipe.load());
    char *path = strdup("/video/a.mp4");
    _playerPreparedCb(path);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * ecore_pipe_write is failed.")}));
    EXPECT_STREQ(path, "/video/a.mp4");
    std::free(path);
}

TEST_F(PlayerPipes, PreparedPathIsKeptWithoutPipe) {
    char *path = strdup("/video/a.mp4");
    _playerPreparedCb(path);
    EXPECT_STREQ(path, "/video/a.mp4");
    std::free(path);
}

// ---- seeks

struct SeekWriter {
    std::string name;
    player_seek_completed_cb write;
    Slot slot;
    std::string function;
};

std::ostream &operator<<(std::ostream &stream, const SeekWriter &row) {
    return stream << row.name;
}

class SeekPipe : public PlayerPipes, public testing::WithParamInterface<SeekWriter> {
protected:
    static unsigned char *cookie(bool accurate) {
        auto *byte = static_cast<unsigned char *>(std::calloc(1, 1));
        *byte = accurate ? 1 : 0;
        return byte;
    }
};

INSTANTIATE_TEST_SUITE_P(
    Both, SeekPipe,
    testing::Values(SeekWriter{"seek", _playerSeekCompletedCb,
                               &TslPlayerMgrInside::m_pSeekCompletedPipe, "_playerSeekCompletedCb"},
                    SeekWriter{"latest_seek", _playerSeekCompletedAsLatestPlayedPositionCb,
                               &TslPlayerMgrInside::m_pSeekCompletedAsLatestPlayedPositionPipe,
                               "_playerSeekCompletedAsLatestPlayedPositionCb"}),
    [](const auto &info) { return info.param.name; });

TEST_P(SeekPipe, CarriesTheCookieAsFirstByteOfFour) {
    add_all();
    const support::BlockWatch cookies(1);
    for (const bool accurate : {false, true}) {
        messages.clear();
        auto *byte = cookie(accurate);
        std::thread([&] { GetParam().write(byte); }).join();
        ASSERT_TRUE(got(1));
        EXPECT_EQ(messages[0].pipe, GetParam().name);
        EXPECT_EQ(messages[0].bytes, std::string({accurate ? '\1' : '\0', '\0', '\0', '\0'}));
    }
    EXPECT_EQ(cookies.allocated(), 2);
    EXPECT_EQ(cookies.live(), 0);
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_TRUE(LoggedIn(GetParam().function, DLOG_INFO, ""));
}

TEST_P(SeekPipe, KeepsTheCookieWithoutPipe) {
    auto *byte = cookie(true);
    logs::clear();
    GetParam().write(byte);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * SeekCompletedPipe for cb is nullptr.")}));
    EXPECT_TRUE(LoggedIn(GetParam().function, DLOG_ERROR,
                         "* Critical * SeekCompletedPipe for cb is nullptr."));
    EXPECT_EQ(*byte, 1);
    std::free(byte);
}

TEST_P(SeekPipe, KeepsTheCookieWithoutSharedState) {
    m_mgr.reset();
    auto *byte = cookie(true);
    logs::clear();
    GetParam().write(byte);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerMgrInside is nullptr.")}));
    EXPECT_EQ(*byte, 1);
    std::free(byte);
}

TEST_P(SeekPipe, TakesANullCookieForMissingUserData) {
    add_all();
    GetParam().write(nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * User Data is nullptr.")}));
}

TEST_P(SeekPipe, FreesTheCookieWhenTheWriteFails) {
    add_all();
    ecore_pipe_write_close((shared().*GetParam().slot).load());
    const support::BlockWatch cookies(1);
    GetParam().write(cookie(true));
    EXPECT_EQ(cookies.allocated(), 1);
    EXPECT_EQ(cookies.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * ecore_pipe_write is failed.")}));
}

TEST_F(PlayerPipes, RestoringSeekHasAPipeOfItsOwn) {
    create_prepared();
    EXPECT_TRUE(m_mgr->setPositionAsLatestPlayedPosition(500, true));
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].pipe, "latest_seek");
    EXPECT_EQ(messages[0].bytes, std::string("\1\0\0\0", 4));
}

TEST_F(PlayerPipes, RestoringSeekEndsInTheMissingPipeLineUntilItsPipeIsAdded) {
    m_mgr->addCbPipeOfSetPosition(read_seek, this);
    m_mgr->addCbPipeOfPlay(read_prepared, read_error, read_interrupted, read_missed_plugin, this);
    m_mgr->createPlayer();
    m_mgr->ready("/video/a.mp4");
    logs::clear();
    EXPECT_TRUE(m_mgr->setPositionAsLatestPlayedPosition(500, true));
    mock::fake_player().drain();
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * SeekCompletedPipe for cb is nullptr.")}));
}

// ---- adding pipes, a row for each pipe

struct Addition {
    std::string name;
    Slot slot;
    std::string exists;  ///< as the replacement line has it
    std::function<bool(TslPlayerMgr &, TslPipeCb, void *)>
        add;  ///< this pipe alone with the reader
    logs::Expected missing;
    bool kept_when_missing;
    bool result_when_missing;
};

std::ostream &operator<<(std::ostream &stream, const Addition &row) {
    return stream << row.name;
}

std::vector<Addition> additions() {
    using Mgr = TslPlayerMgr;
    using Inside = TslPlayerMgrInside;
    const auto error = [](const std::string &text) { return logs::error("* Critical * " + text); };
    return {
        {"prepared", &Inside::m_pPreparedPipe, "PreparedPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfPlay(cb, read_other, read_other, read_other, data);
         },
         error("PreparedPipeCb is not set."), true, true},
        {"error", &Inside::m_pErrorPipe, "ErrorPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfPlay(read_other, cb, read_other, read_other, data);
         },
         error("ErrorPipeCb is not set."), true, true},
        {"interrupted", &Inside::m_pInterruptedPipe, "InterruptedPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfPlay(read_other, read_other, cb, read_other, data);
         },
         error("InterruptedPipeCb is not set."), true, true},
        {"missed_plugin", &Inside::m_pMissedPluginInfoPipe, "MissedPluginInfoPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfPlay(read_other, read_other, read_other, cb, data);
         },
         error("MissedPluginInfoPipeCb is not set."), true, true},
        {"buffering", &Inside::m_pBufferingPipe, "BufferingPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfStream(cb, read_other, data);
         },
         logs::warn("BufferingPipeCb is not set."), false, true},
        {"pd_message", &Inside::m_pPdMessagePipe, "PdMessagePipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfStream(read_other, cb, data);
         },
         logs::warn("PdMessagePipeCb is not set."), false, true},
        {"subtitle", &Inside::m_pSubtitleUpdatedPipe, "SubtitleUpdatedPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) { return mgr.addCbPipeOfSubtitle(cb, data); },
         logs::warn("SubtitleUpdatedPipeCb is not set."), false, true},
        {"completed", &Inside::m_pCompletedPipe, "CompletedPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) { return mgr.addCbPipeOfCompletion(cb, data); },
         logs::warn("CompletedPipeCb is not set."), true, true},
        {"seek", &Inside::m_pSeekCompletedPipe, "SeekCompletedPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) { return mgr.addCbPipeOfSetPosition(cb, data); },
         error("SeekCompletedPipeCb is not set."), true, false},
        {"latest_seek", &Inside::m_pSeekCompletedAsLatestPlayedPositionPipe, "SeekCompletedPipe",
         [](Mgr &mgr, TslPipeCb cb, void *data) {
             return mgr.addCbPipeOfSetPositionAsLatestPlayedPosition(cb, data);
         },
         error("pSeekCompletedAsLatestPlayedPositionPipeCb is not set."), true, false},
    };
}

class PipeAddition : public PlayerPipes, public testing::WithParamInterface<Addition> {
protected:
    Ecore_Pipe *pipe() { return (shared().*GetParam().slot).load(); }

    std::string replacement_line(Ecore_Pipe *old_pipe) {
        char text[120];
        std::snprintf(text, sizeof text, "%s is exist. Need to delete. [%p]",
                      GetParam().exists.c_str(), static_cast<void *>(old_pipe));
        return text;
    }
};

INSTANTIATE_TEST_SUITE_P(Every, PipeAddition, testing::ValuesIn(additions()),
                         [](const auto &info) { return info.param.name; });

TEST_P(PipeAddition, NeedsTheSharedState) {
    TslPlayerMgr first;
    m_mgr.reset();
    logs::clear();
    EXPECT_FALSE(GetParam().add(first, read_other, this));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_member_object)}));
}

TEST_P(PipeAddition, NeedsNoPlayer) {
    logs::clear();
    EXPECT_EQ(pipe(), nullptr);
    EXPECT_TRUE(GetParam().add(*m_mgr, read_other, this));
    ASSERT_NE(pipe(), nullptr);
    EXPECT_TRUE(NoFaultLogged());
    ecore_pipe_write(pipe(), "x", 1);
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].bytes, "x");
    EXPECT_EQ(messages[0].user_data, this);
}

TEST_P(PipeAddition, ReplacesTheOldPipe) {
    GetParam().add(*m_mgr, read_seek, this);
    Ecore_Pipe *old_pipe = pipe();
    logs::clear();
    EXPECT_TRUE(GetParam().add(*m_mgr, read_other, &m_mark));
    EXPECT_TRUE(LoggedTimes(1, DLOG_WARN, replacement_line(old_pipe)));
    ecore_pipe_write(pipe(), "x", 1);
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].pipe, "other");
    EXPECT_EQ(messages[0].user_data, &m_mark);
}

TEST_P(PipeAddition, WithoutReaderTreatsTheOldPipeAsItsRowSays) {
    const Addition &row = GetParam();
    row.add(*m_mgr, read_other, this);
    Ecore_Pipe *old_pipe = pipe();
    logs::clear();
    EXPECT_EQ(row.add(*m_mgr, nullptr, this), row.result_when_missing);
    EXPECT_TRUE(LoggedTimes(1, row.missing.level, row.missing.message));
    EXPECT_EQ(pipe(), row.kept_when_missing ? old_pipe : nullptr);
    EXPECT_TRUE(LoggedTimes(row.kept_when_missing ? 0 : 1, DLOG_WARN, replacement_line(old_pipe)));
}

TEST_P(PipeAddition, WithoutReaderAddsNone) {
    logs::clear();
    EXPECT_EQ(GetParam().add(*m_mgr, nullptr, this), GetParam().result_when_missing);
    EXPECT_TRUE(OnlyFaultsLogged({GetParam().missing}));
    EXPECT_EQ(pipe(), nullptr);
}

TEST_F(PlayerPipes, MissingReaderOfPlayDoesntStopTheOthers) {
    EXPECT_TRUE(
        m_mgr->addCbPipeOfPlay(read_prepared, read_error, nullptr, read_missed_plugin, this));
    EXPECT_NE(shared().m_pPreparedPipe.load(), nullptr);
    EXPECT_NE(shared().m_pErrorPipe.load(), nullptr);
    EXPECT_EQ(shared().m_pInterruptedPipe.load(), nullptr);
    EXPECT_NE(shared().m_pMissedPluginInfoPipe.load(), nullptr);
}

TEST_F(PlayerPipes, PipesOfPlayAreProcessedInOrder) {
    logs::clear();
    EXPECT_TRUE(m_mgr->addCbPipeOfPlay(nullptr, nullptr, nullptr, nullptr, this));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PreparedPipeCb is not set."),
                                  logs::error("* Critical * ErrorPipeCb is not set."),
                                  logs::error("* Critical * InterruptedPipeCb is not set."),
                                  logs::error("* Critical * MissedPluginInfoPipeCb is not set.")}));
}

TEST_F(PlayerPipes, PipesOfStreamAreProcessedInOrder) {
    logs::clear();
    EXPECT_TRUE(m_mgr->addCbPipeOfStream(nullptr, nullptr, this));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("BufferingPipeCb is not set."), logs::warn("PdMessagePipeCb is not set.")}));
}

TEST_F(PlayerPipes, PipesOutliveThePlayer) {
    create_prepared();
    m_mgr->destroyPlayer();
    m_mgr->createPlayer();
    mock::fake_player().deliver_buffering(7);
    ASSERT_TRUE(got(1));
    EXPECT_EQ(messages[0].bytes, bytes_of(7));
}

// ---- registration

struct Registration {
    std::string name;
    std::function<void(int)> answer;  ///< of the platform, for this callback
    bool (TslPlayerMgrInside::*group)(void *);
    std::string failure;
    std::string next;  ///< platform function that isn't called then
    std::function<void()> forbid_next;
};

std::ostream &operator<<(std::ostream &stream, const Registration &row) {
    return stream << row.name;
}

#define ANSWER(function) \
#function, [](int code) { EXPECT_CALL(mock::player(), function).WillOnce(Return(code)); }
#define NEXT(function) #function, [] { EXPECT_CALL(mock::player(), function).Times(0); }

std::vector<Registration> registrations() {
    using Inside = TslPlayerMgrInside;
    const std::string text = "It is failed to set a callback function about ";
    return {
        {ANSWER(player_set_error_cb), &Inside::_setCallbackFuncOfPlay, text + "Error.",
         NEXT(player_set_completed_cb)},
        {ANSWER(player_set_completed_cb), &Inside::_setCallbackFuncOfPlay, text + "Complete.",
         NEXT(player_set_interrupted_cb)},
        {ANSWER(player_set_interrupted_cb), &Inside::_setCallbackFuncOfPlay, text + "Interrupt.",
         NEXT(player_set_missed_plugin_info_cb)},
        {ANSWER(player_set_missed_plugin_info_cb), &Inside::_setCallbackFuncOfPlay,
         text + "Missed Plug in.", NEXT(player_set_buffering_cb)},
        {ANSWER(player_set_buffering_cb), &Inside::_setCallbackFuncOfStream, text + "buffering.",
         NEXT(player_set_progressive_download_message_cb)},
        {ANSWER(player_set_progressive_download_message_cb), &Inside::_setCallbackFuncOfStream,
         text + "buffering.", NEXT(player_set_subtitle_updated_cb)},
        {ANSWER(player_set_subtitle_updated_cb), &Inside::_setCallbackFuncOfSubtitle,
         text + "subtitle.", NEXT(player_set_error_cb)},
    };
}

class PipeRegistration : public PlayerPipes, public testing::WithParamInterface<Registration> {};

INSTANTIATE_TEST_SUITE_P(Every, PipeRegistration, testing::ValuesIn(registrations()),
                         [](const auto &info) { return info.param.name; });

TEST_P(PipeRegistration, FailureStopsTheRestOfItsGroup) {
    const Registration &row = GetParam();
    m_mgr->createPlayer();
    logs::clear();
    row.answer(PLAYER_ERROR_INVALID_PARAMETER);
    row.forbid_next();
    EXPECT_FALSE((shared().*row.group)(&m_mark));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * " + row.name +
                                              "() failed .. "
                                              "[0xffffffea]"),
                                  logs::error("* Critical * PLAYER_ERROR_INVALID_PARAMETER"),
                                  logs::warn(row.failure)}));
    verify();
}

TEST_F(PlayerPipes, RegistrationNeedsAPlayer) {
    for (const auto group : {&TslPlayerMgrInside::_setCallbackFuncOfPlay,
                             &TslPlayerMgrInside::_setCallbackFuncOfStream,
                             &TslPlayerMgrInside::_setCallbackFuncOfSubtitle}) {
        logs::clear();
        EXPECT_FALSE((shared().*group)(&m_mark));
        EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * m_pMmPlayerHandle is nullptr.")}));
    }
}

TEST_F(PlayerPipes, RegistrationAnswersTrue) {
    m_mgr->createPlayer();
    EXPECT_TRUE(shared()._setCallbackFuncOfPlay(&m_mark));
    EXPECT_TRUE(shared()._setCallbackFuncOfStream(&m_mark));
    EXPECT_TRUE(shared()._setCallbackFuncOfSubtitle(&m_mark));
}

// ---- the whole crossing, from the platform's own thread

TEST_F(PlayerPipes, EveryEventOfThePlatformReachesItsReader) {
    create_prepared();
    auto &player = mock::fake_player();
    ASSERT_NE(player.thread_id(), std::this_thread::get_id());
    player.deliver_error(PLAYER_ERROR_CONNECTION_FAILED);
    player.deliver_completed();
    player.deliver_interrupted(PLAYER_INTERRUPTED_BY_CALL);
    player.deliver_missed_plugin(PLAYER_MISSED_PLUGIN_VIDEO);
    player.deliver_buffering(99);
    player.deliver_pd_message(PLAYER_PD_STARTED);
    player.deliver_subtitle(40, "text");
    ASSERT_TRUE(got(7));
    const auto bytes_on = [](const std::string &pipe) {
        for (const auto &message : messages) {
            if (message.pipe == pipe) {
                return message.bytes;
            }
        }
        ADD_FAILURE() << "no message on " << pipe;
        return std::string();
    };
    EXPECT_EQ(bytes_on("error"), bytes_of(12));
    EXPECT_EQ(bytes_on("completed"), "");
    EXPECT_EQ(bytes_on("interrupted"), bytes_of(2));
    EXPECT_EQ(bytes_on("missed_plugin"), bytes_of(1));
    EXPECT_EQ(bytes_on("buffering"), bytes_of(99));
    EXPECT_EQ(bytes_on("pd_message"), bytes_of(0));
    EXPECT_EQ(bytes_on("subtitle").size(), sizeof(SubtitlePipeMessage));
    for (const auto &message : messages) {
        EXPECT_EQ(message.thread, std::this_thread::get_id());
    }
}

TEST_F(PlayerPipes, OrderIsKeptWithinOnePipe) {
    add_all();
    constexpr int count = 200;
    std::thread writer([this] {
        for (int percent = 0; percent < count; ++percent) {
            _playerBufferingCb(percent, &m_mark);
        }
    });
    ASSERT_TRUE(got(count));
    writer.join();
    for (int percent = 0; percent < count; ++percent) {
        EXPECT_EQ(messages[percent].bytes, bytes_of(percent));
    }
}

// A message is written in two steps, so a pipe has one writer at a time; different pipes have
// theirs at once.
TEST_F(PlayerPipes, WritersOfDifferentPipesDontDisturbEachOther) {
    add_all();
    constexpr int count = 100;
    const std::vector<std::pair<std::string, std::function<void(int)>>> events = {
        {"buffering", [this](int value) { _playerBufferingCb(value, &m_mark); }},
        {"interrupted",
         [this](int value) {
             _playerInterruptedCb(static_cast<player_interrupted_code_e>(value % 6), &m_mark);
         }},
        {"error", [](int value) { _playerErrorCb(value % 2 == 0 ? -2 : -12, nullptr); }},
        {"completed", [this](int) { _playerCompletedCb(&m_mark); }},
    };
    std::vector<std::thread> threads;
    for (const auto &event : events) {
        threads.emplace_back([&write = event.second] {
            for (int value = 0; value < count; ++value) {
                write(value);
            }
        });
    }
    const bool complete = got(events.size() * count);
    for (auto &thread : threads) {
        thread.join();
    }
    ASSERT_TRUE(complete);
    std::map<std::string, std::vector<std::string>> by_pipe;
    for (const auto &message : messages) {
        by_pipe[message.pipe].push_back(message.bytes);
    }
    for (const auto &event : events) {
        ASSERT_EQ(by_pipe[event.first].size(), static_cast<std::size_t>(count)) << event.first;
    }
    for (int value = 0; value < count; ++value) {
        EXPECT_EQ(by_pipe["buffering"][value], bytes_of(value));
        EXPECT_EQ(by_pipe["interrupted"][value], bytes_of(value % 6));
        EXPECT_EQ(by_pipe["error"][value], bytes_of(value % 2 == 0 ? 3 : 1));
        EXPECT_EQ(by_pipe["completed"][value], "");
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerPipes, SlotsMayBeReadWhileTheMainLoopFillsThem) {
    std::atomic<bool> filled{false};
    std::thread writer([&] {
        while (!filled) {
            _playerCompletedCb(&m_mark);
        }
        _playerCompletedCb(&m_mark);
    });
    ASSERT_TRUE(support::run_main_loop_until([] {
        return !LoggedTimes(0, DLOG_ERROR, "* Critical * CompletedPipe for cb is nullptr.");
    }));
    m_mgr->addCbPipeOfCompletion(read_completed, this);
    filled = true;
    EXPECT_TRUE(got(1));
    writer.join();
}

TEST_F(PlayerPipes, BurstOfSeeksCompletesEachOnceInOrder) {
    create_prepared();
    constexpr int count = 200;
    const support::BlockWatch cookies(1);
    for (int seek = 0; seek < count; ++seek) {
        ASSERT_TRUE(m_mgr->setPosition(seek, seek % 3 == 0));
    }
    ASSERT_TRUE(got(count));
    support::run_loop_turns();
    ASSERT_EQ(messages.size(), static_cast<std::size_t>(count));
    for (int seek = 0; seek < count; ++seek) {
        EXPECT_EQ(messages[seek].bytes[0], seek % 3 == 0 ? 1 : 0) << seek;
    }
    EXPECT_EQ(cookies.live(), 0);
}

// ---- decoded frames

void count_frame(media_packet_h, void *user_data) {
    ++*static_cast<int *>(user_data);
}

TEST_F(PlayerPipes, DecodedFramesAreCountedOnThePlatformsThread) {
    create_prepared();
    EXPECT_TRUE(m_mgr->addCbOfVideoFrameDecode(count_frame, &m_mark));
    mock::fake_player().deliver_video_frame();
    mock::fake_player().deliver_video_frame();
    EXPECT_EQ(m_mark, 2);
    EXPECT_TRUE(m_mgr->delCbOfVideoFrameDecode());
    mock::fake_player().deliver_video_frame();
    EXPECT_EQ(m_mark, 2);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerPipes, DecodedFramesNeedFunctionAndUserData) {
    create_prepared();
    EXPECT_CALL(mock::player(), player_set_media_packet_video_frame_decoded_cb).Times(0);
    EXPECT_FALSE(m_mgr->addCbOfVideoFrameDecode(nullptr, &m_mark));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pVideoFrameDecodeCb is not set.")}));
    logs::clear();
    EXPECT_FALSE(m_mgr->addCbOfVideoFrameDecode(count_frame, nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pUserData is not set.")}));
}

TEST_F(PlayerPipes, DecodedFramesGiveThePlatformsAnswer) {
    create_prepared();
    EXPECT_CALL(mock::player(), player_set_media_packet_video_frame_decoded_cb(_, count_frame, _))
        .WillOnce(Return(-1));
    EXPECT_FALSE(m_mgr->addCbOfVideoFrameDecode(count_frame, &m_mark));
    EXPECT_CALL(mock::player(), player_unset_media_packet_video_frame_decoded_cb)
        .WillOnce(Return(-1));
    EXPECT_FALSE(m_mgr->delCbOfVideoFrameDecode());
    verify();
}

TEST_F(PlayerPipes, DecodedFramesNeedStateAndPlayer) {
    logs::clear();
    EXPECT_FALSE(m_mgr->addCbOfVideoFrameDecode(count_frame, &m_mark));
    EXPECT_FALSE(m_mgr->delCbOfVideoFrameDecode());
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * m_pMmPlayerHandle is not existed."));
    TslPlayerMgr first;
    m_mgr.reset();
    logs::clear();
    EXPECT_FALSE(first.addCbOfVideoFrameDecode(count_frame, &m_mark));
    EXPECT_FALSE(first.delCbOfVideoFrameDecode());
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, no_member_object));
}

}  // namespace
