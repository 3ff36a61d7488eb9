#include "terminal/failure.h"

#include <fmt/core.h>

#include <array>
#include <cstdio>

#include "terminal/quiet.h"
#include "terminal/standard_error.h"

namespace {

/// By code.
constexpr std::array CODE_NAMES{"usage",
                                "refused",
                                "file_unreadable",
                                "database_missing",
                                "database_unreadable",
                                "database_other_kind",
                                "database_other_stamp",
                                "database_other_version",
                                "database_damaged",
                                "source_table_unreadable",
                                "part_list_unreadable",
                                "table_refused",
                                "sfdp_refused",
                                "description_refused",
                                "system_flash_unreadable",
                                "output_not_writable",
                                "container_of_another_version",
                                "container_damaged",
                                "container_doubtful",
                                "container_unreadable",
                                "container_busy",
                                "block_of_another_version",
                                "entry_missing",
                                "entry_built_in",
                                "configuration_unreadable",
                                "internal"};

std::string fault_text(const FIELD_FAULT& fault) {
    std::string text = fault.place.empty() ? "" : fault.place + ": ";
    if (!fault.field.empty()) {
        text += fault.field + (fault.given.empty() ? " is missing" : " is \"" + fault.given + "\"");
    } else {
        text += "\"" + fault.given + "\"";
    }
    return text + ", accepted: " + fault.accepted + (fault.advice.empty() ? "" : "; " + fault.advice);
}

JSON fault_json(const FIELD_FAULT& fault) {
    const auto or_null = [](const std::string& text) { return text.empty() ? JSON() : JSON(text); };
    return {{"place", or_null(fault.place)},
            {"field", or_null(fault.field)},
            {"given", or_null(fault.given)},
            {"accepted", fault.accepted},
            {"advice", or_null(fault.advice)}};
}

}  // namespace

std::string code_name(FAILURE_CODE code) {
    return CODE_NAMES.at(static_cast<std::size_t>(code));
}

std::vector<std::string> code_names() {
    return {CODE_NAMES.begin(), CODE_NAMES.end()};
}

JSON failure_json(const FAILURE& failure) {
    JSON object{{"code", code_name(failure.code)}, {"message", failure.message}};
    if (!failure.path.empty()) {
        object["path"] = failure.path;
    }
    if (!failure.tried.empty()) {
        object["tried"] = failure.tried;
    }
    if (!failure.advice.empty()) {
        object["advice"] = failure.advice;
    }
    if (failure.report) {
        object["condition"] = failure.report->condition;
        object["module"] = failure.report->module;
        object["source"] = failure.report->file;
        object["line"] = static_cast<DWORD>(failure.report->line);
    }
    if (!failure.faults.empty()) {
        JSON faults = JSON::array();
        for (const FIELD_FAULT& fault : failure.faults) {
            faults.push_back(fault_json(fault));
        }
        object["faults"] = faults;
    }
    return object;
}

std::string failure_text(const FAILURE& failure) {
    std::string text = failure.message;
    if (!failure.path.empty()) {
        text += fmt::format(": {}", failure.path);
    }
    for (std::size_t i = 0; i < failure.tried.size(); ++i) {
        text += fmt::format("{}{}", i == 0 ? " (" : ", ", failure.tried[i]);
    }
    text += failure.tried.empty() ? "" : ")";
    if (!failure.advice.empty()) {
        text += fmt::format("; {}", failure.advice);
    }
    if (failure.report) {
        text += fmt::format(" [{}; {}, {}, line {}]", failure.report->condition, failure.report->module,
                            failure.report->file, failure.report->line);
    }
    return text;
}

void warn_of(const FAILURE& failure) {
    if (!is_quiet()) {
        print_error("pgmdev: warning: {}", failure_text(failure));
    }
}

void warn_without_memory(const char* text) noexcept {
    if (!is_quiet()) {
        for (const char* part : {"pgmdev: warning: ", text, "\n"}) {
            std::fputs(part, stderr);
        }
    }
}

void tell_failure(const FAILURE& failure, bool json) {
    for (const FIELD_FAULT& fault : failure.faults) {
        print_error("pgmdev: {}", fault_text(fault));
    }
    print_error("pgmdev: {}", failure_text(failure));
    if (json) {
        print_json_line({{"error", failure_json(failure)}});
    }
}
