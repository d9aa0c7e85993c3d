#pragma once

#include "control/request.h"
#include "control/rival.h"

namespace host::control {

/// What a person at the screen can see of the program, and of the player behind it. Read from the
/// names and the visibility of the objects in the program's window, and from the host's own parts.
/// Thread: main loop.
///
/// Keys: `player` (none, idle, ready, playing, paused), `position` and `duration` in milliseconds,
/// `uri`, `display_mode` (letter_box, original_size, full_screen, cropped_full, original_or_letter,
/// dst_roi), `display_rotation` (0 to 3), `video` {width, height}, `frames` {decoded, shown,
/// dropped}, `page` (name of the top view, or null), `controls` (whether those of the player screen
/// are shown), `played` and `length` (the texts of the player screen, or null), `level` (the text
/// of the volume screen, null until it is shown), `popup` {style, text} or null, `buttons` (the
/// visible ones: {style, x, y, width, height, enabled}), `screen` {width, height} in pixels,
/// `rotation` of the window in degrees, `volume` of media, `sound` {backend, devices}, `focus`
/// (whether the program holds the audio focus), `language`, `region` (or null), `clock` (12 or 24
/// hours), `screen_reader` (whether one is on).
[[nodiscard]] Json read_state(const Rival &rival);

}  // namespace host::control
