#pragma once

/// \file
/// Ordering codes, parts by less specific names, and the names of the programmer's enumerations.
///
/// Conventions of this class:
/// - Not found is a result: "", INVALID_DWORD, INVALID_NAME_HASH or false. What is reported besides (msg.h) is said
///   where it applies.
/// - Part numbers and the names behind them are those of the host's device-string library (dstr.h).
/// - The operations may be called from any thread. Names are taken by value; no caller's string is changed.
/// - The first question for a part by its hash or by a less specific name finds out, by the digest of all names, whether
///   the device library has the parts of the catalog that is compiled in. Then tables that are compiled in, too, find
///   the part. For a device library with other parts, the first questions walk over these; when the walks have taken
///   about as long as making an index does, one is made. For programmer-file names it is made at once. What is asked
///   from then on takes less than a microsecond. An index is freed when the library is unloaded.
/// - This takes for granted that the device library goes on giving the same answers: a host whose parts, or their names,
///   change while the library is loaded must not be asked for them before and after. While the grammar is traced
///   (PGMDEV_ENABLE_GRAMMAR_DEBUG), get_possible_full_name walks, so that each candidate is seen.

#include <string>

#include "pgmdev_export.h"
#include "pgmdev_types.h"

/// The enumerations whose names are known.
enum PGM_ENUM_TYPE : DWORD {
    PGM_ENUM_TYPE_BLOCK = 0,        ///< device blocks and routing tiles
    PGM_ENUM_TYPE_SECTOR = 1,       ///< sectors of a configuration flash
    PGM_ENUM_TYPE_OPTION_BIT = 2,   ///< option bits
    PGM_ENUM_TYPE_SOF_SETTING = 3,  ///< processor-subsystem settings, and what became of a configuration file
    PGM_ENUM_TYPE_MAX = 4
};

class PGMDEV_EXPORT PGMDEV_MGR {
public:
    PGMDEV_MGR() = delete;

    /// No name hash. A hash has 48 bits.
    static constexpr QWORD INVALID_NAME_HASH = 0xFFFFFFFFFFFFFFFF;

    /// The upper-case name of the part that an ordering-code index stands for; "" when there is none.
    static std::string get_opn(DWORD opn_index);

    /// The first ordering-code index of the part of that name, in any spelling that the device library accepts;
    /// INVALID_DWORD when there is none.
    static DWORD get_opn_enum(std::string name);

    /// The hash of a part's name: the first 48 bits of the SHA-256 of the name in upper case, least significant byte
    /// first. INVALID_NAME_HASH when the device library knows no real part of that name. A further name of a part has a
    /// hash of its own, by which get_opn_from_hash does not find the part.
    static QWORD get_opn_hash(std::string name);

    /// The upper-case name of the first part with that hash; "" when there is none. Bits 48 to 63 do not count.
    static std::string get_opn_from_hash(QWORD hash);

    /// The name of the first part of a device, as the device library spells it: an orderable part in production rather
    /// than one that is only orderable, rather than one that is only in production, rather than any. "" when the device
    /// has none, and when the device library does not know the device, which is reported, too ("Device is not valid in
    /// DEV database").
    static std::string get_part_name_from_dev(std::string device_name);

    /// The upper-case name of the first part with that programmer-file part name, in any case but not trimmed; parts
    /// are preferred as above; for "", the first part that has no such name. "" when there is none.
    static std::string get_part_name_from_pcf(std::string pcf_name);

    /// The upper-case name of the first part, by part number, that has that name, package name or programming name, in
    /// any case but not trimmed. A package name or programming name counts only where its first five characters are those
    /// of the part's name. "" when there is none, which is reported, too ("Unable to retrieve full device name from
    /// database for NAME").
    static std::string get_possible_full_name(std::string name);

    /// Whether `value` is a value of the enumeration that has a name; 0 never is. The name goes to `name`, unless null.
    /// A `type` that is none is reported.
    static bool pgm_check_type_enum_supported(PGM_ENUM_TYPE type, DWORD value, std::string* name);

    /// Whether `name`, in any case but not trimmed, is a name of the enumeration. Its value goes to `value`, unless
    /// null. "" is the name of the value 0. A `type` that is none is reported.
    static bool pgm_check_type_name_supported(PGM_ENUM_TYPE type, std::string name, DWORD* value);
};
