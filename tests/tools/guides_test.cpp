#include <filesystem>
#include <map>
#include <optional>

#include "guide_steps.h"

// What the README and the other guides show of a console is what the command does, too. Their blocks, fenced or indented,
// are run from the top to the bottom of a guide, in one directory with the source tables below data/:
//   $ ./run ...             is run, `pgmdev ...` and `mkdir -p` likewise; the lines below it are what it says. Where there are
//                           none, anything may be said
//   ./run ...   # why       in a block without "$ ", each line is run
//   ... | head -4           only the first lines; `| diff FILE -` that they are those of the file
//   ...                     stands for any lines, and within a line for any text
// and a comment above a block may say
//   <!-- ends with 3 -->          the exit code of its last command, otherwise 0
//   <!-- written to chip.txt -->  what is in the file, for the commands below
//   <!-- not run: why -->         that, and why, a test cannot run it

namespace {

struct BLOCK {
    std::size_t line = 0;
    std::string mark;
    LINES lines;
};

constexpr std::string_view INDENTATION = "    ";

/// The text between the marks of a comment that fills a line.
std::optional<std::string> comment_in(const std::string& line) {
    const std::string begin = "<!-- ";
    const std::string end = " -->";
    if (!line.starts_with(begin) || !line.ends_with(end)) {
        return std::nullopt;
    }
    return line.substr(begin.size(), line.size() - begin.size() - end.size());
}

/// All blocks of a guide that are code, each with the comment above it.
std::vector<BLOCK> code_of(const std::filesystem::path& guide) {
    std::vector<BLOCK> blocks;
    std::string mark;
    enum { TEXT, FENCED, INDENTED } place = TEXT;
    bool below_blank = true;
    std::size_t number = 0;
    for (const std::string& line : lines_of(read_file(guide))) {
        ++number;
        const bool fence = line.starts_with("```");
        const bool indented = line.starts_with(INDENTATION);
        if (place == FENCED) {
            place = fence ? TEXT : FENCED;
            if (!fence) {
                blocks.back().lines.push_back(line);
            }
        } else if (fence || (indented && place == TEXT && below_blank)) {
            place = fence ? FENCED : INDENTED;
            blocks.push_back({number, std::exchange(mark, ""), {}});
        } else if (!line.empty() && !indented) {
            place = TEXT;
            mark = comment_in(line).value_or("");
        }
        if (place == INDENTED) {
            blocks.back().lines.push_back(indented ? line.substr(INDENTATION.size()) : line);
        }
        below_blank = line.empty();
    }
    return blocks;
}

bool is_command(const std::string& line) {
    static const std::set<std::string> programs{"$",      "pgmdev",  "cmake",  "ctest",  "ninja", "mkdir",
                                                "git",    "md5sum",  "export", "g++",    "gcc",   "cc",
                                                "python", "python3", "pip",    "sudo",   "apt",   "cd",
                                                "gcovr",  "man",     "cpack",  "docker", "./run", "./test"};
    const std::string word = line.substr(0, line.find(' '));
    return programs.contains(word) || word.starts_with("./") || word.starts_with("build/") || word.starts_with("(cd") ||
           word.ends_with(".sh") || word.ends_with(".py");
}

/// A command line without the comment behind it.
std::string without_comment(const std::string& line) {
    const std::string text = line.substr(0, line.find("  #"));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// Puts lines together that end with a backslash.
LINES joined(const LINES& lines) {
    LINES result;
    bool open = false;
    for (const std::string& line : lines) {
        const std::string text = open ? line.substr(std::min(line.find_first_not_of(' '), line.size())) : line;
        (open ? result.back() += text : result.emplace_back(text));
        open = text.ends_with('\\');
        if (open) {
            result.back().pop_back();
        }
    }
    return result;
}

std::vector<STEP> steps_of(const BLOCK& block) {
    const LINES lines = joined(block.lines);
    const bool with_answers =
        std::ranges::any_of(lines, [](const std::string& line) { return line.starts_with("$ "); });
    std::vector<STEP> steps;
    for (const std::string& line : lines) {
        if (line.starts_with("$ ") || (!with_answers && !line.empty())) {
            steps.push_back({without_comment(with_answers ? line.substr(2) : line), {}});
        } else if (!steps.empty()) {
            steps.back().shown.push_back(line);
        }
    }
    for (STEP& step : steps) {
        while (!step.shown.empty() && step.shown.back().empty()) {
            step.shown.pop_back();
        }
    }
    return steps;
}

/// The parts of a command line that bars separate.
LINES stages_of(const std::string& command) {
    const std::string bar = " | ";
    LINES stages;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = command.find(bar, begin)) != std::string::npos; begin = end + bar.size()) {
        stages.push_back(command.substr(begin, end - begin));
    }
    stages.push_back(command.substr(begin));
    return stages;
}

