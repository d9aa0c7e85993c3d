// The sound manager over a real server: what pactl changes and reads, devices that come and go, a
// server that dies and comes back.

#include <gtest/gtest.h>
#include <sound_manager.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "app/command_line.h"
#include "sound/backend.h"
#include "sound/output.h"
#include "sound_server.h"
#include "sound_user.h"

namespace {

using namespace sound_user;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

class ServerSound : public testing::TestWithParam<SoundServer::Kind> {
protected:
    void SetUp() override { host::sound::use_backend(host::sound::create_pulse_backend); }
    void TearDown() override {
        host::sound::use_backend(host::sound::create_builtin_backend);
        host::set_options({});
    }

    bool comes_to(const std::function<bool()> &condition) {
        const auto end = steady_clock::now() + support::report_deadline;
        while (!condition()) {
            if (steady_clock::now() > end) {
                return false;
            }
            std::this_thread::sleep_for(milliseconds(2));
        }
        return true;
    }

    SoundServer server{GetParam()};
    Levels levels;
    const VolumeCallback level_callback{report_level, &levels};
    Connections connections;
    const DeviceCallback device_callback{SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections};
};

INSTANTIATE_TEST_SUITE_P(Every, ServerSound,
                         testing::Values(SoundServer::Kind::pulseaudio,
                                         SoundServer::Kind::pipewire),
                         [](const auto &info) {
                             return info.param == SoundServer::Kind::pulseaudio ? "PulseAudio"
                                                                                : "PipeWire";
                         });

TEST_P(ServerSound, SetChangesWhatTheServerTells) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    EXPECT_TRUE(comes_to([&] { return server.volume().find(" 40% ") != std::string::npos; }))
        << server.volume();
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 15), 0);
    EXPECT_TRUE(comes_to([&] { return server.volume().find(" 100% ") != std::string::npos; }));
}

TEST_P(ServerSound, StreamIsLeftAsItIs) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    EXPECT_DOUBLE_EQ(host::stream_gain(), 1.0);
}

TEST_P(ServerSound, MuteIsSilenceAndASetEndsIt) {
    ASSERT_EQ(media_volume(), 15);
    server.set_mute(true);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 0}));
    EXPECT_EQ(media_volume(), 0);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), 0);
    EXPECT_EQ(media_volume(), 4);
    EXPECT_TRUE(comes_to([&] { return !server.is_muted(); }));
    EXPECT_EQ(levels.entries(), (std::vector<Level>{{SOUND_TYPE_MEDIA, 0}, {SOUND_TYPE_MEDIA, 4}}));
}

TEST_P(ServerSound, MoreThanFullIsTheTopLevelAndIsTakenBackToFull) {
    server.set_volume(150);
    EXPECT_TRUE(comes_to([&] { return server.volume().find(" 150% ") != std::string::npos; }));
    server.set_volume(20);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 3}));
    server.set_volume(150);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 15}));
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 15), 0);
    EXPECT_TRUE(comes_to([&] { return server.volume().find(" 100% ") != std::string::npos; }));
}

TEST_P(ServerSound, QuickSetsAreShownAndReportedWithoutGoingBack) {
    ASSERT_EQ(media_volume(), 15);
    std::vector<Level> expected;
    for (int round = 0; round < 10; ++round) {
        for (unsigned level = 1; level <= 14; ++level) {
            ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, static_cast<int>(level)), 0);
            ASSERT_EQ(media_volume(), static_cast<int>(level));
            expected.emplace_back(SOUND_TYPE_MEDIA, level);
        }
    }
    // The server's own word has come when it tells of another's change.
    server.set_volume(100);
    expected.emplace_back(SOUND_TYPE_MEDIA, 15U);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 15}));
    EXPECT_EQ(levels.entries(), expected);
}

TEST_P(ServerSound, AnothersChangeRightAfterASetIsReported) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 5), 0);
    server.set_volume(20);
    EXPECT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 3}));
    EXPECT_EQ(media_volume(), 3);
}

