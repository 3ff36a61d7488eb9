// Files, which are in memory.

#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <utility>

#include "fio.h"
#include "gen.h"
#include "own_host.h"

namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string>& memory() {
    static auto* const files = new std::map<std::string, std::string>;
    return *files;
}

/// Where the copies are; goes with this object.
struct COPIES {
    fs::path directory = fs::temp_directory_path() / ("own-host-" + std::to_string(std::random_device{}()));
    int count = 0;

    COPIES() { fs::create_directories(directory); }
    ~COPIES() {
        std::error_code ignored;
        fs::remove_all(directory, ignored);
    }
} copies;

}  // namespace

void own_host_write(const std::string& name, const std::string& contents) {
    memory()[name] = contents;
}

std::string own_host_read(const std::string& name) {
    return memory()[name];
}

bool FIO_FILE_SYSTEM::exists(std::string name) {
    return memory().contains(name);
}

bool FIO_FILE_SYSTEM::status(std::string name, FIO_STATUS* status) {
    *status = {1, true};
    return exists(name);
}

fs::path fio_get_unc_full_path(std::string name) {
    fs::path copy = copies.directory / std::to_string(++copies.count);
    if (const auto found = memory().find(name); found != memory().end()) {
        std::ofstream(copy, std::ios::binary) << found->second;
    }
    return copy;
}

bool FIO_REPLACEMENT::write(std::span<const BYTE> contents) {
    m_contents.assign(contents.begin(), contents.end());
    return true;
}

bool FIO_REPLACEMENT::commit() {
    if (m_target.rfind("memory:", 0) != 0) {
        return false;
    }
    memory()[m_target].assign(m_contents.begin(), m_contents.end());
    return true;
}

std::string gen_get_tessary_path() {
    return "memory:";
}

std::string gen_get_device_db_fullpath() {
    return "memory:devices";
}

std::string gen_get_module_path() {
    if (const auto asking = std::exchange(own_host().asking, nullptr)) {
        asking();
    }
    return "memory:module";
}
