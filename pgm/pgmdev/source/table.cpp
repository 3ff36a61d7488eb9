#include "source/table.h"

#include <string_view>

#include "file_reader.h"
#include "gen.h"
#include "qtl.h"
#include "text_lines.h"

namespace {

constexpr const char* CELL_SEPARATORS = " \t\n,";

// No table that people maintain comes near; what never ends, or was made to take all memory, does. A list of parts that a
// program writes has as many lines as there are parts; it is read a line at a time.
constexpr std::size_t LARGEST_SOURCE = std::size_t{1} << 26;
constexpr std::size_t MOST_SOURCE_CELLS = std::size_t{1} << 22;

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

bool separates(char c) {
    return std::string_view(CELL_SEPARATORS).find(c) != std::string_view::npos;
}

/// How many cells a line has, at most.
std::size_t most_cells(std::string_view line, bool keep_empty) {
    std::size_t count = 1;
    for (std::size_t i = 1; i < line.size(); ++i) {
        count += separates(line[i]) && (keep_empty || !separates(line[i - 1])) ? 1U : 0U;
    }
    return count;
}

}  // namespace

bool for_each_source_line(const FIO_PATH& path, bool keep_empty, LIMITED_CELLS limited,
                          const std::function<void(SOURCE_LINE)>& use) {
    std::string text;
    bool readable = read_whole_file(fio_get_unc_full_path(path.fullpath()), LARGEST_SOURCE, FILE_KINDS::STREAMS_TOO,
                                    text) == READ_RESULT::READ;
    QTL_TOKENIZER tokenizer(CELL_SEPARATORS, keep_empty, "", "", "", false);
    DWORD number = 0;
    std::size_t cell_count = 0;
    for_each_line(text, [&](std::string_view whole) {
        ++number;
        cell_count = most_cells(whole, keep_empty) + (limited == LIMITED_CELLS::OF_ALL_LINES ? cell_count : 0);
        readable = readable && cell_count <= MOST_SOURCE_CELLS;
        if (!readable) {
            return;
        }
        const std::string raw(whole);
        const std::string line = gen_remove_leading_and_trailing_white_spaces(raw);
        if (line.empty()) {
            return;
        }
        std::vector<std::string> cells = tokenizer.tokenize(line);
        const std::size_t begin = raw.find(line);
        std::vector<DWORD> columns = columns_of(line, cells, begin, keep_empty);
        use({number, raw.size(), static_cast<DWORD>(begin + 1), std::move(cells), std::move(columns)});
    });
    return readable;
}

std::vector<SOURCE_LINE> read_source_table(const FIO_PATH& path, bool keep_empty, bool& readable) {
    std::vector<SOURCE_LINE> lines;
    readable = for_each_source_line(path, keep_empty, LIMITED_CELLS::OF_ALL_LINES,
                                    [&lines](SOURCE_LINE line) { lines.push_back(std::move(line)); });
    if (!readable) {
        lines.clear();
    }
    return lines;
}
