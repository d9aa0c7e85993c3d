#include <gtest/gtest.h>
#include <sound_manager.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "app/command_line.h"
#include "common/unique_fd.h"
#include "sound/backend.h"
#include "sound/focus.h"
#include "sound/output.h"
#include "sound_user.h"

namespace {

using namespace std::chrono_literals;
using namespace sound_user;
using host::sound::Device;
using host::sound::FocusChange;
using host::sound::FocusStatement;
using host::sound::StreamId;
using support::Gate;
using support::Reports;

/// A backend whose devices a test moves as it likes, and which a server may leave.
class StagedBackend final : public host::sound::Backend {
public:
    explicit StagedBackend(host::sound::Events &events) : events_(events) { current = this; }
    ~StagedBackend() override { current = nullptr; }

    [[nodiscard]] const char *name() const override { return "staged"; }
    [[nodiscard]] int max_volume(sound_type_e) const override { return 15; }
    [[nodiscard]] std::optional<int> volume(sound_type_e) const override { return std::nullopt; }
    [[nodiscard]] bool set_volume(sound_type_e, int) override { return false; }
    [[nodiscard]] double stream_gain() const override { return 1.0; }
    [[nodiscard]] std::optional<std::vector<Device>> devices() const override {
        const std::lock_guard lock(mutex_);
        return devices_;
    }

    void set_devices(std::optional<std::vector<Device>> devices) {
        const std::lock_guard lock(mutex_);
        devices_ = std::move(devices);
    }
    void report(const Device &changed, bool connected) {
        events_.device_changed(changed, connected);
    }

    static inline StagedBackend *current = nullptr;

private:
    host::sound::Events &events_;
    mutable std::mutex mutex_;
    std::optional<std::vector<Device>> devices_;
};

std::unique_ptr<host::sound::Backend> create_staged_backend(host::sound::Events &events) {
    return std::make_unique<StagedBackend>(events);
}

/// A focus that a test takes away, and that others forbid.
class StagedFocus final : public host::sound::Focus {
public:
    explicit StagedFocus(host::sound::FocusEvents &events) : events_(events) { current = this; }
    ~StagedFocus() override { current = nullptr; }

    void add_stream(StreamId stream) override { added.add(stream); }
    void remove_stream(StreamId stream) override { removed.add(stream); }
    [[nodiscard]] int acquire(StreamId, int, const FocusStatement &) override {
        return SOUND_MANAGER_ERROR_POLICY;
    }
    [[nodiscard]] int release(StreamId, int, const FocusStatement &) override {
        return SOUND_MANAGER_ERROR_NONE;
    }
    [[nodiscard]] int held(StreamId) override { return 0; }
    void set_reacquisition(StreamId stream, bool enable) override {
        reacquisitions.add({stream, enable});
    }

    void lose(int behavior, const std::string &extra) {
        events_.focus_changed(added.entries().back(),
                              {SOUND_STREAM_FOCUS_FOR_PLAYBACK, SOUND_STREAM_FOCUS_STATE_RELEASED,
                               SOUND_STREAM_FOCUS_CHANGED_BY_CALL, behavior, extra});
    }

