#pragma once

/// \file
/// SHA-256, of the host and of the generator. The generator cannot call the host: the host is built from the sources that
/// the generator writes.

#include <array>
#include <cstdint>
#include <string_view>

using SHA256_DIGEST = std::array<std::uint8_t, 32>;

SHA256_DIGEST sha256(std::string_view bytes);
