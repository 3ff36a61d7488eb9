#include "source_rows.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "ascii.h"
#include "file_reader.h"
#include "text_lines.h"

namespace {

/// No catalog that people maintain comes near.
constexpr std::size_t LARGEST_SOURCE = std::size_t{1} << 24;
constexpr char COMMENT = '#';

/// Words with which names would be confused: the filter that does not restrict, and what stands for any device.
constexpr std::array<std::string_view, 3> RESERVED_NAMES{"ANY", "GENERIC", "NONE"};

bool is_name_character(char c) {
    return (c >= '0' && c <= '9') || (ascii_upper(c) >= 'A' && ascii_upper(c) <= 'Z') ||
           std::string_view("_-.+").find(c) != std::string_view::npos;
}

/// How a program has saved a text whose lines are none here; null when it has not.
const char* foreign_form(std::string_view text) {
    if (is_utf_16(text)) {
        return "is UTF-16: save it as UTF-8";
    }
    const bool has_lines = text.find('\n') != std::string_view::npos || text.find('\r') == std::string_view::npos;
    return has_lines ? nullptr : "has lines that end at carriage returns alone: save it with line feeds";
}

std::vector<std::string> cells_of(const std::string& line) {
    constexpr const char* SEPARATORS = " \t\r\v\f";
    const std::size_t end = std::min(line.find(COMMENT), line.size());
    std::vector<std::string> cells;
    for (std::size_t begin = line.find_first_not_of(SEPARATORS); begin < end;) {
        const std::size_t behind = std::min(line.find_first_of(SEPARATORS, begin), end);
        cells.push_back(line.substr(begin, behind - begin));
        begin = line.find_first_not_of(SEPARATORS, behind);
    }
    return cells;
}

}  // namespace

std::optional<std::vector<std::string>> read_lines(const std::filesystem::path& path, FAULTS& faults) {
    std::string text;
    if (read_whole_file(path, LARGEST_SOURCE, FILE_KINDS::REGULAR, text) != READ_RESULT::READ) {
        faults.add({path.generic_string()}, "cannot be read");
        return std::nullopt;
    }
    if (const char* form = foreign_form(text)) {
        faults.add({path.generic_string()}, form);
        return std::nullopt;
    }
    std::vector<std::string> lines;
    for_each_line(without_byte_order_mark(text), [&lines](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

std::vector<SOURCE_ROW> read_rows(const std::filesystem::path& path, FAULTS& faults) {
    std::vector<SOURCE_ROW> rows;
    SOURCE_PLACE place{path.generic_string()};
    for (const std::string& line : read_lines(path, faults).value_or(std::vector<std::string>())) {
        ++place.line;
        std::vector<std::string> cells = cells_of(line);
        if (!cells.empty()) {
            rows.push_back({place, std::move(cells)});
        }
    }
    return rows;
}

bool has_columns(const SOURCE_ROW& row, const std::string& columns, FAULTS& faults) {
    const auto expected = 1 + static_cast<std::size_t>(std::count(columns.begin(), columns.end(), ' '));
    if (row.cells.size() == expected) {
        return true;
    }
    faults.add(row.place, "expected " + std::to_string(expected) + " columns (" + columns + "), found " +
                              std::to_string(row.cells.size()));
    return false;
}

std::optional<int> read_number(const SOURCE_ROW& row, std::size_t cell, const char* what, int lowest, int highest,
                               FAULTS& faults, const char* to_have_more) {
    const std::string& text = row.cells[cell];
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool is_number = error == std::errc() && end == text.data() + text.size();
    if (is_number && number >= lowest && number <= highest) {
        return number;
    }
    faults.add(row.place, std::string(what) + " \"" + text + "\" is not a number from " + std::to_string(lowest) +
                              " to " + std::to_string(highest) + (is_number && number > highest ? to_have_more : ""));
    return std::nullopt;
}

bool check_name(const SOURCE_PLACE& place, const std::string& name, const char* what, FAULTS& faults) {
    const auto refuse = [&](const std::string& reason) {
        faults.add(place, std::string(what) + " \"" + name + "\" " + reason);
        return false;
    };
    if (name.empty() || !std::all_of(name.begin(), name.end(), is_name_character)) {
        return refuse("must consist of letters, digits and _ - . +");
    }
    if (name.size() > MAX_NAME_LENGTH) {
        return refuse("is longer than " + std::to_string(MAX_NAME_LENGTH) + " characters");
    }
    if (std::find(RESERVED_NAMES.begin(), RESERVED_NAMES.end(), upper_case(name)) != RESERVED_NAMES.end()) {
        return refuse("has a meaning of its own and cannot be used as a name");
    }
    return true;
}

std::vector<std::string> split_list(const std::string& text) {
    std::vector<std::string> items;
    std::size_t begin = 0;
    for (std::size_t comma = 0; comma != std::string::npos; begin = comma + 1) {
        comma = text.find(',', begin);
        items.push_back(text.substr(begin, comma - begin));
    }
    return items;
}

std::string upper_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), ascii_upper);
    return text;
}
