#include <gtest/gtest.h>
#include <sound_manager.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/unique_fd.h"
#include "sound/backend.h"
#include "sound/output.h"

namespace {

using namespace std::chrono_literals;
using host::sound::Device;
using host::sound::FocusChange;
using host::sound::StreamId;

constexpr auto kDeadline = 10s;

/// What callbacks report, in order, for a test to wait on.
template <typename Entry>
class Reports {
public:
    void add(Entry entry) {
        const std::lock_guard lock(mutex_);
        entries_.push_back(std::move(entry));
        changed_.notify_all();
    }
    [[nodiscard]] bool wait_for(std::size_t count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kDeadline, [&] { return entries_.size() >= count; });
    }
    [[nodiscard]] std::vector<Entry> entries() {
        const std::lock_guard lock(mutex_);
        return entries_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Entry> entries_;
};

/// A door that a callback waits at.
class Gate {
public:
    void open() { opened_.set_value(); }
    [[nodiscard]] bool pass() { return future_.wait_for(kDeadline) == std::future_status::ready; }

private:
    std::promise<void> opened_;
    std::shared_future<void> future_ = opened_.get_future().share();
};

/// A backend whose devices and focus a test moves as it likes.
class StagedBackend final : public host::sound::Backend {
public:
    explicit StagedBackend(host::sound::Events &events) : events_(events) { current = this; }
    ~StagedBackend() override { current = nullptr; }

    [[nodiscard]] const char *name() const override { return "staged"; }
    [[nodiscard]] int max_volume(sound_type_e) const override { return 15; }
    [[nodiscard]] int volume(sound_type_e) const override { return 7; }
    [[nodiscard]] int set_volume(sound_type_e, int) override {
        return SOUND_MANAGER_ERROR_INTERNAL;
    }
    [[nodiscard]] double stream_gain() const override { return 1.0; }
    [[nodiscard]] std::vector<Device> devices() const override {
        const std::lock_guard lock(mutex_);
        return devices_;
    }
    [[nodiscard]] std::unique_ptr<std::string> bluetooth_name() const override {
        return std::make_unique<std::string>("Headset");
    }
    [[nodiscard]] int acquire_focus(StreamId stream, sound_stream_focus_mask_e, int,
                                    const char *) override {
        holder = stream;
        return SOUND_MANAGER_ERROR_POLICY;
    }
    [[nodiscard]] int release_focus(StreamId, sound_stream_focus_mask_e, int,
                                    const char *) override {
        return SOUND_MANAGER_ERROR_NONE;
    }
    void set_reacquisition(StreamId stream, bool enable) override {
        reacquisitions.add({stream, enable});
    }
    void forget_stream(StreamId stream) override { forgotten.add(stream); }

    void set_devices(std::vector<Device> devices, const Device &changed, bool connected) {
        {
            const std::lock_guard lock(mutex_);
            devices_ = std::move(devices);
        }
        events_.device_changed(changed, connected);
    }
    void lose_focus(int behavior, const std::string &extra) {
        events_.focus_changed(holder,
                              {SOUND_STREAM_FOCUS_FOR_PLAYBACK, SOUND_STREAM_FOCUS_STATE_RELEASED,
                               SOUND_STREAM_FOCUS_CHANGED_BY_CALL, behavior, extra});
    }

    static inline StagedBackend *current = nullptr;
    StreamId holder = 0;
    Reports<std::pair<StreamId, bool>> reacquisitions;
    Reports<StreamId> forgotten;

private:
    host::sound::Events &events_;
    mutable std::mutex mutex_;
    std::vector<Device> devices_;
};

std::unique_ptr<host::sound::Backend> create_staged_backend(host::sound::Events &events) {
    return std::make_unique<StagedBackend>(events);
}

class BuiltinSound : public testing::Test {
protected:
    void SetUp() override { host::sound::use_backend(host::sound::create_builtin_backend); }
    void TearDown() override { host::on_stream_gain_changed({}); }

