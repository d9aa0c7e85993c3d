#include <array>
#include <map>
#include <mutex>

#include "sound/backend.h"

namespace host::sound {
namespace {

constexpr int kMaxVolume = 15;
constexpr std::size_t kTypeCount = SOUND_TYPE_VOICE + 1;

/// Perceived loudness follows roughly the cube of the amplitude, so equal steps of the level are
/// heard as equal steps.
double gain_of_level(int level) {
    const double part = static_cast<double>(level) / kMaxVolume;
    return part * part * part;
}

/// The levels live in the process and begin at full, where the stream is left as it is: the
/// desktop's own mixer stands behind it.
class BuiltinBackend final : public Backend {
public:
    explicit BuiltinBackend(Events &events) : events_(events) { levels_.fill(kMaxVolume); }

    [[nodiscard]] const char *name() const override { return "builtin"; }

    [[nodiscard]] int max_volume(sound_type_e /*type*/) const override { return kMaxVolume; }

    [[nodiscard]] int volume(sound_type_e type) const override {
        const std::lock_guard lock(mutex_);
        return levels_.at(type);
    }

    [[nodiscard]] int set_volume(sound_type_e type, int level) override {
        // Held over the reports, so that two setters report in the order in which they set.
        const std::lock_guard order(report_mutex_);
        {
            const std::lock_guard lock(mutex_);
            if (levels_.at(type) == level) {
                return SOUND_MANAGER_ERROR_NONE;
            }
            levels_.at(type) = level;
        }
        if (type == SOUND_TYPE_MEDIA) {
            events_.stream_gain_changed(gain_of_level(level));
        }
        events_.volume_changed(type, static_cast<unsigned>(level));
        return SOUND_MANAGER_ERROR_NONE;
    }

    [[nodiscard]] double stream_gain() const override {
        return gain_of_level(volume(SOUND_TYPE_MEDIA));
    }

    /// One output of a type that is no earjack, Bluetooth set or screen: it makes the volume
    /// adjustable and keeps the safety level of headphones out.
    [[nodiscard]] std::vector<Device> devices() const override {
        return {{SOUND_DEVICE_USB_AUDIO, "Default output"}};
    }

    [[nodiscard]] std::unique_ptr<std::string> bluetooth_name() const override { return nullptr; }

    /// Nobody else is asked, so the focus is always granted and never lost.
    [[nodiscard]] int acquire_focus(StreamId stream, sound_stream_focus_mask_e mask,
                                    int /*behavior*/, const char * /*extra_info*/) override {
        const std::lock_guard lock(mutex_);
        held_[stream] |= mask;
        return SOUND_MANAGER_ERROR_NONE;
    }

    [[nodiscard]] int release_focus(StreamId stream, sound_stream_focus_mask_e mask,
                                    int /*behavior*/, const char * /*extra_info*/) override {
        const std::lock_guard lock(mutex_);
        const auto held = held_.find(stream);
        if (held == held_.end() || (held->second & mask) != mask) {
            return SOUND_MANAGER_ERROR_INVALID_STATE;
        }
        held->second &= ~mask;
        return SOUND_MANAGER_ERROR_NONE;
    }

    void set_reacquisition(StreamId /*stream*/, bool /*enable*/) override {}

    void forget_stream(StreamId stream) override {
        const std::lock_guard lock(mutex_);
        held_.erase(stream);
    }

private:
    Events &events_;
    std::recursive_mutex report_mutex_;  // a gain listener may set a level
    mutable std::mutex mutex_;
    std::array<int, kTypeCount> levels_{};
    std::map<StreamId, int> held_;  // bits of the focus mask
};

}  // namespace

std::unique_ptr<Backend> create_builtin_backend(Events &events) {
    return std::make_unique<BuiltinBackend>(events);
}

}  // namespace host::sound
