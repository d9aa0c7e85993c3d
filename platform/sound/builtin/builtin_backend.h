#pragma once

#include <mutex>
#include <vector>

#include "sound/backend.h"
#include "sound/levels.h"

namespace host::sound {

/// The levels live in the process and begin at full, where the stream is left as it is: the
/// desktop's own mixer stands behind it. Its only real device is the default output; others can be
/// made up.
class BuiltinBackend final : public Backend {
public:
    /// @param watch_profile  the default output is the built-in speaker, instead of an external
    ///                       device of a type that is no earjack, Bluetooth set or screen
    BuiltinBackend(Events &events, bool watch_profile);

    [[nodiscard]] const char *name() const override { return "builtin"; }
    [[nodiscard]] int max_volume(sound_type_e type) const override;
    [[nodiscard]] std::optional<int> volume(sound_type_e type) const override;
    [[nodiscard]] bool set_volume(sound_type_e type, int level) override;
    [[nodiscard]] double stream_gain() const override;
    [[nodiscard]] std::optional<std::vector<Device>> devices() const override;

    /// Makes up a device, one of each type; does nothing for one that is there.
    void connect(const Device &device);
    /// @return false when no made-up device has the type
    bool disconnect(sound_device_type_e type);

private:
    Events &events_;
    std::recursive_mutex report_mutex_;  // a gain listener may set a level
    mutable std::mutex mutex_;
    Levels levels_;
    std::vector<Device> devices_;  // the first is real
};

}  // namespace host::sound
