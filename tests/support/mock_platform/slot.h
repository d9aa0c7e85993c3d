#pragma once

#include <memory>
#include <mutex>

#include "test_main.h"

namespace mock {

/// The one object of a kind, made at its first use in a test and gone when the test has ended.
template <typename T>
class Slot {
public:
    T &get() {
        const std::lock_guard lock(m_mutex);
        if (m_object == nullptr) {
            m_object = std::make_unique<T>();
            if (!m_registered) {
                m_registered = true;
                support::after_each_test([this] { release(); });
            }
        }
        return *m_object;
    }

private:
    // The object goes outside the lock: its threads may still ask for it while they end.
    void release() {
        std::unique_ptr<T> object;
        {
            const std::lock_guard lock(m_mutex);
            object = std::move(m_object);
        }
    }

    std::mutex m_mutex;
    std::unique_ptr<T> m_object;
    bool m_registered = false;
};

}  // namespace mock
