#pragma once

/// \file
/// Programs as processes that get no memory at some moment, also before their `main`: what the dynamic linker, the C library
/// and constructors allocate counts as well. (faulty_system.h is for operations of this process.)

#include <sstream>
#include <stdexcept>

#include "support/process.h"
#include "support/scratch.h"
#include "support/starving_allocator.h"

class STARVED_PROGRAM {
public:
    explicit STARVED_PROGRAM(std::vector<std::string> command, std::string input = "")
        : m_process{std::move(command), std::move(input), {{"LD_PRELOAD", TEST_STARVING_ALLOCATOR}}, {}} {
        PROCESS counted = m_process;
        counted.environment[ALLOCATION_COUNTS_FILE] = m_scratch.path("counts");
        m_usual = run_process(counted);
        std::istringstream counts(read_file(m_scratch.path("counts")));
        if (!(counts >> m_before_main >> m_all)) {
            throw std::runtime_error("allocations were not counted");
        }
    }

    /// What it does with enough memory.
    const PROCESS_RESULT& usual() const { return m_usual; }

    /// How many allocations it makes then, before its `main` and in all.
    std::size_t before_main() const { return m_before_main; }
    std::size_t all() const { return m_all; }

    /// Runs it while the allocation with that number, from 1, fails, or all from that one on.
    PROCESS_RESULT run(std::size_t failing, bool all_later = false) const {
        PROCESS starved = m_process;
        starved.environment[FIRST_FAILING_ALLOCATION] = std::to_string(failing);
        starved.environment[LAST_FAILING_ALLOCATION] = all_later ? "999999999999" : std::to_string(failing);
        return run_process(starved);
    }

private:
    SCRATCH m_scratch;
    PROCESS m_process;
    PROCESS_RESULT m_usual;
    std::size_t m_before_main = 0;
    std::size_t m_all = 0;
};

/// Whether the program went on without that memory, or said that there was none.
inline bool is_truthful(const PROCESS_RESULT& result, const PROCESS_RESULT& usual) {
    constexpr int FAILED = 3;  // of all our programs
    return (result.exit_code == usual.exit_code && result.output == usual.output) ||
           (result.exit_code == FAILED && result.errors.find("no memory is left") != std::string::npos);
}
