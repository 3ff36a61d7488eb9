#include "terminal/input.h"

#include <fmt/core.h>

#include <iostream>
#include <string_view>

#include "gen.h"
#include "pgm_common.h"
#include "terminal/command.h"

namespace {

int hex_digit(char c) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    const char lower = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
    const std::size_t value = DIGITS.find(lower);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

bool sets_apart(char c) {
    return c == ' ' || c == ':' || c == '-';
}

}  // namespace

ID_RESPONSE parse_id_response(const std::string& text) {
    ID_RESPONSE response;
    std::string_view rest = text;
    while (!rest.empty()) {
        if (sets_apart(rest.front())) {
            rest.remove_prefix(1);
            continue;
        }
        if (rest.starts_with("0x") || rest.starts_with("0X")) {
            rest.remove_prefix(2);
        }
        const int high = !rest.empty() ? hex_digit(rest[0]) : -1;
        const int low = rest.size() > 1 ? hex_digit(rest[1]) : -1;
        if (high < 0 || low < 0) {
            throw USAGE_ERROR(
                fmt::format("\"{}\" is not an identification response: expected pairs of hexadecimal digits", text));
        }
        if (response.count == response.bytes.size()) {
            throw USAGE_ERROR(fmt::format("an identification response has at most {} bytes", response.bytes.size()));
        }
        response.bytes[response.count++] = static_cast<BYTE>(high * 16 + low);
        rest.remove_prefix(2);
    }
    if (response.count == 0) {
        throw USAGE_ERROR("an identification response has at least one byte");
    }
    return response;
}

DWORD parse_dword(const std::string& text, std::string_view what) {
    bool valid = false;
    const DWORD number = PGM_COMMON::convert_string_to_dword(text, true, &valid, nullptr, true);
    if (!valid) {
        throw USAGE_ERROR(fmt::format("\"{}\" is not {}: expected a number of 32 bits", text, what));
    }
    return number;
}

void for_each_input_line(const std::function<void(const std::string&)>& use) {
    for (std::string line; std::getline(std::cin, line);) {
        const std::string item = gen_remove_leading_and_trailing_white_spaces(line);
        if (!item.empty()) {
            use(item);
        }
    }
}

void for_each_item(const std::string& argument, const std::function<void(const std::string&, bool)>& use) {
    if (argument == "-") {
        for_each_input_line([&use](const std::string& line) { use(line, true); });
    } else {
        use(argument, false);
    }
}
