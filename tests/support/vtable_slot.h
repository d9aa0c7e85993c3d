#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace support {

/// The place of a virtual operation in its class's table, by the common C++ ABI, in which a pointer
/// to it holds its offset there. The two destructors count as one slot each.
template <typename Operation>
std::size_t vtable_slot(Operation operation) {
    std::uintptr_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    // Some processors keep the mark of a virtual operation in the lowest bit of the offset.
    return (word & ~std::uintptr_t{1}) / sizeof(void *);
}

}  // namespace support
