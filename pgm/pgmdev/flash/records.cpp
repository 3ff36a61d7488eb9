#include "flash/records.h"

#include <type_traits>

#include "pgm_common.h"
#include "report.h"

namespace {

constexpr const char* EMPTY_CELL = "string.size() > 0";
constexpr const char* NOT_A_BOOL = R"(string == "FALSE" || string == "TRUE")";
constexpr const char* NOT_A_NUMBER = "Invalid string to integer conversion";

DWORD number_in(const std::string& cell, bool& valid) {
    return PGM_COMMON::convert_string_to_dword(cell, true, &valid, nullptr, true);
}

}  // namespace

void read_flash_members(PACKED_READER& reader, PGMDEV_SFL_FLASH_INFO& record) {
    for (const PGMDEV_SFL_FLASH_MEMBER& member : PGMDEV_SFL_FLASH_MEMBERS) {
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
                } else {
                    value = reader.get_dword();
                }
            },
            member.field);
    }
}

QWORD flash_records_in(QWORD size) {
    return size < PACKED_BODY_HEAD_SIZE ? 0 : (size - PACKED_BODY_HEAD_SIZE) / FLASH_RECORD_FIXED_SIZE + 1;
}

QWORD flash_record_size(const std::vector<std::string>& cells) {
    QWORD size = FLASH_RECORD_FIXED_SIZE;
    for (std::size_t i = 0; i < PGMDEV_SFL_FLASH_MEMBERS.size(); ++i) {
        if (PGMDEV_SFL_FLASH_MEMBERS[i].type() == PGMDEV_MANAGER_STRING) {
            size += cells[i].size();
        }
    }
    return size;
}

const char* flash_cell_condition(PGMDEV_MANAGER_TYPE type, const std::string& cell) {
    if (type == PGMDEV_MANAGER_BOOL) {
        return cell == "FALSE" || cell == "TRUE" ? nullptr : NOT_A_BOOL;
    }
    if (cell.empty()) {
        return EMPTY_CELL;
    }
    bool valid = true;
    if (type != PGMDEV_MANAGER_STRING) {
        number_in(cell, valid);
    }
    return valid ? nullptr : NOT_A_NUMBER;
}

void write_flash_cell(PACKED_WRITER& writer, PGMDEV_MANAGER_TYPE type, const std::string& cell) {
    const char* condition = flash_cell_condition(type, cell);
    PGMDEV_REQUIRE(condition == nullptr, condition, FLASH_FORMAT.source);
    bool valid = false;
    switch (type) {
        case PGMDEV_MANAGER_STRING:
            return writer.put_string(PGMDEV_MANAGER_STRING, cell);
        case PGMDEV_MANAGER_BOOL:
            return writer.put_bool(cell == "TRUE");
        case PGMDEV_MANAGER_BYTE:
            return writer.put_number(number_in(cell, valid), 1);
        default:
            return writer.put_number(number_in(cell, valid), 4);
    }
}

void write_flash_members(PACKED_WRITER& writer, const std::vector<std::string>& cells) {
    PGMDEV_REQUIRE(cells.size() == PGMDEV_SFL_FLASH_MEMBERS.size(), "svec.size() == TOTAL_DATABASE_MEMBER",
                   FLASH_FORMAT.source);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        write_flash_cell(writer, PGMDEV_SFL_FLASH_MEMBERS[i].type(), cells[i]);
    }
}

PGMDEV_SFL_FLASH_INFO flash_record_of(const std::vector<std::string>& cells) {
    PGMDEV_SFL_FLASH_INFO record;
    for (std::size_t i = 0; i < PGMDEV_SFL_FLASH_MEMBERS.size(); ++i) {
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
                    value = static_cast<VALUE>(number_in(cells[i], valid));
                }
            },
            PGMDEV_SFL_FLASH_MEMBERS[i].field);
    }
    return record;
}
