#pragma once

/// \file
/// SHA-256 (FIPS 180-4). The host has it, too, but is built of what is generated here.

#include <array>
#include <cstdint>
#include <string_view>

std::array<std::uint8_t, 32> sha256(std::string_view text);
