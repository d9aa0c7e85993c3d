#include "sound/builtin/builtin_backend.h"

#include <algorithm>

#include "app/options.h"

namespace host::sound {
namespace {

/// Perceived loudness follows roughly the cube of the amplitude, so equal steps of the level are
/// heard as equal steps.
double gain_of_level(int level) {
    const double part = static_cast<double>(level) / kMaxLevel;
    return part * part * part;
}

template <typename Devices>
auto find_made_up(Devices &devices, sound_device_type_e type) {
    return std::find_if(devices.begin() + 1, devices.end(),
                        [type](const Device &device) { return device.type == type; });
}

}  // namespace

BuiltinBackend::BuiltinBackend(Events &events, bool watch_profile)
    : events_(events),
      devices_{{watch_profile ? SOUND_DEVICE_BUILTIN_SPEAKER : SOUND_DEVICE_USB_AUDIO,
                "Default output"}} {}

int BuiltinBackend::max_volume(sound_type_e /*type*/) const {
    return kMaxLevel;
}

std::optional<int> BuiltinBackend::volume(sound_type_e type) const {
    const std::lock_guard lock(mutex_);
    return levels_.get(type);
}

bool BuiltinBackend::set_volume(sound_type_e type, int level) {
    // Held over the reports, so that two setters report in the order in which they set.
    const std::lock_guard order(report_mutex_);
    {
        const std::lock_guard lock(mutex_);
        if (!levels_.set(type, level)) {
            return true;
        }
    }
    if (type == SOUND_TYPE_MEDIA) {
        events_.stream_gain_changed(gain_of_level(level));
    }
    events_.volume_changed(type, static_cast<unsigned>(level));
    return true;
}

double BuiltinBackend::stream_gain() const {
    const std::lock_guard lock(mutex_);
    return gain_of_level(levels_.get(SOUND_TYPE_MEDIA));
}

std::optional<std::vector<Device>> BuiltinBackend::devices() const {
    const std::lock_guard lock(mutex_);
    return devices_;
}

void BuiltinBackend::connect(const Device &device) {
    const std::lock_guard lock(mutex_);
    if (find_made_up(devices_, device.type) == devices_.end()) {
        devices_.push_back(device);
        events_.device_changed(device, true);
    }
}

bool BuiltinBackend::disconnect(sound_device_type_e type) {
    const std::lock_guard lock(mutex_);
    const auto found = find_made_up(devices_, type);
    if (found == devices_.end()) {
        return false;
    }
    const Device device = *found;
    devices_.erase(found);
    events_.device_changed(device, false);
    return true;
}

std::unique_ptr<Backend> create_builtin_backend(Events &events) {
    return std::make_unique<BuiltinBackend>(events, options().watch_profile);
}

}  // namespace host::sound
