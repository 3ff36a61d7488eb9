#pragma once

/// \file
/// Reporting internal errors from within the library.

/// The module that reports name.
inline constexpr const char* PGMDEV_MODULE = "PGMDEV";

// The files that reports name. They are fixed, wherever the checks are written.
inline constexpr const char* DDB_MGR_FILE = "pgm/pgmdev/pgmdev_ddb_mgr";
inline constexpr const char* MGR_FILE = "pgm/pgmdev/pgmdev_mgr";

/// A check that ends the operation: reports `condition` with the source file `source` and the line of the check, unless
/// `holds`.
#define PGMDEV_REQUIRE(holds, condition, source) ((holds) ? void() : pgmdev_report(condition, source, __LINE__))

/// Reports through the host and never returns: should the host's reporter return, the operation ends here all the same,
/// by MSG_INTERNAL_ERROR_EXCEPTION.
[[noreturn]] void pgmdev_report(const char* condition, const char* source, int line);

/// Reports through the host, absorbs the way in which the host ends operations, and goes on.
void pgmdev_report_soft(const char* condition, const char* source, int line);

/// The same for a `report` of another form, such as MSG_INTERNAL_ERROR::report_varg.
template <class REPORT>
void pgmdev_soften(REPORT report) {
    try {
        report();
    } catch (...) {
        // Whatever the host throws is its way of ending an operation; this one is not to end.
    }
}
