#include "common/service_thread.h"

#include <pthread.h>

#include <atomic>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace host {
namespace {

using Call = std::function<void()>;

struct ContextUnref {
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
};
struct LoopUnref {
    void operator()(GMainLoop *loop) const { g_main_loop_unref(loop); }
};
struct SourceUnref {
    void operator()(GSource *source) const { g_source_unref(source); }
};

// The calls wait in a queue of this object, so that ending the thread can drop, and thereby
// release whoever waits for, those that it will not reach.
class ServiceThread {
public:
    ServiceThread()
        : m_context(g_main_context_new()), m_loop(g_main_loop_new(m_context.get(), FALSE)) {}

    ~ServiceThread() { stop(); }

    GMainContext *context() {
        const std::lock_guard lock(m_mutex);
        start_locked();
        return m_context.get();
    }

    void post(Call call) {
        const std::lock_guard lock(m_mutex);
        if (m_stopping) {
            return;
        }
        start_locked();
        push_locked(std::move(call));
    }

    void run_and_wait(const Call &call) {
        if (m_thread_id.load(std::memory_order_acquire) == std::this_thread::get_id()) {
            call();
            return;
        }
        // The promise goes with the posted call, so a dropped one ends the wait too.
        auto promise = std::make_shared<std::promise<void>>();
        const std::future<void> done = promise->get_future();
        post([&call, promise = std::move(promise)] {
            call();
            promise->set_value();
        });
        done.wait();
    }

    void stop() {
        std::deque<Call> dropped;
        {
            const std::lock_guard lock(m_mutex);
            if (!m_stopping && m_thread.joinable()) {
                push_locked([this] { g_main_loop_quit(m_loop.get()); });
            }
            m_stopping = true;
        }
        if (m_thread.joinable()) {
            m_thread.join();
        }
        const std::lock_guard lock(m_mutex);
        dropped.swap(m_calls);
    }

private:
    void start_locked() {
        if (!m_stopping && !m_thread.joinable()) {
            m_thread = std::thread([this] { run(); });
        }
    }

    void push_locked(Call call) {
        m_calls.push_back(std::move(call));
        const std::unique_ptr<GSource, SourceUnref> source(g_idle_source_new());
        g_source_set_priority(source.get(), G_PRIORITY_DEFAULT);
        g_source_set_callback(
            source.get(),
            [](gpointer self) -> gboolean {
                static_cast<ServiceThread *>(self)->run_next();
                return G_SOURCE_REMOVE;
            },
            this, nullptr);
        g_source_attach(source.get(), m_context.get());
    }

    void run_next() {
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

    void run() {
        m_thread_id.store(std::this_thread::get_id(), std::memory_order_release);
        pthread_setname_np(pthread_self(), "tessel-service");
        g_main_context_push_thread_default(m_context.get());
        g_main_loop_run(m_loop.get());
        g_main_context_pop_thread_default(m_context.get());
        m_thread_id.store(std::thread::id(), std::memory_order_release);
    }

    const std::unique_ptr<GMainContext, ContextUnref> m_context;
    const std::unique_ptr<GMainLoop, LoopUnref> m_loop;
    std::mutex m_mutex;
    std::deque<Call> m_calls;
    std::thread m_thread;
    std::atomic<std::thread::id> m_thread_id{};
    bool m_stopping = false;
};

ServiceThread &service() {
    static ServiceThread instance;
    return instance;
}

}  // namespace

GMainContext *service_context() {
    return service().context();
}

void post_to_service_thread(Call call) {
    service().post(std::move(call));
}

void run_on_service_thread(const Call &call) {
    service().run_and_wait(call);
}

void stop_service_thread() {
    service().stop();
}

}  // namespace host
