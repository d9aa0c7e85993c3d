#pragma once

#include <gmock/gmock.h>

#include "fake_bundle.h"

/// Forwards to FakeBundle unless a test says otherwise.
class MockBundle {
public:
    MockBundle();
    virtual ~MockBundle();

    MOCK_METHOD(bundle *, bundle_create, ());
    MOCK_METHOD(int, bundle_free, (bundle *));
    MOCK_METHOD(int, bundle_add_str, (bundle *, const char *, const char *));
    MOCK_METHOD(int, bundle_add_str_array, (bundle *, const char *, const char **, const int));
    MOCK_METHOD(int, bundle_get_str, (bundle *, const char *, char **));
    MOCK_METHOD(const char **, bundle_get_str_array, (bundle *, const char *, int *));
    MOCK_METHOD(int, bundle_del, (bundle *, const char *));
    MOCK_METHOD(int, bundle_get_count, (bundle *));
};

namespace mock {
MockBundle &bundles();
}
