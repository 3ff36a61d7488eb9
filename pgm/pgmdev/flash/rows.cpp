#include <algorithm>
#include <array>
#include <map>
#include <tuple>
#include <utility>

#include "flash/matching.h"
#include "flash/source.h"
#include "flash/switches.h"
#include "packed/format.h"
#include "pgm_common.h"
#include "records/row_checks.h"
#include "stl.h"

// The checks that look at rows as rows. The format is right when they run.

namespace {

using SEVERITY = PGMDEV_TABLE_FAULT::SEVERITY;
using RECORD = PGMDEV_SFL_FLASH_INFO;
using CHECK = ROW_CHECK<RECORD>;

constexpr BYTE NONE = RECORD::NONE;

/// A data row: where it stands, and what it is compiled to.
struct ROW {
    const SOURCE_LINE& line;
    const RECORD& record;
};

consteval std::size_t cell(std::string_view member) {
    return cell_of<RECORD>(member);
}

PGMDEV_TABLE_FAULT fault_in(const ROW& row, SEVERITY severity, std::size_t cell, std::string expected) {
    return row_fault<FLASH_SOURCE>(row.line, severity, cell, std::move(expected));
}

bool sector_does_not_divide(const RECORD& r) {
    return r.device_sector_byte == 0 || r.device_bit_size % 8 != 0 || r.device_bit_size / 8 % r.device_sector_byte != 0;
}

bool collides(const RECORD& r, BYTE index, BYTE other) {
    return !r.silicon_id && index == other;
}

bool outside(DWORD value, DWORD lowest, DWORD highest) {
    return value < lowest || value > highest;
}

/// An idle bus reads as all zeros or all ones.
bool is_idle(BYTE value) {
    return value == 0x00 || value == 0xFF;
}

/// Most capacity IDs, from 64 Kbyte on, are the binary logarithm of the size in bytes, by which one given in bytes shows.
bool is_size_in_bytes(const RECORD& r) {
    return !r.silicon_id && r.memory_id >= 16 && r.memory_id < 32 && r.device_bit_size == DWORD{1} << r.memory_id;
}

constexpr auto FAULT = SEVERITY::FAULT;
constexpr auto WARNING = SEVERITY::WARNING;

constexpr std::array ROW_CHECKS{
    CHECK{FAULT, cell("device_bit_size"), [](const RECORD& r) { return r.device_bit_size == 0; },
          "a size above 0 bits"},
    CHECK{FAULT, cell("device_sector_byte"), sector_does_not_divide,
          "a sector size that divides the device into whole sectors"},
    CHECK{FAULT, cell("memory_type_index"),
          [](const RECORD& r) { return collides(r, r.memory_type_index, r.memory_id_index); },
          "another byte of the response than memory_id_index names"},
    CHECK{FAULT, cell("mfc_id_index"), [](const RECORD& r) { return collides(r, r.mfc_id_index, r.memory_id_index); },
          "another byte of the response than memory_id_index names"},
    CHECK{
        FAULT, cell("mfc_id_index"),
        [](const RECORD& r) { return r.memory_type_index != NONE && collides(r, r.mfc_id_index, r.memory_type_index); },
        "another byte of the response than memory_type_index names"},

    CHECK{WARNING, cell("device_bit_size"), is_size_in_bytes,
          "looks like a size in bytes: bits are meant, eight times as many"},
    CHECK{WARNING, cell("device_sector_byte"),
          [](const RECORD& r) { return !sector_does_not_divide(r) && r.device_sector_byte < 256; },
          "unusual: bytes are meant, and a sector of 64 Kbyte has 65536"},
    CHECK{WARNING, cell("memory_id_index"), [](const RECORD& r) { return r.memory_id_index == NONE; },
          "255 is no wildcard here: byte 255 of the response is compared"},
    CHECK{WARNING, cell("mfc_id_index"), [](const RECORD& r) { return !r.silicon_id && r.mfc_id_index == NONE; },
          "255 is no wildcard here: byte 255 of the response is compared"},
    CHECK{WARNING, cell("memory_id"), [](const RECORD& r) { return r.silicon_id && is_idle(r.memory_id); },
          "an idle bus answers this signature, too"},
    CHECK{WARNING, cell("mfc_id"),
          [](const RECORD& r) { return !r.silicon_id && r.mfc_id_index == 0 && is_idle(r.mfc_id); },
          "an idle bus answers this manufacturer ID, too"},
    CHECK{WARNING, cell("die_count"), [](const RECORD& r) { return r.die_count == 0; }, "unusual: no die"},
    // The longest plausible times: stacked dies that are erased one after the other take hours.
    CHECK{WARNING, cell("bulk_erase_time"), [](const RECORD& r) { return outside(r.bulk_erase_time, 1, 14400); },
          "unusual: 1 to 14400 seconds are (seconds are meant, not milliseconds)"},
    CHECK{WARNING, cell("sec_erase_time"), [](const RECORD& r) { return outside(r.sec_erase_time, 1, 60); },
          "unusual: 1 to 60 seconds are (seconds are meant, not milliseconds)"},
    CHECK{WARNING, cell("program_utime"), [](const RECORD& r) { return outside(r.program_utime, 1, 1000000); },
          "unusual: 1 to 1000000 microseconds are"},
    CHECK{WARNING, cell("program_utime"), [](const RECORD& r) { return r.program_utime > 0 && r.program_utime < 10; },
          "looks like milliseconds: microseconds are meant"},
    CHECK{WARNING, cell("asc_voltage"), [](const RECORD& r) { return !is_voltage(r.asc_voltage); },
          "unusual: a number of volts and V, such as 3.3V, is"},
    CHECK{WARNING, cell("protection_value"),
          [](const RECORD& r) { return (r.protection_value & ~r.protection_mask) != 0; },
          "has bits outside protection_mask"},
    CHECK{WARNING, cell("unprotect_value"),
          [](const RECORD& r) { return (r.unprotect_value & ~r.protection_mask) != 0; },
          "has bits outside protection_mask"},
    CHECK{WARNING, cell("protection_division"),
          [](const RECORD& r) { return r.protection_division != NONE && r.protection_division >= 32; },
          "unusual: below 32, or 255 for not known, is"},
    CHECK{WARNING, cell("bottom_value"), [](const RECORD& r) { return r.bottom_value != NONE && r.bottom_value > 7; },
          "unusual: a bit number from 0 to 7, or 255 for none, is"},
    CHECK{WARNING, cell("byte4_addressing"),
          [](const RECORD& r) { return !r.byte4_addressing && r.device_bit_size > 128 * 1024 * 1024; },
          "3-byte addresses reach only 128 Mbit of this device"},
};

/// Cells that the encoding does not keep as they are.
void check_cells_fit(const ROW& row, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < PGMDEV_SFL_FLASH_MEMBERS.size(); ++i) {
        const PGMDEV_SFL_FLASH_MEMBER& member = PGMDEV_SFL_FLASH_MEMBERS[i];
        if (const auto* text = std::get_if<std::string RECORD::*>(&member.field)) {
            if ((row.record.**text).size() > PACKED_TEXT_MAX) {
                sink(fault_in(row, FAULT, i, "at most 255 characters: a longer text makes the database unreadable"),
                     PGMDEV_LINE);
            }
        } else if (member.type() == PGMDEV_MANAGER_BYTE) {
            const auto* byte = std::get_if<BYTE RECORD::*>(&member.field);
            bool valid = false;
            if (PGM_COMMON::convert_string_to_dword(row.line.cells[i], true, &valid, nullptr, true) !=
                row.record.**byte) {
                sink(fault_in(row, FAULT, i,
                              "a number that fits into a byte, 0 to 255: of this one " +
                                  std::to_string(row.record.**byte) + " would be stored"),
                     PGMDEV_LINE);
            }
        }
    }
}

