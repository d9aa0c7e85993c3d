// The log as it comes out on standard error.

#include "log/log.h"

#include <dlog.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "common/unique_fd.h"

namespace {

/// Takes what is written to standard error, through a pipe that a thread empties, or a terminal.
class StandardError {
public:
    enum class Kind { pipe, terminal };

    explicit StandardError(Kind kind = Kind::pipe) : saved_(dup(STDERR_FILENO)) {
        std::array<int, 2> ends{-1, -1};
        if (kind == Kind::pipe) {
            EXPECT_EQ(pipe(ends.data()), 0);
        } else {
            ends[0] = posix_openpt(O_RDWR | O_NOCTTY);
            EXPECT_EQ(grantpt(ends[0]) + unlockpt(ends[0]), 0);
            ends[1] = open(ptsname(ends[0]), O_RDWR | O_NOCTTY);
        }
        read_.reset(ends[0]);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        reader_ = std::thread([this] { collect(); });
    }
    ~StandardError() { finish(); }
    StandardError(const StandardError &) = delete;
    StandardError &operator=(const StandardError &) = delete;

    /// Gives standard error back. @return the lines that came
    std::vector<std::string> lines() {
        finish();
        std::vector<std::string> result;
        std::istringstream stream(text_);
        for (std::string line; std::getline(stream, line);) {
            result.push_back(line);
        }
        return result;
    }

private:
    void finish() {
        if (saved_) {
            dup2(saved_.get(), STDERR_FILENO);
            saved_.reset();
            reader_.join();
        }
    }
    void collect() {
        std::array<char, 65536> buffer{};
        ssize_t got = 0;
        while ((got = read(read_.get(), buffer.data(), buffer.size())) > 0) {
            text_.append(buffer.data(), static_cast<std::size_t>(got));
        }
    }

    host::UniqueFd saved_;
    host::UniqueFd read_;
    std::thread reader_;
    std::string text_;
};

// The levels are set after standard error, as how to write is decided with them.
void set_levels(const char *spec) {
    ASSERT_TRUE(host::set_log_levels(spec));
}

std::string prefix(char letter, const std::string &tag) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%c/%-8s(%5d, %5d): ", letter, tag.c_str(), getpid(),
                  gettid());
    return text.data();
}

TEST(Log, OffLetsNothingThrough) {
    StandardError error;
    set_levels("off");
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_FATAL, "TESSEL", "text"), 0);
    EXPECT_TRUE(error.lines().empty());
}

TEST(Log, WritesOneLineInTheDevicesForm) {
    StandardError error;
    set_levels("info");
    const int written = __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "volume %d of %s", 7, "15");
    const std::string expected = prefix('I', "TESSEL") + "volume 7 of 15";
    EXPECT_EQ(written, static_cast<int>(expected.size() + 1));
    EXPECT_EQ(error.lines(), std::vector<std::string>{expected});
}

TEST(Log, NamesEachPriorityByItsLetter) {
    StandardError error;
    set_levels("verbose");
    for (int priority = DLOG_VERBOSE; priority <= DLOG_FATAL; ++priority) {
        __dlog_print(LOG_ID_MAIN, priority, "T", "x");
    }
    std::string letters;
    for (const std::string &line : error.lines()) {
        letters += line.front();
    }
    EXPECT_EQ(letters, "VDIWEF");
}

TEST(Log, LetsThroughWhatIsAtLeastAsImportant) {
    StandardError error;
    set_levels("warn");
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "x"), 0);
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_WARN, "TESSEL", "x"), 0);
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_ERROR, "TESSEL", "x"), 0);
    EXPECT_EQ(error.lines().size(), 2U);
}

TEST(Log, KnowsLevelsByTag) {
    StandardError error;
    set_levels("TESSEL:debug,WAPP:Error");
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_DEBUG, "TESSEL", "x"), 0);
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_WARN, "WAPP", "x"), 0);
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_FATAL, "HOST", "x"), 0);
    set_levels("warn,TESSEL:off");
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_FATAL, "TESSEL", "x"), 0);
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "x"), 0);
    EXPECT_EQ(error.lines().size(), 2U);
}

TEST(Log, RefusesLevelsThatItDoesNotKnowAndKeepsTheOld) {
    StandardError error;
    set_levels("info");
    EXPECT_FALSE(host::set_log_levels("loud"));
    EXPECT_FALSE(host::set_log_levels(""));
    EXPECT_FALSE(host::set_log_levels("info,"));
    EXPECT_GT(__dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "x"), 0);
}

