#pragma once

#include <functional>

namespace host {

/// What the player needs of the sound backend. Any thread.

/// Whether a PulseAudio server answers within a tenth of a second. Asks anew at each call.
[[nodiscard]] bool sound_server_answers();

/// Name of the GStreamer element that takes the sound: "pulsesink" when sound_server_answers(),
/// else "alsasink" when there is a device that plays, else "fakesink", which discards the sound in
/// real time once its property `sync` is set. Asks anew at each call.
[[nodiscard]] const char *sound_sink_element();

/// Linear gain, 0.0 to 1.0, that the built-in mixer's media volume asks of a stream; 1.0 when the
/// level is applied elsewhere.
[[nodiscard]] double stream_gain();

/// `changed` is called, on any thread, after stream_gain() has changed; empty ends that, and no
/// call is running when it has returned, but on the thread that is inside one.
void on_stream_gain_changed(std::function<void(double)> changed);

}  // namespace host
