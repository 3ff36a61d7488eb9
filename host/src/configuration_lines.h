#pragma once

/// \file
/// What a configuration file says.

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "gen.h"
#include "text_lines.h"

using CONFIGURATION_VALUES = std::map<std::string, std::string, std::less<>>;

/// Takes over the values of a text of lines `KEY = value`. What was said before gives way.
inline void read_configuration_lines(const std::string& text, CONFIGURATION_VALUES& values) {
    for_each_line(without_byte_order_mark(text), [&values](std::string_view whole) {
        const std::string line(whole);
        const std::size_t equals = line.find('=');
        const std::string key = gen_remove_leading_and_trailing_white_spaces(line.substr(0, equals));
        if (equals != std::string::npos && !key.empty() && key.front() != '#') {
            values[key] = gen_remove_leading_and_trailing_white_spaces(line.substr(equals + 1));
        }
    });
}
