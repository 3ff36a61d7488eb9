#include "flash/output.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <type_traits>
#include <utility>

#include "terminal/text_table.h"

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

/// Members that are bit patterns or identifiers, which people write in hexadecimal.
constexpr std::array<std::string_view, 7> HEXADECIMAL{
    "memory_id", "memory_type", "mfc_id", "orvane_id", "protection_mask", "protection_value", "unprotect_value"};

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> UNITS{{{"device_bit_size", "bits"},
                                                                              {"device_sector_byte", "bytes"},
                                                                              {"bulk_erase_time", "s"},
                                                                              {"sec_erase_time", "s"},
                                                                              {"program_utime", "us"}}};

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

std::string_view unit_of(std::string_view member) {
    for (const auto& [name, unit] : UNITS) {
        if (name == member) {
            return unit;
        }
    }
    return "";
}

/// A member as a cell of a source table.
std::string cell_text(const PGMDEV_SFL_FLASH_MEMBER& member, const RECORD& record) {
    return std::visit(
        [&](auto field) -> std::string {
            const auto& value = record.*field;
            using VALUE = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_same_v<VALUE, std::string>) {
                return value;
            } else if constexpr (std::is_same_v<VALUE, bool>) {
                return value ? "TRUE" : "FALSE";
            } else if (std::find(HEXADECIMAL.begin(), HEXADECIMAL.end(), member.name) != HEXADECIMAL.end()) {
                return fmt::format("0x{:02X}", value);
            } else {
                return fmt::format("{}", value);
            }
        },
        member.field);
}

std::string identified_by(const RECORD& record) {
    if (record.silicon_id) {
        return fmt::format("silicon ID, byte {} = {:02X}", record.memory_id_index, record.memory_id);
    }
    std::string text = fmt::format("byte {} = {:02X}", record.mfc_id_index, record.mfc_id);
    if (record.memory_type_index != 255) {
        text += fmt::format(", byte {} = {:02X}", record.memory_type_index, record.memory_type);
    }
    return text + fmt::format(", byte {} = {:02X}", record.memory_id_index, record.memory_id);
}

/// Whether the compiler would read the text back as one and the same cell.
bool fits_in_cell(const std::string& text) {
    return !text.empty() && text.find_first_of(" \t\n,\r\v\f") == std::string::npos;
}

}  // namespace

std::string size_text(QWORD bits) {
    constexpr DWORD MBIT = 1024 * 1024;
    constexpr DWORD KBIT = 1024;
    if (bits != 0 && bits % MBIT == 0) {
        return fmt::format("{} Mbit", bits / MBIT);
    }
    return bits != 0 && bits % KBIT == 0 ? fmt::format("{} Kbit", bits / KBIT) : fmt::format("{} bit", bits);
}

void add_members(JSON& object, const RECORD& record) {
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        std::visit([&](auto field) { object[std::string(member.name)] = record.*field; }, member.field);
    }
}

JSON record_json(DWORD index, const RECORD& record) {
    JSON object{{"index", index}};
    add_members(object, record);
    return object;
}

void print_members(DWORD index, const RECORD& record) {
    fmt::print("{:<20}  {}\n", "index", index);
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        const std::string_view unit = unit_of(member.name);
        fmt::print("{:<20}  {}{}{}\n", member.name, printable(cell_text(member, record)), unit.empty() ? "" : " ",
                   unit);
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
        fmt::print("  {:<14}{}\n", label, printable(text));
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

void print_records(const RECORD* records, DWORD count, const COMMAND& command) {
    if (command.json) {
        JSON array = JSON::array();
        for (DWORD i = 0; i < count; ++i) {
            array.push_back(record_json(i, records[i]));
        }
        print_json(array);
        return;
    }
    TEXT_TABLE table(
        {"index", "manufacturer", "device", "recognised by", "size", "sector", "voltage", "default", "switch"});
    for (DWORD i = 0; i < count; ++i) {
        const RECORD& record = records[i];
        table.add({std::to_string(i), record.manufacturer_name, record.device_name, identified_by(record),
                   size_text(record.device_bit_size), std::to_string(record.device_sector_byte), record.asc_voltage,
                   record.default_dev ? "yes" : "no", record.ini});
    }
    table.print();
}

void print_source_table(const std::vector<RECORD>& records) {
    constexpr std::array TYPES{"STL_STRING", "bool", "BYTE", "DWORD"};  // in the order of the field's alternatives
    std::vector<std::vector<std::string>> rows(5);
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
        rows[0].emplace_back(TYPES[member.field.index()]);
        rows[1].emplace_back(member.name);
        const std::string_view unit = unit_of(member.name);
        rows[2].emplace_back(unit.empty() ? "-" : unit);
        rows[3].emplace_back("-");
        rows[4].emplace_back("-");
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
        std::vector<std::string>& row = rows.emplace_back();
        for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
            row.push_back(cell_text(member, records[i]));
            if (!fits_in_cell(row.back())) {
                throw std::runtime_error(
                    fmt::format("record {}: {} \"{}\" cannot be a cell of a source table", i, member.name, row.back()));
            }
        }
    }
    std::vector<std::size_t> widths(PGMDEV_SFL_FLASH_MEMBERS.size(), 0);
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::string line;
        for (std::size_t cell = 0; cell + 1 < rows[i].size(); ++cell) {
            line += fmt::format("{:<{}} ", rows[i][cell] + ",", widths[cell] + 1);
        }
        fmt::print("{}{}\n", line, rows[i].back());
        if (i == 1) {
            fmt::print("Serial-flash-table\nOne-row-per-flash-and-way-of-recognising-it,the-first-that-matches-wins\n");
        } else if (i == 4) {
            fmt::print("-\n");
        }
    }
}
