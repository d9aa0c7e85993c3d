#include <Ecore.h>
#include <dlfcn.h>
#include <dlog.h>

#include "sound_mgr_fixture.h"

namespace {

/// What the program does with pipes.
struct Pipes {
    bool refused = false;
    std::vector<Ecore_Pipe_Cb> readers;
    std::vector<const void *> data;
    std::vector<Ecore_Pipe *> deleted;
};
Pipes g_pipes;

template <typename Function>
Function *toolkits_own(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The toolkit's calls of the program, on their way through the test.
extern "C" {
Ecore_Pipe *ecore_pipe_add(Ecore_Pipe_Cb reader, const void *data) {
    static auto *const own = toolkits_own<decltype(ecore_pipe_add)>("ecore_pipe_add");
    g_pipes.readers.push_back(reader);
    g_pipes.data.push_back(data);
    return g_pipes.refused ? nullptr : own(reader, data);
}
void *ecore_pipe_del(Ecore_Pipe *pipe) {
    static auto *const own = toolkits_own<decltype(ecore_pipe_del)>("ecore_pipe_del");
    g_pipes.deleted.push_back(pipe);
    return own(pipe);
}
}

namespace {

using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SetArgPointee;

constexpr auto playback = static_cast<sound_stream_focus_mask_e>(1);
constexpr int behaviour_none = 0;
constexpr int behaviour_no_resume = 1;
constexpr int behaviour_fading = 2;
constexpr int behaviour_both = 3;
constexpr int policy_error = static_cast<int>(0xFE6A0002);
constexpr int some_error = SOUND_MANAGER_ERROR_INTERNAL;

const std::string no_handle = "* Critical * There is no m_pTslSoundMgrHandle.";
const std::string destroyed =
    "* Critical * There is no TslSoundMgrInside handle. It may be destroied.";

class AudioFocus : public SoundMgrTest {};
class SoundEnvironment : public SoundMgrTest {
protected:
    void SetUp() override {
        SoundMgrTest::SetUp();
        g_pipes = Pipes{};
    }
};

// ---- construction

TEST_F(SoundEnvironment, IsBuiltInOrder) {
    const InSequence in_order;
    EXPECT_CALL(mock::sound(), sound_manager_get_device_list(2, _));
    EXPECT_CALL(mock::sound(),
                sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA,
                                                        TslSoundMgrInside::_audioFocusCb, _, _));
    EXPECT_CALL(mock::sound(), sound_manager_set_safety_volume(0));
    EXPECT_CALL(mock::sound(),
                sound_manager_set_volume_changed_cb(TslSoundMgrInside::_volumeChangedCb, _));
    EXPECT_CALL(mock::sound(), sound_manager_add_device_connection_changed_cb(
                                   2, TslSoundMgrInside::_onDeviceConnectionChangedCb, _, _))
        .WillOnce([](int, sound_device_connection_changed_cb, void *user_data, int *id) {
            // The callbacks are live before the pipes exist.
            EXPECT_EQ(static_cast<TslSoundMgrInside *>(user_data)->m_pPipeToPause.load(), nullptr);
            *id = 77;
            return 0;
        });
    m_mgr = std::make_unique<TslSoundMgr>();
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_EQ(inside().m_nDeviceConnectionCbId, 77);
    EXPECT_NE(inside().m_pStreamInfo, nullptr);
    EXPECT_NE(inside().m_pPipeToPause.load(), nullptr);
    EXPECT_NE(inside().m_pPipeToResume.load(), nullptr);
    EXPECT_NE(inside().m_pPipeToVolume.load(), nullptr);
    EXPECT_NE(inside().m_pPipeToDeviceChanged.load(), nullptr);
    verify();
}

TEST_F(SoundEnvironment, EveryFailureOfConstructionIsLoggedAndPassedOver) {
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information)
        .WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_set_safety_volume).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_set_volume_changed_cb).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_add_device_connection_changed_cb)
        .WillOnce(Return(some_error));
    m_mgr = std::make_unique<TslSoundMgr>();
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * It is failed to create streaming information. - "
                     "sound_manager_create_stream_information()"),
         logs::error("* Critical * sound_manager_set_safety_volume is failed."),
         logs::error("* Critical * Error: sound_manager_set_volume_changed_cb is failed."),
         logs::error("* Critical * sound_manager_add_device_connection_changed_cb is failed.")}));
    EXPECT_NE(inside().m_pPipeToDeviceChanged.load(), nullptr);
    logs::clear();
    EXPECT_EQ(m_mgr->getAudioPolicyInfoToSetPlayerMgr(), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("pSoundMgrInside->m_pStreamInfo is nullptr")}));
}

