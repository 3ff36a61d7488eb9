#pragma once

/// \file
/// Answers: the one shape of what the command says to a question, for people and for programs, single or in a batch.
///
/// For programs an answer is an object: "query", the question as it was given; "found"; then, when something was found,
/// the members of its content, and otherwise what is known all the same, and "candidates", names that may have been
/// meant. A line of a batch that is no question has "error" instead of them, and an answer of which a part could not be had
/// has it besides.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "terminal/command.h"
#include "terminal/failure.h"
#include "terminal/json.h"

struct ANSWER {
    bool found = true;
    JSON content = JSON::object();        ///< the members that the answer has for programs
    std::function<void()> print;          ///< shows the answer to people; none: there is nothing to show
    bool is_block = false;                ///< of several lines, so that a blank line sets it apart in a batch
    std::string missing;                  ///< what was not found: a sentence for people, without its end; "": none
    std::vector<std::string> candidates;  ///< names that may have been meant
    EXIT_CODE when_missing = EXIT_NOT_FOUND;
    std::optional<FAILURE> failure;  ///< why a part of the answer is missing; people have been told
};

/// Gives the answer to the only question.
void give_answer(const JSON& query, const ANSWER& answer, COMMAND& command);

/// Answers the argument, or, when that is "-", every line of standard input, as it comes: one answer for each line,
/// whatever it holds. White space around a question does not count. The result tells whether all was found. Where answers
/// cannot be written, it ends with std::system_error.
void answer_each(const std::string& argument, COMMAND& command,
                 const std::function<ANSWER(const std::string& question)>& answer);
