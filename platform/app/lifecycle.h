#pragma once

#include <app_common.h>

#include <string>

namespace host {

/// What the rest of the host tells the life cycle. Thread: main loop.

/// The application leaves the foreground (home key, lowered window): it is paused.
void leave_foreground();
/// The application is in the foreground again.
void enter_foreground();
/// The screen of the machine goes off, as it does on the wrist: whatever is in the foreground is
/// paused until it comes on again.
void screen_went_off();
void screen_came_on();
/// Ends the application through terminate, as SIGTERM does.
void request_exit();
/// Raises a system event to the handlers of ui_app_add_event_handler().
void raise_app_event(app_event_type_e event);

/// Exit status. The latest launch failed with nothing to show for it; `why` is one line for the
/// user, printed once on standard error at the end. Any thread.
void report_playback_failure(const std::string &why);
/// A completion came: the latest launch did what it was for. Any thread.
void report_playback_completed();

}  // namespace host