TEST_F(SoundEnvironment, StreamInformationIsHandedOut) {
    create();
    EXPECT_NE(m_mgr->getAudioPolicyInfoToSetPlayerMgr(), nullptr);
    EXPECT_EQ(m_mgr->getAudioPolicyInfoToSetPlayerMgr(), inside().m_pStreamInfo);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(SoundEnvironment, StreamInformationIsCreatedOnce) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information).Times(0);
    EXPECT_TRUE(inside()._initAudioFocus());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pStreamInfo is already existed.")}));
    verify();
}

TEST_F(SoundEnvironment, SecondCreationReplacesAllPipes) {
    create();
    const auto pipes = [this] {
        return std::vector<Ecore_Pipe *>{inside().m_pPipeToPause, inside().m_pPipeToResume,
                                         inside().m_pPipeToVolume, inside().m_pPipeToDeviceChanged};
    };
    const auto old_pipes = pipes();
    const std::vector<Ecore_Pipe_Cb> readers{
        TslSoundMgrInside::_PipeCbForPause, TslSoundMgrInside::_PipeCbForResume,
        TslSoundMgrInside::_PipeCbForVolumeChanged, TslSoundMgrInside::_PipeCbForDeviceChanged};
    EXPECT_EQ(g_pipes.readers, readers);
    EXPECT_EQ(g_pipes.data, std::vector<const void *>(4, &inside()));
    inside()._writeEcorePipeToPause();
    inside()._createEcorePipe();
    EXPECT_EQ(g_pipes.deleted, old_pipes);
    EXPECT_EQ(g_pipes.readers.size(), 8U);
    support::run_loop_turns();
    EXPECT_TRUE(signals().empty()) << "what waited in the old pipe is gone with it";
    for (Ecore_Pipe *pipe : pipes()) {
        EXPECT_NE(pipe, nullptr);
    }
    inside()._writeEcorePipeToPause();
    inside()._writeEcorePipeToResume();
    inside()._writeEcorePipeToDeviceChanged(1);
    ASSERT_TRUE(emitted(3));
}

TEST_F(SoundEnvironment, ComesUpWithoutPipesThatCannotBeMade) {
    g_pipes.refused = true;
    create();
    EXPECT_FALSE(inside()._writeEcorePipeToPause());
    EXPECT_FALSE(inside()._writeEcorePipeToVolume(7));
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * m_pPipeToPause is not existed."),
                                  logs::error("* Critical * m_pPipeToVolume is not existed.")}));
    EXPECT_TRUE(m_mgr->acquireAudioFocus());
}

// ---- teardown

TEST_F(SoundEnvironment, IsTakenDownInOrder) {
    create();
    ASSERT_TRUE(m_mgr->acquireAudioFocus());
    const int id = inside().m_nDeviceConnectionCbId;
    TslSoundMgrInside *object = &inside();
    const InSequence in_order;
    EXPECT_CALL(mock::sound(),
                sound_manager_release_focus(inside().m_pStreamInfo, playback, 1, nullptr))
        .WillOnce([object](auto...) {
            EXPECT_NE(object->m_pPipeToPause.load(), nullptr);
            return 0;
        });
    EXPECT_CALL(mock::sound(), sound_manager_get_current_sound_type).WillOnce([object](auto type) {
        EXPECT_EQ(object->m_pPipeToPause.load(), nullptr);
        EXPECT_EQ(object->m_pPipeToResume.load(), nullptr);
        EXPECT_EQ(object->m_pPipeToVolume.load(), nullptr);
        EXPECT_EQ(object->m_pPipeToDeviceChanged.load(), nullptr);
        *type = SOUND_TYPE_MEDIA;
        return 0;
    });
    EXPECT_CALL(mock::sound(), sound_manager_unset_safety_volume);
    EXPECT_CALL(mock::sound(), sound_manager_unset_current_sound_type);
    EXPECT_CALL(mock::sound(), sound_manager_remove_device_connection_changed_cb(id));
    EXPECT_CALL(mock::sound(), sound_manager_unset_volume_changed_cb);
    EXPECT_CALL(mock::sound(), sound_manager_destroy_stream_information(inside().m_pStreamInfo));
    logs::clear();
    m_mgr.reset();
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_TRUE(NotLogged("There is not SOUND_TYPE_MEDIA."));
    EXPECT_EQ(mock::fake_sound().streams(), 0);
    verify();
}