    static inline StagedFocus *current = nullptr;
    Reports<StreamId> added;
    Reports<StreamId> removed;
    Reports<std::pair<StreamId, bool>> reacquisitions;

private:
    host::sound::FocusEvents &events_;
};

std::unique_ptr<host::sound::Focus> create_staged_focus(host::sound::FocusEvents &events) {
    return std::make_unique<StagedFocus>(events);
}

class BuiltinSound : public testing::Test {
protected:
    void SetUp() override { host::sound::use_backend(host::sound::create_builtin_backend); }
    void TearDown() override { host::on_stream_gain_changed({}); }
};

class StagedSound : public testing::Test {
protected:
    void SetUp() override {
        host::sound::use_backend(create_staged_backend);
        host::sound::use_focus(create_staged_focus);
    }
    void TearDown() override {
        host::sound::use_backend(host::sound::create_builtin_backend);
        host::sound::use_focus(host::sound::create_builtin_focus);
    }
    static StagedBackend &backend() { return *StagedBackend::current; }
    static StagedFocus &focus() { return *StagedFocus::current; }
};

// Volume.

TEST_F(BuiltinSound, BeginsAtFullSoThatTheStreamIsLeftAsItIs) {
    EXPECT_EQ(media_volume(), 15);
    EXPECT_DOUBLE_EQ(host::stream_gain(), 1.0);
}

TEST_F(BuiltinSound, MediaLevelIsTheGainOfTheStream) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 0), 0);
    EXPECT_DOUBLE_EQ(host::stream_gain(), 0.0);
    double last = 0.0;
    for (int level = 1; level <= 15; ++level) {
        ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level), 0);
        EXPECT_GT(host::stream_gain(), last);
        last = host::stream_gain();
    }
    EXPECT_DOUBLE_EQ(last, 1.0);
}

TEST_F(BuiltinSound, GainListenerIsToldOfTheMediaLevelOnly) {
    std::vector<double> gains;
    host::on_stream_gain_changed([&gains](double gain) { gains.push_back(gain); });
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_RINGTONE, 2), 0);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 0), 0);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 0), 0);
    EXPECT_EQ(gains, std::vector<double>{0.0});
    host::on_stream_gain_changed({});
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 1), 0);
    EXPECT_EQ(gains.size(), 1u);
}

TEST_F(BuiltinSound, ChangeBeforeTheCallbackWasSetIsNotReportedToIt) {
    Levels before;
    Levels after;
    const VolumeCallback first(report_level, &before);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), 0);
    const VolumeCallback second(report_level, &after);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 5), 0);
    ASSERT_TRUE(after.wait_for(1));
    EXPECT_EQ(after.entries().front().second, 5u);
}

TEST_F(BuiltinSound, UnsetWaitsForTheRunningCallback) {
    struct Shared {
        Gate entered;
        Gate leave;
        std::atomic<bool> left = false;
    } shared;
    const auto callback = [](sound_type_e, unsigned, void *data) {
        auto *state = static_cast<Shared *>(data);
        state->entered.open();
        EXPECT_TRUE(state->leave.pass());
        state->left = true;
    };
    const VolumeCallback set(callback, &shared);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    ASSERT_TRUE(shared.entered.pass());
    auto left_at_return = std::async(std::launch::async, [&shared] {
        sound_manager_unset_volume_changed_cb();
        return shared.left.load();
    });
    shared.leave.open();
    EXPECT_TRUE(left_at_return.get());
}

TEST_F(BuiltinSound, LevelsCanBeSetWhileACallbackRuns) {
    struct Shared {
        Gate entered;
        Gate leave;
    } shared;
    const auto callback = [](sound_type_e, unsigned level, void *data) {
        auto *state = static_cast<Shared *>(data);
        if (level == 6) {
            state->entered.open();
            EXPECT_TRUE(state->leave.pass());
        }
    };
    const VolumeCallback set(callback, &shared);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    ASSERT_TRUE(shared.entered.pass());
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 7), 0);
    EXPECT_EQ(media_volume(), 7);
    shared.leave.open();
}

TEST_F(BuiltinSound, CallbackCanUnsetItself) {
    Reports<int> calls;
    const auto callback = [](sound_type_e, unsigned, void *data) {
        sound_manager_unset_volume_changed_cb();
        static_cast<Reports<int> *>(data)->add(1);
    };
    const VolumeCallback set(callback, &calls);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    ASSERT_TRUE(calls.wait_for(1));
    Levels after;
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 7), 0);
    const VolumeCallback second(report_level, &after);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 8), 0);
    // Whatever the level 7 may have caused has run when the level 8 is reported.
    ASSERT_TRUE(after.wait_for(1));
    EXPECT_EQ(calls.entries().size(), 1u);
}

// Streams and focus.

