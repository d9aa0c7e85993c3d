// Which devices and levels a server's description of its sinks stands for. The descriptions are
// those of machines that a test has none of: sound cards with sockets, and Bluetooth sets.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "sink_answer.h"
#include "sound/pulse/outputs.h"

namespace {

using host::sound::pulse::changes_between;
using host::sound::pulse::devices_of;
using host::sound::pulse::level_of;
using host::sound::pulse::Outputs;
using host::sound::pulse::read_sink;
using host::sound::pulse::Sink;
using host::sound::pulse::volume_for;

constexpr int yes = PA_PORT_AVAILABLE_YES;
constexpr int no = PA_PORT_AVAILABLE_NO;
constexpr int unknown = PA_PORT_AVAILABLE_UNKNOWN;

const std::string laptop = "alsa_output.pci-0000_00_1f.3.analog-stereo";
const std::string screen = "alsa_output.pci-0000_01_00.1.hdmi-stereo";

SinkAnswer laptop_answer() {
    SinkAnswer answer;
    answer.name = laptop;
    answer.description = "Built-in Audio Analog Stereo";
    return answer;
}

SinkAnswer laptop_with(int headphones, const std::string &active, bool typed = true) {
    SinkAnswer answer = laptop_answer();
    answer.properties = {
        {"device.bus", "pci"}, {"device.form_factor", "internal"}, {"device.api", "alsa"}};
    answer.ports = {
        {"analog-output-speaker", "Speakers",
         typed ? PA_DEVICE_PORT_TYPE_SPEAKER : PA_DEVICE_PORT_TYPE_UNKNOWN, unknown},
        {"analog-output-headphones", "Headphones",
         typed ? PA_DEVICE_PORT_TYPE_HEADPHONES : PA_DEVICE_PORT_TYPE_UNKNOWN, headphones}};
    answer.active_port = active;
    return answer;
}

SinkAnswer screen_with(int available) {
    SinkAnswer answer;
    answer.name = screen;
    answer.description = "HDMI Audio";
    answer.properties = {{"device.bus", "pci"}, {"device.api", "alsa"}};
    answer.ports = {{"hdmi-output-0", "HDMI / DisplayPort", PA_DEVICE_PORT_TYPE_HDMI, available}};
    answer.active_port = "hdmi-output-0";
    return answer;
}

SinkAnswer plain_sink(const std::string &name, std::map<std::string, std::string> properties) {
    SinkAnswer answer;
    answer.name = name;
    answer.description = "Thing";
    answer.properties = std::move(properties);
    return answer;
}

struct Row {
    std::string name;
    std::vector<SinkAnswer> sinks;
    std::string default_name;
    std::vector<int> types;           ///< of all devices
    std::vector<int> types_on_watch;  ///< the same under the watch's profile
};

std::ostream &operator<<(std::ostream &stream, const Row &row) {
    return stream << row.name;
}

class OutputDevices : public testing::TestWithParam<Row> {};

std::vector<int> types_of(const Row &row, bool watch_profile) {
    Outputs outputs;
    outputs.default_name = row.default_name;
    for (const SinkAnswer &answer : row.sinks) {
        outputs.sinks.push_back(answer.read());
    }
    std::vector<int> types;
    for (const auto &known : devices_of(outputs, watch_profile)) {
        types.push_back(known.device.type);
    }
    std::sort(types.begin(), types.end());
    return types;
}

TEST_P(OutputDevices, AreThoseOfTheSinksAndTheirPorts) {
    EXPECT_EQ(types_of(GetParam(), false), GetParam().types);
    EXPECT_EQ(types_of(GetParam(), true), GetParam().types_on_watch);
}

INSTANTIATE_TEST_SUITE_P(
    Every, OutputDevices,
    testing::Values(
        Row{"no_sink", {}, "", {}, {}},
        Row{"headphones_pulled_out", {laptop_with(no, "analog-output-speaker")}, laptop, {7}, {0}},
        Row{"headphones_in_use",
            {laptop_with(yes, "analog-output-headphones")},
            laptop,
            {0, 3},
            {0, 3}},
        Row{"headphones_beside_the_speakers",
            {laptop_with(yes, "analog-output-speaker")},
            laptop,
            {3, 7},
            {0, 3}},
        Row{"headphones_without_detection_in_use",
            {laptop_with(unknown, "analog-output-headphones")},
            laptop,
            {0, 3},
            {0, 3}},
        Row{"headphones_without_detection_not_in_use",
            {laptop_with(unknown, "analog-output-speaker")},
            laptop,
            {7},
            {0}},
        Row{"headphones_of_a_server_without_types",
            {laptop_with(yes, "analog-output-headphones", false)},
            laptop,
            {0, 3},
            {0, 3}},
        Row{"screen_beside_the_speakers",
            {laptop_with(no, "analog-output-speaker"), screen_with(yes)},
            laptop,
            {5, 7},
            {0, 5}},
        Row{"screen_that_sounds",
            {laptop_with(no, "analog-output-speaker"), screen_with(yes)},
            screen,
            {0, 5},
            {0, 5}},
        Row{"graphics_card_without_screen",
            {laptop_with(no, "analog-output-speaker"), screen_with(no)},
            laptop,
            {7},
            {0}},
        Row{"graphics_card_without_screen_as_default", {screen_with(no)}, screen, {7}, {0}},
        Row{"bluetooth_set",
            {laptop_with(no, "analog-output-speaker"),
             plain_sink("bluez_output.00_11_22_33_44_55.1",
                        {{"device.bus", "bluetooth"}, {"device.form_factor", "headset"}})},
            "bluez_output.00_11_22_33_44_55.1",
            {0, 4},
            {0, 4}},
        Row{"bluetooth_by_its_interface",
            {plain_sink("set", {{"device.api", "bluez5"}})},
            "",
            {4},
            {4}},
        Row{"bluetooth_by_its_name", {plain_sink("bluez_sink.00_11.a2dp_sink", {})}, "", {4}, {4}},
        Row{"usb_headset",
            {plain_sink("alsa_output.usb-Headset.analog-stereo",
                        {{"device.bus", "usb"}, {"device.form_factor", "headset"}})},
            "alsa_output.usb-Headset.analog-stereo",
            {3},
            {3}},
        Row{"headphone", {plain_sink("a", {{"device.form_factor", "headphone"}})}, "", {3}, {3}},
        Row{"hands_free", {plain_sink("a", {{"device.form_factor", "hands-free"}})}, "", {3}, {3}},
        Row{"television", {plain_sink("a", {{"device.form_factor", "tv"}})}, "", {5}, {5}},
        Row{"hdmi_by_its_form", {plain_sink("a", {{"device.form_factor", "hdmi"}})}, "", {5}, {5}},
        Row{"hdmi_by_its_name", {plain_sink("alsa.hdmi-stereo", {})}, "", {5}, {5}},
        Row{"usb_speaker_as_default", {plain_sink("a", {{"device.bus", "usb"}})}, "a", {7}, {0}},
        Row{"default_that_is_not_listed", {plain_sink("a", {})}, "b", {0}, {0}}),
    [](const auto &info) { return info.param.name; });

TEST(OutputDevices, PortsOfABluetoothSetAreOneDevice) {
    SinkAnswer set = plain_sink("bluez_output.x", {{"device.bus", "bluetooth"}});
    set.description = "Kitchen radio";
    set.ports = {{"headset-output", "Headset", PA_DEVICE_PORT_TYPE_HEADSET, yes},
                 {"headphone-output", "Headphone", PA_DEVICE_PORT_TYPE_HEADPHONES, yes}};
    const auto devices = devices_of({"bluez_output.x", {set.read()}}, false);
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].device.name, "Kitchen radio");
}

