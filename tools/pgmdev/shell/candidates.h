#pragma once

/// \file
/// The names that arguments may have as values.

#include <string>
#include <vector>

/// An argument that is to be completed.
struct ARGUMENT_PLACE {
    std::string noun;                ///< "": of the options that go with every verb
    std::string verb;                ///< the verb, behind its group and a blank where it has one
    std::string argument;            ///< its name in the verb's table
    std::vector<std::string> given;  ///< the arguments without a name that stand before it
};

/// The names that may stand there; none when anything may, such as the name of a file.
std::vector<std::string> argument_candidates(const ARGUMENT_PLACE& place);

/// Whether the argument takes several names with commas between them.
bool is_list_of_candidates(const std::string& argument);
