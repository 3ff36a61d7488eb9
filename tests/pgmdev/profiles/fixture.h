#pragma once

/// \file
/// Device profiles, bodies, files and source tables as the tests themselves write and read them: written plainly from
/// the description of the format, so that they can stand against the library's own code.

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <vector>

#include "dstr.h"
#include "pgmdev/flash/fixture.h"
#include "pgmdev/profiles/columns.h"

namespace dev_info_reference {

using flash_reference::deflated;
using flash_reference::inflated;
using flash_reference::le32;

constexpr const char* MAGIC = "PGMIO_DM";
constexpr const char* STAMP = "6d91639bb2165ce50a6e050711c1137f";

/// What a packed file begins with.
inline std::string head() {
    return std::string(MAGIC) + STAMP;
}

inline std::string in_capitals(std::string text) {
    for (char& c : text) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return text;
}

inline std::string family_name(int family) {
    return in_capitals(dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(family)));
}

/// The number that a cell stands for.
inline unsigned long number_of(std::size_t column, const std::string& cell) {
    const std::string name = COLUMNS[column].name;
    const std::string kind = COLUMNS[column].kind;
    if (name == "family") {
        return cell.empty() ? 0UL : static_cast<unsigned long>(dstr_get_dev_family_enum_by_string(cell.c_str()));
    }
    if (name == "device") {
        return cell == "GENERIC" ? 990UL : 0UL;
    }
    if (name == "part") {
        return static_cast<unsigned long>(cell == "GENERIC" ? DEV_PART_GENERIC : DEV_PART_INVALID);
    }
    if (kind == "ENUM") {
        const std::vector<std::pair<std::string, unsigned long>> rows{{"DEV_FAMILY_KESTREL", 6},
                                                                      {"DEV_FAMILY_OSPREY", 65},
                                                                      {"DEV_FAMILY_HERON", 61},
                                                                      {"DEV_FAMILY_MERLIN", 50},
                                                                      {"NPCF_BLOCK_CRAM", 37},
                                                                      {"NPCF_BLOCK_ERAM", 38},
                                                                      {"NPCF_BLOCK_CB_HEADER2", 6},
                                                                      {"PGMIO_AVST_X8", 20},
                                                                      {"DEV_FAMILY_PETREL", 54},
                                                                      {"DEV_FAMILY_PLOVER", 63},
                                                                      {"DEV_FAMILY_SHRIKE", 71},
                                                                      {"NPCF_BLOCK_POSTAMBLE", 39},
                                                                      {"", 0xFFFFFFFF}};
        for (const auto& [row, value] : rows) {
            if (row == cell) {
                return value;
            }
        }
        throw std::runtime_error("no enumerator " + cell);
    }
    return cell.empty() ? 0UL : std::stoul(cell, nullptr, cell.starts_with("0x") ? 16 : 10);
}

/// A cell as the body holds it.
inline std::string field(std::size_t column, const std::string& cell) {
    const std::string kind = COLUMNS[column].kind;
    if (kind == "DEVID_STR" || kind == "STL_STRING") {
        return std::string(1, kind == "DEVID_STR" ? '\1' : '\2') + static_cast<char>(cell.size()) + cell;
    }
    if (kind == "bool") {
        return {'\3', cell == "TRUE" ? '\1' : '\0'};
    }
    const std::string bytes = le32(number_of(column, cell));
    if (kind == "BYTE") {
        return '\4' + bytes.substr(0, 1);
    }
    if (kind == "WORD") {
        return '\5' + bytes.substr(0, 2);
    }
    return (kind == "DWORD" ? '\6' : '\7') + bytes;
}

/// A cell as `values` gives the member.
inline std::string value(std::size_t column, const std::string& cell) {
    const std::string kind = COLUMNS[column].kind;
    if (kind == "DEVID_STR" || kind == "STL_STRING") {
        return cell;
    }
    if (kind == "bool") {
        return cell == "TRUE" ? "1" : "0";
    }
    const unsigned long number = number_of(column, cell);
    return std::to_string(kind == "BYTE" ? number & 0xFF : kind == "WORD" ? number & 0xFFFF : number);
}

