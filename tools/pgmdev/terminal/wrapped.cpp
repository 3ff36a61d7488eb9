#include "terminal/wrapped.h"

#include <fmt/core.h>

#include <algorithm>

#include "terminal/printable.h"
#include "terminal/screen.h"

namespace {

/// Characters of UTF-8.
std::size_t characters_of(std::string_view text) {
    const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins));
}

/// Prints the text in lines of that width, but for longer words. Lines behind the first one are indented.
void print_broken(std::string_view text, std::size_t width, std::size_t indentation) {
    std::string line;
    while (!text.empty()) {
        const std::size_t blanks = std::min(text.find_first_not_of(' '), text.size());
        const std::size_t end = std::min(text.find(' ', blanks), text.size());
        const std::string_view piece = text.substr(0, end);
        if (!line.empty() && characters_of(line) + characters_of(piece) > width) {
            fmt::print("{}\n", line);
            line = std::string(indentation, ' ') + std::string(piece.substr(blanks));
        } else {
            line += piece;
        }
        text.remove_prefix(end);
    }
    fmt::print("{}\n", line);
}

void print_fitted(const std::string& text, std::size_t indentation) {
    constexpr std::size_t LEAST_ROOM = 20;  // a narrower terminal breaks the lines itself
    const auto width = table_width();
    if (width) {
        print_broken(text, std::max(*width, indentation + LEAST_ROOM), indentation);
    } else {
        fmt::print("{}\n", text);
    }
}

}  // namespace

void print_labelled(std::string_view label, std::size_t column, const std::string& text) {
    print_fitted(fmt::format("{:<{}}{}", label, column, printable(text)), column);
}

void print_sentence(const std::string& text) {
    constexpr std::size_t INDENTATION = 4;
    print_fitted(printable(text), INDENTATION);
}
