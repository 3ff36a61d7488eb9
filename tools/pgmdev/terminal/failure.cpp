#include "terminal/failure.h"

#include <fmt/core.h>

#include "terminal/text_table.h"

JSON failure_json(const FAILURE& failure) {
    JSON object{{"code", failure.code}, {"message", failure.message}};
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

void tell_failure(const FAILURE& failure, bool json) {
    fmt::print(stderr, "pgmdev: {}\n", printable(failure_text(failure)));
    if (json) {
        print_json_line({{"error", failure_json(failure)}});
    }
}
