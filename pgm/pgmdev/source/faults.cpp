#include "source/faults.h"

#include <algorithm>

#include "msg.h"
#include "report.h"

namespace {

constexpr int REFUSAL_DEBUG_LEVEL = 1;

void shorten(std::string& text) {
    if (text.size() > COLLECTED_FAULTS::LONGEST_TEXT) {
        text = text.substr(0, COLLECTED_FAULTS::LONGEST_TEXT) + "...";
    }
}

}  // namespace

void trace_refusal(const PGMDEV_TABLE_FAULT& fault, const FIO_PATH& csv_file) {
    msg_local_vdebug(PGMDEV_MODULE, REFUSAL_DEBUG_LEVEL, "%s", describe_fault(fault, csv_file.fullpath()).c_str());
}

FAULT_SINK refusing_sink(const FIO_PATH& csv_file, const char* file) {
    return [csv_file, file](const PGMDEV_TABLE_FAULT& fault, int check_line) {
        trace_refusal(fault, csv_file);
        pgmdev_report(fault.condition.c_str(), file, check_line);
    };
}

std::string describe_fault(const PGMDEV_TABLE_FAULT& fault, const std::string& file_name) {
    const bool is_fault = fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT;
    std::string text = file_name;
    if (fault.line != 0) {
        text += ':' + std::to_string(fault.line);
    }
    if (fault.column != 0) {
        text += ':' + std::to_string(fault.column);
    }
    text += is_fault ? ": fault: " : ": warning: ";
    if (!fault.row.empty()) {
        text += "row " + fault.row + ": ";
    }
    if (!fault.member.empty()) {
        text += "member " + fault.member + ": ";
    }
    if (!fault.cell.empty()) {
        text += "found \"" + fault.cell + "\", ";
    }
    text += (is_fault ? "expected " : "") + fault.expected;
    if (!fault.condition.empty()) {
        text += " [" + fault.condition + ']';
    }
    return text;
}

void COLLECTED_FAULTS::add(PGMDEV_TABLE_FAULT fault) {
    if (m_faults.size() == MOST) {
        ++m_further;
        if (fault.severity == PGMDEV_TABLE_FAULT::SEVERITY::FAULT) {
            m_severity_of_further = fault.severity;
        }
        return;
    }
    shorten(fault.row);
    shorten(fault.cell);
    m_faults.push_back(std::move(fault));
}

std::vector<PGMDEV_TABLE_FAULT> COLLECTED_FAULTS::take() {
    sort_faults(m_faults);
    if (m_further > 0) {
        PGMDEV_TABLE_FAULT others;
        others.severity = m_severity_of_further;
        others.expected =
            (m_severity_of_further == PGMDEV_TABLE_FAULT::SEVERITY::FAULT ? "fewer findings: of " : "of ") +
            std::to_string(MOST + m_further) + ", the first " + std::to_string(MOST) + " are listed";
        m_faults.push_back(std::move(others));
    }
    return std::move(m_faults);
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
