#include "block_watch.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define UNDER_SANITIZER 1
// The compiler's sanitizers have it, its headers don't.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*malloc_hook)(const volatile void *,
                                                                             std::size_t),
                                                         void (*free_hook)(const volatile void *));
#else
#define UNDER_SANITIZER 0
#endif

namespace {

// No allocation here: this runs inside the allocator.
constexpr std::size_t capacity = 4096;
std::atomic<std::size_t> watched_size{0};
std::atomic<int> live_blocks{0};
std::atomic<int> allocated_blocks{0};
std::array<std::atomic<std::uintptr_t>, capacity> blocks{};

void on_allocate(const volatile void *block, std::size_t size) {
    const auto wanted = watched_size.load(std::memory_order_relaxed);
    if (wanted == 0 || size != wanted || block == nullptr) {
        return;
    }
    for (auto &slot : blocks) {
        std::uintptr_t empty = 0;
        if (slot.compare_exchange_strong(empty, reinterpret_cast<std::uintptr_t>(block))) {
            live_blocks.fetch_add(1);
            allocated_blocks.fetch_add(1);
            return;
        }
    }
}

void on_free(const volatile void *block) {
    if (block == nullptr || live_blocks.load(std::memory_order_relaxed) == 0) {
        return;
    }
    for (auto &slot : blocks) {
        auto expected = reinterpret_cast<std::uintptr_t>(block);
        if (slot.compare_exchange_strong(expected, 0)) {
            live_blocks.fetch_sub(1);
            return;
        }
    }
}

}  // namespace

#if !UNDER_SANITIZER
extern "C" {

void *__libc_calloc(std::size_t count, std::size_t size);
void __libc_free(void *block);

void *calloc(std::size_t count, std::size_t size) {
    void *block = __libc_calloc(count, size);
    on_allocate(block, count * size);
    return block;
}

void free(void *block) {
    on_free(block);
    __libc_free(block);
}

}  // extern "C"
#endif

namespace support {

BlockWatch::BlockWatch(std::size_t size) {
#if UNDER_SANITIZER
    static const int installed = __sanitizer_install_malloc_and_free_hooks(on_allocate, on_free);
    (void)installed;
#endif
    for (auto &slot : blocks) {
        slot = 0;
    }
    live_blocks = 0;
    allocated_blocks = 0;
    watched_size = size;
}

BlockWatch::~BlockWatch() {
    watched_size = 0;
}

int BlockWatch::live() const {
    return live_blocks;
}

int BlockWatch::allocated() const {
    return allocated_blocks;
}

}  // namespace support
