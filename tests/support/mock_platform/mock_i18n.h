#pragma once

#include <gmock/gmock.h>

#include "fake_settings.h"

/// Forwards to FakeI18n unless a test says otherwise.
class MockI18n {
public:
    MockI18n();
    virtual ~MockI18n();

    MOCK_METHOD(const char *, i18n_get_text, (const char *));
};

namespace mock {
MockI18n &i18n();
}
