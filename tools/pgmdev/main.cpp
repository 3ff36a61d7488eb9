#include <fmt/core.h>

#include <cstdio>
#include <exception>

#include "msg.h"
#include "nouns.h"
#include "program.h"
#include "shell/services.h"

namespace {

void show_internal_error(const MSG_INTERNAL_ERROR_REPORT& report) {
    fmt::print(stderr, "pgmdev: internal error: {}\n        ({}, {}, line {})\n", report.condition, report.module,
               report.file, report.line);
}

}  // namespace

int main(int argc, char** argv) {
    const PROGRAM program(argc, argv);
    COMMAND command;
    bool reported = false;
    MSG_INTERNAL_ERROR::set_handler([&reported](const MSG_INTERNAL_ERROR_REPORT& report) {
        reported = true;
        show_internal_error(report);
        throw MSG_INTERNAL_ERROR_EXCEPTION(report);
    });
    try {
        const std::vector<std::string>& arguments = program.arguments();
        if (!run_service(arguments) && !run_command_line(whole_command(), arguments, command)) {
            return command.result;
        }
    } catch (const USAGE_ERROR& error) {
        fmt::print(stderr, "pgmdev: {}\n", error.what());
        return EXIT_USAGE;
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
        return EXIT_INTERNAL_ERROR;
    } catch (const std::exception& error) {
        fmt::print(stderr, "pgmdev: {}\n", error.what());
        return EXIT_INTERNAL_ERROR;
    }
    if (std::fflush(stdout) != 0) {
        fmt::print(stderr, "pgmdev: standard output cannot be written\n");
        return EXIT_INTERNAL_ERROR;
    }
    return reported ? EXIT_INTERNAL_ERROR : command.result;
}