    static int media_volume() {
        int volume = -1;
        EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume), 0);
        return volume;
    }
};

class StagedSound : public testing::Test {
protected:
    void SetUp() override { host::sound::use_backend(create_staged_backend); }
    void TearDown() override { host::sound::use_backend(host::sound::create_builtin_backend); }
    static StagedBackend &backend() { return *StagedBackend::current; }
};

struct Stream {
    explicit Stream(sound_stream_focus_state_changed_cb callback = nullptr, void *data = nullptr) {
        EXPECT_EQ(sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA, callback, data,
                                                          &handle),
                  0);
    }
    ~Stream() { destroy(); }
    int destroy() {
        return sound_manager_destroy_stream_information(std::exchange(handle, nullptr));
    }
    [[nodiscard]] int acquire() const {
        return sound_manager_acquire_focus(handle, SOUND_STREAM_FOCUS_FOR_PLAYBACK,
                                           SOUND_BEHAVIOR_NO_RESUME, nullptr);
    }
    [[nodiscard]] int release() const {
        return sound_manager_release_focus(handle, SOUND_STREAM_FOCUS_FOR_PLAYBACK,
                                           SOUND_BEHAVIOR_NO_RESUME, nullptr);
    }
    sound_stream_info_h handle = nullptr;
};

/// Set for as long as it lives, which is shorter than what it reports to.
struct VolumeCallback {
    VolumeCallback(sound_manager_volume_changed_cb callback, void *data) {
        EXPECT_EQ(sound_manager_set_volume_changed_cb(callback, data), 0);
    }
    ~VolumeCallback() { sound_manager_unset_volume_changed_cb(); }
    VolumeCallback(const VolumeCallback &) = delete;
    VolumeCallback &operator=(const VolumeCallback &) = delete;
};

using Levels = Reports<std::pair<sound_type_e, unsigned>>;

void report_level(sound_type_e type, unsigned level, void *data) {
    static_cast<Levels *>(data)->add({type, level});
}

std::vector<sound_device_type_e> listed_types(int mask) {
    std::vector<sound_device_type_e> types;
    sound_device_list_h list = nullptr;
    if (sound_manager_get_device_list(mask, &list) != 0) {
        return types;
    }
    sound_device_h device = nullptr;
    while (sound_manager_get_next_device(list, &device) == 0) {
        sound_device_type_e type{};
        EXPECT_EQ(sound_manager_get_device_type(device, &type), 0);
        types.push_back(type);
    }
    EXPECT_EQ(sound_manager_free_device_list(list), 0);
    return types;
}

// Volume.

TEST_F(BuiltinSound, LevelsRunFromSilenceToFifteen) {
    int max = 0;
    EXPECT_EQ(sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &max), 0);
    EXPECT_EQ(max, 15);
    for (int level = 0; level <= 15; ++level) {
        EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level), 0);
        EXPECT_EQ(media_volume(), level);
    }
}

TEST_F(BuiltinSound, BeginsAtFullSoThatTheStreamIsLeftAsItIs) {
    EXPECT_EQ(media_volume(), 15);
    EXPECT_DOUBLE_EQ(host::stream_gain(), 1.0);
}

TEST_F(BuiltinSound, RefusesLevelsOutOfRangeAndKeepsTheOldOne) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 9), 0);
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 16),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, -1),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(media_volume(), 9);
}