std::string folded(const std::string& text) {
    std::string lower = text;
    stl_tolower(lower);
    return lower;
}

/// Each name needs exactly one default row among its enabled rows, whichever switches are on.
void check_defaults(const std::vector<ROW>& rows, const FAULT_SINK& sink) {
    std::map<std::string, const ROW*> default_rows;
    for (const ROW& row : rows) {
        if (!row.record.default_dev) {
            continue;
        }
        const auto [first, inserted] = default_rows.emplace(folded(row.record.device_name), &row);
        if (!inserted) {
            PGMDEV_TABLE_FAULT fault = fault_in(
                row, FAULT, cell("default_dev"),
                "FALSE: line " + std::to_string(first->second->line.number) + " is the default row of this name");
            fault.condition = "!one_default";
            sink(fault, PGMDEV_LINE);
        }
    }
    for (const ROW& row : rows) {
        const auto found = default_rows.find(folded(row.record.device_name));
        if (found == default_rows.end()) {
            PGMDEV_TABLE_FAULT fault =
                fault_in(row, FAULT, cell("default_dev"), "TRUE in one row of this name: it has no default row");
            fault.condition = "one_default";
            sink(fault, PGMDEV_LINE);
            default_rows.emplace(folded(row.record.device_name), &row);  // one fault a name is enough
        } else if (const RECORD& standing = found->second->record;
                   !is_always_enabled(standing) && standing.ini != row.record.ini) {
            PGMDEV_TABLE_FAULT fault =
                fault_in(row, FAULT, cell("ini"),
                         standing.ini + ", as in line " + std::to_string(found->second->line.number) +
                             ": without that switch this row is enabled, but its default row is not");
            fault.condition = "one_default";
            sink(fault, PGMDEV_LINE);
        }
    }
}

