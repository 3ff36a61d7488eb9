#include "terminal/library_output.h"

#include <iostream>

namespace {

std::ostream& answers() {
    static std::ostream stream(std::cout.rdbuf());
    return stream;
}

}  // namespace

LIBRARY_OUTPUT::LIBRARY_OUTPUT() : m_former(answers().rdbuf()) {
    std::cout.rdbuf(std::cerr.rdbuf());
}

LIBRARY_OUTPUT::~LIBRARY_OUTPUT() {
    std::cout.rdbuf(m_former);
}

std::ostream& answer_stream() {
    return answers();
}
