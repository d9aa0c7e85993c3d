#pragma once

#include "control/commands.h"
#include "control/request.h"
#include "control/responder.h"

namespace host::control {

/// The commands that move the audio focus, the media volume and the built-in mixer's devices.
void move_focus(Commands &commands, const Words &words, const Responder &responder);
void set_volume(Commands &commands, const Words &words, const Responder &responder);
void plug_device(Commands &commands, const Words &words, const Responder &responder);

}  // namespace host::control
