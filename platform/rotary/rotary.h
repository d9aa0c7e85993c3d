#pragma once

#include <efl_extension.h>

namespace host {

/// One detent of the bezel, given to the active rotary object. Thread: main loop.
/// @return false when nothing took it
bool send_detent(Eext_Rotary_Event_Direction direction, unsigned int time_stamp_ms);

/// A hardware key, given to the newest live and visible object that asked for it. Main loop.
/// @return false when nothing asked for it
bool send_key(Eext_Callback_Type type);

}  // namespace host
