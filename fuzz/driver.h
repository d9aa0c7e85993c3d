#pragma once

#include <string>
#include <vector>

#include "structure.h"

// What each fuzzer supplies to the driver.
namespace fuzz {

/// Before the first input.
/// @param corpus  the folder with what the inputs are made of
void begin(const std::string &corpus);
/// Where the changes are to be made above all; empty: anywhere.
[[nodiscard]] std::vector<Region> regions_of(const std::string &input);
/// Makes what a change broke right again, so that what lies behind it is reached.
void mend(std::string &input);
/// Takes one input.
/// @return what came of it, in one line; for media it begins with the platform's error number
[[nodiscard]] std::string take(const std::string &input);
/// After the unchanged inputs: what is there now may stay.
void loaded();
/// After the last.
/// @return what is left behind that should not be; empty: nothing
[[nodiscard]] std::string end();

}  // namespace fuzz
