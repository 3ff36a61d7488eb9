#include <fmt/core.h>

#include <cstdio>
#include <exception>

#include "configuration/warnings.h"
#include "nouns.h"
#include "program.h"
#include "shell/services.h"
#include "terminal/failure.h"
#include "terminal/given_options.h"
#include "terminal/library_output.h"
#include "terminal/reports.h"

namespace {

EXIT_CODE fail(const FAILURE& failure, EXIT_CODE result, const COMMAND& command) {
    tell_failure(failure, command.json || is_given("--json"));
    std::fflush(stdout);
    return result;
}

FAILURE internal_error(const MSG_INTERNAL_ERROR_REPORT& report) {
    return {"internal", "internal error", "", {}, "the condition that did not hold tells more", report};
}

/// Carries out what the arguments ask for.
EXIT_CODE run(const std::vector<std::string>& arguments, COMMAND& command) try {
    if (!run_service(arguments) && !run_command_line(whole_command(), arguments, command)) {
        return command.result;
    }
    if (std::fflush(stdout) != 0) {
        fmt::print(stderr, "pgmdev: standard output cannot be written\n");
        return EXIT_INTERNAL_ERROR;
    }
    if (const auto report = last_report()) {  // the operation went on, and its answer has been given
        tell_failure(internal_error(*report), false);
        return EXIT_INTERNAL_ERROR;
    }
    return command.result;
} catch (const COMMAND_FAILURE& failure) {
    return fail(failure.failure(), failure.result(), command);
} catch (const USAGE_ERROR& error) {
    return fail({"usage", error.what(), "", {}, "", {}}, EXIT_USAGE, command);
} catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    return fail(internal_error(error.report()), EXIT_INTERNAL_ERROR, command);
} catch (const std::exception& error) {
    return fail({"internal", error.what(), "", {}, "", {}}, EXIT_INTERNAL_ERROR, command);
}

}  // namespace

int main(int argc, char** argv) {
    const PROGRAM program(argc, argv);
    const LIBRARY_OUTPUT library_output;
    COMMAND command;
    command.prepare = warn_of_configuration;
    remember_arguments(program.arguments());
    remember_reports();
    return run(program.arguments(), command);
}
