#pragma once

/// \file
/// What is known of identifications besides the records, which have no place for it: which chips a response may come from
/// that the table does not have, or that no byte tells apart; and the whole identification of chips of which a record
/// compares only some bytes. Two small tables beside the source table, and, with other names, beside the database that
/// was compiled from it. docs/formats.md describes them.

#include <string>
#include <string_view>
#include <vector>

#include "fio.h"
#include "pgmdev_export.h"
#include "pgmdev_flash_candidates.h"
#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_table_fault.h"
#include "pgmdev_types.h"

/// A response that several chips give.
struct PGMDEV_FLASH_AMBIGUITY {
    DWORD line = 0;                        ///< of the file, from 1
    DWORD chips_column = 0;                ///< where its chips begin in that line, from 1
    std::vector<BYTE> response;            ///< what the responses begin with
    std::vector<std::string> chips;        ///< in the table or not
    DWORD telling_byte = INVALID_DWORD;    ///< position of the byte that tells them apart; INVALID_DWORD: none does
    std::string told_apart_by;             ///< for people
    PGMDEV_FLASH_DIFFERENCE::RISK risk{};  ///< what a mistake endangers
    std::string harm;                      ///< what a mistake does: a clause
};

/// A byte of a response that a chip does not give.
struct PGMDEV_FLASH_CONTRADICTION {
    DWORD position = 0;
    BYTE found = 0;
    std::string expected;  ///< two hexadecimal digits; "?" is any, "[0-3]" one of these
};

class PGMDEV_EXPORT PGMDEV_FLASH_NOTES {
public:
    /// Those beside a source table: `ambiguities.csv` and `identifications.csv` in its directory. A file that is not
    /// there has no notes; lines with a fault are left out.
    static PGMDEV_FLASH_NOTES beside_source(const std::string& csv_file);

    /// Those beside a database: its name followed by ".ambiguities.csv" and by ".identifications.csv".
    static PGMDEV_FLASH_NOTES beside_database(const std::string& pcf_file);

    /// One of the two tables.
    struct FILE_FAULTS {
        std::string file;  ///< "": there is none
        std::vector<PGMDEV_TABLE_FAULT> faults;
    };
    const FILE_FAULTS& ambiguities_file() const noexcept { return m_ambiguities_file; }
    const FILE_FAULTS& identifications_file() const noexcept { return m_identifications_file; }

    /// The same faults, and those that show only beside the records of the source table; of a table that is not there, none.
    std::vector<FILE_FAULTS> faults_with(const std::vector<PGMDEV_SFL_FLASH_INFO>& records) const;

    const std::vector<PGMDEV_FLASH_AMBIGUITY>& ambiguities() const noexcept { return m_ambiguities; }

    /// A chip's whole identification.
    struct IDENTIFICATION {
        DWORD line = 0;
        DWORD column = 0;  ///< of the digits
        std::string device_name;
        std::vector<std::string> bytes;  ///< what each of them may be, as PGMDEV_FLASH_CONTRADICTION::expected
    };

    const std::vector<IDENTIFICATION>& identifications() const noexcept { return m_identifications; }

    /// Those that begin like the response and that none of its `given` bytes decides, the worst first, without the chips
    /// whose identification is known to be another one.
    std::vector<PGMDEV_FLASH_AMBIGUITY> ambiguities_of(const BYTE* response, DWORD given) const;

    /// The `given` bytes that are not those of the device, by position; none when all are, or nothing is known of it. Of
    /// a device with several identifications, the one that fits best counts.
    std::vector<PGMDEV_FLASH_CONTRADICTION> contradictions(const std::string& device_name, const BYTE* response,
                                                           DWORD given) const;

    /// The devices whose identification is known and is that of the response, as far as its `given` bytes go.
    std::vector<std::string> devices_of(const BYTE* response, DWORD given) const;

    /// The paths of the two tables beside a source table, and beside a database, whether they are there or not: that of the
    /// ambiguities, then that of the identifications.
    static std::vector<std::string> files_of_source(const std::string& csv_file);
    static std::vector<std::string> files_of_database(const std::string& pcf_file);

private:
    explicit PGMDEV_FLASH_NOTES(const std::vector<std::string>& files);
    void read_ambiguities(const std::string& file);
    void read_identifications(const std::string& file);

    std::vector<PGMDEV_FLASH_AMBIGUITY> m_ambiguities;
    std::vector<IDENTIFICATION> m_identifications;  ///< in file order
    FILE_FAULTS m_ambiguities_file;
    FILE_FAULTS m_identifications_file;
};
