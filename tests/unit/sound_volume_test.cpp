#include <Ecore.h>
#include <dlog.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <functional>

#include "block_watch.h"
#include "sound_mgr_fixture.h"

namespace {

using testing::_;
using testing::DoAll;
using testing::InSequence;
using testing::Return;
using testing::SetArgPointee;

constexpr int earjack = 3;
constexpr int bluetooth = 4;
constexpr int hdmi = 5;
constexpr int other_device = 7;
constexpr int speaker = 0;
constexpr int media = 4;
constexpr int some_error = SOUND_MANAGER_ERROR_INTERNAL;  // 0xfe6a0001

const std::string no_handle = "* Critical * There is no m_pTslSoundMgrHandle.";

class SoundVolume : public SoundMgrTest {
protected:
    // The last level passed on outlives an object: begin with one that no test sends.
    void create() {
        SoundMgrTest::create();
        int level = 1000;
        TslSoundMgrInside::_PipeCbForVolumeChanged(&inside(), &level, sizeof level);
        forget_signals();
        logs::clear();
    }
};

class SoundDevices : public SoundMgrTest {};

class FirstVolumeReport : public SoundMgrTest {};

int payload_of(const void *payload) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(payload));
}

// ---- levels

TEST_F(SoundVolume, EveryLevelIsSetAsItIs) {
    create();
    for (const int level : {0, 7, 15}) {
        logs::clear();
        EXPECT_CALL(mock::sound(), sound_manager_set_volume(SOUND_TYPE_MEDIA, level));
        EXPECT_TRUE(m_mgr->setVolume(level));
        EXPECT_EQ(m_mgr->getVolume(), level);
        EXPECT_TRUE(LoggedIn("_setVolume", DLOG_INFO, "nVolume : " + std::to_string(level)));
        EXPECT_TRUE(LoggedIn("_getVolume", DLOG_INFO, "nVolume : " + std::to_string(level)));
        EXPECT_TRUE(NoFaultLogged());
        verify();
    }
}

TEST_F(SoundVolume, LevelsOutOfRangeAreNotClamped) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_set_volume(SOUND_TYPE_MEDIA, 99));
    EXPECT_FALSE(m_mgr->setVolume(99));
    EXPECT_TRUE(LoggedInfo("nVolume : 99"));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * sound_manager_set_volume().. [0xffffffea]")}));
    verify();
}

TEST_F(SoundVolume, FailedReadIsMinusOne) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_get_volume(SOUND_TYPE_MEDIA, _))
        .WillOnce(Return(some_error));
    EXPECT_EQ(m_mgr->getVolume(), -1);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * sound_manager_get_volume().. [0xfe6a0001]")}));
}

TEST_F(SoundVolume, MaximumIsReadIntoItsField) {
    create();
    mock::fake_sound().set_max_volume(12);
    EXPECT_CALL(mock::sound(),
                sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &inside().m_nMaxVolumeLevel));
    EXPECT_EQ(m_mgr->getMaxVolumeLevel(), 12);
    EXPECT_EQ(inside().m_nMaxVolumeLevel, 12);
    EXPECT_TRUE(LoggedInfo("m_nMaxVolumeLevel : 12"));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(SoundVolume, FailedMaximumIsMinusOne) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_get_max_volume).WillOnce(Return(some_error));
    EXPECT_EQ(m_mgr->getMaxVolumeLevel(), -1);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * sound_manager_get_max_volume().. [0xfe6a0001]")}));
}

// ---- safety level

struct SafetyRow {
    std::string name;
    std::vector<int> devices;
    int level;
};

std::ostream &operator<<(std::ostream &stream, const SafetyRow &row) {
    return stream << row.name;
}

class SafetyVolume : public SoundMgrTest, public testing::WithParamInterface<SafetyRow> {};

