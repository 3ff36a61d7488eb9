#include "records/source_writer.h"

SOURCE_CELLS source_header_cells(const SOURCE_HEADER& header) {
    SOURCE_CELLS rows(2);
    for (const SOURCE_COLUMN& column : header.columns) {
        rows[0].emplace_back(column_type_name(column.kind));
        rows[1].emplace_back(column.name);
    }
    return rows;
}

std::string source_row_text(const std::vector<std::string>& cells) {
    std::string text;
    const char* separator = "";
    for (const std::string& cell : cells) {
        text += separator + cell;
        separator = ",";
    }
    return text + "\n";
}
