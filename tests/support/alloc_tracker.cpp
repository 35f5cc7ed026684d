#include "support/alloc_tracker.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> largest{0};

void* Allocate(std::size_t n) {
    std::size_t seen = largest.load(std::memory_order_relaxed);
    while (n > seen && !largest.compare_exchange_weak(seen, n, std::memory_order_relaxed)) {
    }
    if (void* p = std::malloc(n == 0 ? 1 : n)) return p;
    throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t n) {
    return Allocate(n);
}
void* operator new[](std::size_t n) {
    return Allocate(n);
}
// The non-throwing forms (std::stable_sort's buffer) must come from the same allocator as
// the deletes below.
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    try {
        return Allocate(n);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    try {
        return Allocate(n);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace mw::test {

void ResetLargestAllocation() {
    largest.store(0);
}
std::size_t LargestAllocation() {
    return largest.load();
}

}  // namespace mw::test
