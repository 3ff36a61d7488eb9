#include <filesystem>

#include "command_fixture.h"
#include "flash_source.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"

// Outputs replace nothing but their like, and what is damaged is not taken for missing.

namespace {

namespace fs = std::filesystem;
namespace ref = ini_reference;

const std::string SPI_STAMP = "9095cbfc6f5b69d3eb5d625df882a316";
const std::string NAND_STAMP = "79b884d001a0760b19c475920183ef66";

std::string nand_record() {
    return ref::le32(0xEC) + ref::le32(0xD3) + ref::le32(0x40000000) + ref::le32(0);
}

/// A module directory with a container.
class CONTAINER_FILE {
public:
    explicit CONTAINER_FILE(const std::string& bytes) : m_file(m_scratch.write("pgm_flash.ini", bytes)) {}

    PROCESS_RESULT run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--module-dir", m_scratch.directory().string()});
        return run_command(arguments);
    }
    JSON refusal(std::vector<std::string> arguments, int exit_code, const std::string& code) const {
        arguments.insert(arguments.begin(), "--json");
        return json_failure(run(arguments), exit_code, code);
    }
    const std::string& path() const { return m_file; }
    /// As messages spell it: below the directory that was given, with a slash on every system.
    std::string told_path() const { return m_scratch.directory().string() + "/pgm_flash.ini"; }
    std::string bytes() const { return read_file(m_file); }
    const SCRATCH& scratch() const { return m_scratch; }

private:
    SCRATCH m_scratch;
    std::string m_file;
};

}  // namespace

TEST(nothing_destroyed, AnOutputThatIsTheInput) {
    const SCRATCH scratch;
    const std::string text = FLASH_SOURCE().row().text();
    const std::string csv = scratch.write("table.csv", text);
    fs::create_hard_link(csv, scratch.path("other.csv"));
    for (const std::string& output : {csv, scratch.path("other.csv"), scratch.path("none/../table.csv")}) {
        fs::create_directory(scratch.path("none"));
        const JSON error =
            json_failure(run_command({"--json", "flash", "compile", "--force", csv, output}), WRONG_USAGE, "refused");
        EXPECT_TRUE(contains(error.at("message"), "input"));
        EXPECT_EQ(error.at("path"), output);
        EXPECT_EQ(read_file(csv), text);
    }
}

TEST(nothing_destroyed, AnOutputThatIsNoDatabase) {
    const SCRATCH scratch;
    const std::string csv = scratch.write("table.csv", FLASH_SOURCE().row().text());
    const std::string profiles = std::string(TEST_DEVICES_DIR) + "/programmer/pgm_dev_info.pcf";
    for (const std::string& old : {std::string("root:x:0:0"), std::string("x"), read_file(csv), read_file(profiles)}) {
        const std::string output = scratch.write("output", old);
        json_failure(run_command({"--json", "flash", "compile", csv, output}), WRONG_USAGE, "refused");
        EXPECT_EQ(read_file(output), old);
    }
    EXPECT_EQ(run_command({"flash", "compile", csv, scratch.path("output"), "--force"}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "compile", csv, scratch.path("output")}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "compile", csv, scratch.write("empty", "")}).exit_code, DONE);
    EXPECT_EQ(run_command({"flash", "dump", scratch.path("empty")}).exit_code, DONE);
}

TEST(nothing_destroyed, ABlockIsNotCopiedOverSomethingElse) {
    const std::string block = NAND_STAMP + nand_record();
    const CONTAINER_FILE container(ref::file(ref::BLOCKS{"free", std::nullopt, block}));
    container.refusal({"params", "read", "2", container.path(), "--force"}, WRONG_USAGE, "refused");
    const std::string note = container.scratch().write("note.txt", "a note");
    container.refusal({"params", "read", "2", note}, WRONG_USAGE, "refused");
    container.refusal({"params", "read", "0", note}, WRONG_USAGE, "refused");
    EXPECT_EQ(read_file(note), "a note");
    EXPECT_EQ(container.run({"params", "read", "0", note, "--force"}).exit_code, DONE);
    EXPECT_EQ(read_file(note), "free");
    const std::string copy = container.scratch().write("copy.bin", NAND_STAMP + "older");
    EXPECT_EQ(container.run({"params", "read", "2", copy}).exit_code, DONE);
    EXPECT_EQ(read_file(copy), block);
}