TEST_P(SafetyVolume, FollowsTheDevices) {
    create();
    mock::fake_sound().set_devices(GetParam().devices);
    const bool fixed = GetParam().level == 9;
    EXPECT_EQ(m_mgr->getSafetyVolumeLevel(), GetParam().level);
    EXPECT_TRUE(LoggedTimes(fixed ? 1 : 0, DLOG_INFO, "BT headset or Earjack is connected."));
    EXPECT_TRUE(LoggedInfo("safety volume level : " + std::to_string(GetParam().level)));
    EXPECT_TRUE(NoFaultLogged());
}

INSTANTIATE_TEST_SUITE_P(Every, SafetyVolume,
                         testing::Values(SafetyRow{"nothing", {}, 16},
                                         SafetyRow{"earjack", {earjack}, 9},
                                         SafetyRow{"bluetooth", {bluetooth}, 9},
                                         SafetyRow{"hdmi", {hdmi}, 16},
                                         SafetyRow{"other", {other_device}, 16},
                                         SafetyRow{"several", {hdmi, earjack, bluetooth}, 9}),
                         [](const auto &info) { return info.param.name; });

TEST_F(SoundVolume, SafetyLevelIsZeroWhenTheMaximumCannotBeRead) {
    create();
    EXPECT_CALL(mock::sound(), sound_manager_get_max_volume).WillOnce(Return(some_error));
    EXPECT_EQ(m_mgr->getSafetyVolumeLevel(), 0);
    EXPECT_TRUE(LoggedInfo("safety volume level : 0"));
}

TEST_F(SoundVolume, SafetyLevelReadsTheMaximumWithAnEarjackToo) {
    create();
    mock::fake_sound().set_devices({earjack});
    EXPECT_CALL(mock::sound(), sound_manager_get_max_volume).WillOnce(Return(some_error));
    EXPECT_EQ(m_mgr->getSafetyVolumeLevel(), 9);
    verify();
}

// ---- reports of the volume

TEST_F(SoundVolume, ReportReachesTheBusAsTheLevelItself) {
    create();
    ASSERT_NE(mock::fake_sound().report_thread_id(), std::this_thread::get_id());
    mock::fake_sound().change_volume(media, 11);
    EXPECT_TRUE(LoggedIn("_volumeChangedCb", DLOG_INFO, "nVolume: 11"));
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_SOUND_MGR_VOLUME_CHANGED});
    EXPECT_EQ(payload_of(signals()[0].payload), 11);
    EXPECT_EQ(signals()[0].thread, std::this_thread::get_id());
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(SoundVolume, SetLevelComesBackAsAReport) {
    create();
    EXPECT_TRUE(m_mgr->setVolume(3));
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(payload_of(signals()[0].payload), 3);
}

TEST_F(SoundVolume, LevelZeroIsANullPayload) {
    create();
    mock::fake_sound().change_volume(media, 0);
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(signals()[0].payload, nullptr);
}

// The last level belongs to the process, so the first report needs a process of its own.
TEST_F(FirstVolumeReport, PassesWhateverItsLevel) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto report = [this](int level) {
        create();
        TslSoundMgrInside::_PipeCbForVolumeChanged(&inside(), &level, sizeof level);
        std::_Exit(static_cast<int>(signals().size()));
    };
    EXPECT_EXIT(report(0), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(report(15), testing::ExitedWithCode(1), "");
}

TEST_F(SoundVolume, SecondReportOfTheSameLevelIsDropped) {
    create();
    mock::fake_sound().change_volume(media, 5);
    ASSERT_TRUE(emitted(1));
    mock::fake_sound().change_volume(media, 5);
    ASSERT_TRUE(support::run_main_loop_until(
        [] { return logs::count(DLOG_INFO, "Volume has not been changed yet.") == 1; }));
    EXPECT_EQ(signals().size(), 1U);
    mock::fake_sound().change_volume(media, 6);
    ASSERT_TRUE(emitted(2));
}

