#include <gtest/gtest.h>

#include "pgmdev/flash/fixture.h"
#include "pgmdev/flash/probe.h"
#include "pgmdev/flash/source_fixture.h"
#include "pgmdev/parameters/fixture.h"
#include "support/scratch.h"
#include "support/settings.h"

// Databases and the container in directories whose names are trouble.

namespace {

namespace fs = std::filesystem;
namespace ref = flash_reference;

/// Below a temporary directory, each with what it is called in the test's name.
struct PLACE {
    const char* name;
    std::string path;
};

/// Longer than the 260 characters to which Windows limits plain paths.
std::string long_path() {
    std::string path = "long";
    for (int i = 0; i < 8; ++i) {
        path += "/" + std::string(40, static_cast<char>('a' + i));
    }
    return path;
}

class FileNames : public testing::TestWithParam<PLACE> {
protected:
    FileNames() {
        // One directory after another: what makes them all at once does not know paths of every length.
        std::string path = utf8_from_path(m_scratch.directory());
        for (const fs::path& part : path_from_utf8(GetParam().path)) {
            path += "/" + utf8_from_path(part);
            fs::create_directory(fio_get_unc_full_path(path));
        }
        m_directory = path;
    }

    std::string path(const std::string& name) const { return m_directory + "/" + name; }
    std::string contents(const std::string& name) const { return read_file(fio_get_unc_full_path(path(name))); }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(fio_get_unc_full_path(path(name)), std::ios::binary) << text;
    }

    SCRATCH m_scratch;
    std::string m_directory;
};

TEST_P(FileNames, ADatabaseIsCompiledAndLoaded) {
    write("table.csv", ref::table({ref::data_row()}));
    fs::create_directory(fio_get_unc_full_path(path("programmer")));
    FLASH_PROBE().generate_flash_database(path("table.csv"), path("programmer/pgm_flash.pcf"));
    EXPECT_EQ(contents("programmer/pgm_flash.pcf").substr(0, 8), ref::MAGIC);
    const DEVICE_DB_DIRECTORY directory(m_directory);
    EXPECT_EQ(FLASH_PROBE(false, 1, false, false).get_flash_count(), 1U);
}

TEST_P(FileNames, TheContainerIsWrittenAndRead) {
    const MODULE_DIRECTORY directory(m_directory);
    // Line ends and the end-of-text character of other systems: nothing is translated on the way.
    const std::string block = std::string("\r\n \n \r \x1A ") + '\0' + "\xFF";
    for (const unsigned which : {0U, 1U, 2U}) {
        ASSERT_TRUE(FLASH_INI_DIRECTORY::write(which, block));
    }
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), block);
    EXPECT_EQ(contents("pgm_flash.ini"), ini_reference::file({block, block, block}));
}

INSTANTIATE_TEST_SUITE_P(places, FileNames,
                         testing::Values(PLACE{"Blanks", "with  blanks/and more"}, PLACE{"Umlauts", "Ger\xC3\xA4te"},
                                         PLACE{"OtherScripts", "\xE6\x97\xA5\xE6\x9C\xAC/\xF0\x9F\x90\xA6"},
                                         PLACE{"LongPath", long_path()},
                                         PLACE{"LongPathOfOtherScripts", long_path() + "/\xE6\x97\xA5 \xC3\xA4"}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
