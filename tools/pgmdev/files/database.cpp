#include "files/database.h"

#include <fmt/core.h>

#include <array>

#include "files/inspection.h"
#include "pgmdev_version.h"

const DATABASE_KIND FLASH_DATABASE_KIND{"flash database", "PGMIO_FM", PGMDEV_VERSION::flash_stamp, "flash"};
const DATABASE_KIND PROFILE_DATABASE_KIND{"profile database", "PGMIO_DM", PGMDEV_VERSION::dev_info_stamp, "profile"};

namespace {

/// What the file turns out to be.
struct VERDICT {
    FAILURE_CODE code;
    std::string what;  ///< behind "the database cannot be read, since "
    std::string advice;
};

std::string compile_advice(const DATABASE_KIND& kind) {
    return fmt::format("compile it again with this pgmdev: pgmdev {} compile CSV PCF", kind.noun);
}

VERDICT wrong_kind(const std::string& magic) {
    for (const DATABASE_KIND* other : {&FLASH_DATABASE_KIND, &PROFILE_DATABASE_KIND}) {
        if (magic == other->magic) {
            return {FAILURE_CODE::DATABASE_OTHER_KIND, fmt::format("it is a {}", other->name),
                    fmt::format("pgmdev {} reads it", other->noun)};
        }
    }
    return {FAILURE_CODE::DATABASE_OTHER_KIND, "it is no packed database", "name a file that pgmdev has compiled"};
}

VERDICT examine(const DATABASE_KIND& kind, const std::string& path, const std::string& condition) {
    const INSPECTED_FILE file = inspect_file(path, PACKED_HEAD_LENGTH);
    if (file.missing) {
        return {FAILURE_CODE::DATABASE_MISSING, file.obstacle,
                fmt::format("compile it with pgmdev {} compile CSV PCF, or name where it is", kind.noun)};
    }
    if (!file.obstacle.empty()) {
        return {FAILURE_CODE::DATABASE_UNREADABLE, file.obstacle, "name a file that you may read"};
    }
    const std::string magic = file.beginning.substr(0, PACKED_MAGIC_LENGTH);
    if (file.size <= PACKED_HEAD_LENGTH + PACKED_CHECKSUM_LENGTH) {
        return {FAILURE_CODE::DATABASE_DAMAGED, fmt::format("it is cut after {} bytes", file.size),
                compile_advice(kind)};
    }
    if (magic != kind.magic) {
        return wrong_kind(magic);
    }
    const std::string stamp = file.beginning.substr(PACKED_MAGIC_LENGTH, PACKED_STAMP_LENGTH);
    if (stamp != kind.stamp()) {
        return {FAILURE_CODE::DATABASE_OTHER_STAMP,
                fmt::format("it was compiled for another table, its stamp is {}, and this pgmdev reads {}", stamp,
                            kind.stamp()),
                compile_advice(kind)};
    }
    if (condition.starts_with("Mismatch version")) {
        return {FAILURE_CODE::DATABASE_OTHER_VERSION,
                fmt::format("its contents are of another version than {}", PGMDEV_VERSION::body_version()),
                compile_advice(kind)};
    }
    return {FAILURE_CODE::DATABASE_DAMAGED, "it is cut or damaged", compile_advice(kind)};
}

}  // namespace

COMMAND_FAILURE database_failure(const DATABASE_KIND& kind, const PLACE& place,
                                 std::optional<MSG_INTERNAL_ERROR_REPORT> report) {
    const VERDICT verdict = examine(kind, place.path, report ? report->condition : "");
    return COMMAND_FAILURE({verdict.code, fmt::format("the {} cannot be read, since {}", kind.name, verdict.what),
                            place.path, place.tried, verdict.advice, std::move(report)});
}
