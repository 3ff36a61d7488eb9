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

/// What is wrong with an ambiguity; "" for nothing.
std::string doubt_of(const PGMDEV_FLASH_AMBIGUITY& ambiguity, const std::vector<RECORD>& records) {
    const RECORD* const record = answered_by(records, ambiguity.response);
    if (record == nullptr) {
        return "no row of the table answers this response";
    }
    const bool is_named =
        std::any_of(ambiguity.chips.begin(), ambiguity.chips.end(),
                    [record](const std::string& chip) { return gen_stricmp(chip, record->device_name) == 0; });
    return is_named ? ""
                    : "the table answers this response with " + record->device_name + ", which is none of the chips";
}

/// What is wrong with a chip's identification; "" for nothing.
std::string doubt_of(const PGMDEV_FLASH_NOTES::IDENTIFICATION& identification, const std::vector<RECORD>& records) {
    bool is_named = false;
    for (const RECORD& record : records) {
        if (record.silicon_id || gen_stricmp(record.device_name, identification.device_name) != 0) {
            continue;
        }
        if (is_compatible(record, identification.bytes)) {
            return "";
        }
        is_named = true;
    }
    return is_named ? "no row of this name takes it" : "no row has this name";
}

}  // namespace

std::vector<PGMDEV_FLASH_NOTES::FILE_FAULTS> PGMDEV_FLASH_NOTES::faults_with(
    const std::vector<PGMDEV_SFL_FLASH_INFO>& records) const {
    std::vector<FILE_FAULTS> all{m_ambiguities_file, m_identifications_file};
    for (const PGMDEV_FLASH_AMBIGUITY& ambiguity : m_ambiguities) {
        if (std::string doubt = doubt_of(ambiguity, records); !doubt.empty()) {
            all[0].faults.push_back(warning(ambiguity.line, ambiguity.chips_column, digits_of(ambiguity.response),
                                            "chips", "", std::move(doubt)));
        }
    }
    for (const IDENTIFICATION& identification : m_identifications) {
        if (std::string doubt = doubt_of(identification, records); !doubt.empty()) {
            all[1].faults.push_back(warning(identification.line, identification.column, identification.device_name,
                                            "identification", joined(identification.bytes), std::move(doubt)));
        }
    }
    std::erase_if(all, [](const FILE_FAULTS& each) { return each.file.empty(); });
    for (FILE_FAULTS& each : all) {
        sort_faults(each.faults);
    }
    return all;
}
