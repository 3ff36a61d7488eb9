#include "source/table.h"

#include <array>
#include <fstream>
#include <sstream>
#include <string_view>

#include "gen.h"
#include "qtl.h"

namespace {

constexpr const char* CELL_SEPARATORS = " \t\n,";

/// No table that people maintain comes near; a device that never ends does.
constexpr std::size_t LARGEST_SOURCE = std::size_t{1} << 30;

/// The text of a file, which may be a pipe; empty and not readable when it cannot be read to its end or is too large.
std::string read_bounded(const FIO_PATH& path, bool& readable) {
    std::ifstream file(fio_get_unc_full_path(path.fullpath()), std::ios::binary);
    std::string text;
    std::array<char, 1 << 16> chunk{};
    do {
        file.read(chunk.data(), chunk.size());
        text.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
    } while (file.good() && text.size() <= LARGEST_SOURCE);
    readable = file.is_open() && file.eof() && !file.bad() && text.size() <= LARGEST_SOURCE;
    if (!readable) {
        text.clear();
    }
    return text;
}

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
    std::istringstream input(read_bounded(path, readable));
    QTL_TOKENIZER tokenizer(CELL_SEPARATORS, keep_empty, "", "", "", false);
    std::vector<SOURCE_LINE> lines;
    DWORD number = 0;
    for (std::string raw; std::getline(input, raw);) {
        ++number;
        const std::string line = gen_remove_leading_and_trailing_white_spaces(raw);
        if (line.empty()) {
            continue;
        }
        std::vector<std::string> cells = tokenizer.tokenize(line);
        const std::size_t begin = raw.find(line);
        std::vector<DWORD> columns = columns_of(line, cells, begin, keep_empty);
        lines.push_back({number, raw.size(), static_cast<DWORD>(begin + 1), std::move(cells), std::move(columns)});
    }
    return lines;
}
