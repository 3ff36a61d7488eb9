#pragma once

/// \file
/// A loaded flash database. It does not change, so that several threads may ask it.

#include <span>
#include <string>
#include <string_view>

#include "flash_lists.h"
#include "pgmdev_c_flash.h"
#include "pgmdev_flash_answer.h"
#include "pgmdev_flash_manager.h"
#include "records.h"

/// The records that the library's manager loads from a file of any name.
class LOADED_FLASH : public PGMDEV_FLASH_MANAGER {
public:
    explicit LOADED_FLASH(const std::string& path);

    std::span<const PGMDEV_SFL_FLASH_INFO> all() const { return {m_flash_database, m_flash_count}; }
};

struct pgmdev_flash_database {
    explicit pgmdev_flash_database(const std::string& path);

    /// The default record of a device name, in any case; PGMDEV_NO_RECORD for none.
    std::size_t default_record(std::string_view device_name) const;

    /// The record of an index in an answer; PGMDEV_NO_RECORD for none.
    static std::size_t record_of(DWORD index) { return index != INVALID_DWORD ? index : PGMDEV_NO_RECORD; }

    std::string file;  ///< absolute: lists beside it are read later
    LOADED_FLASH loaded;
    PGMDEV_FLASH_NOTES notes;
    PGMDEV_FLASH_INDEX index;
    pgmdev_records records;
    pgmdev_records notes_faults;
    FLASH_LISTS lists;
};
