#pragma once

/// \file
/// The conversions of names that take more than one look-up, on names that are normal (normalize_name).

#include <string_view>

#include "names/stores.h"

/// A programming name, and the package name that led to it; each "" when there is none. The texts belong to the store.
struct PGM_NAME {
    std::string_view package_name;
    std::string_view pgm_name;
};

/// The programming name of `name`, taken as a package name or else, unless `skip_package_conversion`, as a full name.
PGM_NAME pgm_name_of(const GRAMMAR_STORE* store, std::string_view name, bool skip_package_conversion);
