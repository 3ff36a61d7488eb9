#include "run.h"

#include <fmt/core.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <system_error>

#include "cfg.h"
#include "configuration/warnings.h"
#include "gen.h"
#include "nouns.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_hps_nand_mgr.h"
#include "pgmdev_hps_spi_mgr.h"
#include "pgmdev_user_flash.h"
#include "shell/services.h"
#include "terminal/failure.h"
#include "terminal/given_options.h"
#include "terminal/library_output.h"
#include "terminal/quiet.h"
#include "terminal/reports.h"
#include "terminal/screen.h"
#include "terminal/standard_error.h"

namespace {

/// Set by options such as -v and --user, and while a source table is compiled for a comparison.
const std::array<std::string, 3> KEYS_THAT_VERBS_SET{"TESSARY_DEBUG_LEVEL", "TESSARY_OUTBOX_DIR",
                                                     PGMDEV_USER_FLASH::CONFIGURATION_KEY};

EXIT_CODE fail(const FAILURE& failure, EXIT_CODE result, const COMMAND& command) {
    try {
        tell_failure(failure, command.json || is_given("--json"));
    } catch (const std::bad_alloc&) {
        throw;  // whoever runs this can say so without memory
    } catch (const std::exception&) {
        return EXIT_INTERNAL_ERROR;  // a document on standard output that cannot be written
    }
    return std::fflush(stdout) == 0 ? result : EXIT_INTERNAL_ERROR;
}

FAILURE internal_error(const MSG_INTERNAL_ERROR_REPORT& report) {
    return {FAILURE_CODE::INTERNAL, "internal error", "", {}, "the condition that did not hold tells more", report};
}

/// Carries out what the arguments ask for, and tells what goes wrong.
EXIT_CODE carry_out(const std::vector<std::string>& arguments, COMMAND& command) try {
    const bool only_help = !run_service(arguments) && !run_command_line(whole_command(), arguments, command);
    const bool is_flushed = std::fflush(stdout) == 0;
    const int reason = errno;
    if (!is_flushed || std::ferror(stdout) != 0) {
        print_error("pgmdev: standard output cannot be written{}", is_flushed ? "" : ": " + output_fault(reason));
        return EXIT_INTERNAL_ERROR;
    }
    const auto report = last_report();
    if (!only_help && report) {  // the operation went on, and its answer has been given
        tell_failure(internal_error(*report), false);
        return EXIT_INTERNAL_ERROR;
    }
    return command.result;
} catch (const COMMAND_FAILURE& failure) {
    return fail(failure.failure(), failure.result(), command);
} catch (const USAGE_ERROR& error) {
    return fail({FAILURE_CODE::USAGE, error.message(), "", {}, "", {}}, EXIT_USAGE, command);
} catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    return fail(internal_error(error.report()), EXIT_INTERNAL_ERROR, command);
} catch (const std::bad_alloc&) {
    return fail({FAILURE_CODE::INTERNAL, "no memory is left", "", {}, "", {}}, EXIT_INTERNAL_ERROR, command);
} catch (const std::system_error& error) {
    const bool is_output = std::ferror(stdout) != 0;  // which those who print call a file
    const std::string what =
        is_output ? "standard output cannot be written: " + output_fault(error.code().value()) : error.what();
    return fail({FAILURE_CODE::INTERNAL, what, "", {}, "", {}}, EXIT_INTERNAL_ERROR, command);
} catch (const std::exception& error) {
    return fail({FAILURE_CODE::INTERNAL, error.what(), "", {}, "", {}}, EXIT_INTERNAL_ERROR, command);
}

/// What a run has set, in the host, in the library and in the command, goes with it.
class SETTINGS_OF_A_RUN {
public:
    explicit SETTINGS_OF_A_RUN(const std::vector<std::string>& arguments) : m_handler(remember_reports()) {
        forget_report();
        remember_arguments(arguments);
    }
    ~SETTINGS_OF_A_RUN() {
        try {
            forget_settings();
        } catch (const std::bad_alloc&) {  // who has no memory for this has none for another run
        }
        MSG_INTERNAL_ERROR::set_handler(m_handler);
    }
    SETTINGS_OF_A_RUN(const SETTINGS_OF_A_RUN&) = delete;
    SETTINGS_OF_A_RUN& operator=(const SETTINGS_OF_A_RUN&) = delete;

private:
    static void forget_settings() {
        for (const std::string& assignment : given_values("--set")) {
            cfg_clear_value(assignment.substr(0, assignment.find('=')));
        }
        for (const std::string& key : KEYS_THAT_VERBS_SET) {
            cfg_clear_value(key);
        }
        gen_set_device_db_fullpath("");
        gen_set_tessary_path("");
        gen_set_module_path("");
        be_quiet(false);
        show_all_columns(false);
        PGMDEV_HPS_NAND_MGR::delete_mgr();
        PGMDEV_HPS_SPI_MGR::delete_mgr();
        PGMDEV_HPS_MGR::delete_mgr();
    }

    MSG_INTERNAL_ERROR::HANDLER m_handler;
};

}  // namespace

int run_pgmdev(const std::vector<std::string>& arguments) {
    const LIBRARY_OUTPUT library_output;
    const SETTINGS_OF_A_RUN settings(arguments);
    COMMAND command;
    command.prepare = warn_of_configuration;
    return carry_out(arguments, command);
}