TEST_F(SoundVolume, ReportOfAnotherTypeIsIgnoredWithoutALine) {
    create();
    const support::BlockWatch blocks(4);
    for (const int type : {0, 1, 2, 3, 5, 6, 7}) {
        mock::fake_sound().change_volume(type, 9);
    }
    EXPECT_EQ(blocks.allocated(), 0);
    EXPECT_TRUE(logs::all().empty());
    support::run_loop_turns();
    EXPECT_TRUE(signals().empty());
}

TEST_F(SoundVolume, ReportWithoutObjectIsRefused) {
    TslSoundMgrInside::_volumeChangedCb(SOUND_TYPE_MEDIA, 5, nullptr);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * pUserData(Handle of TslSoundMgrInside) is not existed.")}));
}

TEST_F(SoundVolume, ReportWithoutPipeIsLost) {
    create();
    inside()._destroyEcorePipe();
    mock::fake_sound().change_volume(media, 5);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * m_pPipeToVolume is not existed."),
                          logs::error("* Critical * It is failed to send volume signal.")}));
}

TEST_F(SoundVolume, FailedWriteIsLoggedAndFreed) {
    create();
    ecore_pipe_write_close(inside().m_pPipeToVolume);
    const support::BlockWatch blocks(4);
    mock::fake_sound().change_volume(media, 5);
    EXPECT_EQ(blocks.allocated(), 1);
    EXPECT_EQ(blocks.live(), 0);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * ecore_pipe_write for volume is failed."),
                          logs::error("* Critical * It is failed to send volume signal.")}));
}

// ---- devices

struct DeviceRow {
    std::string name;
    std::vector<int> devices;
    bool hdmi_connected;
    bool earjack_connected;
    bool bluetooth_connected;
    int count;
};

std::ostream &operator<<(std::ostream &stream, const DeviceRow &row) {
    return stream << row.name;
}

class DeviceWalk : public SoundMgrTest, public testing::WithParamInterface<DeviceRow> {};

TEST_P(DeviceWalk, StartsFromScratch) {
    create();
    const DeviceRow &row = GetParam();
    // What an earlier walk found must not stay.
    mock::fake_sound().set_devices({earjack, bluetooth, hdmi, other_device});
    inside()._updateAudioEnableDeviceState();
    mock::fake_sound().set_devices(row.devices);
    inside()._updateAudioEnableDeviceState();
    EXPECT_EQ(inside().m_bHdmiConnected, row.hdmi_connected);
    EXPECT_EQ(inside().m_bEarjackConnected, row.earjack_connected);
    EXPECT_EQ(inside().m_bBluetoothConnected, row.bluetooth_connected);
    EXPECT_EQ(inside().m_nAvailableDeviceCount, row.count);
    EXPECT_EQ(m_mgr->isSoundRouteAvailable(), row.count > 0);
    EXPECT_EQ(m_mgr->isConnectEarjackOrBluetooth(),
              row.earjack_connected || row.bluetooth_connected);
    EXPECT_TRUE(NoFaultLogged());
}

INSTANTIATE_TEST_SUITE_P(
    Every, DeviceWalk,
    testing::Values(
        DeviceRow{"nothing", {}, false, false, false, 0},
        DeviceRow{"speaker", {speaker}, false, false, false, 0},
        DeviceRow{"earjack", {earjack}, false, true, false, 1},
        DeviceRow{"bluetooth", {bluetooth}, false, false, true, 1},
        DeviceRow{"hdmi", {hdmi}, true, false, false, 1},
        DeviceRow{"other", {other_device}, false, false, false, 1},
        DeviceRow{"two_of_a_kind", {other_device, other_device}, false, false, false, 2},
        DeviceRow{"all", {earjack, bluetooth, hdmi, other_device}, true, true, true, 4}),
    [](const auto &info) { return info.param.name; });

TEST_F(SoundDevices, QuestionsWalkTheListAnew) {
    create();
    EXPECT_FALSE(m_mgr->isSoundRouteAvailable());
    EXPECT_FALSE(m_mgr->isConnectEarjackOrBluetooth());
    mock::fake_sound().set_devices({bluetooth});
    EXPECT_TRUE(m_mgr->isSoundRouteAvailable());
    mock::fake_sound().set_devices({earjack});
    EXPECT_TRUE(m_mgr->isConnectEarjackOrBluetooth());
}

