#include <iostream>

#include "generator.h"

int main(int argc, char** argv) {
    return run_generator(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), std::cout, std::cerr);
}
