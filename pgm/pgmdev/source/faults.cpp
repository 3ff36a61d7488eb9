#include "source/faults.h"

#include <algorithm>
#include <sstream>

#include "msg.h"
#include "report.h"

namespace {

constexpr int REFUSAL_DEBUG_LEVEL = 1;

}  // namespace

FAULT_SINK refusing_sink(const FIO_PATH& csv_file, const char* file) {
    return [table = csv_file.fullpath(), file](const PGMDEV_TABLE_FAULT& fault, int check_line) {
        msg_local_vdebug("PGMDEV", REFUSAL_DEBUG_LEVEL, "%s", describe_fault(fault, table).c_str());
        pgmdev_report(fault.condition.c_str(), file, check_line);
    };
}

std::string describe_fault(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name) {
    const bool is_fault = fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT;
    std::ostringstream text;
    text << file_name;
    if (fault.line != 0) {
        text << ':' << fault.line;
    }
    if (fault.column != 0) {
        text << ':' << fault.column;
    }
    text << (is_fault ? ": fault: " : ": warning: ");
    if (!fault.row.empty()) {
        text << "row " << fault.row << ": ";
    }
    if (!fault.member.empty()) {
        text << "member " << fault.member << ": ";
    }
    if (!fault.cell.empty()) {
        text << "found \"" << fault.cell << "\", ";
    }
    text << (is_fault ? "expected " : "") << fault.expected;
    if (!fault.condition.empty()) {
        text << " [" << fault.condition << ']';
    }
    return text.str();
}

void sort_faults(std::vector<PGMDEV_TABLE_FAULT>& faults) {
    std::stable_sort(faults.begin(), faults.end(),
                     [](const PGMDEV_TABLE_FAULT& a, const PGMDEV_TABLE_FAULT& b) { return a.line < b.line; });
}

bool has_fault(const std::vector<PGMDEV_TABLE_FAULT>& faults) noexcept {
    return std::any_of(faults.begin(), faults.end(), [](const PGMDEV_TABLE_FAULT& fault) {
        return fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT;
    });
}
