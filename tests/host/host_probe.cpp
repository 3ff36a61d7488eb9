/// \file
/// Shows the host's services as a process of its own sees them: what is read once per process, what depends on the
/// environment or on where the library is, and what goes to standard error.
///
/// The arguments are operations, carried out in their order; each answer is a line on standard output.

#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "cfg.h"
#include "fio.h"
#include "gen.h"
#include "msg.h"
#include "program.h"
#include "utf8_path.h"

namespace {

using ARGUMENTS = std::deque<std::string>;

std::string next(ARGUMENTS& arguments) {
    std::string argument = arguments.at(0);
    arguments.pop_front();
    return argument;
}

void answer(const std::string& text) {
    std::printf("%s\n", text.c_str());
}

const std::map<std::string, std::function<void(ARGUMENTS&)>> OPERATIONS{
    {"install", [](ARGUMENTS&) { answer(gen_get_tessary_path()); }},
    {"device-db", [](ARGUMENTS&) { answer(gen_get_device_db_fullpath()); }},
    {"module", [](ARGUMENTS&) { answer(gen_get_module_path()); }},
    {"set-install", [](ARGUMENTS& a) { gen_set_tessary_path(next(a)); }},
    {"set-device-db", [](ARGUMENTS& a) { gen_set_device_db_fullpath(next(a)); }},
    {"set-module", [](ARGUMENTS& a) { gen_set_module_path(next(a)); }},
    {"value", [](ARGUMENTS& a) { answer("[" + cfg_get_value(next(a)) + "]"); }},
    {"is-on", [](ARGUMENTS& a) { answer(cfg_is_on(next(a), false) != 0 ? "on" : "off"); }},
    {"clear", [](ARGUMENTS& a) { cfg_clear_value(next(a)); }},
    {"set",
     [](ARGUMENTS& a) {
         const std::string key = next(a);
         cfg_set_value(key, next(a));
     }},
    {"enter", [](ARGUMENTS& a) { std::filesystem::current_path(path_from_utf8(next(a))); }},
    {"make-directory",
     [](ARGUMENTS& a) {
         const std::filesystem::path path = path_from_utf8(next(a));
         std::filesystem::remove(path);
         std::filesystem::create_directory(path);
     }},
    {"write-file",
     [](ARGUMENTS& a) {
         const std::string path = next(a);
         std::ofstream(fio_get_unc_full_path(path), std::ios::binary) << next(a);
     }},
    {"debug",
     [](ARGUMENTS& a) {
         const int level = std::stoi(next(a));
         msg_local_vdebug("PROBE", level, "%s at %d", next(a).c_str(), level);
     }},
    {"report",
     [](ARGUMENTS& a) {
         try {
             MSG_INTERNAL_ERROR::report(next(a).c_str(), "PROBE", "tests/host/host_probe", 7);
         } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
             answer(std::string("caught ") + error.what());
         }
     }},
    {"die-of-report",
     [](ARGUMENTS& a) { MSG_INTERNAL_ERROR::report(next(a).c_str(), "PROBE", "tests/host/host_probe", 8); }},
};

}  // namespace

int main(int argc, char** argv) {
    const PROGRAM program(argc, argv);
    ARGUMENTS arguments(program.arguments().begin(), program.arguments().end());
    while (!arguments.empty()) {
        OPERATIONS.at(next(arguments))(arguments);
    }
    return 0;
}
