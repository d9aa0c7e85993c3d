// SOUND_SERVER is the kind of server that stands behind it.

#include <memory>

#include "host/sound_server.h"
#include "sound/backend.h"
#include "sound_world.h"

namespace sound_world {
namespace {

std::unique_ptr<SoundServer> server;

std::string sink_of(sound_device_type_e type) {
    return "plugged" + std::to_string(type);
}

}  // namespace

void begin() {
    server = std::make_unique<SoundServer>(SoundServer::Kind::SOUND_SERVER);
    host::sound::use_backend(host::sound::create_pulse_backend);
}

void end() {
    host::sound::use_backend(host::sound::create_builtin_backend);
    server.reset();
}

void set_level_elsewhere(int level) {
    server->set_volume(level * 100.0 / 15);
}

void plug(sound_device_type_e type, const std::string &name) {
    const std::string kind = type == SOUND_DEVICE_BLUETOOTH    ? "device.bus=bluetooth"
                             : type == SOUND_DEVICE_AUDIO_JACK ? "device.form_factor=headphone"
                                                               : "device.form_factor=hdmi";
    server->add_sink(sink_of(type), "device.description='" + name + "' " + kind);
}

void pull(sound_device_type_e type) {
    server->remove_sink(sink_of(type));
}

}  // namespace sound_world