struct FocusSeen {
    sound_stream_focus_change_reason_e reason;
    int behavior;
    std::string extra;
};

TEST_F(StagedSound, ChangeOfTheFocusIsReportedWithAllThatIsStated) {
    Reports<FocusSeen> reports;
    const Stream stream(
        [](sound_stream_info_h info, sound_stream_focus_mask_e, sound_stream_focus_state_e,
           sound_stream_focus_change_reason_e reason, int behavior, const char *extra, void *data) {
            // As a program does that shall not resume.
            EXPECT_EQ(sound_manager_set_focus_reacquisition(info, false), 0);
            static_cast<Reports<FocusSeen> *>(data)->add(
                {reason, behavior, extra != nullptr ? extra : "(none)"});
        },
        &reports);
    EXPECT_EQ(stream.acquire(), SOUND_MANAGER_ERROR_POLICY);
    focus().lose(SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING, "ringing");
    focus().lose(SOUND_BEHAVIOR_NONE, "");
    ASSERT_TRUE(reports.wait_for(2));
    const auto first = reports.entries().at(0);
    EXPECT_EQ(first.reason, SOUND_STREAM_FOCUS_CHANGED_BY_CALL);
    EXPECT_EQ(first.behavior, SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING);
    EXPECT_EQ(first.extra, "ringing");
    EXPECT_EQ(reports.entries().at(1).extra, "(none)");
    EXPECT_EQ(focus().reacquisitions.entries().at(0),
              std::pair(focus().added.entries().at(0), false));
}

TEST_F(StagedSound, SleepInAFocusCallbackDoesNotHoldUpDevices) {
    Gate gate;
    const Stream stream(
        [](sound_stream_info_h, sound_stream_focus_mask_e, sound_stream_focus_state_e,
           sound_stream_focus_change_reason_e, int, const char *,
           void *data) { EXPECT_TRUE(static_cast<Gate *>(data)->pass()); },
        &gate);
    Connections connections;
    const DeviceCallback callback(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    focus().lose(0, "");
    backend().report({SOUND_DEVICE_HDMI, "Screen"}, true);
    EXPECT_TRUE(connections.wait_for(1));
    gate.open();
}

TEST_F(StagedSound, StreamThatGoesIsTakenOutOfTheFocus) {
    Stream stream;
    const StreamId id = focus().added.entries().at(0);
    EXPECT_EQ(stream.destroy(), 0);
    EXPECT_EQ(focus().removed.entries(), std::vector<StreamId>{id});
}

// Devices.

TEST_F(BuiltinSound, OneExternalOutputOfATypeThatIsNoEarjackNoBluetoothSetAndNoScreen) {
    const auto types = listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK);
    ASSERT_EQ(types.size(), 1u);
    EXPECT_GT(types.front(), SOUND_DEVICE_HDMI);
}

