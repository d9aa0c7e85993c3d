#pragma once

#include "player/player_host.h"

namespace host {

/// Those in force now. Any thread.
[[nodiscard]] NetworkLimits network_limits();

}  // namespace host
