#pragma once

// What a program tells this host, and asks it, besides the services.

#include <functional>
#include <string>
#include <vector>

#include "host_types.h"

/// What this host's reporter throws when it is told to throw.
struct OWN_HOST_THROWN OWN_FAILURE {
    std::string condition;
};

struct OWN_HOST {
    bool reporter_throws = false;                       ///< otherwise it returns
    std::function<void(const std::string&)> reporting;  ///< called with each report, unless empty
    std::function<void()> asking;                       ///< called once, when the library asks where its container is
    std::vector<std::string> reports;                   ///< module and condition
    std::vector<std::string> debug_formats;
    std::vector<std::string> mails;
};

OWN_HOST& own_host();

void own_host_set_value(const std::string& key, const std::string& value);

/// A file in memory.
void own_host_write(const std::string& name, const std::string& contents);
std::string own_host_read(const std::string& name);
