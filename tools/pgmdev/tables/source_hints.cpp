#include "tables/source_hints.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "files/database.h"
#include "files/file_bytes.h"
#include "pgmdev_dev_info.h"
#include "pgmdev_sfl_flash_info.h"
#include "tables/column_hints.h"
#include "terminal/standard_error.h"
#include "text_lines.h"

namespace {

std::string_view first_line(std::string_view text) {
    return text.substr(0, text.find('\n'));
}

std::ptrdiff_t count_of(std::string_view text, char character) {
    return std::count(text.begin(), text.end(), character);
}

/// Also without a byte-order mark: every other byte is 0 in Western texts of 16 bits.
bool looks_like_utf_16(std::string_view text) {
    const std::string_view line = text.substr(0, 64);
    return is_utf_16(text) || (!line.empty() && count_of(line, '\0') * 3 > static_cast<std::ptrdiff_t>(line.size()));
}

/// Bytes that no text has: those of a compressed file, or of an executable one. The hints for texts mean nothing then.
bool is_no_text(std::string_view text) {
    return text.find('\0') != std::string_view::npos;
}

/// A page of the web around a table, or instead of it, is often what was saved.
bool is_web_page(std::string_view text) {
    const std::size_t begin = without_byte_order_mark(text).find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && without_byte_order_mark(text)[begin] == '<';
}

/// A voltage such as 3,3V, in the last cell, which is two then: one more than there are names.
bool has_decimal_comma(std::string_view text) {
    constexpr std::string_view DIGITS = "0123456789";
    const auto names = count_of(first_line(text), ',');
    bool found = false;
    for_each_line(text, [&](std::string_view line) {
        const std::size_t comma = line.rfind(',');
        if (count_of(line, ',') > names && comma > 0 && DIGITS.find(line[comma - 1]) != std::string_view::npos) {
            const std::string_view fraction = line.substr(comma + 1);
            const std::size_t end = fraction.find_first_not_of(DIGITS);
            found = found || (end != 0 && fraction.substr(std::min(end, fraction.size())).starts_with('V'));
        }
    });
    return found;
}

struct HINT {
    bool (*applies)(std::string_view text);
    const char* text;
};

constexpr std::array HINTS{
    HINT{looks_like_utf_16, "the file is UTF-16: save it as UTF-8 without a byte-order mark, or as plain text"},
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
    HINT{has_decimal_comma,
         "a voltage has a comma, which ends a cell: a fraction stands behind a decimal point, as in 3.3V"},
};

/// Whether a fault is one of the form of the table, not of a value in a row: what its cause has many of.
bool is_of_form(const PGMDEV_TABLE_FAULT& fault) {
    return fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT && (fault.column == 0 || fault.row.empty());
}

/// What a noun calls its own: a packed database, and a table, which is known by the first name in its second line.
struct FILES_OF_NOUN {
    const DATABASE_KIND& database;
    HINTED_TABLE table;

    std::string_view first_name() const { return table.columns.front().name; }
};

HINTED_TABLE hinted_table(const auto& members, bool keeps_empty) {
    HINTED_TABLE table{{}, keeps_empty};
    for (const auto& member : members) {
        table.columns.push_back({member.name, member.kind});
    }
    return table;
}

const std::vector<FILES_OF_NOUN>& all_files() {
    static const std::vector<FILES_OF_NOUN> ALL{
        {FLASH_DATABASE_KIND, hinted_table(PGMDEV_SFL_FLASH_MEMBERS, false)},
        {PROFILE_DATABASE_KIND, hinted_table(PGMDEV_DEVICE_INFO_MEMBERS, true)}};
    return ALL;
}

/// That the file is of another kind; "" when it is not known to be.
std::string other_kind(std::string_view text, const std::string& noun) {
    const std::size_t end = text.find('\n');
    const std::string_view second = end == std::string_view::npos ? "" : text.substr(end + 1);
    const std::string_view name = second.substr(0, second.find_first_of(", \t\r\n"));
    for (const FILES_OF_NOUN& files : all_files()) {
        if (text.starts_with(files.database.magic)) {
            return fmt::format("this is a packed database, no source table: see pgmdev {} dump --csv",
                               files.database.noun);
        }
        if (files.database.noun != noun && name == files.first_name()) {
            return fmt::format("this is a {0} table: see pgmdev {0} check", files.database.noun);
        }
    }
    return "";
}

}  // namespace

std::vector<std::string> hints_at_causes(const std::string& csv_file, const std::string& noun,
                                         const std::vector<PGMDEV_TABLE_FAULT>& faults) {
    std::vector<std::string> hints;
    const auto bytes = std::any_of(faults.begin(), faults.end(), is_of_form) ? file_bytes(csv_file) : std::nullopt;
    if (!bytes) {
        return hints;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    if (std::string kind = other_kind(text, noun); !kind.empty()) {
        hints.push_back(std::move(kind));
        return hints;
    }
    if (is_no_text(text) && !looks_like_utf_16(text)) {
        hints.emplace_back("this is no text: unpack it if it is compressed, and look at what was downloaded");
        return hints;
    }
    if (is_web_page(text)) {
        hints.emplace_back("this is a page for browsers, not the table that it shows: download the table itself");
        return hints;
    }
    for (const HINT& hint : HINTS) {
        if (hint.applies(text)) {
            hints.emplace_back(hint.text);
        }
    }
    for (const FILES_OF_NOUN& files : all_files()) {
        if (hints.empty() && files.database.noun == noun) {
            if (std::optional<std::string> hint = hint_at_columns(text, files.table, faults)) {
                hints.push_back(std::move(*hint));
            }
        }
    }
    return hints;
}

std::vector<std::string> hints_at_notes(const std::vector<NOTES_COPY>& notes) {
    std::vector<std::string> hints;
    for (const NOTES_COPY& each : notes) {
        const auto bytes = file_bytes(each.source);
        if (bytes && looks_like_utf_16({reinterpret_cast<const char*>(bytes->data()), bytes->size()})) {
            hints.push_back(fmt::format("{} is UTF-16: save it as UTF-8", each.source));
        }
    }
    return hints;
}

void print_hints(const std::string& csv_file, const std::vector<std::string>& hints) {
    for (const std::string& hint : hints) {
        print_error("{}: hint: {}", csv_file, hint);
    }
}
