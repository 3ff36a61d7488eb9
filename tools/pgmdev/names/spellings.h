#pragma once

/// \file
/// The spellings of a name, as the grammar tells them.

#include <string>
#include <variant>
#include <vector>

#include "names/name_schemes.h"

/// One spelling of a name, or a remark on its spellings.
struct SPELLING {
    const char* key;
    const char* label;
    std::variant<std::string, bool> value;
};

/// All spellings of a name. A package name is its own package name, and a programming name its own programming name;
/// "" stands for what a name has not.
std::vector<SPELLING> spellings_of(std::string name);

/// The same of a name whose meaning is known: it also is its own spelling in each of its schemes, and has the family of
/// its parts.
std::vector<SPELLING> spellings_of(const NAME_MEANING& meaning);
