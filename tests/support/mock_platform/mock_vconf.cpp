#include "mock_vconf.h"

#include "slot.h"

namespace mock {

MockVconf &vconf() {
    static Slot<testing::NiceMock<MockVconf>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_vconf().function(arguments...);          \
    })

MockVconf::MockVconf() {
    DELEGATE(vconf_get_int);
    DELEGATE(vconf_get_bool);
    DELEGATE(vconf_get_str);
}

MockVconf::~MockVconf() = default;

extern "C" {

int vconf_get_int(const char *key, int *value) {
    return mock::vconf().vconf_get_int(key, value);
}

int vconf_get_bool(const char *key, int *value) {
    return mock::vconf().vconf_get_bool(key, value);
}

char *vconf_get_str(const char *key) {
    return mock::vconf().vconf_get_str(key);
}

}  // extern "C"
