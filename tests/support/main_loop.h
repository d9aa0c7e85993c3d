#pragma once

#include <functional>

/// The toolkit's main loop driven by a test, on the thread that initialised the toolkit.
namespace support {

/// Runs the loop until the condition holds.
/// @return whether it held before the deadline
[[nodiscard]] bool run_main_loop_until(const std::function<bool()> &condition,
                                       double deadline_s = 5.0);
/// Runs so many turns of the loop: what waits in pipes, jobs and idlers is delivered, nothing
/// waits.
void run_loop_turns(int turns = 3);
/// Runs the loop for a stretch of time, to show that something doesn't happen in it.
void run_main_loop_for(double seconds);

}  // namespace support
