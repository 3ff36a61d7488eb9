#pragma once

/// \file
/// The parts of the catalog, for a host that has these and no others: tables that are compiled in find them at once.
///
/// Whether the host has them is found out once: it says so, or the digest of all its names shows it. As the indexes
/// (part_indexes.h) this takes for granted that the host goes on giving the same names.

#include <optional>
#include <string>

#include "name_list_digest.h"
#include "pgmdev_types.h"

/// Whether the part numbers of the host stand for the same names as those of the catalog. What follows is only to be
/// asked when they do.
bool host_has_catalog_parts();

/// The digest of the names of all parts of the host, for hosts that do not say so: takes asking for each of them.
NAME_LIST_DIGEST digest_of_host_parts();

/// The first part whose name has that hash (part_name_hash); 0: none.
int catalog_part_by_hash(QWORD hash);

/// The name of the first part that a name in upper case denotes, or none.
std::optional<std::string> catalog_part_denoted(const std::string& name);

/// The name of the first part whose own name has that programmer-file part name in upper case, which is not ""; or "".
std::string catalog_part_with_programmer_file_name(const std::string& pcf_name);

/// Has the host looked at again.
void forget_host_parts();
