#include "terminal/input.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string_view>

#include "gen.h"
#include "hex_pairs.h"
#include "pgm_common.h"
#include "terminal/command.h"
#include "terminal/failure.h"
#include "text_lines.h"

namespace {

constexpr std::size_t LONGEST_INPUT_LINE = std::size_t{1} << 16;

COMMAND_FAILURE unreadable_input(const std::string& message) {
    return COMMAND_FAILURE({FAILURE_CODE::FILE_UNREADABLE, message, "-", {}, "name an input that can be read", {}});
}

}  // namespace

ID_RESPONSE parse_id_response(const std::string& text) {
    ID_RESPONSE response;
    const std::optional<std::vector<BYTE>> bytes = bytes_of_response(text);
    if (!bytes) {
        throw USAGE_ERROR(
            fmt::format("\"{}\" is not an identification response: expected pairs of hexadecimal digits", text));
    }
    if (bytes->size() > response.bytes.size()) {
        throw USAGE_ERROR(fmt::format("an identification response has at most {} bytes", response.bytes.size()));
    }
    if (bytes->empty()) {
        throw USAGE_ERROR("an identification response has at least one byte");
    }
    std::copy(bytes->begin(), bytes->end(), response.bytes.begin());
    response.count = static_cast<DWORD>(bytes->size());
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

std::optional<bool> flag_named(const std::string& text) {
    for (const bool value : {false, true}) {
        if (text == (value ? "1" : "0") || gen_stricmp(text, value ? "true" : "false") == 0) {
            return value;
        }
    }
    return std::nullopt;
}

void require_readable_input() {
    if (std::ferror(stdin) != 0 || std::cin.bad()) {
        std::clearerr(stdin);
        throw unreadable_input("standard input cannot be read to its end");
    }
}

INPUT_LINES::INPUT_LINES() : m_input([input = std::cin.rdbuf()] { return input->sbumpc(); }) {}

bool INPUT_LINES::next(std::string& line) {
    line.clear();
    const auto without_mark = [this, &line] {
        line.erase(0, m_is_first ? line.size() - without_byte_order_mark(line).size() : 0);
        m_is_first = false;
    };
    for (;;) {
        const int byte = m_input.next();
        if (byte == UTF_8_INPUT::MALFORMED) {
            throw unreadable_input(fmt::format("standard input cannot be read to its end: {}", MALFORMED_UTF_16));
        }
        if (byte == UTF_8_INPUT::END) {
            require_readable_input();
            without_mark();
            return !line.empty();
        }
        if (byte == '\n') {
            without_mark();
            return true;
        }
        if (line.size() == LONGEST_INPUT_LINE) {
            throw unreadable_input("standard input has a line of more than 65536 characters");
        }
        line += static_cast<char>(byte);
    }
}
