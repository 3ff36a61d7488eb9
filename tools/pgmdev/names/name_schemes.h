#pragma once

/// \file
/// Which naming schemes a name belongs to, and which parts it stands for in them.

#include <bitset>
#include <optional>
#include <string>
#include <vector>

#include "names/part_entries.h"

/// The schemes in which parts are named, most specific first.
enum class SCHEME {
    NAME,
    PACKAGE_NAME,
    PGM_NAME,
    DEVICE,
    PGM_PART_PCF,
    DEV_PART_PCF,
    PGM_FAMILY_PCF,
    DEV_FAMILY_PCF,
    FAMILY,
    COUNT
};

/// A part, and in which schemes it has a name.
struct NAMED_PART {
    int number = 0;
    std::bitset<static_cast<std::size_t>(SCHEME::COUNT)> schemes;

    bool is_named_by(SCHEME scheme) const { return schemes.test(static_cast<std::size_t>(scheme)); }
};

/// What a name means.
struct NAME_MEANING {
    std::string name;                  ///< in upper case, without white space around it; for an alias the part's name
    std::vector<std::string> schemes;  ///< most specific first; none: the name is not known
    std::vector<int> parts;            ///< those that it stands for in any of the schemes, by number
    std::optional<int> part;           ///< the one among them whose own name it is
};

/// The names of all parts, hidden ones, too. A question follows the conversions of the grammar backwards to the parts that
/// the name may stand for, and looks only at these.
class NAME_SCHEMES {
public:
    NAME_MEANING meaning_of(std::string name);

    /// The parts that a name in upper case stands for in any of the schemes, by number.
    std::vector<NAMED_PART> parts_named(const std::string& name);

    /// Every name of every scheme.
    std::vector<std::string> all_names();

    /// Which of these may have been meant by a name.
    std::vector<std::string> nearest_to(const std::string& name);

    /// What is known of parts.
    PART_ENTRIES& entries() { return m_entries; }

private:
    PART_ENTRIES m_entries;
};

/// The names of all schemes, in the order in which a name's are told. That of aliases comes first.
std::vector<std::string> scheme_names();
