#include "flash/size_filter.h"

#include <fmt/core.h>

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "gen.h"
#include "terminal/command.h"

namespace {

constexpr QWORD MBIT = QWORD{1024} * 1024;
constexpr std::array<std::pair<std::string_view, QWORD>, 8> UNITS{{{"", MBIT},
                                                                   {"M", MBIT},
                                                                   {"Mbit", MBIT},
                                                                   {"G", 1024 * MBIT},
                                                                   {"Gbit", 1024 * MBIT},
                                                                   {"K", 1024},
                                                                   {"Kbit", 1024},
                                                                   {"bit", 1}}};

}  // namespace

QWORD parse_size(const std::string& text) {
    const std::string trimmed = gen_remove_leading_and_trailing_white_spaces(text);
    const char* last = trimmed.data() + trimmed.size();
    QWORD number = 0;
    const auto [end, error] = std::from_chars(trimmed.data(), last, number);
    const std::string unit = gen_remove_leading_and_trailing_white_spaces(std::string(end, last));
    for (const auto& [name, bits] : UNITS) {
        if (error == std::errc() && number <= UINT64_MAX / bits && gen_stricmp(unit, std::string(name)) == 0) {
            return number * bits;
        }
    }
    throw USAGE_ERROR(
        fmt::format("\"{}\" is not a size: expected a number with bit, Kbit, Mbit or Gbit, or one of Mbit", text));
}
