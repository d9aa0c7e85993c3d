// What every audio focus does with several streams.

#include <gtest/gtest.h>
#include <sound_manager.h>

#include <atomic>
#include <future>

#include "focus_world.h"
#include "sound/focus.h"
#include "sound_user.h"

namespace {

using namespace sound_user;

constexpr int playback = SOUND_STREAM_FOCUS_FOR_PLAYBACK;
constexpr int recording = SOUND_STREAM_FOCUS_FOR_RECORDING;
constexpr int none = SOUND_BEHAVIOR_NONE;
constexpr int no_resume = SOUND_BEHAVIOR_NO_RESUME;
constexpr int fading = SOUND_BEHAVIOR_FADING;

class FocusContract : public testing::Test {
protected:
    void SetUp() override { focus_world::begin(); }
    void TearDown() override { focus_world::end(); }
};

TEST_F(FocusContract, IsGrantedAlsoToWhoHoldsIt) {
    FocusReports reports;
    const Stream stream(reports);
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.release(), 0);
    EXPECT_TRUE(reports.entries().empty()) << "what the owner does itself isn't reported";
}

TEST_F(FocusContract, OfTheProcessIsHeldAsLongAsOneOfItsStreamsHoldsIt) {
    EXPECT_FALSE(host::sound::is_focus_held(nullptr));
    FocusReports reports;
    const Stream holder(reports);
    const Stream taker;
    EXPECT_FALSE(host::sound::is_focus_held(nullptr));
    ASSERT_EQ(holder.acquire(), 0);
    EXPECT_TRUE(host::sound::is_focus_held(nullptr));
    EXPECT_FALSE(host::sound::is_focus_held(holder.handle));
    ASSERT_EQ(taker.acquire(), 0);
    EXPECT_TRUE(host::sound::is_focus_held(holder.handle));
    ASSERT_TRUE(reports.wait_for(1));
    EXPECT_FALSE(host::sound::is_focus_held(taker.handle));
    ASSERT_EQ(taker.release(), 0);
    EXPECT_FALSE(host::sound::is_focus_held(holder.handle));
    ASSERT_TRUE(reports.wait_for(2));
    EXPECT_TRUE(host::sound::is_focus_held(taker.handle));
}

TEST_F(FocusContract, ReleaseOfWhatIsNotHeldIsAnErrorThatChangesNothing) {
    const Stream stream;
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
    ASSERT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.release(no_resume, playback | recording), SOUND_MANAGER_ERROR_INVALID_STATE);
    EXPECT_EQ(stream.release(), 0);
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
}