TEST_F(SoundDevices, ListIsFreedOnceWalked) {
    create();
    mock::fake_sound().set_devices({earjack});
    sound_device_list_h list = nullptr;
    EXPECT_CALL(mock::sound(), sound_manager_get_device_list(2, _))
        .WillOnce([&](int mask, sound_device_list_h *device_list) {
            const int result = mock::fake_sound().sound_manager_get_device_list(mask, device_list);
            list = *device_list;
            return result;
        });
    EXPECT_CALL(mock::sound(), sound_manager_free_device_list).WillOnce([&](auto freed) {
        EXPECT_EQ(freed, list);
        return mock::fake_sound().sound_manager_free_device_list(freed);
    });
    inside()._updateAudioEnableDeviceState();
    verify();
}

TEST_F(SoundDevices, FailedListReadsAsNothingAttached) {
    create();
    mock::fake_sound().set_devices({earjack});
    EXPECT_CALL(mock::sound(), sound_manager_get_device_list).WillOnce(Return(some_error));
    EXPECT_CALL(mock::sound(), sound_manager_get_next_device).Times(0);
    EXPECT_CALL(mock::sound(), sound_manager_free_device_list).Times(0);
    EXPECT_FALSE(m_mgr->isSoundRouteAvailable());
    EXPECT_TRUE(NoFaultLogged());
    verify();
}

TEST_F(SoundDevices, FailedFreeIsLogged) {
    create();
    mock::fake_sound().set_devices({earjack});
    EXPECT_CALL(mock::sound(), sound_manager_free_device_list).WillOnce(Return(-22));
    EXPECT_TRUE(m_mgr->isSoundRouteAvailable());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to free device list: [-22]")}));
}

TEST_F(SoundDevices, DeviceTypeResultIsNotTested) {
    create();
    mock::fake_sound().set_devices({other_device});
    EXPECT_CALL(mock::sound(), sound_manager_get_device_type)
        .WillOnce(DoAll(SetArgPointee<1>(SOUND_DEVICE_BLUETOOTH), Return(some_error)));
    EXPECT_TRUE(m_mgr->isConnectEarjackOrBluetooth());
}

// ---- reports of devices

TEST_F(SoundDevices, ConnectionGivesOneRouteChange) {
    create();
    for (const int type : {earjack, bluetooth, hdmi, other_device}) {
        forget_signals();
        mock::fake_sound().connect_device(type);
        ASSERT_TRUE(emitted(1));
        support::run_loop_turns();
        EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_SOUND_MGR_ROUTE_CHANGED}) << type;
        EXPECT_EQ(signals()[0].payload, nullptr);
        EXPECT_EQ(signals()[0].thread, std::this_thread::get_id());
    }
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(SoundDevices, UnchangedSetStillGivesARouteChange) {
    create();
    mock::fake_sound().report_unchanged_devices();
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_SOUND_MGR_ROUTE_CHANGED});
    EXPECT_TRUE(LoggedInfo("nChangedDeviceNotice 1"));
}

struct LossRow {
    std::string name;
    std::vector<int> lost;
    std::vector<int> notices;
};

std::ostream &operator<<(std::ostream &stream, const LossRow &row) {
    return stream << row.name;
}

class DeviceLoss : public SoundMgrTest, public testing::WithParamInterface<LossRow> {};