TEST(nothing_destroyed, TheFormOfABlockIsChecked) {
    const std::string good = ref::file(ref::BLOCKS{"free", std::nullopt, std::nullopt});
    const CONTAINER_FILE container(good);
    const auto write = [&](const std::string& bytes) { return container.scratch().write("block.bin", bytes); };
    const auto refused = [&](const char* block, const std::string& bytes) {
        const JSON error = container.refusal({"params", "write", block, write(bytes)}, WRONG_USAGE, "refused");
        EXPECT_EQ(container.bytes(), good);
        return error.value("message", "");
    };
    EXPECT_TRUE(contains(refused("1", "anything"), SPI_STAMP));
    EXPECT_TRUE(contains(refused("2", SPI_STAMP + nand_record()), NAND_STAMP));
    EXPECT_TRUE(contains(refused("2", NAND_STAMP), "a record"));
    EXPECT_TRUE(contains(refused("2", NAND_STAMP + nand_record() + "x"), "record 1, which begins at byte 48, is cut"));
    EXPECT_TRUE(contains(refused("2", NAND_STAMP + nand_record().substr(4)), "record 0, which begins at byte 32"));
    EXPECT_TRUE(contains(refused("1", SPI_STAMP + std::string(20, '\0')), "is cut"));

    const std::string two = NAND_STAMP + nand_record() + nand_record();
    EXPECT_EQ(container.run({"params", "write", "2", write(two)}).exit_code, DONE);
    EXPECT_EQ(container.run({"params", "write", "1", write("anything"), "--raw"}).exit_code, DONE);
    EXPECT_EQ(container.bytes(), ref::file(ref::BLOCKS{"free", "anything", two}));
}

TEST(nothing_destroyed, AListThatIsNotReadWholeIsSaidToBe) {
    const std::string whole = NAND_STAMP + nand_record();
    const std::vector<std::pair<std::string, const char*>> blocks{
        {"anything", "it does not begin with the stamp"}, {whole + "x", "record 1, which begins at byte 48, is cut"}};
    for (const auto& [bytes, fault] : blocks) {
        const CONTAINER_FILE container(ref::file(ref::BLOCKS{"free", std::nullopt, std::nullopt}));
        const std::string block = container.scratch().write("block.bin", bytes);
        ASSERT_EQ(container.run({"params", "write", "2", block, "--raw"}).exit_code, DONE);
        const PROCESS_RESULT listed = container.run({"hps", "nand"});
        EXPECT_EQ(listed.exit_code, DONE);
        EXPECT_TRUE(contains(
            listed.errors, "warning: the block \"HPS NAND\" holds more than this version reads: " + std::string(fault)))
            << listed.errors;
        EXPECT_TRUE(contains(listed.errors, "to give it up: params remove 2")) << listed.errors;
        EXPECT_EQ(container.run({"hps", "spi"}).errors, "");
        EXPECT_EQ(container.run({"-q", "hps", "nand"}).errors, "");
    }
    const CONTAINER_FILE sound(ref::file(ref::BLOCKS{"free", std::nullopt, whole}));
    EXPECT_EQ(sound.run({"hps", "nand"}).errors, "");
}

TEST(nothing_destroyed, ADamagedContainerIsSaidToBe) {
    const std::string good = ref::file(ref::BLOCKS{"free", std::nullopt, NAND_STAMP + nand_record()});
    for (const std::string& bytes : {std::string("x"), good.substr(0, 30), good.substr(0, good.size() - 1), good + "x",
                                     good.substr(0, 20) + "-" + good.substr(21)}) {
        const CONTAINER_FILE container(bytes);
        const std::string block = container.scratch().write("block.bin", "block");
        const std::vector<std::vector<std::string>> refused{
            {"params", "list"},
            {"params", "read", "0"},
            {"params", "remove", "0"},
            {"params", "write", "0", block},
            {"hps", "remove", "nand", "0"},
            {"hps", "add", "nand", "manufacturer_id=1", "device_id=1", "device_byte_size=1024"}};
        for (const auto& arguments : refused) {
            SCOPED_TRACE(testing::PrintToString(arguments));
            const JSON error = container.refusal(arguments, INTERNAL_ERROR, "container_damaged");
            EXPECT_TRUE(contains(error.at("path"), "pgm_flash.ini"));
            EXPECT_EQ(error.at("tried"), JSON::array({"option --module-dir"}));
            EXPECT_TRUE(contains(error.at("advice"), "to give it up"));
        }
        const PROCESS_RESULT list = container.run({"hps", "nand"});
        EXPECT_EQ(list.exit_code, DONE);
        EXPECT_TRUE(contains(list.errors, "warning: the parameter container cannot be read")) << list.errors;
        EXPECT_EQ(container.bytes(), bytes);
    }
}

