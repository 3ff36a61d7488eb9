#pragma once

/// \file
/// How many default rows each name has.

#include <map>
#include <span>
#include <string>
#include <vector>

#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_types.h"

/// Counts the default rows of records that live as long as this. Which names are one name is the host's to say.
class DEFAULT_ROWS {
public:
    explicit DEFAULT_ROWS(std::span<const PGMDEV_SFL_FLASH_INFO> records);

    /// Whether each name has exactly one.
    bool one_each() const;

    /// How many the name of one of the records has.
    DWORD count(const std::string& name) const;

private:
    /// A name, by the first record that has it.
    struct PLACE {
        DWORD record = INVALID_DWORD;  ///< INVALID_DWORD: free
        DWORD count = 0;
    };

    struct COMES_BEFORE {
        bool operator()(const std::string* left, const std::string* right) const;
    };

    std::size_t place_of(const std::string& name) const;

    std::span<const PGMDEV_SFL_FLASH_INFO> m_records;
    std::vector<PLACE> m_places;                                 ///< a power of two, at most half of them taken
    std::map<const std::string*, DWORD, COMES_BEFORE> m_others;  ///< names that have found only places of others
};
