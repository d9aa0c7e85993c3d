#include "mock_i18n.h"

#include "slot.h"

namespace mock {

MockI18n &i18n() {
    static Slot<testing::NiceMock<MockI18n>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_i18n().function(arguments...);           \
    })

MockI18n::MockI18n() {
    DELEGATE(i18n_get_text);
}

MockI18n::~MockI18n() = default;

extern "C" {

const char *i18n_get_text(const char *message) {
    return mock::i18n().i18n_get_text(message);
}

}  // extern "C"
