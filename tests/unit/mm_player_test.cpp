#include "TslMmPlayer.h"

#include <dlog.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "log_lines.h"
#include "mock_platform/mock_player.h"

namespace {

using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SetArgPointee;

constexpr int failure_code = PLAYER_ERROR_SEEK_FAILED;

// The handle that the platform gave out last, for the argument checks of the rows.
player_h the_handle = nullptr;
int the_user_data = 0;
int the_display = 0;
char the_data[] = "data";

void prepared_cb(void *) {}
void seek_cb(void *) {}
void completed_cb(void *) {}
void error_cb(int, void *) {}
void buffering_cb(int, void *) {}
void interrupted_cb(player_interrupted_code_e, void *) {}
void subtitle_cb(unsigned long, char *, void *) {}
void pd_cb(player_pd_message_type_e, void *) {}
void frame_cb(media_packet_h, void *) {}
void missed_plugin_cb(player_missed_plugin_type_e, const char *, void *) {}
void captured_cb(unsigned char *, int, int, unsigned int, void *) {}

int take_handle(player_h *player) {
    const int result = mock::fake_player().player_create(player);
    the_handle = *player;
    return result;
}

// Succeeds and writes a number, which need not be one of the enumerators, as a C platform can.
ACTION_P(GiveNumber, number) {
    const int value = number;
    std::memcpy(arg1, &value, sizeof value);
    return 0;
}

class MmPlayer : public testing::Test {
protected:
    void SetUp() override { ON_CALL(mock::player(), player_create).WillByDefault(take_handle); }

    static std::unique_ptr<TslMmPlayer> without_handle() {
        EXPECT_CALL(mock::player(), player_create).WillOnce(Return(PLAYER_ERROR_OUT_OF_MEMORY));
        auto player = std::make_unique<TslMmPlayer>();
        logs::clear();
        return player;
    }

    static std::unique_ptr<TslMmPlayer> with_handle() {
        auto player = std::make_unique<TslMmPlayer>();
        logs::clear();
        return player;
    }

