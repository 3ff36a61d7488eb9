#pragma once

/// \file
/// Catalog files as rows of cells, and the checks of a single cell.
///
/// Cells are separated by blanks or tabs. A `#` begins a comment that ends with the line; rows without cells are left
/// out.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "faults.h"

/// Longer names are taken for mistakes.
inline constexpr std::size_t MAX_NAME_LENGTH = 63;

struct SOURCE_ROW {
    SOURCE_PLACE place;
    std::vector<std::string> cells;
};

/// The lines of a file. That it cannot be read is a fault.
std::optional<std::vector<std::string>> read_lines(const std::filesystem::path& path, FAULTS& faults);

/// The rows of a file. A file that cannot be read is a fault and has none.
std::vector<SOURCE_ROW> read_rows(const std::filesystem::path& path, FAULTS& faults);

/// Whether the row has as many cells as `columns`, which names them, has words.
bool has_columns(const SOURCE_ROW& row, const std::string& columns, FAULTS& faults);

/// The cell as a decimal number from `lowest` to `highest`; `what` names it in the fault, and `to_have_more` what to do about
/// a number that is too high.
std::optional<int> read_number(const SOURCE_ROW& row, std::size_t cell, const char* what, int lowest, int highest,
                               FAULTS& faults, const char* to_have_more = "");

/// Whether a text can be a name: letters, digits and "_-.+", not too long, and none of the words with a meaning of
/// their own.
bool check_name(const SOURCE_PLACE& place, const std::string& name, const char* what, FAULTS& faults);

/// The parts of a comma-separated text.
std::vector<std::string> split_list(const std::string& text);

/// The text with ASCII letters in upper case.
std::string upper_case(std::string text);
