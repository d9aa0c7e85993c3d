#pragma once

#include <gmock/gmock.h>

#include "fake_preference.h"

/// Forwards to FakePreference unless a test says otherwise.
class MockPreference {
public:
    MockPreference();
    virtual ~MockPreference();

    MOCK_METHOD(int, preference_set_int, (const char *, int));
    MOCK_METHOD(int, preference_set_double, (const char *, double));
    MOCK_METHOD(int, preference_set_string, (const char *, const char *));
    MOCK_METHOD(int, preference_set_boolean, (const char *, bool));
    MOCK_METHOD(int, preference_get_int, (const char *, int *));
    MOCK_METHOD(int, preference_get_double, (const char *, double *));
    MOCK_METHOD(int, preference_get_string, (const char *, char **));
    MOCK_METHOD(int, preference_get_boolean, (const char *, bool *));
    MOCK_METHOD(int, preference_is_existing, (const char *, bool *));
    MOCK_METHOD(int, preference_set_changed_cb, (const char *, preference_changed_cb, void *));
    MOCK_METHOD(int, preference_unset_changed_cb, (const char *));
};

namespace mock {
MockPreference &preference();
}
