#pragma once

/// \file
/// The files that the command needs or may have, as they are.

#include <string>
#include <vector>

#include "files/origins.h"
#include "terminal/json.h"

/// What is found at a place.
struct FILE_FINDING {
    const char* name;  ///< for people
    PLACE place;
    std::string state;            ///< for programs: one word
    std::string remark;           ///< for people: more about the state
    bool wrong = false;           ///< whether somebody should do something about it
    JSON facts = JSON::object();  ///< what else is known
};

std::vector<FILE_FINDING> find_files();
