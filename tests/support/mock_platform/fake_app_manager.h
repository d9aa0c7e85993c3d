#pragma once

#include <app_manager.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

/// Running applications as names.
class FakeAppManager {
public:
    FakeAppManager();
    ~FakeAppManager();

    void set_running(const std::string &app_id) { m_running.insert(app_id); }
    const std::vector<std::string> &resumed() const { return m_resumed; }
    /// Number of contexts not destroyed yet.
    int live() const;

    int app_manager_get_app_context(const char *app_id, app_context_h *app_context);
    int app_manager_resume_app(app_context_h app_context);
    int app_context_destroy(app_context_h app_context);

private:
    std::set<std::string> m_running;
    std::vector<std::string> m_resumed;
    std::vector<std::unique_ptr<app_context_s>> m_contexts;
};

namespace mock {
FakeAppManager &fake_app_manager();
}
