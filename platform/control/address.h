#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace host {

/// Where the control sockets of this user's players are. Needs nothing of the toolkit: the tool on
/// the other side uses it too.

/// "tessel" in $XDG_RUNTIME_DIR, else "tessel-UID" in $TMPDIR, else in /tmp. Not created here.
[[nodiscard]] std::string control_directory();

/// The socket of the player with the process id `pid`.
[[nodiscard]] std::string control_socket(pid_t pid);

/// The process ids for which there is a socket, in ascending order. The processes may be gone.
[[nodiscard]] std::vector<pid_t> control_sockets();

}  // namespace host
