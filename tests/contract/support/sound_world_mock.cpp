#include "mock_platform/fake_sound.h"
#include "sound_world.h"

namespace sound_world {

void begin() {
    mock::fake_sound().change_volume(SOUND_TYPE_MEDIA, 15);
}

void end() {}

void set_level_elsewhere(int level) {
    mock::fake_sound().change_volume(SOUND_TYPE_MEDIA, level);
}

void plug(sound_device_type_e type, const std::string &name) {
    if (type == SOUND_DEVICE_BLUETOOTH) {
        mock::fake_sound().set_bluetooth_name(name);
    }
    mock::fake_sound().connect_device(type);
}

void pull(sound_device_type_e type) {
    mock::fake_sound().disconnect_device(type);
}

}  // namespace sound_world
