#pragma once

#include <pulse/proplist.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sound/pulse/outputs.h"

/// One answer of the server about a sink, in the server's own form.
struct SinkAnswer {
    std::string name;
    std::string description;
    std::map<std::string, std::string> properties;
    std::vector<host::sound::pulse::Port> ports;
    std::string active_port;
    std::vector<pa_volume_t> volume = {PA_VOLUME_NORM, PA_VOLUME_NORM};
    bool muted = false;

    [[nodiscard]] host::sound::pulse::Sink read() const {
        const std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)> list(pa_proplist_new(),
                                                                             &pa_proplist_free);
        for (const auto &[key, value] : properties) {
            pa_proplist_sets(list.get(), key.c_str(), value.c_str());
        }
        std::vector<pa_sink_port_info> infos(ports.size());
        std::vector<pa_sink_port_info *> pointers;
        pa_sink_port_info *active = nullptr;
        for (std::size_t index = 0; index < ports.size(); ++index) {
            infos[index].name = ports[index].name.c_str();
            infos[index].description = ports[index].description.c_str();
            infos[index].type = static_cast<std::uint32_t>(ports[index].type);
            infos[index].available = ports[index].available;
            pointers.push_back(&infos[index]);
            active = ports[index].name == active_port ? &infos[index] : active;
        }
        pa_sink_info info{};
        info.name = name.c_str();
        info.description = description.c_str();
        info.proplist = list.get();
        info.volume.channels = static_cast<std::uint8_t>(volume.size());
        std::copy(volume.begin(), volume.end(), info.volume.values);
        info.mute = muted ? 1 : 0;
        info.n_ports = static_cast<std::uint32_t>(pointers.size());
        info.ports = pointers.empty() ? nullptr : pointers.data();
        info.active_port = active;
        return host::sound::pulse::read_sink(info);
    }
};
