#include <iostream>

#include "generator.h"

int main(int argc, char** argv) {
    const int result =
        run_generator(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), std::cout, std::cerr);
    if (!std::cout.flush()) {
        std::cerr << "ddb_generator: standard output cannot be written\n";
        return GENERATOR_FAILED;
    }
    return result;
}