TEST_F(SoundEnvironment, EveryFailureOfTeardownIsLoggedAndPassedOver) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_release_focus).WillOnce(Return(-5));
    EXPECT_CALL(mock::sound(), sound_manager_get_current_sound_type).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_unset_safety_volume).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_unset_current_sound_type).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_remove_device_connection_changed_cb)
        .WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_unset_volume_changed_cb).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_destroy_stream_information)
        .WillOnce(Return(some_error));
    m_mgr.reset();
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * It is failed to release audio focus. "
                     "sound_manager_release_focus() - -5"),
         logs::error("* Critical * sound_manager_get_current_sound_type fail"),
         logs::error("* Critical * sound_manager_unset_safety_volume fail"),
         logs::error("* Critical * sound_manager_unset_current_sound_type fail"),
         logs::error("* Critical * It is failed to destroy streaming information. - "
                     "sound_manager_destroy_stream_information()")}));
    verify();
}

TEST_F(SoundEnvironment, OtherSoundTypeInForceIsTold) {
    create();
    m_mgr->acquireAudioFocus();
    logs::clear();
    EXPECT_CALL(mock::sound(), sound_manager_get_current_sound_type)
        .WillOnce(DoAll(SetArgPointee<0>(SOUND_TYPE_CALL), Return(0)));
    m_mgr.reset();
    EXPECT_TRUE(LoggedInfo("There is not SOUND_TYPE_MEDIA."));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(SoundEnvironment, TeardownWithoutStreamWarnsTwice) {
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information)
        .WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_release_focus).Times(0);
    EXPECT_CALL(mock::sound(), sound_manager_destroy_stream_information).Times(0);
    create();
    m_mgr.reset();
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pStreamInfo is already not existed."),
                                  logs::warn("m_pStreamInfo is already not existed.")}));
    verify();
}

TEST_F(SoundEnvironment, EndedStreamIsNotEndedAgain) {
    create();
    EXPECT_TRUE(inside()._deinitAudioFocus());
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_EQ(mock::fake_sound().streams(), 0);
    EXPECT_TRUE(inside()._deinitAudioFocus());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pStreamInfo is already not existed.")}));
}

TEST_F(SoundEnvironment, OperationsRefuseAMissingHandle) {
    SoundMgrWithoutHandle mgr;
    EXPECT_FALSE((*mgr).acquireAudioFocus());
    EXPECT_FALSE((*mgr).releaseAudioFocus());
    EXPECT_EQ((*mgr).getAudioPolicyInfoToSetPlayerMgr(), nullptr);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error(no_handle), logs::error(no_handle), logs::error(no_handle)}));
    EXPECT_TRUE(LoggedIn("acquireAudioFocus", DLOG_ERROR, no_handle));
    EXPECT_TRUE(LoggedIn("releaseAudioFocus", DLOG_ERROR, no_handle));
    EXPECT_TRUE(LoggedIn("getAudioPolicyInfoToSetPlayerMgr", DLOG_ERROR, no_handle));
}

TEST_F(SoundEnvironment, DestructorWithoutHandleSaysSoAndStops) {
    create();
    TslSoundMgrInside *object = &inside();
    (*m_mgr).*member(SoundMgrHandle{}) = nullptr;
    m_mgr.reset();
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_handle)}));
    EXPECT_EQ(mock::fake_sound().streams(), 1);
    delete object;
}

// ---- asking for the focus

TEST_F(AudioFocus, IsTakenAndGivenBack) {
    create();
    EXPECT_CALL(mock::sound(),
                sound_manager_acquire_focus(inside().m_pStreamInfo, playback, 1, nullptr));
    EXPECT_TRUE(m_mgr->acquireAudioFocus());
    EXPECT_TRUE(mock::fake_sound().has_focus());
    EXPECT_CALL(mock::sound(),
                sound_manager_release_focus(inside().m_pStreamInfo, playback, 1, nullptr));
    EXPECT_TRUE(m_mgr->releaseAudioFocus());
    EXPECT_FALSE(mock::fake_sound().has_focus());
    EXPECT_TRUE(NoFaultLogged());
    verify();
}

TEST_F(AudioFocus, ForbiddenByPolicyIsAWarning) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_acquire_focus).WillOnce(Return(policy_error));
    EXPECT_FALSE(m_mgr->acquireAudioFocus());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("It is not possible to acquire audio focus.")}));
}