/// What a row compares, by position; what it compares twice, once.
std::vector<FLASH_COMPARISON> comparisons(const RECORD& record) {
    const FLASH_COMPARISONS all(record);
    std::vector<FLASH_COMPARISON> sorted(all.begin(), all.end());
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    return sorted;
}

/// What a row demands of a response, and of the configuration. An earlier row wins against a later one whenever that is
/// enabled if it demands nothing that the later one does not: some of the same comparisons, and the same switch or none.
struct DEMANDS {
    bool silicon_id;
    std::string enabled_by;  ///< "": always
    std::vector<FLASH_COMPARISON> comparisons;

    bool operator<(const DEMANDS& other) const {
        return std::tie(silicon_id, enabled_by, comparisons) <
               std::tie(other.silicon_id, other.enabled_by, other.comparisons);
    }
};

std::string enabled_by(const RECORD& record) {
    return is_always_enabled(record) ? "" : record.ini;
}

/// The earliest of the rows seen that always wins against the record; null when none does.
const ROW* winner_against(const RECORD& record, const std::map<DEMANDS, const ROW*>& seen) {
    const auto all = comparisons(record);
    const ROW* winner = nullptr;
    for (DWORD chosen = 1; chosen < DWORD{1} << all.size(); ++chosen) {
        DEMANDS key{record.silicon_id, "", {}};
        for (std::size_t i = 0; i < all.size(); ++i) {
            if ((chosen >> i & 1) != 0) {
                key.comparisons.push_back(all[i]);
            }
        }
        for (const std::string& by : {std::string(), enabled_by(record)}) {
            key.enabled_by = by;
            const auto found = seen.find(key);
            if (found != seen.end() && (winner == nullptr || found->second < winner)) {
                winner = found->second;
            }
        }
    }
    return winner;
}

void check_reachable(const std::vector<ROW>& rows, const FAULT_SINK& sink) {
    std::map<DEMANDS, const ROW*> seen;
    for (const ROW& row : rows) {
        if (const ROW* winner = winner_against(row.record, seen)) {
            sink(fault_in(row, WARNING, cell("memory_id"),
                          "no response reaches this row: " + winner->record.device_name + " in line " +
                              std::to_string(winner->line.number) + " always wins; only its name finds it"),
                 PGMDEV_LINE);
        }
        seen.try_emplace({row.record.silicon_id, enabled_by(row.record), comparisons(row.record)}, &row);
    }
}

std::vector<ROW> rows_of(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records) {
    std::vector<ROW> rows;
    for (std::size_t i = 0; i < records.size(); ++i) {
        rows.push_back({lines[i], records[i]});
    }
    return rows;
}

}  // namespace

void FLASH_SOURCE::check_rows(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                              const FAULT_SINK& sink) {
    for (const ROW& row : rows_of(lines, records)) {
        check_cells_fit(row, sink);
        check_row<FLASH_SOURCE>(row.line, row.record, ROW_CHECKS, sink);
    }
}

void FLASH_SOURCE::check_rows_together(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                                       const FAULT_SINK& sink) {
    const std::vector<ROW> rows = rows_of(lines, records);
    check_defaults(rows, sink);
    check_reachable(rows, sink);
}
