#pragma once

/// \file
/// The whole answer to a response: the records that it admits, what is known of it besides, and the verdict that follows
/// from both. Who tells people which flash it is, or drives it without asking them, goes by this verdict: candidates alone
/// know nothing of chips that the table does not have.

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "pgmdev_flash_candidates.h"
#include "pgmdev_flash_notes.h"
#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_types.h"

struct PGMDEV_FLASH_ANSWER {
    /// As PGMDEV_FLASH_CANDIDATES. Of electronic signatures (`silicon_id`) the notes know nothing.
    PGMDEV_FLASH_ANSWER(const PGMDEV_FLASH_INDEX& index, std::span<const PGMDEV_SFL_FLASH_INFO> records,
                        bool silicon_id, const BYTE* response, DWORD given, const PGMDEV_FLASH_NOTES& notes)
        : candidates(index, records.data(), static_cast<DWORD>(records.size()), silicon_id, response, given, &notes) {
        if (!silicon_id) {
            consult(notes, records, response);
        }
    }

    /// The candidates alone; `consult` adds what is known besides.
    explicit PGMDEV_FLASH_ANSWER(PGMDEV_FLASH_CANDIDATES found) : candidates(std::move(found)) {}

    /// What the notes know of the response that the candidates, of these records, were found for.
    void consult(const PGMDEV_FLASH_NOTES& notes, std::span<const PGMDEV_SFL_FLASH_INFO> records,
                 const BYTE* response) {
        const DWORD telling = candidates.telling_count();
        ambiguities = notes.ambiguities_of(response, telling);
        if (is_known()) {
            contradictions = notes.contradictions(records[candidates.taken()].device_name, response, telling);
        }
        if (!contradictions.empty()) {
            fitting = notes.devices_of(response, telling);
        }
    }

    /// Whether there is a record that drives the flash.
    bool is_known() const noexcept { return candidates.taken() != INVALID_DWORD; }

    /// Whether nothing that is known leaves another device.
    bool is_sure() const noexcept {
        return is_known() && candidates.is_sure() && ambiguities.empty() && contradictions.empty();
    }

    /// Whether no chip answers like this, or not the one of the record.
    bool is_doubtful() const noexcept { return candidates.oddity().is_fault() || !contradictions.empty(); }

    PGMDEV_FLASH_CANDIDATES candidates;
    std::vector<PGMDEV_FLASH_AMBIGUITY> ambiguities;
    std::vector<PGMDEV_FLASH_CONTRADICTION> contradictions;  ///< bytes that the chip of the record does not give
    std::vector<std::string> fitting;  ///< then: names whose whole identification it may be, in the table or not
};
