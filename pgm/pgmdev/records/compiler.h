#pragma once

/// \file
/// Compiling a source table of records, and finding everything that is wrong with one.
///
/// Each database describes its kind of table by a structure with
/// - RECORD, the record that a row becomes;
/// - HEADER, the columns and the texts of the failed checks; HEADER_LINES, the lines before the data rows;
/// - KEEP_EMPTY, whether every separator ends a cell;
/// - check_layout, the first pass over all lines; check_line, of the second pass, for every line;
/// - row_name, how faults call a row;
/// - check_rows and check_rows_together, which look at sound rows as rows, and at all of them.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "fio.h"
#include "packed/file.h"
#include "records/codec.h"
#include "source/faults.h"
#include "source/header.h"
#include "source/table.h"

/// The columns of a table, from the record's member table.
template <class MEMBERS>
constexpr auto source_columns(const MEMBERS& members) {
    std::array<SOURCE_COLUMN, std::tuple_size_v<MEMBERS>> columns{};
    std::transform(members.begin(), members.end(), columns.begin(), [](const auto& member) {
        return SOURCE_COLUMN{member.name, member.kind};
    });
    return columns;
}

/// What the first pass over a table finds out.
struct SOURCE_LAYOUT {
    DWORD record_count = 0;
    QWORD section_size = PACKED_BODY_HEAD_SIZE + PACKED_MARKER_SIZE;  ///< from the head of the body to "END2", in bytes
};

/// The fault of a cell of a data row that breaks a condition.
template <class TABLE>
PGMDEV_TABLE_FAULT refused_cell(const SOURCE_LINE& line, std::size_t cell, const char* condition) {
    const auto& member = RECORD_SCHEMA<typename TABLE::RECORD>::MEMBERS[cell];
    PGMDEV_TABLE_FAULT fault = cell_fault(line, cell, member.name, condition, accepted_cell(member.kind));
    fault.row = TABLE::row_name(line);
    return fault;
}

/// The second pass of an examination, for one data row with the right number of cells: takes the record, and tells
/// whether every cell was sound.
template <class TABLE>
bool take_row(const SOURCE_LINE& line, typename TABLE::RECORD& record, const FAULT_SINK& sink) {
    bool sound = true;
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const auto& member = RECORD_SCHEMA<typename TABLE::RECORD>::MEMBERS[i];
        if (const char* condition = RECORD_CODEC<typename TABLE::RECORD>::take(member, line.cells[i], record)) {
            sink(refused_cell<TABLE>(line, i, condition), PGMDEV_LINE);
            sound = false;
        }
    }
    return sound;
}

/// Warns of header lines that could be data rows: in a table that lost a line of its header, a row takes its place, and is no
/// record.
template <class TABLE>
void check_no_row_in_header(const std::vector<SOURCE_LINE>& lines, const FAULT_SINK& sink) {
    for (std::size_t i = 0; i < std::min(lines.size(), TABLE::HEADER_LINES); ++i) {
        typename TABLE::RECORD record;
        const FAULT_SINK nobody = [](const PGMDEV_TABLE_FAULT&, int) {};
        if (lines[i].cells.size() == TABLE::HEADER.columns.size() && take_row<TABLE>(lines[i], record, nobody)) {
            PGMDEV_TABLE_FAULT fault;
            fault.severity = PGMDEV_TABLE_FAULT::SEVERITY::WARNING;
            fault.line = lines[i].number;
            fault.row = TABLE::row_name(lines[i]);
            fault.expected = "stands among the " + std::to_string(TABLE::HEADER_LINES) +
                             " lines of the header and is no record: a line above it is missing";
            sink(fault, PGMDEV_LINE);
        }
    }
}

/// The second pass of compiling, for one data row: takes the record; the first cell that is not sound ends the operation.
/// Where the host reports a number, its report does not say in which cell: the debug channel does.
template <class TABLE>
void compile_row(const SOURCE_LINE& line, typename TABLE::RECORD& record, const FIO_PATH& csv_file,
                 const FAULT_SINK& refuse) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
        const auto& member = RECORD_SCHEMA<typename TABLE::RECORD>::MEMBERS[i];
        const char* condition = nullptr;
        try {
            condition =
                RECORD_CODEC<typename TABLE::RECORD>::take(member, line.cells[i], record, take_number_or_report);
        } catch (...) {
            pgmdev_soften([&] { trace_refusal(refused_cell<TABLE>(line, i, NOT_A_NUMBER), csv_file); });
            throw;
        }
        if (condition != nullptr) {
            refuse(refused_cell<TABLE>(line, i, condition), PGMDEV_LINE);
        }
    }
}

/// The image of a file while it is written.
struct PACKED_IMAGE {
    BYTE_BUFFER data;
    QWORD size = 0;   ///< of the whole image
    DWORD index = 0;  ///< where writing goes on
};

