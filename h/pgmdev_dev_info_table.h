#pragma once

/// \file
/// The device-information table as its maintainers see it: every record, the index tables, and everything that is wrong
/// with a source table at once. Programs that drive devices use PGMDEV_DEV_INFO_MANAGER.

#include <string>
#include <vector>

#include "fio.h"
#include "pgmdev_dev_info.h"
#include "pgmdev_export.h"
#include "pgmdev_table_fault.h"
#include "pgmdev_types.h"

class PGMDEV_EXPORT PGMDEV_DEV_INFO_TABLE {
public:
    /// Reads a source table and finds all its faults: in line order, those of the format first, then those of sound rows
    /// as rows, and (only where the format has none) those of all rows together. The part list of the installation tells
    /// which programmer files exist. Reports nothing; a file that cannot be read is a fault.
    static PGMDEV_DEV_INFO_TABLE from_source(const FIO_PATH& csv_file);

    /// Reads a packed database. A damaged file is reported as an internal error, exactly as by PGMDEV_DEV_INFO_MANAGER;
    /// a file with another magic is reported and gives an empty table.
    static PGMDEV_DEV_INFO_TABLE from_database(const FIO_PATH& pcf_file);

    /// One line of text for people: "file:line:column: fault: ..."
    static std::string describe(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name);

    /// The records in row order; none when the source table has a fault in its format.
    const std::vector<PGMDEV_DEVICE_INFO>& records() const noexcept { return m_records; }

    /// The index tables of a packed database: the record that governs each family, device and part, INVALID_DWORD where
    /// none does. Empty for a source table, whose index tables come into being when it is compiled.
    const std::vector<DWORD>& family_table() const noexcept { return m_family_table; }
    const std::vector<DWORD>& device_table() const noexcept { return m_device_table; }
    const std::vector<DWORD>& part_table() const noexcept { return m_part_table; }

    /// What is wrong with the source table; empty for a packed database. Of more than 10,000 findings the first ones, and
    /// one more, of the table as a whole, which tells how many there are.
    const std::vector<PGMDEV_TABLE_FAULT>& faults() const noexcept { return m_faults; }

    /// Whether a fault, not only warnings, was found.
    bool has_faults() const noexcept;

    /// The records as a source table that compiles to the same payload. When they cannot be one, the result is empty, and
    /// `obstacle` says in words which record is in the way.
    std::string source_text(std::string& obstacle) const;

    /// Length in bytes of the uncompressed body of the packed database, with its index tables.
    DWORD payload_size() const noexcept { return m_payload_size; }

private:
    PGMDEV_DEV_INFO_TABLE() = default;

    std::vector<PGMDEV_DEVICE_INFO> m_records;
    std::vector<DWORD> m_family_table;
    std::vector<DWORD> m_device_table;
    std::vector<DWORD> m_part_table;
    std::vector<PGMDEV_TABLE_FAULT> m_faults;
    DWORD m_payload_size = 0;
};
