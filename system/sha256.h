#pragma once

/// \file
/// SHA-256, of the host and of the generator. The host's own service cannot be the generator's: the host is built of what
/// that makes.

#include <array>
#include <cstdint>
#include <string_view>

using SHA256_DIGEST = std::array<std::uint8_t, 32>;

SHA256_DIGEST sha256(std::string_view bytes);
