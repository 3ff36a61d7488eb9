#pragma once

/// \file
/// One response, and all that is known of it.

#include <optional>
#include <string>
#include <vector>

#include "flash/named_rows.h"
#include "pgmdev_flash_answer.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_notes.h"
#include "terminal/input.h"
#include "terminal/json.h"
#include "terminal/schema.h"

/// What a flash answered, as it was asked for.
struct FLASH_QUESTION {
    std::string text;   ///< as it was given
    ID_RESPONSE bytes;  ///< none: only `by_hand` tells
    bool silicon_id = false;
    std::string by_hand;   ///< the device name to map it to; "": the response decides
    bool is_name = false;  ///< another program has printed a name, and no response: `by_hand` is what it stands for

    /// "EF7017", or "silicon:13" for an electronic signature; with `all_silicon` all are. What is none throws USAGE_ERROR.
    static FLASH_QUESTION parse(const std::string& text, bool all_silicon);
};

/// Which flash that is.
struct FLASH_IDENTIFICATION {
    FLASH_QUESTION question;
    DWORD index = INVALID_DWORD;  ///< of the record that it is mapped to

    /// What is mapped by hand is contradicted by what its record compares. All that is `fitting` has a record.
    PGMDEV_FLASH_ANSWER answer;

    std::vector<DWORD> nearest;  ///< further records that a name may mean; that an unmapped one may be, or is near to

    bool is_mapped() const { return index != INVALID_DWORD; }
    bool is_by_hand() const { return !question.by_hand.empty(); }
    bool is_sure() const { return !is_by_hand() && answer.is_sure(); }

    /// Whether no chip answers like this, or not the one that it is mapped to, and nobody has said that it is that one.
    bool is_doubtful() const { return !is_by_hand() && answer.is_doubtful(); }
};

/// The database with what is known besides.
class FLASH_IDENTIFIER {
public:
    explicit FLASH_IDENTIFIER(DWORD device_count);

    /// Maps the device at that position. A name of no record throws USAGE_ERROR.
    FLASH_IDENTIFICATION identify(DWORD position, FLASH_QUESTION question);

    /// Likewise, by names that another program has printed, which are alternatives. Nothing when they stand for no record.
    std::optional<FLASH_IDENTIFICATION> identify_named(DWORD position, const std::vector<std::string>& names);

    /// Over all devices that are mapped; nothing when none is.
    std::optional<DWORD> longest_program_utime();

    const PGMDEV_SFL_FLASH_INFO& record(DWORD index) const { return m_records[index]; }

    /// Whether a device of that name is among the records.
    bool knows(const std::string& device_name);

    /// The record that answers for a name, which may be an alias; null: none does.
    const PGMDEV_SFL_FLASH_INFO* record_named(const std::string& name);

    /// Names of records, and aliases, that have the longest beginning in common with it.
    std::vector<std::string> similar_names(const std::string& device_name);

private:
    DWORD index_of(const std::string& device_name);
    PGMDEV_FLASH_CANDIDATES candidates_of(const FLASH_QUESTION& question);

    PGMDEV_FLASH_MANAGER m_manager;
    PGMDEV_FLASH_NOTES m_notes;
    const PGMDEV_SFL_FLASH_INFO* m_records;
    DWORD m_walks = 0;                                   ///< questions that were answered by walks over the records
    std::optional<PGMDEV_FLASH_INDEX> m_index;           ///< once there were so many that it is worth while
    std::optional<std::vector<NAMED_ROW>> m_named_rows;  ///< once a name has been asked for: a log may have many
    DWORD m_device_count;
};

/// "byte 1 = BA, byte 2 = 18": the bytes of a list, those that are not given left out.
std::string compared_text(const std::vector<PGMDEV_FLASH_COMPARED_BYTE>& compared);

/// What a person who drives the flash must know first: contradictions, what else it may be and what a mistake does.
void print_identification(DWORD position, const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier);

/// `position`, `mapped`, `index`, the members of the record, and what is known besides. The records that the response
/// admits are `candidates` in a chain, and `admitted` in a line of a batch.
JSON identification_json(DWORD position, const FLASH_IDENTIFICATION& device, FLASH_IDENTIFIER& identifier,
                         bool in_a_chain);

/// What identification_json has.
std::vector<SCHEMA_MEMBER> identification_members(bool in_a_chain);
