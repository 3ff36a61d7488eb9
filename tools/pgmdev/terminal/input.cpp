#include "terminal/input.h"

#include <fmt/core.h>

#include <cstdio>
#include <iostream>
#include <string_view>

#include "gen.h"
#include "pgm_common.h"
#include "terminal/command.h"
#include "terminal/failure.h"

namespace {

int hex_digit(char c) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    const char lower = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
    const std::size_t value = DIGITS.find(lower);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

constexpr std::size_t LONGEST_INPUT_LINE = std::size_t{1} << 16;

COMMAND_FAILURE unreadable_input(const char* message) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE, message, "-", {}, "name an input that can be read", {}});
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

void require_readable_input() {
    if (std::ferror(stdin) != 0 || std::cin.bad()) {
        std::clearerr(stdin);
        throw unreadable_input("standard input cannot be read to its end");
    }
}

bool read_input_line(std::string& line) {
    using TRAITS = std::streambuf::traits_type;
    line.clear();
    std::streambuf& input = *std::cin.rdbuf();
    for (;;) {
        const auto next = input.sbumpc();
        if (TRAITS::eq_int_type(next, TRAITS::eof())) {
            require_readable_input();
            return !line.empty();
        }
        const char c = TRAITS::to_char_type(next);
        if (c == '\n') {
            return true;
        }
        if (line.size() == LONGEST_INPUT_LINE) {
            throw unreadable_input("standard input has a line of more than 65536 characters");
        }
        line += c;
    }
}

void for_each_input_line(const std::function<void(const std::string&)>& use) {
    for (std::string line; read_input_line(line);) {
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
