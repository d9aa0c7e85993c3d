#pragma once

#include <gmock/gmock.h>

#include "fake_app_manager.h"

/// Forwards to FakeAppManager unless a test says otherwise.
class MockAppManager {
public:
    MockAppManager();
    virtual ~MockAppManager();

    MOCK_METHOD(int, app_manager_get_app_context, (const char *, app_context_h *));
    MOCK_METHOD(int, app_manager_resume_app, (app_context_h));
    MOCK_METHOD(int, app_context_destroy, (app_context_h));
};

namespace mock {
MockAppManager &app_manager();
}
