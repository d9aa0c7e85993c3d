#pragma once

#include <optional>
#include <string>

namespace host {

/// The fate of the latest launch, which makes the exit status. Any thread; see also
/// report_playback_failure() and report_playback_completed().

/// A launch begins, and what was said of the one before no longer counts.
void begin_launch();

/// One line saying why the latest launch has nothing to show for it; nothing when it has.
[[nodiscard]] std::optional<std::string> launch_failure();

}  // namespace host
