#include "support/starving_allocator.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

// Preloaded into a program: what starved_program.h says. It counts from the moment at which there is an environment.

namespace {

using MAIN = int (*)(int, char**, char**);

MAIN g_main = nullptr;
std::atomic<long> g_allocations{0};
std::atomic<long> g_before_main{0};

struct FAILING {
    long first;
    long last;
};

long number_in(const char* variable) {
    const char* const text = std::getenv(variable);
    return text != nullptr ? std::atol(text) : 0;  // NOLINT(cert-err34-c): of our own tests
}

bool is_to_fail() {
    if (environ == nullptr) {
        return false;
    }
    static const FAILING failing{number_in(FIRST_FAILING_ALLOCATION), number_in(LAST_FAILING_ALLOCATION)};
    const long number = ++g_allocations;
    if (number < failing.first || number > failing.last) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

int counted_main(int argc, char** argv, char** environment) {
    g_before_main = g_allocations.load();
    return g_main(argc, argv, environment);
}

[[gnu::destructor]] void write_counts() {
    const char* const path = std::getenv(ALLOCATION_COUNTS_FILE);
    if (path != nullptr) {
        const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dprintf(file, "%ld %ld\n", g_before_main.load(), g_allocations.load());
        ::close(file);
    }
}

}  // namespace

// What the C library has under the names that are taken here.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-inconsistent-declaration-parameter-name)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

#define TAKEN __attribute__((visibility("default")))

TAKEN void* malloc(std::size_t size) noexcept {
    return is_to_fail() ? nullptr : __libc_malloc(size);
}
TAKEN void* calloc(std::size_t count, std::size_t size) noexcept {
    return is_to_fail() ? nullptr : __libc_calloc(count, size);
}
TAKEN void* realloc(void* memory, std::size_t size) noexcept {
    return is_to_fail() ? nullptr : __libc_realloc(memory, size);
}
TAKEN void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return is_to_fail() ? nullptr : __libc_memalign(alignment, size);
}

/// By which a program begins: what was allocated until then comes before its `main`.
TAKEN int __libc_start_main(MAIN main, int argc, char** argv, void (*init)(), void (*fini)(), void (*linker_fini)(),
                            void* stack_end) {
    using START = int(MAIN, int, char**, void (*)(), void (*)(), void (*)(), void*);
    auto* const start = reinterpret_cast<START*>(::dlsym(RTLD_NEXT, "__libc_start_main"));
    g_main = main;
    return start(counted_main, argc, argv, init, fini, linker_fini, stack_end);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-inconsistent-declaration-parameter-name)