TEST_F(BuiltinSound, RefusesTypesThatDoNotExistAndNullResults) {
    int level = 4;
    EXPECT_EQ(sound_manager_get_volume(static_cast<sound_type_e>(99), &level),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(level, 4);
    EXPECT_EQ(sound_manager_set_volume(static_cast<sound_type_e>(-1), 3),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_get_volume(SOUND_TYPE_MEDIA, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_get_max_volume(SOUND_TYPE_MEDIA, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(BuiltinSound, EachTypeHasALevelOfItsOwn) {
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_ALARM, 3), 0);
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

TEST_F(BuiltinSound, EveryChangeOfALevelIsReportedOnceAndInOrder) {
    Levels levels;
    const VolumeCallback set(report_level, &levels);
    for (const int level : {3, 3, 4, 5, 5, 3}) {
        ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, level), 0);
    }
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_ALARM, 1), 0);
    ASSERT_TRUE(levels.wait_for(5));
    const std::vector<std::pair<sound_type_e, unsigned>> expected{{SOUND_TYPE_MEDIA, 3},
                                                                  {SOUND_TYPE_MEDIA, 4},
                                                                  {SOUND_TYPE_MEDIA, 5},
                                                                  {SOUND_TYPE_MEDIA, 3},
                                                                  {SOUND_TYPE_ALARM, 1}};
    EXPECT_EQ(levels.entries(), expected);
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

TEST_F(BuiltinSound, ReportsComeOnAThreadOfThePlatformWhereGettersShowTheLevel) {
    struct Seen {
        Reports<std::thread::id> threads;
        Reports<int> levels;
    } seen;
    const auto callback = [](sound_type_e, unsigned, void *data) {
        auto *report = static_cast<Seen *>(data);
        report->levels.add(media_volume());
        report->threads.add(std::this_thread::get_id());
    };
    const VolumeCallback set(callback, &seen);
    ASSERT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 6), 0);
    ASSERT_TRUE(seen.threads.wait_for(1));
    EXPECT_EQ(seen.levels.entries(), std::vector<int>{6});
    EXPECT_NE(seen.threads.entries().front(), std::this_thread::get_id());
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

TEST_F(BuiltinSound, SafetyVolumeTakesLevelsOfTheMediaTypeAndLimitsNothing) {
    EXPECT_EQ(sound_manager_set_safety_volume(0), 0);
    EXPECT_EQ(sound_manager_set_safety_volume(9), 0);
    EXPECT_EQ(sound_manager_set_safety_volume(16), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(sound_manager_set_volume(SOUND_TYPE_MEDIA, 15), 0);
    EXPECT_EQ(media_volume(), 15);
    EXPECT_EQ(sound_manager_unset_safety_volume(), 0);
    EXPECT_EQ(sound_manager_unset_safety_volume(), 0);
}

// Streams and focus.

TEST_F(BuiltinSound, FocusIsGrantedAlsoToWhoHoldsIt) {
    const Stream stream;
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.release(), 0);
}

TEST_F(BuiltinSound, ReleaseOfWhatIsNotHeldIsAnErrorThatChangesNothing) {
    const Stream stream;
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
    ASSERT_EQ(stream.acquire(), 0);
    const auto both = static_cast<sound_stream_focus_mask_e>(SOUND_STREAM_FOCUS_FOR_PLAYBACK |
                                                             SOUND_STREAM_FOCUS_FOR_RECORDING);
    EXPECT_EQ(sound_manager_release_focus(stream.handle, both, 0, nullptr),
              SOUND_MANAGER_ERROR_INVALID_STATE);
    EXPECT_EQ(stream.release(), 0);
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
}

