#include "records/cells.h"

#include "pgm_common.h"

namespace {

constexpr const char* EMPTY_CELL = "string.size() > 0";
constexpr const char* NOT_A_NAME = "found";

}  // namespace

const char* take_text(const CELL_SYNTAX& syntax, const std::string& cell, std::string& value) {
    value = cell;
    return cell.empty() && !syntax.allow_empty ? EMPTY_CELL : nullptr;
}

const char* take_bool(const CELL_SYNTAX& syntax, const std::string& cell, bool& value) {
    value = cell == "TRUE";
    return value || cell == "FALSE" || (cell.empty() && syntax.allow_empty) ? nullptr : syntax.not_a_bool;
}

const char* take_number(const CELL_SYNTAX& syntax, const std::string& cell, DWORD& value) {
    bool valid = false;
    value = PGM_COMMON::convert_string_to_dword(cell, !syntax.allow_empty, &valid, nullptr, true);
    return valid ? nullptr : NOT_A_NUMBER;
}

const char* take_number_or_report(const CELL_SYNTAX& syntax, const std::string& cell, DWORD& value) {
    if (cell.empty() && !syntax.allow_empty) {
        return EMPTY_CELL;
    }
    value = PGM_COMMON::convert_string_to_dword(cell, !syntax.allow_empty, nullptr, nullptr, true);
    return value != 0 ? nullptr : take_number(syntax, cell, value);
}

const char* take_name(const CELL_SYNTAX& syntax, std::string_view member, PGMDEV_MANAGER_TYPE kind,
                      const std::string& cell, DWORD& value) {
    return syntax.find_name(member, kind, cell, value) ? nullptr : NOT_A_NAME;
}
