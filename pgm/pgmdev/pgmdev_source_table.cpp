#include "pgmdev_source_table.h"

#include <fstream>
#include <string_view>

#include "gen.h"
#include "qtl.h"

namespace {

constexpr const char* CELL_SEPARATORS = " \t\n,";

/// Where the cells that the tokenizer found begin: they come in order, with only separators between them.
std::vector<DWORD> columns_of(const std::string& line, const std::vector<std::string>& cells, std::size_t offset,
                              bool keep_empty) {
    std::vector<DWORD> columns;
    columns.reserve(cells.size());
    std::size_t position = 0;
    for (const std::string& cell : cells) {
        if (!keep_empty) {
            position = line.find_first_not_of(CELL_SEPARATORS, position);
        }
        columns.push_back(static_cast<DWORD>(offset + position + 1));
        position += cell.size() + (keep_empty ? 1 : 0);
    }
    return columns;
}

}  // namespace

std::vector<SOURCE_LINE> read_source_table(const FIO_PATH& path, bool keep_empty, bool& readable) {
    const QTL_TOKENIZER tokenizer(CELL_SEPARATORS, keep_empty, "", "", "", false);
    std::vector<SOURCE_LINE> lines;
    std::ifstream input(fio_get_unc_full_path(path.fullpath()), std::ios::binary);
    DWORD number = 0;
    for (std::string raw; std::getline(input, raw);) {
        ++number;
        const std::string line = gen_remove_leading_and_trailing_white_spaces(raw);
        if (line.empty()) {
            continue;
        }
        std::vector<std::string> cells = tokenizer.tokenize(line);
        std::vector<DWORD> columns = columns_of(line, cells, raw.find(line), keep_empty);
        lines.push_back({number, raw.size(), std::move(cells), std::move(columns)});
    }
    readable = input.is_open() && input.eof() && !input.bad();
    return lines;
}
