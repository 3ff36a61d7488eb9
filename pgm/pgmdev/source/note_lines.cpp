#include "source/note_lines.h"

#include <algorithm>

#include "file_kind.h"
#include "file_reader.h"
#include "fio.h"
#include "text_lines.h"

namespace {

constexpr std::size_t LARGEST_NOTES = std::size_t{1} << 20;
constexpr std::size_t LONGEST_LINE = 4096;
constexpr const char* BLANKS = " \t\r";

PGMDEV_TABLE_FAULT fault_at(DWORD line, std::size_t column, std::string expected) {
    PGMDEV_TABLE_FAULT fault;
    fault.line = line;
    fault.column = static_cast<DWORD>(column);
    fault.expected = std::move(expected);
    return fault;
}

/// A line, cell by cell.
class CELL_READER {
public:
    CELL_READER(const std::string& text, NOTE_LINE& line) : m_text(text), m_line(line) {}

    /// False when there is a fault: `faulty_column` and `expected` tell which.
    bool read() {
        while (read_cell()) {
            if (m_place == m_text.size()) {
                return true;
            }
            ++m_place;  // the comma
        }
        return false;
    }

    std::size_t faulty_column() const { return m_place + 1; }
    const std::string& expected() const { return m_expected; }

private:
    bool read_cell() {
        m_place = std::min(m_text.find_first_not_of(BLANKS, m_place), m_text.size());
        m_line.columns.push_back(static_cast<DWORD>(m_place + 1));
        std::string cell;
        if (m_place < m_text.size() && m_text[m_place] == '"') {
            if (!read_quoted(cell)) {
                return false;
            }
        } else {
            const std::size_t end = std::min(m_text.find(',', m_place), m_text.size());
            cell = m_text.substr(m_place, end - m_place);
            cell.erase(cell.find_last_not_of(BLANKS) + 1);
            m_place = end;
        }
        if (cell.empty()) {
            m_place = m_line.columns.back() - 1;
            m_expected = "a value";
            return false;
        }
        m_line.cells.push_back(std::move(cell));
        return true;
    }

    bool read_quoted(std::string& cell) {
        const std::size_t begin = m_place++;
        for (;; ++m_place) {
            if (m_place >= m_text.size()) {
                m_place = begin;
                m_expected = "a quotation mark at the end of the cell, too";
                return false;
            }
            if (m_text[m_place] != '"') {
                cell += m_text[m_place];
            } else if (m_place + 1 < m_text.size() && m_text[m_place + 1] == '"') {
                cell += m_text[++m_place];
            } else {
                break;
            }
        }
        m_place = std::min(m_text.find_first_not_of(BLANKS, m_place + 1), m_text.size());
        m_expected = "a comma behind the quotation mark";
        return m_place == m_text.size() || m_text[m_place] == ',';
    }

    const std::string& m_text;
    NOTE_LINE& m_line;
    std::size_t m_place = 0;
    std::string m_expected;
};

std::string names_of(std::span<const std::string_view> columns) {
    std::string names;
    for (const std::string_view name : columns) {
        names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return names;
}

/// Whether there is something else than a file or a directory, which is not waited for.
bool is_stream(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_other(std::filesystem::file_status(file_type_of(path, ignored)));
}

bool is_heading(const NOTE_LINE& line, std::span<const std::string_view> columns) {
    return std::equal(line.cells.begin(), line.cells.end(), columns.begin(), columns.end());
}

}  // namespace

std::optional<std::vector<NOTE_LINE>> read_note_lines(const std::string& file,
                                                      std::span<const std::string_view> columns,
                                                      std::vector<PGMDEV_TABLE_FAULT>& faults) {
    const std::filesystem::path path = fio_get_unc_full_path(FIO_PATH(file).fullpath());
    std::string text;
    const READ_RESULT result = read_whole_file(path, LARGEST_NOTES, FILE_KINDS::REGULAR, text);
    if (result == READ_RESULT::ABSENT) {
        return std::nullopt;
    }
    std::vector<NOTE_LINE> lines;
    if (result != READ_RESULT::READ || text.find('\0') != std::string::npos) {
        faults.push_back(fault_at(0, 0,
                                  is_stream(path) ? "a regular file, no pipe and no device"
                                                  : "a text file that can be read, of at most 1 MiB"));
        return lines;
    }
    bool heading = true;
    DWORD number = 0;
    for_each_line(without_byte_order_mark(text), [&](std::string_view whole) {
        ++number;
        const std::string raw(whole);
        const std::size_t begin = raw.find_first_not_of(BLANKS);
        if (begin == std::string::npos || raw[begin] == '#') {
            return;
        }
        NOTE_LINE line{number, {}, {}};
        CELL_READER cells(raw, line);
        if (raw.size() > LONGEST_LINE) {
            faults.push_back(fault_at(number, 0, "a line of at most 4096 characters"));
        } else if (!cells.read()) {
            faults.push_back(fault_at(number, cells.faulty_column(), cells.expected()));
        } else if (heading && !is_heading(line, columns)) {
            faults.push_back(fault_at(number, 0, "the names of the columns: " + names_of(columns)));
        } else if (line.cells.size() != columns.size()) {
            faults.push_back(fault_at(number, 0, "a cell for each of " + names_of(columns)));
        } else if (!heading) {
            lines.push_back(std::move(line));
        }
        heading = false;
    });
    if (heading) {
        faults.push_back(fault_at(0, 0, "the names of the columns: " + names_of(columns)));
    }
    return lines;
}

PGMDEV_TABLE_FAULT note_fault(const NOTE_LINE& line, std::size_t cell, std::span<const std::string_view> columns,
                              std::string expected, PGMDEV_TABLE_FAULT::SEVERITY severity) {
    PGMDEV_TABLE_FAULT fault = fault_at(line.number, line.columns[cell], std::move(expected));
    fault.severity = severity;
    fault.row = line.cells.front();
    fault.member = columns[cell];
    fault.cell = line.cells[cell];
    return fault;
}
