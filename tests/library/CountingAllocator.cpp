// SPDX-License-Identifier: MIT
// Counts every allocation the process makes by replacing malloc, which operator new and
// the C library both reach. A file of its own, so that nothing else in the executable
// is compiled next to the replacement.
#include <atomic>
#include <cstddef>

extern "C" void* __libc_malloc(size_t size);
extern "C" void* __libc_memalign(size_t alignment, size_t size);

namespace {

std::atomic<long> allocations{0};

}  // namespace

long AllocationCount() {
    return allocations;
}

extern "C" void* malloc(size_t size) noexcept {
    ++allocations;
    return __libc_malloc(size);
}

// Canvas buffers come from the aligned operator new, which the C++ runtime serves
// with aligned_alloc rather than malloc.
extern "C" void* aligned_alloc(size_t alignment, size_t size) noexcept {
    ++allocations;
    return __libc_memalign(alignment, size);
}
