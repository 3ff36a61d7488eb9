#pragma once

/// \file
/// A serial flash database with what is known besides, for questions from any thread.

#include <optional>
#include <span>
#include <string>

#include "pgmdev_flash_answer.h"
#include "pgmdev_flash_manager.h"

/// Loaded when it is constructed, and only read from then on.
class FLASH_DATABASE : public PGMDEV_FLASH_MANAGER {
public:
    /// Of the file at that path; the user's own flash comes first, and rows behind a switch that is off are left out.
    explicit FLASH_DATABASE(const std::string& pcf_file);

    std::span<const PGMDEV_SFL_FLASH_INFO> records() const { return {m_flash_database, m_flash_count}; }
    const PGMDEV_FLASH_NOTES& notes() const { return m_notes; }

    /// What a response of at most 256 bytes says.
    PGMDEV_FLASH_ANSWER answer(const std::string& response, bool silicon_id) const;

private:
    PGMDEV_FLASH_NOTES m_notes;
    std::optional<PGMDEV_FLASH_INDEX> m_index;
};
