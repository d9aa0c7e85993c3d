#pragma once

#include "app/options.h"

namespace host {

/// Sets what the libraries read from the environment: how the toolkit logs and draws, the locale,
/// and that no bus be started. `options.headless` is set when there is no display. Main thread,
/// before any other thread exists.
void prepare_environment(Options &options);

}  // namespace host
