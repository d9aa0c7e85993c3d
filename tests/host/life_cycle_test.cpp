// Whole processes: in which order the life cycle calls an application, what ends it, and with which
// status.

#include <app.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/lifecycle.h"
#include "child_process.h"

namespace {

const child::Environment kNoBus{{"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
                                {"XDG_RUNTIME_DIR", std::nullopt},
                                {"TESSEL_LOG", std::nullopt}};

child::Environment with(const child::Environment &more) {
    child::Environment all = kNoBus;
    for (const auto &[name, value] : more) {
        all[name] = value;
    }
    return all;
}

std::vector<std::string> probe(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), child::program("life-cycle-probe"));
    return arguments;
}

// The first words of the probe's lines, which name the calls.
std::string calls(const std::string &output) {
    std::string result;
    std::size_t begin = 0;
    while (begin < output.size()) {
        const std::size_t end = output.find('\n', begin);
        const std::string line = output.substr(begin, end - begin);
        const std::string word = line.substr(0, line.find(' '));
        if (word != "language") {
            result += (result.empty() ? "" : " ") + word;
        }
        begin = end == std::string::npos ? output.size() : end + 1;
    }
    return result;
}

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

class ExitSignal : public testing::TestWithParam<int> {};

TEST_P(ExitSignal, EndsThroughTerminateWithSuccess) {
    child::Process process(probe({"--headless", "clip.mp4"}), kNoBus);
    ASSERT_TRUE(process.prints("resume"));
    process.send(GetParam());
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(calls(process.output()), "create control resume terminate returned");
}

INSTANTIATE_TEST_SUITE_P(Table, ExitSignal, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(LifeCycle, ASignalDuringTheStartEndsItTooAndMoreThanOneDoesNoHarm) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CREATE", "signals"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(), "terminate"));
    EXPECT_TRUE(has(process.output(), "returned 0"));
}

TEST(LifeCycle, AnExitInCreateEndsBeforeTheRequest) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CREATE", "exit"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(calls(process.output()), "create terminate returned");
}

TEST(LifeCycle, TheStartLeavesTheEnvironmentAloneOnceThereAreThreads) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CREATE", "exit"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_FALSE(has(process.output(), "changed beside threads")) << process.output();
}

TEST(LifeCycle, ACreateThatRefusesIsTheLastCall) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CREATE", "refuse"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(calls(process.output()), "create returned");
}

TEST(LifeCycle, LeavingTheForegroundIsAPause) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CONTROL", "home"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(calls(process.output()), "create control resume pause terminate returned");
}

TEST(LifeCycle, APathIsMadeAbsoluteAndTakenLiterally) {
    const child::TemporaryFolder folder;
    child::Process process(probe({"--headless", "a b%20\xc3\xa9.mp4"}),
                           with({{"PROBE_CONTROL", "complete"}}), folder.path());
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(
        has(process.output(), "control operation appcontrol/operation/view uri (none) path " +
                                  folder.path() + "/a b%20\xc3\xa9.mp4 mime (none)"))
        << process.output();
}

