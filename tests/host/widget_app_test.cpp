// Widget applications as processes of their own: the example, and a probe for what goes wrong.

#include <gtest/gtest.h>
#include <widget_app.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"

namespace {

const child::Environment kNoBus{{"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
                                {"TESSEL_LOG", std::nullopt}};

child::Environment with(const child::Environment &more) {
    child::Environment all = kNoBus;
    for (const auto &[name, value] : more) {
        all[name] = value;
    }
    return all;
}

std::vector<std::string> widget(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {child::program("example-widget"), "--headless"});
    return arguments;
}

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

/// The example under control.
class WidgetExample : public testing::Test {
protected:
    child::Process &start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--control");
        process_ = std::make_unique<child::Process>(widget(arguments), environment_);
        EXPECT_TRUE(process_->prints("resume"));
        return *process_;
    }
    /// One tesselctl. @return its exit status
    int control(std::vector<std::string> words) {
        words.insert(words.begin(), child::program("tesselctl"));
        child::Process process(words, environment_);
        const int status = process.wait();
        reply_ = process.output() + process.errors();
        return status;
    }
    /// Width and height of the picture that is shown, from the file's head.
    std::pair<int, int> size_of_picture() {
        const std::string file = runtime_.path() + "/picture.png";
        EXPECT_EQ(control({"screenshot", file}), 0) << reply_;
        std::ifstream stream(file, std::ios::binary);
        std::string head(24, '\0');
        stream.read(head.data(), static_cast<std::streamsize>(head.size()));
        EXPECT_EQ(head.substr(1, 3), "PNG");
        const auto number = [&head](std::size_t place) {
            int value = 0;
            for (std::size_t i = place; i < place + 4; ++i) {
                value = value * 256 + static_cast<unsigned char>(head[i]);
            }
            return value;
        };
        return {number(16), number(20)};
    }

    child::TemporaryFolder runtime_;
    child::Environment environment_ = with({{"XDG_RUNTIME_DIR", runtime_.path()}});
    std::string reply_;
    std::unique_ptr<child::Process> process_;
};

TEST_F(WidgetExample, IsShownInAWindowOfItsOwnSizeWithWhatItIsGiven) {
    child::Process &process = start({"--screen", "300x200", "--extra", "text=Hello"});
    EXPECT_EQ(size_of_picture(), std::pair(300, 200));
    ASSERT_EQ(control({"quit"}), 0);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(),
              "ready\ncreate 300x200\nshows taps: 0\nshows Hello 0\nresume\n"
              "pause\nput away\ngoodbye\n");
    EXPECT_EQ(process.errors(), "");
}

TEST_F(WidgetExample, FeelsATouch) {
    child::Process &process = start({"--screen", "300x200"});
    // Drawn, it is where it can be touched.
    EXPECT_EQ(size_of_picture(), std::pair(300, 200));
    ASSERT_EQ(control({"tap", "150", "100"}), 0);
    EXPECT_TRUE(process.prints("shows taps: 1"));
}

TEST_F(WidgetExample, IsResizedAndItsWindowWithIt) {
    child::Process &process = start({"--screen", "300x200"});
    ASSERT_EQ(control({"widget", "resize", "400", "160"}), 0) << reply_;
    EXPECT_TRUE(process.prints("resize 400x160"));
    EXPECT_EQ(size_of_picture(), std::pair(400, 160));
    // All of it is the widget's: what the button at its right end is.
    ASSERT_EQ(control({"tap", "370", "80"}), 0);
    EXPECT_TRUE(process.prints("shows taps: 1"));
}

TEST_F(WidgetExample, IsToldByUpdates) {
    child::Process &process = start({});
    ASSERT_EQ(control({"widget", "update", "text=One"}), 0) << reply_;
    ASSERT_EQ(control({"widget", "force", "text=Two"}), 0) << reply_;
    ASSERT_EQ(control({"widget", "update"}), 0) << reply_;
    EXPECT_TRUE(process.prints("update at once\nshows Two 0\nupdate\n"));
    EXPECT_TRUE(has(process.output(), "\nupdate\nshows One 0\n"));
}

TEST_F(WidgetExample, PausesWhenItIsNotSeen) {
    child::Process &process = start({});
    ASSERT_EQ(control({"widget", "pause"}), 0);
    ASSERT_EQ(control({"widget", "pause"}), 0);
    ASSERT_EQ(control({"widget", "resume"}), 0);
    ASSERT_EQ(control({"key", "home"}), 0);
    ASSERT_EQ(control({"quit"}), 0);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(),
              "ready\ncreate 360x360\nshows taps: 0\nresume\npause\nresume\npause\n"
              "put away\ngoodbye\n");
}

TEST_F(WidgetExample, NewerWidgetCoversTheOlderUntilItIsRemoved) {
    child::Process &process = start({"--screen", "300x200"});
    ASSERT_EQ(control({"widget", "add", "120", "90", "text=Two"}), 0) << reply_;
    EXPECT_EQ(size_of_picture(), std::pair(120, 90));
    ASSERT_EQ(control({"widget", "remove"}), 0) << reply_;
    EXPECT_EQ(size_of_picture(), std::pair(300, 200));
    ASSERT_EQ(control({"widget", "remove"}), 0) << reply_;
    // With the last one it ends.
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(),
              "ready\ncreate 300x200\nshows taps: 0\nresume\n"
              "pause\ncreate 120x90\nshows taps: 0\nshows Two 0\nresume\n"
              "pause\nremoved\nresume\npause\nremoved\ngoodbye\n");
}

