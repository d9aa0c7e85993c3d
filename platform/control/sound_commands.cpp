#include "control/sound_commands.h"

#include <sound_manager.h>

#include "sound/builtin/builtin_backend.h"

namespace host::control {

void move_focus(Commands &commands, const Words &words, const Responder &responder) {
    if (words[1] == "give-back" && words.size() == 2) {
        commands.rival.give_back();
    } else if (words[1] == "take" && words.size() == 3) {
        static const std::vector<Name> kBehaviors{
            {"none", SOUND_BEHAVIOR_NONE},
            {"no-resume", SOUND_BEHAVIOR_NO_RESUME},
            {"fading", SOUND_BEHAVIOR_FADING},
            {"both", SOUND_BEHAVIOR_NO_RESUME | SOUND_BEHAVIOR_FADING},
        };
        commands.rival.take(parse_name(words[2], "the behaviour", kBehaviors));
    } else {
        throw UsageError("the form is: focus take BEHAVIOUR, or focus give-back");
    }
    responder.done();
}

void set_volume(Commands & /*commands*/, const Words &words, const Responder &responder) {
    int most = 0;
    sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &most);
    const int level = parse_number(words[1], "the level", 0, most);
    if (sound_manager_set_volume(SOUND_TYPE_MEDIA, level) != SOUND_MANAGER_ERROR_NONE) {
        throw RequestError("the sound server is away");
    }
    responder.done();
}

void plug_device(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kDirections{{"connect", 1}, {"disconnect", 0}};
    static const std::vector<Name> kTypes{{"earjack", SOUND_DEVICE_AUDIO_JACK},
                                          {"bluetooth", SOUND_DEVICE_BLUETOOTH},
                                          {"hdmi", SOUND_DEVICE_HDMI},
                                          {"usb", SOUND_DEVICE_USB_AUDIO}};
    const bool connect = parse_name(words[1], "the direction", kDirections) != 0;
    const auto type = static_cast<sound_device_type_e>(parse_name(words[2], "the device", kTypes));
    const auto builtin = std::dynamic_pointer_cast<sound::BuiltinBackend>(sound::backend());
    if (builtin == nullptr) {
        throw RequestError("the sound server says which devices there are");
    }
    if (connect) {
        builtin->connect({type, words[2]});
    } else if (!builtin->disconnect(type)) {
        throw RequestError("no such device was connected");
    }
    responder.done();
}

}  // namespace host::control
