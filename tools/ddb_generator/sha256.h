#pragma once

/// \file
/// SHA-256. The host has it, too, but is built of what is generated here.

#include <array>
#include <cstdint>
#include <string_view>

using SHA256_DIGEST = std::array<std::uint8_t, 32>;

SHA256_DIGEST sha256(std::string_view text);
