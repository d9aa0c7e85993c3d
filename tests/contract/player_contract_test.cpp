// What every implementation of player.h does. The program that links it says which one is meant.

#include <Elementary.h>
#include <gtest/gtest.h>
#include <player.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "main_loop.h"

namespace {

constexpr double kDeadline = 10.0;
const char *const kClip = TESSEL_TEST_MEDIA "/minute.mp4";

/// What the callbacks of one player did, in order.
class Record {
public:
    void note(const std::string &event) {
        const std::lock_guard lock(mutex_);
        events_.push_back(event);
        other_thread_ = other_thread_ && std::this_thread::get_id() != main_;
    }
    [[nodiscard]] std::vector<std::string> events() const {
        const std::lock_guard lock(mutex_);
        return events_;
    }
    [[nodiscard]] std::size_t count() const { return events().size(); }
    [[nodiscard]] bool only_on_other_threads() const {
        const std::lock_guard lock(mutex_);
        return other_thread_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> events_;
    std::thread::id main_ = std::this_thread::get_id();
    bool other_thread_ = true;
};

struct SeekNote {
    Record *record;
    std::string name;
};

void note_prepared(void *record) {
    static_cast<Record *>(record)->note("prepared");
}

void note_completed(void *record) {
    static_cast<Record *>(record)->note("completed");
}

void note_error(int code, void *record) {
    static_cast<Record *>(record)->note("error " + std::to_string(code));
}

void note_seek(void *note) {
    const std::unique_ptr<SeekNote> owned(static_cast<SeekNote *>(note));
    owned->record->note(owned->name);
}

class PlayerContract : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(player_create(&player_), PLAYER_ERROR_NONE);
        ASSERT_NE(player_, nullptr);
    }
    void TearDown() override {
        if (player_ != nullptr) {
            EXPECT_EQ(player_destroy(player_), PLAYER_ERROR_NONE);
        }
    }

    [[nodiscard]] player_state_e state() const {
        player_state_e state = PLAYER_STATE_NONE;
        EXPECT_EQ(player_get_state(player_, &state), PLAYER_ERROR_NONE);
        return state;
    }
    void make_ready() {
        ASSERT_EQ(player_set_uri(player_, kClip), PLAYER_ERROR_NONE);
        ASSERT_EQ(player_prepare(player_), PLAYER_ERROR_NONE);
    }
    void make_playing() {
        make_ready();
        ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    }
    void make_paused() {
        make_playing();
        ASSERT_EQ(player_pause(player_), PLAYER_ERROR_NONE);
    }
    int seek(int target_ms, bool accurate, const std::string &name) {
        auto note = std::make_unique<SeekNote>(SeekNote{&record_, name});
        const int result =
            player_set_play_position(player_, target_ms, accurate, note_seek, note.get());
        if (result == PLAYER_ERROR_NONE) {
            (void)note.release();  // note_seek() frees it
        }
        return result;
    }
    void expect_ordered_burst() {
        constexpr int kSeeks = 200;
        std::vector<std::string> expected;
        for (int index = 0; index < kSeeks; ++index) {
            expected.push_back("seek " + std::to_string(index));
            // All over the clip, near and far, both kinds.
            const int target = index * 7919 % 60000;
            ASSERT_EQ(seek(target, index % 3 == 0, expected.back()), PLAYER_ERROR_NONE);
            int position = -1;
            ASSERT_EQ(player_get_play_position(player_, &position), PLAYER_ERROR_NONE);
        }
        EXPECT_TRUE(
            support::run_main_loop_until([&] { return record_.count() == kSeeks; }, kDeadline));
        EXPECT_EQ(record_.events(), expected);
        EXPECT_TRUE(record_.only_on_other_threads());
    }

    player_h player_ = nullptr;
    Record record_;
};

TEST_F(PlayerContract, StartsIdle) {
    EXPECT_EQ(state(), PLAYER_STATE_IDLE);
}