TEST_P(DeviceLoss, GivesItsNotices) {
    mock::fake_sound().set_devices({earjack, bluetooth, hdmi, other_device});
    create();
    mock::fake_sound().disconnect_devices(GetParam().lost);
    ASSERT_TRUE(emitted(GetParam().notices.size()));
    support::run_loop_turns();
    std::vector<TslSignalType> expected_types;
    std::vector<logs::Expected> expected_lines;
    for (const int notice : GetParam().notices) {
        expected_types.push_back(notice == 1 ? SIGNAL_SOUND_MGR_ROUTE_CHANGED
                                             : SIGNAL_SOUND_MGR_DEVICE_DISCONNECT);
        expected_lines.push_back(logs::info("nChangedDeviceNotice " + std::to_string(notice)));
    }
    EXPECT_EQ(types(), expected_types);
    EXPECT_TRUE(LoggedInOrder(expected_lines));
    EXPECT_TRUE(NoFaultLogged());
}

INSTANTIATE_TEST_SUITE_P(Every, DeviceLoss,
                         testing::Values(LossRow{"earjack", {earjack}, {1, 2}},
                                         LossRow{"bluetooth", {bluetooth}, {1, 4}},
                                         LossRow{"both", {earjack, bluetooth}, {1, 2, 4}},
                                         LossRow{"hdmi", {hdmi}, {1}},
                                         LossRow{"other", {other_device}, {1}}),
                         [](const auto &info) { return info.param.name; });

TEST_F(SoundDevices, RouteChangeIsWrittenBeforeTheListIsReadAgain) {
    create();
    const InSequence in_order;
    EXPECT_CALL(mock::sound(), sound_manager_get_device_list).WillOnce([](auto...) {
        EXPECT_TRUE(LoggedIn("_writeEcorePipeToDeviceChanged", DLOG_INFO, ""));
        return static_cast<int>(SOUND_MANAGER_ERROR_NO_DATA);
    });
    mock::fake_sound().report_unchanged_devices();
    verify();
}

TEST_F(SoundDevices, ReportDoesNotReadItsArguments) {
    create();
    TslSoundMgrInside::_onDeviceConnectionChangedCb(nullptr, true, &inside());
    ASSERT_TRUE(emitted(1));
    EXPECT_EQ(types(), std::vector<TslSignalType>{SIGNAL_SOUND_MGR_ROUTE_CHANGED});
}

