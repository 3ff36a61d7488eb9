#include "flash_evidence.h"

#include <algorithm>
#include <ios>
#include <sstream>

namespace {

constexpr std::size_t KEY_CELLS = 2;  // device_name, compared

/// A byte that a record compares, as the list writes it: "EF@0".
std::string compared_byte(BYTE value, BYTE position) {
    constexpr const char* DIGITS = "0123456789ABCDEF";
    return std::string{DIGITS[value >> 4U], DIGITS[value & 0xFU], '@'} + std::to_string(position);
}

}  // namespace

std::string evidence_in_words(const std::string& cell) {
    const std::string word = cell.substr(0, cell.find(':'));
    const auto* const found = std::find_if(FLASH_EVIDENCE_CLASSES.begin(), FLASH_EVIDENCE_CLASSES.end(),
                                           [&word](const auto& entry) { return word == entry.first; });
    return found != FLASH_EVIDENCE_CLASSES.end() ? found->second : "";
}

std::vector<std::string> evidence_sources(const std::string& cell) {
    std::vector<std::string> sources;
    const std::size_t colon = cell.find(':');
    std::istringstream keys(colon == std::string::npos ? "" : cell.substr(colon + 1));
    keys.exceptions(std::ios::badbit);  // a failing allocation is not the end
    for (std::string key; std::getline(keys, key, '+');) {
        sources.push_back(key);
    }
    return sources;
}

FLASH_EVIDENCE::FLASH_EVIDENCE(CSV_LINES list) : m_list(std::move(list)) {
    if (m_list.names().size() > KEY_CELLS) {
        m_groups.assign(m_list.names().begin() + KEY_CELLS, m_list.names().end());
    }
}

FLASH_EVIDENCE::KEY FLASH_EVIDENCE::key_of(const PGMDEV_SFL_FLASH_INFO& record) {
    std::string compared = record.silicon_id ? "silicon" : "";
    const auto add = [&compared](BYTE value, BYTE position) {
        compared += (compared.empty() ? "" : " ") + compared_byte(value, position);
    };
    constexpr BYTE NONE = PGMDEV_SFL_FLASH_INFO::NONE;
    add(record.memory_id, record.memory_id_index);
    if (record.memory_type_index != NONE) {
        add(record.memory_type, record.memory_type_index);
    }
    if (!record.silicon_id || record.mfc_id_index != NONE) {  // otherwise NONE is a position, too
        add(record.mfc_id, record.mfc_id_index);
    }
    return {record.device_name, compared};
}

FLASH_EVIDENCE::EVIDENCE_LINE FLASH_EVIDENCE::line_of(const KEY& key) const {
    EVIDENCE_LINE found;
    for (const CSV_LINE& line : m_list.lines_of(key.first)) {
        std::vector<std::string> cells = m_list.cells_of(line);
        if (cells.size() > KEY_CELLS && cells[1] == key.second) {
            found = {line.number, {cells.begin() + KEY_CELLS, cells.end()}};
        }
    }
    return found;
}

std::vector<FLASH_SUPPORT> FLASH_EVIDENCE::of(const PGMDEV_SFL_FLASH_INFO& record) const {
    std::vector<FLASH_SUPPORT> support;
    const std::vector<std::string> cells = line_of(key_of(record)).cells;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        support.push_back({m_groups[i], evidence_in_words(cells[i]), evidence_sources(cells[i])});
    }
    return support;
}
