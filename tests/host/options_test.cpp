// The command line, as a table: what each form asks for, and the one line that a wrong one earns.

#include "app/options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/command_line.h"

namespace {

using host::CommandLineEnd;
using host::Options;

std::variant<Options, CommandLineEnd> parse(std::vector<const char *> arguments) {
    arguments.insert(arguments.begin(), "tessel");
    return host::parse_command_line(static_cast<int>(arguments.size()), arguments.data());
}

Options accepted(const std::vector<const char *> &arguments) {
    auto parsed = parse(arguments);
    if (const auto *end = std::get_if<CommandLineEnd>(&parsed)) {
        ADD_FAILURE() << end->text;
        return {};
    }
    return std::get<Options>(parsed);
}

struct Wrong {
    std::vector<const char *> arguments;
    const char *text;
};

class WrongCommandLine : public testing::TestWithParam<Wrong> {};

TEST_P(WrongCommandLine, EndsWithStatusTwoAndOneClearLine) {
    const auto parsed = parse(GetParam().arguments);
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
    const auto &end = std::get<CommandLineEnd>(parsed);
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.text, std::string("tessel: ") + GetParam().text + " (see tessel --help)\n");
}

constexpr const char *kLogText =
    "--log needs a level (verbose, debug, info, warn, error, fatal, off), not ";

INSTANTIATE_TEST_SUITE_P(
    Table, WrongCommandLine,
    testing::Values(
        Wrong{{"--service", "clip.mp4"},
              "--service takes its video, and its place, from the session bus"},
        Wrong{{"--new-instance", "--service"},
              "--service takes its video, and its place, from the session bus"},
        Wrong{{"--loop"}, "unknown option '--loop'"}, Wrong{{"-v"}, "unknown option '-v'"},
        Wrong{{"--loop=3", "a.mp4"}, "unknown option '--loop'"},
        Wrong{{"a.mp4", "b.mp4"}, "only one path or URI can be played; 'b.mp4' is one too many"},
        Wrong{{""}, "the path or URI is empty"},
        Wrong{{"--operation"}, "--operation needs a value"},
        Wrong{{"--mime"}, "--mime needs a value"}, Wrong{{"--extra"}, "--extra needs a value"},
        Wrong{{"--extra", "colour"}, "--extra needs KEY=VALUE, not 'colour'"},
        Wrong{{"--extra", "=red"}, "--extra needs KEY=VALUE, not '=red'"},
        Wrong{{"--extra", "__x=1"}, "--extra can't set the reserved key '__x'"},
        Wrong{{"--screen"}, "--screen needs a value"},
        Wrong{{"--screen", "360"}, "--screen needs WIDTHxHEIGHT, as in 360x360, not '360'"},
        Wrong{{"--screen", "360x"}, "--screen needs WIDTHxHEIGHT, as in 360x360, not '360x'"},
        Wrong{{"--screen", "3x6x0"}, "--screen needs WIDTHxHEIGHT, as in 360x360, not '3x6x0'"},
        Wrong{{"--screen", "0x360"}, "--screen needs sides of 64 to 8192 pixels, not '0x360'"},
        Wrong{{"--screen", "360x-1"}, "--screen needs sides of 64 to 8192 pixels, not '360x-1'"},
        Wrong{{"--screen", "9000x90"}, "--screen needs sides of 64 to 8192 pixels, not '9000x90'"},
        Wrong{{"--scale"}, "--scale needs a value"},
        Wrong{{"--scale", "big"}, "--scale needs a factor of 0.5 to 4, as in 1.5, not 'big'"},
        Wrong{{"--scale", "2x"}, "--scale needs a factor of 0.5 to 4, as in 1.5, not '2x'"},
        Wrong{{"--scale", "0.49"}, "--scale needs a factor of 0.5 to 4, as in 1.5, not '0.49'"},
        Wrong{{"--scale", "4.01"}, "--scale needs a factor of 0.5 to 4, as in 1.5, not '4.01'"},
        Wrong{{"--scale", "nan"}, "--scale needs a factor of 0.5 to 4, as in 1.5, not 'nan'"},
        Wrong{{"--scale", ""}, "--scale needs a factor of 0.5 to 4, as in 1.5, not ''"},
        Wrong{{"--scale", "0.5", "--screen", "100x360"},
              "--scale makes a screen of 50x180: its sides need 64 to 8192 pixels"},
        Wrong{{"--screen", "4000x4000", "--scale=4"},
              "--scale makes a screen of 16000x16000: its sides need 64 to 8192 pixels"},
        Wrong{{"--frame"}, "--frame needs a value"},
        Wrong{{"--frame", "square"}, "--frame knows none and watch only, not 'square'"},
        Wrong{{"--frame", ""}, "--frame knows none and watch only, not ''"},
        Wrong{{"--profile", "phone"}, "--profile knows watch only, not 'phone'"},
        Wrong{{"--profile"}, "--profile needs a value"},
        Wrong{{"--headless=yes"}, "--headless takes no value"},
        Wrong{{"--help=yes"}, "--help takes no value"},
        Wrong{{"--two\nlines"}, "unknown option '--two?lines'"},
        Wrong{{"--screenshot", "a.png"},
              "--screenshot needs FILE@SECONDS, as in shot.png@2.5, not 'a.png'"},
        Wrong{{"--screenshot", "@2"},
              "--screenshot needs FILE@SECONDS, as in shot.png@2.5, not '@2'"},
        Wrong{{"--screenshot", "a.png@-1"},
              "--screenshot needs FILE@SECONDS, as in shot.png@2.5, not 'a.png@-1'"},
        Wrong{{"--screenshot", "a.png@inf"},
              "--screenshot needs FILE@SECONDS, as in shot.png@2.5, not 'a.png@inf'"}));

