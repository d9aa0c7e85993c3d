#include <Ecore.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>
#include <thread>
#include <vector>

#include "child_process.h"
#include "common/unique_fd.h"
#include "control/address.h"
#include "control/condition.h"
#include "control/control.h"
#include "control/line_buffer.h"
#include "control/request.h"

namespace {

using host::control::Condition;
using host::control::Json;
using host::control::LineBuffer;
using host::control::parse_name;
using host::control::parse_number;
using host::control::parse_request;
using host::control::UsageError;
using host::control::Words;

// The socket.

/// @return 0, or why it failed
int try_to_connect(const std::string &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const host::UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return connect(fd.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0
               ? 0
               : errno;
}

TEST(ControlSocket, IsListenedToFromTheMomentThatItCanBeSeen) {
    const child::TemporaryFolder folder;
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    ecore_init();
    const std::string path = host::control_socket(getpid());
    // Odd while the socket is being opened and open.
    std::atomic<int> phase{0};
    std::atomic<bool> stop{false};
    std::atomic<int> connected{0};
    std::atomic<int> refused{0};
    std::thread client([&] {
        while (!stop) {
            const int before = phase;
            const int error = try_to_connect(path);
            connected += error == 0 ? 1 : 0;
            refused += error == ECONNREFUSED && before % 2 == 1 && phase == before ? 1 : 0;
        }
    });
    for (int round = 0; round < 100; ++round) {
        const int before = connected;
        ++phase;
        EXPECT_TRUE(host::start_control());
        while (connected == before) {
            std::this_thread::yield();
        }
        ++phase;
        host::stop_control();
    }
    stop = true;
    client.join();
    EXPECT_EQ(refused, 0);
    ecore_shutdown();
}

// Lines.

TEST(ControlLines, PiecesMakeOneLine) {
    LineBuffer lines(100);
    lines.append("sta");
    EXPECT_EQ(lines.next(), std::nullopt);
    lines.append("te\nqu");
    EXPECT_EQ(lines.next(), "state");
    EXPECT_EQ(lines.next(), std::nullopt);
    lines.append("it\r\n\n");
    EXPECT_EQ(lines.next(), "quit");
    EXPECT_EQ(lines.next(), "");
    EXPECT_EQ(lines.next(), std::nullopt);
}

TEST(ControlLines, LineOfTheLimitPassesAndALongerOneSpoilsAllThatFollows) {
    LineBuffer lines(5);
    lines.append("12345\n123456\nquit\n");
    EXPECT_EQ(lines.next(), "12345");
    EXPECT_FALSE(lines.overflowed());
    EXPECT_EQ(lines.next(), std::nullopt);
    EXPECT_TRUE(lines.overflowed());
    lines.append("state\n");
    EXPECT_EQ(lines.next(), std::nullopt);
    EXPECT_EQ(lines.size(), 0u);
}

TEST(ControlLines, EndlessLineIsNoticedBeforeItsEnd) {
    LineBuffer lines(5);
    lines.append("123456");
    EXPECT_EQ(lines.next(), std::nullopt);
    EXPECT_TRUE(lines.overflowed());
}

// Requests.

TEST(ControlRequest, WordsStandBetweenBlanks) {
    EXPECT_EQ(parse_request("  tap 1\t2 "), (Words{"tap", "1", "2"}));
}

TEST(ControlRequest, ArrayKeepsBlanksAndOtherLetters) {
    EXPECT_EQ(parse_request("[\"launch\", \"/a  видео.mp4\"]"), (Words{"launch", "/a  видео.mp4"}));
}

TEST(ControlRequest, NonsenseIsRefused) {
    for (const std::string &line :
         {std::string(), std::string("   "), std::string("[]"), std::string("[1]"),
          std::string("[\"a\""), std::string("[[\"a\"]]"), std::string("[\"a\"] b"),
          std::string("\xff"), std::string("[\"\xc3\x28\"]"), std::string("a\0b", 3),
          std::string("[\"\\u0000\"]"), std::string(5000, '[')}) {
        EXPECT_THROW((void)parse_request(line), UsageError) << line;
    }
}

TEST(ControlRequest, NumbersAreWholeAndInTheirRange) {
    EXPECT_EQ(parse_number("-5", "x", -5, 5), -5);
    EXPECT_EQ(parse_number("5", "x", -5, 5), 5);
    for (const char *word : {"", "6", "-6", "1.5", "0x1", "1 ", "+1", "99999999999999999999"}) {
        EXPECT_THROW((void)parse_number(word, "x", -5, 5), UsageError) << word;
    }
}

TEST(ControlRequest, CodesHaveANameANumberAndTheirBits) {
    const std::vector<host::control::Name> codes{{"gone", -2}, {"odd", 3}};
    EXPECT_EQ(parse_name("gone", "the code", codes), -2);
    EXPECT_EQ(parse_name("-2", "the code", codes), -2);
    EXPECT_EQ(parse_name("0xfffffffe", "the code", codes), -2);
    EXPECT_EQ(parse_name("3", "the code", codes), 3);
    for (const char *word : {"", "4", "Gone", "3x"}) {
        EXPECT_THROW((void)parse_name(word, "the code", codes), UsageError) << word;
    }
}

// Conditions.

class ControlCondition : public testing::Test {
protected:
    [[nodiscard]] bool holds(const char *text) const {
        const Condition condition(text);
        condition.check_names(state);
        return condition.holds(state);
    }

    Json state = {
        {"player", "playing"}, {"position", 5000},
        {"controls", false},   {"page", nullptr},
        {"played", "00:05"},   {"popup", {{"style", "toast/circle"}, {"text", "This is a text"}}}};
};

TEST_F(ControlCondition, ComparesTexts) {
    EXPECT_TRUE(holds("player==playing"));
    EXPECT_TRUE(holds("state.player == \"playing\""));
    EXPECT_TRUE(holds("player!=paused"));
    EXPECT_FALSE(holds("player==paused"));
    EXPECT_TRUE(holds("played==00:05"));
    EXPECT_TRUE(holds("popup.text==This is a text"));
}

TEST_F(ControlCondition, ComparesNumbers) {
    EXPECT_TRUE(holds("position>=5000"));
    EXPECT_FALSE(holds("position>5000"));
    EXPECT_TRUE(holds("position<=5000"));
    EXPECT_FALSE(holds("position<5000"));
    EXPECT_TRUE(holds("position==5000"));
    EXPECT_TRUE(holds("position>4999.5"));
}

TEST_F(ControlCondition, ObjectCountsAsTrueAndNullAsFalse) {
    EXPECT_TRUE(holds("popup==true"));
    EXPECT_TRUE(holds("page==false"));
    EXPECT_TRUE(holds("page==null"));
    EXPECT_TRUE(holds("controls==false"));
}

TEST_F(ControlCondition, PartsOfWhatIsAbsentAreNull) {
    EXPECT_TRUE(holds("page.title==null"));
    EXPECT_FALSE(holds("page.title>=1"));
    EXPECT_TRUE(holds("popup.colour==null"));
}

TEST_F(ControlCondition, AllThatIsJoinedMustHold) {
    EXPECT_TRUE(holds("player==playing && position>=5000"));
    EXPECT_FALSE(holds("player==playing&&position>=5001"));
    EXPECT_FALSE(holds("player==paused&&position>=5000"));
}

TEST_F(ControlCondition, NonsenseIsRefused) {
    for (const char *text : {"", "player", "player=playing", "==1", "player==", "a..b==1", ".a==1",
                             "player==playing&&", "&&", "nothing==1", "nothing.more==1",
                             "player>=playing", "position>=true"}) {
        EXPECT_THROW((void)holds(text), UsageError) << text;
    }
}

// Whoever waits is asked again from the main loop, where nothing catches a refusal.
TEST_F(ControlCondition, NonsenseBehindWhatDoesNotHoldYetIsRefusedAtOnce) {
    EXPECT_THROW((void)holds("player==paused && nothing==1"), UsageError);
    EXPECT_THROW((void)holds("player==paused && position>=soon"), UsageError);
}

TEST_F(ControlCondition, ThrowsNothingOnceItIsMade) {
    EXPECT_FALSE(Condition("nothing==1").holds(state));
    EXPECT_FALSE(Condition("nothing>=1").holds(state));
}

// Places.

TEST(ControlAddress, IsInTheRuntimeDirectoryOrElseInOneOfTheUsersOwn) {
    setenv("XDG_RUNTIME_DIR", "/run/somewhere", 1);
    EXPECT_EQ(host::control_socket(12), "/run/somewhere/tessel/control-12.sock");
    unsetenv("XDG_RUNTIME_DIR");
    setenv("TMPDIR", "/var/elsewhere", 1);
    EXPECT_EQ(host::control_directory(), "/var/elsewhere/tessel-" + std::to_string(getuid()));
    unsetenv("TMPDIR");
    EXPECT_EQ(host::control_directory(), "/tmp/tessel-" + std::to_string(getuid()));
}

}  // namespace
