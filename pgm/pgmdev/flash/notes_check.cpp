#include <algorithm>
#include <string>

#include "flash/byte_pattern.h"
#include "flash/hex.h"
#include "flash/matching.h"
#include "flash/switches.h"
#include "gen.h"
#include "pgmdev_flash_notes.h"
#include "source/faults.h"

// What is wrong with the notes only beside the records that they are about.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;

PGMDEV_TABLE_FAULT warning(DWORD line, DWORD column, std::string row, std::string member, std::string cell,
                           std::string text) {
    PGMDEV_TABLE_FAULT fault;
    fault.severity = PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
    fault.line = line;
    fault.column = column;
    fault.row = std::move(row);
    fault.member = std::move(member);
    fault.cell = std::move(cell);
    fault.expected = std::move(text);
    return fault;
}

std::string digits_of(const std::vector<BYTE>& bytes) {
    std::string digits;
    for (const BYTE byte : bytes) {
        digits += hex_byte(byte);
    }
    return digits;
}

std::string joined(const std::vector<std::string>& patterns) {
    std::string text;
    for (const std::string& pattern : patterns) {
        text += pattern;
    }
    return text;
}

/// The record that the manager maps the response to while no switch is on; null: none.
const RECORD* answered_by(const std::vector<RECORD>& records, const std::vector<BYTE>& response) {
    const auto padded = padded_response(response);
    const auto found = std::find_if(records.begin(), records.end(), [&padded](const RECORD& record) {
        return !record.silicon_id && is_always_enabled(record) && FLASH_COMPARISONS(record).are_met_by(padded);
    });
    return found != records.end() ? &*found : nullptr;
}

bool is_compatible(const RECORD& record, const std::vector<std::string>& identification) {
    const FLASH_COMPARISONS comparisons(record);
    return std::all_of(comparisons.begin(), comparisons.end(), [&](const FLASH_COMPARISON& each) {
        return each.position >= identification.size() || fits_pattern(identification[each.position], each.value);
    });
}

}  // namespace

std::vector<PGMDEV_FLASH_NOTES::FILE_FAULTS> PGMDEV_FLASH_NOTES::faults_with(
    const std::vector<PGMDEV_SFL_FLASH_INFO>& records) const {
    std::vector<FILE_FAULTS> all{m_ambiguities_file, m_identifications_file};
    for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : m_ambiguities) {
        const RECORD* record = answered_by(records, ambiguity.response);
        const auto is_named = [record](const std::string& chip) { return gen_stricmp(chip, record->device_name) == 0; };
        if (record == nullptr || std::none_of(ambiguity.chips.begin(), ambiguity.chips.end(), is_named)) {
            const std::string digits = digits_of(ambiguity.response);
            all[0].faults.push_back(warning(
                ambiguity.line, ambiguity.chips_column, digits, "chips", "",
                record == nullptr
                    ? "no row of the table answers this response"
                    : "the table answers this response with " + record->device_name + ", which is none of the chips"));
        }
    }
    for (const IDENTIFICATION& identification : m_identifications) {
        bool named = false;
        bool admitted = false;
        for (const RECORD& record : records) {
            const bool same = !record.silicon_id && gen_stricmp(record.device_name, identification.device_name) == 0;
            named = named || same;
            admitted = admitted || (same && is_compatible(record, identification.bytes));
        }
        if (!admitted) {
            all[1].faults.push_back(warning(identification.line, identification.column, identification.device_name,
                                            "identification", joined(identification.bytes),
                                            named ? "no row of this name takes it" : "no row has this name"));
        }
    }
    std::erase_if(all, [](const FILE_FAULTS& each) { return each.file.empty(); });
    for (FILE_FAULTS& each : all) {
        sort_faults(each.faults);
    }
    return all;
}
