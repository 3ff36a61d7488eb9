#pragma once

#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"

/// \file
/// The checked conversion of a text to a number, with its arguments by name.

inline constexpr QWORD MOST = 0xFFFFFFFFFFFFFFFF;

/// What a user's editor asks for. The members are the arguments of the checked conversion.
struct REQUEST {
    PGMDEV_PARAM_TYPE type = PGMDEV_PARAM_DWORD;
    std::string text;
    bool hex = false;
    bool power_of_two = false;
    std::vector<DWORD> ranges = {};  ///< with its count; empty: not given
    std::vector<DWORD> hits = {};    ///< with its count; empty: not given
    bool exponent = false;
    DWORD multiple = 1;
};

struct ANSWER {
    bool good = false;
    QWORD value = 0;
    std::string error;

    bool operator==(const ANSWER&) const = default;
};

inline ANSWER convert(const REQUEST& request) {
    ANSWER answer{false, 4711, "from before"};
    answer.good = PGMDEV_FLASH_INI::convert_string_to_qword(
        request.type, answer.value, request.hex, request.text, request.power_of_two,
        request.ranges.empty() ? nullptr : request.ranges.data(), request.hits.empty() ? nullptr : request.hits.data(),
        request.exponent, request.multiple, answer.error);
    return answer;
}

inline ANSWER good(QWORD value) {
    return {true, value, ""};
}
