// What the host's player offers beside plain playing: subtitles, streams and their settings, a copy
// of what is downloaded, media in memory, single pictures, closed captions.

#include <Elementary.h>
#include <gtest/gtest.h>
#include <media_packet.h>
#include <player.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <vector>

#include "host_seams.h"
#include "main_loop.h"
#include "media_server.h"
#include "short_limits.h"

namespace {

namespace fs = std::filesystem;

/// A checked program on a busy machine takes long to load its first plug-ins.
constexpr double kDeadline = 40.0;

std::string clip(const std::string &name) {
    return TESSEL_TEST_MEDIA "/" + name;
}

std::string contents(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class PlayerStreams : public testing::Test {
protected:
    void SetUp() override {
        seams::reset();
        folder_ = fs::temp_directory_path() / ("player-streams-" + std::to_string(getpid()));
        fs::create_directories(folder_);
        ASSERT_EQ(player_create(&player_), PLAYER_ERROR_NONE);
        player_set_completed_cb(
            player_, [](void *self) { ++static_cast<PlayerStreams *>(self)->completed_; }, this);
        player_set_error_cb(
            player_,
            [](int code, void *self) { static_cast<PlayerStreams *>(self)->error_ = code; }, this);
        player_set_display(player_, PLAYER_DISPLAY_TYPE_OVERLAY, GET_DISPLAY(seams::window()));
    }
    void TearDown() override {
        EXPECT_EQ(player_destroy(player_), PLAYER_ERROR_NONE);
        seams::reset();
        fs::remove_all(folder_);
    }

    void prepare(const std::string &target) {
        ASSERT_EQ(player_set_uri(player_, target.c_str()), PLAYER_ERROR_NONE);
        ASSERT_EQ(player_prepare(player_), PLAYER_ERROR_NONE);
    }
    void play(const std::string &target) {
        prepare(target);
        ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    }
    void play_to_the_end(const std::string &target) {
        play(target);
        ASSERT_TRUE(until([this] { return completed_ > 0 || error_ != 0; }));
        EXPECT_EQ(error_, 0);
    }
    static bool until(const std::function<bool()> &condition) {
        return support::run_main_loop_until(condition, kDeadline);
    }
    [[nodiscard]] std::string write(const std::string &name, const std::string &text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
        return folder_ / name;
    }

    player_h player_ = nullptr;
    fs::path folder_;
    std::atomic<int> completed_ = 0;
    std::atomic<int> error_ = 0;
};

// Subtitles

class PlayerSubtitles : public PlayerStreams {
protected:
    void SetUp() override {
        PlayerStreams::SetUp();
        path_ =
            write("one.srt",
                  "1\n00:00:00,200 --> 00:00:00,500\nThe <b>first</b> & only\n\n"
                  "2\n00:00:00,600 --> 00:00:00,800\nThe second\n\n"
                  "3\n00:00:00,850 --> 00:00:00,900\nThe third, with room for a longer text\n\n");
        player_set_subtitle_updated_cb(
            player_,
            [](unsigned long duration, char *text, void *self) {
                static_cast<PlayerSubtitles *>(self)->note(duration, text);
            },
            this);
    }
    void note(unsigned long duration, const char *text) {
        int position = 0;
        player_get_play_position(player_, &position);
        const std::lock_guard lock(mutex_);
        texts_.emplace_back(text);
        durations_.push_back(duration);
        positions_.push_back(position);
    }

    /// GStreamer knows no subtitles in less than 129 bytes.
    const std::string kRoom = std::string(129, '\n');
    std::string path_;
    std::mutex mutex_;
    std::vector<std::string> texts_;
    std::vector<unsigned long> durations_;
    std::vector<int> positions_;
};

TEST_F(PlayerSubtitles, OfFramesAreShown) {
    const std::string path = write("frames.sub", "{3}{6}{y:i}One|two\n{9}{12}Three\n" + kRoom);
    ASSERT_EQ(player_set_subtitle_path(player_, path.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    const std::lock_guard lock(mutex_);
    EXPECT_EQ(texts_, (std::vector<std::string>{"One\ntwo", "Three"}));
}

TEST_F(PlayerSubtitles, WithALineThatEndsWithinItsBracesAreLeftOut) {
    for (const std::string line :
         {"{9}{12 Three", "{9}{12", "{ 9}{12}{y:i", "{9}{12}One{", "}{9}{12\n{9}{12"}) {
        SCOPED_TRACE(line);
        const std::string path = write("damaged.sub", "{3}{6}One\n" + line + "\n" + kRoom);
        ASSERT_EQ(player_set_subtitle_path(player_, path.c_str()), PLAYER_ERROR_NONE);
        completed_ = 0;
        play_to_the_end(clip("one_second.mp4"));
        ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
        const std::lock_guard lock(mutex_);
        EXPECT_EQ(texts_, std::vector<std::string>{});
    }
}

TEST_F(PlayerSubtitles, ComeWhenTheyAreDueWithoutMarkup) {
    ASSERT_EQ(player_set_subtitle_path(player_, path_.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    const std::lock_guard lock(mutex_);
    EXPECT_EQ(texts_, (std::vector<std::string>{"The first & only", "The second",
                                                "The third, with room for a longer text"}));
    EXPECT_EQ(durations_, (std::vector<unsigned long>{300, 200, 50}));
    ASSERT_EQ(positions_.size(), 3U);
    EXPECT_NEAR(positions_[0], 200, 150);
    EXPECT_NEAR(positions_[1], 600, 150);
}

TEST_F(PlayerSubtitles, AnOffsetMakesThemLater) {
    ASSERT_EQ(player_set_subtitle_path(player_, path_.c_str()), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_subtitle_position_offset(player_, 300), PLAYER_ERROR_INVALID_STATE);
    play(clip("minute.mp4"));
    ASSERT_EQ(player_set_subtitle_position_offset(player_, 700), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] {
        const std::lock_guard lock(mutex_);
        return texts_.size() >= 2;
    }));
    const std::lock_guard lock(mutex_);
    EXPECT_GE(positions_[1], 1200);
}

TEST_F(PlayerSubtitles, OneThatIsDueAfterTheEndHoldsNothingUp) {
    const std::string late = write("late.srt",
                                   "1\n00:00:00,100 --> 00:00:00,300\nIn time\n\n"
                                   "2\n00:01:00,000 --> 00:01:01,000\nToo late\n\n" +
                                       kRoom);
    ASSERT_EQ(player_set_subtitle_path(player_, late.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    int duration = 0;
    ASSERT_EQ(player_get_duration(player_, &duration), PLAYER_ERROR_NONE);
    EXPECT_NEAR(duration, 1000, 100);
    const std::lock_guard lock(mutex_);
    EXPECT_EQ(texts_, std::vector<std::string>{"In time"});
}

TEST_F(PlayerSubtitles, OneThatIsDueAfterTheEndIsAloneAndHoldsNothingUp) {
    const std::string late =
        write("late.srt", "1\n00:01:00,000 --> 00:01:01,000\nThe first is too late\n\n" + kRoom);
    ASSERT_EQ(player_set_subtitle_path(player_, late.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    const std::lock_guard lock(mutex_);
    EXPECT_TRUE(texts_.empty());
}

TEST_F(PlayerSubtitles, OneThatStaysBeyondTheEndHoldsNothingUp) {
    const std::string longer =
        write("long.srt", "1\n00:00:00,100 --> 00:01:00,000\nA very long one\n\n" + kRoom);
    ASSERT_EQ(player_set_subtitle_path(player_, longer.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    const std::lock_guard lock(mutex_);
    EXPECT_EQ(texts_, std::vector<std::string>{"A very long one"});
    EXPECT_EQ(durations_, std::vector<unsigned long>{59'900});
}

TEST_F(PlayerSubtitles, AnOffsetMayMoveThemBehindTheEnd) {
    ASSERT_EQ(player_set_subtitle_path(player_, path_.c_str()), PLAYER_ERROR_NONE);
    play(clip("one_second.mp4"));
    ASSERT_EQ(player_set_subtitle_position_offset(player_, 60'000), PLAYER_ERROR_NONE);
    EXPECT_TRUE(until([this] { return completed_ > 0; }));
}

TEST_F(PlayerSubtitles, ComeAgainAfterTheEnd) {
    ASSERT_EQ(player_set_subtitle_path(player_, path_.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] { return completed_ == 2; }));
    const std::lock_guard lock(mutex_);
    ASSERT_EQ(texts_.size(), 6U);
    EXPECT_NEAR(positions_[4], 600, 150);
}

TEST_F(PlayerSubtitles, WithoutAFileNothingComes) {
    ASSERT_EQ(player_set_subtitle_path(player_, path_.c_str()), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_subtitle_path(player_, nullptr), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    const std::lock_guard lock(mutex_);
    EXPECT_TRUE(texts_.empty());
}

TEST_F(PlayerSubtitles, AMissingFileIsRefused) {
    EXPECT_EQ(player_set_subtitle_path(player_, "/no such file.srt"), PLAYER_ERROR_NO_SUCH_FILE);
}

TEST_F(PlayerSubtitles, AFileThatIsNoneLeavesTheVideoAlone) {
    const std::string noise = write("noise.srt", std::string(3000, '\x01'));
    ASSERT_EQ(player_set_subtitle_path(player_, noise.c_str()), PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    const std::lock_guard lock(mutex_);
    EXPECT_TRUE(texts_.empty());
}

// Over a network

TEST_F(PlayerStreams, TheServerIsToldTheCookieAndTheAgent) {
    const support::MediaServer server(contents(clip("one_second.mp4")));
    ASSERT_EQ(player_set_streaming_cookie(player_, "key=value, and more", 9), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_streaming_user_agent(player_, "Watch/1.0", 9), PLAYER_ERROR_NONE);
    prepare(server.address());
    const std::string request = server.requests().front();
    EXPECT_NE(request.find("Cookie: key=value\r\n"), std::string::npos) << request;
    EXPECT_NE(request.find("User-Agent: Watch/1.0\r\n"), std::string::npos) << request;
}

TEST_F(PlayerStreams, SettingsOfAStreamBelongToAnIdlePlayer) {
    prepare(clip("one_second.mp4"));
    EXPECT_EQ(player_set_streaming_cookie(player_, "a=b", 3), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_set_streaming_user_agent(player_, "a", 1), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_set_progressive_download_path(player_, "/tmp/x"), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_set_memory_buffer(player_, "a", 1), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_set_streaming_cookie(player_, nullptr, 3), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_streaming_cookie(player_, "a=b", -1), PLAYER_ERROR_INVALID_PARAMETER);
}

TEST_F(PlayerStreams, BufferingIsReportedAndItsProgressKnown) {
    const support::MediaServer server(contents(clip("indexed_first.mp4")));
    std::atomic<int> percent = -1;
    player_set_buffering_cb(
        player_, [](int value, void *to) { *static_cast<std::atomic<int> *>(to) = value; },
        &percent);
    int from = -1;
    int to = -1;
    EXPECT_EQ(player_get_streaming_download_progress(player_, &from, &to),
              PLAYER_ERROR_INVALID_STATE);
    play(server.address());
    EXPECT_TRUE(until([&] { return percent == 100; }));
    EXPECT_EQ(player_get_streaming_download_progress(player_, &from, &to), PLAYER_ERROR_NONE);
    EXPECT_GE(from, 0);
    EXPECT_LE(from, to);
    EXPECT_LE(to, 100);
    EXPECT_TRUE(until([&] { return completed_ == 1; }));
}

// A copy of what is downloaded

class PlayerDownload : public PlayerStreams {
protected:
    void SetUp() override {
        PlayerStreams::SetUp();
        player_set_progressive_download_message_cb(
            player_,
            [](player_pd_message_type_e type, void *self) {
                auto &test = *static_cast<PlayerDownload *>(self);
                const std::lock_guard lock(test.mutex_);
                test.messages_.push_back(type);
            },
            this);
    }
    [[nodiscard]] std::vector<int> messages() {
        const std::lock_guard lock(mutex_);
        return messages_;
    }

    std::mutex mutex_;
    std::vector<int> messages_;
};

TEST_F(PlayerDownload, IsKeptWholeUnderItsName) {
    const std::string whole = contents(clip("indexed_first.mp4"));
    const support::MediaServer server(whole);
    const fs::path kept = folder_ / "kept.mp4";
    ASSERT_EQ(player_set_progressive_download_path(player_, kept.c_str()), PLAYER_ERROR_NONE);
    play(server.address());
    ASSERT_TRUE(until([this] { return messages().size() == 2; }));
    EXPECT_EQ(messages(), (std::vector<int>{PLAYER_PD_STARTED, PLAYER_PD_COMPLETED}));
    EXPECT_TRUE(contents(kept) == whole);
    unsigned long bytes = 0;
    unsigned long total = 0;
    EXPECT_EQ(player_get_progressive_download_status(player_, &bytes, &total), PLAYER_ERROR_NONE);
    EXPECT_EQ(bytes, whole.size());
    EXPECT_EQ(total, whole.size());
    EXPECT_TRUE(until([this] { return completed_ == 1; }));
}

TEST_F(PlayerDownload, OneThatIsLeftLeavesNothingBehind) {
    const support::MediaServer server(contents(clip("h264_aac.mp4")), 60'000);
    ASSERT_EQ(player_set_progressive_download_path(player_, (folder_ / "kept.mp4").c_str()),
              PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_uri(player_, server.address().c_str()), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_prepare_async(
                  player_, [](void *) {}, nullptr),
              PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] { return messages().size() == 1; }));
    ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(PlayerDownload, AFaultBeforeItPlaysLeavesNothingBehind) {
    const support::ShortLimits limits(std::chrono::milliseconds(60'000),
                                      std::chrono::milliseconds(500));
    const support::MediaServer server(contents(clip("h264_aac.mp4")), 3000);
    ASSERT_EQ(player_set_progressive_download_path(player_, (folder_ / "kept.mp4").c_str()),
              PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_uri(player_, server.address().c_str()), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_INVALID_OPERATION);
    EXPECT_EQ(messages(), std::vector<int>{PLAYER_PD_STARTED});
    EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(PlayerDownload, AFaultWhileItPlaysLeavesNothingBehind) {
    const std::string whole = contents(clip("indexed_first.mp4"));
    const support::MediaServer server(whole, whole.size() - 1000);
    ASSERT_EQ(player_set_progressive_download_path(player_, (folder_ / "kept.mp4").c_str()),
              PLAYER_ERROR_NONE);
    play(server.address());
    // A busy machine has had the time that it needs to prepare.
    const support::ShortLimits limits(std::chrono::milliseconds(500),
                                      std::chrono::milliseconds(500));
    ASSERT_TRUE(until([this] { return error_ != 0; }));
    EXPECT_EQ(error_, PLAYER_ERROR_INVALID_OPERATION);
    EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(PlayerDownload, AFolderThatIsNotThereIsAFault) {
    const support::MediaServer server(contents(clip("indexed_first.mp4")));
    ASSERT_EQ(player_set_progressive_download_path(player_, "/no such folder/kept.mp4"),
              PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_uri(player_, server.address().c_str()), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_INVALID_OPERATION);
}

TEST_F(PlayerDownload, ANameThatAFolderHasIsAFault) {
    const support::MediaServer server(contents(clip("indexed_first.mp4")));
    const fs::path kept = folder_ / "kept.mp4";
    fs::create_directory(kept);
    ASSERT_EQ(player_set_progressive_download_path(player_, kept.c_str()), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_uri(player_, server.address().c_str()), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_prepare_async(
                  player_, [](void *) {}, nullptr),
              PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] { return error_ != 0; }));
    EXPECT_EQ(error_, PLAYER_ERROR_INVALID_OPERATION);
    EXPECT_EQ(messages(), std::vector<int>{PLAYER_PD_STARTED});
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 1);
}

/// A disk that has no room for the medium, in the process that has it.
constexpr const char *kFullDisk = "TESSEL_FULL_DISK";

class PlayerFullDisk : public PlayerDownload {
protected:
    void download_onto(const fs::path &disk) {
        const fs::path kept = disk / "kept.mp4";
        std::ofstream(kept) << "an earlier one";
        const support::MediaServer server(contents(clip("indexed_first.mp4")));
        ASSERT_EQ(player_set_progressive_download_path(player_, kept.c_str()), PLAYER_ERROR_NONE);
        ASSERT_EQ(player_set_uri(player_, server.address().c_str()), PLAYER_ERROR_NONE);
        int result = player_prepare(player_);
        if (result == PLAYER_ERROR_NONE) {
            player_start(player_);
            EXPECT_TRUE(until([this] { return error_ != 0; }));
            result = error_;
        }
        EXPECT_EQ(result, PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE);
        EXPECT_EQ(contents(kept), "an earlier one");
        EXPECT_EQ(std::distance(fs::directory_iterator(disk), fs::directory_iterator()), 1);
    }
};

TEST_F(PlayerFullDisk, IsAFaultAndSparesWhatIsThere) {
    if (const char *disk = std::getenv(kFullDisk)) {
        download_onto(disk);
        return;
    }
    // Only a file system can be full, and a process may have one of its own, which goes with it.
    // The kernel allows that to nobody below a changed root, and some containers forbid it.
    if (std::system("unshare -rm true 2>/dev/null") != 0) {
        GTEST_SKIP() << "no file system may be mounted here, and only one of its own can be filled";
    }
    const std::string self = fs::read_symlink("/proc/self/exe");
    const std::string command = "unshare -rm sh -c 'mount -t tmpfs -o size=16k none \"$" +
                                std::string(kFullDisk) + "\" && exec " + self +
                                " --gtest_filter=PlayerFullDisk.*'";
    setenv(kFullDisk, folder_.c_str(), 1);
    EXPECT_EQ(std::system(command.c_str()), 0);
    unsetenv(kFullDisk);
}

// Media in memory

TEST_F(PlayerStreams, AMediumInMemoryPlaysAndIsCopied) {
    std::string whole = contents(clip("one_second.mp4"));
    ASSERT_EQ(player_set_memory_buffer(player_, whole.data(), static_cast<int>(whole.size())),
              PLAYER_ERROR_NONE);
    std::fill(whole.begin(), whole.end(), '\0');
    ASSERT_EQ(player_prepare(player_), PLAYER_ERROR_NONE);
    int duration = 0;
    ASSERT_EQ(player_get_duration(player_, &duration), PLAYER_ERROR_NONE);
    EXPECT_NEAR(duration, 1000, 30);
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(until([this] { return completed_ == 1; }));
}

TEST_F(PlayerStreams, MemoryWithoutAMediumIsNotSupported) {
    ASSERT_EQ(player_set_memory_buffer(player_, "no medium", 9), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_NOT_SUPPORTED_FILE);
    ASSERT_EQ(player_set_memory_buffer(player_, "", 0), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_NOT_SUPPORTED_FILE);
    EXPECT_EQ(player_set_memory_buffer(player_, nullptr, 1), PLAYER_ERROR_INVALID_PARAMETER);
}

// Single pictures

TEST_F(PlayerStreams, EachDecodedPictureIsHandedOut) {
    struct Pictures {
        std::mutex mutex;
        std::vector<std::uint64_t> times;
        std::uint64_t bytes = 0;
        bool readable = true;
    } pictures;
    ASSERT_EQ(player_set_media_packet_video_frame_decoded_cb(
                  player_,
                  [](media_packet_h packet, void *to) {
                      auto &seen = *static_cast<Pictures *>(to);
                      std::uint64_t time = 0;
                      void *data = nullptr;
                      const std::lock_guard lock(seen.mutex);
                      seen.readable = seen.readable && media_packet_get_pts(packet, &time) == 0 &&
                                      media_packet_get_buffer_size(packet, &seen.bytes) == 0 &&
                                      media_packet_get_buffer_data_ptr(packet, &data) == 0 &&
                                      data != nullptr;
                      seen.times.push_back(time);
                  },
                  &pictures),
              PLAYER_ERROR_NONE);
    play_to_the_end(clip("one_second.mp4"));
    ASSERT_EQ(player_unset_media_packet_video_frame_decoded_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(pictures.readable);
    EXPECT_GE(pictures.bytes, 320U * 180U * 3U / 2U);
    std::sort(pictures.times.begin(), pictures.times.end());
    pictures.times.erase(std::unique(pictures.times.begin(), pictures.times.end()),
                         pictures.times.end());
    // A loaded machine may drop some of the thirty.
    EXPECT_GE(pictures.times.size(), 15U);
    EXPECT_EQ(pictures.times.front(), 0U);
    EXPECT_EQ(media_packet_get_pts(nullptr, nullptr), -EINVAL);
}

TEST_F(PlayerStreams, ClosedCaptionsAreFoundWhereThereAreAny) {
    bool exist = true;
    EXPECT_EQ(player_has_closed_caption(player_, &exist), PLAYER_ERROR_INVALID_STATE);
    prepare(clip("one_second.mp4"));
    ASSERT_EQ(player_has_closed_caption(player_, &exist), PLAYER_ERROR_NONE);
    EXPECT_FALSE(exist);
    ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    prepare(clip("captions.mp4"));
    ASSERT_EQ(player_has_closed_caption(player_, &exist), PLAYER_ERROR_NONE);
    EXPECT_TRUE(exist);
    EXPECT_EQ(player_has_closed_caption(player_, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
}

TEST_F(PlayerStreams, WhatIsNotOffered) {
    EXPECT_EQ(player_set_rich_audio(player_), PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE);
    EXPECT_EQ(player_enable_sync_handler(player_, true),
              PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE);
    EXPECT_EQ(player_set_rich_audio(nullptr), PLAYER_ERROR_INVALID_PARAMETER);
}

}  // namespace
