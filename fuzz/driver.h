#pragma once

#include <string>
#include <vector>

#include "mutation.h"

// What each fuzzer supplies to the driver.
namespace fuzz {

/// Before the first input.
void begin();
/// Where the changes are to be made above all; empty: anywhere.
[[nodiscard]] std::vector<Region> regions_of(const std::string &input);
/// Takes one input.
/// @return what came of it, in a word: for media the platform's error number
[[nodiscard]] std::string take(const std::string &input);
/// After the last.
void end();

}  // namespace fuzz
