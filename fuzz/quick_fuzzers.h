#pragma once

/// \file
/// The fuzzers of one program that runs each of them quickly.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct QUICK_FUZZER {
    std::string name;
    int (*run)(const std::uint8_t* data, std::size_t size);
};

extern const std::vector<QUICK_FUZZER> QUICK_FUZZERS;
