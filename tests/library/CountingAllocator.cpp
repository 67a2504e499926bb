// Replaces the global operator new and delete of the test executable to count
// allocations. A file of its own, so that the compiler never sees a delete inlined
// next to the new it pairs with (it would warn of a malloc/free mismatch).
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> allocations{0};

}  // namespace

long AllocationCount() {
    return allocations;
}

namespace {

void* Allocate(size_t size) noexcept {
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(size_t size) {
    if (void* block = Allocate(size)) return block;
    throw std::bad_alloc();
}

}  // namespace

// Every form is replaced, so that nothing reaches a sanitizer's own allocator and is
// then freed here (it would report a mismatch), and every form is counted.
void* operator new(size_t size) {
    return AllocateOrThrow(size);
}

void* operator new[](size_t size) {
    return AllocateOrThrow(size);
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, size_t) noexcept {
    std::free(block);
}

void operator delete[](void* block, size_t) noexcept {
    std::free(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}

void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