TEST_F(AudioFocus, OtherRefusalIsAFault) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_acquire_focus).WillOnce(Return(-22));
    EXPECT_FALSE(m_mgr->acquireAudioFocus());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to acquire audio focus. "
                                      "sound_manager_acquire_focus() - -22")}));
}

TEST_F(AudioFocus, IsAskedForWithoutAStreamToo) {
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information)
        .WillOnce(Return(some_error));
    create();
    EXPECT_CALL(mock::sound(), sound_manager_acquire_focus(nullptr, playback, 1, nullptr));
    EXPECT_FALSE(m_mgr->acquireAudioFocus());
    verify();
}

TEST_F(AudioFocus, ReleaseWithoutStreamIsTrue) {
    EXPECT_CALL(mock::sound(), sound_manager_create_stream_information)
        .WillOnce(Return(some_error));
    create();
    EXPECT_TRUE(m_mgr->releaseAudioFocus());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("m_pStreamInfo is already not existed.")}));
}

TEST_F(AudioFocus, RefusedReleaseIsAFault) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_release_focus).WillOnce(Return(-22));
    EXPECT_FALSE(m_mgr->releaseAudioFocus());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to release audio focus. "
                                      "sound_manager_release_focus() - -22")}));
    verify();
}

// ---- losing it, on the platform's thread

TEST_F(AudioFocus, LossWithoutBehaviourPausesAtOnce) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_set_focus_reacquisition).Times(0);
    mock::fake_sound().lose_focus(behaviour_none);
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_PLAYER_PAUSE});
    EXPECT_EQ(signals()[0].payload, nullptr);
    EXPECT_EQ(signals()[0].thread, std::this_thread::get_id());
    EXPECT_TRUE(NoFaultLogged());
    verify();
}

TEST_F(AudioFocus, LossWithoutResumePausesAndEndsTheReacquisition) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_set_focus_reacquisition(inside().m_pStreamInfo, false))
        .Times(1);
    mock::fake_sound().lose_focus(behaviour_no_resume);
    EXPECT_FALSE(mock::fake_sound().reacquisition());
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_PLAYER_PAUSE});
    verify();
}

// Twenty steps of 50 ms, told from the platform's thread.
void expect_fade(const std::vector<float> &values,
                 const std::vector<std::chrono::steady_clock::time_point> &times, float first,
                 float step) {
    ASSERT_EQ(values.size(), 20U);
    for (std::size_t index = 0; index < values.size(); ++index) {
        EXPECT_EQ(values[index], first + step * static_cast<float>(index));
    }
    for (std::size_t index = 1; index < times.size(); ++index) {
        EXPECT_GE(times[index] - times[index - 1], std::chrono::milliseconds(50));
    }
}

