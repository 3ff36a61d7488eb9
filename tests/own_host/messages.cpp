// Messages, configuration and version.

#include <cstdarg>
#include <cstdio>
#include <map>

#include "cfg.h"
#include "msg.h"
#include "own_host.h"
#include "ver.h"

namespace {

std::map<std::string, std::string>& values() {
    static auto* const all = new std::map<std::string, std::string>;
    return *all;
}

}  // namespace

OWN_HOST& own_host() {
    static auto* const host = new OWN_HOST;
    return *host;
}

void MSG_INTERNAL_ERROR::report(const char* condition, const char* module, const char* /*file*/, int /*line*/) {
    const std::string text = condition;  // the caller's text may be gone once something else is asked for
    own_host().reports.push_back(std::string(module) + ": " + text);
    if (own_host().reporting) {
        own_host().reporting(text);
    }
    if (own_host().reporter_throws) {
        throw OWN_FAILURE{text};
    }
}

void MSG_INTERNAL_ERROR::report_varg(const char* module, const char* file, int line, const char* format, ...) {
    char text[1000];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    report(text, module, file, line);
}

void msg_local_vdebug(const char* logger, int level, const char* format, ...) {
    own_host().debug_formats.push_back(std::string(logger) + " " + std::to_string(level) + " " + format);
}

void own_host_set_value(const std::string& key, const std::string& value) {
    values()[key] = value;
}

ORVANE_BOOL cfg_is_on(const std::string& key, bool default_value) {
    const std::string value = cfg_get_value(key);
    return value.empty() ? default_value : value == "yes";
}

std::string cfg_get_value(const std::string& key) {
    const auto found = values().find(key);
    return found != values().end() ? found->second : "";
}

std::string ver_get_version() {
    return "";
}

DWORD ver_get_current_version_index_number() {
    return 0;
}
