#include "mock_bundle.h"

#include "slot.h"

namespace mock {

MockBundle &bundles() {
    static Slot<testing::NiceMock<MockBundle>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_bundle().function(arguments...);         \
    })

MockBundle::MockBundle() {
    DELEGATE(bundle_create);
    DELEGATE(bundle_free);
    DELEGATE(bundle_add_str);
    DELEGATE(bundle_add_str_array);
    DELEGATE(bundle_get_str);
    DELEGATE(bundle_get_str_array);
    DELEGATE(bundle_del);
    DELEGATE(bundle_get_count);
}

MockBundle::~MockBundle() = default;

extern "C" {

bundle *bundle_create() {
    return mock::bundles().bundle_create();
}

int bundle_free(bundle *b) {
    return mock::bundles().bundle_free(b);
}

int bundle_add_str(bundle *b, const char *key, const char *str) {
    return mock::bundles().bundle_add_str(b, key, str);
}

int bundle_add_str_array(bundle *b, const char *key, const char **str_array, const int len) {
    return mock::bundles().bundle_add_str_array(b, key, str_array, len);
}

int bundle_get_str(bundle *b, const char *key, char **str) {
    return mock::bundles().bundle_get_str(b, key, str);
}

const char **bundle_get_str_array(bundle *b, const char *key, int *len) {
    return mock::bundles().bundle_get_str_array(b, key, len);
}

int bundle_del(bundle *b, const char *key) {
    return mock::bundles().bundle_del(b, key);
}

int bundle_get_count(bundle *b) {
    return mock::bundles().bundle_get_count(b);
}

}  // extern "C"
