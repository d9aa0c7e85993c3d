#pragma once

#include <sound_manager.h>

#include <memory>
#include <string>

namespace host::sound {

/// Names a stream. The shared code gives the numbers; 0 is none.
using StreamId = unsigned;

/// A focus that was lost or has come back, and what the other stream stated about itself.
struct FocusChange {
    sound_stream_focus_mask_e mask = SOUND_STREAM_FOCUS_FOR_PLAYBACK;
    sound_stream_focus_state_e state = SOUND_STREAM_FOCUS_STATE_RELEASED;
    sound_stream_focus_change_reason_e reason = SOUND_STREAM_FOCUS_CHANGED_BY_MEDIA;
    int behavior = SOUND_BEHAVIOR_NONE;
    std::string extra_info;  ///< empty for none
};

/// What a taker or a giver of the focus says to whom it concerns.
struct FocusStatement {
    int behavior = SOUND_BEHAVIOR_NONE;
    std::string extra_info;  ///< empty for none
};

class FocusEvents {
public:
    virtual ~FocusEvents() = default;
    /// `stream` lost the focus or got it back without asking. Any thread, also with a lock of the
    /// reporter held. Ignored for a stream that is gone.
    virtual void focus_changed(StreamId stream, const FocusChange &change) = 0;
};

/// Who has the focus among the streams that it knows. Playback and recording are one focus each,
/// with one holder at a time: the newest taker. Who loses it stays next in line, gets it back when
/// the taker gives it back or ends, and leaves the line when its reacquisition is switched off.
///
/// REQUIRES of every operation: any thread; no waiting for the main loop. The arguments are checked
/// by the shared code; a mask may name both focuses. Results are numbers of sound_manager_error_e.
class Focus {
public:
    virtual ~Focus() = default;

    virtual void add_stream(StreamId stream) = 0;
    /// The stream is gone: gives back what it holds.
    virtual void remove_stream(StreamId stream) = 0;
    /// For what the stream holds already, succeeds and does nothing. POLICY, with nothing changed,
    /// when another holder forbids it.
    [[nodiscard]] virtual int acquire(StreamId stream, int mask,
                                      const FocusStatement &statement) = 0;
    /// INVALID_STATE, with nothing changed, when the stream doesn't hold all of `mask`.
    [[nodiscard]] virtual int release(StreamId stream, int mask,
                                      const FocusStatement &statement) = 0;
    /// What the stream holds now, as bits of sound_stream_focus_mask_e.
    [[nodiscard]] virtual int held(StreamId stream) = 0;
    /// Whether a focus lost by `stream` is to come back by itself; it is at first.
    virtual void set_reacquisition(StreamId stream, bool enable) = 0;
};

/// A focus that reports to `events`, which outlives it.
using FocusFactory = std::unique_ptr<Focus> (*)(FocusEvents &events);

/// Among the streams of this process alone.
[[nodiscard]] std::unique_ptr<Focus> create_builtin_focus(FocusEvents &events);

/// Among all processes on the session bus, without a daemon: the holder of a focus is the owner of
/// a bus name.
[[nodiscard]] std::unique_ptr<Focus> create_session_bus_focus(FocusEvents &events);

/// Whether a stream of this process other than `but`, which may be null, holds the focus for
/// playback. Any thread; doesn't wait.
[[nodiscard]] bool is_focus_held(sound_stream_info_h but);

/// Puts another focus in the place of the one in use, which the first stream chooses: that of the
/// session bus where there is one. No stream may be alive.
void use_focus(FocusFactory factory);

}  // namespace host::sound
