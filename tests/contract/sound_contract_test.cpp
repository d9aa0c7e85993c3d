// What every sound manager does with volumes and devices.

#include <gtest/gtest.h>
#include <sound_manager.h>

#include <cstdlib>
#include <thread>

#include "sound_user.h"
#include "sound_world.h"

namespace {

using namespace sound_user;

class SoundContract : public testing::Test {
protected:
    void SetUp() override { sound_world::begin(); }
    void TearDown() override { sound_world::end(); }
};

// ---- volume

TEST_F(SoundContract, EveryLevelIsReadAsItWasSet) {
    int max = 0;
    ASSERT_EQ(sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &max), 0);
    ASSERT_EQ(max, 15);
    for (int level = 0; level <= max; ++level) {
        ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level), 0);
        EXPECT_EQ(media_volume(), level);
    }
    for (int level = max; level >= 0; --level) {
        ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level), 0);
        EXPECT_EQ(media_volume(), level);
    }
}

TEST_F(SoundContract, LevelOutOfRangeIsRefusedAndKeepsTheOldOne) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 9), 0);
    for (const int level : {16, -1, 1000}) {
        EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level),
                  SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    }
    EXPECT_EQ(media_volume(), 9);
}

TEST_F(SoundContract, UnknownTypesAndNullResultsAreRefused) {
    const auto unknown = static_cast<sound_type_e>(99);
    int level = 4;
    EXPECT_EQ(sound_manager_get_volume(unknown, &level), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_get_max_volume(unknown, &level), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(level, 4);
    EXPECT_EQ(sound_manager_set_volume(unknown, 3), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_MEDIA, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_get_max_volume(SOUND_TYPE_MEDIA, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_set_volume_changed_cb(nullptr, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(SoundContract, EachTypeHasALevelOfItsOwn) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_ALARM, 3), 0);
    int alarm = 0;
    EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_ALARM, &alarm), 0);
    EXPECT_EQ(alarm, 3);
    EXPECT_EQ(media_volume(), 15);
}

TEST_F(SoundContract, SetsAreReportedOnceEachAndInOrder) {
    Levels levels;
    const VolumeCallback set(report_level, &levels);
    for (const int level : {3, 3, 4, 5, 5, 0, 9}) {
        ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level), 0);
    }
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_RINGTONE, 1), 0);
    ASSERT_TRUE(levels.wait_for(6));
    // What may be wrong is too much: something else is done and waited for.
    sound_world::set_level_elsewhere(2);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 2}));
    EXPECT_EQ(levels.entries(), (std::vector<Level>{{SOUND_TYPE_MEDIA, 3},
                                                    {SOUND_TYPE_MEDIA, 4},
                                                    {SOUND_TYPE_MEDIA, 5},
                                                    {SOUND_TYPE_MEDIA, 0},
                                                    {SOUND_TYPE_MEDIA, 9},
                                                    {SOUND_TYPE_RINGTONE, 1},
                                                    {SOUND_TYPE_MEDIA, 2}}));
}

TEST_F(SoundContract, ChangeByAnotherProgramIsReportedAndRead) {
    Levels levels;
    const VolumeCallback set(report_level, &levels);
    for (const unsigned level : {6U, 7U, 0U, 15U}) {
        sound_world::set_level_elsewhere(static_cast<int>(level));
        ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, level}));
        EXPECT_EQ(media_volume(), static_cast<int>(level));
    }
    EXPECT_EQ(levels.entries().size(), 4U);
}

TEST_F(SoundContract, ReportComesOnAnotherThreadWhereTheLevelIsReadAndSet) {
    struct Seen {
        support::Reports<std::pair<unsigned, int>> levels;
        std::thread::id thread;
    } seen;
    const VolumeCallback set(
        [](sound_type_e type, unsigned level, void *data) {
            auto &report = *static_cast<Seen *>(data);
            report.thread = std::this_thread::get_id();
            const int read = media_volume();
            if (level == 6) {
                EXPECT_EQ(sound_manager_set_volume(type, 8), 0);
                EXPECT_EQ(media_volume(), 8);
            }
            report.levels.add({level, read});
        },
        &seen);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    ASSERT_TRUE(seen.levels.wait_for(2));
    EXPECT_EQ(seen.levels.entries(), (std::vector<std::pair<unsigned, int>>{{6, 6}, {8, 8}}));
    EXPECT_NE(seen.thread, std::this_thread::get_id());
}

TEST_F(SoundContract, SecondCallbackTakesThePlaceOfTheFirst) {
    Levels before;
    Levels after;
    const VolumeCallback first(report_level, &before);
    const VolumeCallback second(report_level, &after);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 5), 0);
    ASSERT_TRUE(after.wait_for(1));
    EXPECT_TRUE(before.entries().empty());
}

TEST_F(SoundContract, NothingIsReportedToACallbackThatWasUnset) {
    Levels unset;
    { const VolumeCallback callback(report_level, &unset); }
    Levels levels;
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 5), 0);
    EXPECT_EQ(sound_manager_unset_volume_changed_cb(), 0);
    const VolumeCallback callback(report_level, &levels);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 6}));
    EXPECT_TRUE(unset.entries().empty());
}

