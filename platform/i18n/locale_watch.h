#pragma once

namespace host {

/// Follows the machine's locale, as systemd's locale1 tells its changes on the system bus: the
/// language and the region change at run time, as the device's settings change them. Without that
/// bus nothing changes. Thread: main loop.
void start_locale_watch();
/// Ends it, and waits for its end.
void stop_locale_watch();

}  // namespace host
