#include "without_memory.h"

#include <cxxabi.h>
#include <unistd.h>

#include <exception>
#include <new>
#include <typeinfo>

namespace {

std::terminate_handler g_abort = nullptr;
bool g_exceptions_have_memory = false;

/// Whether this is for want of memory: for the exception that says so nobody catches, or there was not even memory for one.
bool is_for_want_of_memory() {
    const std::type_info* const uncaught = abi::__cxa_current_exception_type();
    return uncaught != nullptr ? *uncaught == typeid(std::bad_alloc) : !g_exceptions_have_memory;
}

[[noreturn]] void end_or_abort() {
    if (!is_for_want_of_memory()) {
        g_abort();
    }
    end_without_memory();
}

void be_ready() {
    g_abort = std::set_terminate(end_or_abort);
    std::set_new_handler(end_without_memory);
}

// Before anything else is made ready: on Linux before the libraries of the program, too. Windows makes the libraries ready
// before the first function of the program runs.
#if defined(_WIN32)
[[gnu::constructor(101)]] void be_ready_first() {
    be_ready();
}
#else
[[gnu::used, gnu::section(".preinit_array")]] void (*const g_be_ready_first)() = be_ready;
#endif

}  // namespace

void end_without_memory() noexcept {
    const std::string_view message = END_OF_THIS_PROGRAM.message;
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, message.data(), static_cast<unsigned>(message.size()));
    ::_exit(END_OF_THIS_PROGRAM.exit_code);
}

void let_no_memory_be_caught() noexcept {
    abi::__cxa_free_exception(abi::__cxa_allocate_exception(sizeof(std::bad_alloc)));  // terminates where there is none
    g_exceptions_have_memory = true;
    std::set_new_handler(nullptr);
}
