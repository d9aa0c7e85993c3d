#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "video_player_mgr_fixture.h"

namespace {

struct Reader {
    const char *name;
    void (*function)(void *, void *, unsigned int);
};

const std::array<Reader, 9> readers{{
    {"_preparedCb", TslVideoPlayerMgrInside::_preparedCb},
    {"_completedCb", TslVideoPlayerMgrInside::_completedCb},
    {"_interruptedCb", TslVideoPlayerMgrInside::_interruptedCb},
    {"_errorCb", TslVideoPlayerMgrInside::_errorCb},
    {"_seekCompletedCb", TslVideoPlayerMgrInside::_seekCompletedCb},
    {"_bufferingCb", TslVideoPlayerMgrInside::_bufferingCb},
    {"_pdMessageCb", TslVideoPlayerMgrInside::_pdMessageCb},
    {"_subtitleUpdatedCb", TslVideoPlayerMgrInside::_subtitleUpdatedCb},
    {"_missedPluginInfoCb", TslVideoPlayerMgrInside::_missedPluginInfoCb},
}};

class PlayerEvents : public VideoPlayerMgrTest {
protected:
    void deliver_error(int code) {
        TslVideoPlayerMgrInside::_errorCb(&inside(), &code, sizeof code);
    }
    void deliver_seek_completed(unsigned char accurate) {
        unsigned char cookie[4] = {accurate, 0, 0, 0};
        TslVideoPlayerMgrInside::_seekCompletedCb(&inside(), cookie, sizeof cookie);
    }
    void deliver_missed_plugin(int kind) {
        TslVideoPlayerMgrInside::_missedPluginInfoCb(&inside(), &kind, sizeof kind);
    }
};

}  // namespace

TEST_F(PlayerEvents, EveryReaderLogsMissingUserDataAndDoesNothing) {
    for (const Reader &reader : readers) {
        SCOPED_TRACE(reader.name);
        forget();
        int payload = 1;
        reader.function(nullptr, &payload, sizeof payload);
        EXPECT_TRUE(LoggedIn(reader.name, DLOG_ERROR, "* Critical * There is no user data."));
        EXPECT_EQ(logs::all().size(), 1u);
        EXPECT_TRUE(emitted().empty());
    }
}

TEST_F(PlayerEvents, EveryReaderLogsItsEntry) {
    for (const Reader &reader : readers) {
        SCOPED_TRACE(reader.name);
        forget();
        int payload = 0;
        reader.function(&inside(), &payload, sizeof payload);
        EXPECT_TRUE(LoggedIn(reader.name, DLOG_INFO, ""));
    }
}

TEST_F(PlayerEvents, BufferingDownloadAndSubtitleOnlyLog) {
    for (const Reader &reader : {readers[5], readers[6], readers[7]}) {
        SCOPED_TRACE(reader.name);
        forget();
        // No payload at all: whoever read it would fail here.
        reader.function(&inside(), nullptr, 0);
        EXPECT_EQ(logs::all().size(), 1u);
        EXPECT_TRUE(LoggedIn(reader.name, DLOG_INFO, ""));
        EXPECT_TRUE(emitted().empty());
    }
}

TEST_F(PlayerEvents, PreparedStartsPlayback) {
    TslVideoPlayerMgrInside::_preparedCb(&inside(), nullptr, 0);
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_PLAYER_PLAY}));
    EXPECT_EQ(emissions()[0].payload, nullptr);
}

TEST_F(PlayerEvents, PreparedBeforeTheScreenPlaysWithoutProgressTimer) {
    TslVideoPlayerMgrInside::_preparedCb(&inside(), nullptr, 0);
    EXPECT_TRUE(was_emitted(SIGNAL_PLAYER_PLAY));
    support::run_main_loop_for(0.5);
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_VIEW_PROGRESS_TICK));
    // Its entry, and no word of the screen that isn't there.
    const auto lines = logs::all();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto &line) { return line.function == "_preparedCb"; }),
              1);
}

