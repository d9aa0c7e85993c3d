#include "mock_power.h"

#include "slot.h"

namespace mock {

MockPower &power() {
    static Slot<testing::NiceMock<MockPower>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_power().function(arguments...);          \
    })

MockPower::MockPower() {
    DELEGATE(device_power_request_lock);
    DELEGATE(device_power_release_lock);
}

MockPower::~MockPower() = default;

extern "C" {

int device_power_request_lock(power_lock_e type, int timeout_ms) {
    return mock::power().device_power_request_lock(type, timeout_ms);
}

int device_power_release_lock(power_lock_e type) {
    return mock::power().device_power_release_lock(type);
}

}  // extern "C"
