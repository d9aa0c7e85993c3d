#pragma once

#include <pulse/introspect.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sound/backend.h"

namespace host::sound::pulse {

/// A socket or path of a sink.
struct Port {
    std::string name;
    std::string description;
    int type = PA_DEVICE_PORT_TYPE_UNKNOWN;
    int available = PA_PORT_AVAILABLE_UNKNOWN;
};

/// A sink as the server described it.
struct Sink {
    std::uint32_t index = PA_INVALID_INDEX;
    std::string name;
    std::string description;
    std::string form_factor;
    std::string bus;
    std::string api;
    pa_cvolume volume{};
    bool muted = false;
    std::vector<Port> ports;
    std::string active_port;
};

/// All sinks of a server, and which of them is the default one.
struct Outputs {
    std::string default_name;
    std::vector<Sink> sinks;

    /// Null while the server has none, or is changing it.
    [[nodiscard]] const Sink *default_sink() const;
};

[[nodiscard]] Sink read_sink(const pa_sink_info &info);

/// A device, and what tells it from others that look like it.
struct KnownDevice {
    std::string id;
    Device device;
};

/// Earjacks, Bluetooth sets and screens that are plugged in, and for each sink that is none of
/// them one built-in speaker.
/// @param watch_profile  else the speaker that sounds now, the default one, counts as an external
///                       device, so that its volume can be changed
[[nodiscard]] std::vector<KnownDevice> devices_of(const Outputs &outputs, bool watch_profile);

struct DeviceChange {
    Device device;
    bool connected = false;
};

/// What went, then what came. What is of another type now went as the one and came as the other.
[[nodiscard]] std::vector<DeviceChange> changes_between(const std::vector<KnownDevice> &before,
                                                        const std::vector<KnownDevice> &after);

/// The level, 0 to kMaxLevel, nearest to a sink's volume; above 0 for all that can be heard.
[[nodiscard]] int level_of(const Sink &sink);

/// What gives a level on that sink, with the balance that its channels have, if they aren't silent;
/// never above 100 %. None when the sink has that level already and isn't louder than 100 %.
[[nodiscard]] std::optional<pa_cvolume> volume_for(const Sink &sink, int level);

}  // namespace host::sound::pulse