TEST_F(PlayerEvents, PreparedStartsTheProgressOfTheScreen) {
    start_playing();
    player_view()->destroyProgressTimer();
    forget();

    TslVideoPlayerMgrInside::_preparedCb(&inside(), nullptr, 0);

    EXPECT_TRUE(entered_before("createProgressTimer", "_getSignalMessage"));
    EXPECT_TRUE(support::run_main_loop_until(
        [this] { return was_emitted(SIGNAL_PLAYER_VIEW_PROGRESS_TICK); }));
    EXPECT_EQ(emitted().front(), SIGNAL_PLAYER_PLAY);
}

TEST_F(PlayerEvents, CompletionEndsTheApplication) {
    TslVideoPlayerMgrInside::_completedCb(&inside(), nullptr, 0);
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_APP_TERMINATE}));
    EXPECT_TRUE(exited());
}

TEST_F(PlayerEvents, CompletionEndsTheProgressOfTheScreen) {
    start_playing();
    ASSERT_TRUE(support::run_main_loop_until(
        [this] { return was_emitted(SIGNAL_PLAYER_VIEW_PROGRESS_TICK); }));
    forget();

    player().deliver_completed();
    ASSERT_TRUE(support::run_main_loop_until([this] { return was_emitted(SIGNAL_APP_TERMINATE); }));
    EXPECT_TRUE(entered_before("destroyProgressTimer", "_exit"));

    forget();
    support::run_main_loop_for(0.7);
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_VIEW_PROGRESS_TICK));
}

TEST_F(PlayerEvents, InterruptionPauses) {
    TslVideoPlayerMgrInside::_interruptedCb(&inside(), nullptr, 0);
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_PLAYER_PAUSE}));
}

TEST_F(PlayerEvents, InterruptionOfThePlatformIsLikeAPressOfThePauseButton) {
    start_playing();
    player().deliver_interrupted(PLAYER_INTERRUPTED_BY_CALL);
    ASSERT_TRUE(support::run_main_loop_until([this] { return was_emitted(SIGNAL_PLAYER_PAUSE); }));
    EXPECT_EQ(player().state(), PLAYER_STATE_PAUSED);
    EXPECT_FALSE(sound().has_focus());
    EXPECT_FALSE(mock::fake_power().is_locked(POWER_LOCK_DISPLAY));
    EXPECT_EQ(play_button(), "video/play");
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PlayerEvents, InterruptionOfThePlatformDoesNotResumeByItself) {
    start_playing();
    player().deliver_interrupted(PLAYER_INTERRUPTED_BY_RESOURCE_CONFLICT);
    ASSERT_TRUE(support::run_main_loop_until([this] { return was_emitted(SIGNAL_PLAYER_PAUSE); }));
    support::run_main_loop_for(0.2);
    EXPECT_NE(player().state(), PLAYER_STATE_PLAYING);
    EXPECT_FALSE(was_emitted(SIGNAL_PLAYER_RESUME));
}

TEST_F(PlayerEvents, ErrorWithoutCodeIsLogged) {
    TslVideoPlayerMgrInside::_errorCb(&inside(), nullptr, 0);
    EXPECT_TRUE(LoggedInOrder(
        {logs::info(""),
         logs::error("* Critical * Buffer, include occured error data, is nullptr.")}));
    EXPECT_TRUE(emitted().empty());
}

TEST_F(PlayerEvents, FatalErrorsShowTheirText) {
    struct Row {
        int code;
        TslSignalType type;
        const char *text;
    };
    const Row rows[] = {
        {1, SIGNAL_POPUP_ERROR_TOAST, "IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO"},
        {2, SIGNAL_POPUP_ERROR_TOAST, "IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO"},
        {3, SIGNAL_POPUP_ERROR_TOAST, "IDS_MP_POP_THIS_FILE_DOES_NOT_EXIST"},
        {4, SIGNAL_POPUP_ERROR_TOAST, "IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO"},
        {5, SIGNAL_POPUP_ERROR_TOAST, "IDS_VPL_POP_UNABLE_TO_PLAY_VIDEO"},
        {9, SIGNAL_POPUP_ERROR_ONE_BUTTON, "WDS_GALLERY_TPOP_UNSUPPORTED_FORMAT_ABB"},
        {10, SIGNAL_POPUP_ERROR_TOAST, "IDS_VPL_POP_INVALID_URL"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.code);
        forget();
        deliver_error(row.code);
        ASSERT_EQ(emitted(), (std::vector<TslSignalType>{row.type}));
        EXPECT_STREQ(static_cast<const char *>(emissions()[0].payload), row.text);
    }
}

