#pragma once

#include <gmock/gmock.h>

#include "fake_settings.h"

/// Forwards to FakeVconf unless a test says otherwise.
class MockVconf {
public:
    MockVconf();
    virtual ~MockVconf();

    MOCK_METHOD(int, vconf_get_int, (const char *, int *));
    MOCK_METHOD(int, vconf_get_bool, (const char *, int *));
    MOCK_METHOD(char *, vconf_get_str, (const char *));
};

namespace mock {
MockVconf &vconf();
}
