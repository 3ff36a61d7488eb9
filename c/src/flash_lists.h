#pragma once

/// \file
/// The lists beside a flash database: further names, and what supports its records. They are read when they are first asked
/// for, by whichever thread, and stay.

#include <memory>
#include <mutex>

#include "flash_aliases.h"
#include "flash_evidence.h"
#include "records.h"

struct pgmdev_flash_database;

/// Further names, as lines and as records.
struct FURTHER_NAMES {
    CSV_LINES list;
    pgmdev_records records;
};

class FLASH_LISTS {
public:
    /// Of the database whose member this is. A list that is there and cannot be read throws FAILURE.
    const FURTHER_NAMES& further_names(const pgmdev_flash_database& database) const;
    std::vector<FLASH_SUPPORT> evidence_of(const pgmdev_flash_database& database, std::size_t record) const;

private:
    template <class MADE, class MAKE>
    const MADE& once(std::unique_ptr<const MADE>& place, MAKE make) const;

    mutable std::mutex m_mutex;  ///< of the places below; nobody is called meanwhile who may come back
    mutable std::unique_ptr<const FURTHER_NAMES> m_further_names;
    mutable std::unique_ptr<const FLASH_EVIDENCE> m_evidence;
    mutable std::mutex m_asking;  ///< for the evidence, which sorts its lines when it is asked
};
