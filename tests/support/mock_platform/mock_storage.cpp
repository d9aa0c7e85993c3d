#include "mock_storage.h"

#include <cstring>
#include <string>

#include "slot.h"

namespace mock {

MockStorage &storage() {
    static Slot<testing::NiceMock<MockStorage>> slot;
    return slot.get();
}

}  // namespace mock

MockStorage::MockStorage() {
    ON_CALL(*this, storage_get_root_directory).WillByDefault([](int, char **path) {
        *path = strdup("/opt/usr/media");
        return STORAGE_ERROR_NONE;
    });
    ON_CALL(*this, storage_get_directory)
        .WillByDefault([](int, storage_directory_e type, char **path) {
            *path = strdup(("/opt/usr/media/" + std::to_string(type)).c_str());
            return STORAGE_ERROR_NONE;
        });
}

MockStorage::~MockStorage() = default;

extern "C" {

int storage_get_root_directory(int storage_id, char **path) {
    return mock::storage().storage_get_root_directory(storage_id, path);
}

int storage_get_directory(int storage_id, storage_directory_e type, char **path) {
    return mock::storage().storage_get_directory(storage_id, type, path);
}

}  // extern "C"
