#include <algorithm>
#include <filesystem>
#include <set>

#include "tools/help_text.h"

// Every example of every help text runs, on the shipped data.

namespace {

namespace fs = std::filesystem;

/// The answers to the dialogue that describes a flash.
const std::string ANSWERS =
    "1\nNumonyx\nM25PX80\n14\n2\n71\n1\n20\n0\nN\nN\nN\nN\nN\nN\n1\n8\n64\n80\n3\n5000\n1C\n1C\n0\n7\n5\nN\n3.3V\n";

/// A directory with all that examples name: source tables, databases, answers, a container with an entry in each list,
/// and a block.
class EXAMPLE_DIRECTORY {
public:
    EXAMPLE_DIRECTORY() {
        const fs::path here = m_scratch.directory();
        for (const char* name : {"flash", "dev_info"}) {
            fs::create_directories(here / "data" / name);
            fs::copy(fs::path(TEST_DATA_DIR) / name, here / "data" / name, fs::copy_options::recursive);
        }
        for (const char* name : {"pgm_flash.pcf", "pgm_dev_info.pcf"}) {
            fs::copy_file(fs::path(TEST_DEVICES_DIR) / "programmer" / name, here / name);
        }
        fs::copy_file(fs::path(TEST_SFDP_DIR) / "W25Q128JV.sfdp", here / "chip.sfdp");
        m_scratch.write("answers.txt", ANSWERS);
        m_scratch.write("pgm_flash.ini", prepared().container);
        m_scratch.write("spi.bin", prepared().block);
    }

    PROCESS_RESULT run(const std::vector<std::string>& arguments, const std::string& input = "") const {
        PROCESS process{{TEST_COMMAND, "--module-dir", m_scratch.directory().string()},
                        input,
                        {{"PGM_USER_SFL_FLASH_INFO", description()}},
                        m_scratch.directory()};
        process.command.insert(process.command.end(), arguments.begin(), arguments.end());
        return run_process(process);
    }

    /// Runs an example with the input and the variable that it names. What it writes is not there before.
    PROCESS_RESULT run_example(const std::string& example) const {
        std::vector<std::string> arguments = arguments_of(example);
        std::string input;
        if (const auto from = std::find(arguments.begin(), arguments.end(), "<"); from != arguments.end()) {
            input = read_file(m_scratch.path(*(from + 1)));
            arguments.erase(from, from + 2);
        }
        std::replace(arguments.begin(), arguments.end(), std::string("$PGM_USER_SFL_FLASH_INFO"), description());
        if (arguments[0] == "params" && arguments[1] == "read") {
            fs::remove(m_scratch.directory() / arguments.back());
        }
        return run(arguments, input);
    }

private:
    /// What only the command makes: once for all examples.
    struct PREPARED {
        PREPARED() {
            const SCRATCH scratch;
            const auto run = [&scratch](std::vector<std::string> arguments, const std::string& input = "") {
                arguments.insert(arguments.begin(), {"--module-dir", scratch.directory().string()});
                const PROCESS_RESULT result = run_command(arguments, input);
                EXPECT_EQ(result.exit_code, DONE) << result.errors;
                return result.output;
            };
            run({"hps", "add", "nand", "manufacturer_id=0xEC", "device_id=0xD3", "device_byte_size=0x40000000"});
            run({"hps", "add", "spi", "--like", "26"});
            run({"params", "read", "1", scratch.path("block.bin")});
            run({"params", "set", "0", "STRING=W25Q64", "DWORD=8388608", "QWORD=1"});
            container = read_file(scratch.path("pgm_flash.ini"));
            block = read_file(scratch.path("block.bin"));
            description = json_of(run({"--json", "flash", "define"}, ANSWERS))["encoded"];
        }

        std::string container;    ///< with an entry in each list
        std::string block;        ///< of its SPI flash
        std::string description;  ///< of a flash, as the dialogue prints it
    };

    static const PREPARED& prepared() {
        static const PREPARED all;
        return all;
    }
    static const std::string& description() { return prepared().description; }

    SCRATCH m_scratch;
};

/// The examples of the command at `path` and of everything below it.
void collect_examples(const std::vector<std::string>& path, std::set<std::string>& all) {
    const std::string help = help_of(path);
    const std::vector<std::string> found = examples(help);
    EXPECT_FALSE(found.empty()) << testing::PrintToString(path);
    all.insert(found.begin(), found.end());
    for (const std::string& name : subcommands(help)) {
        std::vector<std::string> below = path;
        below.push_back(name);
        collect_examples(below, all);
    }
}

TEST(Examples, AllRun) {
    std::set<std::string> all;
    collect_examples({}, all);
    EXPECT_GE(all.size(), 46U);
    for (const std::string& example : all) {
        const EXAMPLE_DIRECTORY directory;
        const PROCESS_RESULT result = directory.run_example(example);
        EXPECT_EQ(result.exit_code, DONE) << example << ": " << result.errors;
    }
}

}  // namespace
