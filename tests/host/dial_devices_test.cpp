#include "rotary/dial_devices.h"

#include <gtest/gtest.h>

#include <array>

namespace {

input_event event(int type, int code, int value) {
    input_event made{};
    made.type = static_cast<decltype(made.type)>(type);
    made.code = static_cast<decltype(made.code)>(code);
    made.value = value;
    return made;
}

TEST(DialDevices, TurnsAreCountedClockwiseAboveZero) {
    const std::array clockwise{event(EV_REL, REL_DIAL, 1), event(EV_SYN, SYN_REPORT, 0),
                               event(EV_REL, REL_DIAL, 2), event(EV_SYN, SYN_REPORT, 0)};
    EXPECT_EQ(host::detents_of(clockwise), 3);
    const std::array back{event(EV_REL, REL_DIAL, -2), event(EV_SYN, SYN_REPORT, 0)};
    EXPECT_EQ(host::detents_of(back), -2);
}

TEST(DialDevices, OtherEventsTurnNothing) {
    const std::array others{event(EV_REL, REL_WHEEL, 1), event(EV_KEY, REL_DIAL, 1),
                            event(EV_ABS, REL_DIAL, 5), event(EV_SYN, SYN_REPORT, 0)};
    EXPECT_EQ(host::detents_of(others), 0);
}

}  // namespace
