#pragma once

/// \file
/// SHA-256 by a library that the code under test does not use.

#include <array>
#include <string>

std::array<unsigned char, 32> independent_sha256(const std::string& data);
