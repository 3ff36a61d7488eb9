#pragma once

/// \file
/// Reporting internal errors from within the library.

/// A check that ends the operation: reports `condition` with the source file `source` and the line of the check, unless
/// `holds`.
#define PGMDEV_REQUIRE(holds, condition, source) ((holds) ? void() : pgmdev_report(condition, source, __LINE__))

/// Reports through the host and never returns: should the host's reporter return, the operation ends here all the same,
/// by MSG_INTERNAL_ERROR_EXCEPTION.
[[noreturn]] void pgmdev_report(const char* condition, const char* source, int line);

/// Reports through the host, absorbs the way in which the host ends operations, and goes on.
void pgmdev_report_soft(const char* condition, const char* source, int line);
