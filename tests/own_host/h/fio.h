#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host_types.h"

/// A name, as it was given.
class FIO_PATH {
public:
    FIO_PATH(std::string name) : m_name(std::move(name)) {}
    FIO_PATH(const char* name) : m_name(name) {}

    std::string fullpath() const { return m_name; }

private:
    std::string m_name;
};

struct FIO_STATUS {
    int links;
    bool regular;
};

struct FIO_FILE_SYSTEM {
    static bool exists(std::string name);
    static bool status(std::string name, FIO_STATUS* status);
};

/// Files are in memory. For whoever opens one there is a copy on the disk.
std::filesystem::path fio_get_unc_full_path(std::string name);

class FIO_REPLACEMENT {
public:
    explicit FIO_REPLACEMENT(FIO_PATH target) : m_target(target.fullpath()) {}

    bool write(std::span<const BYTE> contents);
    bool commit();

private:
    std::string m_target;
    std::vector<BYTE> m_contents;
};
