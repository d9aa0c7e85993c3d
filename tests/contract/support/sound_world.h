#pragma once

#include <sound_manager.h>

#include <string>

/// What stands behind one implementation of the sound manager, moved by a test as the world moves
/// it. One of these per implementation.
namespace sound_world {

/// A fresh implementation in use: full volume, nothing plugged in.
void begin();
void end();

/// Another program sets the media volume.
void set_level_elsewhere(int level);
/// A device of the types 3 to 5 is plugged in and pulled out.
void plug(sound_device_type_e type, const std::string &name);
void pull(sound_device_type_e type);

}  // namespace sound_world
