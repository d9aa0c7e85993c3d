// What a real server answered as things were plugged into a card of it: recorded/README.md. These
// answers hold what composed ones may get wrong: names of properties, which port the server takes
// for the active one, which ports have no detection.

#include <gmock/gmock.h>
#include <sound_manager.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "sink_answer.h"
#include "sound/pulse/outputs.h"

namespace {

using host::sound::pulse::changes_between;
using host::sound::pulse::devices_of;
using host::sound::pulse::level_of;
using host::sound::pulse::Outputs;
using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr bool as_watch = true;

const std::string speaker = "Built-in Audio Analog Stereo";
const std::string headphones = "Built-in Audio Analog Stereo: Headphones";
const std::string screen = "Built-in Audio HDMI: HDMI / DisplayPort";
const std::string set = "Kitchen headset";

/// The numbers behind the names that pactl prints.
int port_type(const std::string &name) {
    static const std::map<std::string, int> types = {{"Speaker", PA_DEVICE_PORT_TYPE_SPEAKER},
                                                     {"Headphones", PA_DEVICE_PORT_TYPE_HEADPHONES},
                                                     {"HDMI", PA_DEVICE_PORT_TYPE_HDMI},
                                                     {"Bluetooth", PA_DEVICE_PORT_TYPE_BLUETOOTH}};
    return types.at(name);
}

int availability(const std::string &name) {
    static const std::map<std::string, int> states = {
        {"available", PA_PORT_AVAILABLE_YES},
        {"not available", PA_PORT_AVAILABLE_NO},
        {"availability unknown", PA_PORT_AVAILABLE_UNKNOWN}};
    return states.at(name);
}

SinkAnswer answer_from(const json &sink) {
    SinkAnswer answer;
    answer.name = sink.at("name");
    answer.description = sink.at("description");
    answer.properties = sink.at("properties").get<std::map<std::string, std::string>>();
    for (const json &port : sink.at("ports")) {
        answer.ports.push_back({port.at("name"), port.at("description"), port_type(port.at("type")),
                                availability(port.at("availability"))});
    }
    answer.active_port = sink.at("active_port");
    answer.volume.clear();
    for (const json &channel : sink.at("volume")) {
        answer.volume.push_back(channel.at("value"));
    }
    answer.muted = sink.at("mute");
    return answer;
}

Outputs recorded(const std::string &name) {
    std::ifstream file(TESSEL_RECORDINGS "/" + name + ".json");
    const json answers = json::parse(file);
    Outputs outputs;
    outputs.default_name = answers.at("default_sink_name");
    for (const json &sink : answers.at("sinks")) {
        outputs.sinks.push_back(answer_from(sink).read());
    }
    return outputs;
}

using Shown = std::pair<int, std::string>;  // type, name

std::vector<Shown> shown(const std::string &recording, bool watch_profile) {
    std::vector<Shown> all;
    for (const auto &known : devices_of(recorded(recording), watch_profile)) {
        all.emplace_back(known.device.type, known.device.name);
    }
    return all;
}

using Change = std::tuple<bool, int, std::string>;  // connected, type, name

std::vector<Change> changes(const std::string &before, const std::string &after,
                            bool watch_profile) {
    std::vector<Change> all;
    for (const auto &change : changes_between(devices_of(recorded(before), watch_profile),
                                              devices_of(recorded(after), watch_profile))) {
        all.emplace_back(change.connected, change.device.type, change.device.name);
    }
    return all;
}

struct Row {
    std::string recording;
    std::vector<Shown> devices;
    std::vector<Shown> devices_on_watch;
};

std::ostream &operator<<(std::ostream &stream, const Row &row) {
    return stream << row.recording;
}

class RecordedOutputs : public testing::TestWithParam<Row> {};

TEST_P(RecordedOutputs, AreTheseDevices) {
    const Row &row = GetParam();
    EXPECT_THAT(shown(row.recording, !as_watch), testing::UnorderedElementsAreArray(row.devices));
    EXPECT_THAT(shown(row.recording, as_watch),
                testing::UnorderedElementsAreArray(row.devices_on_watch));
}

const Shown built_in{SOUND_DEVICE_BUILTIN_SPEAKER, speaker};
const Shown sounding{SOUND_DEVICE_USB_AUDIO, speaker};
const Shown in_jack{SOUND_DEVICE_AUDIO_JACK, headphones};
const Shown on_screen{SOUND_DEVICE_HDMI, screen};
const Shown by_radio{SOUND_DEVICE_BLUETOOTH, set};

INSTANTIATE_TEST_SUITE_P(
    Every, RecordedOutputs,
    testing::Values(
        Row{"nothing_plugged", {sounding, by_radio}, {built_in, by_radio}},
        Row{"headphones_in", {in_jack, built_in, by_radio}, {in_jack, built_in, by_radio}},
        Row{"headphones_out", {sounding, by_radio}, {built_in, by_radio}},
        Row{"screen_in", {sounding, on_screen, by_radio}, {built_in, on_screen, by_radio}},
        Row{"screen_sounds", {built_in, on_screen, by_radio}, {built_in, on_screen, by_radio}},
        // The server sends the sound to headphones that it can't tell to be there.
        Row{"headphones_undetected",
            {in_jack, built_in, on_screen, by_radio},
            {in_jack, built_in, on_screen, by_radio}}),
    [](const auto &info) { return info.param.recording; });

TEST(RecordedChanges, HeadphonesComeAndGoAsOneDeviceOnAWatch) {
    EXPECT_THAT(changes("nothing_plugged", "headphones_in", as_watch),
                ElementsAre(Change{true, SOUND_DEVICE_AUDIO_JACK, headphones}));
    EXPECT_THAT(changes("headphones_in", "headphones_out", as_watch),
                ElementsAre(Change{false, SOUND_DEVICE_AUDIO_JACK, headphones}));
}

TEST(RecordedChanges, SpeakerIsNoExternalDeviceWhileHeadphonesSound) {
    EXPECT_THAT(changes("nothing_plugged", "headphones_in", !as_watch),
                UnorderedElementsAre(Change{false, SOUND_DEVICE_USB_AUDIO, speaker},
                                     Change{true, SOUND_DEVICE_BUILTIN_SPEAKER, speaker},
                                     Change{true, SOUND_DEVICE_AUDIO_JACK, headphones}));
    EXPECT_THAT(changes("headphones_in", "headphones_out", !as_watch),
                UnorderedElementsAre(Change{false, SOUND_DEVICE_AUDIO_JACK, headphones},
                                     Change{false, SOUND_DEVICE_BUILTIN_SPEAKER, speaker},
                                     Change{true, SOUND_DEVICE_USB_AUDIO, speaker}));
}

TEST(RecordedChanges, ScreenComesThoughNoPortInUseChanges) {
    EXPECT_THAT(changes("headphones_out", "screen_in", !as_watch),
                ElementsAre(Change{true, SOUND_DEVICE_HDMI, screen}));
}

TEST(RecordedChanges, HeadphonesStayTheSameDeviceWithoutDetection) {
    EXPECT_THAT(changes("headphones_in", "headphones_undetected", !as_watch),
                ElementsAre(Change{true, SOUND_DEVICE_HDMI, screen}));
}

TEST(RecordedChanges, PluggingInAndOutLeavesWhatWasThere) {
    EXPECT_THAT(changes("nothing_plugged", "headphones_out", !as_watch), IsEmpty());
}

TEST(RecordedVolume, IsThatOfTheDefaultSink) {
    const Outputs outputs = recorded("screen_sounds");
    const auto *sink = outputs.default_sink();
    ASSERT_NE(sink, nullptr);
    EXPECT_EQ(sink->name, "alsa_output.built-in.hdmi-stereo");
    EXPECT_EQ(sink->active_port, "hdmi-output-0");
    EXPECT_EQ(level_of(*sink), 15);
}

}  // namespace