TEST_P(ServerSound, VolumeIsThatOfTheDefaultOutput) {
    server.add_sink("other", "device.description=Other");
    server.make_default("speaker");
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 3), 0);
    server.make_default("other");
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 15}));
    EXPECT_EQ(media_volume(), 15);
    server.make_default("speaker");
    EXPECT_TRUE(comes_to([] { return media_volume() == 3; }));
}

TEST_P(ServerSound, DefaultOutputIsOneExternalDevice) {
    EXPECT_EQ(listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK), std::vector{SOUND_DEVICE_USB_AUDIO});
    server.add_sink("phones", "device.form_factor=headphone");
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_AUDIO_JACK, true}));
    server.make_default("phones");
    EXPECT_TRUE(comes_to([] {
        return listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK) ==
               std::vector{SOUND_DEVICE_AUDIO_JACK};
    }));
    server.remove_sink("phones");
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_AUDIO_JACK, false}));
    EXPECT_TRUE(comes_to([] {
        return listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK) == std::vector{SOUND_DEVICE_USB_AUDIO};
    }));
}

TEST_P(ServerSound, WatchLeavesItsSpeakerOut) {
    host::Options options;
    options.watch_profile = true;
    host::set_options(options);
    host::sound::use_backend(host::sound::create_pulse_backend);
    EXPECT_TRUE(listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK).empty());
    sound_device_list_h list = nullptr;
    EXPECT_EQ(sound_manager_get_device_list(SOUND_DEVICE_TYPE_EXTERNAL_MASK, &list),
              SOUND_MANAGER_ERROR_NO_DATA);
    EXPECT_EQ(media_volume(), 15);
    server.add_sink("phones", "device.form_factor=headphone");
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_AUDIO_JACK, true}));
    EXPECT_EQ(listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK), std::vector{SOUND_DEVICE_AUDIO_JACK});
}

TEST_P(ServerSound, ServerThatDiesIsNoticedAndItsReturnToo) {
    server.add_sink("phones", "device.form_factor=headphone");
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_AUDIO_JACK, true}));
    for (int round = 0; round < 2; ++round) {
        connections.clear();
        levels.clear();
        server.stop();
        ASSERT_TRUE(connections.wait_for(1)) << "its devices go with it";
        int level = 0;
        EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_MEDIA, &level), SOUND_MANAGER_ERROR_INTERNAL);
        EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), SOUND_MANAGER_ERROR_INTERNAL);
        sound_device_list_h list = nullptr;
        EXPECT_EQ(sound_manager_get_device_list(SOUND_DEVICE_TYPE_EXTERNAL_MASK, &list),
                  SOUND_MANAGER_ERROR_INTERNAL);

        server.start();
        ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_USB_AUDIO, true}));
        EXPECT_EQ(media_volume(), 15);
        EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), 0);
        EXPECT_EQ(media_volume(), 4);
        EXPECT_TRUE(comes_to([&] { return server.volume().find(" 27% ") != std::string::npos; }));
    }
}

TEST_P(ServerSound, VolumeThatIsAnotherAfterTheReturnIsReported) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), 0);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 4}));
    server.stop();
    server.start();
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 15}));
}

TEST_P(ServerSound, ServerThatHangsHoldsNobodyUp) {
    ASSERT_EQ(media_volume(), 15);
    server.freeze();
    const auto begin = steady_clock::now();
    EXPECT_EQ(media_volume(), 15);
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), 0);
    EXPECT_EQ(media_volume(), 4);
    EXPECT_LT(steady_clock::now() - begin, milliseconds(300));
    server.thaw();
    EXPECT_TRUE(comes_to([&] { return server.volume().find(" 27% ") != std::string::npos; }));
}

TEST_P(ServerSound, ServerThatNeverAnswersCountsAsAway) {
    server.freeze();
    const auto begin = steady_clock::now();
    host::sound::use_backend(host::sound::create_pulse_backend);
    int level = 0;
    EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_MEDIA, &level), SOUND_MANAGER_ERROR_INTERNAL);
    EXPECT_LT(steady_clock::now() - begin, seconds(3));
    // Only the first question waits.
    const auto second = steady_clock::now();
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 3), SOUND_MANAGER_ERROR_INTERNAL);
    EXPECT_LT(steady_clock::now() - second, milliseconds(300));
    server.thaw();
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_USB_AUDIO, true}));
    EXPECT_EQ(media_volume(), 15);
}

