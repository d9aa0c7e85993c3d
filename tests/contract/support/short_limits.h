#pragma once

#include <chrono>

#include "player/player_host.h"

namespace support {

/// A patience of a test's own with servers, which ends with it.
class ShortLimits {
public:
    ShortLimits(std::chrono::milliseconds connect, std::chrono::milliseconds stall) {
        host::set_network_limits({connect, stall});
    }
    ~ShortLimits() { host::set_network_limits({}); }
    ShortLimits(const ShortLimits &) = delete;
    ShortLimits &operator=(const ShortLimits &) = delete;
};

}  // namespace support
