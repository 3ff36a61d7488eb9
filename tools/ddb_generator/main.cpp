#include <csignal>
#include <iostream>
#include <new>

#include "generator.h"
#include "without_memory.h"

constinit const END_WITHOUT_MEMORY END_OF_THIS_PROGRAM{"ddb_generator: no memory is left\n", GENERATOR_FAILED};

int main(int argc, char** argv) try {
    let_no_memory_be_caught();
#if defined(SIGXFSZ)
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not become as large is a failure that can be told
#endif
    const int result =
        run_generator(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), std::cout, std::cerr);
    if (!std::cout.flush()) {
        std::cerr << "ddb_generator: standard output cannot be written\n";
        return GENERATOR_FAILED;
    }
    return result;
} catch (const std::bad_alloc&) {
    end_without_memory();
}