    // What the row expects is checked before the destructor calls the platform in its turn.
    static void verify() { testing::Mock::VerifyAndClearExpectations(&mock::player()); }
};

std::vector<std::string> info_lines_of(const std::string &function) {
    std::vector<std::string> messages;
    for (const auto &line : logs::all()) {
        if (line.function == function && line.level == DLOG_INFO) {
            EXPECT_TRUE(line.well_formed) << line.raw;
            messages.push_back(line.message);
        }
    }
    return messages;
}

// ---- one row for each operation

struct Row {
    std::string name;
    std::string platform;
    std::function<void(int)> expect;  ///< one call with the right arguments that gives this result
    std::function<void()> forbid;     ///< no call at all
    std::function<double(TslMmPlayer &)> run;
    double success = 1;
    double failure = 0;
    std::optional<std::string> entry = "";
    std::optional<std::string> result_line = std::nullopt;
    std::vector<logs::Expected> failure_lines = {};
    std::function<double(TslMmPlayer &)> run_with_null = nullptr;
    std::string null_message = {};
};

std::ostream &operator<<(std::ostream &stream, const Row &row) {
    return stream << row.name;
}

#define CALLS(function, ...) \
#function,                                                                                     \
        [](int code) {                                                                             \
            EXPECT_CALL(mock::player(), function(__VA_ARGS__)).WillOnce(Return(code));             \
        },                                                                                         \
        [] { EXPECT_CALL(mock::player(), function).Times(0); }

#define FILLS(function, action, ...) \
#function,                                                                                    \
        [](int code) {                                                                            \
            EXPECT_CALL(mock::player(), function(__VA_ARGS__)).WillOnce(DoAll(action, Return(code))); \
        },                                                                                        \
        [] { EXPECT_CALL(mock::player(), function).Times(0); }

#define RUN(call) [](TslMmPlayer &player) -> double { return player.call; }

Row plain(Row row) {
    return row;
}

Row without_entry(Row row) {
    row.entry.reset();
    return row;
}

Row entry(std::string text, Row row) {
    row.entry = std::move(text);
    return row;
}

Row refuses_null(std::string message, std::function<double(TslMmPlayer &)> run, Row row) {
    row.run_with_null = std::move(run);
    row.null_message = std::move(message);
    return row;
}

Row fails_with(std::vector<logs::Expected> lines, Row row) {
    row.failure_lines = std::move(lines);
    return row;
}

Row answers(double success, double failure, Row row) {
    row.success = success;
    row.failure = failure;
    return row;
}

Row tells(std::string line, Row row) {
    row.result_line = std::move(line);
    return row;
}

const std::string printed = "* Critical * PLAYER_ERROR_SEEK_FAILED";

double text_length(char *text) {
    const double length = text == nullptr ? -1.0 : static_cast<double>(std::string(text).size());
    std::free(text);
    return length;
}

int give_codecs(player_h, char **audio, char **video, int code) {
    if (code == 0) {
        *audio = strdup("aac");
        *video = strdup("h264");
    }
    return code;
}

std::vector<Row> rows() {
    std::vector<Row> list = {
        plain({"start", CALLS(player_start, the_handle), RUN(start())}),
        plain({"stop", CALLS(player_stop, the_handle), RUN(stop())}),
        plain({"pause", CALLS(player_pause, the_handle), RUN(pause())}),
        plain({"prepare", CALLS(player_prepare, the_handle), RUN(prepare())}),
        plain({"unprepare", CALLS(player_unprepare, the_handle), RUN(unprepare())}),
        refuses_null(
            "* Critical * PlayerHandle is nullptr.", RUN(prepareAsync(nullptr, &the_user_data)),
            {"prepareAsync", CALLS(player_prepare_async, the_handle, prepared_cb, &the_user_data),
             RUN(prepareAsync(prepared_cb, &the_user_data))}),
        refuses_null(
            "* Critical * Player URI to set is nullptr.", RUN(setUri(nullptr)),
            without_entry({"setUri", CALLS(player_set_uri, the_handle, testing::StrEq("/a.mp4")),
                           RUN(setUri("/a.mp4"))})),
        entry("Position will be set as [1234 ms].",
              {"setPosition",
               CALLS(player_set_play_position, the_handle, 1234, true, seek_cb, &the_user_data),
               RUN(setPosition(1234, true, seek_cb, &the_user_data))}),

        refuses_null(
            "* Critical * Error Callback to set is nullptr.",
            RUN(setErrorCb(nullptr, &the_user_data)),
            {"setErrorCb", CALLS(player_set_error_cb, the_handle, error_cb, &the_user_data),
             RUN(setErrorCb(error_cb, &the_user_data))}),
        refuses_null("* Critical * Buffering Callback to set is nullptr.",
                     RUN(setBufferingCb(nullptr, &the_user_data)),
                     {"setBufferingCb",
                      CALLS(player_set_buffering_cb, the_handle, buffering_cb, &the_user_data),
                      RUN(setBufferingCb(buffering_cb, &the_user_data))}),
        refuses_null("* Critical * Completed Callback to set is nullptr.",
                     RUN(setCompletedCb(nullptr, &the_user_data)),
                     {"setCompletedCb",
                      CALLS(player_set_completed_cb, the_handle, completed_cb, &the_user_data),
                      RUN(setCompletedCb(completed_cb, &the_user_data))}),
        refuses_null("* Critical * Interrupted Callback to set is nullptr.",
                     RUN(setInterruptedCb(nullptr, &the_user_data)),
                     {"setInterruptedCb",
                      CALLS(player_set_interrupted_cb, the_handle, interrupted_cb, &the_user_data),
                      RUN(setInterruptedCb(interrupted_cb, &the_user_data))}),
        refuses_null(
            "* Critical * Subtitle updated Callback to set is nullptr.",
            RUN(setSubtitleUpdatedCb(nullptr, &the_user_data)),
            {"setSubtitleUpdatedCb",
             CALLS(player_set_subtitle_updated_cb, the_handle, subtitle_cb, &the_user_data),
             RUN(setSubtitleUpdatedCb(subtitle_cb, &the_user_data))}),
        refuses_null(
            "* Critical * Progressive Download Message Callback to set is nullptr.",
            RUN(setProgressiveDownloadMessageCb(nullptr, &the_user_data)),
            {"setProgressiveDownloadMessageCb",
             CALLS(player_set_progressive_download_message_cb, the_handle, pd_cb, &the_user_data),
             RUN(setProgressiveDownloadMessageCb(pd_cb, &the_user_data))}),
        fails_with(
            {logs::error("* Critical * player_set_progressive_download_message_cb() failed .. "
                         "[0xfe6c0021]"),
             logs::error(printed)},
            refuses_null("* Critical * Progressive Download Message Callback to set is nullptr.",
                         RUN(setMediaPacketVideoFrameDecodeCb(nullptr, &the_user_data)),
                         {"setMediaPacketVideoFrameDecodeCb",
                          CALLS(player_set_media_packet_video_frame_decoded_cb, the_handle,
                                frame_cb, &the_user_data),
                          RUN(setMediaPacketVideoFrameDecodeCb(frame_cb, &the_user_data))})),
        refuses_null(
            "* Critical * Missed Plugin Info Callback to set is nullptr.",
            RUN(setMissedPluginInfoCb(nullptr, &the_user_data)),
            {"setMissedPluginInfoCb",
             CALLS(player_set_missed_plugin_info_cb, the_handle, missed_plugin_cb, &the_user_data),
             RUN(setMissedPluginInfoCb(missed_plugin_cb, &the_user_data))}),

        plain({"unsetErrorCb", CALLS(player_unset_error_cb, the_handle), RUN(unsetErrorCb())}),
        plain({"unsetBufferingCb", CALLS(player_unset_buffering_cb, the_handle),
               RUN(unsetBufferingCb())}),
        plain({"unsetCompletedCb", CALLS(player_unset_completed_cb, the_handle),
               RUN(unsetCompletedCb())}),
        plain({"unsetInterruptedCb", CALLS(player_unset_interrupted_cb, the_handle),
               RUN(unsetInterruptedCb())}),
        plain({"unsetSubtitleUpdatedCb", CALLS(player_unset_subtitle_updated_cb, the_handle),
               RUN(unsetSubtitleUpdatedCb())}),
        plain({"unsetProgressiveDownloadMessageCb",
               CALLS(player_unset_progressive_download_message_cb, the_handle),
               RUN(unsetProgressiveDownloadMessageCb())}),
        fails_with({logs::warn("player_unset_media_packet_video_frame_decoded_cb() failed .. "
                               "[0xfe6c0021]"),
                    logs::error(printed)},
                   {"unsetMediaPacketVideoFrameDecodeCb",
                    CALLS(player_unset_media_packet_video_frame_decoded_cb, the_handle),
                    RUN(unsetMediaPacketVideoFrameDecodeCb())}),

        entry("DisplayVisible will be set as [Boolean 1]",
              {"setDisplayVisible", CALLS(player_set_display_visible, the_handle, true),
               RUN(setDisplayVisible(true))}),
        plain({"setSubtitlePath",
               CALLS(player_set_subtitle_path, the_handle, testing::StrEq("/a.srt")),
               RUN(setSubtitlePath("/a.srt"))}),
        entry("Offset to set is [-250 ms]",
              {"setSubtitlePositionOffset",
               CALLS(player_set_subtitle_position_offset, the_handle, -250),
               RUN(setSubtitlePositionOffset(-250))}),
        refuses_null(
            "* Critical * Streaming Cookie to set is nullptr.", RUN(setStreamingCookie(nullptr)),
            without_entry(
                {"setStreamingCookie",
                 CALLS(player_set_streaming_cookie, the_handle, testing::StrEq("cookie"), 6),
                 RUN(setStreamingCookie("cookie"))})),
        refuses_null("* Critical * Streaming UserAgent to set is nullptr.",
                     RUN(setStreamingUserAgent(nullptr)),
                     without_entry({"setStreamingUserAgent",
                                    CALLS(player_set_streaming_user_agent, the_handle,
                                          testing::StrEq("agent"), 5),
                                    RUN(setStreamingUserAgent("agent"))})),
        entry("Player DisplayMode to set is [3]",
              {"setDisplayMode",
               CALLS(player_set_display_mode, the_handle, PLAYER_DISPLAY_MODE_CROPPED_FULL),
               RUN(setDisplayMode(PLAYER_DISPLAY_MODE_TYPE_CROPPED_FULL))}),
        refuses_null(
            "* Critical * MediaData is nullptr", RUN(setMemoryBuffer(4, nullptr)),
            entry("MemoryBuffer size to set is [4]",
                  {"setMemoryBuffer", CALLS(player_set_memory_buffer, the_handle, the_data, 4),
                   RUN(setMemoryBuffer(4, the_data))})),
        refuses_null(
            "* Critical * Progressive Download Path to set is nullptr.",
            RUN(setProgressiveDownloadPath(nullptr)),
            {"setProgressiveDownloadPath",
             CALLS(player_set_progressive_download_path, the_handle, testing::StrEq("/download")),
             RUN(setProgressiveDownloadPath("/download"))}),
        entry("Player DisplayRotation will be set as [2]",
              {"setDisplayRotation",
               CALLS(player_set_display_rotation, the_handle, PLAYER_DISPLAY_ROTATION_180),
               RUN(setDisplayRotation(PLAYER_DISPLAY_ROTATION_TYPE_180))}),
        plain({"setPlayerVolume", CALLS(player_set_volume, the_handle, 0.25F, 2.5F),
               RUN(setPlayerVolume(0.25F, 2.5F))}),
        refuses_null(
            "* Critical * Display to set type is nullptr.",
            RUN(setDisplayType(PLAYER_DISPLAY_TYPE_OF_OVERLAY, nullptr)),
            entry("Player DisplayType to set is [1]",
                  {"setDisplayType",
                   CALLS(player_set_display, the_handle, PLAYER_DISPLAY_TYPE_OVERLAY, &the_display),
                   RUN(setDisplayType(PLAYER_DISPLAY_TYPE_OF_OVERLAY, &the_display))})),
        plain({"setRichAudio", CALLS(player_set_rich_audio, the_handle), RUN(setRichAudio())}),
        entry("Set Playback Rate as [1.250000]",
              {"setPlayRate", CALLS(player_set_playback_rate_ex, the_handle, 1.25F),
               RUN(setPlayRate(1.25F))}),
        plain({"setSyncHandler", CALLS(player_enable_sync_handler, the_handle, true),
               RUN(setSyncHandler(true))}),

        fails_with(
            {logs::error("* Critical * player_get_duration() is failed. [0xfe6c0021]")},
            without_entry(answers(
                5000, 0,
                {"getDuration", FILLS(player_get_duration, SetArgPointee<1>(5000), the_handle, _),
                 RUN(getDuration())}))),
        fails_with({logs::error("* Critical * player_get_video_size() is failed. [0xfe6c0021]")},
                   tells("Succeed to Get Video Size. Width: [640] | Height: [360]",
                         answers(640, 0,
                                 {"getVideoWidth",
                                  FILLS(player_get_video_size,
                                        DoAll(SetArgPointee<1>(640), SetArgPointee<2>(360)),
                                        the_handle, _, _),
                                  RUN(getVideoWidth())}))),
        fails_with({logs::error("* Critical * player_get_video_size() is failed. [0xfe6c0021]")},
                   tells("Succeed to Get Video Size. Width: [640] | Height: [360]",
                         answers(360, 0,
                                 {"getVideoHeight",
                                  FILLS(player_get_video_size,
                                        DoAll(SetArgPointee<1>(640), SetArgPointee<2>(360)),
                                        the_handle, _, _),
                                  RUN(getVideoHeight())}))),
        without_entry(answers(
            777, 0,
            {"getPosition", FILLS(player_get_play_position, SetArgPointee<1>(777), the_handle, _),
             RUN(getPosition())})),
        answers(0.25, -1,
                {"getVolumeLeft",
                 FILLS(player_get_volume, DoAll(SetArgPointee<1>(0.25F), SetArgPointee<2>(0.5F)),
                       the_handle, _, _),
                 RUN(getVolumeLeft())}),
        answers(0.5, -1,
                {"getVolumeRight",
                 FILLS(player_get_volume, DoAll(SetArgPointee<1>(0.25F), SetArgPointee<2>(0.5F)),
                       the_handle, _, _),
                 RUN(getVolumeRight())}),
        tells("DisplayVisible is [Boolean 1]",
              answers(1, 0,
                      {"getDisplayVisible",
                       FILLS(player_is_display_visible, SetArgPointee<1>(true), the_handle, _),
                       RUN(getDisplayVisible())})),
        without_entry(
            answers(3, 0,
                    {"getState",
                     FILLS(player_get_state, SetArgPointee<1>(PLAYER_STATE_PLAYING), the_handle, _),
                     RUN(getState())})),
        fails_with({logs::error("* Critical * player_set_display_mode() failed .. [0xfe6c0021]"),
                    logs::error(printed)},
                   tells("Current Player DisplayMode is [4]",
                         answers(4, 0,
                                 {"getDisplayMode",
                                  FILLS(player_get_display_mode,
                                        SetArgPointee<1>(PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER),
                                        the_handle, _),
                                  RUN(getDisplayMode())}))),
        tells("Current Player DisplayRotation is [3]",
              answers(3, 0,
                      {"getDisplayRotation",
                       FILLS(player_get_display_rotation,
                             SetArgPointee<1>(PLAYER_DISPLAY_ROTATION_270), the_handle, _),
                       RUN(getDisplayRotation())})),
        tells("Has Closed Caption? [Boolean 1]",
              answers(1, 0,
                      {"getClosedCaptionExisted",
                       FILLS(player_has_closed_caption, SetArgPointee<1>(true), the_handle, _),
                       RUN(getClosedCaptionExisted())})),
        plain({"captureVideo", CALLS(player_capture_video, the_handle, captured_cb, &the_user_data),
               RUN(captureVideo(captured_cb, &the_user_data))}),
    };

    for (const bool video : {false, true}) {
        list.push_back(answers(
            video ? 4 : 3, -1,
            {video ? "getVideoCodecInfo" : "getAudioCodecInfo", "player_get_codec_info",
             [](int code) {
                 EXPECT_CALL(mock::player(), player_get_codec_info(the_handle, _, _))
                     .WillOnce([code](player_h player, char **audio_codec, char **video_codec) {
                         return give_codecs(player, audio_codec, video_codec, code);
                     });
             },
             [] { EXPECT_CALL(mock::player(), player_get_codec_info).Times(0); },
             [video](TslMmPlayer &player) {
                 return text_length(video ? player.getVideoCodecInfo()
                                          : player.getAudioCodecInfo());
             }}));
    }

    list.push_back(
        tells("Get Streaming Download Progress. Start: [10 ms] | Current: [20 ms]",
              {"getStreamingDownloadProgress",
               FILLS(player_get_streaming_download_progress,
                     DoAll(SetArgPointee<1>(10), SetArgPointee<2>(20)), the_handle, _, _),
               [](TslMmPlayer &player) -> double {
                   int start = 0;
                   int current = 0;
                   return player.getStreamingDownloadProgress(&start, &current);
               }}));
    list.push_back(fails_with(
        {logs::error("* Critical * player_set_progressive_download_path() failed .. [0xfe6c0021]"),
         logs::error(printed)},
        tells("Succeed to get Progressive Download Status. Current: [30] | TotalSize: [40]",
              {"getProgressiveDownloadStatus",
               FILLS(player_get_progressive_download_status,
                     DoAll(SetArgPointee<1>(30UL), SetArgPointee<2>(40UL)), the_handle, _, _),
               [](TslMmPlayer &player) -> double {
                   unsigned long current = 0;
                   unsigned long total = 0;
                   return player.getProgressiveDownloadStatus(&current, &total);
               }})));
    return list;
}

class MmPlayerOperation : public MmPlayer, public testing::WithParamInterface<Row> {};

TEST_P(MmPlayerOperation, IsRefusedWithoutHandle) {
    const Row &row = GetParam();
    const auto player = without_handle();
    row.forbid();
    EXPECT_EQ(row.run(*player), row.failure);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerHandle is nullptr.")}));
    EXPECT_TRUE(LoggedIn(row.name, DLOG_ERROR, "* Critical * PlayerHandle is nullptr."));
    EXPECT_TRUE(info_lines_of(row.name).empty());
    verify();
}

TEST_P(MmPlayerOperation, CallsThePlatformOnce) {
    const Row &row = GetParam();
    const auto player = with_handle();
    row.expect(PLAYER_ERROR_NONE);
    EXPECT_EQ(row.run(*player), row.success);
    EXPECT_TRUE(NoFaultLogged());
    std::vector<std::string> expected;
    if (row.entry) {
        expected.push_back(*row.entry);
    }
    if (row.result_line) {
        expected.push_back(*row.result_line);
    }
    EXPECT_EQ(info_lines_of(row.name), expected);
    verify();
}

TEST_P(MmPlayerOperation, LogsAndReducesAFailure) {
    const Row &row = GetParam();
    const auto player = with_handle();
    row.expect(failure_code);
    EXPECT_EQ(row.run(*player), row.failure);
    auto expected = row.failure_lines;
    if (expected.empty()) {
        expected = {logs::error("* Critical * " + row.platform + "() failed .. [0xfe6c0021]"),
                    logs::error(printed)};
    }
    EXPECT_TRUE(OnlyFaultsLogged(expected));
    EXPECT_TRUE(LoggedIn(row.name, expected.front().level, expected.front().message));
    verify();
}

class MmPlayerArgument : public MmPlayerOperation {};

TEST_P(MmPlayerArgument, IsRefusedWhenNull) {
    const Row &row = GetParam();
    const auto player = with_handle();
    row.forbid();
    EXPECT_EQ(row.run_with_null(*player), row.failure);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(row.null_message)}));
    EXPECT_TRUE(info_lines_of(row.name).empty());
    verify();
}

