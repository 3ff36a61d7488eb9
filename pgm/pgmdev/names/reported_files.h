#pragma once

/// \file
/// The source files that reports of the operations on names give. They are fixed, wherever the checks are written.

inline constexpr const char* STORE_SOURCE = "pgm/pgmdev/pgmdev_ddb_mgr";  ///< the stores, and look-ups in them
inline constexpr const char* MANAGER_SOURCE = "pgm/pgmdev/pgmdev_mgr";    ///< PGMDEV_MGR
