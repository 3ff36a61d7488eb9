#pragma once

/// \file
/// What a response may be: every record that the bytes admit, not only the one that PGMDEV_FLASH_MANAGER takes, what a
/// mistake among them would do, and what is odd about a response that no record matches.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "pgmdev_export.h"
#include "pgmdev_sfl_flash_info.h"
#include "pgmdev_types.h"

/// One byte of the response that a record compares.
struct PGMDEV_FLASH_COMPARED_BYTE {
    BYTE position = 0;
    BYTE expected = 0;
    bool given = false;  ///< the response has this byte, and it agrees

    bool operator==(const PGMDEV_FLASH_COMPARED_BYTE&) const = default;
};

/// A member in which two records differ that matters for driving a flash.
struct PGMDEV_FLASH_DIFFERENCE {
    /// What a mistake endangers, the worst first.
    enum class RISK {
        DATA,        ///< what is stored is lost, or never arrives
        VOLTAGE,     ///< the device itself, or every signal
        PROTECTION,  ///< bits of the status register
        FLOW,        ///< the operation fails or is not noticed to fail
        TIME,        ///< the operation is given up too early
        NONE         ///< nothing
    };

    std::string_view member;
    RISK risk = RISK::NONE;
    std::string taken;  ///< the value of the record that is driven, as a cell of the source table, with its unit
    std::string other;  ///< that of the other record
    std::string harm;   ///< what happens when the other one is driven like the first: a clause; "" when nothing does
};

class PGMDEV_FLASH_NOTES;

/// A record that the response admits.
struct PGMDEV_FLASH_CANDIDATE {
    enum class STANDING {
        TAKEN,        ///< PGMDEV_FLASH_MANAGER maps the response to it
        ALIKE,        ///< no byte speaks for the taken one rather than for this one
        OPEN,         ///< a byte that it compares was not given
        PASSED_OVER,  ///< the taken one compares a byte of the response that this one does not
        RULED_OUT     ///< not by what it compares, but by what is known of its identification besides
    };

    DWORD index = 0;  ///< among the records
    STANDING standing = STANDING::TAKEN;
    std::vector<PGMDEV_FLASH_COMPARED_BYTE> compared;  ///< by position
    /// Where it differs from the taken record, the worst first. None when no record is taken.
    std::vector<PGMDEV_FLASH_DIFFERENCE> differences;
};

/// What is odd about a response.
struct PGMDEV_FLASH_ODDITY {
    enum class KIND {
        NONE,
        IDLE,                ///< nothing but zeros, or nothing but ones
        STUCK,               ///< one byte again and again
        CONTINUATION,        ///< begins with continuation codes, 7F
        LATE,                ///< other bytes stand before the identification
        FIRST_BYTE_MISSING,  ///< begins with the second byte
        SHIFTED,             ///< one clock too many, or too few
        REVERSED,            ///< its last byte first, as a number of a machine that begins with the lowest byte
        REPEATED             ///< the identification over and over, as many chips send it: no fault
    };

    KIND kind = KIND::NONE;
    std::string text;             ///< a sentence for people, without its end
    DWORD index = INVALID_DWORD;  ///< the record that what was probably sent would be mapped to

    /// Whether no chip answers this.
    bool is_fault() const noexcept { return kind != KIND::NONE && kind != KIND::REPEATED; }
};

/// Which records a response admits, without looking at all of them: for those who ask again and again. It keeps what the
/// records compare, not the records.
class PGMDEV_EXPORT PGMDEV_FLASH_INDEX {
public:
    PGMDEV_FLASH_INDEX(const PGMDEV_SFL_FLASH_INFO* records, DWORD count);

    /// Every record that none of the `given` bytes rules out, ascending.
    std::vector<DWORD> admitted(bool silicon_id, const BYTE* response, DWORD given) const;

    /// The first record all of whose bytes are those of the response, which goes on with zeros; INVALID_DWORD: none.
    DWORD taken(bool silicon_id, const BYTE* response, DWORD given) const;

private:
    /// Records that compare bytes at the same positions.
    struct GROUP {
        bool silicon_id = false;
        std::vector<BYTE> positions;  ///< ascending
        /// By how many of the bytes are known, those at the first positions: for their values, the records that have them.
        std::vector<std::unordered_map<DWORD, std::vector<DWORD>>> by_known_bytes;
    };

