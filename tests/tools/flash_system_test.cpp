#include <filesystem>

#include "command_fixture.h"

// `flash identify --system`, on directories that look like those of the kernel.

namespace {

using WORDS = std::vector<std::string>;

const std::string SPI_DEVICES = "sys/bus/spi/devices/";

/// A root directory with devices on its SPI bus.
class SYSTEM_ROOT {
public:
    SYSTEM_ROOT() { std::filesystem::create_directories(m_scratch.directory() / SPI_DEVICES); }

    void add(const std::string& device, const std::string& file, const std::string& contents) const {
        m_scratch.write(SPI_DEVICES + device + "/" + file, contents);
    }
    void add_dump(const std::string& device, const std::string& dump) const {
        add(device, "spi-nor/sfdp", read_file(std::string(TEST_SFDP_DIR) + "/" + dump + ".sfdp"));
    }
    std::string path(const std::string& below = "") const { return m_scratch.path(below); }

    JSON identified(int exit_code) const {
        const PROCESS_RESULT result = run_command({"--json", "flash", "identify", "--system", path(".")});
        EXPECT_EQ(result.exit_code, exit_code) << result.errors;
        return json_of(result.output);
    }

private:
    SCRATCH m_scratch;
};

}  // namespace

TEST(flash_identify_system, EveryFlashOfTheKernel) {
    const SYSTEM_ROOT root;
    root.add("spi0.0", "spi-nor/jedec_id", "ef4018\n");
    root.add("spi0.0", "spi-nor/manufacturer", "winbond\n");
    root.add("spi0.0", "spi-nor/partname", "w25q128\n");
    root.add_dump("spi0.0", "W25Q128JV");
    root.add("spi0.1", "modalias", "spi:other\n");
    root.add("spi1.0", "spi-nor/jedec_id", "20bb19104400\n");
    const JSON answer = root.identified(DONE);
    EXPECT_EQ(answer.at("query"), JSON::array({"ef4018", "20bb19104400"}));
    EXPECT_EQ(answer.at("found"), true);
    ASSERT_EQ(answer.at("devices").size(), 2U);
    const JSON& first = answer.at("devices").at(0);
    EXPECT_EQ(first.at("manufacturer_name"), "Winbond");
    EXPECT_FALSE(first.at("candidates").empty());
    EXPECT_EQ(first.at("system"), (JSON{{"device", "spi0.0"},
                                        {"jedec_id", "ef4018"},
                                        {"manufacturer", "winbond"},
                                        {"partname", "w25q128"},
                                        {"problems", JSON::array()}}));
    EXPECT_EQ(first.at("sfdp").at("density_bits"), 134217728);
    EXPECT_EQ(first.at("comparison").size(), 8U);
    const JSON& second = answer.at("devices").at(1);
    EXPECT_EQ(second.at("device_name"), "MT25QU256A");
    EXPECT_EQ(second.at("system").at("device"), "spi1.0");
    EXPECT_FALSE(second.contains("sfdp"));
    EXPECT_EQ(answer.at("longest_program_utime"), 4224);
}

TEST(flash_identify_system, DirectoryMayStandForAnyOfItsParents) {
    const SYSTEM_ROOT root;
    root.add("spi0.0", "spi-nor/jedec_id", "ef4018\n");
    for (const std::string directory : {".", "sys", "sys/bus/spi/devices"}) {
        const PROCESS_RESULT result = run_command({"flash", "identify", "--system", root.path(directory)});
        EXPECT_EQ(result.exit_code, DONE) << directory << result.errors;
        EXPECT_TRUE(contains(result.output, "The kernel calls it spi0.0\n")) << result.output;
    }
}

TEST(flash_identify_system, UnknownFlashGetsItsRecord) {
    const SYSTEM_ROOT root;
    root.add("spi0.0", "spi-nor/jedec_id", "1f4a08\n");
    root.add_dump("spi0.0", "AT25FF321A");
    const JSON device = root.identified(NOT_FOUND).at("devices").at(0);
    EXPECT_EQ(device.at("mapped"), false);
    EXPECT_EQ(device.at("record").at("device_name"), "UNKNOWN-1F4A08");
    EXPECT_EQ(device.at("record").at("device_bit_size"), 33554432);
}

TEST(flash_identify_system, WhatCannotBeReadIsToldOfThatFlash) {
    const SYSTEM_ROOT root;
    root.add("spi0.0", "spi-nor/jedec_id", "ef4018\n");
    root.add("spi0.0", "spi-nor/sfdp", "SFDP\x06");
    root.add("spi0.1", "spi-nor/jedec_id", "rubbish\n");
    root.add("spi0.2", "spi-nor/partname", "no id\n");
    root.add("spi0.3", "spi-nor/jedec_id", "ef4018\n");
    root.add("spi0.3", "spi-nor/partname/is/a/directory", "");
    root.add("spi0.4", "spi-nor/jedec_id", std::string(5000, 'f'));
    const JSON devices = root.identified(NOT_FOUND).at("devices");
    ASSERT_EQ(devices.size(), 5U);
    const auto problems = [&devices](std::size_t i) { return devices.at(i).at("system").at("problems"); };
    EXPECT_EQ(devices.at(0).at("mapped"), true);
    EXPECT_EQ(problems(0),
              JSON::array({"sfdp is refused: byte 05h, SFDP header: found the end of the dump, expected 16 bytes "
                           "for both headers"}));
    EXPECT_EQ(problems(1), JSON::array({"jedec_id is no identification: \"rubbish\" is not an identification response: "
                                        "expected pairs of hexadecimal digits"}));
    EXPECT_EQ(problems(2), JSON::array({"the kernel gives no jedec_id"}));
    EXPECT_EQ(devices.at(3).at("mapped"), true);
    EXPECT_EQ(problems(3), JSON::array({"partname cannot be read: it is a directory"}));
    EXPECT_EQ(problems(4),
              JSON::array({"jedec_id is larger than 4096 bytes, and is not used", "the kernel gives no jedec_id"}));
}