TEST(OutputDevices, DevicesThatLookAlikeAreToldApart) {
    SinkAnswer second = laptop_with(yes, "analog-output-headphones");
    second.name = "second";
    const auto devices = devices_of(
        {laptop, {laptop_with(yes, "analog-output-headphones").read(), second.read()}}, false);
    ASSERT_EQ(devices.size(), 4U);
    for (std::size_t one = 0; one < devices.size(); ++one) {
        for (std::size_t other = 0; other < one; ++other) {
            EXPECT_NE(devices[one].id, devices[other].id);
        }
    }
}

TEST(OutputDevices, OneOfTwoThatLookAlikeGoes) {
    const SinkAnswer first = laptop_with(yes, "analog-output-headphones");
    SinkAnswer second = first;
    second.name = "second";
    second.description = "Other Audio";
    SinkAnswer second_pulled_out = laptop_with(no, "analog-output-speaker");
    second_pulled_out.name = second.name;
    const auto changes =
        changes_between(devices_of({laptop, {first.read(), second.read()}}, false),
                        devices_of({laptop, {first.read(), second_pulled_out.read()}}, false));
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_FALSE(changes[0].connected);
    EXPECT_EQ(changes[0].device.name, "Other Audio: Headphones");
}

TEST(OutputDevices, AnswerMayLackWhatItCanLack) {
    pa_sink_info info{};
    const Sink sink = read_sink(info);
    EXPECT_EQ(sink.name, "");
    EXPECT_EQ(level_of(sink), 0);
    EXPECT_FALSE(volume_for(sink, 5));
}

