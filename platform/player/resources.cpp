#include "player/resources.h"

#include <fcntl.h>
#include <gst/gst.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "common/unique_fd.h"

namespace host {
namespace {

/// A playback of a file with sound takes about thirty.
constexpr std::size_t kDescriptorsForPlayback = 48;

std::atomic<unsigned> failures = 0;

struct FallibleAllocator {
    GstAllocator parent;
};
struct FallibleAllocatorClass {
    GstAllocatorClass parent_class;
};

G_DEFINE_TYPE(FallibleAllocator, fallible_allocator, GST_TYPE_ALLOCATOR)

/// The memory itself is GStreamer's own kind, so that everything that knows that kind takes it.
GstMemory *allocate(GstAllocator *, gsize size, GstAllocationParams *params) {
    const gsize alignment = std::max(params->align, gst_memory_alignment) + 1;
    const gsize around = params->prefix + params->padding;
    const gsize whole = (size + around + alignment - 1) & ~(alignment - 1);
    void *data = nullptr;
    if (whole < size || posix_memalign(&data, std::max(alignment, sizeof(void *)),
                                       std::max(whole, alignment)) != 0) {
        ++failures;
        return nullptr;
    }
    auto *bytes = static_cast<char *>(data);
    if ((params->flags & GST_MEMORY_FLAG_ZERO_PREFIXED) != 0) {
        std::memset(bytes, 0, params->prefix);
    }
    if ((params->flags & GST_MEMORY_FLAG_ZERO_PADDED) != 0) {
        std::memset(bytes + params->prefix + size, 0, whole - params->prefix - size);
    }
    return gst_memory_new_wrapped(params->flags, data, whole, params->prefix, size, data,
                                  std::free);
}

void fallible_allocator_class_init(FallibleAllocatorClass *type) {
    type->parent_class.alloc = allocate;
}

void fallible_allocator_init(FallibleAllocator *allocator) {
    GST_OBJECT_FLAG_UNSET(allocator, GST_ALLOCATOR_FLAG_CUSTOM_ALLOC);
}

}  // namespace

bool has_descriptors_for_playback() {
    std::array<UniqueFd, kDescriptorsForPlayback> descriptors;
    return std::all_of(descriptors.begin(), descriptors.end(), [](UniqueFd &descriptor) {
        descriptor.reset(open("/dev/null", O_RDONLY | O_CLOEXEC));
        return static_cast<bool>(descriptor);
    });
}

void allow_allocations_to_fail() {
    auto *allocator =
        static_cast<GstAllocator *>(g_object_new(fallible_allocator_get_type(), nullptr));
    GST_OBJECT_FLAG_SET(allocator, GST_OBJECT_FLAG_MAY_BE_LEAKED);
    gst_allocator_set_default(GST_ALLOCATOR(gst_object_ref_sink(allocator)));
}

unsigned failed_allocations() {
    return failures;
}

}  // namespace host
