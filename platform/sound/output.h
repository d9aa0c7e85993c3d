#pragma once

#include <functional>

namespace host {

/// What the player needs of the sound backend. Any thread.

/// Name of the GStreamer element that takes the sound: a PulseAudio sink when a server answers,
/// else ALSA, else one that discards it in real time.
[[nodiscard]] const char *sound_sink_element();

/// Linear gain, 0.0 to 1.0, that the built-in mixer's media volume asks of a stream; 1.0 when the
/// level is applied elsewhere.
[[nodiscard]] double stream_gain();

/// `changed` is called, on any thread, after stream_gain() has changed; empty ends that.
void on_stream_gain_changed(std::function<void(double)> changed);

}  // namespace host