// ---- levels

Sink sink_at(double part, double other = -1.0, bool muted = false) {
    SinkAnswer answer = laptop_answer();
    answer.volume = {static_cast<pa_volume_t>(part * PA_VOLUME_NORM),
                     static_cast<pa_volume_t>((other < 0 ? part : other) * PA_VOLUME_NORM)};
    answer.muted = muted;
    return answer.read();
}

TEST(OutputLevel, IsTheFifteenthsOfTheLoudestChannel) {
    EXPECT_EQ(level_of(sink_at(0.0)), 0);
    EXPECT_EQ(level_of(sink_at(1.0)), 15);
    EXPECT_EQ(level_of(sink_at(0.5)), 8);
    EXPECT_EQ(level_of(sink_at(0.2, 0.4)), 6);
}

TEST(OutputLevel, IsAboveSilenceForAllThatCanBeHeard) {
    EXPECT_EQ(level_of(sink_at(0.01)), 1);
}

TEST(OutputLevel, IsSilenceForAMutedSink) {
    EXPECT_EQ(level_of(sink_at(0.8, 0.8, true)), 0);
}

TEST(OutputLevel, EndsAtTheTopHoweverLoudTheSinkIs) {
    EXPECT_EQ(level_of(sink_at(1.5)), 15);
}

TEST(OutputLevel, IsWhatWasSetFromWhereverItComes) {
    for (const double from : {0.0, 0.01, 0.5, 1.0, 1.5}) {
        for (int level = 0; level <= 15; ++level) {
            Sink sink = sink_at(from, from / 2);
            if (const auto volume = volume_for(sink, level)) {
                sink.volume = *volume;
            }
            EXPECT_EQ(level_of(sink), level) << from;
            EXPECT_LE(pa_cvolume_max(&sink.volume), PA_VOLUME_NORM);
        }
    }
}

TEST(OutputLevel, SettingItKeepsTheBalance) {
    const auto volume = volume_for(sink_at(0.8, 0.4), 6);
    ASSERT_TRUE(volume);
    EXPECT_NEAR(static_cast<double>(volume->values[0]) / volume->values[1], 2.0, 0.001);
}

TEST(OutputLevel, LevelThatIsThereLeavesTheVolumeAsItIs) {
    EXPECT_FALSE(volume_for(sink_at(0.34), 5));
    EXPECT_FALSE(volume_for(sink_at(0.8, 0.8, true), 0));
    // But more than full is taken back to full.
    EXPECT_TRUE(volume_for(sink_at(1.2), 15));
}

}  // namespace
