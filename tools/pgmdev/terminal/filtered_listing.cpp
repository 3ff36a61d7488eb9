#include "terminal/filtered_listing.h"

#include <fmt/core.h>

#include <utility>

#include "gen.h"
#include "terminal/did_you_mean.h"
#include "terminal/quiet.h"
#include "terminal/standard_error.h"
#include "wildcard.h"

namespace {

constexpr const char* PATTERN = "PATTERN";

std::string pattern_of(const ARGUMENTS& given) {
    return gen_remove_leading_and_trailing_white_spaces(given.text(PATTERN));
}

}  // namespace

VERB with_pattern(VERB verb) {
    return std::move(verb).takes({PATTERN,
                                  "Only names that fit it, in any case: * stands for any characters, ? for any one",
                                  ARGUMENT::OPTIONAL_TEXT});
}

GIVEN_PATTERN::GIVEN_PATTERN(const ARGUMENTS& given) : m_pattern(given.has(PATTERN) ? pattern_of(given) : "*") {}

bool GIVEN_PATTERN::fits(const std::string& name) const {
    return fits_pattern(name, m_pattern);
}

std::string given_pattern_text(const ARGUMENTS& given) {
    return given.has(PATTERN) ? fmt::format(" with a name like \"{}\"", pattern_of(given)) : "";
}

std::string did_you_mean_by_pattern(const ARGUMENTS& given,
                                    const std::function<std::vector<std::string>(const std::string& name)>& similar,
                                    const std::function<std::ptrdiff_t(const ARGUMENTS& given)>& rows) {
    const std::string pattern = given.has(PATTERN) ? pattern_of(given) : "*";
    if (pattern.find_first_of("*?") != std::string::npos || is_quiet()) {
        return "";
    }
    const std::string longer = pattern + "*";
    const std::ptrdiff_t count = pattern.empty() ? 0 : rows(given.with(PATTERN, longer));
    return did_you_mean(similar(pattern)) +
           (count == 0 ? "" : fmt::format("; with \"{}\" there {} {}", longer, count == 1 ? "is" : "are", count));
}

void print_filtered_listing(const JSON& row, const std::vector<JSON>& rows, const TEXT_TABLE& table,
                            const std::function<std::string()>& missing, const ARGUMENTS& given, COMMAND& command) {
    if (rows.empty()) {
        command.result = EXIT_NOT_FOUND;
        print_error("pgmdev: {}", missing());
        if (!command.json && !given.has("--csv")) {
            return;  // people need no heading above nothing
        }
    }
    print_listing(row, rows, table, given, command);
}