inline std::string record(const CELLS& cells) {
    std::string bytes;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        bytes += field(i, cells[i]);
    }
    return bytes + "END1";
}

/// The body up to the index tables.
inline std::string records(const std::vector<CELLS>& rows) {
    std::string bytes = le32(1) + le32(rows.size()) + le32(MEMBERS);
    for (const CELLS& row : rows) {
        bytes += record(row);
    }
    return bytes + "END2";
}

struct TABLES {
    std::vector<unsigned long> family = std::vector<unsigned long>(73, 0xFFFFFFFF);
    std::vector<unsigned long> device = std::vector<unsigned long>(991, 0xFFFFFFFF);
    std::vector<unsigned long> part = std::vector<unsigned long>(static_cast<std::size_t>(DEV_PART_MAX), 0xFFFFFFFF);
};

inline std::string table(char marker, const std::vector<unsigned long>& entries) {
    std::string bytes = marker + le32(entries.size());
    for (const unsigned long entry : entries) {
        bytes += le32(entry);
    }
    return bytes;
}

inline std::string tables(const TABLES& all) {
    return table('\10', all.family) + table('\12', all.device) + table('\13', all.part);
}

inline std::string file(const std::string& body) {
    return head() + le32(body.size()) + deflated(body) + std::string(2, '\0');
}

/// A cell that differs from a cleared member of that kind, and from those of other columns where the kind has as many.
inline std::string sample_cell(const std::string& kind, std::size_t column) {
    if (kind == "bool") {
        return "TRUE";
    }
    if (kind == "ENUM") {
        return "NPCF_BLOCK_CRAM";
    }
    if (kind == "STL_STRING") {
        return "text" + std::to_string(column);
    }
    const std::map<std::string, std::size_t> least{{"BYTE", 100}, {"WORD", 0x1200}, {"DWORD", 0x12345600}};
    return least.contains(kind) ? std::to_string(column + least.at(kind)) : "";
}

/// A row whose every cell differs from a cleared record, keyed by a family.
inline CELLS sample(const std::string& family = "KESTREL") {
    CELLS row;
    for (std::size_t i = 0; i < COLUMNS.size(); ++i) {
        row.push_back(sample_cell(COLUMNS[i].kind, i));
    }
    row[0] = family;
    return row;
}

/// A row with no more than a key.
inline CELLS bare(std::size_t key, const std::string& cell) {
    CELLS row(MEMBERS);
    row[key] = cell;
    return row;
}

constexpr std::size_t FAMILY = 0, PCF = 1, DEVICE = 2, PART = 3;

/// The 78 rows of a table without fault: every family in order, the generic device and part, four programmer files.
inline std::vector<CELLS> rows() {
    std::vector<CELLS> all;
    for (int family = 1; family <= 72; ++family) {
        all.push_back(bare(FAMILY, family_name(family)));
    }
    all.push_back(bare(DEVICE, "GENERIC"));
    all.push_back(bare(PART, "GENERIC"));
    for (const char* pcf : {"FILE_A", "FILE_B", "FILE_C", "FILE_D"}) {
        all.push_back(bare(PCF, pcf));
    }
    return all;
}

inline std::string joined(const CELLS& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += (i == 0 ? "" : ",") + cells[i];
    }
    return line;
}

inline CELLS type_row() {
    CELLS row;
    for (const COLUMN& column : COLUMNS) {
        row.emplace_back(column.kind);
    }
    return row;
}

inline CELLS name_row() {
    CELLS row;
    for (const COLUMN& column : COLUMNS) {
        row.emplace_back(column.name);
    }
    return row;
}

inline std::string source(const std::vector<CELLS>& data_rows) {
    std::string text = joined(type_row()) + "\n" + joined(name_row()) + "\n";
    for (const CELLS& row : data_rows) {
        text += joined(row) + "\n";
    }
    return text;
}

}  // namespace dev_info_reference
