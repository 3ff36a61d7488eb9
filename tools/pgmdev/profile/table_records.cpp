#include "profile/table_records.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>

#include "files/database.h"
#include "pgmdev_dev_info_enumerators.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "pgmdev_version.h"
#include "profile/output.h"
#include "stl.h"

namespace {

using RECORD = PGMDEV_DEVICE_INFO;

bool is_named(PGMDEV_MANAGER_TYPE kind) {
    return kind == PGMDEV_MANAGER_DEVID_ENUM || kind == PGMDEV_MANAGER_ENUM;
}

/// The name of a number, as a cell would spell it; "" where there is none.
std::string name_of(const PACKED_MEMBER& member, DWORD value) {
    if (!is_named(member.kind)) {
        return "";
    }
    const auto* const found = std::find_if(PGMDEV_DEVICE_INFO_MEMBERS.begin(), PGMDEV_DEVICE_INFO_MEMBERS.end(),
                                           [&](const auto& candidate) { return candidate.name == member.name; });
    RECORD record;
    std::visit(
        [&](auto field) {
            using VALUE = std::remove_reference_t<decltype(record.*field)>;
            if constexpr (!std::is_same_v<VALUE, std::string>) {
                record.*field = static_cast<VALUE>(value);
            }
        },
        found->field);
    bool nameable = false;
    const std::string cell = pgmdev_device_info_cell(*found, record, nameable);
    return !nameable ? "unknown" : cell.empty() ? "none" : cell;
}

}  // namespace

PACKED_SCHEMA PROFILE_RECORDS::schema() {
    return {.magic = PROFILE_DATABASE_KIND.magic,
            .stamp = PROFILE_DATABASE_KIND.stamp(),
            .version = PGMDEV_VERSION::body_version(),
            .members = packed_members(PGMDEV_DEVICE_INFO_MEMBERS),
            .text_tags = {PGMDEV_MANAGER_DEVID_STR, PGMDEV_MANAGER_STRING},
            .number_tags = {PGMDEV_MANAGER_DEVID_ENUM, PGMDEV_MANAGER_DWORD, PGMDEV_MANAGER_ENUM},
            .indexes = {{PGMDEV_MANAGER_FAMILY_TBL, "family", DEV_FAMILY_MAX},
                        {PGMDEV_MANAGER_DEVICE_TBL, "device", DEV_DEVICE_MAX},
                        {PGMDEV_MANAGER_PART_TBL, "part", static_cast<DWORD>(DEV_PART_MAX)}},
            .name_of = name_of};
}

std::string PROFILE_RECORDS::key(const RECORD& record) {
    return key_text(record);
}

std::string PROFILE_RECORDS::match_key(const RECORD& record) {
    std::string key = key_text(record);
    stl_tolower(key);
    return key;
}

std::string PROFILE_RECORDS::cell(const PGMDEV_DEVICE_INFO_MEMBER& member, const RECORD& record) {
    bool nameable = false;
    return pgmdev_device_info_cell(member, record, nameable);
}

JSON PROFILE_RECORDS::values(const RECORD& record) {
    JSON object = JSON::object();
    add_members(object, record);
    return object;
}

std::vector<std::string> PROFILE_RECORDS::key_faults(const std::vector<RECORD>& records) {
    std::vector<std::string> faults;
    if (records.size() != PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE) {
        faults.push_back(fmt::format("{} records, expected {}", records.size(),
                                     DWORD{PGMDEV_DEV_INFO_MANAGER::TOTAL_DATABASE_DEVICE}));
    }
    bool has_generic = false;
    for (std::size_t i = 0; i < records.size(); ++i) {
        has_generic = has_generic || records[i].family == DEV_FAMILY_GENERIC;
        const auto keys = std::count_if(MEMBERS.begin(), MEMBERS.begin() + PROFILE_KEYS,
                                        [&](const auto& member) { return !cell(member, records[i]).empty(); });
        if (keys != 1) {
            faults.push_back(fmt::format("record {} has {} keys", i, keys));
        }
    }
    if (!has_generic) {
        faults.emplace_back("no record is that of the family GENERIC");
    }
    return faults;
}

std::vector<std::string> PROFILE_RECORDS::value_faults(const std::vector<RECORD>& records) {
    std::vector<std::string> faults;
    for (std::size_t i = 0; i < records.size(); ++i) {
        for (const PGMDEV_DEVICE_INFO_MEMBER& member : MEMBERS) {
            bool nameable = false;
            const std::string cell = pgmdev_device_info_cell(member, records[i], nameable);
            if (!nameable) {
                faults.push_back(fmt::format("record {}: {} is {}, which has no name", i, member.name, cell));
            }
        }
    }
    return faults;
}

std::vector<std::string> PROFILE_RECORDS::names_of(std::string_view member) {
    std::vector<std::string> names;
    const auto* const found =
        std::find_if(MEMBERS.begin(), MEMBERS.end(), [&](const auto& candidate) { return candidate.name == member; });
    if (found == MEMBERS.end()) {
        return names;
    }
    if (found->kind == PGMDEV_MANAGER_ENUM) {
        for (const PGMDEV_DEV_INFO_ENUMERATOR& enumerator : PGMDEV_DEV_INFO_ENUMERATORS) {
            names.emplace_back(enumerator.name);
        }
    } else if (member == "family") {
        for (int family = DEV_FAMILY_INVALID + 1; family < DEV_FAMILY_MAX; ++family) {
            names.push_back(pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(family)));
        }
        std::erase(names, "");
    } else if (found->kind == PGMDEV_MANAGER_DEVID_ENUM) {
        names.emplace_back("GENERIC");
    }
    return names;
}

std::vector<std::pair<std::string, std::vector<DWORD>>> PROFILE_RECORDS::index_tables(
    const PGMDEV_DEV_INFO_TABLE& table) {
    return {{"family", table.family_table()}, {"device", table.device_table()}, {"part", table.part_table()}};
}
