#include "sound/pulse/server_link.h"

#include <pulse/mainloop-api.h>
#include <pulse/rtclock.h>
#include <pulse/timeval.h>
#include <sys/time.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace host::sound::pulse {
namespace {

constexpr const char *kClientName = "Tessel";
constexpr pa_usec_t kRetryTime = 300 * PA_USEC_PER_MSEC;
/// PipeWire says that it has carried a set out before it shows it. What isn't shown after this time
/// was refused, or changed by another.
constexpr pa_usec_t kSetTime = PA_USEC_PER_SEC;

}  // namespace

ServerLink::ServerLink(Handlers handlers)
    : handlers_(std::move(handlers)), loop_(pa_threaded_mainloop_new()) {
    if (!loop_) {
        throw std::bad_alloc();
    }
    pa_threaded_mainloop_set_name(loop_.get(), "tessel-sound");
    connect();
    if (pa_threaded_mainloop_start(loop_.get()) < 0) {
        throw std::runtime_error("the thread of the sound server's connection can't be started");
    }
}

ServerLink::~ServerLink() {
    pa_threaded_mainloop_stop(loop_.get());
    if (context_) {
        pa_context_set_state_callback(context_.get(), nullptr, nullptr);
    }
    context_.reset();
    cancel(retry_);
    cancel(end_of_wait_);
}

template <ServerLink::TimedCall call>
void ServerLink::call_later(pa_time_event *&event, pa_usec_t time) {
    if (event != nullptr) {
        return;
    }
    timeval when{};
    pa_timeval_add(pa_gettimeofday(&when), time);
    event = pa_threaded_mainloop_get_api(loop_.get())
                ->time_new(
                    pa_threaded_mainloop_get_api(loop_.get()), &when,
                    [](pa_mainloop_api *, pa_time_event *, const timeval *, void *self) {
                        (static_cast<ServerLink *>(self)->*call)();
                    },
                    this);
}

void ServerLink::cancel(pa_time_event *&event) {
    if (event != nullptr) {
        pa_threaded_mainloop_get_api(loop_.get())->time_free(std::exchange(event, nullptr));
    }
}

void ServerLink::connect() {
    cancel(retry_);
    cancel(end_of_wait_);
    awaited_.reset();
    reading_ = false;
    sets_under_way_ = 0;
    context_.reset(pa_context_new(pa_threaded_mainloop_get_api(loop_.get()), kClientName));
    if (!context_) {
        lose();
        return;
    }
    pa_context_set_state_callback(
        context_.get(),
        [](pa_context *, void *self) { static_cast<ServerLink *>(self)->state_changed(); }, this);
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        lose();
    }
}

void ServerLink::state_changed() {
    switch (pa_context_get_state(context_.get())) {
    case PA_CONTEXT_READY: {
        pa_context_set_subscribe_callback(
            context_.get(),
            [](pa_context *, pa_subscription_event_type_t, std::uint32_t, void *self) {
                static_cast<ServerLink *>(self)->read();
            },
            this);
        constexpr auto kWatched = static_cast<pa_subscription_mask_t>(
            PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER | PA_SUBSCRIPTION_MASK_CARD);
        const Operation subscription(
            pa_context_subscribe(context_.get(), kWatched, nullptr, nullptr));
        read();
        break;
    }
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
        lose();
        break;
    default:
        break;
    }
}

void ServerLink::lose() {
    // The old connection may still be telling of its end: the next is made on another turn.
    call_later<&ServerLink::connect>(retry_, kRetryTime);
    handlers_.away();
}

void ServerLink::read() {
    if (reading_) {
        read_again_ = true;
        return;
    }
    reading_ = true;
    read_again_ = false;
    read_so_far_ = {};
    sets_before_reading_ = sets_sent_;
    const Operation asked(pa_context_get_server_info(
        context_.get(),
        [](pa_context *, const pa_server_info *info, void *data) {
            auto &self = *static_cast<ServerLink *>(data);
            if (info != nullptr && info->default_sink_name != nullptr) {
                self.read_so_far_.default_name = info->default_sink_name;
            }
            self.read_sinks();
        },
        this));
    reading_ = asked != nullptr;
}

void ServerLink::read_sinks() {
    const Operation asked(pa_context_get_sink_info_list(
        context_.get(),
        [](pa_context *, const pa_sink_info *info, int end, void *data) {
            auto &self = *static_cast<ServerLink *>(data);
            if (end == 0) {
                self.read_so_far_.sinks.push_back(read_sink(*info));
            } else {
                self.finish_reading();
            }
        },
        this));
    reading_ = asked != nullptr;
}

void ServerLink::finish_reading() {
    reading_ = false;
    // What changes while it is read may not fit together.
    const bool complete = read_so_far_.default_sink() != nullptr || !read_again_;
    if (complete) {
        const bool settled = volumes_settled();
        if (settled) {
            awaited_.reset();
        }
        handlers_.outputs(std::exchange(read_so_far_, {}), settled);
    }
    if (read_again_) {
        read();
    }
}

bool ServerLink::volumes_settled() const {
    if (sets_under_way_ > 0 || sets_before_reading_ != sets_sent_) {
        return false;
    }
    return !awaited_ || std::all_of(read_so_far_.sinks.begin(), read_so_far_.sinks.end(),
                                    [this](const Sink &sink) {
                                        return sink.index != awaited_->index ||
                                               level_of(sink) == level_of(*awaited_);
                                    });
}

bool ServerLink::set_volume(const Sink &sink, const pa_cvolume &volume) {
    if (!context_ || pa_context_get_state(context_.get()) != PA_CONTEXT_READY) {
        return false;
    }
    const auto done = [](pa_context *, int, void *self) {
        static_cast<ServerLink *>(self)->sent();
    };
    const Operation set(
        pa_context_set_sink_volume_by_index(context_.get(), sink.index, &volume, done, this));
    if (!set) {
        return false;
    }
    ++sets_sent_;
    ++sets_under_way_;
    awaited_ = sink;
    awaited_->volume = volume;
    cancel(end_of_wait_);
    if (sink.muted && pa_cvolume_max(&volume) > PA_VOLUME_MUTED) {
        awaited_->muted = false;
        const Operation unmute(
            pa_context_set_sink_mute_by_index(context_.get(), sink.index, 0, done, this));
        sets_under_way_ += unmute ? 1 : 0;
    }
    return true;
}

/// The server has carried a set out, or has refused it: what it is now is to be read.
void ServerLink::sent() {
    if (--sets_under_way_ == 0) {
        call_later<&ServerLink::stop_waiting_for_set>(end_of_wait_, kSetTime);
        read();
    }
}

void ServerLink::stop_waiting_for_set() {
    cancel(end_of_wait_);
    if (awaited_) {
        awaited_.reset();
        read();
    }
}

}  // namespace host::sound::pulse