TEST_F(BuiltinSound, NoDeviceOfTheMaskIsNoData) {
    sound_device_list_h list = nullptr;
    EXPECT_EQ(sound_manager_get_device_list(SOUND_DEVICE_TYPE_INTERNAL_MASK, &list),
              SOUND_MANAGER_ERROR_NO_DATA);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(sound_manager_get_device_list(0, &list), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(BuiltinSound, DefaultOutputIsTheBuiltInSpeakerOfAWatch) {
    host::set_options([] {
        host::Options options;
        options.watch_profile = true;
        return options;
    }());
    host::sound::use_backend(host::sound::create_builtin_backend);
    host::set_options({});
    EXPECT_TRUE(listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK).empty());
    EXPECT_EQ(listed_types(SOUND_DEVICE_TYPE_INTERNAL_MASK),
              std::vector{SOUND_DEVICE_BUILTIN_SPEAKER});
}

TEST_F(StagedSound, DevicesOutsideTheMaskAreNotReported) {
    Connections connections;
    const DeviceCallback callback(SOUND_DEVICE_TYPE_EXTERNAL_MASK, connections);
    backend().report({SOUND_DEVICE_BUILTIN_SPEAKER, "Speaker"}, true);
    backend().report({SOUND_DEVICE_BLUETOOTH, "Headset"}, true);
    ASSERT_TRUE(connections.wait_for(1));
    EXPECT_EQ(connections.entries(), (std::vector<Connection>{{SOUND_DEVICE_BLUETOOTH, true}}));
}

TEST_F(StagedSound, CallsFailWhileTheServerIsAway) {
    backend().set_devices(std::nullopt);
    int level = 4;
    EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_MEDIA, &level), SOUND_MANAGER_ERROR_INTERNAL);
    EXPECT_EQ(level, 4);
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 4), SOUND_MANAGER_ERROR_INTERNAL);
    sound_device_list_h list = nullptr;
    EXPECT_EQ(sound_manager_get_device_list(SOUND_DEVICE_TYPE_EXTERNAL_MASK, &list),
              SOUND_MANAGER_ERROR_INTERNAL);
    EXPECT_EQ(list, nullptr);
    bool connected = true;
    char *name = nullptr;
    EXPECT_EQ(sound_manager_get_a2dp_status(&connected, &name), SOUND_MANAGER_ERROR_INTERNAL);
    EXPECT_TRUE(connected);
    EXPECT_EQ(sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &level), 0);
    EXPECT_EQ(level, 15);
}

// Where the sound goes.

class SoundSink : public testing::Test {
protected:
    void SetUp() override {
        std::string name = std::filesystem::temp_directory_path() / "tessel-sink-XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        directory_ = name;
        setenv("PULSE_RUNTIME_PATH", directory_.c_str(), 1);
        unsetenv("PULSE_SERVER");
    }
    void TearDown() override {
        unsetenv("PULSE_SERVER");
        unsetenv("PULSE_RUNTIME_PATH");
        std::filesystem::remove_all(directory_);
    }

    [[nodiscard]] host::UniqueFd bind_socket() const {
        host::UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(fd.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        return fd;
    }
    [[nodiscard]] std::string path() const { return directory_ / "native"; }

private:
    std::filesystem::path directory_;
};

TEST_F(SoundSink, IsThatOfAServerThatAnswers) {
    const auto server = bind_socket();
    ASSERT_EQ(listen(server.get(), 4), 0);
    EXPECT_STREQ(host::sound_sink_element(), "pulsesink");
}

TEST_F(SoundSink, FindsTheServerThatTheEnvironmentNames) {
    const auto server = bind_socket();
    ASSERT_EQ(listen(server.get(), 4), 0);
    unsetenv("PULSE_RUNTIME_PATH");
    setenv("PULSE_SERVER", ("unix:/nowhere {machine}unix:" + path()).c_str(), 1);
    EXPECT_STREQ(host::sound_sink_element(), "pulsesink");
}

TEST_F(SoundSink, IsNotThatOfASocketLeftBehind) {
    { const auto server = bind_socket(); }
    EXPECT_STRNE(host::sound_sink_element(), "pulsesink");
}

TEST_F(SoundSink, DoesNotWaitForAServerThatHangs) {
    const auto server = bind_socket();
    ASSERT_EQ(listen(server.get(), 0), 0);
    // Fills the backlog of a server that accepts nobody.
    std::vector<host::UniqueFd> waiting;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path().copy(address.sun_path, sizeof address.sun_path - 1);
    int result = 0;
    while (result == 0) {
        waiting.emplace_back(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        result =
            connect(waiting.back().get(), reinterpret_cast<sockaddr *>(&address), sizeof address);
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_STRNE(host::sound_sink_element(), "pulsesink");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
}

TEST_F(SoundSink, RefusesNonsenseInTheEnvironment) {
    for (const char *server :
         {"{", "unix:", "tcp:127.0.0.1:1", "tcp:127.0.0.1:x", " ", "{x}", ":1"}) {
        setenv("PULSE_SERVER", server, 1);
        EXPECT_STRNE(host::sound_sink_element(), "pulsesink") << server;
    }
}

}  // namespace