TEST(nothing_destroyed, ContainersWithoutBlocksAreSound) {
    for (const std::string& bytes : {std::string(), ref::file(ref::BLOCKS{}), ref::file_of({"a", {}, {}, {}, "b"})}) {
        const CONTAINER_FILE container(bytes);
        const PROCESS_RESULT list = container.run({"params", "list"});
        EXPECT_EQ(list.exit_code, DONE) << list.errors;
        EXPECT_EQ(list.errors, "");
    }
}

TEST(nothing_destroyed, ADoubtfulContainerIsReadAndNotChangedWithoutForce) {
    const std::string written = ref::file(ref::BLOCKS{"free", std::nullopt, NAND_STAMP + nand_record()});
    std::string flipped = written;
    flipped[flipped.size() - 8] = '\x41';  // a size of flash
    const std::vector<std::vector<std::string>> changes{
        {"hps", "add", "nand", "manufacturer_id=1", "device_id=2", "device_byte_size=0x1000"},
        {"hps", "edit", "nand", "0", "device_id=2"},
        {"hps", "remove", "nand", "0"},
        {"params", "set", "0", "BYTE=1"},
        {"params", "write", "0", ""},
        {"params", "remove", "0"}};
    for (std::vector<std::string> change : changes) {
        const CONTAINER_FILE container(flipped);
        container.scratch().write("pgm_flash.ini.info", ref::info(written));
        if (change.back().empty()) {
            change.back() = container.scratch().write("block.bin", "bytes");
        }
        const JSON error = container.refusal(change, INTERNAL_ERROR, "container_doubtful");
        EXPECT_EQ(error.at("message"), "the parameter container is doubtful, since " + container.told_path() +
                                           ".info tells of another one: it was damaged, or written by another program");
        EXPECT_EQ(error.at("path"), container.told_path());
        EXPECT_EQ(container.bytes(), flipped);
        change.emplace_back("--force");
        EXPECT_EQ(container.run(change).exit_code, DONE) << change[1];
        EXPECT_NE(container.bytes(), flipped);
        EXPECT_EQ(read_file(container.path() + ".info"), ref::info(container.bytes()));
        EXPECT_EQ(read_file(container.path() + ".bak"), flipped);
        EXPECT_EQ(container.run({"params", "list"}).errors, "");
    }
}

TEST(nothing_destroyed, ADoubtfulContainerIsSaidToBe) {
    const std::string bytes = ref::file(ref::BLOCKS{"free", std::nullopt, NAND_STAMP + nand_record()});
    const CONTAINER_FILE container(bytes);
    container.scratch().write("pgm_flash.ini.info", "container = pgm_flash.ini\n");
    const std::vector<std::vector<std::string>> readings{
        {"params", "list"}, {"params", "read", "0"}, {"params", "show", "0", "BYTE"}, {"hps", "nand"}, {"hps", "spi"}};
    for (const std::vector<std::string>& reading : readings) {
        const PROCESS_RESULT result = container.run(reading);
        EXPECT_EQ(result.exit_code, DONE) << reading[1];
        EXPECT_NE(result.output, "");
        EXPECT_TRUE(contains(result.errors, "pgmdev: warning: the parameter container is doubtful, since " +
                                                container.told_path() + ".info is damaged, or cannot be read"))
            << result.errors;
    }
    fs::remove(container.path() + ".info");
    for (const std::vector<std::string>& reading : readings) {
        EXPECT_EQ(container.run(reading).errors, "");
    }
}

TEST(nothing_destroyed, NoDirectoryIsNotTheRoot) {
    expect_failure(run_command({"schema", "version", "--directory", ""}), INTERNAL_ERROR,
                   {"the output cannot be written, since "});
}
