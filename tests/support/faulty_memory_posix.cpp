#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "support/faulty_system.h"

// What faulty_system.h says of memory.

namespace {

struct MEMORY_STATE {
    bool allocations_armed = false;
    bool all_later_allocations = false;
    bool allocation_failed = false;
    std::size_t allocations_left = 0;

    std::size_t mallocs_left = 0;  ///< until one fails; 0: none does
    bool all_later_mallocs = false;
    bool malloc_failed = false;

    bool memory_is_counted = false;
    long long taken = 0;
    long long most_taken = 0;
};

thread_local MEMORY_STATE g_memory;

// What the C library has under the names that are taken here.
extern "C" void* __libc_malloc(std::size_t size);  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void* allocate(std::size_t size) {
    if (g_memory.allocations_armed && g_memory.allocations_left != 0 && --g_memory.allocations_left == 0) {
        g_memory.allocation_failed = true;
        g_memory.allocations_left = g_memory.all_later_allocations ? 1 : 0;
        return nullptr;
    }
    void* const memory = __libc_malloc(size == 0 ? 1 : size);
    if (g_memory.memory_is_counted) {
        g_memory.taken += static_cast<long long>(::malloc_usable_size(memory));
        g_memory.most_taken = std::max(g_memory.most_taken, g_memory.taken);
    }
    return memory;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept {
    if (g_memory.mallocs_left != 0 && --g_memory.mallocs_left == 0) {
        g_memory.malloc_failed = true;
        g_memory.mallocs_left = g_memory.all_later_mallocs ? 1 : 0;
        errno = ENOMEM;
        return nullptr;
    }
    return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* operator new(std::size_t size) {
    if (void* memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}
__attribute__((visibility("default"))) void* operator new[](std::size_t size) {
    return operator new(size);
}
__attribute__((visibility("default"))) void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
__attribute__((visibility("default"))) void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
__attribute__((visibility("default"))) void operator delete(void* memory) noexcept {
    if (g_memory.memory_is_counted) {
        g_memory.taken -= static_cast<long long>(::malloc_usable_size(memory));
    }
    std::free(memory);  // NOLINT(cppcoreguidelines-no-malloc)
}
__attribute__((visibility("default"))) void operator delete[](void* memory) noexcept {
    operator delete(memory);
}
__attribute__((visibility("default"))) void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
__attribute__((visibility("default"))) void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}

FAILING_ALLOCATION::FAILING_ALLOCATION(std::size_t number, bool all_later) {
    g_memory.allocation_failed = false;
    g_memory.all_later_allocations = all_later;
    g_memory.allocations_left = number;
    g_memory.allocations_armed = true;
}

FAILING_ALLOCATION::~FAILING_ALLOCATION() {
    g_memory.allocations_armed = false;
}

bool FAILING_ALLOCATION::happened() const {
    return g_memory.allocation_failed;
}

FAILING_MALLOC::FAILING_MALLOC(std::size_t number, bool all_later) {
    g_memory.malloc_failed = false;
    g_memory.all_later_mallocs = all_later;
    g_memory.mallocs_left = number;
}

FAILING_MALLOC::~FAILING_MALLOC() {
    g_memory.mallocs_left = 0;
}

bool FAILING_MALLOC::happened() const {
    return g_memory.malloc_failed;
}

COUNTED_MEMORY::COUNTED_MEMORY() {
    g_memory.taken = 0;
    g_memory.most_taken = 0;
    g_memory.memory_is_counted = true;
}

COUNTED_MEMORY::~COUNTED_MEMORY() {
    g_memory.memory_is_counted = false;
}

long long COUNTED_MEMORY::most() const {
    return g_memory.most_taken;
}
