#include "sound/pulse/outputs.h"

#include <pulse/proplist.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string_view>

#include "sound/levels.h"

namespace host::sound::pulse {
namespace {

/// What neither an earjack nor a Bluetooth set nor a screen is.
constexpr sound_device_type_e kPlain = SOUND_DEVICE_BUILTIN_SPEAKER;
/// What a plain output counts as that is to be an external device.
constexpr sound_device_type_e kPlainExternal = SOUND_DEVICE_USB_AUDIO;

std::string text(const char *value) {
    return value != nullptr ? value : "";
}

std::string property(const pa_sink_info &info, const char *key) {
    return text(info.proplist != nullptr ? pa_proplist_gets(info.proplist, key) : nullptr);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

sound_device_type_e type_of(const Port &port) {
    switch (port.type) {
    case PA_DEVICE_PORT_TYPE_HEADPHONES:
    case PA_DEVICE_PORT_TYPE_HEADSET:
    case PA_DEVICE_PORT_TYPE_EARPIECE:
        return SOUND_DEVICE_AUDIO_JACK;
    case PA_DEVICE_PORT_TYPE_HDMI:
    case PA_DEVICE_PORT_TYPE_TV:
        return SOUND_DEVICE_HDMI;
    case PA_DEVICE_PORT_TYPE_UNKNOWN:
        break;
    default:
        return kPlain;
    }
    // Servers that give no types name their ports alike.
    if (contains(port.name, "headphone") || contains(port.name, "headset")) {
        return SOUND_DEVICE_AUDIO_JACK;
    }
    return contains(port.name, "hdmi") ? SOUND_DEVICE_HDMI : kPlain;
}

sound_device_type_e type_of(const Sink &sink) {
    if (sink.bus == "bluetooth" || sink.api == "bluez" || sink.api == "bluez5" ||
        sink.name.starts_with("bluez_")) {
        return SOUND_DEVICE_BLUETOOTH;
    }
    if (sink.form_factor == "headphone" || sink.form_factor == "headset" ||
        sink.form_factor == "hands-free") {
        return SOUND_DEVICE_AUDIO_JACK;
    }
    if (sink.form_factor == "hdmi" || sink.form_factor == "tv" || contains(sink.name, ".hdmi-")) {
        return SOUND_DEVICE_HDMI;
    }
    return kPlain;
}

/// Something is in it; where the server can't tell, what it sends the sound to counts.
bool is_plugged(const Port &port, const Sink &sink) {
    return port.available == PA_PORT_AVAILABLE_YES ||
           (port.available == PA_PORT_AVAILABLE_UNKNOWN && port.name == sink.active_port);
}

std::string joined(const std::string &sink, const std::string &port) {
    return port.empty() ? sink : sink + ": " + port;
}

void add_ports(const Sink &sink, std::vector<KnownDevice> &devices) {
    for (const Port &port : sink.ports) {
        if (const auto type = type_of(port); type != kPlain && is_plugged(port, sink)) {
            devices.push_back(
                {sink.name + '/' + port.name, {type, joined(sink.description, port.description)}});
        }
    }
}

/// Whether the sound of the sink comes out of what counts as a device of its own.
bool plays_through_known_port(const Sink &sink) {
    return std::any_of(sink.ports.begin(), sink.ports.end(), [&sink](const Port &port) {
        return port.name == sink.active_port && type_of(port) != kPlain && is_plugged(port, sink);
    });
}

/// Nothing but sockets with nothing in them, such as a graphics card without a screen.
bool is_mute_of_ports(const Sink &sink) {
    return !sink.ports.empty() &&
           std::all_of(sink.ports.begin(), sink.ports.end(),
                       [](const Port &port) { return type_of(port) != kPlain; });
}

void add_those_without(const std::vector<KnownDevice> &devices,
                       const std::vector<KnownDevice> &others, bool connected,
                       std::vector<DeviceChange> &changes) {
    for (const KnownDevice &known : devices) {
        const bool in_both =
            std::any_of(others.begin(), others.end(), [&known](const KnownDevice &other) {
                return other.id == known.id && other.device.type == known.device.type;
            });
        if (!in_both) {
            changes.push_back({known.device, connected});
        }
    }
}

}  // namespace

const Sink *Outputs::default_sink() const {
    const auto found = std::find_if(sinks.begin(), sinks.end(),
                                    [this](const Sink &sink) { return sink.name == default_name; });
    return found == sinks.end() ? nullptr : &*found;
}

Sink read_sink(const pa_sink_info &info) {
    Sink sink;
    sink.index = info.index;
    sink.name = text(info.name);
    sink.description = text(info.description);
    sink.form_factor = property(info, PA_PROP_DEVICE_FORM_FACTOR);
    sink.bus = property(info, PA_PROP_DEVICE_BUS);
    sink.api = property(info, PA_PROP_DEVICE_API);
    sink.volume = info.volume;
    sink.muted = info.mute != 0;
    for (const pa_sink_port_info *port : std::span(info.ports, info.n_ports)) {
        sink.ports.push_back({text(port->name), text(port->description),
                              static_cast<int>(port->type), port->available});
    }
    sink.active_port = info.active_port != nullptr ? text(info.active_port->name) : "";
    return sink;
}

std::vector<KnownDevice> devices_of(const Outputs &outputs, bool watch_profile) {
    std::vector<KnownDevice> devices;
    for (const Sink &sink : outputs.sinks) {
        const auto type = type_of(sink);
        // Ports of these are ways of talking to the one thing that each is.
        if (type == SOUND_DEVICE_BLUETOOTH || type == SOUND_DEVICE_AUDIO_JACK ||
            (type != kPlain && sink.ports.empty())) {
            devices.push_back({sink.name, {type, sink.description}});
            continue;
        }
        add_ports(sink, devices);
        const bool sounds = &sink == outputs.default_sink() && !plays_through_known_port(sink);
        if (sounds || !is_mute_of_ports(sink)) {
            devices.push_back(
                {sink.name,
                 {sounds && !watch_profile ? kPlainExternal : kPlain, sink.description}});
        }
    }
    return devices;
}

std::vector<DeviceChange> changes_between(const std::vector<KnownDevice> &before,
                                          const std::vector<KnownDevice> &after) {
    std::vector<DeviceChange> changes;
    add_those_without(before, after, false, changes);
    add_those_without(after, before, true, changes);
    return changes;
}

int level_of(const Sink &sink) {
    const pa_volume_t loudest = sink.volume.channels > 0 ? pa_cvolume_max(&sink.volume) : 0;
    if (sink.muted || loudest == PA_VOLUME_MUTED) {
        return 0;
    }
    const double part = static_cast<double>(loudest) / PA_VOLUME_NORM;
    return std::clamp(static_cast<int>(std::lround(part * kMaxLevel)), 1, kMaxLevel);
}

std::optional<pa_cvolume> volume_for(const Sink &sink, int level) {
    if (sink.volume.channels == 0 ||
        (level_of(sink) == level && pa_cvolume_max(&sink.volume) <= PA_VOLUME_NORM)) {
        return std::nullopt;
    }
    pa_cvolume volume = sink.volume;
    pa_cvolume_scale(&volume, static_cast<pa_volume_t>(std::lround(
                                  static_cast<double>(PA_VOLUME_NORM) * level / kMaxLevel)));
    return volume;
}

}  // namespace host::sound::pulse
