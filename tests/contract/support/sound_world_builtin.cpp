#include "sound/builtin/builtin_backend.h"
#include "sound_world.h"

namespace sound_world {
namespace {

host::sound::BuiltinBackend &builtin() {
    return dynamic_cast<host::sound::BuiltinBackend &>(*host::sound::backend());
}

}  // namespace

void begin() {
    host::sound::use_backend(host::sound::create_builtin_backend);
}

void end() {}

void set_level_elsewhere(int level) {
    (void)builtin().set_volume(SOUND_TYPE_MEDIA, level);
}

void plug(sound_device_type_e type, const std::string &name) {
    builtin().connect({type, name});
}

void pull(sound_device_type_e type) {
    (void)builtin().disconnect(type);
}

}  // namespace sound_world
