#include "profile/output.h"

#include <fmt/core.h>

#include "pgmdev_dev_info_manager_auto_export.h"
#include "terminal/listing.h"
#include "terminal/printable.h"
#include "terminal/text_table.h"

namespace {

using RECORD = PGMDEV_DEVICE_INFO;

bool is_named(const PGMDEV_DEVICE_INFO_MEMBER& member) {
    return member.kind == PGMDEV_MANAGER_DEVID_ENUM || member.kind == PGMDEV_MANAGER_ENUM;
}

JSON named_value(const PGMDEV_DEVICE_INFO_MEMBER& member, const RECORD& record) {
    bool nameable = false;
    const std::string cell = pgmdev_device_info_cell(member, record, nameable);
    if (!nameable) {
        return std::stoull(cell);
    }
    return cell.empty() ? JSON(nullptr) : JSON(cell);
}

std::string cell_of(const PGMDEV_DEVICE_INFO_MEMBER& member, const RECORD& record) {
    bool nameable = false;
    return pgmdev_device_info_cell(member, record, nameable);
}

}  // namespace

void add_members(JSON& object, const RECORD& record) {
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        const std::string name(member.name);
        if (is_named(member)) {
            object[name] = named_value(member, record);
        } else {
            std::visit([&](auto field) { object[name] = record.*field; }, member.field);
        }
    }
}

std::vector<SCHEMA_MEMBER> profile_members() {
    std::vector<SCHEMA_MEMBER> members;
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        const auto schema = [](auto field) { return schema_of_field(field); };
        members.push_back({std::string(member.name), is_named(member)
                                                         ? any_of({text_schema(), number_schema(), {{"type", "null"}}})
                                                         : std::visit(schema, member.field)});
    }
    return members;
}

JSON profile_schema() {
    std::vector<SCHEMA_MEMBER> members = profile_members();
    members.insert(members.begin(), {"index", number_schema()});
    return object_schema(members);
}

void print_members(const RECORD& record, const std::string& heading) {
    fmt::print("{}\n", printable_lines(pgmdev_list_device_info(record, heading)));
}

std::string key_text(const RECORD& record) {
    for (std::size_t i = 0; i < PROFILE_KEYS; ++i) {
        const std::string cell = cell_of(PGMDEV_DEVICE_INFO_MEMBERS[i], record);
        if (!cell.empty()) {
            return fmt::format("{} {}", PGMDEV_DEVICE_INFO_MEMBERS[i].name, cell);
        }
    }
    return "none";
}

void print_records(std::span<const RECORD> records, const ARGUMENTS& given, const COMMAND& command) {
    std::vector<JSON> rows;
    TEXT_TABLE table({"index", "key", "configured by", "flash lines", "JTAG start", "key algorithm", "proposed flash"});
    for (std::size_t i = 0; i < records.size(); ++i) {
        const RECORD& record = records[i];
        JSON& row = rows.emplace_back(JSON{{"index", i}});
        add_members(row, record);
        const std::string algorithm = pgmdev_enumerator_name(record.ekp_alg_family, true);
        table.add({std::to_string(i), key_text(record),
                   record.use_sdm       ? "device manager"
                   : record.support_asc ? "active serial"
                                        : "cable",
                   record.flash_width_bits == 0 ? "-" : std::to_string(record.flash_width_bits),
                   fmt::format("{} us", record.jtag_program_initialize_microsec), algorithm.empty() ? "-" : algorithm,
                   record.cfg_dev.empty() ? "-" : record.cfg_dev});
    }
    print_listing(profile_schema(), rows, table, given, command);
}
