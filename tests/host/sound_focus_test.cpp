// The audio focus between processes on a session bus, and what the player's own sound manager
// makes of it on the threads of the platform.

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <sound_manager.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "TslSignalMgr.h"
#include "TslSoundMgr.h"
#include "child_process.h"
#include "main_loop.h"
#include "messaging/session_bus.h"
#include "session_bus_daemon.h"
#include "sound/focus.h"
#include "sound_user.h"

namespace {

using namespace sound_user;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr int none = SOUND_BEHAVIOR_NONE;
constexpr int no_resume = SOUND_BEHAVIOR_NO_RESUME;
constexpr int fading = SOUND_BEHAVIOR_FADING;
constexpr int both = no_resume | fading;

/// Another program that takes the focus.
class Other {
public:
    explicit Other(int behavior)
        : process_({child::program("focus-probe"), std::to_string(behavior)},
                   {{"PULSE_SERVER", "unix:/nowhere"}}) {}

    [[nodiscard]] bool has_taken() { return process_.prints("taken 0\n"); }
    [[nodiscard]] bool gives_back() {
        process_.send(SIGUSR1);
        return process_.prints("given back 0\n");
    }
    [[nodiscard]] bool tells(const std::string &line) { return process_.prints(line + '\n'); }
    void send(int signal) const { process_.send(signal); }
    [[nodiscard]] int end() {
        process_.send(SIGTERM);
        return process_.wait();
    }
    [[nodiscard]] const std::string &told() const { return process_.output(); }

private:
    child::Process process_;
};

/// A member of the bus that knows nothing of the focus but its name.
class Stranger {
public:
    guint request(guint flags) {
        return number(call("RequestName", g_variant_new("(su)", name, flags)));
    }
    guint release() { return number(call("ReleaseName", g_variant_new("(s)", name))); }
    /// The holder and those who wait for it.
    gsize line() {
        const auto answer = call("ListQueuedOwners", g_variant_new("(s)", name));
        const host::GVariantPtr owners(g_variant_get_child_value(answer.get(), 0));
        return g_variant_n_children(owners.get());
    }

private:
    host::GVariantPtr call(const char *method, GVariant *parameters) {
        return host::GVariantPtr(g_dbus_connection_call_sync(
            bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            method, parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }
    static guint number(const host::GVariantPtr &answer) {
        guint result = 0;
        if (answer) {
            g_variant_get(answer.get(), "(u)", &result);
        }
        return result;
    }

    static constexpr const char *name = "com.orvane.AudioFocus.Playback";
    host::GObjectPtr<GDBusConnection> bus_ = host::open_session_bus();
};

class FocusOnTheBus : public testing::Test {
protected:
    void SetUp() override { host::sound::use_focus(host::sound::create_session_bus_focus); }
    void TearDown() override { host::sound::use_focus(host::sound::create_builtin_focus); }

    SessionBusDaemon bus;
};

// ---- between processes

class FocusBehaviour : public FocusOnTheBus, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Every, FocusBehaviour, testing::Values(none, no_resume, fading, both));

TEST_P(FocusBehaviour, OtherProcessIsToldOfItAndGetsTheFocusBack) {
    Other other(none);
    ASSERT_TRUE(other.has_taken());
    const Stream stream;
    ASSERT_EQ(stream.acquire(GetParam()), 0);
    EXPECT_TRUE(other.tells("lost " + std::to_string(GetParam())));
    ASSERT_EQ(stream.release(GetParam()), 0);
    EXPECT_TRUE(other.tells("regained " + std::to_string(GetParam())));
    EXPECT_TRUE(other.gives_back());
    EXPECT_EQ(other.end(), 0);
}

TEST_P(FocusBehaviour, OtherProcessTellsOfItAndGivesTheFocusBack) {
    FocusReports reports;
    const Stream stream(reports);
    ASSERT_EQ(stream.acquire(), 0);
    Other other(GetParam());
    ASSERT_TRUE(other.has_taken());
    ASSERT_TRUE(reports.wait_for(1));
    ASSERT_TRUE(other.gives_back());
    ASSERT_TRUE(reports.wait_for(2));
    EXPECT_EQ(reports.entries(), (std::vector{lost(GetParam()), regained(GetParam())}));
    EXPECT_EQ(stream.release(), 0);
}

TEST_F(FocusOnTheBus, CrashedHolderLosesItAtOnce) {
    FocusReports reports;
    const Stream stream(reports);
    ASSERT_EQ(stream.acquire(), 0);
    Other other(fading);
    ASSERT_TRUE(other.has_taken());
    ASSERT_TRUE(reports.wait_for(1));
    const auto killed = steady_clock::now();
    other.send(SIGKILL);
    ASSERT_TRUE(reports.wait_for(2));
    EXPECT_LT(steady_clock::now() - killed, seconds(1));
    EXPECT_EQ(reports.entries().at(1).state, SOUND_STREAM_FOCUS_STATE_ACQUIRED);
}

TEST_F(FocusOnTheBus, HolderThatDoesNotListenLosesItAllTheSame) {
    Other other(none);
    ASSERT_TRUE(other.has_taken());
    other.send(SIGSTOP);
    const Stream stream;
    const auto asked = steady_clock::now();
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_LT(steady_clock::now() - asked, milliseconds(700));
    EXPECT_EQ(stream.release(), 0);
    other.send(SIGCONT);
    EXPECT_TRUE(other.tells("lost 1"));
    EXPECT_TRUE(other.tells("regained 1"));
}

TEST_F(FocusOnTheBus, TakerThatStatesNothingHasNoBehaviour) {
    FocusReports reports;
    const Stream stream(reports);
    ASSERT_EQ(stream.acquire(), 0);
    Stranger stranger;
    ASSERT_EQ(stranger.request(3), 1U);
    ASSERT_TRUE(reports.wait_for(1));
    ASSERT_EQ(stranger.release(), 1U);
    ASSERT_TRUE(reports.wait_for(2));
    EXPECT_EQ(reports.entries(), (std::vector{lost(none), regained(none)}));
}

TEST_F(FocusOnTheBus, HolderWhoForbidsItIsLeftAlone) {
    FocusReports reports;
    const Stream stream(reports);
    Stranger stranger;
    ASSERT_EQ(stranger.request(0), 1U);
    EXPECT_EQ(stream.acquire(), SOUND_MANAGER_ERROR_POLICY);
    EXPECT_EQ(stream.acquire(no_resume,
                             SOUND_STREAM_FOCUS_FOR_PLAYBACK | SOUND_STREAM_FOCUS_FOR_RECORDING),
              SOUND_MANAGER_ERROR_POLICY);
    EXPECT_EQ(stream.release(no_resume, SOUND_STREAM_FOCUS_FOR_RECORDING),
              SOUND_MANAGER_ERROR_INVALID_STATE);
    ASSERT_EQ(stranger.release(), 1U);
    // Whoever was refused doesn't stand in line.
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_TRUE(reports.entries().empty());
}

TEST_F(FocusOnTheBus, StatementMayBeAnyText) {
    FocusReports reports;
    const Stream stream(reports);
    ASSERT_EQ(stream.acquire(), 0);
    const Stream taker;
    ASSERT_EQ(taker.acquire(fading, SOUND_STREAM_FOCUS_FOR_PLAYBACK, "not \xff UTF-8"), 0);
    ASSERT_TRUE(reports.wait_for(1));
    EXPECT_EQ(reports.entries().at(0), lost(fading, "not \xEF\xBF\xBD UTF-8"));
}

TEST_F(FocusOnTheBus, IsGrantedWhenTheBusHasDiedAndSharedAgainWhenItIsBack) {
    FocusReports reports;
    const Stream stream(reports);
    ASSERT_EQ(stream.acquire(none, SOUND_STREAM_FOCUS_FOR_RECORDING), 0);
    bus.stop();
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.release(), 0);
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
    EXPECT_EQ(stream.acquire(), 0);
    bus.start();
    // With what it is asked for now it takes what it holds already.
    EXPECT_EQ(stream.acquire(), 0);
    Other other(fading);
    ASSERT_TRUE(other.has_taken());
    ASSERT_TRUE(reports.wait_for(1));
    EXPECT_EQ(reports.entries(), std::vector{lost(fading)});
    EXPECT_EQ(stream.release(none, SOUND_STREAM_FOCUS_FOR_RECORDING), 0);
}

TEST_F(FocusOnTheBus, IsGrantedWhereThereIsNoBus) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "autolaunch:", 1);
    const Stream stream;
    EXPECT_EQ(stream.acquire(), 0);
    EXPECT_EQ(stream.release(), 0);
    EXPECT_EQ(stream.release(), SOUND_MANAGER_ERROR_INVALID_STATE);
}

