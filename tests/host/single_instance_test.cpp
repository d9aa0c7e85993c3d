// One process for all requests, over a session bus of the test's own.

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "child_process.h"
#include "common/gobject.h"

namespace {

constexpr int kCallTimeoutMs = 20000;

std::vector<std::string> probe(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), child::program("life-cycle-probe"));
    return arguments;
}

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

class SingleInstance : public testing::Test {
protected:
    child::Environment environment(child::Environment more = {}) const {
        more["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
        return more;
    }

    // What another application calls, as the desktop's interface has it.
    std::string call(const char *method, GVariant *parameters) const {
        const host::GObjectPtr<GDBusConnection> bus(g_dbus_connection_new_for_address_sync(
            bus_.address().c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
        host::GErrorPtr error;
        const host::GVariantPtr answer(g_dbus_connection_call_sync(
            bus.get(), "com.orvane.tessel", "/com/orvane/tessel", "org.freedesktop.Application",
            method, parameters, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, kCallTimeoutMs, nullptr,
            out(error)));
        g_dbus_connection_close_sync(bus.get(), nullptr, nullptr);
        return answer ? "" : error->message;
    }

    child::TemporaryFolder folder_;
    child::Bus bus_;
};

TEST_F(SingleInstance, ASecondStartHandsItsRequestToTheFirst) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    child::Process second(
        probe({"--headless", "--mime", "video/mp4", "--extra", "colour=red", "two \xff.mp4"}),
        environment(), folder_.path());
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(second.output(), "returned 0\n");
    EXPECT_TRUE(first.prints("path " + folder_.path() + "/two \xff.mp4 mime video/mp4 colour red"))
        << first.output();
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
}

TEST_F(SingleInstance, TwoThatStartTogetherMakeOneApplication) {
    child::Process one(probe({"--headless", "/one.mp4"}), environment());
    child::Process two(probe({"--headless", "/two.mp4"}), environment());
    ASSERT_TRUE(one.prints_one_of({"returned", "/two.mp4"}));
    const bool one_is_first = has(one.output(), "/two.mp4");
    child::Process &first = one_is_first ? one : two;
    child::Process &second = one_is_first ? two : one;
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(second.output(), "returned 0\n");
    EXPECT_TRUE(first.prints(one_is_first ? "/two.mp4" : "/one.mp4"));
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
}

TEST_F(SingleInstance, ANewInstanceLeavesTheFirstAlone) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    child::Process second(probe({"--headless", "--new-instance", "/two.mp4"}),
                          environment({{"PROBE_CONTROL", "complete"}}));
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(has(second.output(), "path /two.mp4"));
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_FALSE(has(first.output(), "two.mp4"));
}

TEST_F(SingleInstance, ASecondStartPlaysItselfWhenTheFirstIsEnding) {
    child::Process first(probe({"--headless", "/one.mp4"}),
                         environment({{"PROBE_TERMINATE", "slow"}}));
    ASSERT_TRUE(first.prints("resume"));
    first.send(SIGTERM);
    ASSERT_TRUE(first.prints("terminate"));
    child::Process second(probe({"--headless", "/two.mp4"}),
                          environment({{"PROBE_CONTROL", "complete"}}));
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(has(second.output(), "path /two.mp4")) << second.output();
    EXPECT_FALSE(has(first.output(), "two.mp4"));
    first.send(SIGINT);
    EXPECT_EQ(first.wait(), 0);
}

TEST_F(SingleInstance, AFirstThatDoesNotAnswerIsNotWaitedForForEver) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    first.send(SIGSTOP);
    child::Process second(probe({"--headless", "/two.mp4"}),
                          environment({{"PROBE_CONTROL", "complete"}}));
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(has(second.output(), "path /two.mp4")) << second.output();
    first.send(SIGTERM);
    first.send(SIGCONT);
    EXPECT_EQ(first.wait(), 0);
}

TEST_F(SingleInstance, TheDesktopOpensALocalFileDecoded) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    EXPECT_EQ(call("Open", g_variant_new_parsed("(['file:///a%20b.mp4'], @a{sv} {})")), "");
    EXPECT_TRUE(first.prints("uri file:///a b.mp4 path (none)")) << first.output();
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
}

TEST_F(SingleInstance, ABareActivationIsNoRequest) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    EXPECT_EQ(call("Activate", g_variant_new_parsed("(@a{sv} {},)")), "");
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(first.output().find("control operation"), first.output().rfind("control operation"));
}

TEST_F(SingleInstance, TheDesktopsQuitEndsIt) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    EXPECT_NE(call("ActivateAction", g_variant_new_parsed("('dance', @av [], @a{sv} {})")), "");
    EXPECT_EQ(call("ActivateAction", g_variant_new_parsed("('quit', @av [], @a{sv} {})")), "");
    EXPECT_EQ(first.wait(), 0);
    EXPECT_TRUE(has(first.output(), "terminate"));
}

TEST_F(SingleInstance, ABusThatDiesDoesNotEndThePlayer) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    bus_.kill();
    first.send(SIGTERM);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_TRUE(has(first.output(), "terminate"));
}

TEST_F(SingleInstance, ALaunchedApplicationCanBeEndedFromHere) {
    child::Process first(probe({"--headless", "/one.mp4"}), environment());
    ASSERT_TRUE(first.prints("resume"));
    child::Process launcher({child::program("launch-probe"), "com.orvane.tessel", "file:///x%20y"},
                            environment());
    EXPECT_EQ(launcher.wait(), 0);
    EXPECT_EQ(launcher.output(), "running 0\nlaunch 0\nterminate 0\n");
    EXPECT_EQ(first.wait(), 0);
    EXPECT_TRUE(has(first.output(), "uri file:///x%20y path (none)")) << first.output();
    EXPECT_TRUE(has(first.output(), "caller com.orvane.tessel")) << first.output();
}

TEST_F(SingleInstance, AnApplicationThatIsNotThereIsToldApart) {
    child::Process launcher({child::program("launch-probe"), "org.example.Absent", "file:///x"},
                            environment());
    EXPECT_EQ(launcher.wait(), 0);
    // No such application, application not found, not launched from here.
    EXPECT_EQ(launcher.output(), "running -17891327\nlaunch -17825759\nterminate -13\n");
}

/// A socket that takes connections and never answers.
class MuteBus {
public:
    explicit MuteBus(const std::string &path)
        : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(fd_.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(listen(fd_.get(), 8), 0);
    }

private:
    host::UniqueFd fd_;
};

TEST(NoBus, OneThatNeverAnswersCostsBoundedTime) {
    const child::TemporaryFolder folder;
    const MuteBus bus(folder.path() + "/bus");
    const auto start = std::chrono::steady_clock::now();
    child::Process process(probe({"--headless", "/one.mp4"}),
                           {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + folder.path() + "/bus"},
                            {"PROBE_CONTROL", "complete"}});
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(), "path /one.mp4"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
}

TEST(NoBus, AnUnusableAddressIsNoBus) {
    for (const char *address : {"unix:path=/nonexistent", "autolaunch:", "disabled:", "nonsense"}) {
        child::Process process(
            probe({"--headless", "/one.mp4"}),
            {{"DBUS_SESSION_BUS_ADDRESS", address}, {"PROBE_CONTROL", "complete"}});
        EXPECT_EQ(process.wait(), 0) << address;
        EXPECT_TRUE(has(process.output(), "path /one.mp4")) << address;
    }
}

}  // namespace
