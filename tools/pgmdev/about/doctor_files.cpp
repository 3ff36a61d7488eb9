#include "about/doctor_files.h"

#include <fmt/core.h>

#include "configuration/file.h"
#include "files/container.h"
#include "files/database.h"
#include "files/environment.h"
#include "files/inspection.h"
#include "pgmdev_dev_info_table.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_flash_table.h"
#include "pgmdev_version.h"
#include "tables/info_file.h"
#include "text_lines.h"

namespace {

/// A file that was read, but could not be looked at.
FILE_FINDING only_read_at_times(FILE_FINDING finding, const INSPECTED_FILE& file) {
    finding.state = "unreadable";
    finding.remark = "it could only be read at times: " + file.obstacle;
    finding.wrong = true;
    return finding;
}

/// A packed database, read whole: nothing less tells that it is sound.
template <class TABLE>
FILE_FINDING database(const DATABASE_KIND& kind, PLACE place) {
    FILE_FINDING finding{kind.name, std::move(place), "good", ""};
    const INSPECTED_FILE file = inspect_file(finding.place.path, PACKED_MAGIC_LENGTH + PACKED_STAMP_LENGTH);
    if (file.beginning.size() == PACKED_MAGIC_LENGTH + PACKED_STAMP_LENGTH) {
        finding.facts["size"] = file.size;
        finding.facts["magic"] = file.beginning.substr(0, PACKED_MAGIC_LENGTH);
        finding.facts["stamp"] = file.beginning.substr(PACKED_MAGIC_LENGTH);
    }
    try {
        const TABLE table =
            read_database(kind, finding.place, [&] { return TABLE::from_database(finding.place.path); });
        if (!file.obstacle.empty()) {
            return only_read_at_times(std::move(finding), file);
        }
        finding.facts["records"] = table.records().size();
        finding.remark = fmt::format("{} records, {} bytes, stamp {}", table.records().size(), file.size, kind.stamp());
        // The format itself has no checksum that would tell.
        if (const INFO_FINDING info = check_info(finding.place.path); is_doubtful(info.state)) {
            finding.wrong = true;
            finding.state = "doubtful";
            finding.remark += fmt::format("; {}; compile it again, or remove that text", info.message);
        }
    } catch (const COMMAND_FAILURE& failure) {
        finding.wrong = true;
        finding.state = code_name(failure.failure().code);
        finding.remark = failure.failure().message;
        if (!failure.failure().advice.empty()) {
            finding.remark += "; " + failure.failure().advice;
        }
    }
    return finding;
}

/// A file of which only its being there is of interest.
FILE_FINDING plain_file(const char* name, PLACE place, bool needed) {
    FILE_FINDING finding{name, std::move(place), "good", ""};
    const INSPECTED_FILE file = inspect_file(finding.place.path, 1);
    if (file.missing) {
        finding.state = "missing";
        finding.wrong = needed;
    } else if (!file.obstacle.empty()) {
        finding.state = "unreadable";
        finding.remark = file.obstacle;
        finding.wrong = true;
    } else {
        finding.facts["size"] = file.size;
        finding.remark = fmt::format("{} bytes", file.size);
    }
    return finding;
}

/// A file that is there counts only when the host can read it.
FILE_FINDING configuration_file(PLACE place, bool needed) {
    FILE_FINDING finding = plain_file("configuration file", std::move(place), needed);
    if (finding.state != "good") {
        return finding;
    }
    const CONFIGURATION_FILE file = read_configuration_file(finding.place.path);
    if (!file.is_whole || is_utf_16(file.text)) {
        finding.state = "unreadable";
        finding.remark = file.is_whole ? "it is UTF-16, and nothing of it counts: save it as UTF-8"
                                       : "it cannot be read to its end, or is larger than 1 MiB";
        finding.wrong = true;
    }
    return finding;
}

FILE_FINDING container() {
    FILE_FINDING finding{"parameter container", container_place(), "good", ""};
    const CONTAINER found = examine_container();
    switch (found.state) {
        case CONTAINER::ABSENT:
            finding.state = "missing";
            finding.remark = "it is made when the first block is written";
            break;
        case CONTAINER::SOUND:
            if (const INSPECTED_FILE file = inspect_file(finding.place.path, 0); file.obstacle.empty()) {
                finding.facts["size"] = file.size;
            } else {
                return only_read_at_times(std::move(finding), file);
            }
            if (!found.doubt.empty()) {
                finding.state = "doubtful";
                finding.remark = found.doubt +
                                 "; see what it holds with params list and hps spi; if that is right, remove that text";
                finding.wrong = true;
            }
            break;
        case CONTAINER::UNREADABLE:
        case CONTAINER::DAMAGED:
            finding.state = found.state == CONTAINER::DAMAGED ? "damaged" : "unreadable";
            finding.remark = found.what;
            finding.wrong = true;
    }
    return finding;
}

}  // namespace

std::vector<FILE_FINDING> find_files() {
    std::vector<FILE_FINDING> findings{
        database<PGMDEV_FLASH_TABLE>(FLASH_DATABASE_KIND, flash_database_place()),
        database<PGMDEV_DEV_INFO_TABLE>(PROFILE_DATABASE_KIND, profile_database_place()),
        plain_file("part list", part_list_place(), true),
        container(),
    };
    const bool named = !environment_text("TESSARY_CONFIG_FILE").empty();
    for (const PLACE& place : configuration_places()) {
        findings.push_back(configuration_file(place, named));
    }
    return findings;
}
