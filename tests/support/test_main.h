#pragma once

#include <functional>

namespace support {

/// Runs a function after every test, newest first, and once at the end of the process. For what is
/// shared between tests and must not leak from one into the next.
void after_each_test(std::function<void()> reset);

}  // namespace support
