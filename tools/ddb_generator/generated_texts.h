#pragma once

/// \file
/// The texts that the generator writes.

#include <cstdint>
#include <string>
#include <vector>

#include "boot_flash.h"
#include "catalog.h"
#include "data_set.h"
#include "host_tables.h"
#include "indexed_grammar.h"
#include "part_digests.h"

/// C++ source that defines the data compiled into the library: the packed data sets, what is in them, and digests of names.
std::string data_source(const DATA_SET& grammar, const INDEXED_GRAMMAR& indexed, const DATA_SET& ordering_codes,
                        const std::vector<std::uint32_t>& numbers, const DIGEST_TABLES& digests);

/// C++ source that defines the built-in lists of boot flash.
std::string boot_flash_source(const BOOT_FLASH& flash);

/// C++ source that defines the tables behind the host's device libraries.
std::string host_source(const HOST_TABLES& tables);

/// C++ source that defines the values that packages and grades have (names/part_values.h of the command).
std::string part_values_source(const CATALOG& catalog);

/// The part list for the profile compiler: one line for each part, ascending by number.
std::string part_list(const CATALOG& catalog);
