/// \file
/// A program with a service of its own in front of the host's: the names of all parts. Answers which part the argument
/// denotes.

#include <cstdio>
#include <string>

#include "dstr.h"
#include "pgmdev_mgr.h"

std::string dstr_get_user_string(int part) {
    return "OWN-" + std::to_string(part);
}

int main(int /*argc*/, char** argv) {
    std::printf("%s\n", PGMDEV_MGR::get_possible_full_name(argv[1]).c_str());
}
