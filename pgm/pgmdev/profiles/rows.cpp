#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "packed/format.h"
#include "pgm_common.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "profiles/part_list.h"
#include "profiles/source.h"
#include "records/row_checks.h"
#include "stl.h"

// The checks that look at rows as rows. The format of the rows is right when they run.

namespace {

using SEVERITY = PGMDEV_TABLE_FAULT::SEVERITY;
using RECORD = PGMDEV_DEVICE_INFO;

using CHECK = ROW_CHECK<RECORD>;

constexpr DWORD LARGEST_FLASH = 65536;     ///< in Mbit; none is near
constexpr std::size_t GENERIC_RECORD = 1;  ///< where families without a row end up

consteval std::size_t cell(std::string_view member) {
    return cell_of<RECORD>(member);
}

void report_cell(const SOURCE_LINE& line, std::size_t cell, SEVERITY severity, std::string expected,
                 const FAULT_SINK& sink) {
    sink(row_fault<PROFILE_SOURCE>(line, severity, cell, std::move(expected)), PGMDEV_LINE);
}

constexpr std::array ROW_CHECKS{
    CHECK{SEVERITY::WARNING, cell("support_asc_ini"),
          [](const RECORD& r) { return !r.support_asc_ini.empty() && !r.support_asc; },
          "a switch without effect: support_asc is FALSE"},
    CHECK{SEVERITY::WARNING, cell("cmp_fbgen_end_block"),
          [](const RECORD& r) {
              return (r.cmp_fbgen_start_block == INVALID_DWORD) != (r.cmp_fbgen_end_block == INVALID_DWORD);
          },
          "compressed blocks have a first and a last one, or neither"},
    CHECK{SEVERITY::WARNING, cell("aes_fuse_bit_location"),
          [](const RECORD& r) {
              return r.aes_n_fuse_bits != 0 && QWORD{r.aes_fuse_bit_location} + r.aes_n_nv_key_bits > r.aes_n_fuse_bits;
          },
          "the key reaches beyond the fuse register (aes_n_fuse_bits)"},
    CHECK{SEVERITY::WARNING, cell("flash_width_bits"),
          [](const RECORD& r) {
              constexpr std::array<DWORD, 5> WIDTHS{0, 1, 4, 8, 16};
              return std::find(WIDTHS.begin(), WIDTHS.end(), r.flash_width_bits) == WIDTHS.end();
          },
          "unusual: 0, 1, 4, 8 or 16 data lines are"},
    CHECK{SEVERITY::WARNING, cell("jtag_program_initialize_microsec"),
          [](const RECORD& r) {
              return r.jtag_program_initialize_microsec != 0 && r.jtag_program_initialize_microsec < 10;
          },
          "looks like milliseconds: microseconds are meant"},
    CHECK{SEVERITY::WARNING, cell("as_minimum_flash_density"),
          [](const RECORD& r) { return r.as_minimum_flash_density > LARGEST_FLASH; },
          "unusual: Mbit are meant, not bits or bytes"},
    CHECK{SEVERITY::WARNING, cell("cmf_flash_block_size"),
          [](const RECORD& r) { return r.cmf_flash_block_size != 0 && r.cmf_flash_block_size < 256; },
          "unusual: bytes are meant, and a block of 64 Kbyte has 65536"},
    CHECK{SEVERITY::WARNING, cell("asc_voltage"),
          [](const RECORD& r) { return !r.asc_voltage.empty() && !is_voltage(r.asc_voltage); },
          "unusual: a number of volts and V, such as 3.3V, or nothing is"},
    CHECK{SEVERITY::WARNING, cell("fi_program_twice"),
          [](const RECORD& r) { return r.fi_program_twice && !r.support_fi; }, "without effect: support_fi is FALSE"},
};

/// Texts that no reader can read back, and numbers of which only the low bits are stored.
void check_sizes(const SOURCE_LINE& line, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const PGMDEV_MANAGER_TYPE kind = PGMDEV_DEVICE_INFO_MEMBERS[i].kind;
        if (is_text(kind) && line.cells[i].size() > PACKED_TEXT_MAX) {
            report_cell(line, i, SEVERITY::FAULT, "a text of at most 255 characters", sink);
        }
        if (kind == PGMDEV_MANAGER_BYTE || kind == PGMDEV_MANAGER_WORD) {
            bool valid = false;
            const DWORD value = PGM_COMMON::convert_string_to_dword(line.cells[i], false, &valid, nullptr, true);
            const DWORD most = kind == PGMDEV_MANAGER_BYTE ? 0xFF : 0xFFFF;
            if (value > most) {
                report_cell(line, i, SEVERITY::FAULT,
                            "a number that fits, 0 to " + std::to_string(most) +
                                ": of this one only the low bits would be stored",
                            sink);
            }
        }
    }
}

