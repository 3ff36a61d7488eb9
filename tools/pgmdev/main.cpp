#include <cstdio>
#include <exception>

#include "program.h"
#include "run.h"
#include "terminal/command.h"

int main(int argc, char** argv) try {
    const PROGRAM program(argc, argv);
    return run_pgmdev(program.arguments());
} catch (const std::exception&) {  // there was not even memory for telling of what had gone wrong
    std::fputs("pgmdev: no memory is left\n", stderr);
    return EXIT_INTERNAL_ERROR;
}
