#include "flash/output.h"

#include <fmt/core.h>

#include <array>
#include <string_view>
#include <utility>

#include "pgmdev_cell.h"
#include "terminal/listing.h"
#include "terminal/printable.h"
#include "terminal/size_text.h"
#include "terminal/text_table.h"
#include "terminal/wrapped.h"

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

constexpr std::array<std::pair<std::string_view, bool RECORD::*>, 8> FEATURES{{
    {"flag status register", &RECORD::flag_status},
    {"Micron flow", &RECORD::micron_flow},
    {"Spansion flow", &RECORD::spansion_flow},
    {"protected after power-up", &RECORD::startup_protected},
    {"auto address increment", &RECORD::aai_mode},
    {"extended addresses", &RECORD::extended_mode},
    {"half of the size is used", &RECORD::half_size},
    {"secure device manager", &RECORD::sdm_support},
}};

std::string identified_by(const RECORD& record) {
    if (record.silicon_id) {
        return fmt::format("silicon ID, byte {} = {:02X}", record.memory_id_index, record.memory_id);
    }
    std::string text = fmt::format("byte {} = {:02X}", record.mfc_id_index, record.mfc_id);
    if (record.memory_type_index != RECORD::NONE) {
        text += fmt::format(", byte {} = {:02X}", record.memory_type_index, record.memory_type);
    }
    return text + fmt::format(", byte {} = {:02X}", record.memory_id_index, record.memory_id);
}

}  // namespace

void add_members(JSON& object, const RECORD& record) {
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        std::visit([&](auto field) { object[std::string(member.name)] = record.*field; }, member.field);
    }
}

std::vector<SCHEMA_MEMBER> record_members() {
    std::vector<SCHEMA_MEMBER> members;
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        const auto schema = [](auto field) { return schema_of_field(field); };
        members.push_back({std::string(member.name), std::visit(schema, member.field)});
    }
    return members;
}

std::vector<SCHEMA_MEMBER> indexed_record_members() {
    std::vector<SCHEMA_MEMBER> members = record_members();
    members.insert(members.begin(), {"index", number_schema()});
    return members;
}

JSON record_schema() {
    return object_schema(indexed_record_members());
}

JSON record_json(DWORD index, const RECORD& record) {
    JSON object{{"index", index}};
    add_members(object, record);
    return object;
}

void print_members(const std::optional<DWORD>& index, const RECORD& record) {
    if (index) {
        fmt::print("{:<20}  {}\n", "index", *index);
    }
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        const std::string cell =
            std::visit([&](auto field) { return pgmdev_cell(record.*field, member.base); }, member.field);
        fmt::print("{:<20}  {}{}{}\n", member.name, printable(cell), member.unit.empty() ? "" : " ", member.unit);
    }
}

void print_summary(const RECORD& record) {
    std::string features;
    for (const auto& [name, member] : FEATURES) {
        if (record.*member) {
            features += (features.empty() ? "" : ", ") + std::string(name);
        }
    }
    const auto line = [](std::string_view label, const std::string& text) {
        print_labelled(fmt::format("  {}", label), SUMMARY_COLUMN, text);
    };
    line("recognised by", identified_by(record));
    line("size", fmt::format("{}, {} die{}, sectors of {} bytes", size_text(record.device_bit_size), record.die_count,
                             record.die_count == 1 ? "" : "s", record.device_sector_byte));
    line("addressing", record.byte4_addressing ? "4-byte" : "3-byte");
    line("erase",
         fmt::format("whole device within {} s, sector within {} s", record.bulk_erase_time, record.sec_erase_time));
    line("program", fmt::format("within {} us", record.program_utime));
    line("protection", fmt::format("mask {:02X}, protected {:02X}, unprotected {:02X}", record.protection_mask,
                                   record.protection_value, record.unprotect_value));
    line("voltage", record.asc_voltage);
    if (!features.empty()) {
        line("features", features);
    }
}

std::vector<std::string> record_heading() {
    return {"index", "manufacturer", "device", "recognised by", "size", "sector", "voltage", "default", "switch"};
}

std::vector<std::string> record_columns_that_matter_least() {
    return {"recognised by", "default", "sector"};
}

std::vector<std::string> record_cells(const RECORD& record) {
    return {record.manufacturer_name,
            record.device_name,
            identified_by(record),
            size_text(record.device_bit_size),
            std::to_string(record.device_sector_byte),
            record.asc_voltage,
            record.default_dev ? "yes" : "no",
            record.ini};
}

void print_records(const RECORD* records, DWORD count, const ARGUMENTS& given, const COMMAND& command) {
    std::vector<JSON> rows;
    TEXT_TABLE table(record_heading());
    table.leaves_out(record_columns_that_matter_least());
    for (DWORD i = 0; i < count; ++i) {
        rows.push_back(record_json(i, records[i]));
        std::vector<std::string> cells = record_cells(records[i]);
        cells.insert(cells.begin(), std::to_string(i));
        table.add(std::move(cells));
    }
    print_listing(record_schema(), rows, table, given, command);
}
