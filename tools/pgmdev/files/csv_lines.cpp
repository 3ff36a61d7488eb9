#include "files/csv_lines.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "files/file_bytes.h"
#include "files/inspection.h"
#include "gen.h"
#include "text_lines.h"

namespace {

/// What stands between commas; behind the last comma only what is there.
std::vector<std::string> cells_of_line(std::string_view line) {
    std::vector<std::string> cells;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(','), line.size());
        cells.push_back(gen_remove_leading_and_trailing_white_spaces(std::string(line.substr(0, end))));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return cells;
}

}  // namespace

CSV_LINES read_csv_lines(const std::string& path) {
    CSV_LINES read;
    if (inspect_file(path, 0).missing) {
        return read;
    }
    const std::vector<BYTE> bytes = required_file_bytes(path);
    std::size_t number = 0;
    for_each_line({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, [&](std::string_view line) {
        ++number;
        std::vector<std::string> cells = cells_of_line(line);
        if (cells.empty() || (cells.size() == 1 && cells.front().empty())) {
            return;
        }
        if (read.names.empty()) {
            read.names = std::move(cells);
        } else if (cells.size() == read.names.size()) {
            read.lines.push_back(std::move(cells));
        } else {
            read.malformed.push_back(number);
        }
    });
    return read;
}