std::vector<Row> rows_with_a_required_argument() {
    auto list = rows();
    std::erase_if(list, [](const Row &row) { return row.run_with_null == nullptr; });
    return list;
}

INSTANTIATE_TEST_SUITE_P(Every, MmPlayerOperation, testing::ValuesIn(rows()),
                         [](const auto &info) { return info.param.name; });
INSTANTIATE_TEST_SUITE_P(Required, MmPlayerArgument,
                         testing::ValuesIn(rows_with_a_required_argument()),
                         [](const auto &info) { return info.param.name; });

// ---- errors

struct ErrorRow {
    int type;
    int platform;
    std::string printed;
};

std::vector<ErrorRow> error_rows() {
    const auto value = [](unsigned number) { return static_cast<int>(number); };
    return {
        {1, -12, "* Critical * PLAYER_ERROR_OUT_OF_MEMORY"},
        {2, -22, "* Critical * PLAYER_ERROR_INVALID_PARAMETER"},
        {3, -2, "* Critical * PLAYER_ERROR_NO_SUCH_FILE"},
        {4, -38, "* Critical * PLAYER_ERROR_INVALID_OPERATION"},
        {5, -28, "* Critical * PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE"},
        {6, value(0xC0000002), "* Critical * Can't find error match"},
        {7, value(0xFE6C0021), "* Critical * PLAYER_ERROR_SEEK_FAILED"},
        {8, value(0xFE6C0022), "* Critical * PLAYER_ERROR_INVALID_STATE"},
        {9, value(0xFE6C0023), "* Critical * PLAYER_ERROR_NOT_SUPPORTED_FILE"},
        {10, value(0xFE6C0024), "* Critical * PLAYER_ERROR_INVALID_URI"},
        {11, value(0xFE6C0025), "* Critical * PLAYER_ERROR_SOUND_POLICY"},
        {12, value(0xFE6C0026), "* Critical * PLAYER_ERROR_CONNECTION_FAILED"},
        {13, value(0xFE6C0027), "* Critical * PLAYER_ERROR_VIDEO_CAPTURE_FAILED"},
        {18, value(0xFE6C002C), "* Critical * PLAYER_ERROR_RESOURCE_LIMIT"},
        {19, -13, "* Critical * PLAYER_ERROR_PERMISSION_DENIED"},
    };
}

