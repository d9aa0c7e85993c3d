#pragma once

#include <gmock/gmock.h>
#include <storage.h>

/// Media below "/opt/usr/media", each kind in a folder of the kind's number, unless a test says
/// otherwise.
class MockStorage {
public:
    MockStorage();
    virtual ~MockStorage();

    MOCK_METHOD(int, storage_get_root_directory, (int, char **));
    MOCK_METHOD(int, storage_get_directory, (int, storage_directory_e, char **));
};

namespace mock {
MockStorage &storage();
}
