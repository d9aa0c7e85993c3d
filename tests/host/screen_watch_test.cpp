// The machine's sleep and lock, over a system bus of the test's own, in a whole process under the
// profile of the watch: the application is paused while the screen is off.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "child_process.h"
#include "private_bus.h"

namespace {

constexpr const char *kName = "org.freedesktop.login1";
constexpr const char *kPath = "/org/freedesktop/login1";
constexpr const char *kMock = "org.freedesktop.DBus.Mock";
constexpr const char *kEnd = "terminate";

std::string session_path(const std::string &id) {
    return std::string(kPath) + "/session/" + id;
}

class ScreenWatch : public testing::Test {
protected:
    ScreenWatch()
        : logind_(bus_, kName, {"--template", "logind"}),
          connection_(bus_.connect()),
          probe_({child::program("life-cycle-probe"), "--headless", "--control", "--profile",
                  "watch", "clip.mp4"},
                 {{"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
                  {"DBUS_SYSTEM_BUS_ADDRESS", bus_.address()},
                  {"XDG_RUNTIME_DIR", folder_.path()},
                  {"XDG_SESSION_ID", "own"},
                  {"PROBE_PAUSE", "stay"}}) {
        for (const char *id : {"own", "other"}) {
            EXPECT_TRUE(child::call(
                connection_.get(), kName, kPath, kMock, "AddSession",
                g_variant_new("(ssusb)", id, "seat0", guint32{1000}, "somebody", TRUE)));
        }
        // One that is locked out from the start is never in the foreground.
        EXPECT_TRUE(probe_.prints("resume\n")) << probe_.errors();
        // From here on it hears all that is told, and in the order of telling.
        repeat_until_it_says("pause", [this] { lock("own"); });
        unlock("own");
        EXPECT_TRUE(probe_.prints("pause\nresume\n")) << probe_.output();
    }

    void sleep() { emit(kPath, "Manager", "PrepareForSleep", "<true>"); }
    void wake() { emit(kPath, "Manager", "PrepareForSleep", "<false>"); }
    void lock(const std::string &id) { emit(session_path(id), "Session", "Lock", ""); }
    void unlock(const std::string &id) { emit(session_path(id), "Session", "Unlock", ""); }

    /// All that the application was told after the start, at its end.
    std::string told() {
        const std::size_t start = probe_.output().size();
        probe_.send(SIGTERM);
        EXPECT_EQ(probe_.wait(), 0) << probe_.errors();
        const std::string begin = "pause\nresume\n";
        const std::size_t place = probe_.output().find(begin);
        EXPECT_LE(place, start);
        const std::string rest = probe_.output().substr(place + begin.size());
        return rest.substr(0, rest.find(kEnd));
    }
    /// What was told before has reached it when this returns.
    void settle() {
        sleep();
        wake();
        EXPECT_TRUE(probe_.prints("pause\nresume\n" + expected_ + "pause\nresume\n"))
            << probe_.output();
        expected_ += "pause\nresume\n";
    }

    void control(const std::vector<std::string> &words) {
        std::vector<std::string> command{child::program("tesselctl"), "--pid",
                                         std::to_string(probe_.pid())};
        command.insert(command.end(), words.begin(), words.end());
        child::Process tool(command, {{"XDG_RUNTIME_DIR", folder_.path()}});
        EXPECT_EQ(tool.wait(), 0) << tool.errors();
    }

    child::Process &probe() { return probe_; }

private:
    void emit(const std::string &path, const std::string &interface, const char *name,
              const std::string &argument) {
        GVariantBuilder arguments;
        g_variant_builder_init(&arguments, G_VARIANT_TYPE("av"));
        if (!argument.empty()) {
            g_variant_builder_add(&arguments, "v",
                                  g_variant_new_boolean(argument == "<true>" ? TRUE : FALSE));
        }
        EXPECT_TRUE(
            child::call(connection_.get(), kName, path, kMock, "EmitSignal",
                        g_variant_new("(sssav)", ("org.freedesktop.login1." + interface).c_str(),
                                      name, argument.empty() ? "" : "b", &arguments)));
    }

    void repeat_until_it_says(const std::string &text, const std::function<void()> &action) {
        std::atomic<bool> said{false};
        std::thread actor([&] {
            while (!said) {
                action();
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        });
        EXPECT_TRUE(probe_.prints(text)) << probe_.errors();
        said = true;
        actor.join();
    }

    const child::TemporaryFolder folder_;
    const child::PrivateBus bus_;
    child::MockService logind_;
    host::GObjectPtr<GDBusConnection> connection_;
    child::Process probe_;
    std::string expected_;
};

TEST_F(ScreenWatch, SleepIsAPauseUntilTheMachineWakes) {
    settle();
    settle();
    EXPECT_EQ(told(), "pause\nresume\npause\nresume\n");
}

TEST_F(ScreenWatch, ScreenIsOnAgainOnlyWhenNothingKeepsItOff) {
    sleep();
    lock("own");
    wake();
    sleep();
    unlock("own");
    lock("own");
    wake();
    unlock("own");
    ASSERT_TRUE(probe().prints("pause\nresume\npause\nresume\n"));
    EXPECT_EQ(told(), "pause\nresume\n");
}

TEST_F(ScreenWatch, AnotherSessionsLockIsNoneOfIts) {
    lock("other");
    settle();
    EXPECT_EQ(told(), "pause\nresume\n");
}

TEST_F(ScreenWatch, WhoHasLeftTheForegroundIsNotResumedByTheScreen) {
    sleep();
    ASSERT_TRUE(probe().prints("pause\nresume\npause\n"));
    control({"key", "home"});
    wake();
    sleep();
    wake();
    // As a launch does, from which it is in front of all again.
    control({"launch", "clip.mp4"});
    ASSERT_TRUE(probe().prints("resume\npause\ncontrol "));
    ASSERT_TRUE(probe().prints("caller com.orvane.tessel\nresume\n")) << probe().output();
}

}  // namespace