// ---- the player's own sound manager

class PlayerFocus : public FocusOnTheBus {
protected:
    struct Signal {
        TslSignalType type;
        float faded;
        std::thread::id thread;
        steady_clock::time_point when;
    };

    void SetUp() override {
        FocusOnTheBus::SetUp();
        listener_ = TslSignalMgr::getInstance()->getSignal().addListener(
            [this](TslSignalType type, void *payload) {
                const std::lock_guard lock(mutex_);
                const float faded =
                    type == SIGNAL_SOUND_MGR_FADE_VOLUME ? *static_cast<float *>(payload) : -1.0F;
                signals_.push_back({type, faded, std::this_thread::get_id(), steady_clock::now()});
            });
        mgr_ = std::make_unique<TslSoundMgr>();
        ASSERT_TRUE(mgr_->acquireAudioFocus());
    }
    void TearDown() override {
        mgr_.reset();
        TslSignalMgr::getInstance()->getSignal().removeListener(listener_);
        FocusOnTheBus::TearDown();
    }

    std::vector<Signal> signals() {
        const std::lock_guard lock(mutex_);
        return signals_;
    }
    void forget_signals() {
        const std::lock_guard lock(mutex_);
        signals_.clear();
    }
    /// Runs the main loop until the signal comes last.
    bool ends_with(TslSignalType type, std::size_t count) {
        return support::run_main_loop_until(
            [&] {
                const auto list = signals();
                return list.size() >= count && list.back().type == type;
            },
            20.0);
    }

