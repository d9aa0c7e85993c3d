#pragma once

namespace host {

/// The socket by which tesselctl drives the program, opened only under `--control`. Thread: main
/// loop, with the loop set up.

/// Opens the socket and serves it on the main loop.
/// @return false, after one clear line on standard error, when the socket can't be opened
[[nodiscard]] bool start_control();

/// Closes the clients and removes the socket. Without start_control(), does nothing.
void stop_control();

}  // namespace host
