#include "files/source.h"

#include <fmt/core.h>

#include <utility>

#include "files/inspection.h"
#include "files/origins.h"

namespace {

/// What compilers report when a whole file cannot be read or written.
constexpr const char* FILE_CONDITION = "status";

/// What the condition that compressing has succeeded begins with: only want of memory makes it fail.
constexpr const char* COMPRESSING = "zlib_compress(";

/// Why the table cannot be read; "" when it can.
std::string table_obstacle(const std::string& csv_file) {
    return is_stream(csv_file) ? "" : inspect_file(csv_file, 0).obstacle;
}

}  // namespace

std::string part_list_obstacle() {
    return inspect_file(part_list_place().path, 0).obstacle;
}

bool is_of_part_list(const PGMDEV_TABLE_FAULT& fault) {
    return fault.expected.starts_with("a part list,");
}

FAILURE part_list_failure(std::optional<MSG_INTERNAL_ERROR_REPORT> report) {
    const PLACE place = part_list_place();
    const std::string obstacle = part_list_obstacle();
    return {FAILURE_CODE::PART_LIST_UNREADABLE,
            fmt::format("the part list cannot be read, since {}",
                        obstacle.empty() ? "a line of it is none of a part list" : obstacle),
            place.path,
            place.tried,
            "name the directory with h/pgm_parts.txt: --install-dir DIR",
            std::move(report)};
}

COMMAND_FAILURE unreadable_table(const std::string& csv_file, const std::string& argument, const std::string& obstacle,
                                 std::optional<MSG_INTERNAL_ERROR_REPORT> report) {
    return COMMAND_FAILURE(
        {FAILURE_CODE::SOURCE_TABLE_UNREADABLE, fmt::format("the source table cannot be read, since {}", obstacle),
         csv_file, argument_place(csv_file, argument).tried, "name a table that you may read", std::move(report)});
}

void require_readable_table(const std::string& csv_file, const std::string& argument) {
    const std::string obstacle = table_obstacle(csv_file);
    if (!obstacle.empty()) {
        throw unreadable_table(csv_file, argument, obstacle, {});
    }
}

COMMAND_FAILURE refused_table(const std::string& csv_file, std::optional<MSG_INTERNAL_ERROR_REPORT> report) {
    return COMMAND_FAILURE({FAILURE_CODE::TABLE_REFUSED,
                            "the source table has faults, and the output is left as it was", csv_file,
                            argument_place(csv_file, "CSV").tried, "correct them and try again", std::move(report)});
}

COMMAND_FAILURE compile_failure(const std::string& csv_file, bool needs_part_list, const OUTPUT_FILE& output,
                                const MSG_INTERNAL_ERROR_REPORT& report) {
    const COMMAND_FAILURE not_written = output.failure(report);  // takes the system's reason before it is lost
    const std::string table = table_obstacle(csv_file);
    if (!table.empty()) {
        return unreadable_table(csv_file, "CSV", table, report);
    }
    if (needs_part_list && !part_list_obstacle().empty()) {
        return COMMAND_FAILURE(part_list_failure(report));
    }
    if (report.condition.starts_with(COMPRESSING)) {
        return COMMAND_FAILURE({FAILURE_CODE::INTERNAL, "no memory is left", "", {}, "", report});
    }
    return report.condition == FILE_CONDITION ? not_written : refused_table(csv_file, report);
}
