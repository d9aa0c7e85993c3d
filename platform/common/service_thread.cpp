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
        : context_(g_main_context_new()), loop_(g_main_loop_new(context_.get(), FALSE)) {}

    ~ServiceThread() { stop(); }

    GMainContext *context() {
        const std::lock_guard lock(mutex_);
        start_locked();
        return context_.get();
    }

    void post(Call call) {
        const std::lock_guard lock(mutex_);
        if (stopping_) {
            return;
        }
        start_locked();
        push_locked(std::move(call));
    }

    void run_and_wait(const Call &call) {
        if (thread_id_.load(std::memory_order_acquire) == std::this_thread::get_id()) {
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
            const std::lock_guard lock(mutex_);
            if (!stopping_ && thread_.joinable()) {
                push_locked([this] { g_main_loop_quit(loop_.get()); });
            }
            stopping_ = true;
        }
        if (thread_.joinable()) {
            thread_.join();
        }
        const std::lock_guard lock(mutex_);
        dropped.swap(calls_);
    }

private:
    void start_locked() {
        if (!stopping_ && !thread_.joinable()) {
            thread_ = std::thread([this] { run(); });
        }
    }

    void push_locked(Call call) {
        calls_.push_back(std::move(call));
        const std::unique_ptr<GSource, SourceUnref> source(g_idle_source_new());
        g_source_set_priority(source.get(), G_PRIORITY_DEFAULT);
        g_source_set_callback(
            source.get(),
            [](gpointer self) -> gboolean {
                static_cast<ServiceThread *>(self)->run_next();
                return G_SOURCE_REMOVE;
            },
            this, nullptr);
        g_source_attach(source.get(), context_.get());
    }

    void run_next() {
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

    void run() {
        thread_id_.store(std::this_thread::get_id(), std::memory_order_release);
        pthread_setname_np(pthread_self(), "tessel-service");
        g_main_context_push_thread_default(context_.get());
        g_main_loop_run(loop_.get());
        // Whatever was ended leaves its last notices here, which free what it held.
        while (g_main_context_iteration(context_.get(), FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(context_.get());
        thread_id_.store(std::thread::id(), std::memory_order_release);
    }

    const std::unique_ptr<GMainContext, ContextUnref> context_;
    const std::unique_ptr<GMainLoop, LoopUnref> loop_;
    std::mutex mutex_;
    std::deque<Call> calls_;
    std::thread thread_;
    std::atomic<std::thread::id> thread_id_{};
    bool stopping_ = false;
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
