#pragma once

#include "app/options.h"

namespace host {

/// Sets what the libraries read from the environment: the home, how the toolkit logs and draws, the
/// locale, and that no bus be started. `options.headless` is set when there is no display. Main
/// thread, before any other thread exists.
void prepare_environment(Options &options);

/// Leads those of the three standard descriptors that are closed to nowhere, so that nothing else
/// gets their numbers, and with them what is written to standard error. Before anything is opened.
void occupy_standard_descriptors();

}  // namespace host
