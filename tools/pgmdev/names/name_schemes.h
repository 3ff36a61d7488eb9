#pragma once

/// \file
/// Which naming schemes a name belongs to, and which parts it stands for in them.

#include <string>
#include <vector>

#include "names/part_entries.h"

/// What a name means.
struct NAME_MEANING {
    std::string name;                  ///< in upper case, without white space around it; for an alias the part's name
    std::vector<std::string> schemes;  ///< most specific first; none: the name is not known
    std::vector<PART_ENTRY> parts;     ///< those that it stands for in any of the schemes, by number
};

/// The names of all parts, hidden ones, too. A question follows the conversions of the grammar backwards to the parts that
/// the name may stand for, and looks only at these.
class NAME_SCHEMES {
public:
    NAME_MEANING meaning_of(std::string name);

    /// The parts that a name in upper case stands for in any of the schemes, by number.
    std::vector<PART_ENTRY> parts_named(const std::string& name);

    /// Every name of every scheme.
    std::vector<std::string> all_names();

    /// Which of these may have been meant by a name.
    std::vector<std::string> nearest_to(const std::string& name);

private:
    std::vector<int> numbers_of_candidates(const std::string& name) const;

    PART_ENTRIES m_entries;
};

/// The names of all schemes, in the order in which a name's are told.
std::vector<std::string> scheme_names();
