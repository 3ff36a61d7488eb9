#include "program.h"

PROGRAM::PROGRAM(int argc, char** argv) : m_arguments(argv + (argc > 0 ? 1 : 0), argv + argc) {}

PROGRAM::~PROGRAM() = default;