TEST(Log, EscapesControlCharactersAndBytesThatAreNoText) {
    StandardError error;
    set_levels("info");
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "%s", "a\nb\r\tc\x01\x7f\xff d\xc3\xa9\xc2\x9b");
    EXPECT_EQ(error.lines(),
              std::vector<std::string>{prefix('I', "TESSEL") +
                                       "a\\nb\\r\\tc\\x01\\x7f\\xff d\xc3\xa9\\xc2\\x9b"});
}

TEST(Log, RemovesTheProgramsColoursWhereNobodySeesThem) {
    StandardError error;
    set_levels("info");
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "%s > \033[0;32mgreen %d\033[0;m", "f", 3);
    EXPECT_EQ(error.lines(), std::vector<std::string>{prefix('I', "TESSEL") + "f > green 3"});
}

TEST(Log, KeepsTheProgramsColoursOnATerminalAndEscapesThoseOfTheData) {
    StandardError error(StandardError::Kind::terminal);
    set_levels("info");
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "%s > \033[0;32m%s\033[0;m", "f",
                 "\033[0;31mred");
    EXPECT_EQ(error.lines(), std::vector<std::string>{prefix('I', "TESSEL") +
                                                      "f > \033[0;32m\\x1b[0;31mred\033[0;m\r"});
}

TEST(Log, TellsAJournalThePriority) {
    StandardError error;
    struct stat status {};
    ASSERT_EQ(fstat(STDERR_FILENO, &status), 0);
    const std::string stream = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    setenv("JOURNAL_STREAM", stream.c_str(), 1);
    set_levels("info");
    unsetenv("JOURNAL_STREAM");
    __dlog_print(LOG_ID_MAIN, DLOG_WARN, "TESSEL", "\033[0;35mx\033[0;m");
    EXPECT_EQ(error.lines(), std::vector<std::string>{"<4>" + prefix('W', "TESSEL") + "x"});
}

TEST(Log, RefusesArgumentsOutOfTheirRange) {
    StandardError error;
    set_levels("verbose");
    EXPECT_EQ(__dlog_print(LOG_ID_INVALID, DLOG_INFO, "T", "x"), -EINVAL);
    EXPECT_EQ(__dlog_print(LOG_ID_MAX, DLOG_INFO, "T", "x"), -EINVAL);
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_DEFAULT, "T", "x"), -EINVAL);
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_SILENT, "T", "x"), -EINVAL);
    EXPECT_EQ(__dlog_print(LOG_ID_MAIN, DLOG_INFO, nullptr, "x"), -EINVAL);
    EXPECT_TRUE(error.lines().empty());
}

TEST(Log, LeavesErrnoAlone) {
    StandardError error;
    set_levels("info");
    errno = ENOTTY;
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "x");
    EXPECT_EQ(errno, ENOTTY);
}

TEST(Log, CutsALineThatAPipeWouldTear) {
    StandardError error;
    set_levels("info");
    const int written =
        __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "%s", std::string(10000, 'x').c_str());
    EXPECT_LE(written, 4096);
    EXPECT_GT(written, 4000);
    ASSERT_EQ(error.lines().size(), 1U);
}

TEST(Log, NeverTearsALineOfManyThreads) {
    constexpr int kThreads = 8;
    constexpr int kLines = 500;
    StandardError error;
    set_levels("info");
    std::vector<std::thread> writers;
    for (int thread = 0; thread < kThreads; ++thread) {
        writers.emplace_back([thread] {
            // Of many lengths, up to the longest that is written whole.
            for (int line = 0; line < kLines; ++line) {
                const std::string body(static_cast<std::size_t>(line * 8 % 3900), 'a' + thread);
                __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TESSEL", "\033[0;32m%d %d %s.\033[0;m",
                             thread, line, body.c_str());
            }
        });
    }
    for (std::thread &writer : writers) {
        writer.join();
    }
    std::array<int, kThreads> next{};
    const std::regex form(R"(I/TESSEL  \( *\d+, *\d+\): (\d) (\d+) ([a-h]*)\.)");
    const auto lines = error.lines();
    for (const std::string &line : lines) {
        std::smatch parts;
        // The body is one letter; what the expression needs to see of it is its length.
        const std::size_t body = line.find_last_of(' ') + 1;
        const std::string shape = line.substr(0, body) + line.substr(line.size() - 1);
        ASSERT_TRUE(std::regex_match(shape, parts, form)) << line;
        const int thread = std::stoi(parts[1]);
        const int number = std::stoi(parts[2]);
        EXPECT_EQ(line.substr(body), std::string(static_cast<std::size_t>(number * 8 % 3900),
                                                 static_cast<char>('a' + thread)) +
                                         ".");
        EXPECT_EQ(number, next[static_cast<std::size_t>(thread)]++);
    }
    EXPECT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kLines));
}

}  // namespace