TEST(LifeCycle, ARequestCarriesWhatTheOptionsSay) {
    child::Process process(probe({"--headless", "--operation", "op", "--mime", "video/mp4",
                                  "--extra", "colour=red", "file:///a%20b.mp4"}),
                           with({{"PROBE_CONTROL", "complete"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(),
                    "control operation op uri file:///a b.mp4 path (none) mime "
                    "video/mp4 colour red"))
        << process.output();
}

TEST(LifeCycle, AnotherUriGoesInAsItIs) {
    child::Process process(probe({"--headless", "http://h/a%20b"}),
                           with({{"PROBE_CONTROL", "complete"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(), "uri http://h/a%20b path (none)")) << process.output();
}

TEST(ExitStatus, IsOneWithALineWhenNothingIsNamed) {
    child::Process process(probe({"--headless"}), with({{"PROBE_CONTROL", "exit"}}));
    EXPECT_EQ(process.wait(), 1);
    EXPECT_EQ(process.errors(),
              "tessel: nothing to play: the request has neither a URI nor a path\n");
    EXPECT_TRUE(has(process.output(), "control operation appcontrol/operation/default uri (none)"));
}

TEST(ExitStatus, IsOneWithTheReasonAfterAFailure) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CONTROL", "fail"}}));
    EXPECT_EQ(process.wait(), 1);
    EXPECT_EQ(process.errors(), "tessel: cannot play clip.mp4: no such file\n");
}

TEST(ExitStatus, IsZeroWhenACompletionFollowedTheFailure) {
    child::Process process(probe({"--headless", "clip.mp4"}),
                           with({{"PROBE_CONTROL", "complete"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.errors(), "");
}

TEST(ExitStatus, IsTwoForWrongUseAndNothingIsStarted) {
    child::Process process(probe({"--headless", "--loop"}), kNoBus);
    EXPECT_EQ(process.wait(), 2);
    EXPECT_EQ(process.errors(), "tessel: unknown option '--loop' (see tessel --help)\n");
    EXPECT_EQ(calls(process.output()), "returned");
}

TEST(ExitStatus, IsOneWithALineWhenThereIsNoSuchDisplay) {
    child::Process process(probe({"clip.mp4"}),
                           with({{"DISPLAY", ":987"}, {"ELM_ENGINE", std::nullopt}}));
    EXPECT_EQ(process.wait(), 1);
    EXPECT_EQ(calls(process.output()), "returned");
    EXPECT_TRUE(process.errors().starts_with("tessel: ")) << process.errors();
}

TEST(ExitStatus, HelpGoesToStandardOutput) {
    child::Process process(probe({"--help"}), kNoBus);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(process.output().starts_with("Usage: life-cycle-probe "));
    EXPECT_FALSE(has(process.output(), "Plays one video"));
    EXPECT_EQ(process.errors(), "");
}

struct LogCase {
    std::vector<std::string> options;
    std::optional<std::string> variable;
    bool logged;
};

class LogOfAProcess : public testing::TestWithParam<LogCase> {};

TEST_P(LogOfAProcess, IsWrittenOnlyWhenAskedFor) {
    std::vector<std::string> arguments{"--headless", "clip.mp4"};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    child::Process process(probe(arguments),
                           with({{"TESSEL_LOG", GetParam().variable}, {"PROBE_CREATE", "exit"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(has(process.errors(), "I/PROBE   ("), GetParam().logged) << process.errors();
    if (!GetParam().logged) {
        EXPECT_EQ(process.errors(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Table, LogOfAProcess,
                         testing::Values(LogCase{{}, std::nullopt, false},
                                         LogCase{{"--log", "PROBE:info"}, std::nullopt, true},
                                         LogCase{{}, "PROBE:info", true},
                                         LogCase{{"--log", "off"}, "info", false},
                                         LogCase{{"--log", "PROBE:info"}, "off", true}));

TEST(LogEnvironment, ThatIsNotUnderstoodIsSaidSo) {
    child::Process process(probe({"--headless", "clip.mp4"}),
                           with({{"TESSEL_LOG", "loud"}, {"PROBE_CREATE", "exit"}}));
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.errors(),
              "tessel: TESSEL_LOG is not understood, nothing is logged: 'loud'\n");
}

TEST(Headless, APopupThatWaitsIsClosedByTheBackKey) {
    child::Process process(probe({"--headless", "clip.mp4"}), with({{"PROBE_CREATE", "popup"}}));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(calls(process.output()), "create control resume back terminate returned");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

struct LocaleCase {
    child::Environment environment;
    const char *expected;
};

class StartLocale : public testing::TestWithParam<LocaleCase> {};

TEST_P(StartLocale, CanBeTranslatedAndDrawn) {
    const child::TemporaryFolder config;
    child::Environment environment = with({{"LANGUAGE", std::nullopt},
                                           {"LC_ALL", std::nullopt},
                                           {"LC_MESSAGES", std::nullopt},
                                           {"LC_CTYPE", std::nullopt},
                                           {"LANG", std::nullopt},
                                           {"XDG_CONFIG_HOME", config.path()},
                                           {"PROBE_CREATE", "exit"}});
    for (const auto &[name, value] : GetParam().environment) {
        environment[name] = value;
    }
    child::Process process(probe({"--headless", "clip.mp4"}), environment);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(), GetParam().expected)) << process.output();
}

INSTANTIATE_TEST_SUITE_P(
    Table, StartLocale,
    testing::Values(
        LocaleCase{{}, "language en messages C.UTF-8 letters C.UTF-8 numbers C domain tessel"},
        LocaleCase{{{"LC_ALL", "C"}},
                   "language en messages C.UTF-8 letters C.UTF-8 numbers C domain tessel"},
        LocaleCase{{{"LANG", "POSIX"}},
                   "language en messages C.UTF-8 letters C.UTF-8 numbers C domain tessel"},
        LocaleCase{{{"LC_ALL", "C.UTF-8"}},
                   "language en messages C.UTF-8 letters C.UTF-8 numbers C domain tessel"},
        LocaleCase{{{"LC_ALL", "xx_YY.UTF-8"}},
                   "language xx_YY:en messages C.UTF-8 letters C.UTF-8 numbers C domain tessel"},
        LocaleCase{{{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", "fr:de"}},
                   "language fr:de:en messages C.UTF-8 letters C.UTF-8 numbers C domain tessel"}));

TEST(Events, ReachTheHandlersOfTheirTypeUntilTheyAreRemoved) {
    int low = 0;
    int language = 0;
    const app_event_cb count = [](app_event_info_h info, void *counter) {
        EXPECT_NE(info, nullptr);
        ++*static_cast<int *>(counter);
    };
    app_event_handler_h first = nullptr;
    app_event_handler_h second = nullptr;
    ASSERT_EQ(ui_app_add_event_handler(&first, APP_EVENT_LOW_BATTERY, count, &low), APP_ERROR_NONE);
    ASSERT_EQ(ui_app_add_event_handler(&second, APP_EVENT_LANGUAGE_CHANGED, count, &language),
              APP_ERROR_NONE);
    host::raise_app_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(low, 1);
    EXPECT_EQ(language, 0);
    EXPECT_EQ(ui_app_remove_event_handler(first), APP_ERROR_NONE);
    host::raise_app_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(low, 1);
    EXPECT_EQ(ui_app_remove_event_handler(first), APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(ui_app_remove_event_handler(second), APP_ERROR_NONE);
}

TEST(Events, AHandlerMayRemoveTheOneAfterIt) {
    struct Pair {
        app_event_handler_h next = nullptr;
        int calls = 0;
    } pair;
    app_event_handler_h first = nullptr;
    ui_app_add_event_handler(
        &first, APP_EVENT_LOW_MEMORY,
        [](app_event_info_h, void *data) {
            ui_app_remove_event_handler(static_cast<Pair *>(data)->next);
        },
        &pair);
    ui_app_add_event_handler(
        &pair.next, APP_EVENT_LOW_MEMORY,
        [](app_event_info_h, void *data) { ++static_cast<Pair *>(data)->calls; }, &pair);
    host::raise_app_event(APP_EVENT_LOW_MEMORY);
    EXPECT_EQ(pair.calls, 0);
    EXPECT_EQ(ui_app_remove_event_handler(first), APP_ERROR_NONE);
}

TEST(Events, RefuseWhatIsNoRegistration) {
    app_event_handler_h handler = nullptr;
    const app_event_cb nothing = [](app_event_info_h, void *) {};
    EXPECT_EQ(ui_app_add_event_handler(nullptr, APP_EVENT_LOW_BATTERY, nothing, nullptr),
              APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(ui_app_add_event_handler(&handler, APP_EVENT_LOW_BATTERY, nullptr, nullptr),
              APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(
        ui_app_add_event_handler(&handler, static_cast<app_event_type_e>(77), nothing, nullptr),
        APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(ui_app_remove_event_handler(nullptr), APP_ERROR_INVALID_PARAMETER);
}

TEST(Identity, NamesTheApplicationAndItsFolders) {
    char *id = nullptr;
    ASSERT_EQ(app_get_id(&id), APP_ERROR_NONE);
    EXPECT_STREQ(id, "com.orvane.tessel");
    std::free(id);
    EXPECT_EQ(app_get_id(nullptr), APP_ERROR_INVALID_PARAMETER);
    const std::unique_ptr<char, decltype(&std::free)> own(app_get_resource_path(), &std::free);
    const std::unique_ptr<char, decltype(&std::free)> shared(app_get_shared_resource_path(),
                                                             &std::free);
    EXPECT_EQ(std::string(own.get()), std::string(TESSEL_STAGE_DATADIR) + "/res/");
    EXPECT_EQ(std::string(shared.get()), std::string(TESSEL_STAGE_DATADIR) + "/shared/");
}

TEST(UiAppMain, RefusesNullArguments) {
    char name[] = "tessel";
    char *argv[] = {name, nullptr};
    ui_app_lifecycle_callback_s callbacks{};
    EXPECT_EQ(ui_app_main(1, argv, nullptr, nullptr), APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(ui_app_main(1, nullptr, &callbacks, nullptr), APP_ERROR_INVALID_PARAMETER);
}

}  // namespace
