#pragma once

/// \file
/// Random numbers that are the same every run: what fails once fails again.

#include <random>

template <class ENGINE = std::mt19937>
ENGINE repeatable_random(typename ENGINE::result_type seed) {
    ENGINE engine(seed);
    return engine;
}
