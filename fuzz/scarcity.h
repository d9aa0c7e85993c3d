#pragma once

#include <cstddef>

// A machine that runs out of something. The linker leads the player's own calls to the C library
// here, and nobody else's: fuzz/CMakeLists.txt names them.
namespace fuzz {

/// While it lives, no more than so many bytes can be written into the copy of a download.
class LittleRoom {
public:
    explicit LittleRoom(std::size_t bytes);
    ~LittleRoom();
    LittleRoom(const LittleRoom &) = delete;
    LittleRoom &operator=(const LittleRoom &) = delete;
};

/// While it lives, no piece of memory for pictures and file contents can be larger.
class LittleMemory {
public:
    explicit LittleMemory(std::size_t bytes);
    ~LittleMemory();
    LittleMemory(const LittleMemory &) = delete;
    LittleMemory &operator=(const LittleMemory &) = delete;
};

}  // namespace fuzz
