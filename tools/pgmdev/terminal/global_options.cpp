#include "terminal/global_options.h"

#include <fmt/core.h>

#include "cfg.h"
#include "gen.h"
#include "terminal/quiet.h"
#include "terminal/screen.h"

namespace {

void set_switch(const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    if (equals == 0 || equals == std::string::npos) {
        throw USAGE_ERROR(fmt::format("--set: expected KEY=VALUE, found \"{}\"", assignment));
    }
    cfg_set_value(assignment.substr(0, equals), assignment.substr(equals + 1));
}

}  // namespace

std::vector<GLOBAL_OPTION> global_options() {
    using VALUE = const std::string&;
    return {
        {"--json", "", "Answer with one JSON document on standard output", [](VALUE, COMMAND& c) { c.json = true; }},
        {"--db-dir", "DIR", "Directory of the device databases", [](VALUE dir, COMMAND&) { gen_set_device_db_fullpath(dir); }},
        {"--install-dir", "DIR", "Installation directory", [](VALUE dir, COMMAND&) { gen_set_tessary_path(dir); }},
        {"--module-dir", "DIR", "Directory of the device-data library",
         [](VALUE dir, COMMAND&) { gen_set_module_path(dir); }},
        {"--set", "KEY=VALUE", "Set a configuration value for this run; may be repeated",
         [](VALUE assignment, COMMAND&) { set_switch(assignment); }, true},
        {"--wide", "", "Tables on a terminal: all columns, whatever its width", [](VALUE, COMMAND&) { show_all_columns(); }},
        {"-q,--quiet", "", "No hints and no warnings", [](VALUE, COMMAND&) { be_quiet(); }},
        {"-v,--verbose", "", "Show the debug channel on standard error",
         [](VALUE, COMMAND&) { cfg_set_value("TESSARY_DEBUG_LEVEL", "2"); }},
    };
}