TEST_F(BuiltinSound, StreamsHoldTheFocusEachForItself) {
    const Stream first;
    const Stream second;
    ASSERT_EQ(first.acquire(), 0);
    EXPECT_EQ(second.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
    EXPECT_EQ(first.release(), 0);
}

TEST_F(BuiltinSound, DestroyedStreamIsNoHandleAnyMore) {
    Stream stream;
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

TEST_F(BuiltinSound, FocusArgumentsAreChecked) {
    const Stream stream;
    EXPECT_EQ(sound_manager_acquire_focus(stream.handle, static_cast<sound_stream_focus_mask_e>(0),
                                          0, nullptr),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(
        sound_manager_acquire_focus(stream.handle, SOUND_STREAM_FOCUS_FOR_PLAYBACK, 8, nullptr),
        SOUND_MANAGER_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(
        sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA, nullptr, nullptr, nullptr),
        SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(BuiltinSound, MediaIsTheTypeInForceWhileThereIsAStream) {
    sound_type_e type = SOUND_TYPE_SYSTEM;
    EXPECT_EQ(sound_manager_get_current_sound_type(&type), SOUND_MANAGER_ERROR_NO_DATA);
    const Stream stream;
    EXPECT_EQ(sound_manager_get_current_sound_type(&type), 0);
    EXPECT_EQ(type, SOUND_TYPE_MEDIA);
    EXPECT_EQ(sound_manager_unset_current_sound_type(), 0);
}

struct Focus {
    sound_stream_focus_state_e state;
    sound_stream_focus_change_reason_e reason;
    int behavior;
    std::string extra;
};

TEST_F(StagedSound, LossOfTheFocusIsReportedWithWhatTheTakerStated) {
    Reports<Focus> reports;
    const Stream stream(
        [](sound_stream_info_h info, sound_stream_focus_mask_e, sound_stream_focus_state_e state,
           sound_stream_focus_change_reason_e reason, int behavior, const char *extra, void *data) {
            // As a program does that shall not resume.
            EXPECT_EQ(sound_manager_set_focus_reacquisition(info, false), 0);
            static_cast<Reports<Focus> *>(data)->add(
                {state, reason, behavior, extra != nullptr ? extra : "(none)"});
        },
        &reports);
    EXPECT_EQ(stream.acquire(), SOUND_MANAGER_ERROR_POLICY);
    backend().lose_focus(SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING, "ringing");
    backend().lose_focus(SOUND_BEHAVIOR_NONE, "");
    ASSERT_TRUE(reports.wait_for(2));
    const auto first = reports.entries().at(0);
    EXPECT_EQ(first.state, SOUND_STREAM_FOCUS_STATE_RELEASED);
    EXPECT_EQ(first.reason, SOUND_STREAM_FOCUS_CHANGED_BY_CALL);
    EXPECT_EQ(first.behavior, SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING);
    EXPECT_EQ(first.extra, "ringing");
    EXPECT_EQ(reports.entries().at(1).extra, "(none)");
    EXPECT_EQ(backend().reacquisitions.entries().at(0), std::pair(backend().holder, false));
}

TEST_F(StagedSound, SleepInAFocusCallbackDoesNotHoldUpDevices) {
    Gate gate;
    const Stream stream(
        [](sound_stream_info_h, sound_stream_focus_mask_e, sound_stream_focus_state_e,
           sound_stream_focus_change_reason_e, int, const char *,
           void *data) { EXPECT_TRUE(static_cast<Gate *>(data)->pass()); },
        &gate);
    Reports<bool> devices;
    int id = 0;
    ASSERT_EQ(sound_manager_add_device_connection_changed_cb(
                  SOUND_DEVICE_TYPE_EXTERNAL_MASK,
                  [](sound_device_h, bool connected, void *data) {
                      static_cast<Reports<bool> *>(data)->add(connected);
                  },
                  &devices, &id),
              0);
    EXPECT_EQ(stream.acquire(), SOUND_MANAGER_ERROR_POLICY);
    backend().lose_focus(0, "");
    backend().set_devices({}, {SOUND_DEVICE_HDMI, "Screen"}, true);
    EXPECT_TRUE(devices.wait_for(1));
    gate.open();
    EXPECT_EQ(sound_manager_remove_device_connection_changed_cb(id), 0);
}

TEST_F(StagedSound, DestructionOfAStreamGivesItsFocusBack) {
    Stream stream;
    EXPECT_EQ(stream.acquire(), SOUND_MANAGER_ERROR_POLICY);
    const StreamId id = backend().holder;
    EXPECT_EQ(stream.destroy(), 0);
    EXPECT_EQ(backend().forgotten.entries(), std::vector<StreamId>{id});
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

TEST_F(BuiltinSound, EndOfAListIsNoDataAgainAndAgain) {
    sound_device_list_h list = nullptr;
    ASSERT_EQ(sound_manager_get_device_list(SOUND_DEVICE_TYPE_EXTERNAL_MASK, &list), 0);
    sound_device_h device = nullptr;
    ASSERT_EQ(sound_manager_get_next_device(list, &device), 0);
    EXPECT_EQ(sound_manager_get_next_device(list, &device), SOUND_MANAGER_ERROR_NO_DATA);
    EXPECT_EQ(sound_manager_get_next_device(list, &device), SOUND_MANAGER_ERROR_NO_DATA);
    EXPECT_EQ(sound_manager_free_device_list(list), 0);
    EXPECT_EQ(sound_manager_free_device_list(list), SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(BuiltinSound, NoBluetoothSetIsConnected) {
    bool connected = true;
    char *name = nullptr;
    EXPECT_EQ(sound_manager_get_a2dp_status(&connected, &name), 0);
    EXPECT_FALSE(connected);
    EXPECT_EQ(name, nullptr);
}

TEST_F(StagedSound, NameOfTheBluetoothSetIsACopyForTheCaller) {
    bool connected = false;
    char *name = nullptr;
    ASSERT_EQ(sound_manager_get_a2dp_status(&connected, &name), 0);
    EXPECT_TRUE(connected);
    EXPECT_STREQ(name, "Headset");
    free(name);
}

TEST_F(StagedSound, ListTakenInsideADeviceCallbackShowsTheChange) {
    Reports<std::vector<sound_device_type_e>> seen;
    int id = 0;
    ASSERT_EQ(sound_manager_add_device_connection_changed_cb(
                  SOUND_DEVICE_TYPE_EXTERNAL_MASK,
                  [](sound_device_h, bool, void *data) {
                      static_cast<Reports<std::vector<sound_device_type_e>> *>(data)->add(
                          listed_types(SOUND_DEVICE_TYPE_EXTERNAL_MASK));
                  },
                  &seen, &id),
              0);
    const Device jack{SOUND_DEVICE_AUDIO_JACK, "Headphones"};
    backend().set_devices({{SOUND_DEVICE_BUILTIN_SPEAKER, "Speaker"}, jack}, jack, true);
    ASSERT_TRUE(seen.wait_for(1));
    backend().set_devices({{SOUND_DEVICE_BUILTIN_SPEAKER, "Speaker"}}, jack, false);
    ASSERT_TRUE(seen.wait_for(2));
    EXPECT_EQ(seen.entries().at(0), std::vector{SOUND_DEVICE_AUDIO_JACK});
    EXPECT_TRUE(seen.entries().at(1).empty());
    EXPECT_EQ(sound_manager_remove_device_connection_changed_cb(id), 0);
    EXPECT_EQ(sound_manager_remove_device_connection_changed_cb(id),
              SOUND_MANAGER_ERROR_INVALID_PARAMETER);
}

TEST_F(StagedSound, DevicesOutsideTheMaskAreNotReported) {
    Reports<sound_device_type_e> seen;
    int id = 0;
    ASSERT_EQ(sound_manager_add_device_connection_changed_cb(
                  SOUND_DEVICE_TYPE_EXTERNAL_MASK,
                  [](sound_device_h device, bool, void *data) {
                      sound_device_type_e type{};
                      EXPECT_EQ(sound_manager_get_device_type(device, &type), 0);
                      static_cast<Reports<sound_device_type_e> *>(data)->add(type);
                  },
                  &seen, &id),
              0);
    backend().set_devices({}, {SOUND_DEVICE_BUILTIN_SPEAKER, "Speaker"}, true);
    backend().set_devices({}, {SOUND_DEVICE_BLUETOOTH, "Headset"}, true);
    ASSERT_TRUE(seen.wait_for(1));
    EXPECT_EQ(seen.entries(), std::vector{SOUND_DEVICE_BLUETOOTH});
    EXPECT_EQ(sound_manager_remove_device_connection_changed_cb(id), 0);
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
