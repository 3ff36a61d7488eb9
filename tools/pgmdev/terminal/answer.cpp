#include "terminal/answer.h"

#include <fmt/core.h>

#include <cstdio>
#include <iostream>

#include "gen.h"
#include "terminal/did_you_mean.h"
#include "terminal/failure.h"
#include "terminal/text_table.h"

namespace {

JSON answer_json(const std::string& query, const ANSWER& answer) {
    JSON object{{"query", query}, {"found", answer.found}};
    const auto& content = std::get<JSON::OBJECT>(answer.content.value());
    for (std::size_t i = 0; i < content.names.size(); ++i) {
        object[content.names[i]] = content.values[i];
    }
    if (!answer.found) {
        object["candidates"] = answer.candidates;
    }
    return object;
}

void give(const std::string& query, const ANSWER& answer, bool batch, COMMAND& command) {
    if (!answer.found) {
        command.result = EXIT_NOT_FOUND;
        fmt::print(stderr, "pgmdev: {}{}\n", printable(answer.missing), printable(did_you_mean(answer.candidates)));
    }
    if (command.json) {
        print_json_answer(answer_json(query, answer), batch);
    } else if (answer.found) {
        answer.print();
        fmt::print("{}", batch && answer.is_block ? "\n" : "");
    }
}

void give_refusal(const std::string& query, const std::string& message, COMMAND& command) {
    command.result = EXIT_NOT_FOUND;
    fmt::print(stderr, "pgmdev: {}\n", printable(message));
    if (command.json) {
        const FAILURE failure{"usage", message, {}, {}, {}, {}};
        print_json_line({{"query", query}, {"found", false}, {"error", failure_json(failure)}});
    }
}

}  // namespace

void answer_each(const std::string& argument, COMMAND& command,
                 const std::function<ANSWER(const std::string& question)>& answer) {
    if (argument != "-") {
        give(argument, answer(gen_remove_leading_and_trailing_white_spaces(argument)), false, command);
        return;
    }
    for (std::string line; std::getline(std::cin, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();  // of a text file from Windows
        }
        const std::string question = gen_remove_leading_and_trailing_white_spaces(line);
        try {
            if (question.empty()) {
                throw USAGE_ERROR("a line without a question");
            }
            give(line, answer(question), true, command);
        } catch (const USAGE_ERROR& error) {
            give_refusal(line, error.what(), command);
        }
        std::fflush(stdout);  // whoever reads may be waiting for it
    }
}
