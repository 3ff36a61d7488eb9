#pragma once

/// \file
/// Settings of the host that last as long as a test needs them.

#include <string>

#include "cfg.h"
#include "gen.h"
#include "ver.h"

/// A configuration value.
class SETTING {
public:
    SETTING(std::string key, const std::string& value) : m_key(std::move(key)) { cfg_set_value(m_key, value); }
    ~SETTING() { cfg_clear_value(m_key); }
    SETTING(const SETTING&) = delete;
    SETTING& operator=(const SETTING&) = delete;

private:
    std::string m_key;
};

/// The device-database directory.
class DEVICE_DB_DIRECTORY {
public:
    explicit DEVICE_DB_DIRECTORY(const std::string& path) { gen_set_device_db_fullpath(path); }
    ~DEVICE_DB_DIRECTORY() { gen_set_device_db_fullpath(""); }
    DEVICE_DB_DIRECTORY(const DEVICE_DB_DIRECTORY&) = delete;
    DEVICE_DB_DIRECTORY& operator=(const DEVICE_DB_DIRECTORY&) = delete;
};

/// The directory of the device-data library.
class MODULE_DIRECTORY {
public:
    explicit MODULE_DIRECTORY(const std::string& path) { gen_set_module_path(path); }
    ~MODULE_DIRECTORY() { gen_set_module_path(""); }
    MODULE_DIRECTORY(const MODULE_DIRECTORY&) = delete;
    MODULE_DIRECTORY& operator=(const MODULE_DIRECTORY&) = delete;
};

/// The installation directory.
class INSTALL_DIRECTORY {
public:
    explicit INSTALL_DIRECTORY(const std::string& path) { gen_set_tessary_path(path); }
    ~INSTALL_DIRECTORY() { gen_set_tessary_path(""); }
    INSTALL_DIRECTORY(const INSTALL_DIRECTORY&) = delete;
    INSTALL_DIRECTORY& operator=(const INSTALL_DIRECTORY&) = delete;
};

/// The version of the tool.
class TOOL_VERSION {
public:
    TOOL_VERSION(const std::string& version, DWORD service_pack, DWORD build) {
        ver_set_version(version, service_pack | build << 8);
    }
    ~TOOL_VERSION() { ver_set_version("", 0); }
    TOOL_VERSION(const TOOL_VERSION&) = delete;
    TOOL_VERSION& operator=(const TOOL_VERSION&) = delete;
};
