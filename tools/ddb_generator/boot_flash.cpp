#include "boot_flash.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <span>
#include <string_view>

#include "csv_table.h"
#include "hps_fields.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "source_rows.h"

namespace {

/// A type of values, by PGMDEV_PARAM_TYPE: how a table spells it, and its bytes in a block.
struct VALUE_TYPE {
    const char* name;
    std::size_t size;
};

constexpr std::array<VALUE_TYPE, 7> VALUE_TYPES{
    {{"", 0}, {"STL_STRING", 0}, {"bool", 1}, {"BYTE", 1}, {"WORD", 2}, {"DWORD", 4}, {"QWORD", 8}}};

/// What tells devices apart: the columns of a value and of the mask of the bits that count. Without a mask all do.
struct IDENTITY {
    std::string_view value;
    std::string_view mask;
};

constexpr std::array<IDENTITY, 2> NAND_IDENTITY{{{"manufacturer_id", ""}, {"device_id", ""}}};
constexpr std::array<IDENTITY, 2> SPI_IDENTITY{{{"silicon_id", "silicon_id_mask"}, {"ext_id", "ext_id_mask"}}};

/// What tells devices apart is as long as flash answers it, as the headers of the tables state. Users' own may be longer.
constexpr std::array BUILT_IN_CHECKS{
    FIELD_CHECK{"manufacturer_id", false, 0, 0xFF},
    FIELD_CHECK{"device_id", false, 0, 0xFF},
    FIELD_CHECK{"silicon_id", false, 1, 0xFFFFFF},
    FIELD_CHECK{"silicon_id_mask", false, 1, 0xFFFFFF},
};

constexpr bool checks_name_members(const auto& members, const auto& checks) {
    return std::all_of(checks.begin(), checks.end(), [&](const FIELD_CHECK& check) {
        return std::any_of(members.begin(), members.end(),
                           [&](const auto& member) { return member.name == check.name; });
    });
}
static_assert(checks_name_members(PGMDEV_HPS_NAND_MEMBERS, HPS_NAND_CHECKS));
static_assert(checks_name_members(PGMDEV_HPS_SPI_MEMBERS, HPS_SPI_CHECKS));

/// The cell as a value of that type, a flag as 0 or 1.
std::optional<std::uint64_t> read_number(const CSV_CELL& cell, PGMDEV_PARAM_TYPE type, const FIELD_CHECK& check,
                                         FAULTS& faults) {
    const auto refuse = [&](const std::string& reason) {
        faults.add(cell.place, std::string(check.name) + " \"" + cell.text + "\" " + reason);
        return std::nullopt;
    };
    if (type == PGMDEV_PARAM_BOOL) {
        const bool set = cell.text == "TRUE";
        if (!set && cell.text != "FALSE") {
            return refuse("is not TRUE or FALSE");
        }
        return set ? 1 : 0;
    }
    const std::size_t size = VALUE_TYPES[type].size;
    const bool hexadecimal = cell.text.starts_with("0x");
    const char* const begin = cell.text.data() + (hexadecimal ? 2 : 0);
    const char* const end = cell.text.data() + cell.text.size();
    std::uint64_t number = 0;
    const auto [rest, error] = std::from_chars(begin, end, number, hexadecimal ? 16 : 10);
    const FIELD_CHECK::FAULT fault = check.fault_of(number, size);
    if (error != std::errc() || rest != end || fault == FIELD_CHECK::FAULT::OUT_OF_RANGE) {
        return refuse("is not a number from " + std::to_string(check.lowest) + " to " +
                      std::to_string(check.highest_of(size)) + ", decimal or hexadecimal behind 0x");
    }
    if (fault == FIELD_CHECK::FAULT::NO_POWER_OF_TWO) {
        return refuse("is not a power of two");
    }
    return number;
}

/// The numbers of a row by column, and where the row is.
struct IDENTIFIED_ROW {
    SOURCE_PLACE place;
    std::map<std::string_view, std::uint64_t> numbers;
};

class BOOT_FLASH_READER {
public:
    template <std::size_t CHECKS>
    BOOT_FLASH_READER(const auto& members, const std::array<FIELD_CHECK, CHECKS>& checks,
                      std::span<const IDENTITY> identity, FAULTS& faults)
        : m_identity(identity), m_faults(faults) {
        for (const auto& member : members) {
            m_columns.push_back({member.name, VALUE_TYPES[member.type()].name});
            m_types.push_back(member.type());
            const FIELD_CHECK built_in = field_check(BUILT_IN_CHECKS, member.name);
            m_checks.push_back(built_in.highest != NO_LIMIT ? built_in : field_check(checks, member.name));
        }
    }

