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
        const std::lock_guard lock(mutex_);
        if (closed_) {
            return;
        }
        calls_.push_back(std::move(call));
        wake_locked();
    }

    void close() {
        std::deque<Call> dropped;
        const std::lock_guard lock(mutex_);
        closed_ = true;
        dropped.swap(calls_);
    }

private:
    void run() {
        std::size_t left = 0;
        {
            const std::lock_guard lock(mutex_);
            woken_ = false;
            left = calls_.size();
        }
        // One at a time, so that a nested loop inside a call goes on where this one is.
        for (; left > 0; --left) {
            Call call;
            {
                const std::lock_guard lock(mutex_);
                if (calls_.empty()) {
                    return;
                }
                call = std::move(calls_.front());
                calls_.pop_front();
            }
            call();
        }
        // A nested loop may have taken later calls for this one's count, so look again.
        const std::lock_guard lock(mutex_);
        if (!calls_.empty()) {
            wake_locked();
        }
    }

    // With the lock held, close() is sure that nobody wakes a toolkit that has been shut down.
    void wake_locked() {
        if (std::exchange(woken_, true)) {
            return;
        }
        const Ecore_Cb run_queue = [](void *queue) { static_cast<MainLoopQueue *>(queue)->run(); };
        // On the main thread the toolkit's call would run at once, and not on a later turn.
        if (eina_main_loop_is() != EINA_FALSE) {
            ecore_job_add(run_queue, this);
        } else {
            ecore_main_loop_thread_safe_call_async(run_queue, this);
        }
    }

    std::mutex mutex_;
    std::deque<Call> calls_;
    bool woken_ = false;
    bool closed_ = false;
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
