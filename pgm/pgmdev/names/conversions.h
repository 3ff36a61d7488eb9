#pragma once

/// \file
/// The conversions of names that take more than one look-up, on names that are normal (normalize_name).

#include <string>
#include <string_view>
#include <vector>

#include "names/stores.h"

/// A programming name, and the package name that led to it; each "" when there is none.
struct PGM_NAME {
    std::string package_name;   ///< as it is looked up: normal, though the key of a table need not be
    std::string_view pgm_name;  ///< the text belongs to the store
};

/// The programming name of `name`, taken as a package name or else, unless `skip_package_conversion`, as a full name.
PGM_NAME pgm_name_of(const GRAMMAR_STORE* store, std::string_view name, bool skip_package_conversion);

// Conversions backwards, of a grammar whose keys are normal. The texts belong to the store, but for that of the name
// itself.

/// The entries of a key for which the table has no key before it.
std::vector<std::string_view> names_with_key(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type,
                                             std::string_view key);

/// The names with that programming name, by way of a package name, too.
std::vector<std::string_view> names_with_pgm_name(const GRAMMAR_STORE* store, std::string_view pgm_name);

/// The names with that name in programmer files, which is a key of `type`, by way of a programming name or without one.
std::vector<std::string_view> names_with_pgm_pcf(const GRAMMAR_STORE* store, PGMDEV_DDB_GRAMMAR_ENUM type,
                                                 std::string_view pcf);