    GROUP& group_of(bool silicon_id, const std::vector<BYTE>& positions);
    static DWORD key_of(const GROUP& group, DWORD known, const BYTE* response, DWORD given);

    std::vector<GROUP> m_groups;
};

/// The answer to one response. Records and response are read while it is constructed; it keeps neither.
class PGMDEV_EXPORT PGMDEV_FLASH_CANDIDATES {
public:
    /// `records` are those of PGMDEV_FLASH_MANAGER::get_flash_database. Of the response, `given` bytes (256 at most) were
    /// read; with `silicon_id` it is an electronic signature. `notes` (pgmdev_flash_notes.h), null for none, rule out
    /// records that compare only some bytes of their chips' identifications.
    PGMDEV_FLASH_CANDIDATES(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, bool silicon_id, const BYTE* response,
                            DWORD given, const PGMDEV_FLASH_NOTES* notes = nullptr);

    /// The same with an index of the same records, and so quicker.
    PGMDEV_FLASH_CANDIDATES(const PGMDEV_FLASH_INDEX& index, const PGMDEV_SFL_FLASH_INFO* records, DWORD count,
                            bool silicon_id, const BYTE* response, DWORD given,
                            const PGMDEV_FLASH_NOTES* notes = nullptr);

    /// Every record that no given byte rules out, in their order. Bytes that only repeat the first three, or that are all
    /// zeros or all ones behind them, tell nothing: they count as not given.
    const std::vector<PGMDEV_FLASH_CANDIDATE>& candidates() const noexcept { return m_candidates; }

    /// The record that PGMDEV_FLASH_MANAGER::flash_id_database_mapping finds; INVALID_DWORD: none.
    DWORD taken() const noexcept { return m_taken; }

    /// Whether the bytes leave no other device than the taken one. A signature never does: it names no maker.
    bool is_sure() const noexcept { return m_sure; }

    /// How many bytes of the response tell something.
    DWORD telling_count() const noexcept { return m_telling_count; }

    /// Positions of bytes that were not given and that a candidate which may be the device compares, ascending: reading
    /// them rules some out, or makes sure.
    const std::vector<BYTE>& missing_bytes() const noexcept { return m_missing_bytes; }

    /// When no record is taken: those of the same maker and type by distance of the capacity, then of the same maker
    /// and capacity; a few.
    const std::vector<DWORD>& nearest() const noexcept { return m_nearest; }

    const PGMDEV_FLASH_ODDITY& oddity() const noexcept { return m_oddity; }

    /// What a record compares, by position, when `given` bytes of the response are known.
    static std::vector<PGMDEV_FLASH_COMPARED_BYTE> compared_bytes(const PGMDEV_SFL_FLASH_INFO& record, DWORD given);

    /// Where two records differ in what matters for driving a flash, the worst first. The harm is that of driving `other`
    /// as `taken` says.
    static std::vector<PGMDEV_FLASH_DIFFERENCE> differences(const PGMDEV_SFL_FLASH_INFO& taken,
                                                            const PGMDEV_SFL_FLASH_INFO& other);

    /// How a risk is called: "data", "voltage", "protection", "flow", "time", "none".
    static const char* risk_name(PGMDEV_FLASH_DIFFERENCE::RISK risk);

private:
    /// With m_taken and m_telling_count known, and `admitted` by the bytes that tell something.
    void examine(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, bool silicon_id, const BYTE* response, DWORD given,
                 const PGMDEV_FLASH_NOTES* notes, const std::vector<DWORD>& admitted);

    std::vector<PGMDEV_FLASH_CANDIDATE> m_candidates;
    std::vector<BYTE> m_missing_bytes;
    std::vector<DWORD> m_nearest;
    PGMDEV_FLASH_ODDITY m_oddity;
    DWORD m_taken = INVALID_DWORD;
    DWORD m_telling_count = 0;
    bool m_sure = false;
};
