#pragma once

namespace host {

/// Lets the toolkit show its widgets to assistive technologies, and begins to watch whether a
/// screen reader is on. To be called once, before the toolkit is initialised; neither waits for
/// anything. Main thread, while it is the only one: it changes the environment.
void start_accessibility();

/// Ends the watch, and waits for its end. Before the service thread is stopped.
void stop_accessibility();

/// Whether a screen reader is on, as the desktop last reported. Any thread.
[[nodiscard]] bool screen_reader_enabled();

}  // namespace host
