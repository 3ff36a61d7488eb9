#include "tables/source_hints.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "files/file_bytes.h"

namespace {

std::string_view first_line(std::string_view text) {
    return text.substr(0, text.find('\n'));
}

std::ptrdiff_t count_of(std::string_view text, char character) {
    return std::count(text.begin(), text.end(), character);
}

/// Every other byte is 0 in Western texts of 16 bits.
bool is_utf16(std::string_view text) {
    const std::string_view line = text.substr(0, 64);
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
           (!line.empty() && count_of(line, '\0') * 3 > static_cast<std::ptrdiff_t>(line.size()));
}

struct HINT {
    bool (*applies)(std::string_view text);
    const char* text;
};

constexpr std::array HINTS{
    HINT{is_utf16, "the file is UTF-16: save it as UTF-8 without a byte-order mark, or as plain text"},
    HINT{[](std::string_view text) { return text.starts_with("\xEF\xBB\xBF"); },
         "the file begins with a byte-order mark: save it as UTF-8 without one"},
    HINT{[](std::string_view text) { return count_of(first_line(text), ';') > count_of(first_line(text), ','); },
         "the cells are separated by semicolons: save the table with commas"},
    HINT{[](std::string_view text) { return text.find('\t') != std::string_view::npos; },
         "the file has tabs, each of which ends a cell as a comma does: leave one kind of separator between two cells"},
    HINT{[](std::string_view text) {
             return text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos;
         },
         "the lines end at carriage returns alone: save the file with line feeds"},
    HINT{[](std::string_view text) { return first_line(text).find('"') != std::string_view::npos; },
         "the cells are in quotation marks: save the table without them"},
};

}  // namespace

std::vector<std::string> hints_at_causes(const std::string& csv_file) {
    std::vector<std::string> hints;
    const auto bytes = file_bytes(csv_file);
    if (!bytes) {
        return hints;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    for (const HINT& hint : HINTS) {
        if (hint.applies(text)) {
            hints.emplace_back(hint.text);
        }
    }
    return hints;
}