    BOOT_FLASH_LIST read(const std::filesystem::path& path) {
        read_csv_table(path, m_columns, m_faults, [this](const CSV_ROW& row) { read_row(row); });
        return std::move(m_list);
    }

private:
    void read_row(const CSV_ROW& row) {
        ++m_list.count;
        IDENTIFIED_ROW identified;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (m_types[i] == PGMDEV_PARAM_STRING) {
                read_text(row[i], i);
            } else if (const auto number = read_number(row[i], m_types[i], m_checks[i], m_faults)) {
                append(*number, VALUE_TYPES[m_types[i]].size);
                identified.numbers[m_columns[i].name] = *number;
            }
            if (m_columns[i].name == m_identity[0].value) {
                identified.place = row[i].place;
            }
        }
        if (is_identified(identified)) {
            require_findable(identified);
            m_rows.push_back(std::move(identified));
        }
    }

    void read_text(const CSV_CELL& cell, std::size_t column) {
        check_name(cell.place, cell.text, std::string(m_columns[column].name).c_str(), m_faults);
        m_list.records.insert(m_list.records.end(), cell.text.begin(), cell.text.end());
        m_list.records.push_back(0);
    }

    /// The low byte first.
    void append(std::uint64_t number, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            m_list.records.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
        }
    }

    bool is_identified(const IDENTIFIED_ROW& row) const {
        return std::all_of(m_identity.begin(), m_identity.end(), [&](const IDENTITY& identity) {
            return row.numbers.contains(identity.value) &&
                   (identity.mask.empty() || row.numbers.contains(identity.mask));
        });
    }

    /// Whether an earlier row matches whatever a later one matches: no bit that counts in the earlier one may have another
    /// value in the later one, or not count there.
    bool hides(const IDENTIFIED_ROW& earlier, const IDENTIFIED_ROW& later) const {
        return std::all_of(m_identity.begin(), m_identity.end(), [&](const IDENTITY& identity) {
            const std::uint64_t differing = earlier.numbers.at(identity.value) ^ later.numbers.at(identity.value);
            const std::uint64_t free_in_later = ~mask_of(later, identity);
            return (mask_of(earlier, identity) & (differing | free_in_later)) == 0;
        });
    }

    /// The bits that count.
    static std::uint64_t mask_of(const IDENTIFIED_ROW& row, const IDENTITY& identity) {
        return identity.mask.empty() ? ~std::uint64_t{0} : row.numbers.at(identity.mask);
    }

    /// Programs take the first row that matches: none may hide a later one.
    void require_findable(const IDENTIFIED_ROW& row) {
        const auto hiding = std::find_if(m_rows.begin(), m_rows.end(),
                                         [&](const IDENTIFIED_ROW& earlier) { return hides(earlier, row); });
        if (hiding != m_rows.end()) {
            m_faults.add(row.place, "the device of this row is never found: the row at " + text_of(hiding->place) +
                                        " matches it and comes first");
        }
    }

    std::vector<CSV_COLUMN> m_columns;
    std::vector<PGMDEV_PARAM_TYPE> m_types;
    std::vector<FIELD_CHECK> m_checks;
    std::span<const IDENTITY> m_identity;
    FAULTS& m_faults;
    std::vector<IDENTIFIED_ROW> m_rows;
    BOOT_FLASH_LIST m_list;
};

}  // namespace

BOOT_FLASH read_boot_flash(const std::filesystem::path& directory, FAULTS& faults) {
    return {
        BOOT_FLASH_READER(PGMDEV_HPS_NAND_MEMBERS, HPS_NAND_CHECKS, NAND_IDENTITY, faults).read(directory / "nand.csv"),
        BOOT_FLASH_READER(PGMDEV_HPS_SPI_MEMBERS, HPS_SPI_CHECKS, SPI_IDENTITY, faults).read(directory / "spi.csv")};
}
