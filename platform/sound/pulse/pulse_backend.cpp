#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "app/options.h"
#include "sound/backend.h"
#include "sound/levels.h"
#include "sound/pulse/outputs.h"
#include "sound/pulse/server_link.h"

namespace host::sound {
namespace {

using pulse::KnownDevice;
using pulse::Outputs;
using pulse::ServerLink;
using pulse::Sink;

/// A server on this machine answers within some milliseconds. One that doesn't counts as away.
constexpr auto kFirstAnswerTime = std::chrono::milliseconds(500);

/// The volume and the devices of a server. Getters answer from a copy, which a set changes at once
/// and the server's own word corrects.
class PulseBackend final : public Backend {
public:
    PulseBackend(Events &events, bool watch_profile)
        : events_(events),
          watch_profile_(watch_profile),
          link_({[this](const Outputs &outputs, bool volumes_settled) {
                     update(outputs, volumes_settled);
                 },
                 [this] { forget(); }}) {}

    [[nodiscard]] const char *name() const override { return "pulse"; }

    [[nodiscard]] int max_volume(sound_type_e /*type*/) const override { return kMaxLevel; }

    [[nodiscard]] std::optional<int> volume(sound_type_e type) const override {
        std::unique_lock lock(mutex_);
        if (type != SOUND_TYPE_MEDIA) {
            return levels_.get(type);
        }
        wait_for_first_answer(lock);
        return sink_ ? std::optional(level_of(*sink_)) : std::nullopt;
    }

    [[nodiscard]] bool set_volume(sound_type_e type, int level) override {
        if (type == SOUND_TYPE_MEDIA) {
            return set_media_volume(level);
        }
        // The server has no volumes for these: they are the process's own.
        const std::lock_guard lock(mutex_);
        if (levels_.set(type, level)) {
            events_.volume_changed(type, static_cast<unsigned>(level));
        }
        return true;
    }

    [[nodiscard]] double stream_gain() const override { return 1.0; }

    [[nodiscard]] std::optional<std::vector<Device>> devices() const override {
        std::unique_lock lock(mutex_);
        wait_for_first_answer(lock);
        if (!there_) {
            return std::nullopt;
        }
        std::vector<Device> devices;
        for (const KnownDevice &known : devices_) {
            devices.push_back(known.device);
        }
        return devices;
    }

private:
    [[nodiscard]] bool set_media_volume(int level) {
        {
            std::unique_lock lock(mutex_);
            wait_for_first_answer(lock);
        }
        // The link's first, as its handlers come with it.
        const ServerLink::Lock no_handlers(link_);
        const std::lock_guard lock(mutex_);
        if (!sink_) {
            return false;
        }
        const auto wanted = volume_for(*sink_, level);
        if (!wanted) {
            return true;
        }
        if (!link_.set_volume(*sink_, *wanted)) {
            return false;
        }
        Sink set = *sink_;
        set.volume = *wanted;
        set.muted = set.muted && level == 0;
        change_sink(std::move(set));
        return true;
    }

    // On the link's thread.

    void update(const Outputs &outputs, bool volumes_settled) {
        const std::lock_guard lock(mutex_);
        there_ = true;
        change_devices(devices_of(outputs, watch_profile_));
        std::optional<Sink> sink;
        if (const Sink *const found = outputs.default_sink()) {
            sink = *found;
            // What the server hasn't heard of yet, its word doesn't take back.
            if (!volumes_settled && sink_ && sink_->name == sink->name) {
                sink->volume = sink_->volume;
                sink->muted = sink_->muted;
            }
        }
        change_sink(std::move(sink));
        answer();
    }

    void forget() {
        const std::lock_guard lock(mutex_);
        there_ = false;
        change_devices({});
        change_sink(std::nullopt);
        answer();
    }

    // With the lock held.

    void change_sink(std::optional<Sink> sink) {
        const bool returned = !sink_ && sink;
        sink_ = std::move(sink);
        if (!sink_) {
            return;
        }
        const int level = level_of(*sink_);
        if (std::exchange(last_level_, level) != level && answered_) {
            events_.volume_changed(SOUND_TYPE_MEDIA, static_cast<unsigned>(level));
        }
        if (returned && answered_) {
            events_.output_returned();
        }
    }

    void change_devices(std::vector<KnownDevice> devices) {
        const auto before = std::exchange(devices_, std::move(devices));
        if (!answered_) {
            return;
        }
        for (const auto &change : pulse::changes_between(before, devices_)) {
            events_.device_changed(change.device, change.connected);
        }
    }

    void answer() {
        answered_ = true;
        first_answer_.notify_all();
    }

    void wait_for_first_answer(std::unique_lock<std::mutex> &lock) const {
        if (!first_answer_.wait_for(lock, kFirstAnswerTime, [this] { return answered_; })) {
            answered_ = true;
        }
    }

    Events &events_;
    const bool watch_profile_;
    mutable std::mutex mutex_;
    mutable std::condition_variable first_answer_;
    /// The server, or its absence, has been heard of; whoever asked before that has been told so.
    mutable bool answered_ = false;
    bool there_ = false;
    std::vector<KnownDevice> devices_;
    std::optional<Sink> sink_;  ///< the default one
    std::optional<int> last_level_;
    Levels levels_;
    ServerLink link_;  // last: its handlers use all of the above
};

}  // namespace

std::unique_ptr<Backend> create_pulse_backend(Events &events) {
    return std::make_unique<PulseBackend>(events, options().watch_profile);
}

}  // namespace host::sound
