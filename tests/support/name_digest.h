#pragma once

/// \file
/// Digests of names as tables of digests have them, computed by another library than the product uses.

#include <string>

#include "part_digests_table.h"
#include "support/sha256.h"

inline NAME_DIGEST digest_of(const std::string& name) {
    return name_digest(independent_sha256(name).data());
}
