#pragma once

#include <gmock/gmock.h>

#include "fake_settings.h"

/// Forwards to FakePower unless a test says otherwise.
class MockPower {
public:
    MockPower();
    virtual ~MockPower();

    MOCK_METHOD(int, device_power_request_lock, (power_lock_e, int));
    MOCK_METHOD(int, device_power_release_lock, (power_lock_e));
};

namespace mock {
MockPower &power();
}
