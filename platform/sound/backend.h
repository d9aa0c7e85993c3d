#pragma once

#include <sound_manager.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host::sound {

/// One output device as a backend knows it.
struct Device {
    sound_device_type_e type = SOUND_DEVICE_BUILTIN_SPEAKER;
    std::string name;  ///< for people

    [[nodiscard]] int mask() const {
        return type <= SOUND_DEVICE_BUILTIN_MIC ? SOUND_DEVICE_TYPE_INTERNAL_MASK
                                                : SOUND_DEVICE_TYPE_EXTERNAL_MASK;
    }
};

/// What a backend reports. The shared code brings the reports to the callbacks' threads, so they
/// may be made on any thread, with a backend's own lock held. A report that concerns a getter is
/// made after the getter shows the change.
class Events {
public:
    virtual ~Events() = default;
    virtual void volume_changed(sound_type_e type, unsigned level) = 0;
    virtual void device_changed(const Device &device, bool connected) = 0;
    /// The linear gain that Backend::stream_gain() gives has changed.
    virtual void stream_gain_changed(double gain) = 0;
    /// There is an output again after there was none: streams that lost theirs may come back.
    virtual void output_returned() = 0;
};

/// All that one way of making sound supplies; the arguments are checked by the shared code.
///
/// REQUIRES of every operation: any thread; no waiting for the main loop; getters answer from a
/// snapshot. Only the first answer of a server is waited for, for a bounded time.
class Backend {
public:
    virtual ~Backend() = default;

    /// One word, for people.
    [[nodiscard]] virtual const char *name() const = 0;

    [[nodiscard]] virtual int max_volume(sound_type_e type) const = 0;
    /// None while there is nothing that could have a volume.
    [[nodiscard]] virtual std::optional<int> volume(sound_type_e type) const = 0;
    /// Shown by volume() when it has returned, and reported unless it is the level that was there.
    /// @return false, with nothing changed, while there is nothing that could have a volume
    [[nodiscard]] virtual bool set_volume(sound_type_e type, int level) = 0;
    /// Linear, 0.0 to 1.0: what the player's stream is to be multiplied by for the media level.
    /// 1.0 where the level is applied behind the stream.
    [[nodiscard]] virtual double stream_gain() const = 0;

    /// What is connected now; none while nobody can tell.
    [[nodiscard]] virtual std::optional<std::vector<Device>> devices() const = 0;
};

/// A backend that reports to `events`, which outlives it.
using BackendFactory = std::unique_ptr<Backend> (*)(Events &events);

/// The mixer of the process itself: needs nothing and is always there.
[[nodiscard]] std::unique_ptr<Backend> create_builtin_backend(Events &events);

/// The server of the PulseAudio protocol that the environment names.
[[nodiscard]] std::unique_ptr<Backend> create_pulse_backend(Events &events);

/// The backend in use; the first call chooses it: a server that answers, or else the built-in one
/// until a server does.
[[nodiscard]] std::shared_ptr<Backend> backend();

/// Chooses anew, as the first time. No callback or list may be alive.
void choose_backend();

/// Puts another backend in the place of the one in use, for good. No callback or list may be alive.
void use_backend(BackendFactory factory);

}  // namespace host::sound