TEST(MmPlayerErrors, PlatformErrorHasItsNumber) {
    for (const auto &row : error_rows()) {
        EXPECT_EQ(TslMmPlayer::getPlayerErrorType(row.platform), row.type) << row.printed;
    }
    EXPECT_EQ(TslMmPlayer::getPlayerErrorType(0), 0);
}

TEST(MmPlayerErrors, UnknownPlatformErrorIsMinusOne) {
    EXPECT_EQ(TslMmPlayer::getPlayerErrorType(-1), -1);
    EXPECT_EQ(TslMmPlayer::getPlayerErrorType(1), -1);
    EXPECT_EQ(TslMmPlayer::getPlayerErrorType(PLAYER_ERROR_CLASS | 0x28), -1);
}

TEST(MmPlayerErrors, NumberHasItsPlatformError) {
    for (const auto &row : error_rows()) {
        EXPECT_EQ(TslMmPlayer::getPlatformErrorCode(row.type), row.platform) << row.printed;
    }
}

TEST(MmPlayerErrors, NumberWithoutRowIsPlatformZero) {
    for (const int type : {-1, 0, 14, 15, 16, 17, 20}) {
        EXPECT_EQ(TslMmPlayer::getPlatformErrorCode(type), 0) << type;
    }
}

TEST_F(MmPlayer, EveryErrorIsPrintedByName) {
    const auto player = with_handle();
    for (const auto &row : error_rows()) {
        logs::clear();
        EXPECT_CALL(mock::player(), player_start).WillOnce(Return(row.platform));
        EXPECT_FALSE(player->start());
        char line[80];
        std::snprintf(line, sizeof line, "* Critical * player_start() failed .. [0x%x]",
                      static_cast<unsigned>(row.platform));
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(line), logs::error(row.printed)}));
        EXPECT_TRUE(LoggedIn("_playerErrorPrint", DLOG_ERROR, row.printed));
    }
}

