#include "terminal/screen.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace {

bool g_all_columns = false;

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::size_t columns_of_environment() {
    const std::string_view text = variable("COLUMNS");
    std::size_t columns = 0;
    std::from_chars(text.data(), text.data() + text.size(), columns);
    return columns;
}

}  // namespace

std::optional<std::size_t> table_width() {
    constexpr std::size_t USUAL_COLUMNS = 80;
    if (g_all_columns || !output_is_terminal()) {
        return std::nullopt;
    }
    if (const std::size_t columns = columns_of_environment(); columns != 0) {
        return columns;
    }
    const std::size_t columns = terminal_columns();
    return columns != 0 ? columns : USUAL_COLUMNS;
}

void show_all_columns(bool all) {
    g_all_columns = all;
}

std::string in_bold(const std::string& text) {
    const bool wanted = variable("NO_COLOR").empty() && variable("TERM") != "dumb";
    return wanted && output_is_terminal() ? "\033[1m" + text + "\033[0m" : text;
}
