// The service example as a process of its own: its life, its requests, its events.

#include <gtest/gtest.h>
#include <service_app.h>

#include <csignal>
#include <string>
#include <vector>

#include "child_process.h"

namespace {

const child::Environment kNoBus{{"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
                                {"XDG_RUNTIME_DIR", std::nullopt},
                                // It needs no display, and touches none.
                                {"DISPLAY", ":987"},
                                {"ELM_ENGINE", std::nullopt},
                                {"TESSEL_LOG", std::nullopt}};

std::vector<std::string> service(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), child::program("example-service"));
    return arguments;
}

TEST(ServiceApp, RunsFromItsFirstRequestToItsOwnEnd) {
    child::Process process(service({"--extra", "name=Ada", "--extra", "stop=yes"}), kNoBus);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(), "ready\nhello Ada\ngoodbye\n");
    EXPECT_EQ(process.errors(), "");
}

TEST(ServiceApp, NeedsNothingNamedToPlay) {
    child::Process process(service({}), kNoBus);
    ASSERT_TRUE(process.prints("hello world"));
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(), "ready\nhello world\ngoodbye\n");
    EXPECT_EQ(process.errors(), "");
}

TEST(ServiceApp, WrongUseStartsNothing) {
    child::Process process(service({"--loop"}), kNoBus);
    EXPECT_EQ(process.wait(), 2);
    EXPECT_EQ(process.output(), "");
}

TEST(ServiceApp, LaterStartIsARequestToTheOneThatRuns) {
    const child::Bus bus;
    child::Environment environment = kNoBus;
    environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
    child::Process first(service({"--extra", "name=Ada"}), environment);
    ASSERT_TRUE(first.prints("hello Ada"));
    child::Process second(service({"--extra", "name=Bob"}), environment);
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(second.output(), "");
    ASSERT_TRUE(first.prints("hello again Bob"));
    child::Process third(service({"--extra", "stop=yes"}), environment);
    EXPECT_EQ(third.wait(), 0);
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(first.output(), "ready\nhello Ada\nhello again Bob\nhello again world\ngoodbye\n");
}

TEST(ServiceApp, EventReachesItsHandler) {
    const child::TemporaryFolder runtime;
    child::Environment environment = kNoBus;
    environment["XDG_RUNTIME_DIR"] = runtime.path();
    child::Process process(service({"--control"}), environment);
    ASSERT_TRUE(process.prints("hello"));
    child::Process control({child::program("tesselctl"), "event", "low-battery"}, environment);
    EXPECT_EQ(control.wait(), 0) << control.errors();
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(), "ready\nhello world\nlow battery\ngoodbye\n");
}

TEST(ServiceAppMain, RefusesNullArguments) {
    char name[] = "service";
    char *argv[] = {name, nullptr};
    service_app_lifecycle_callback_s callbacks{};
    EXPECT_EQ(service_app_main(1, argv, nullptr, nullptr), APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(service_app_main(1, nullptr, &callbacks, nullptr), APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(service_app_main(-1, argv, &callbacks, nullptr), APP_ERROR_INVALID_PARAMETER);
}

TEST(ServiceEvents, RefuseWhatIsNoRegistration) {
    app_event_handler_h handler = nullptr;
    const app_event_cb nothing = [](app_event_info_h, void *) {};
    EXPECT_EQ(service_app_add_event_handler(nullptr, APP_EVENT_LOW_BATTERY, nothing, nullptr),
              APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(service_app_add_event_handler(&handler, APP_EVENT_LOW_BATTERY, nullptr, nullptr),
              APP_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(service_app_remove_event_handler(nullptr), APP_ERROR_INVALID_PARAMETER);
}

}  // namespace
