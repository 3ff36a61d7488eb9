#pragma once

/// \file
/// The host's parts, as the operations on part names go through them.

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "dev.h"
#include "dstr.h"
#include "pgmdev_types.h"

inline bool is_usable_part(int part) {
    return part != DEV_PART_INVALID && part != DEV_PART_GENERIC && part < DEV_PART_MAX;
}

/// Upper-case display name of a part.
std::string upper_part_name(int part);

/// The SHA-256 of a text, by the host.
std::unique_ptr<const BYTE[]> sha256_of(const std::string& text);

/// The hash of a name, which is in upper case: the first 48 bits of its SHA-256, the least significant byte first.
QWORD part_name_hash(const std::string& upper_name);
inline constexpr QWORD PART_NAME_HASH_MASK = 0xFFFFFFFFFFFF;

/// Which parts a pass over the part list sees.
struct PART_PASS {
    bool orderable_only;
    bool production_only;
};
inline constexpr std::array PART_PASSES{PART_PASS{true, true}, PART_PASS{true, false}, PART_PASS{false, true},
                                        PART_PASS{false, false}};

/// Calls `visit(part)` for every part, in ascending order, until it returns true.
template <class VISIT>
void for_each_part(VISIT visit) {
    for (int part = DEV_PART_INVALID + 1; part != DEV_PART_GENERIC && part != DEV_PART_MAX; ++part) {
        if (visit(part)) {
            return;
        }
    }
}

/// Calls `visit(part)` for the parts of a family ("ANY": all), pass by pass, until it returns true.
template <class VISIT>
void for_each_preferred_part(DEV_PART_MANAGER& manager, const std::string& family, VISIT visit) {
    std::vector<int> parts;
    for (const PART_PASS& pass : PART_PASSES) {
        parts.clear();
        if (!manager.filter_part_list(&parts, family, "ANY", "ANY", "ANY", "ANY", pass.orderable_only,
                                      pass.production_only, false, "any")) {
            continue;
        }
        for (const int part : parts) {
            if (visit(part)) {
                return;
            }
        }
    }
}
