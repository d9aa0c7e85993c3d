// Media cut off and changed anywhere, through one process: each is played or refused, and leaves
// nothing behind.

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
#include <map>
#include <random>
#include <string>

#include "host_seams.h"
#include "main_loop.h"
#include "process_counts.h"

namespace {

namespace fs = std::filesystem;

constexpr int kOffsets = 200;
constexpr int kChanged = 60;
constexpr unsigned kMostFlips = 100;
// Indexes at the end, at the beginning, and in between.
constexpr std::array kClips = {"one_second.mp4", "indexed_first.mp4", "fragmented.mp4",
                               "vp9_opus.webm", "theora_vorbis.ogg"};
constexpr double kLimit = 2.0;
/// A loaded machine isn't what is tested; a hang is.
constexpr double kDeadline = 20.0;

std::string contents(const std::string &name) {
    std::ifstream file(TESSEL_TEST_MEDIA "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class PlayerDamage : public testing::Test {
protected:
    void SetUp() override {
        seams::reset();
        file_ = fs::temp_directory_path() / ("player-damage-" + std::to_string(getpid()));
        std::transform(kClips.begin(), kClips.end(), wholes_.begin(), contents);
        // What is loaded on first use stays.
        for (const std::string &whole : wholes_) {
            EXPECT_EQ(play(whole, kDeadline), 0);
        }
        threads_ = support::threads();
        descriptors_ = support::descriptors();
    }
    void TearDown() override {
        for (const auto &[code, count] : outcomes_) {
            RecordProperty("outcome_" + std::to_string(code), count);
            EXPECT_TRUE(code == 0 || code == PLAYER_ERROR_NOT_SUPPORTED_FILE) << code;
        }
        EXPECT_GT(outcomes_[0], 0);
        EXPECT_GT(outcomes_[PLAYER_ERROR_NOT_SUPPORTED_FILE], 0);
        RecordProperty("longest_ms", static_cast<int>(longest_ * 1000));
        EXPECT_TRUE(
            support::run_main_loop_until([&] { return support::threads() <= threads_; }, kLimit));
        EXPECT_LE(support::descriptors(), descriptors_);
        seams::reset();
        fs::remove(file_);
    }

    /// Prepares the medium, and plays its last moments where it can be played.
    /// @param patience  seconds for the end to come
    /// @return the platform's number of the fault, or 0
    int play(const std::string &medium, double patience) {
        std::ofstream(file_, std::ios::binary) << medium;
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
            ends_ = support::run_main_loop_until(
                [&] { return events.ended > 0 || events.error != 0; }, patience);
        }
        EXPECT_EQ(player_destroy(player), PLAYER_ERROR_NONE);
        return events.error;
    }
    /// Plays it as one of the test's.
    void play_damaged(const std::string &medium, double patience) {
        const double begin = ecore_time_get();
        ++outcomes_[play(medium, patience)];
        longest_ = std::max(longest_, ecore_time_get() - begin);
    }

    std::array<std::string, kClips.size()> wholes_;
    bool ends_ = true;  ///< whether the last that was played did

private:
    fs::path file_;
    std::size_t threads_ = 0;
    std::size_t descriptors_ = 0;
    std::map<int, int> outcomes_;
    double longest_ = 0.0;
};

TEST_F(PlayerDamage, CutOffAtTwoHundredPlacesNothingIsLeftBehind) {
    for (int index = 0; index < kOffsets; ++index) {
        const auto clip = static_cast<std::size_t>(index) % kClips.size();
        // Denser where the headers are.
        const double part = static_cast<double>(index) / kOffsets;
        const auto length =
            static_cast<std::size_t>(static_cast<double>(wholes_[clip].size()) * part * part);
        SCOPED_TRACE(std::string(kClips[clip]) + " cut off at " + std::to_string(length));
        play_damaged(wholes_[clip].substr(0, length), kDeadline);
        EXPECT_TRUE(ends_);
    }
}

TEST_F(PlayerDamage, WithBitsFlippedAtRandomNothingIsLeftBehind) {
    // Times may be among what is changed, so that the end is far away.
    constexpr double kAWhile = 0.2;
    for (unsigned seed = 0; seed < kChanged; ++seed) {
        const std::size_t clip = seed % kClips.size();
        SCOPED_TRACE(std::string(kClips[clip]) + " changed by seed " + std::to_string(seed));
        std::string medium = wholes_[clip];
        std::mt19937 dice(seed);
        for (unsigned flips = 1 + dice() % kMostFlips; flips > 0; --flips) {
            medium[dice() % medium.size()] ^= static_cast<char>(1U << dice() % 8);
        }
        play_damaged(medium, kAWhile);
    }
}

}  // namespace