TEST_F(MmPlayer, UnknownErrorIsPrintedAsUnmatched) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_start).WillOnce(Return(-77));
    EXPECT_FALSE(player->start());
    EXPECT_TRUE(LoggedError("* Critical * Can't find error match"));
}

TEST_F(MmPlayer, InvalidStateReadsTheState) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_start).WillOnce(Return(PLAYER_ERROR_INVALID_STATE));
    EXPECT_CALL(mock::player(), player_get_state(the_handle, _)).Times(1);
    EXPECT_FALSE(player->start());
}

TEST_F(MmPlayer, StateReadGoesOnWhileItFailsWithInvalidState) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_get_state)
        .WillOnce(Return(PLAYER_ERROR_INVALID_STATE))
        .WillOnce(Return(PLAYER_ERROR_INVALID_STATE))
        .WillOnce(Return(PLAYER_ERROR_NONE));
    EXPECT_EQ(player->getState(), 0);
    EXPECT_TRUE(
        LoggedTimes(2, DLOG_ERROR, "* Critical * player_get_state() failed .. [0xfe6c0022]"));
    EXPECT_TRUE(LoggedTimes(2, DLOG_ERROR, "* Critical * PLAYER_ERROR_INVALID_STATE"));
}

// ---- conversions

TEST_F(MmPlayer, EveryDisplayModeIsSentAsItsNumber) {
    const auto player = with_handle();
    for (int mode = 0; mode <= 5; ++mode) {
        EXPECT_CALL(mock::player(),
                    player_set_display_mode(the_handle, static_cast<player_display_mode_e>(mode)))
            .WillOnce(Return(0));
        EXPECT_TRUE(player->setDisplayMode(static_cast<PlayerDisplayMode>(mode)));
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(MmPlayer, InvalidDisplayModeIsSentAsLetterBox) {
    const auto player = with_handle();
    for (const int mode : {9, 6, -1}) {
        logs::clear();
        EXPECT_CALL(mock::player(),
                    player_set_display_mode(the_handle, PLAYER_DISPLAY_MODE_LETTER_BOX))
            .WillOnce(Return(0));
        EXPECT_TRUE(player->setDisplayMode(static_cast<PlayerDisplayMode>(mode)));
        EXPECT_TRUE(LoggedInOrder(
            {logs::info("Player DisplayMode to set is [" + std::to_string(mode) + "]"),
             logs::warn("PlayerDisplayMode is invalid. Set to default.")}));
    }
}

TEST_F(MmPlayer, EveryDisplayModeIsReadAsItsNumber) {
    const auto player = with_handle();
    for (int mode = 0; mode <= 5; ++mode) {
        EXPECT_CALL(mock::player(), player_get_display_mode).WillOnce(GiveNumber(mode));
        EXPECT_EQ(player->getDisplayMode(), mode);
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(MmPlayer, InvalidDisplayModeIsReadAsLetterBox) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_get_display_mode).WillOnce(GiveNumber(6));
    EXPECT_EQ(player->getDisplayMode(), 0);
    EXPECT_TRUE(
        LoggedInOrder({logs::info("Current Player DisplayMode is [6]"),
                       logs::warn("player_display_mode_e mode is invalid. Set to default.")}));
}

TEST_F(MmPlayer, EveryDisplayRotationIsSentAndReadAsItsNumber) {
    const auto player = with_handle();
    for (int rotation = 0; rotation <= 3; ++rotation) {
        const auto platform = static_cast<player_display_rotation_e>(rotation);
        EXPECT_CALL(mock::player(), player_set_display_rotation(the_handle, platform))
            .WillOnce(Return(0));
        EXPECT_TRUE(player->setDisplayRotation(static_cast<PlayerDisplayRotation>(rotation)));
        EXPECT_CALL(mock::player(), player_get_display_rotation)
            .WillOnce(DoAll(SetArgPointee<1>(platform), Return(0)));
        EXPECT_EQ(player->getDisplayRotation(), rotation);
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(MmPlayer, InvalidDisplayRotationIsSentAsNone) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(),
                player_set_display_rotation(the_handle, PLAYER_DISPLAY_ROTATION_NONE))
        .WillOnce(Return(0));
    EXPECT_TRUE(player->setDisplayRotation(static_cast<PlayerDisplayRotation>(4)));
    EXPECT_TRUE(LoggedInOrder({logs::info("Player DisplayRotation will be set as [4]"),
                               logs::warn("PlayerDisplayRotation is invalid. Set to default.")}));
}

TEST_F(MmPlayer, InvalidDisplayRotationIsReadAsNone) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_get_display_rotation).WillOnce(GiveNumber(4));
    EXPECT_EQ(player->getDisplayRotation(), 0);
    EXPECT_TRUE(LoggedInOrder(
        {logs::info("Current Player DisplayRotation is [4]"),
         logs::warn("player_display_rotation_e rotation is invalid. Set to default.")}));
}

