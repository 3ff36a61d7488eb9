#pragma once

/// \file
/// Failures of the command: what could not be done, and what a person or a program can do about it.

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "msg.h"
#include "terminal/command.h"
#include "terminal/json.h"

/// What a failure tells, in the order in which people read it. Empty parts are left out.
struct FAILURE {
    std::string code;                ///< stable, for programs: lower case with underscores
    std::string message;             ///< what could not be done
    std::string path;                ///< with which file, as it was used
    std::vector<std::string> tried;  ///< what led to that path: option, environment variable, or default
    std::string advice;              ///< what to do next
    std::optional<MSG_INTERNAL_ERROR_REPORT> report;  ///< what the library said, with module and source
};

/// Ends the command with a failure.
class COMMAND_FAILURE : public std::runtime_error {
public:
    explicit COMMAND_FAILURE(FAILURE failure, EXIT_CODE result = EXIT_INTERNAL_ERROR)
        : std::runtime_error(failure.message), m_failure(std::move(failure)), m_result(result) {}

    const FAILURE& failure() const noexcept { return m_failure; }
    EXIT_CODE result() const noexcept { return m_result; }

private:
    FAILURE m_failure;
    EXIT_CODE m_result;
};

/// {"code","message","path","tried","advice","condition","module","source","line"}, those that are told.
JSON failure_json(const FAILURE& failure);

/// One paragraph for people.
std::string failure_text(const FAILURE& failure);

/// Tells a failure on standard error and, when answers are in JSON, as a document of one line on standard output:
/// {"error": failure_json}.
void tell_failure(const FAILURE& failure, bool json);
