#include "scarcity.h"

#include <sys/types.h>

#include <atomic>
#include <cerrno>
#include <limits>

namespace {

constexpr std::size_t kPlenty = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> room = kPlenty;
std::atomic<std::size_t> largest_piece = kPlenty;

}  // namespace

namespace fuzz {

LittleRoom::LittleRoom(std::size_t bytes) {
    room = bytes;
}

LittleRoom::~LittleRoom() {
    room = kPlenty;
}

LittleMemory::LittleMemory(std::size_t bytes) {
    largest_piece = bytes;
}

LittleMemory::~LittleMemory() {
    largest_piece = kPlenty;
}

}  // namespace fuzz

extern "C" {

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
ssize_t __real_pwrite(int file, const void *data, size_t size, off_t place);
int __real_posix_memalign(void **memory, size_t alignment, size_t size);

ssize_t __wrap_pwrite(int file, const void *data, size_t size, off_t place) {
    if (static_cast<size_t>(place) + size > room) {
        errno = ENOSPC;
        return -1;
    }
    return __real_pwrite(file, data, size, place);
}

int __wrap_posix_memalign(void **memory, size_t alignment, size_t size) {
    return size > largest_piece ? ENOMEM : __real_posix_memalign(memory, alignment, size);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

}  // extern "C"