/// The first pass alone: the bytes of the record section. `record_count` tells how many rows were counted, even when the
/// table is refused.
template <class TABLE>
DWORD check_source_file(const FIO_PATH& csv_file, DWORD& record_count) {
    SOURCE_LAYOUT layout;
    try {
        bool readable = false;
        const std::vector<SOURCE_LINE> lines = read_source_table(csv_file, TABLE::KEEP_EMPTY, readable);
        const char* file = RECORD_SCHEMA<typename TABLE::RECORD>::FORMAT.file;
        TABLE::check_layout(lines, readable, layout, refusing_sink(csv_file, file));
    } catch (...) {
        record_count = layout.record_count;
        throw;
    }
    record_count = layout.record_count;
    return static_cast<DWORD>(layout.section_size);
}

/// The image of a packed file with the records of a table, up to "END2"; behind it is room for `rest` bytes. The first
/// fault ends the operation.
template <class TABLE>
PACKED_IMAGE compile_source_file(const FIO_PATH& csv_file, QWORD rest) {
    using SCHEMA = RECORD_SCHEMA<typename TABLE::RECORD>;
    // Both passes go over the same lines in memory, so that a file that changes meanwhile cannot outgrow the buffer.
    bool readable = false;
    const std::vector<SOURCE_LINE> lines = read_source_table(csv_file, TABLE::KEEP_EMPTY, readable);
    const FAULT_SINK refuse = refusing_sink(csv_file, SCHEMA::FORMAT.file);
    SOURCE_LAYOUT layout;
    TABLE::check_layout(lines, readable, layout, refuse);
    PGMDEV_REQUIRE(layout.section_size > 0, "pure_memory_size > 0", SCHEMA::FORMAT.file);

    const QWORD body_size = layout.section_size + rest;
    PGMDEV_REQUIRE(body_size <= PACKED_BODY_MAX, PACKED_BODY_TOO_LONG, SCHEMA::FORMAT.file);
    PACKED_IMAGE image;
    image.size = PACKED_HEAD_SIZE + body_size;
    image.data = std::make_unique<BYTE[]>(image.size);
    PACKED_WRITER writer(image.data.get(), image.size, image.index, SCHEMA::FORMAT);
    writer.put_heads(static_cast<DWORD>(body_size), layout.record_count, DWORD{SCHEMA::MEMBERS.size()});
    for (std::size_t i = 0; i < lines.size(); ++i) {
        TABLE::check_line(lines[i], refuse);
        if (i >= TABLE::HEADER_LINES) {
            typename TABLE::RECORD record;
            compile_row<TABLE>(lines[i], record, csv_file, refuse);
            RECORD_CODEC<typename TABLE::RECORD>::write(writer, record);
            writer.put_text(PACKED_RECORD_END);
        }
    }
    writer.put_text(PACKED_DATABASE_END);
    return image;
}

/// The image, which must be written to its end, as a packed file.
void write_packed_image(const FIO_PATH& path, const PACKED_IMAGE& image, const PACKED_FORMAT& format);

/// A source table and everything that is wrong with it.
template <class RECORD>
struct EXAMINED_TABLE {
    std::vector<RECORD> records;  ///< none when the table has a fault in its format
    std::vector<PGMDEV_TABLE_FAULT> faults;
    QWORD section_size = 0;  ///< 0 when the table has a fault in its format
};

template <class TABLE>
EXAMINED_TABLE<typename TABLE::RECORD> examine_source_table(const FIO_PATH& csv_file) {
    EXAMINED_TABLE<typename TABLE::RECORD> table;
    COLLECTED_FAULTS faults;
    const FAULT_SINK collect = [&faults](const PGMDEV_TABLE_FAULT& fault, int) { faults.add(fault); };

    bool readable = false;
    std::vector<SOURCE_LINE> lines = read_source_table(csv_file, TABLE::KEEP_EMPTY, readable);
    SOURCE_LAYOUT layout;
    TABLE::check_layout(lines, readable, layout, collect);
    for (const SOURCE_LINE& line : lines) {
        TABLE::check_line(line, collect);
    }
    const auto rows = lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), TABLE::HEADER_LINES));
    const std::vector<SOURCE_LINE> header(lines.begin(), rows);
    lines.erase(lines.begin(), rows);
    std::vector<SOURCE_LINE> sound;
    for (SOURCE_LINE& line : lines) {
        typename TABLE::RECORD record;
        if (line.cells.size() == TABLE::HEADER.columns.size() && take_row<TABLE>(line, record, collect)) {
            table.records.push_back(std::move(record));
            sound.push_back(std::move(line));
        }
    }
    const bool well_formed = faults.empty();
    check_no_row_in_header<TABLE>(header, collect);
    TABLE::check_rows(sound, table.records, collect);
    if (well_formed) {
        TABLE::check_rows_together(sound, table.records, collect);
        table.section_size = layout.section_size;
    } else {
        table.records.clear();
    }
    table.faults = faults.take();
    return table;
}