TEST_F(PlayerContract, RefusesNullResults) {
    EXPECT_EQ(player_create(nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_get_state(player_, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_uri(player_, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_get_volume(player_, nullptr, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_get_display_mode(player_, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_get_display_rotation(player_, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_is_display_visible(player_, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_get_codec_info(player_, nullptr, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_get_video_size(player_, nullptr, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_prepare_async(player_, nullptr, nullptr), PLAYER_ERROR_INVALID_PARAMETER);
}

TEST_F(PlayerContract, RefusesHandlesThatAreNone) {
    player_state_e state = PLAYER_STATE_IDLE;
    EXPECT_EQ(player_get_state(nullptr, &state), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_start(nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_destroy(nullptr), PLAYER_ERROR_INVALID_PARAMETER);
    const player_h gone = player_;
    ASSERT_EQ(player_destroy(std::exchange(player_, nullptr)), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_get_state(gone, &state), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_destroy(gone), PLAYER_ERROR_INVALID_PARAMETER);
}

TEST_F(PlayerContract, RefusesAnEmptyName) {
    EXPECT_EQ(player_set_uri(player_, ""), PLAYER_ERROR_INVALID_URI);
}

TEST_F(PlayerContract, CannotPrepareWithoutAMedium) {
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_INVALID_OPERATION);
    EXPECT_EQ(player_prepare_async(player_, note_prepared, &record_),
              PLAYER_ERROR_INVALID_OPERATION);
    EXPECT_EQ(state(), PLAYER_STATE_IDLE);
}

TEST_F(PlayerContract, IdleRefusesWhatNeedsAPreparedMedium) {
    int number = 0;
    EXPECT_EQ(player_start(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_pause(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_stop(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_unprepare(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(seek(0, true, "seek"), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_get_play_position(player_, &number), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_get_duration(player_, &number), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_get_video_size(player_, &number, &number), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_set_playback_rate_ex(player_, 1.0F), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(record_.count(), 0U);
}

TEST_F(PlayerContract, PreparesAtOnceOnRequest) {
    make_ready();
    EXPECT_EQ(state(), PLAYER_STATE_READY);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_set_uri(player_, kClip), PLAYER_ERROR_INVALID_STATE);
}

TEST_F(PlayerContract, TellsOnceFromAnotherThreadThatItIsPrepared) {
    ASSERT_EQ(player_set_uri(player_, kClip), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_prepare_async(player_, note_prepared, &record_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(support::run_main_loop_until([this] { return record_.count() > 0; }, kDeadline));
    EXPECT_EQ(record_.events(), std::vector<std::string>{"prepared"});
    EXPECT_TRUE(record_.only_on_other_threads());
    EXPECT_EQ(state(), PLAYER_STATE_READY);
}

TEST_F(PlayerContract, DestroyEndsAPreparation) {
    ASSERT_EQ(player_set_uri(player_, kClip), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_prepare_async(player_, note_prepared, &record_), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_destroy(std::exchange(player_, nullptr)), PLAYER_ERROR_NONE);
    const std::size_t told = record_.count();
    support::run_main_loop_for(0.3);
    EXPECT_EQ(record_.count(), told);
}

TEST_F(PlayerContract, WalksThroughItsStates) {
    make_ready();
    EXPECT_EQ(player_pause(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_stop(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(state(), PLAYER_STATE_PLAYING);
    EXPECT_EQ(player_start(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_pause(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(state(), PLAYER_STATE_PAUSED);
    EXPECT_EQ(player_pause(player_), PLAYER_ERROR_INVALID_STATE);
    EXPECT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_stop(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(state(), PLAYER_STATE_READY);
    EXPECT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(state(), PLAYER_STATE_IDLE);
}

TEST_F(PlayerContract, StopReturnsToTheBeginning) {
    make_paused();
    ASSERT_EQ(seek(30000, true, "seek"), PLAYER_ERROR_NONE);
    ASSERT_TRUE(support::run_main_loop_until([this] { return record_.count() == 1; }, kDeadline));
    ASSERT_EQ(player_stop(player_), PLAYER_ERROR_NONE);
    int position = -1;
    EXPECT_EQ(player_get_play_position(player_, &position), PLAYER_ERROR_NONE);
    EXPECT_EQ(position, 0);
}

TEST_F(PlayerContract, CanBePreparedAgainAfterUnprepare) {
    for (int round = 0; round < 3; ++round) {
        make_playing();
        ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
        ASSERT_EQ(state(), PLAYER_STATE_IDLE);
    }
}

TEST_F(PlayerContract, PositionIsTheTargetFromTheCallOn) {
    make_paused();
    ASSERT_EQ(seek(42000, true, "seek"), PLAYER_ERROR_NONE);
    int position = -1;
    EXPECT_EQ(player_get_play_position(player_, &position), PLAYER_ERROR_NONE);
    EXPECT_EQ(position, 42000);
    ASSERT_TRUE(support::run_main_loop_until([this] { return record_.count() == 1; }, kDeadline));
    EXPECT_EQ(player_get_play_position(player_, &position), PLAYER_ERROR_NONE);
    EXPECT_NEAR(position, 42000, 34);
}

TEST_F(PlayerContract, SeeksPastTheEndGoToTheEnd) {
    make_paused();
    ASSERT_EQ(seek(1000000000, true, "seek"), PLAYER_ERROR_NONE);
    int position = -1;
    int duration = -1;
    EXPECT_EQ(player_get_play_position(player_, &position), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_get_duration(player_, &duration), PLAYER_ERROR_NONE);
    EXPECT_EQ(position, duration);
    EXPECT_TRUE(support::run_main_loop_until([this] { return record_.count() == 1; }, kDeadline));
}

TEST_F(PlayerContract, RefusesSeeksBeforeTheBeginning) {
    make_ready();
    EXPECT_EQ(seek(-1, true, "seek"), PLAYER_ERROR_INVALID_PARAMETER);
    support::run_loop_turns();
    EXPECT_EQ(record_.count(), 0U);
}

TEST_F(PlayerContract, SeeksNeedNobodyToTell) {
    make_ready();
    EXPECT_EQ(player_set_play_position(player_, 5000, true, nullptr, nullptr), PLAYER_ERROR_NONE);
    ASSERT_EQ(seek(6000, true, "seek"), PLAYER_ERROR_NONE);
    EXPECT_TRUE(support::run_main_loop_until([this] { return record_.count() == 1; }, kDeadline));
}

TEST_F(PlayerContract, ABurstOfSeeksCompletesInOrderWhenReady) {
    make_ready();
    expect_ordered_burst();
}

TEST_F(PlayerContract, ABurstOfSeeksCompletesInOrderWhilePlaying) {
    make_playing();
    expect_ordered_burst();
}

TEST_F(PlayerContract, ABurstOfSeeksCompletesInOrderWhilePaused) {
    make_paused();
    expect_ordered_burst();
}

TEST_F(PlayerContract, ABurstOfSeeksCompletesInOrderAfterAStop) {
    make_playing();
    ASSERT_EQ(player_stop(player_), PLAYER_ERROR_NONE);
    expect_ordered_burst();
}

TEST_F(PlayerContract, ABurstOfSeeksCompletesInOrderAcrossPlayAndPause) {
    make_ready();
    std::vector<std::string> expected;
    for (int index = 0; index < 200; ++index) {
        expected.push_back("seek " + std::to_string(index));
        ASSERT_EQ(seek(index * 257 % 60000, index % 2 == 0, expected.back()), PLAYER_ERROR_NONE);
        const bool plays = state() == PLAYER_STATE_PLAYING;
        ASSERT_EQ(plays ? player_pause(player_) : player_start(player_), PLAYER_ERROR_NONE);
    }
    EXPECT_TRUE(support::run_main_loop_until([&] { return record_.count() == expected.size(); },
                                             kDeadline));
    EXPECT_EQ(record_.events(), expected);
}

TEST_F(PlayerContract, UnprepareCompletesWhatWaitsBeforeItReturns) {
    make_playing();
    std::vector<std::string> expected;
    for (int index = 0; index < 20; ++index) {
        expected.push_back("seek " + std::to_string(index));
        ASSERT_EQ(seek(index * 1000, true, expected.back()), PLAYER_ERROR_NONE);
    }
    ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(record_.events(), expected);
    support::run_main_loop_for(0.2);
    EXPECT_EQ(record_.events(), expected);
}

TEST_F(PlayerContract, DestroyCompletesWhatWaitsBeforeItReturns) {
    make_paused();
    std::vector<std::string> expected;
    for (int index = 0; index < 20; ++index) {
        expected.push_back("seek " + std::to_string(index));
        ASSERT_EQ(seek(index * 1000, false, expected.back()), PLAYER_ERROR_NONE);
    }
    ASSERT_EQ(player_destroy(std::exchange(player_, nullptr)), PLAYER_ERROR_NONE);
    EXPECT_EQ(record_.events(), expected);
}

TEST_F(PlayerContract, PlaysToTheEndAndTellsOnce) {
    ASSERT_EQ(player_set_completed_cb(player_, note_completed, &record_), PLAYER_ERROR_NONE);
    make_ready();
    ASSERT_EQ(seek(59500, true, "seek"), PLAYER_ERROR_NONE);
    ASSERT_TRUE(support::run_main_loop_until([this] { return record_.count() == 1; }, kDeadline));
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(support::run_main_loop_until([this] { return record_.count() == 2; }, kDeadline));
    support::run_main_loop_for(0.2);
    EXPECT_EQ(record_.events(), (std::vector<std::string>{"seek", "completed"}));
    EXPECT_TRUE(record_.only_on_other_threads());
    int position = -1;
    EXPECT_EQ(player_get_play_position(player_, &position), PLAYER_ERROR_NONE);
    EXPECT_EQ(position, 60000);
}

TEST_F(PlayerContract, NobodyIsToldAfterUnset) {
    ASSERT_EQ(player_set_completed_cb(player_, note_completed, &record_), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_error_cb(player_, note_error, &record_), PLAYER_ERROR_NONE);
    make_ready();
    ASSERT_EQ(seek(59800, true, "seek"), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(support::run_main_loop_until([this] { return record_.count() == 1; }, kDeadline));
    ASSERT_EQ(player_unset_completed_cb(player_), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_unset_error_cb(player_), PLAYER_ERROR_NONE);
    support::run_main_loop_for(0.6);
    EXPECT_EQ(record_.events(), std::vector<std::string>{"seek"});
}

TEST_F(PlayerContract, AcceptsEachRegistrationAndItsEnd) {
    const auto error = [](int, void *) {};
    const auto buffering = [](int, void *) {};
    const auto completed = [](void *) {};
    const auto interrupted = [](player_interrupted_code_e, void *) {};
    const auto download = [](player_pd_message_type_e, void *) {};
    const auto subtitle = [](unsigned long, char *, void *) {};
    const auto missed = [](player_missed_plugin_type_e, const char *, void *) {};
    EXPECT_EQ(player_set_error_cb(player_, error, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_buffering_cb(player_, buffering, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_completed_cb(player_, completed, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_interrupted_cb(player_, interrupted, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_progressive_download_message_cb(player_, download, nullptr),
              PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_subtitle_updated_cb(player_, subtitle, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_missed_plugin_info_cb(player_, missed, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_error_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_buffering_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_completed_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_interrupted_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_progressive_download_message_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_subtitle_updated_cb(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_unset_media_packet_video_frame_decoded_cb(player_), PLAYER_ERROR_NONE);
}

TEST_F(PlayerContract, KeepsItsSettings) {
    float left = 0.0F;
    float right = 0.0F;
    EXPECT_EQ(player_set_volume(player_, 0.25F, 0.75F), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_get_volume(player_, &left, &right), PLAYER_ERROR_NONE);
    EXPECT_EQ(left, 0.25F);
    EXPECT_EQ(right, 0.75F);
    for (int value = 0; value <= 5; ++value) {
        player_display_mode_e mode = PLAYER_DISPLAY_MODE_LETTER_BOX;
        EXPECT_EQ(player_set_display_mode(player_, static_cast<player_display_mode_e>(value)),
                  PLAYER_ERROR_NONE);
        EXPECT_EQ(player_get_display_mode(player_, &mode), PLAYER_ERROR_NONE);
        EXPECT_EQ(static_cast<int>(mode), value);
    }
    for (int value = 0; value <= 3; ++value) {
        player_display_rotation_e rotation = PLAYER_DISPLAY_ROTATION_NONE;
        EXPECT_EQ(
            player_set_display_rotation(player_, static_cast<player_display_rotation_e>(value)),
            PLAYER_ERROR_NONE);
        EXPECT_EQ(player_get_display_rotation(player_, &rotation), PLAYER_ERROR_NONE);
        EXPECT_EQ(static_cast<int>(rotation), value);
    }
    for (const bool value : {false, true}) {
        bool visible = !value;
        EXPECT_EQ(player_set_display_visible(player_, value), PLAYER_ERROR_NONE);
        EXPECT_EQ(player_is_display_visible(player_, &visible), PLAYER_ERROR_NONE);
        EXPECT_EQ(visible, value);
    }
}

TEST_F(PlayerContract, RefusesSettingsOutOfRange) {
    EXPECT_EQ(player_set_volume(player_, -0.1F, 0.5F), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_volume(player_, 0.5F, 1.1F), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_display_mode(player_, static_cast<player_display_mode_e>(6)),
              PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_display_rotation(player_, static_cast<player_display_rotation_e>(4)),
              PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_display(player_, PLAYER_DISPLAY_TYPE_OVERLAY, nullptr),
              PLAYER_ERROR_INVALID_PARAMETER);
    make_ready();
    EXPECT_EQ(player_set_playback_rate_ex(player_, 0.49F), PLAYER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(player_set_playback_rate_ex(player_, 1.51F), PLAYER_ERROR_INVALID_PARAMETER);
}

TEST_F(PlayerContract, AnImageDisplayMayBeNone) {
    EXPECT_EQ(player_set_display(player_, PLAYER_DISPLAY_TYPE_EVAS, nullptr), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_display(player_, PLAYER_DISPLAY_TYPE_NONE, nullptr), PLAYER_ERROR_NONE);
}

TEST_F(PlayerContract, TakesTheLimitsOfTheRate) {
    make_playing();
    EXPECT_EQ(player_set_playback_rate_ex(player_, 0.5F), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_set_playback_rate_ex(player_, 1.5F), PLAYER_ERROR_NONE);
}

TEST_F(PlayerContract, CodecTextsBelongToTheCaller) {
    make_ready();
    char *audio = nullptr;
    char *video = nullptr;
    ASSERT_EQ(player_get_codec_info(player_, &audio, &video), PLAYER_ERROR_NONE);
    ASSERT_NE(audio, nullptr);
    ASSERT_NE(video, nullptr);
    std::free(audio);
    std::free(video);
}

}  // namespace