TEST_F(SoundDevices, ReportWithoutObjectIsRefused) {
    TslSoundMgrInside::_onDeviceConnectionChangedCb(nullptr, false, nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pUserData is not existed.")}));
}

TEST_F(SoundDevices, ReportWithoutPipeLogsEachNoticeAndGoesOn) {
    mock::fake_sound().set_devices({earjack, bluetooth});
    create();
    inside()._destroyEcorePipe();
    mock::fake_sound().disconnect_devices({earjack, bluetooth});
    const auto missing = logs::error("* Critical * m_pPipeToDeviceChanged is not existed.");
    const auto lost = logs::error("* Critical * It is failed to send device changed signal.");
    EXPECT_TRUE(OnlyFaultsLogged({missing, lost, missing, lost, missing, lost}));
    EXPECT_FALSE(inside().m_bEarjackConnected);
}

TEST_F(SoundDevices, FailedWriteIsLoggedAndFreed) {
    create();
    ecore_pipe_write_close(inside().m_pPipeToDeviceChanged);
    const support::BlockWatch blocks(4);
    EXPECT_FALSE(inside()._writeEcorePipeToDeviceChanged(1));
    EXPECT_EQ(blocks.allocated(), 1);
    EXPECT_EQ(blocks.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * ecore_pipe_write for device changed is failed.")}));
}

TEST_F(SoundDevices, OtherNoticesAreDroppedAfterTheirLine) {
    create();
    for (int notice : {0, 3, 5, 8}) {
        TslSoundMgrInside::_PipeCbForDeviceChanged(&inside(), &notice, sizeof notice);
        EXPECT_TRUE(LoggedInfo("nChangedDeviceNotice " + std::to_string(notice)));
    }
    EXPECT_TRUE(signals().empty());
}

TEST_F(SoundDevices, BothThreadsMayWalkAtOnce) {
    create();
    std::atomic<bool> done{false};
    std::thread platform([&] {
        for (int round = 0; round < 50; ++round) {
            mock::fake_sound().connect_device(earjack);
            mock::fake_sound().disconnect_device(earjack);
        }
        done = true;
    });
    while (!done) {
        m_mgr->isConnectEarjackOrBluetooth();
        m_mgr->getSafetyVolumeLevel();
        support::run_loop_turns(1);
    }
    platform.join();
    EXPECT_FALSE(m_mgr->isConnectEarjackOrBluetooth());
    EXPECT_TRUE(NoFaultLogged());
}

// ---- Bluetooth set

TEST_F(SoundDevices, NameOfTheBluetoothSetIsTheCallers) {
    create();
    mock::fake_sound().set_devices({bluetooth});
    mock::fake_sound().set_bluetooth_name("my set");
    char *name = m_mgr->getA2dpName();
    EXPECT_STREQ(name, "my set");
    std::free(name);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(SoundDevices, FailedBluetoothStatusFreesTheName) {
    create();
    const support::BlockWatch names(55);
    EXPECT_CALL(mock::sound(), sound_manager_get_a2dp_status)
        .WillOnce([](bool *connected, char **name) {
            EXPECT_FALSE(*connected);
            EXPECT_EQ(*name, nullptr);
            *name = static_cast<char *>(std::calloc(1, 55));
            return some_error;
        });
    EXPECT_EQ(m_mgr->getA2dpName(), nullptr);
    EXPECT_EQ(names.allocated(), 1);
    EXPECT_EQ(names.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * sound_manager_get_a2dp_status fail")}));
}

TEST_F(SoundDevices, UnconnectedBluetoothSetFreesTheName) {
    create();
    const support::BlockWatch names(55);
    EXPECT_CALL(mock::sound(), sound_manager_get_a2dp_status)
        .WillOnce([](bool *connected, char **name) {
            *connected = false;
            *name = static_cast<char *>(std::calloc(1, 55));
            return 0;
        });
    EXPECT_EQ(m_mgr->getA2dpName(), nullptr);
    EXPECT_EQ(names.allocated(), 1);
    EXPECT_EQ(names.live(), 0);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * Not connected BT")}));
}

// ---- missing handle

struct HandleRow {
    std::string name;
    std::function<double(TslSoundMgr &)> run;
    double failure;
};

std::ostream &operator<<(std::ostream &stream, const HandleRow &row) {
    return stream << row.name;
}

class SoundHandle : public SoundMgrTest, public testing::WithParamInterface<HandleRow> {};

TEST_P(SoundHandle, IsTestedFirst) {
    SoundMgrWithoutHandle mgr;
    EXPECT_EQ(GetParam().run(*mgr), GetParam().failure);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error(no_handle)}));
    EXPECT_TRUE(LoggedIn(GetParam().name, DLOG_ERROR, no_handle));
}

INSTANTIATE_TEST_SUITE_P(
    Every, SoundHandle,
    testing::Values(
        HandleRow{"getMaxVolumeLevel",
                  [](TslSoundMgr &m) -> double { return m.getMaxVolumeLevel(); }, -1},
        HandleRow{"getSafetyVolumeLevel",
                  [](TslSoundMgr &m) -> double { return m.getSafetyVolumeLevel(); }, -1},
        HandleRow{"setVolume", [](TslSoundMgr &m) -> double { return m.setVolume(1); }, 0},
        HandleRow{"getVolume", [](TslSoundMgr &m) -> double { return m.getVolume(); }, -1},
        HandleRow{"getA2dpName",
                  [](TslSoundMgr &m) -> double { return m.getA2dpName() != nullptr; }, 0},
        HandleRow{"isSoundRouteAvailable",
                  [](TslSoundMgr &m) -> double { return m.isSoundRouteAvailable(); }, 0},
        HandleRow{"isConnectEarjackOrBluetooth",
                  [](TslSoundMgr &m) -> double { return m.isConnectEarjackOrBluetooth(); }, 0}),
    [](const auto &info) { return info.param.name; });

}  // namespace
