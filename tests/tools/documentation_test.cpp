#include <filesystem>
#include <set>

#include "guide_steps.h"
#include "pgmdev_dev_info.h"

// What the guides to the command show of a console is what the command does. A guide is docs/command*.md; in its blocks
// that begin with ```console,
//   $ pgmdev ...            is run, in a directory with the source tables below data/ and SFDP dumps below sfdp/
//   $ printf '...' | pgmdev ...   likewise, with that input
//   $ echo $?               tells the exit code of the last run; where it is not asked for, it is 0
//   pgmdev: ...             is a line on standard error
//   ...                     stands for any lines
// and the other lines are the standard output.

namespace {

/// The steps of each block of a guide.
std::vector<std::vector<STEP>> blocks_of(const std::filesystem::path& guide) {
    std::vector<std::vector<STEP>> blocks;
    bool inside = false;
    for (const std::string& line : lines_of(read_file(guide))) {
        if (line.starts_with("```")) {
            inside = line == "```console";
            if (inside) {
                blocks.emplace_back();
            }
        } else if (inside && line.starts_with("$ ")) {
            blocks.back().push_back({line.substr(2), {}});
        } else if (inside && !blocks.back().empty()) {
            blocks.back().back().shown.push_back(line);
        } else if (inside) {
            ADD_FAILURE() << guide << ": a block does not begin with a command: " << line;
        }
    }
    return blocks;
}

PROCESS process_of(const std::string& command, const std::filesystem::path& directory) {
    PROCESS process{{TEST_COMMAND}, "", {}, directory};
    const std::string pipe = " | ";
    const std::size_t bar = command.find(pipe);
    LINES words = shell_words(bar == std::string::npos ? command : command.substr(bar + pipe.size()));
    if (bar != std::string::npos) {
        const LINES producer = shell_words(command.substr(0, bar));
        EXPECT_EQ(producer.front(), "printf") << command;
        process.input = unescaped(producer.at(1));
    }
    EXPECT_EQ(words.front(), "pgmdev") << command;
    process.command.insert(process.command.end(), words.begin() + 1, words.end());
    return process;
}

void run_block(const std::vector<STEP>& steps) {
    const SCRATCH scratch;
    const auto copied = std::filesystem::copy_options::recursive;
    std::filesystem::copy(PROJECT / "data", scratch.directory() / "data", copied);
    std::filesystem::copy(TEST_SFDP_DIR, scratch.directory() / "sfdp");
    int exit_code = DONE;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].command == "echo $?") {
            EXPECT_EQ(steps[i].shown, LINES{std::to_string(exit_code)});
            continue;
        }
        const PROCESS_RESULT result = run_process(process_of(steps[i].command, scratch.directory()));
        expect_shown(steps[i], result);
        exit_code = result.exit_code;
        const bool asked = i + 1 < steps.size() && steps[i + 1].command == "echo $?";
        EXPECT_TRUE(asked || exit_code == DONE) << steps[i].command << " ended with " << exit_code;
    }
}

std::vector<std::filesystem::path> guides() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(PROJECT / "docs")) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("command") && name.ends_with(".md")) {
            files.push_back(entry.path());
        }
    }
    return files;
}

/// The names of all members that a schema describes.
void collect_keys(const JSON& schema, std::set<std::string>& keys) {
    for (const auto& [word, argument] : schema.items()) {
        if (word == "properties") {
            for (const auto& [key, member] : argument.items()) {
                keys.insert(key);
            }
        }
        collect_keys(argument, keys);
    }
    if (schema.is_array()) {
        for (const JSON& element : schema) {
            collect_keys(element, keys);
        }
    }
}

}  // namespace

TEST(documentation, TheCommandDoesWhatItsGuidesShow) {
    std::size_t count = 0;
    for (const std::filesystem::path& guide : guides()) {
        SCOPED_TRACE(guide.string());
        for (const std::vector<STEP>& block : blocks_of(guide)) {
            run_block(block);
            ++count;
        }
    }
    EXPECT_GE(count, 5U);
}

TEST(documentation, EveryKeyOfEveryVerbIsTold) {
    std::string told;
    for (const std::filesystem::path& guide : guides()) {
        told += read_file(guide);
    }
    std::set<std::string> keys;
    collect_keys(json_of(run_command({"schema"}).output), keys);
    EXPECT_GT(keys.size(), 150U);
    for (const auto& member : PGMDEV_SFL_FLASH_MEMBERS) {  // the guide refers to the headers of the records
        keys.erase(std::string(member.name));
    }
    for (const auto& member : PGMDEV_DEVICE_INFO_MEMBERS) {
        keys.erase(std::string(member.name));
    }
    for (const std::string& key : keys) {
        EXPECT_TRUE(contains(told, '`' + key + '`') || contains(told, '"' + key + '"')) << key;
    }
}

TEST(documentation, LinesThatDifferAreSeen) {
    const LINES lines{"a", "b", "c"};
    EXPECT_TRUE(fits(LINES{"a", "...", "c"}, lines));
    EXPECT_TRUE(fits(LINES{"..."}, lines));
    EXPECT_FALSE(fits(LINES{"a", "b"}, lines));
    EXPECT_FALSE(fits(LINES{"a", "x", "c"}, lines));
    EXPECT_FALSE(fits(LINES{"a", "b", "c", "d"}, lines));
}
