#pragma once

/// \file
/// Any bytes as the payload of a packed database that the command is to verify: it tells what is wrong with them, and
/// compiles records in which nothing is wrong again.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "command.h"
#include "database_fuzzer.h"

template <class MANAGER>
void verify_payload(const char* noun, std::string_view magic, std::string_view stamp, const std::uint8_t* payload,
                    std::size_t size) {
    if (size == 0) {
        return;
    }
    constexpr const char* NAME = "verified.pcf";
    scratch_files().write(std::string("inner/") + NAME, packed_file<MANAGER>(magic, stamp, payload, size));
    run_command({noun, "verify", NAME}, "");
}