/// Keys that an earlier row has: no search reaches the later one.
void check_keys(const std::vector<SOURCE_LINE>& lines, const FAULT_SINK& sink) {
    std::map<std::string, DWORD> first_lines;
    for (const SOURCE_LINE& line : lines) {
        std::string key = PROFILE_SOURCE::row_name(line);
        stl_tolower(key);
        const auto [first, is_new] = first_lines.try_emplace(key, line.number);
        if (!is_new) {
            const auto cell = static_cast<std::size_t>(
                std::find_if(line.cells.begin(), line.cells.end(), [](const std::string& c) { return !c.empty(); }) -
                line.cells.begin());
            report_cell(line, cell, SEVERITY::WARNING,
                        "never reached: line " + std::to_string(first->second) + " has the same key", sink);
        }
    }
}

/// Programmer-file names that the part list does not give to any device.
void check_programmer_files(const std::vector<SOURCE_LINE>& lines, const FAULT_SINK& sink) {
    std::vector<PGMDEV_PGM_PART> parts;
    if (const char* condition = read_part_list(parts)) {
        PGMDEV_TABLE_FAULT fault;
        fault.condition = condition;
        fault.expected = "a part list, h/pgm_parts.txt, in the installation directory";
        sink(fault, PGMDEV_LINE);
        return;
    }
    std::set<std::string> known;
    for (PGMDEV_PGM_PART& part : parts) {
        stl_toupper(part.pcf);
        known.insert(part.pcf);
    }
    for (const SOURCE_LINE& line : lines) {
        std::string pcf = line.cells[cell("pcf")];
        stl_toupper(pcf);
        if (!pcf.empty() && !known.contains(pcf)) {
            report_cell(line, cell("pcf"), SEVERITY::WARNING, "no device of the part list has this programmer file",
                        sink);
        }
    }
}

void check_families(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records, const FAULT_SINK& sink) {
    std::set<int> present;
    for (const RECORD& record : records) {
        present.insert(record.family);
    }
    if (!present.contains(DEV_FAMILY_GENERIC)) {
        PGMDEV_TABLE_FAULT fault;
        fault.condition = "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC";
        fault.expected = "a row for the family GENERIC";
        sink(fault, PGMDEV_LINE);
        return;
    }
    const bool as_meant = records[GENERIC_RECORD].family == DEV_FAMILY_GENERIC;
    for (int i = DEV_FAMILY_INVALID + 1; i < DEV_FAMILY_GENERIC; ++i) {
        if (!present.contains(i)) {
            PGMDEV_TABLE_FAULT fault;
            fault.severity = SEVERITY::WARNING;
            fault.expected = "family " + pgmdev_family_name(static_cast<DEV_FAMILY_ENUM>(i)) +
                             " has no row: record 1 governs it, the row of " +
                             PROFILE_SOURCE::row_name(lines[GENERIC_RECORD]) +
                             (as_meant ? "" : " (the row of the family GENERIC belongs there)");
            sink(fault, PGMDEV_LINE);
        }
    }
}

}  // namespace

void PROFILE_SOURCE::check_rows(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                                const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        check_sizes(lines[i], sink);
        check_row<PROFILE_SOURCE>(lines[i], records[i], ROW_CHECKS, sink);
    }
}

void PROFILE_SOURCE::check_rows_together(const std::vector<SOURCE_LINE>& lines, const std::vector<RECORD>& records,
                                         const FAULT_SINK& sink) {
    check_keys(lines, sink);
    check_families(lines, records, sink);
    check_programmer_files(lines, sink);
}
