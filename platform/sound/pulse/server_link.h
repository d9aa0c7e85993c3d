#pragma once

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/subscribe.h>
#include <pulse/thread-mainloop.h>

#include <functional>
#include <memory>
#include <optional>

#include "sound/pulse/outputs.h"

namespace host::sound::pulse {

struct MainloopFree {
    void operator()(pa_threaded_mainloop *loop) const { pa_threaded_mainloop_free(loop); }
};
struct ContextUnref {
    void operator()(pa_context *context) const {
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
};
struct OperationUnref {
    void operator()(pa_operation *operation) const { pa_operation_unref(operation); }
};

/// A connection to the server that the environment names, made again for as long as the server is
/// away. It has a thread of its own, on which it tells what it hears.
class ServerLink {
public:
    struct Handlers {
        /// The outputs as they are now.
        /// `volumes_settled`: they show every set_volume() so far, or won't
        std::function<void(Outputs outputs, bool volumes_settled)> outputs;
        /// The server can't be reached, or has gone. May come again and again.
        std::function<void()> away;
    };

    explicit ServerLink(Handlers handlers);
    /// No handler runs when it has returned.
    ~ServerLink();
    ServerLink(const ServerLink &) = delete;
    ServerLink &operator=(const ServerLink &) = delete;

    /// While it lives, on any other thread, no handler runs and set_volume() may be called.
    class Lock {
    public:
        explicit Lock(ServerLink &link) : loop_(link.loop_.get()) {
            pa_threaded_mainloop_lock(loop_);
        }
        ~Lock() { pa_threaded_mainloop_unlock(loop_); }
        Lock(const Lock &) = delete;
        Lock &operator=(const Lock &) = delete;

    private:
        pa_threaded_mainloop *loop_;
    };

    /// Sends a volume, with which the sink is not muted. @return false when it can't be sent
    [[nodiscard]] bool set_volume(const Sink &sink, const pa_cvolume &volume);

private:
    using Operation = std::unique_ptr<pa_operation, OperationUnref>;

    using TimedCall = void (ServerLink::*)();

    void connect();
    /// Makes the call when a time has passed, unless it is to be made already.
    template <TimedCall call>
    void call_later(pa_time_event *&event, pa_usec_t time);
    void cancel(pa_time_event *&event);
    void state_changed();
    void lose();
    /// Reads all outputs anew; while that is under way, once more after it.
    void read();
    void read_sinks();
    void finish_reading();
    [[nodiscard]] bool volumes_settled() const;
    void sent();
    void stop_waiting_for_set();

    Handlers handlers_;
    std::unique_ptr<pa_threaded_mainloop, MainloopFree> loop_;
    std::unique_ptr<pa_context, ContextUnref> context_;
    // The loop's.
    pa_time_event *retry_ = nullptr;
    pa_time_event *end_of_wait_ = nullptr;

    bool reading_ = false;
    bool read_again_ = false;
    Outputs read_so_far_;
    // Sets that were sent before the reading began are in what is read; the server keeps the order.
    unsigned sets_sent_ = 0;
    unsigned sets_under_way_ = 0;
    unsigned sets_before_reading_ = 0;
    /// The last set, until what is read shows it.
    std::optional<Sink> awaited_;
};

}  // namespace host::sound::pulse
