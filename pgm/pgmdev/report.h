#pragma once

/// \file
/// Reporting internal errors from within the library.
///
/// The file that a report names is part of the interface: it stays when code moves, and several source files share one.
/// The line says which check it was. It is counted in the source file where the check stands, plus a thousand for every
/// file up to that one in REPORTING_FILES, so that no two checks of the library have a line in common.

#include <array>
#include <string_view>

/// The module that reports name.
inline constexpr const char* PGMDEV_MODULE = "PGMDEV";

// The files that reports name.
inline constexpr const char* FLASH_MANAGER_FILE = "pgm/pgmdev/pgmdev_flash_manager";
inline constexpr const char* DEV_INFO_MANAGER_FILE = "pgm/pgmdev/pgmdev_dev_info_manager";
inline constexpr const char* FLASH_INI_FILE = "pgm/pgmdev/pgmdev_flash_ini";
inline constexpr const char* DDB_MGR_FILE = "pgm/pgmdev/pgmdev_ddb_mgr";
inline constexpr const char* MGR_FILE = "pgm/pgmdev/pgmdev_mgr";

/// The source files that have checks.
inline constexpr std::array<std::string_view, 32> REPORTING_FILES{
    "/packed/codec.cpp",
    "/packed/file.cpp",
    "/source/faults.cpp",
    "/source/header.cpp",
    "/records/codec.h",
    "/records/compiler.cpp",
    "/records/compiler.h",
    "/records/row_checks.h",
    "/flash/manager.cpp",
    "/flash/manager_compiler.cpp",
    "/flash/manager_primitives.cpp",
    "/flash/manager_queries.cpp",
    "/flash/rows.cpp",
    "/flash/source.cpp",
    "/profiles/manager.cpp",
    "/profiles/manager_compiler.cpp",
    "/profiles/manager_index.cpp",
    "/profiles/manager_primitives.cpp",
    "/profiles/records.cpp",
    "/profiles/rows.cpp",
    "/profiles/source.cpp",
    "/user_flash/codec.cpp",
    "/names/container.cpp",
    "/names/grammar_parser.cpp",
    "/names/ordering_codes.cpp",
    "/names/stores.cpp",
    "/names/manager_enum_checks.cpp",
    "/names/manager_part_names.cpp",
    "/parameters/codec.cpp",
    "/parameters/container.cpp",
    "/parameters/conversions.cpp",
    "/packed/codec.h",
};

/// The line that reports state for a check. A file that is not listed above does not compile.
consteval int counted_line(std::string_view file, int line) {
    constexpr int LINES_OF_A_FILE = 1000;
    int before = 0;
    for (const std::string_view reporting : REPORTING_FILES) {
        before += LINES_OF_A_FILE;
        if (file.ends_with(reporting)) {
            return before + line;
        }
    }
    throw "a source file with checks is missing in REPORTING_FILES";
}
#define PGMDEV_LINE counted_line(__FILE__, __LINE__)

/// A check that ends the operation: reports `condition` with the file `file` and the line of the check, unless `holds`.
/// This is the form of all checks but those whose condition is not known before they fail.
#define PGMDEV_REQUIRE(holds, condition, file)           \
    do {                                                 \
        if (!(holds)) {                                  \
            pgmdev_report(condition, file, PGMDEV_LINE); \
        }                                                \
    } while (false)

/// Reports through the host and never returns: should the host's reporter return, the operation ends here all the same,
/// by MSG_INTERNAL_ERROR_EXCEPTION.
[[noreturn]] void pgmdev_report(const char* condition, const char* file, int line);

/// Reports through the host, absorbs the way in which the host ends operations, and goes on.
void pgmdev_report_soft(const char* condition, const char* file, int line);

/// The same for a `report` of another form, such as MSG_INTERNAL_ERROR::report_varg.
template <class REPORT>
void pgmdev_soften(REPORT report) {
    try {
        report();
    } catch (...) {
        // Whatever the host throws is its way of ending an operation; this one is not to end.
    }
}
