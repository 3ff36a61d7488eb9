#pragma once

/// \file
/// Sound source tables, and compiling each into some place.

#include <functional>
#include <string>
#include <vector>

#include "pgmdev/flash/source_fixture.h"
#include "pgmdev/profiles/fixture.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "support/reports.h"
#include "support/scratch.h"
#include "support/settings.h"

class Outputs : public testing::Test {
protected:
    using COMPILE = std::function<void(const std::string& output)>;

    Outputs() : m_installation(m_sources.path("install")) {
        m_sources.write("install/h/pgm_parts.txt", "// part, device, ...\n");
        const std::string flash = m_sources.write("flash.csv", flash_reference::table({flash_reference::data_row()}));
        const std::string profiles =
            m_sources.write("profiles.csv", dev_info_reference::source(dev_info_reference::rows()));
        m_compilers = {[flash](const std::string& output) {
                           PGMDEV_FLASH_MANAGER(false, 0, true, false).generate_flash_database(flash, output);
                       },
                       [profiles](const std::string& output) {
                           PGMDEV_DEV_INFO_MANAGER(true).generate_device_database(profiles, output);
                       }};
    }

    /// What a compiler writes into an ordinary file.
    std::string expected(const COMPILE& compile) {
        compile(m_sources.path("ordinary.pcf"));
        return read_file(m_sources.path("ordinary.pcf"));
    }

    const std::vector<COMPILE>& compilers() const { return m_compilers; }

private:
    SCRATCH m_sources;
    INSTALL_DIRECTORY m_installation;
    std::vector<COMPILE> m_compilers;
};