class WrongLogLevel : public testing::TestWithParam<const char *> {};

TEST_P(WrongLogLevel, IsNamedInTheLine) {
    const auto parsed = parse({"--log", GetParam()});
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
    EXPECT_EQ(std::get<CommandLineEnd>(parsed).text,
              std::string("tessel: ") + kLogText + "'" + GetParam() + "' (see tessel --help)\n");
}

INSTANTIATE_TEST_SUITE_P(Table, WrongLogLevel,
                         testing::Values("loud", "info,", "TESSEL:", ":info", "a:b:c", ""));

TEST(Options, NothingGivenMeansDefaults) {
    const Options options = accepted({});
    EXPECT_FALSE(options.target);
    EXPECT_FALSE(options.operation);
    EXPECT_FALSE(options.mime);
    EXPECT_TRUE(options.extras.empty());
    EXPECT_EQ(options.screen.width, 360);
    EXPECT_EQ(options.screen.height, 360);
    EXPECT_FALSE(options.fullscreen || options.headless || options.control ||
                 options.new_instance || options.watch_profile);
    EXPECT_FALSE(options.log);
    EXPECT_FALSE(options.screenshot);
}

TEST(Options, AllOfThemAreRead) {
    const Options options = accepted({"--operation",  "play",
                                      "--mime",       "video/mp4",
                                      "--extra",      "a=1",
                                      "--extra",      "b==",
                                      "--screen",     "454x454",
                                      "--fullscreen", "--headless",
                                      "--control",    "--new-instance",
                                      "--profile",    "watch",
                                      "--log",        "warn,TESSEL:debug",
                                      "--screenshot", "a@b.png@2.5",
                                      "clip.mp4"});
    EXPECT_EQ(options.operation, "play");
    EXPECT_EQ(options.mime, "video/mp4");
    const std::vector<std::pair<std::string, std::string>> extras{{"a", "1"}, {"b", "="}};
    EXPECT_EQ(options.extras, extras);
    EXPECT_EQ(options.screen.width, 454);
    EXPECT_TRUE(options.fullscreen && options.headless && options.control && options.new_instance &&
                options.watch_profile);
    EXPECT_EQ(options.log, "warn,TESSEL:debug");
    ASSERT_TRUE(options.screenshot);
    EXPECT_EQ(options.screenshot->file, "a@b.png");
    EXPECT_DOUBLE_EQ(options.screenshot->seconds, 2.5);
    EXPECT_EQ(options.target, "clip.mp4");
}

TEST(Options, TheScreenIsShownLargerByTheScale) {
    const Options::Size shown = accepted({"--screen", "361x360", "--scale", "1.5"}).shown_screen();
    EXPECT_EQ(shown.width, 542);
    EXPECT_EQ(shown.height, 540);
    EXPECT_EQ(accepted({}).shown_screen().width, 360);
    EXPECT_EQ(accepted({"--scale=4"}).shown_screen().width, 1440);
    EXPECT_EQ(accepted({"--scale=.5"}).shown_screen().width, 180);
}

TEST(Options, AWatchIsAroundTheScreenUnlessItIsFullOrNotWanted) {
    EXPECT_TRUE(accepted({}).framed());
    EXPECT_FALSE(accepted({"--frame", "none"}).framed());
    EXPECT_FALSE(accepted({"--fullscreen"}).framed());
    EXPECT_TRUE(accepted({"--fullscreen", "--frame", "watch"}).framed());
}

TEST(Options, AServiceHasNoVideoYet) {
    EXPECT_TRUE(accepted({"--service"}).service);
    EXPECT_FALSE(accepted({}).service);
}

TEST(Options, AValueMayFollowAnEqualsSign) {
    const Options options = accepted({"--screen=100x200", "--extra=a=b"});
    EXPECT_EQ(options.screen.height, 200);
    ASSERT_EQ(options.extras.size(), 1U);
    EXPECT_EQ(options.extras[0].second, "b");
}

TEST(Options, TheTargetMayStandBeforeTheOptions) {
    const Options options = accepted({"clip.mp4", "--headless"});
    EXPECT_EQ(options.target, "clip.mp4");
    EXPECT_TRUE(options.headless);
}

TEST(Options, AfterTwoDashesAnythingIsATarget) {
    EXPECT_EQ(accepted({"--", "--headless"}).target, "--headless");
}

TEST(Options, HelpNamesEveryOptionAndSucceeds) {
    const auto parsed = parse({"--help"});
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
    const auto &end = std::get<CommandLineEnd>(parsed);
    EXPECT_EQ(end.status, 0);
    EXPECT_TRUE(end.text.starts_with("Usage: tessel [OPTION]... [PATH or URI]\nPlays one video "));
    for (const char *name : {"--operation", "--mime", "--extra", "--screen", "--scale", "--frame",
                             "--fullscreen", "--headless", "--control", "--new-instance",
                             "--profile", "--log", "--screenshot", "--help", "--version"}) {
        EXPECT_NE(end.text.find(name), std::string::npos) << name;
    }
}

TEST(Options, VersionIsOneLine) {
    const auto parsed = parse({"--version", "--nonsense"});
    ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(parsed));
    EXPECT_EQ(std::get<CommandLineEnd>(parsed).status, 0);
    EXPECT_TRUE(std::get<CommandLineEnd>(parsed).text.starts_with("tessel "));
}

}  // namespace