TEST_P(ServerSound, CallbackSetBeforeTheFirstAnswerIsToldOfAllThatComesWithIt) {
    server.freeze();
    host::sound::use_backend(host::sound::create_pulse_backend);
    Connections early_connections;
    Levels early_levels;
    const DeviceCallback devices(SOUND_DEVICE_TYPE_EXTERNAL_MASK, early_connections);
    const VolumeCallback volume(report_level, &early_levels);
    server.thaw();
    EXPECT_TRUE(early_connections.wait_for_entry({SOUND_DEVICE_USB_AUDIO, true}));
    EXPECT_TRUE(early_levels.wait_for_entry({SOUND_TYPE_MEDIA, 15}));
}

TEST_P(ServerSound, OutputThatIsThereAgainIsTold) {
    ASSERT_EQ(media_volume(), 15);
    support::Reports<int> returns;
    host::on_sound_output_returned([&returns] { returns.add(1); });
    server.set_volume(20);
    ASSERT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 3}));
    EXPECT_TRUE(returns.entries().empty()) << "it was there all the time";
    server.stop();
    server.start();
    EXPECT_TRUE(returns.wait_for(1));
    host::on_sound_output_returned({});
}

class LateServerSound : public testing::Test {
protected:
    void SetUp() override { host::sound::choose_backend(); }
    void TearDown() override {
        host::on_sound_output_returned({});
        host::on_stream_gain_changed({});
        host::sound::use_backend(host::sound::create_builtin_backend);
    }
    static std::string backend() { return host::sound::backend()->name(); }

    SoundServer server{SoundServer::Kind::pulseaudio, SoundServer::Begin::later};
};

TEST_F(LateServerSound, IsTakenWithAllThatItChanges) {
    ASSERT_EQ(backend(), "builtin");
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    Levels levels;
    Connections connections;
    support::Reports<double> gains;
    support::Reports<int> returns;
    const VolumeCallback volume(report_level, &levels);
    const DeviceCallback devices(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    host::on_stream_gain_changed([&gains](double gain) { gains.add(gain); });
    host::on_sound_output_returned([&returns] { returns.add(1); });

    server.start();
    ASSERT_TRUE(returns.wait_for(1));
    EXPECT_EQ(backend(), "pulse");
    EXPECT_EQ(gains.entries(), std::vector{1.0});
    EXPECT_TRUE(levels.wait_for_entry({SOUND_TYPE_MEDIA, 15}));
    EXPECT_EQ(media_volume(), 15);
    // The mixer's own output goes, the server's comes.
    EXPECT_TRUE(connections.wait_for(2));
    EXPECT_EQ(connections.entries(), (std::vector<Connection>{{SOUND_DEVICE_USB_AUDIO, false},
                                                              {SOUND_DEVICE_USB_AUDIO, true}}));
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), 0);
    const auto end = steady_clock::now() + support::report_deadline;
    while (server.volume().find(" 27% ") == std::string::npos && steady_clock::now() < end) {
        std::this_thread::sleep_for(milliseconds(2));
    }
    EXPECT_NE(server.volume().find(" 27% "), std::string::npos) << server.volume();
}

TEST_F(LateServerSound, StaysTheOneInUseWhenItGoes) {
    server.start();
    const auto end = steady_clock::now() + support::report_deadline;
    while (backend() != "pulse" && steady_clock::now() < end) {
        std::this_thread::sleep_for(milliseconds(2));
    }
    Connections connections;
    const DeviceCallback devices(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    server.stop();
    ASSERT_TRUE(connections.wait_for_entry({SOUND_DEVICE_USB_AUDIO, false}));
    EXPECT_EQ(backend(), "pulse");
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), SOUND_MANAGER_ERROR_INTERNAL);
}

}  // namespace