class Fading : public AudioFocus, public testing::WithParamInterface<bool> {
protected:
    void collect(std::vector<float> &values,
                 std::vector<std::chrono::steady_clock::time_point> &times) {
        for (const auto &signal : signals()) {
            if (signal.type == SIGNAL_SOUND_MGR_FADE_VOLUME) {
                values.push_back(signal.faded);
                times.push_back(signal.when);
                EXPECT_EQ(signal.thread, mock::fake_sound().focus_thread_id());
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(NoResume, Fading, testing::Bool());

TEST_P(Fading, LossFadesOutBeforeItPauses) {
    create();
    const bool no_resume = GetParam();
    std::size_t told_before = 0;
    ON_CALL(mock::sound(), sound_manager_set_focus_reacquisition).WillByDefault([&](auto...) {
        told_before = signals().size();
        return 0;
    });
    EXPECT_CALL(mock::sound(), sound_manager_set_focus_reacquisition(_, false))
        .Times(no_resume ? 1 : 0);
    const auto start = std::chrono::steady_clock::now();
    mock::fake_sound().start_losing_focus(no_resume ? behaviour_both : behaviour_fading);
    ASSERT_TRUE(support::run_main_loop_until(
        [this] {
            const auto list = types();
            return !list.empty() && list.back() == SIGNAL_PLAYER_PAUSE;
        },
        10.0));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    mock::fake_sound().drain();
    ASSERT_EQ(signals().size(), 21U);
    EXPECT_EQ(signals().back().thread, std::this_thread::get_id());
    std::vector<float> values;
    std::vector<std::chrono::steady_clock::time_point> times;
    collect(values, times);
    expect_fade(values, times, 380.0F, -20.0F);
    if (no_resume) {
        EXPECT_GE(told_before, 20U) << "the reacquisition ends after the fade";
    }
    EXPECT_TRUE(NoFaultLogged());
    verify();
}

TEST_P(Fading, ReturnResumesBeforeItFadesIn) {
    create();
    const int behaviour = GetParam() ? behaviour_both : behaviour_fading;
    EXPECT_CALL(mock::sound(), sound_manager_set_focus_reacquisition).Times(0);
    mock::fake_sound().start_regaining_focus(behaviour);
    ASSERT_TRUE(emitted(21, 10.0));
    const auto list = signals();
    ASSERT_EQ(list.size(), 21U);
    EXPECT_EQ(list.front().type, SIGNAL_PLAYER_RESUME);
    EXPECT_EQ(list.front().payload, nullptr);
    EXPECT_EQ(list.front().thread, std::this_thread::get_id());
    std::vector<float> values;
    std::vector<std::chrono::steady_clock::time_point> times;
    collect(values, times);
    expect_fade(values, times, 20.0F, 20.0F);
    EXPECT_TRUE(NoFaultLogged());
    verify();
}

TEST_F(AudioFocus, ReturnWithoutFadingResumesAtOnce) {
    create();
    for (const int behaviour : {behaviour_none, behaviour_no_resume}) {
        forget_signals();
        mock::fake_sound().regain_focus(behaviour);
        ASSERT_TRUE(emitted(1));
        EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_PLAYER_RESUME});
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(AudioFocus, ChangeWithoutObjectIsRefused) {
    create();
    TslSoundMgrInside::_audioFocusCb(
        inside().m_pStreamInfo, SOUND_STREAM_FOCUS_FOR_PLAYBACK, SOUND_STREAM_FOCUS_STATE_RELEASED,
        SOUND_STREAM_FOCUS_CHANGED_BY_MEDIA, behaviour_both, nullptr, nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * pUserData(Object of TslSoundMgrInside) is not existed.")}));
    support::run_loop_turns();
    EXPECT_TRUE(signals().empty());
}

TEST_F(AudioFocus, LossWithoutPipeIsLostButEndsTheReacquisition) {
    create();
    inside()._destroyEcorePipe();
    EXPECT_CALL(mock::sound(), sound_manager_set_focus_reacquisition(_, false)).Times(1);
    mock::fake_sound().lose_focus(behaviour_no_resume);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * m_pPipeToPause is not existed."),
                                  logs::error("* Critical * It is failed to send pause signal.")}));
    verify();
}

TEST_F(AudioFocus, ReturnWithoutPipeIsLostButFades) {
    create();
    inside()._destroyEcorePipe();
    mock::fake_sound().regain_focus(behaviour_fading);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * m_pPipeToResume is not existed."),
                          logs::error("* Critical * It is failed to send resume signal.")}));
    EXPECT_EQ(signals().size(), 20U);
}

TEST_F(AudioFocus, FailedWritesAreLogged) {
    create();
    ecore_pipe_write_close(inside().m_pPipeToPause);
    ecore_pipe_write_close(inside().m_pPipeToResume);
    EXPECT_FALSE(inside()._writeEcorePipeToPause());
    EXPECT_FALSE(inside()._writeEcorePipeToResume());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * ecore_pipe_write for pause is failed."),
                          logs::error("* Critical * ecore_pipe_write for resume is failed.")}));
}

TEST_F(AudioFocus, ReadersRefuseMissingUserData) {
    for (const auto reader :
         {TslSoundMgrInside::_PipeCbForPause, TslSoundMgrInside::_PipeCbForResume,
          TslSoundMgrInside::_PipeCbForVolumeChanged, TslSoundMgrInside::_PipeCbForDeviceChanged}) {
        logs::clear();
        int value = 1;
        reader(nullptr, &value, sizeof value);
        EXPECT_TRUE(OnlyFaultsLogged({logs::error(destroyed)}));
    }
    EXPECT_TRUE(signals().empty());
}

TEST_F(AudioFocus, LossDuringTeardownIsDropped) {
    create();
    m_mgr->acquireAudioFocus();
    EXPECT_CALL(mock::sound(), sound_manager_get_current_sound_type).WillOnce([](auto type) {
        // The pipes are gone, the callback isn't.
        mock::fake_sound().lose_focus(behaviour_none);
        *type = SOUND_TYPE_MEDIA;
        return 0;
    });
    logs::clear();
    m_mgr.reset();
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * m_pPipeToPause is not existed."),
                                  logs::error("* Critical * It is failed to send pause signal.")}));
    support::run_loop_turns();
    EXPECT_TRUE(signals().empty());
}

}  // namespace