TEST_F(MmPlayer, OverlayDisplayIsPlatformTypeZeroWithTheDisplay) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(),
                player_set_display(the_handle, static_cast<player_display_type_e>(0), &the_display))
        .WillOnce(Return(0));
    EXPECT_TRUE(player->setDisplayType(static_cast<PlayerDisplayType>(1), &the_display));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(MmPlayer, EvasDisplayIsPlatformTypeOneWithoutDisplay) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(),
                player_set_display(the_handle, static_cast<player_display_type_e>(1), nullptr))
        .WillOnce(Return(0));
    EXPECT_TRUE(player->setDisplayType(static_cast<PlayerDisplayType>(0), &the_display));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(MmPlayer, InvalidDisplayTypeIsSentAsOverlay) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(),
                player_set_display(the_handle, static_cast<player_display_type_e>(0), &the_display))
        .WillOnce(Return(0));
    EXPECT_TRUE(player->setDisplayType(static_cast<PlayerDisplayType>(2), &the_display));
    EXPECT_TRUE(LoggedInOrder({logs::info("Player DisplayType to set is [2]"),
                               logs::warn("PlayerDisplayType is invalid. Set to default.")}));
}

TEST_F(MmPlayer, RateLimitsThemselvesReachThePlatform) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_set_playback_rate_ex(the_handle, 0.5F)).WillOnce(Return(0));
    EXPECT_CALL(mock::player(), player_set_playback_rate_ex(the_handle, 1.5F)).WillOnce(Return(0));
    EXPECT_TRUE(player->setPlayRate(0.5F));
    EXPECT_TRUE(player->setPlayRate(1.5F));
    EXPECT_TRUE(LoggedInfo("Set Playback Rate as [0.500000]"));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(MmPlayer, RateOutsideTheLimitsIsRefusedWithoutACall) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_set_playback_rate_ex).Times(0);
    EXPECT_FALSE(player->setPlayRate(0.49F));
    EXPECT_FALSE(player->setPlayRate(1.51F));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("Rate should be ranged from 0.5 to 1.5. Rate :[0.490000]"),
                          logs::warn("Rate should be ranged from 0.5 to 1.5. Rate :[1.510000]")}));
}

