#pragma once

namespace host {

/// Begins to watch whether a screen reader is on, and lets assistive technologies at the program's
/// widgets once the session bus has answered. Waits for nothing; without a bus does nothing. After
/// the toolkit's initialisation. Main thread.
void start_accessibility();

/// Ends the watch, and waits for its end. Before the service thread is stopped.
void stop_accessibility();

/// Whether a screen reader is on: as a tester has said, else as the desktop last reported. Any
/// thread.
[[nodiscard]] bool screen_reader_enabled();

/// A tester says that a screen reader is on or off, for this process alone and whatever the desktop
/// reports from now on. Any thread.
void switch_screen_reader(bool on);

}  // namespace host
