#pragma once

#include <sound_manager.h>

#include <memory>
#include <string>
#include <vector>

namespace host::sound {

/// One output device as a backend knows it.
struct Device {
    sound_device_type_e type = SOUND_DEVICE_BUILTIN_SPEAKER;
    std::string name;

    [[nodiscard]] int mask() const {
        return type <= SOUND_DEVICE_BUILTIN_MIC ? SOUND_DEVICE_TYPE_INTERNAL_MASK
                                                : SOUND_DEVICE_TYPE_EXTERNAL_MASK;
    }
};

/// Names a stream towards a backend. The shared code gives the numbers; 0 is none.
using StreamId = unsigned;

/// What a focus change was caused by.
struct FocusChange {
    sound_stream_focus_mask_e mask = SOUND_STREAM_FOCUS_FOR_PLAYBACK;
    sound_stream_focus_state_e state = SOUND_STREAM_FOCUS_STATE_RELEASED;
    sound_stream_focus_change_reason_e reason = SOUND_STREAM_FOCUS_CHANGED_BY_MEDIA;
    int behavior = SOUND_BEHAVIOR_NONE;
    std::string extra_info;  ///< empty for none
};

/// What a backend reports. The shared code brings the reports to the callbacks' threads, so they
/// may be made on any thread, with a backend's own lock held. A report that concerns a getter is
/// made after the getter shows the change.
class Events {
public:
    virtual ~Events() = default;
    virtual void volume_changed(sound_type_e type, unsigned level) = 0;
    virtual void device_changed(const Device &device, bool connected) = 0;
    /// `stream` lost the focus or got it back without asking. Ignored for a stream that is gone.
    virtual void focus_changed(StreamId stream, const FocusChange &change) = 0;
    /// The linear gain that Backend::stream_gain() gives has changed.
    virtual void stream_gain_changed(double gain) = 0;
};

/// All that one way of making sound supplies; the arguments are checked by the shared code.
///
/// REQUIRES of every operation: any thread; no waiting for the main loop; getters answer from a
/// snapshot without waiting for a server. Results are numbers of sound_manager_error_e.
class Backend {
public:
    virtual ~Backend() = default;

    /// For the log, one word.
    [[nodiscard]] virtual const char *name() const = 0;

    [[nodiscard]] virtual int max_volume(sound_type_e type) const = 0;
    [[nodiscard]] virtual int volume(sound_type_e type) const = 0;
    /// Shown by volume() when it has returned, and reported unless it is the level that was there.
    [[nodiscard]] virtual int set_volume(sound_type_e type, int level) = 0;
    /// Linear, 0.0 to 1.0: what the player's stream is to be multiplied by for the media level.
    /// 1.0 where the level is applied behind the stream.
    [[nodiscard]] virtual double stream_gain() const = 0;

    /// What is connected now.
    [[nodiscard]] virtual std::vector<Device> devices() const = 0;
    /// Name of the connected Bluetooth set for music, or null.
    [[nodiscard]] virtual std::unique_ptr<std::string> bluetooth_name() const = 0;

    /// Takes the focus; for what the stream holds already, succeeds and does nothing. POLICY when
    /// another holder forbids it.
    [[nodiscard]] virtual int acquire_focus(StreamId stream, sound_stream_focus_mask_e mask,
                                            int behavior, const char *extra_info) = 0;
    /// Gives the focus back. INVALID_STATE when the stream doesn't hold all of `mask`.
    [[nodiscard]] virtual int release_focus(StreamId stream, sound_stream_focus_mask_e mask,
                                            int behavior, const char *extra_info) = 0;
    /// Whether a focus lost by `stream` is to come back by itself; it is at first.
    virtual void set_reacquisition(StreamId stream, bool enable) = 0;
    /// The stream is gone: gives back what it holds.
    virtual void forget_stream(StreamId stream) = 0;
};

/// A backend that reports to `events`, which outlives it.
using BackendFactory = std::unique_ptr<Backend> (*)(Events &events);

/// The mixer of the process itself: needs nothing and is always there.
[[nodiscard]] std::unique_ptr<Backend> create_builtin_backend(Events &events);

/// The backend in use; the first call chooses it.
[[nodiscard]] Backend &backend();

/// Puts another backend in the place of the one in use. No stream, callback or list may be alive.
void use_backend(BackendFactory factory);

}  // namespace host::sound