TEST_F(MmPlayer, StatesOutsideOneToFourAreNone) {
    const auto player = with_handle();
    const auto give = [](int state) {
        EXPECT_CALL(mock::player(), player_get_state).WillOnce(GiveNumber(state));
    };
    for (int state = 1; state <= 4; ++state) {
        give(state);
        EXPECT_EQ(player->getState(), state);
    }
    for (const int state : {0, 5, 7}) {
        give(state);
        EXPECT_EQ(player->getState(), 0);
    }
}

TEST_F(MmPlayer, NullSubtitlePathReachesThePlatformAsNull) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_set_subtitle_path(the_handle, nullptr)).WillOnce(Return(0));
    EXPECT_TRUE(player->setSubtitlePath(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Passed Subtitle path is nullptr.")}));
}

TEST_F(MmPlayer, VolumeOutputsStartAtMinusOne) {
    const auto player = with_handle();
    EXPECT_CALL(mock::player(), player_get_volume)
        .Times(2)
        .WillRepeatedly([](player_h, float *left, float *right) {
            EXPECT_EQ(*left, -1.0F);
            EXPECT_EQ(*right, -1.0F);
            return 0;
        });
    EXPECT_EQ(player->getVolumeLeft(), -1.0F);
    EXPECT_EQ(player->getVolumeRight(), -1.0F);
}

TEST_F(MmPlayer, AudioPolicyInfoGoesNowhere) {
    const auto player = with_handle();
    for (const auto &row : rows()) {
        row.forbid();
    }
    EXPECT_TRUE(player->setAudioPolicyInfo(&the_user_data));
    EXPECT_TRUE(NoFaultLogged());
    verify();
}

TEST_F(MmPlayer, AudioPolicyInfoRefusesNull) {
    const auto player = with_handle();
    EXPECT_FALSE(player->setAudioPolicyInfo(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pStreamInfo is nullptr.")}));
}

TEST_F(MmPlayer, AudioPolicyInfoNeedsAHandle) {
    const auto player = without_handle();
    EXPECT_FALSE(player->setAudioPolicyInfo(&the_user_data));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerHandle is nullptr.")}));
}

TEST_F(MmPlayer, HandleIsTestedBeforeTheArgument) {
    const auto player = without_handle();
    EXPECT_FALSE(player->setUri(nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * PlayerHandle is nullptr.")}));
}

// ---- life

TEST(MmPlayerObject, IsEmptyAndHasNoVirtualOperations) {
    EXPECT_TRUE(std::is_empty_v<TslMmPlayer>);
}

TEST_F(MmPlayer, FailedCreationLeavesAnObjectWithoutHandle) {
    EXPECT_CALL(mock::player(), player_create).WillOnce(Return(PLAYER_ERROR_OUT_OF_MEMORY));
    EXPECT_CALL(mock::player(), player_destroy).Times(0);
    TslMmPlayer player;
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * player_create() failed .. [0xfffffff4]"),
                          logs::error("* Critical * PLAYER_ERROR_OUT_OF_MEMORY"),
                          logs::error("* Critical * Fail to Create Player Handle.")}));
    EXPECT_FALSE(player.start());
    EXPECT_TRUE(LoggedError("* Critical * PlayerHandle is nullptr."));
}

TEST_F(MmPlayer, CreationWithoutHandleIsAFailure) {
    EXPECT_CALL(mock::player(), player_create)
        .WillOnce(DoAll(SetArgPointee<0>(nullptr), Return(PLAYER_ERROR_NONE)));
    const TslMmPlayer player;
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * player_create() failed .. [0x0]"),
                                  logs::error("* Critical * Fail to Create Player Handle.")}));
}

