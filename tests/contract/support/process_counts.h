#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace support {

inline std::size_t entries_of(const char *folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder),
                                                  std::filesystem::directory_iterator()));
}

/// How many threads this process has.
inline std::size_t threads() {
    return entries_of("/proc/self/task");
}

/// How many descriptors this process has open, and the one that counts them.
inline std::size_t descriptors() {
    return entries_of("/proc/self/fd");
}

}  // namespace support
