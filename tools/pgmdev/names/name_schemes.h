#pragma once

/// \file
/// Which naming schemes a name belongs to, and which parts it stands for in them.

#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "names/part_entries.h"

/// What a name means.
struct NAME_MEANING {
    std::string name;                  ///< in upper case, without white space around it; for an alias the part's name
    std::vector<std::string> schemes;  ///< most specific first; none: the name is not known
    std::vector<const PART_ENTRY*> parts;  ///< those that it stands for in any of the schemes, by number
};

/// The names of all parts, hidden ones, too. Making it walks over all parts; questions are answered at once.
class NAME_SCHEMES {
public:
    /// The schemes in which parts are named, most specific first; they are called as `name show` calls the spellings.
    static constexpr std::size_t PART_SCHEME_COUNT = 9;

    NAME_SCHEMES();
    NAME_SCHEMES(const NAME_SCHEMES&) = delete;
    NAME_SCHEMES& operator=(const NAME_SCHEMES&) = delete;

    NAME_MEANING meaning_of(std::string name) const;

    /// Every name of every scheme, for telling the user which one was meant.
    std::vector<std::string> all_names() const;

private:
    using PARTS_BY_NAME = std::unordered_map<std::string, std::vector<std::size_t>>;

    std::vector<PART_ENTRY> m_parts;
    std::array<PARTS_BY_NAME, PART_SCHEME_COUNT> m_places;  ///< in m_parts, by scheme and name
};

/// The names of all schemes, in the order in which a name's are told.
std::vector<std::string> scheme_names();
