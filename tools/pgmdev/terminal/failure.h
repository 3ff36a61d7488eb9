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

/// What kind of failure. Programs know them by their names, which are stable; docs/command.md says what each means.
enum class FAILURE_CODE {
    USAGE,
    REFUSED,
    FILE_UNREADABLE,
    DATABASE_MISSING,
    DATABASE_UNREADABLE,
    DATABASE_OTHER_KIND,
    DATABASE_OTHER_STAMP,
    DATABASE_OTHER_VERSION,
    DATABASE_DAMAGED,
    SOURCE_TABLE_UNREADABLE,
    PART_LIST_UNREADABLE,
    TABLE_REFUSED,
    SFDP_REFUSED,
    DESCRIPTION_REFUSED,
    SYSTEM_FLASH_UNREADABLE,
    OUTPUT_NOT_WRITABLE,
    CONTAINER_OF_ANOTHER_VERSION,
    CONTAINER_DAMAGED,
    CONTAINER_DOUBTFUL,
    CONTAINER_UNREADABLE,
    CONTAINER_BUSY,
    BLOCK_OF_ANOTHER_VERSION,
    ENTRY_MISSING,
    ENTRY_BUILT_IN,
    CONFIGURATION_UNREADABLE,
    INTERNAL
};

/// The name of a code: as in the enumeration, in lower case.
std::string code_name(FAILURE_CODE code);

/// The names of all codes.
std::vector<std::string> code_names();

/// What is wrong with one field of what the user has described.
struct FIELD_FAULT {
    std::string place;     ///< argument, or file and line; "": it stands nowhere
    std::string field;     ///< "": none is meant
    std::string given;     ///< "": nothing
    std::string accepted;  ///< what would be taken
    std::string advice;    ///< what to write instead; "": nothing in particular
    std::size_t line = 0;  ///< of the file; 0: no file has it
};

/// What a failure tells, in the order in which people read it. Empty parts are left out.
struct FAILURE {
    FAILURE_CODE code;
    std::string message;             ///< what could not be done
    std::string path;                ///< with which file, as it was used
    std::vector<std::string> tried;  ///< what led to that path: option, environment variable, or default
    std::string advice;              ///< what to do next
    std::optional<MSG_INTERNAL_ERROR_REPORT> report;  ///< what the library said, with module and source
    std::vector<FIELD_FAULT> faults = {};             ///< of a description: for people, a line each
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

/// {"code","message","path","tried","advice","condition","module","source","line","faults"}, those that are told.
JSON failure_json(const FAILURE& failure);

/// One paragraph for people.
std::string failure_text(const FAILURE& failure);

/// Tells on standard error of what goes wrong without ending the command, unless warnings are left out.
void warn_of(const FAILURE& failure);

/// The same by a text that needs no memory.
void warn_without_memory(const char* text) noexcept;

/// Tells a failure on standard error and, when answers are in JSON, as a document of one line on standard output:
/// {"error": failure_json}.
void tell_failure(const FAILURE& failure, bool json);
