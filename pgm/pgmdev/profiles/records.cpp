#include "profiles/records.h"

#include <type_traits>

#include "pgm_common.h"
#include "profiles/cell_names.h"
#include "report.h"

namespace {

constexpr const char* NOT_A_BOOL = R"(string == "" || string == "FALSE" || string == "TRUE")";
constexpr const char* NOT_A_NUMBER = "Invalid string to integer conversion";
constexpr const char* NOT_A_NAME = "found";

DWORD number_in(const std::string& cell, bool& valid) {
    return PGM_COMMON::convert_string_to_dword(cell, false, &valid, nullptr, true);
}

/// The number that a cell of an identifier or enumerator stands for.
DWORD named_in(const PGMDEV_DEVICE_INFO_MEMBER& member, const std::string& cell, bool& valid) {
    const bool identifier = member.kind == PGMDEV_MANAGER_DEVID_ENUM;
    const DEV_INFO_NAMES* names = find_dev_info_names(identifier ? std::string(member.name) : "");
    DWORD value = 0;
    valid = names->find(cell, value);
    return value;
}

/// The number in a cell of any member that holds one.
DWORD value_in(const PGMDEV_DEVICE_INFO_MEMBER& member, const std::string& cell, bool& valid) {
    const bool named = member.kind == PGMDEV_MANAGER_DEVID_ENUM || member.kind == PGMDEV_MANAGER_ENUM;
    return named ? named_in(member, cell, valid) : number_in(cell, valid);
}

}  // namespace

void read_dev_info_members(PACKED_READER& reader, PGMDEV_DEVICE_INFO& record) {
    for (const PGMDEV_DEVICE_INFO_MEMBER& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        std::visit(
            [&](auto field) {
                auto& value = record.*field;
                using VALUE = std::remove_reference_t<decltype(value)>;
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    value = reader.get_string(true);
                } else if constexpr (std::is_same_v<VALUE, bool>) {
                    value = reader.get_bool();
                } else if constexpr (std::is_same_v<VALUE, BYTE>) {
                    value = reader.get_byte();
                } else if constexpr (std::is_same_v<VALUE, WORD>) {
                    value = reader.get_word();
                } else {
                    value = static_cast<VALUE>(reader.get_dword());
                }
            },
            member.field);
    }
}

QWORD dev_info_records_in(QWORD size) {
    return size < PACKED_BODY_HEAD_SIZE ? 0 : (size - PACKED_BODY_HEAD_SIZE) / DEV_INFO_RECORD_FIXED_SIZE + 1;
}

QWORD dev_info_record_size(const std::vector<std::string>& cells) {
    QWORD size = DEV_INFO_RECORD_FIXED_SIZE;
    for (std::size_t i = 0; i < PGMDEV_DEVICE_INFO_MEMBERS.size(); ++i) {
        const PGMDEV_MANAGER_TYPE kind = PGMDEV_DEVICE_INFO_MEMBERS[i].kind;
        if (kind == PGMDEV_MANAGER_DEVID_STR || kind == PGMDEV_MANAGER_STRING) {
            size += cells[i].size();
        }
    }
    return size;
}

const char* dev_info_cell_condition(const PGMDEV_DEVICE_INFO_MEMBER& member, const std::string& cell) {
    bool valid = true;
    switch (member.kind) {
        case PGMDEV_MANAGER_DEVID_STR:
        case PGMDEV_MANAGER_STRING:
            return nullptr;
        case PGMDEV_MANAGER_BOOL:
            return cell.empty() || cell == "FALSE" || cell == "TRUE" ? nullptr : NOT_A_BOOL;
        case PGMDEV_MANAGER_DEVID_ENUM:
        case PGMDEV_MANAGER_ENUM:
            named_in(member, cell, valid);
            return valid ? nullptr : NOT_A_NAME;
        default:
            number_in(cell, valid);
            return valid ? nullptr : NOT_A_NUMBER;
    }
}

void write_dev_info_cell(PACKED_WRITER& writer, const PGMDEV_DEVICE_INFO_MEMBER& member, const std::string& cell) {
    const char* condition = dev_info_cell_condition(member, cell);
    PGMDEV_REQUIRE(condition == nullptr, condition, DEV_INFO_FORMAT.source);
    bool valid = false;
    switch (member.kind) {
        case PGMDEV_MANAGER_DEVID_STR:
        case PGMDEV_MANAGER_STRING:
            return writer.put_string(member.kind, cell);
        case PGMDEV_MANAGER_BOOL:
            return writer.put_bool(cell == "TRUE");
        case PGMDEV_MANAGER_DEVID_ENUM:
        case PGMDEV_MANAGER_ENUM:
            return writer.put_enum(named_in(member, cell, valid));
        case PGMDEV_MANAGER_BYTE:
            return writer.put_number(number_in(cell, valid), 1);
        case PGMDEV_MANAGER_WORD:
            return writer.put_number(number_in(cell, valid), 2);
        default:
            return writer.put_number(number_in(cell, valid), 4);
    }
}

void write_dev_info_members(PACKED_WRITER& writer, const std::vector<std::string>& cells) {
    PGMDEV_REQUIRE(cells.size() == PGMDEV_DEVICE_INFO_MEMBERS.size(),
                   "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER", DEV_INFO_FORMAT.source);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        write_dev_info_cell(writer, PGMDEV_DEVICE_INFO_MEMBERS[i], cells[i]);
    }
}

PGMDEV_DEVICE_INFO dev_info_record_of(const std::vector<std::string>& cells) {
    PGMDEV_DEVICE_INFO record;
    for (std::size_t i = 0; i < PGMDEV_DEVICE_INFO_MEMBERS.size(); ++i) {
        const PGMDEV_DEVICE_INFO_MEMBER& member = PGMDEV_DEVICE_INFO_MEMBERS[i];
        std::visit(
            [&](auto field) {
                auto& value = record.*field;
                using VALUE = std::remove_reference_t<decltype(value)>;
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    value = cells[i];
                } else if constexpr (std::is_same_v<VALUE, bool>) {
                    value = cells[i] == "TRUE";
                } else {
                    bool valid = false;
                    value = static_cast<VALUE>(value_in(member, cells[i], valid));
                }
            },
            member.field);
    }
    return record;
}

std::array<DWORD, INDEX_TABLES.size()> index_table_counts() {
    return {DEV_FAMILY_MAX, DEV_DEVICE_MAX, static_cast<DWORD>(DEV_PART_MAX)};
}

void read_index_table(PACKED_READER& reader, const INDEX_TABLE& table, std::span<DWORD> entries) {
    reader.confirm_tag(table.tag, table.wrong_tag);
    PGMDEV_REQUIRE(reader.untagged_dword() == entries.size(), table.wrong_count, DEV_INFO_FORMAT.source);
    for (DWORD& entry : entries) {
        entry = reader.untagged_dword();
    }
}

void write_index_table(PACKED_WRITER& writer, const INDEX_TABLE& table, std::span<const DWORD> entries) {
    writer.put_tag(table.tag);
    writer.put_untagged_dword(static_cast<DWORD>(entries.size()));
    for (const DWORD entry : entries) {
        writer.put_untagged_dword(entry);
    }
}
