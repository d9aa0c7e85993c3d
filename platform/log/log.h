#pragma once

#include <string>

namespace host {

/// What the log lets through. Any thread.

/// Sets the levels, in place of those of the environment variable TESSEL_LOG.
///
/// `spec` is a level for all tags, or a list of TAG:LEVEL, or both: "info",
/// "TESSEL:debug,WAPP:warn", "warn,TESSEL:debug". A level is verbose, debug, info, warn, error,
/// fatal or off, and lets through what is at least as important. Tags that aren't named have the
/// bare level, or none.
/// @return false, and nothing is changed, when `spec` isn't of that form
bool set_log_levels(const std::string &spec);

/// Whether `spec` would be accepted by set_log_levels().
[[nodiscard]] bool is_log_spec(const std::string &spec);

}  // namespace host
