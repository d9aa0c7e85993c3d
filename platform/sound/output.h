#pragma once

#include <functional>
#include <string>
#include <vector>

namespace host {

/// What the player needs of the sound backend. Any thread.

/// The PulseAudio servers that the environment names, in the words of PULSE_SERVER.
[[nodiscard]] std::vector<std::string> sound_servers();

/// Whether one of them answers within a tenth of a second each. Asks anew at each call.
[[nodiscard]] bool sound_server_answers(const std::vector<std::string> &servers = sound_servers());

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

/// `returned` is called, on any thread, when a server has appeared that wasn't there, or an output
/// of one that had none: streams that play into nothing, or into a server that has gone, may take
/// sound_sink_element() anew. Empty ends that, as above.
void on_sound_output_returned(std::function<void()> returned);

}  // namespace host