    void expect_fade(const std::vector<Signal> &fade, float first, float step) {
        ASSERT_EQ(fade.size(), 20U);
        for (std::size_t index = 0; index < fade.size(); ++index) {
            EXPECT_EQ(fade[index].type, SIGNAL_SOUND_MGR_FADE_VOLUME);
            EXPECT_EQ(fade[index].faded, first + step * static_cast<float>(index));
            EXPECT_NE(fade[index].thread, std::this_thread::get_id());
        }
        EXPECT_GE(fade.back().when - fade.front().when, milliseconds(950));
    }

    std::unique_ptr<TslSoundMgr> mgr_;

private:
    std::mutex mutex_;
    std::vector<Signal> signals_;
    unsigned int listener_ = 0;
};

TEST_F(PlayerFocus, LossWithoutBehaviourPausesAtOnceAndTheReturnResumes) {
    Other other(none);
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_PAUSE, 1));
    EXPECT_EQ(signals().size(), 1U);
    EXPECT_EQ(signals()[0].thread, std::this_thread::get_id());
    EXPECT_FALSE(mgr_->releaseAudioFocus()) << "what is lost can't be given back";
    ASSERT_TRUE(other.has_taken());
    ASSERT_TRUE(other.gives_back());
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_RESUME, 2));
    EXPECT_EQ(signals().size(), 2U);
    EXPECT_TRUE(mgr_->releaseAudioFocus());
}

TEST_F(PlayerFocus, LossWithoutResumePausesForGood) {
    Other other(no_resume);
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_PAUSE, 1));
    ASSERT_TRUE(other.has_taken());
    ASSERT_TRUE(other.gives_back());
    // Had it come back, it would be held, and the resumption would come before the next pause.
    EXPECT_FALSE(mgr_->releaseAudioFocus());
    ASSERT_TRUE(mgr_->acquireAudioFocus());
    other.send(SIGUSR2);
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_PAUSE, 2));
    EXPECT_EQ(signals().size(), 2U);
}

TEST_F(PlayerFocus, LossWithFadingFadesForASecondBeforeThePause) {
    const auto begin = steady_clock::now();
    Other other(fading);
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_PAUSE, 21));
    EXPECT_GE(steady_clock::now() - begin, seconds(1));
    auto list = signals();
    ASSERT_EQ(list.size(), 21U);
    EXPECT_EQ(list.back().thread, std::this_thread::get_id());
    list.pop_back();
    expect_fade(list, 380.0F, -20.0F);

    forget_signals();
    ASSERT_TRUE(other.has_taken());
    ASSERT_TRUE(other.gives_back());
    ASSERT_TRUE(support::run_main_loop_until([&] { return signals().size() >= 21; }, 20.0));
    list = signals();
    ASSERT_EQ(list.size(), 21U);
    EXPECT_EQ(list.front().type, SIGNAL_PLAYER_RESUME);
    EXPECT_EQ(list.front().thread, std::this_thread::get_id());
    list.erase(list.begin());
    expect_fade(list, 20.0F, 20.0F);
}

TEST_F(PlayerFocus, LossWithBothFadesAndPausesForGood) {
    Other other(both);
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_PAUSE, 21));
    auto list = signals();
    ASSERT_EQ(list.size(), 21U);
    list.pop_back();
    expect_fade(list, 380.0F, -20.0F);
    ASSERT_TRUE(other.has_taken());
    // The pause is on its way before the line is left.
    Stranger stranger;
    ASSERT_TRUE(support::run_main_loop_until([&stranger] { return stranger.line() == 1; }, 20.0));
    ASSERT_TRUE(other.gives_back());
    EXPECT_FALSE(mgr_->releaseAudioFocus());
    EXPECT_EQ(signals().size(), 21U);
}

TEST_F(PlayerFocus, TwoManagersTakeItFromEachOther) {
    TslSoundMgr second;
    ASSERT_TRUE(second.acquireAudioFocus());
    ASSERT_TRUE(ends_with(SIGNAL_PLAYER_PAUSE, 1));
    EXPECT_FALSE(mgr_->releaseAudioFocus());
    EXPECT_TRUE(second.releaseAudioFocus());
}

}  // namespace