TEST_F(MmPlayer, SecondConstructorReplacesTheHandle) {
    const auto first = with_handle();
    const player_h old_handle = the_handle;
    {
        const InSequence in_order;
        EXPECT_CALL(mock::player(), player_destroy(old_handle));
        EXPECT_CALL(mock::player(), player_create);
    }
    const TslMmPlayer second;
    verify();
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("PlayerHandle has been existed already. Need to destroy it.")}));
    EXPECT_EQ(mock::fake_player().players(), 1);
    EXPECT_CALL(mock::player(), player_get_state(the_handle, _));
    EXPECT_EQ(first->getState(), PLAYER_STATE_IDLE);
    verify();
}

TEST_F(MmPlayer, DestructorUnsetsTheCallbacksThenDestroys) {
    auto player = with_handle();
    const InSequence in_order;
    EXPECT_CALL(mock::player(), player_unset_error_cb(the_handle));
    EXPECT_CALL(mock::player(), player_unset_buffering_cb(the_handle));
    EXPECT_CALL(mock::player(), player_unset_completed_cb(the_handle));
    EXPECT_CALL(mock::player(), player_unset_interrupted_cb(the_handle));
    EXPECT_CALL(mock::player(), player_unset_subtitle_updated_cb(the_handle));
    EXPECT_CALL(mock::player(), player_unset_progressive_download_message_cb(the_handle));
    EXPECT_CALL(mock::player(), player_unset_media_packet_video_frame_decoded_cb(the_handle));
    EXPECT_CALL(mock::player(), player_destroy(the_handle));
    player.reset();
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_EQ(mock::fake_player().players(), 0);
}

TEST_F(MmPlayer, FailedDestructionKeepsTheHandle) {
    auto player = with_handle();
    const player_h kept = the_handle;
    EXPECT_CALL(mock::player(), player_destroy(kept)).WillOnce(Return(PLAYER_ERROR_SEEK_FAILED));
    player.reset();
    verify();
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * player_destroy() failed .. [0xfe6c0021]"), logs::error(printed),
         logs::error("* Critical * Fail to Destroy Player Handle.")}));
    // The next object finds it.
    EXPECT_CALL(mock::player(), player_destroy(kept));
    player = std::make_unique<TslMmPlayer>();
    verify();
}

TEST_F(MmPlayer, DestructorWithoutHandleSaysSo) {
    auto player = without_handle();
    player.reset();
    EXPECT_TRUE(LoggedTimes(8, DLOG_ERROR, "* Critical * PlayerHandle is nullptr."));
    EXPECT_TRUE(LoggedError("* Critical * Fail to Destroy Player Handle."));
}

}  // namespace