/// What becomes of an output behind a bar.
void pass_on(const std::string& stage, const std::filesystem::path& directory, PROCESS_RESULT& result) {
    const LINES words = shell_words(stage);
    if (words.size() == 2 && words[0] == "head") {
        LINES lines = lines_of(result.output);
        lines.resize(std::min<std::size_t>(lines.size(), std::stoul(words[1].substr(1))));
        result.output.clear();
        for (const std::string& line : lines) {
            result.output += line + '\n';
        }
    } else if (words.size() == 3 && words[0] == "diff" && words[2] == "-") {
        EXPECT_EQ(lines_without_returns(result.output), lines_of(read_file(directory / words[1])));
        result.output.clear();
    } else {
        ADD_FAILURE() << "nothing is known of " << stage;
    }
}

/// A guide that is run.
class WALK {
public:
    explicit WALK(const std::filesystem::path& guide) : m_guide(guide) {
        m_scratch.write("tessary.conf", "");
        std::filesystem::copy(PROJECT / "data", m_scratch.directory() / "data",
                              std::filesystem::copy_options::recursive);
    }

    /// The number of commands that were run.
    std::size_t run() {
        for (const BLOCK& block : code_of(m_guide)) {
            SCOPED_TRACE(m_guide.filename().string() + ':' + std::to_string(block.line) + ": " + block.lines.front());
            const std::string file = "written to ";
            if (block.mark.starts_with(file)) {
                write(block.mark.substr(file.size()), block.lines);
            } else if (!block.mark.starts_with("not run: ") && is_command(block.lines.front())) {
                run(block);
            }
        }
        return m_count;
    }

private:
    void write(const std::string& name, const LINES& lines) const {
        std::string text;
        for (const std::string& line : lines) {
            text += line + '\n';
        }
        m_scratch.write(name, text);
    }

    void run(const BLOCK& block) {
        const std::vector<STEP> steps = steps_of(block);
        int exit_code = DONE;
        for (const STEP& step : steps) {
            EXPECT_EQ(exit_code, DONE) << "before " << step.command;
            exit_code = run(step);
        }
        const std::string code = "ends with ";
        EXPECT_EQ(exit_code, block.mark.starts_with(code) ? std::stoi(block.mark.substr(code.size())) : DONE);
    }

    int run(const STEP& step) {
        const LINES stages = stages_of(step.command);
        LINES words = shell_words(stages.front());
        ++m_count;
        if (words.size() == 3 && words[0] == "mkdir") {
            std::filesystem::create_directories(m_scratch.directory() / words[2]);
            return DONE;
        }
        if (words[0] != "./run" && words[0] != "pgmdev") {
            ADD_FAILURE() << step.command
                          << " cannot be run by a test: say why, by <!-- not run: why --> above the block";
            return DONE;
        }
        words[0] = TEST_COMMAND;
        PROCESS_RESULT result = run_process({words, "", m_environment, m_scratch.directory()});
        for (std::size_t i = 1; i < stages.size(); ++i) {
            pass_on(stages[i], m_scratch.directory(), result);
        }
        if (!step.shown.empty()) {
            expect_shown(step, result);
        }
        return result.exit_code;
    }

    std::filesystem::path m_guide;
    SCRATCH m_scratch;
    std::map<std::string, std::string> m_environment{{"TESSARY_MODULE_DIR", m_scratch.path(".")},
                                                     {"TESSARY_CONFIG_FILE", m_scratch.path("tessary.conf")}};
    std::size_t m_count = 0;
};

/// All but the contract for programs (documentation_test.cpp), and what tells of changes.
std::vector<std::filesystem::path> other_guides() {
    std::vector<std::filesystem::path> files{PROJECT / "README.md"};
    for (const auto& entry : std::filesystem::directory_iterator(PROJECT / "docs")) {
        const std::string name = entry.path().filename().string();
        if (name.ends_with(".md") && !name.starts_with("command")) {
            files.push_back(entry.path());
        }
    }
    for (const auto& entry : std::filesystem::directory_iterator(PROJECT / "data")) {
        if (std::filesystem::exists(entry.path() / "README.md")) {
            files.push_back(entry.path() / "README.md");
        }
    }
    return files;
}

}  // namespace

TEST(documentation, TheCommandDoesWhatTheOtherGuidesShow) {
    std::size_t count = 0;
    for (const std::filesystem::path& guide : other_guides()) {
        count += WALK(guide).run();
    }
    EXPECT_GE(count, 30U);
}

TEST(documentation, TextLeftOutOfALineIsSeen) {
    EXPECT_TRUE(line_fits("a ... c", "a b c"));
    EXPECT_TRUE(line_fits("a...b...c", "a1b2c"));
    EXPECT_TRUE(line_fits("...", "a"));
    EXPECT_FALSE(line_fits("a ... c", "a b d"));
    EXPECT_FALSE(line_fits("a...b...c", "a1c"));
    EXPECT_FALSE(line_fits("b...", "a b"));
    EXPECT_FALSE(line_fits("ab...bc", "abc"));
}
