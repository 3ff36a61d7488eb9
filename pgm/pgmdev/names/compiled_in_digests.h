#pragma once

/// \file
/// What finds the parts of the catalog, compiled into the library beside the data of compiled_in_data.h.

#include "part_digests_table.h"

extern const PART_DIGESTS PGMDDB_PART_DIGESTS;
