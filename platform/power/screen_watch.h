#pragma once

namespace host {

/// Follows whether the machine's screen is in use, as the desktop tells it: logind says on the
/// system bus when the machine goes to sleep and wakes, and when the session is locked and
/// unlocked; the session's screen saver says when it covers the screen. What goes on at the start
/// counts as in use. screen_went_off() and screen_came_on() are told of each change. Without those
/// buses nothing changes. Thread: main loop.
void start_screen_watch();
/// Ends it, and waits for its end.
void stop_screen_watch();

}  // namespace host
