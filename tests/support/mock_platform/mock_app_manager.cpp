#include "mock_app_manager.h"

#include "slot.h"

namespace mock {

MockAppManager &app_manager() {
    static Slot<testing::NiceMock<MockAppManager>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_app_manager().function(arguments...);    \
    })

MockAppManager::MockAppManager() {
    DELEGATE(app_manager_get_app_context);
    DELEGATE(app_manager_resume_app);
    DELEGATE(app_context_destroy);
}

MockAppManager::~MockAppManager() = default;

extern "C" {

int app_manager_get_app_context(const char *app_id, app_context_h *app_context) {
    return mock::app_manager().app_manager_get_app_context(app_id, app_context);
}

int app_manager_resume_app(app_context_h app_context) {
    return mock::app_manager().app_manager_resume_app(app_context);
}

int app_context_destroy(app_context_h app_context) {
    return mock::app_manager().app_context_destroy(app_context);
}

}  // extern "C"