TEST(flash_identify_system, NamesCountWhereNoIdentificationIsTold) {
    const SYSTEM_ROOT root;
    root.add("spi0.0", "spi-nor/partname", "s25fl256s1\n");
    root.add("spi0.0", "spi-nor/manufacturer", "spansion\n");
    const JSON device = root.identified(DONE).at("devices").at(0);
    EXPECT_EQ(device.at("device_name"), "S25FL256S1");
    EXPECT_EQ(device.at("sure"), false);
    EXPECT_EQ(device.at("nearest").at(2).at("device_name"), "S25FL256S0");
    EXPECT_EQ(device.at("system").at("problems"), JSON::array({"the kernel gives no jedec_id"}));
}

TEST(flash_identify_system, DevicesStandInTheOrderOfTheirNumbers) {
    const SYSTEM_ROOT root;
    for (const char* device : {"spi10.0", "spi2.10", "spi2.9", "spi0", "spi0.0", "spi10"}) {
        root.add(device, "spi-nor/jedec_id", "ef4018\n");
    }
    const JSON devices = root.identified(DONE).at("devices");
    std::vector<std::string> names;
    for (const JSON& device : devices) {
        names.push_back(device.at("system").at("device"));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"spi0", "spi0.0", "spi2.9", "spi2.10", "spi10", "spi10.0"}));
}

TEST(flash_identify_system, NoFlashIsSaid) {
    const SYSTEM_ROOT root;
    const PROCESS_RESULT nothing = run_command({"flash", "identify", "--system", root.path(".")});
    EXPECT_EQ(nothing.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(nothing.errors, "no serial NOR flash: the kernel has no SPI device")) << nothing.errors;
    root.add("spi0.0", "modalias", "spi:other\n");
    const PROCESS_RESULT others = run_command({"flash", "identify", "--system", root.path(".")});
    EXPECT_EQ(others.exit_code, NOT_FOUND);
    EXPECT_TRUE(contains(others.errors, "no driver has bound one of the 1 SPI devices")) << others.errors;
    EXPECT_EQ(root.identified(NOT_FOUND).at("devices"), JSON::array());
}

TEST(flash_identify_system, DirectoryThatIsNoneIsSaid) {
    const SCRATCH scratch;
    expect_failure(run_command({"flash", "identify", "--system", scratch.path("none")}), WRONG_USAGE,
                   {"there is no such directory", scratch.path("none")});
    expect_failure(run_command({"flash", "identify", "--system", scratch.write("file", "")}), WRONG_USAGE,
                   {"it is no directory"});
    expect_failure(run_command({"flash", "identify", "--system", "a", "b"}), WRONG_USAGE,
                   {"expected at most one directory"});
}

#if defined(__linux__)
/// What a flash says whose jedec_id is a link to another file.
JSON system_with_link_to(const std::string& file) {
    const SYSTEM_ROOT root;
    root.add("spi0.0", "spi-nor/manufacturer", "winbond\n");
    std::filesystem::create_symlink(file, root.path(SPI_DEVICES + "spi0.0/spi-nor/jedec_id"));
    return root.identified(NOT_FOUND).at("devices").at(0).at("system");
}

TEST(flash_identify_system, FilesOfTheKernelHoldLessOrMoreThanTheyTell) {
    const std::string ostype = "/proc/sys/kernel/ostype";
    ASSERT_EQ(std::filesystem::file_size(ostype), 0U);
    const JSON of_size_0 = system_with_link_to(ostype);
    EXPECT_EQ(of_size_0.at("jedec_id"), "Linux");
    EXPECT_EQ(of_size_0.at("problems"),
              JSON::array({"jedec_id is no identification: \"Linux\" is not an identification "
                           "response: expected pairs of hexadecimal digits"}));
    const std::string address = "/sys/class/net/lo/address";
    ASSERT_EQ(std::filesystem::file_size(address), 4096U);
    const JSON of_size_4096 = system_with_link_to(address);
    EXPECT_EQ(of_size_4096.at("jedec_id"), "00:00:00:00:00:00");
    EXPECT_EQ(of_size_4096.at("problems"), JSON::array());
}
#endif

#if defined(_WIN32)
TEST(flash_identify_system, NeedsLinux) {
    expect_failure(run_command({"flash", "identify", "--system"}), WRONG_USAGE, {"--system needs Linux"});
}
#endif
