#include "common/main_loop.h"

#include <Ecore.h>

#include <deque>
#include <mutex>
#include <utility>

namespace host {
namespace {

using Call = std::function<void()>;

// The calls wait here and not in the toolkit's own queue, which would lose them, unfreed, at its
// shutdown; the toolkit is only woken.
class MainLoopQueue {
public:
    void push(Call call) {
        const std::lock_guard lock(m_mutex);
        if (m_closed) {
            return;
        }
        m_calls.push_back(std::move(call));
        if (!m_woken) {
            m_woken = true;
            ecore_main_loop_thread_safe_call_async(
                [](void *queue) { static_cast<MainLoopQueue *>(queue)->run(); }, this);
        }
    }

    void close() {
        std::deque<Call> dropped;
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        dropped.swap(m_calls);
    }

private:
    void run() {
        std::size_t left = 0;
        {
            const std::lock_guard lock(m_mutex);
            m_woken = false;
            left = m_calls.size();
        }
        // One at a time, so that a nested loop inside a call goes on where this one is.
        for (; left > 0; --left) {
            Call call;
            {
                const std::lock_guard lock(m_mutex);
                if (m_calls.empty()) {
                    return;
                }
                call = std::move(m_calls.front());
                m_calls.pop_front();
            }
            call();
        }
        wake_for_rest();
    }

    // A nested loop may have taken later calls for this one's count, so look again.
    void wake_for_rest() {
        const std::lock_guard lock(m_mutex);
        if (!m_calls.empty() && !m_woken) {
            m_woken = true;
            ecore_main_loop_thread_safe_call_async(
                [](void *queue) { static_cast<MainLoopQueue *>(queue)->run(); }, this);
        }
    }

    std::mutex m_mutex;
    std::deque<Call> m_calls;
    bool m_woken = false;
    bool m_closed = false;
};

// Never destroyed: a thread of a library may still post while the process exits.
MainLoopQueue &queue() {
    static auto *const instance = new MainLoopQueue;
    return *instance;
}

}  // namespace

void post_to_main_loop(Call call) {
    queue().push(std::move(call));
}

void close_main_loop() {
    queue().close();
}

}  // namespace host
