#include "TslSystemUtils.h"

#include <device/power.h>

#include "TslLog.h"

namespace {
constexpr int NO_TIME_LIMIT = 0;
}

void TslSystemUtils::lockDisplay() {
    TslInfo("");
    device_power_request_lock(POWER_LOCK_DISPLAY, NO_TIME_LIMIT);
}

void TslSystemUtils::unlockDisplay() {
    TslInfo("");
    device_power_release_lock(POWER_LOCK_DISPLAY);
}
