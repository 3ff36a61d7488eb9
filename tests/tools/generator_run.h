#pragma once

/// \file
/// The generator run inside a test.

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "generator.h"

struct GENERATOR_RUN {
    int result;
    std::string output;
    std::string errors;
};

inline GENERATOR_RUN run(const std::vector<std::string>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    const int result = run_generator(arguments, output, errors);
    return {result, output.str(), errors.str()};
}

/// The faults as if the directory were called so. With no name they are told from inside it: "." is itself.
inline std::string told_inside(const std::string& native_directory, std::string faults, const std::string& name = "") {
    const std::string directory = std::filesystem::path(native_directory).generic_string();
    for (std::size_t at = faults.find(directory); at != std::string::npos; at = faults.find(directory, at)) {
        const bool in_it = name.empty() && faults.compare(at + directory.size(), 1, "/") == 0;
        faults.replace(at, directory.size() + (in_it ? 1 : 0), in_it ? "" : name.empty() ? "." : name);
    }
    return faults;
}