TEST_F(PlayerEvents, OtherErrorCodesChangeNothing) {
    for (const int code : {6, 7, 8, 0, -1, 11, 1000}) {
        SCOPED_TRACE(code);
        forget();
        deliver_error(code);
        EXPECT_TRUE(emitted().empty());
        EXPECT_EQ(logs::all().size(), 1u);
    }
}

TEST_F(PlayerEvents, FailedSeekOfThePlatformLeavesPlaybackRunning) {
    start_playing();
    player().deliver_error(PLAYER_ERROR_SEEK_FAILED);
    ASSERT_TRUE(
        support::run_main_loop_until([] { return bool(LoggedIn("_errorCb", DLOG_INFO, "")); }));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
    EXPECT_FALSE(was_emitted(SIGNAL_POPUP_ERROR_TOAST));
}

TEST_F(PlayerEvents, RoughSeekCompletionChangesNothing) {
    inside().m_nPlayerStateBeforeSeek = PLAY_STATE_PLAY;
    deliver_seek_completed(0);
    EXPECT_TRUE(emitted().empty());
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PLAY);
}

TEST_F(PlayerEvents, OnlyTheFirstByteOfTheSeekCookieCounts) {
    inside().m_nPlayerStateBeforeSeek = PLAY_STATE_PLAY;
    unsigned char cookie[4] = {0, 1, 1, 1};
    TslVideoPlayerMgrInside::_seekCompletedCb(&inside(), cookie, sizeof cookie);
    EXPECT_TRUE(emitted().empty());
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, PLAY_STATE_PLAY);
}

TEST_F(PlayerEvents, AccurateSeekCompletionResumesWhatPlayed) {
    inside().m_nPlayerStateBeforeSeek = PLAY_STATE_PLAY;
    deliver_seek_completed(1);
    EXPECT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_PLAYER_RESUME}));
    EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, 0);
}

TEST_F(PlayerEvents, AccurateSeekCompletionDoesNotResumeWhatDidNotPlay) {
    for (const int state : {0, 1, 2, 4}) {
        SCOPED_TRACE(state);
        inside().m_nPlayerStateBeforeSeek = state;
        deliver_seek_completed(1);
        EXPECT_TRUE(emitted().empty());
        EXPECT_EQ(inside().m_nPlayerStateBeforeSeek, 0);
    }
}

TEST_F(PlayerEvents, MissedPluginsShowTheirText) {
    deliver_missed_plugin(1);
    deliver_missed_plugin(2);
    ASSERT_EQ(emitted(), (std::vector<TslSignalType>{SIGNAL_POPUP_MISSED_VIDEO_PLUGIN,
                                                     SIGNAL_POPUP_MISSED_AUDIO_PLUGIN}));
    EXPECT_STREQ(static_cast<const char *>(emissions()[0].payload),
                 "IDS_VPL_POP_UNSUPPORTED_VIDEO_FORMAT");
    EXPECT_STREQ(static_cast<const char *>(emissions()[1].payload),
                 "IDS_VPL_POP_UNSUPPORTED_AUDIO_FORMAT");
}

TEST_F(PlayerEvents, OtherMissedPluginsAreIgnored) {
    for (const int kind : {0, 3, -1}) {
        SCOPED_TRACE(kind);
        forget();
        deliver_missed_plugin(kind);
        EXPECT_TRUE(emitted().empty());
        EXPECT_EQ(logs::all().size(), 1u);
    }
}

TEST_F(PlayerEvents, MissedPluginOfThePlatformLetsPlaybackGoOn) {
    start_playing();
    player().deliver_missed_plugin(PLAYER_MISSED_PLUGIN_AUDIO);
    ASSERT_TRUE(support::run_main_loop_until(
        [this] { return was_emitted(SIGNAL_POPUP_MISSED_AUDIO_PLUGIN); }));
    EXPECT_EQ(player().state(), PLAYER_STATE_PLAYING);
    EXPECT_FALSE(was_emitted(SIGNAL_APP_TERMINATE));
}
