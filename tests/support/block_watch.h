#pragma once

#include <cstddef>

namespace support {

/// Counts the heap blocks of one size that the program's calloc() gives out and that aren't freed
/// yet, on every thread, from its construction on. For blocks whose leak the leak detector is told
/// to accept elsewhere. One at a time.
class BlockWatch {
public:
    explicit BlockWatch(std::size_t size);
    ~BlockWatch();
    BlockWatch(const BlockWatch &) = delete;
    BlockWatch &operator=(const BlockWatch &) = delete;

    [[nodiscard]] int live() const;
    [[nodiscard]] int allocated() const;
};

}  // namespace support