TEST_F(SoundContract, SafetyVolumeTakesLevelsOfTheMediaTypeAndLimitsNothing) {
    EXPECT_EQ(sound_manager_set_safety_volume(0), 0);
    EXPECT_EQ(sound_manager_set_safety_volume(9), 0);
    EXPECT_EQ(sound_manager_set_safety_volume(16), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 15), 0);
    EXPECT_EQ(media_volume(), 15);
    EXPECT_EQ(sound_manager_unset_safety_volume(), 0);
    EXPECT_EQ(sound_manager_unset_safety_volume(), 0);
}

// ---- devices

class SoundContractDevice : public SoundContract,
                            public testing::WithParamInterface<sound_device_type_e> {};

TEST_P(SoundContractDevice, IsListedAndReportedAsItComesAndGoes) {
    Connections connections;
    const DeviceCallback callback(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    EXPECT_FALSE(is_listed(GetParam()));
    for (int round = 0; round < 2; ++round) {
        connections.clear();
        sound_world::plug(GetParam(), "Thing");
        ASSERT_TRUE(connections.wait_for_entry({GetParam(), true}));
        EXPECT_TRUE(is_listed(GetParam()));
        sound_world::pull(GetParam());
        ASSERT_TRUE(connections.wait_for_entry({GetParam(), false}));
        EXPECT_FALSE(is_listed(GetParam()));
    }
}

INSTANTIATE_TEST_SUITE_P(Every, SoundContractDevice,
                         testing::Values(SOUND_DEVICE_AUDIO_JACK, SOUND_DEVICE_BLUETOOTH,
                                         SOUND_DEVICE_HDMI));

TEST_F(SoundContract, ListTakenInsideADeviceCallbackShowsTheChange) {
    support::Reports<std::pair<bool, bool>> seen;  // connected, listed
    const DeviceCallback callback(
        SOUND_DEVICE_TYPE_EXTERNAL_MASK,
        [](sound_device_h device, bool connected, void *data) {
            sound_device_type_e type{};
            EXPECT_EQ(sound_manager_get_device_type(device, &type), 0);
            if (type == SOUND_DEVICE_AUDIO_JACK) {
                static_cast<support::Reports<std::pair<bool, bool>> *>(data)->add(
                    {connected, is_listed(type)});
            }
        },
        &seen);
    sound_world::plug(SOUND_DEVICE_AUDIO_JACK, "Headphones");
    ASSERT_TRUE(seen.wait_for(1));
    sound_world::pull(SOUND_DEVICE_AUDIO_JACK);
    ASSERT_TRUE(seen.wait_for(2));
    EXPECT_EQ(seen.entries(), (std::vector<std::pair<bool, bool>>{{true, true}, {false, false}}));
}

TEST_F(SoundContract, ListStaysAsItWasTaken) {
    Connections connections;
    const DeviceCallback callback(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    sound_world::plug(SOUND_DEVICE_HDMI, "Screen");
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_HDMI, true}));
    sound_device_list_h list = nullptr;
    ASSERT_EQ(sound_manager_get_device_list(SOUND_DEVICE_TYPE_EXTERNAL_MASK, &list), 0);
    sound_world::pull(SOUND_DEVICE_HDMI);
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_HDMI, false}));
    bool screen = false;
    sound_device_h device = nullptr;
    while (sound_manager_get_next_device(list, &device) == 0) {
        sound_device_type_e type{};
        EXPECT_EQ(sound_manager_get_device_type(device, &type), 0);
        screen = screen || type == SOUND_DEVICE_HDMI;
    }
    EXPECT_TRUE(screen);
    EXPECT_EQ(sound_manager_get_next_device(list, &device), SOUND_MANAGER_ERROR_NO_DATA);
    EXPECT_EQ(sound_manager_free_device_list(list), 0);
    EXPECT_EQ(sound_manager_free_device_list(list), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(SoundContract, DeviceArgumentsAreChecked) {
    sound_device_list_h list = nullptr;
    EXPECT_EQ(sound_manager_get_device_list(0, &list), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_get_device_list(2, nullptr), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(list, nullptr);
    int id = 0;
    EXPECT_EQ(sound_manager_add_device_connection_changed_cb(2, nullptr, nullptr, &id),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_remove_device_connection_changed_cb(4711),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    sound_device_type_e type{};
    EXPECT_EQ(sound_manager_get_device_type(nullptr, &type), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_free_device_list(nullptr), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(SoundContract, BluetoothSetIsNamedWhileItIsConnected) {
    bool connected = true;
    char *name = nullptr;
    ASSERT_EQ(sound_manager_get_a2dp_status(&connected, &name), 0);
    EXPECT_FALSE(connected);
    EXPECT_EQ(name, nullptr);
    Connections connections;
    const DeviceCallback callback(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    sound_world::plug(SOUND_DEVICE_BLUETOOTH, "Kitchen radio");
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_BLUETOOTH, true}));
    ASSERT_EQ(sound_manager_get_a2dp_status(&connected, &name), 0);
    EXPECT_TRUE(connected);
    EXPECT_STREQ(name, "Kitchen radio");
    free(name);
    sound_world::pull(SOUND_DEVICE_BLUETOOTH);
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_BLUETOOTH, false}));
    ASSERT_EQ(sound_manager_get_a2dp_status(&connected, &name), 0);
    EXPECT_FALSE(connected);
    EXPECT_EQ(sound_manager_get_a2dp_status(nullptr, &name), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

}  // namespace
