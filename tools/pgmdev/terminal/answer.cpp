#include "terminal/answer.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "gen.h"
#include "terminal/did_you_mean.h"
#include "terminal/input.h"
#include "terminal/standard_error.h"

namespace {

JSON answer_json(const JSON& query, const ANSWER& answer) {
    JSON object{{"query", query}, {"found", answer.found}};
    object.append(answer.content);
    if (!answer.found) {
        object["candidates"] = answer.candidates;
    }
    if (answer.failure) {
        object["error"] = failure_json(*answer.failure);
    }
    return object;
}

/// The worst of what happened becomes the exit code.
void count(EXIT_CODE result, COMMAND& command) {
    command.result = std::max(command.result, result);
}

void give(const JSON& query, const ANSWER& answer, bool batch, COMMAND& command) {
    if (!answer.found) {
        count(answer.when_missing, command);
    }
    if (answer.failure) {
        count(EXIT_INTERNAL_ERROR, command);
    }
    if (!answer.found && !answer.missing.empty()) {
        print_error("pgmdev: {}{}", answer.missing, did_you_mean(answer.candidates));
    }
    if (command.json) {
        print_json_answer(answer_json(query, answer), batch);
    } else if (answer.print) {
        answer.print();
        fmt::print("{}", batch && answer.is_block ? "\n" : "");
    }
}

/// A line that could not be answered.
void give_failure(const std::string& query, const FAILURE& failure, EXIT_CODE result, COMMAND& command) {
    count(result, command);
    print_error("pgmdev: {}", failure_text(failure));
    if (command.json) {
        print_json_line({{"query", query}, {"found", false}, {"error", failure_json(failure)}});
    }
}

void give_line(const std::string& line, COMMAND& command,
               const std::function<ANSWER(const std::string& question)>& answer) {
    const std::string question = gen_remove_leading_and_trailing_white_spaces(line);
    try {
        if (question.empty()) {
            throw USAGE_ERROR("a line without a question");
        }
        give(line, answer(question), true, command);
    } catch (const USAGE_ERROR& error) {
        give_failure(line, {FAILURE_CODE::USAGE, error.message(), {}, {}, {}, {}}, EXIT_NOT_FOUND, command);
    } catch (const COMMAND_FAILURE& error) {
        give_failure(line, error.failure(), EXIT_INTERNAL_ERROR, command);
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
        give_failure(line, {FAILURE_CODE::INTERNAL, "the line could not be answered", {}, {}, {}, error.report()},
                     EXIT_INTERNAL_ERROR, command);
    }
}

}  // namespace

void give_answer(const JSON& query, const ANSWER& answer, COMMAND& command) {
    give(query, answer, false, command);
}

void answer_each(const std::string& argument, COMMAND& command,
                 const std::function<ANSWER(const std::string& question)>& answer) {
    if (argument != "-") {
        give_answer(argument, answer(gen_remove_leading_and_trailing_white_spaces(argument)), command);
        return;
    }
    INPUT_LINES lines;
    for (std::string line; lines.next(line);) {
        if (line.ends_with('\r')) {
            line.pop_back();  // of a text file from Windows
        }
        give_line(line, command, answer);
        if (std::fflush(stdout) != 0) {  // whoever reads may be waiting for it; where nobody can, no line has an answer
            throw std::system_error(errno, std::generic_category());
        }
    }
}
