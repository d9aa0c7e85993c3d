#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// The log as records. The tests' own `__dlog_print` hands every call to record(); a record takes
/// the line apart and says whether it has the required form.
namespace logs {

inline constexpr std::string_view player_tag = "TESSEL";
inline constexpr std::string_view framework_tag = "WAPP";

struct Line {
    int level = 0;
    std::string tag;
    std::string raw;           ///< the whole line as rendered
    std::string file;          ///< base name of the source
    std::string function;      ///< name of the function
    int number = 0;            ///< line in the source
    std::string message;       ///< what stands between colour and reset
    bool well_formed = false;  ///< prefix, colour of the level and reset are as required
    std::thread::id thread;
};

/// Any thread.
void record(int log_id, int level, std::string_view tag, std::string raw);
/// A copy of all lines since the last clear(). Any thread.
std::vector<Line> all();
void clear();

/// Number of well-formed lines of this level, tag and message. A message is matched to the letter.
int count(int level, std::string_view message, std::string_view tag = player_tag);

/// One expected line, for logged_in_order().
struct Expected {
    int level;
    std::string message;
};

Expected info(std::string message);
Expected warn(std::string message);
/// The prefix "* Critical * " belongs to the message.
Expected error(std::string message);

}  // namespace logs

/// Assertions, to the letter: EXPECT_TRUE(LoggedError("* Critical * ...")). A failure lists the
/// log.
testing::AssertionResult LoggedInfo(std::string_view message,
                                    std::string_view tag = logs::player_tag);
testing::AssertionResult LoggedWarn(std::string_view message,
                                    std::string_view tag = logs::player_tag);
testing::AssertionResult LoggedError(std::string_view message,
                                     std::string_view tag = logs::player_tag);
/// Exactly this often, at this level (DLOG_INFO, DLOG_WARN, DLOG_ERROR).
testing::AssertionResult LoggedTimes(int times, int level, std::string_view message,
                                     std::string_view tag = logs::player_tag);
/// In a function of this name, at least once.
testing::AssertionResult LoggedIn(std::string_view function, int level, std::string_view message,
                                  std::string_view tag = logs::player_tag);
/// In this order, other lines between them allowed.
testing::AssertionResult LoggedInOrder(const std::vector<logs::Expected> &lines,
                                       std::string_view tag = logs::player_tag);
/// No line with a message that contains this text, at any level, under any tag.
testing::AssertionResult NotLogged(std::string_view part);
/// No line at warning or error level under the tag.
testing::AssertionResult NoFaultLogged(std::string_view tag = logs::player_tag);
/// The lines at warning and error level under the tag are exactly these, in this order.
testing::AssertionResult OnlyFaultsLogged(const std::vector<logs::Expected> &lines,
                                          std::string_view tag = logs::player_tag);