TEST_F(FocusContract, ArgumentsAreChecked) {
    Stream stream;
    EXPECT_EQ(stream.acquire(none, 0), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(stream.acquire(none, 4), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(stream.acquire(8), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA, report_focus,
                                                      nullptr, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    const auto handle = stream.handle;
    ASSERT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.destroy(), 0);
    EXPECT_EQ(sound_manager_destroy_stream_information(handle),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_acquire_focus(handle, SOUND_STREAM_FOCUS_FOR_PLAYBACK, 0, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_set_focus_reacquisition(handle, false),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(FocusContract, MediaIsTheTypeInForceWhileThereIsAStream) {
    sound_type_e type = SOUND_TYPE_SYSTEM;
    EXPECT_EQ(sound_manager_get_current_sound_type(&type), SOUND_MANAGER_ERROR_NO_DATA);
    const Stream stream;
    EXPECT_EQ(sound_manager_get_current_sound_type(&type), 0);
    EXPECT_EQ(type, SOUND_TYPE_MEDIA);
    EXPECT_EQ(sound_manager_unset_current_sound_type(), 0);
}

class FocusContractBehaviour : public FocusContract, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Every, FocusContractBehaviour,
                         testing::Values(none, no_resume, fading, no_resume | fading));

TEST_P(FocusContractBehaviour, LoserIsToldWhatTheTakerStatesAndWhatItStatesOnReturn) {
    FocusReports holder_reports;
    FocusReports taker_reports;
    const Stream holder(holder_reports);
    const Stream taker(taker_reports);
    ASSERT_EQ(holder.acquire(), 0);
    ASSERT_EQ(taker.acquire(GetParam(), playback, "a call"), 0);
    ASSERT_TRUE(holder_reports.wait_for(1));
    EXPECT_EQ(holder_reports.entries().at(0), lost(GetParam(), "a call"));
    EXPECT_EQ(holder.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
    // Given back otherwise than it was taken.
    const int on_return = GetParam() ^ fading;
    ASSERT_EQ(taker.release(on_return, playback, "it was"), 0);
    ASSERT_TRUE(holder_reports.wait_for(2));
    EXPECT_EQ(holder_reports.entries().at(1), regained(on_return, "it was"));
    EXPECT_EQ(holder.release(), 0);
    EXPECT_TRUE(taker_reports.entries().empty());
}

TEST_F(FocusContract, FocusOfAStreamThatEndsGoesBackToWhoLostIt) {
    FocusReports reports;
    const Stream holder(reports);
    ASSERT_EQ(holder.acquire(), 0);
    {
        const Stream taker;
        ASSERT_EQ(taker.acquire(none), 0);
        ASSERT_TRUE(reports.wait_for_entry(lost(none)));
    }
    ASSERT_TRUE(reports.wait_for_entry(regained(none)));
    EXPECT_EQ(holder.release(), 0);
}

TEST_F(FocusContract, LosersStandInLineTheLatestFirst) {
    FocusReports first_reports;
    FocusReports second_reports;
    const Stream first(first_reports);
    const Stream second(second_reports);
    const Stream third;
    ASSERT_EQ(first.acquire(none), 0);
    ASSERT_EQ(second.acquire(none), 0);
    ASSERT_EQ(third.acquire(fading), 0);
    ASSERT_TRUE(second_reports.wait_for_entry(lost(fading)));
    ASSERT_EQ(third.release(none), 0);
    ASSERT_TRUE(second_reports.wait_for_entry(regained(none)));
    EXPECT_EQ(first_reports.entries(), std::vector{lost(none)});
    ASSERT_EQ(second.release(none), 0);
    ASSERT_TRUE(first_reports.wait_for_entry(regained(none)));
}

TEST_F(FocusContract, LoserWhoTakesItBackIsNotToldOfItself) {
    FocusReports first_reports;
    FocusReports second_reports;
    const Stream first(first_reports);
    const Stream second(second_reports);
    ASSERT_EQ(first.acquire(none), 0);
    ASSERT_EQ(second.acquire(none), 0);
    ASSERT_TRUE(first_reports.wait_for(1));
    ASSERT_EQ(first.acquire(fading), 0);
    ASSERT_TRUE(second_reports.wait_for_entry(lost(fading)));
    ASSERT_EQ(first.release(none), 0);
    ASSERT_TRUE(second_reports.wait_for_entry(regained(none)));
    EXPECT_EQ(first_reports.entries(), std::vector{lost(none)});
}

TEST_F(FocusContract, LoserWithoutReacquisitionGetsNothingBack) {
    for (const bool before_the_loss : {true, false}) {
        FocusReports reports;
        const Stream holder(reports);
        ASSERT_EQ(holder.acquire(), 0);
        if (before_the_loss) {
            ASSERT_EQ(holder.set_reacquisition(false), 0);
        }
        const Stream taker;
        ASSERT_EQ(taker.acquire(no_resume), 0);
        ASSERT_TRUE(reports.wait_for_entry(lost(no_resume)));
        if (!before_the_loss) {
            ASSERT_EQ(holder.set_reacquisition(false), 0);
        }
        ASSERT_EQ(taker.release(), 0);
        EXPECT_EQ(holder.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
        // Had it come back, this would be reported before.
        ASSERT_EQ(holder.acquire(), 0);
        ASSERT_EQ(taker.acquire(fading), 0);
        ASSERT_TRUE(reports.wait_for(2));
        EXPECT_EQ(reports.entries(), (std::vector{lost(no_resume), lost(fading)}));
    }
}

TEST_F(FocusContract, ReacquisitionSwitchedOnAgainCountsForTheNextLoss) {
    FocusReports reports;
    const Stream holder(reports);
    const Stream taker;
    ASSERT_EQ(holder.set_reacquisition(false), 0);
    ASSERT_EQ(holder.acquire(), 0);
    ASSERT_EQ(holder.set_reacquisition(true), 0);
    ASSERT_EQ(taker.acquire(none), 0);
    ASSERT_EQ(taker.release(none), 0);
    ASSERT_TRUE(reports.wait_for(2));
    EXPECT_EQ(reports.entries(), (std::vector{lost(none), regained(none)}));
}

TEST_F(FocusContract, HolderWhoSwitchesReacquisitionOffGoesOnHolding) {
    const Stream holder;
    ASSERT_EQ(holder.acquire(), 0);
    ASSERT_EQ(holder.set_reacquisition(false), 0);
    EXPECT_EQ(holder.release(), 0);
}

TEST_F(FocusContract, PlaybackAndRecordingAreOneEach) {
    FocusReports reports;
    const Stream player(reports);
    FocusReports recorder_reports;
    const Stream recorder(recorder_reports);
    ASSERT_EQ(player.acquire(none, playback), 0);
    ASSERT_EQ(recorder.acquire(none, recording), 0);
    EXPECT_EQ(player.acquire(fading, playback | recording), 0);
    // A loser has lost when it is told, which is after the taker has been answered.
    ASSERT_TRUE(recorder_reports.wait_for(1));
    EXPECT_EQ(recorder.release(none, recording), SOUND_MANAGER_ERROR_INVALID_STATE);
    ASSERT_EQ(recorder.acquire(no_resume, playback | recording), 0);
    ASSERT_TRUE(reports.wait_for(2));
    const FocusReport lost_recording{SOUND_STREAM_FOCUS_FOR_RECORDING,
                                     SOUND_STREAM_FOCUS_STATE_RELEASED, no_resume, ""};
    EXPECT_EQ(reports.entries(), (std::vector{lost(no_resume), lost_recording}));
    EXPECT_EQ(recorder.release(none, playback | recording), 0);
}

TEST_F(FocusContract, CallbackMayUseTheFocusItself) {
    struct Shared {
        support::Reports<int> results;
        sound_stream_info_h stream = nullptr;
    } shared;
    const Stream holder(
        [](sound_stream_info_h stream, sound_stream_focus_mask_e mask, sound_stream_focus_state_e,
           sound_stream_focus_change_reason_e, int, const char *, void *data) {
            auto &results = static_cast<Shared *>(data)->results;
            results.add(sound_manager_set_focus_reacquisition(stream, false));
            results.add(sound_manager_release_focus(stream, mask, 0, nullptr));
            results.add(sound_manager_acquire_focus(stream, mask, 0, nullptr));
        },
        &shared);
    FocusReports reports;
    const Stream taker(reports);
    ASSERT_EQ(holder.acquire(), 0);
    ASSERT_EQ(taker.acquire(), 0);
    ASSERT_TRUE(reports.wait_for(1));
    ASSERT_TRUE(shared.results.wait_for(3));
    EXPECT_EQ(shared.results.entries(),
              (std::vector<int>{0, SOUND_MANAGER_ERROR_INVALID_STATE, 0}));
}

TEST_F(FocusContract, SleepInACallbackHoldsUpNobodyWhoTakes) {
    support::Gate gate;
    const Stream holder(
        [](sound_stream_info_h, sound_stream_focus_mask_e, sound_stream_focus_state_e,
           sound_stream_focus_change_reason_e, int, const char *,
           void *data) { EXPECT_TRUE(static_cast<support::Gate *>(data)->pass()); },
        &gate);
    const Stream taker;
    ASSERT_EQ(holder.acquire(), 0);
    EXPECT_EQ(taker.acquire(), 0);
    EXPECT_EQ(taker.release(), 0);
    EXPECT_EQ(taker.acquire(), 0);
    gate.open();
}

TEST_F(FocusContract, DestructionWaitsForTheRunningCallback) {
    struct Shared {
        support::Gate entered;
        support::Gate leave;
        std::atomic<bool> left = false;
    } shared;
    Stream holder(
        [](sound_stream_info_h, sound_stream_focus_mask_e, sound_stream_focus_state_e,
           sound_stream_focus_change_reason_e, int, const char *, void *data) {
            auto &state = *static_cast<Shared *>(data);
            state.entered.open();
            EXPECT_TRUE(state.leave.pass());
            state.left = true;
        },
        &shared);
    const Stream taker;
    ASSERT_EQ(holder.acquire(), 0);
    ASSERT_EQ(taker.acquire(none), 0);
    ASSERT_TRUE(shared.entered.pass());
    auto left_at_return = std::async(std::launch::async, [&] {
        EXPECT_EQ(holder.destroy(), 0);
        return shared.left.load();
    });
    shared.leave.open();
    EXPECT_TRUE(left_at_return.get());
}

}  // namespace