TEST_F(WidgetExample, RequestIsOneMoreWidget) {
    child::Process &process = start({});
    ASSERT_EQ(control({"launch", "/somewhere"}), 0) << reply_;
    EXPECT_TRUE(process.prints("resume\npause\ncreate 360x360\nshows taps: 0\nresume\n"));
    ASSERT_EQ(control({"quit"}), 0);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(), "pause\nput away\nput away\ngoodbye\n")) << process.output();
}

TEST_F(WidgetExample, NonsenseIsRefusedAndCostsNothing) {
    child::Process &process = start({"--extra", "colour=no colour"});
    for (const std::vector<std::string> &words :
         std::vector<std::vector<std::string>>{{"widget"},
                                               {"widget", "dance"},
                                               {"widget", "add"},
                                               {"widget", "add", "100"},
                                               {"widget", "add", "100", "63"},
                                               {"widget", "add", "100", "100", "word"},
                                               {"widget", "resize", "100"},
                                               {"widget", "resize", "100", "99999"},
                                               {"widget", "resize", "100", "100", "100"},
                                               {"widget", "update", "=value"},
                                               {"widget", "pause", "now"},
                                               {"widget", "remove", "all"}}) {
        EXPECT_EQ(control(words), 2) << reply_;
    }
    ASSERT_EQ(control({"quit"}), 0);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_EQ(process.output(),
              "ready\ncreate 360x360\nshows taps: 0\nresume\npause\nput away\ngoodbye\n");
}

TEST(WidgetApp, SignalPutsItAway) {
    child::Process process(widget({}), kNoBus);
    ASSERT_TRUE(process.prints("resume"));
    process.send(SIGTERM);
    EXPECT_EQ(process.wait(), 0);
    EXPECT_TRUE(has(process.output(), "resume\npause\nput away\ngoodbye\n")) << process.output();
}

TEST(WidgetApp, WrongUseStartsNothingAndIsMinusTwelve) {
    child::Process process(widget({"--loop"}), kNoBus);
    EXPECT_EQ(process.wait(), 256 - 12);
    EXPECT_EQ(process.output(), "");
}

TEST(WidgetApp, ServiceHasNoWidgets) {
    const child::TemporaryFolder runtime;
    const child::Environment environment = with({{"XDG_RUNTIME_DIR", runtime.path()}});
    child::Process process({child::program("example-service"), "--control"}, environment);
    ASSERT_TRUE(process.prints("hello"));
    child::Process control({child::program("tesselctl"), "widget", "resize", "100", "100"},
                           environment);
    EXPECT_EQ(control.wait(), 1);
    EXPECT_TRUE(has(control.output() + control.errors(), "there is no such widget"));
}

struct ProbeCase {
    const char *asked;
    int status;
    const char *output;
    const char *errors;
};

class WidgetProbe : public testing::TestWithParam<ProbeCase> {};

TEST_P(WidgetProbe, IsToldWhatItIsTold) {
    child::Process process({child::program("widget-probe"), "--headless"},
                           with({{"PROBE", GetParam().asked}}));
    EXPECT_EQ(process.wait(), GetParam().status);
    EXPECT_EQ(process.output(), GetParam().output);
    EXPECT_EQ(process.errors(), GetParam().errors);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WidgetProbe,
    testing::Values(
        ProbeCase{"null-class", 0, "create class\nreturned none\n", ""},
        ProbeCase{"exit", 0,
                  "create class\nsecond class null Operation already in progress\n"
                  "create with null\ndestroy temporary\n"
                  "terminate, context invalid parameter\nreturned none\n",
                  ""},
        ProbeCase{"fail", 1,
                  "create class\nsecond class null Operation already in progress\n"
                  "create with null\ndestroy temporary\n"
                  "terminate, context invalid parameter\nreturned fault\n",
                  "tessel: the widget could not be made\n"},
        ProbeCase{"tags", 0,
                  "create class\nsecond class null Operation already in progress\n"
                  "create with null\nget none null\nset none\nget none own\n"
                  "get nowhere invalid parameter\nget of nothing invalid parameter left alone\n"
                  "set of null invalid parameter\ndestroy temporary\n"
                  "terminate, context invalid parameter\nreturned none\n",
                  ""},
        ProbeCase{"windows", 0,
                  "create class\nsecond class null Operation already in progress\n"
                  "create with null\nwindow nowhere invalid parameter\n"
                  "window of null invalid parameter\nwindow none\nagain none the same\n"
                  "not shown\nsize 360x360\ndeleted fault\ndestroy temporary\n"
                  "terminate, context invalid parameter\nreturned none\n",
                  ""}));

TEST(WidgetAppMain, RefusesNullArguments) {
    char name[] = "widget";
    char *argv[] = {name, nullptr};
    widget_app_lifecycle_callback_s callbacks{};
    EXPECT_EQ(widget_app_main(1, argv, nullptr, nullptr), WIDGET_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(widget_app_main(1, nullptr, &callbacks, nullptr), WIDGET_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(widget_app_main(1, argv, &callbacks, nullptr), WIDGET_ERROR_INVALID_PARAMETER);
}

TEST(WidgetClass, IsMadeInsideAWidgetApplicationAlone) {
    errno = 0;
    EXPECT_EQ(widget_app_class_create({}, nullptr), nullptr);
    EXPECT_EQ(errno, EINVAL);
}

}  // namespace
