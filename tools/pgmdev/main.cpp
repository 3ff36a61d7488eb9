#include <cstdio>
#include <exception>

#include "program.h"
#include "run.h"
#include "terminal/command.h"
#include "without_memory.h"

constinit const END_WITHOUT_MEMORY END_OF_THIS_PROGRAM{"pgmdev: no memory is left\n", EXIT_INTERNAL_ERROR};

int main(int argc, char** argv) try {
    let_no_memory_be_caught();
    const PROGRAM program(argc, argv);
    return run_pgmdev(program.arguments());
} catch (const std::exception&) {  // there was not even memory for telling of what had gone wrong
    std::fflush(stdout);
    end_without_memory();
}
