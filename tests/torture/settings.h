#pragma once

/// \file
/// What ./torture tells its tests, by the environment.

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace torture {

inline std::string setting(const char* name, const std::string& otherwise) {
    const char* const value = std::getenv(name);
    return value == nullptr || *value == '\0' ? otherwise : value;
}

/// How often processes are ended.
inline int kills() {
    return std::stoi(setting("TORTURE_KILLS", "1000"));
}

/// How long a sweep goes on before it stops and remembers where it was.
inline int seconds() {
    return std::stoi(setting("TORTURE_SECONDS", "60"));
}

/// Where sweeps remember that, and where what shows a finding is kept.
inline std::string state_directory() {
    return setting("TORTURE_STATE", ".");
}

/// Random numbers that a further run can repeat: it is told their seed.
inline std::mt19937 seeded() {
    const std::string seed = setting("TORTURE_SEED", std::to_string(std::random_device{}()));
    std::cout << "TORTURE_SEED=" << seed << std::endl;
    return std::mt19937(static_cast<std::uint32_t>(std::stoul(seed)));
}

}  // namespace torture
