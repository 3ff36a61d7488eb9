#include "files/scratch_directory.h"

#include <fmt/core.h>

#include <random>

#include "file_kind.h"
#include "utf8_path.h"

SCRATCH_DIRECTORY::SCRATCH_DIRECTORY()
    : m_directory(std::filesystem::temp_directory_path() /
                  fmt::format("pgmdev-{:08x}{:08x}", std::random_device{}(), std::random_device{}())) {
    std::filesystem::create_directory(m_directory);
}

SCRATCH_DIRECTORY::~SCRATCH_DIRECTORY() {
    remove_with_contents(m_directory);  // what is left is in the system's directory for such files
}

std::string SCRATCH_DIRECTORY::path(const std::string& name) const {
    return utf8_from_path((m_directory / name).make_preferred());
}
