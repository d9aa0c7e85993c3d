#include "fake_app_manager.h"

#include "slot.h"

struct app_context_s {
    std::string app_id;
};

namespace mock {

FakeAppManager &fake_app_manager() {
    static Slot<FakeAppManager> slot;
    return slot.get();
}

}  // namespace mock

FakeAppManager::FakeAppManager() = default;
FakeAppManager::~FakeAppManager() = default;

int FakeAppManager::live() const {
    return static_cast<int>(m_contexts.size());
}

int FakeAppManager::app_manager_get_app_context(const char *app_id, app_context_h *app_context) {
    if (app_id == nullptr || app_context == nullptr) {
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    }
    if (!m_running.contains(app_id)) {
        return APP_MANAGER_ERROR_NO_SUCH_APP;
    }
    m_contexts.push_back(std::make_unique<app_context_s>(app_context_s{app_id}));
    *app_context = m_contexts.back().get();
    return APP_MANAGER_ERROR_NONE;
}

int FakeAppManager::app_manager_resume_app(app_context_h app_context) {
    if (app_context == nullptr) {
        return APP_MANAGER_ERROR_INVALID_PARAMETER;
    }
    m_resumed.push_back(app_context->app_id);
    return APP_MANAGER_ERROR_NONE;
}

int FakeAppManager::app_context_destroy(app_context_h app_context) {
    const auto erased = std::erase_if(
        m_contexts, [app_context](const auto &item) { return item.get() == app_context; });
    return erased == 0 ? APP_MANAGER_ERROR_INVALID_PARAMETER : APP_MANAGER_ERROR_NONE;
}
