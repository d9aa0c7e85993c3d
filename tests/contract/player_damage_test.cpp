// Media cut off anywhere, through one process: each is played or refused, and leaves nothing
// behind.

#include <Ecore.h>
#include <gtest/gtest.h>
#include <player.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "host_seams.h"
#include "main_loop.h"

namespace {

namespace fs = std::filesystem;

constexpr int kOffsets = 200;
constexpr double kLimit = 2.0;
/// A loaded machine isn't what is tested; a hang is.
constexpr double kDeadline = 20.0;

std::size_t entries_of(const char *folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

std::string contents(const std::string &name) {
    std::ifstream file(TESSEL_TEST_MEDIA "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class PlayerDamage : public testing::Test {
protected:
    void SetUp() override {
        seams::reset();
        file_ = fs::temp_directory_path() / ("player-damage-" + std::to_string(getpid()));
    }
    void TearDown() override {
        seams::reset();
        fs::remove(file_);
    }

    /// Prepares the file, and plays its last moments where it can be played.
    /// @return the platform's number of the fault, or 0
    int play_to_the_end() {
        player_h player = nullptr;
        EXPECT_EQ(player_create(&player), PLAYER_ERROR_NONE);
        struct Events {
            std::atomic<int> prepared = 0;
            std::atomic<int> ended = 0;
            std::atomic<int> error = 0;
        } events;
        player_set_error_cb(
            player, [](int code, void *to) { static_cast<Events *>(to)->error = code; }, &events);
        player_set_completed_cb(
            player, [](void *to) { ++static_cast<Events *>(to)->ended; }, &events);
        player_set_display(player, PLAYER_DISPLAY_TYPE_OVERLAY, GET_DISPLAY(seams::window()));
        EXPECT_EQ(player_set_uri(player, file_.c_str()), PLAYER_ERROR_NONE);
        EXPECT_EQ(player_prepare_async(
                      player, [](void *to) { ++static_cast<Events *>(to)->prepared; }, &events),
                  PLAYER_ERROR_NONE);
        EXPECT_TRUE(support::run_main_loop_until(
            [&] { return events.prepared > 0 || events.error != 0; }, kDeadline));
        if (events.prepared > 0) {
            int duration = 0;
            player_get_duration(player, &duration);
            player_set_play_position(player, std::max(0, duration - 100), true, nullptr, nullptr);
            player_start(player);
            EXPECT_TRUE(support::run_main_loop_until(
                [&] { return events.ended > 0 || events.error != 0; }, kDeadline));
        }
        EXPECT_EQ(player_destroy(player), PLAYER_ERROR_NONE);
        return events.error;
    }
    int play(const std::string &whole, std::size_t length) {
        std::ofstream(file_, std::ios::binary) << whole.substr(0, length);
        return play_to_the_end();
    }

    fs::path file_;
};

TEST_F(PlayerDamage, CutOffAtTwoHundredPlacesNothingIsLeftBehind) {
    // Indexes at the end, at the beginning, and in between.
    constexpr std::array kClips = {"one_second.mp4", "indexed_first.mp4", "fragmented.mp4",
                                   "vp9_opus.webm", "theora_vorbis.ogg"};
    std::array<std::string, kClips.size()> wholes;
    std::transform(kClips.begin(), kClips.end(), wholes.begin(), contents);
    // What is loaded on first use stays.
    for (const std::string &whole : wholes) {
        EXPECT_EQ(play(whole, whole.size()), 0);
    }
    const std::size_t threads = entries_of("/proc/self/task");
    const std::size_t descriptors = entries_of("/proc/self/fd");

    std::map<int, int> outcomes;
    double longest = 0.0;
    for (int index = 0; index < kOffsets; ++index) {
        const std::string &whole = wholes[static_cast<std::size_t>(index) % wholes.size()];
        // Denser where the headers are.
        const double part = static_cast<double>(index) / kOffsets;
        const auto length =
            static_cast<std::size_t>(static_cast<double>(whole.size()) * part * part);
        SCOPED_TRACE(std::string(kClips[static_cast<std::size_t>(index) % wholes.size()]) +
                     " cut off at " + std::to_string(length));
        const double begin = ecore_time_get();
        ++outcomes[play(whole, length)];
        longest = std::max(longest, ecore_time_get() - begin);
    }
    for (const auto &[code, count] : outcomes) {
        RecordProperty("outcome_" + std::to_string(code), count);
        EXPECT_TRUE(code == 0 || code == PLAYER_ERROR_NOT_SUPPORTED_FILE) << code;
    }
    EXPECT_GT(outcomes[0], 0);
    EXPECT_GT(outcomes[PLAYER_ERROR_NOT_SUPPORTED_FILE], 0);
    RecordProperty("longest_ms", static_cast<int>(longest * 1000));
    EXPECT_TRUE(support::run_main_loop_until(
        [&] { return entries_of("/proc/self/task") <= threads; }, kLimit));
    EXPECT_LE(entries_of("/proc/self/fd"), descriptors);
}

}  // namespace
