#include "program.h"
#include "run.h"

int main(int argc, char** argv) {
    const PROGRAM program(argc, argv);
    return run_pgmdev(program.arguments());
}
