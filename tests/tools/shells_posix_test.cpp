#include <cstdlib>
#include <filesystem>

#include "command_fixture.h"

// The scripts of completion in the shells that they are for. A shell that is not installed fails its test: those that
// run the tests install it (cmake/debian-packages.txt).

namespace {

namespace fs = std::filesystem;

const fs::path SCRIPTS = fs::path(TEST_DATA_DIR).parent_path() / "tools" / "pgmdev" / "shell" / "scripts";

/// Runs a shell that finds the command under its name, in a directory with one file.
class SHELL {
public:
    SHELL() { m_scratch.write("table.csv", ""); }

    std::vector<std::string> lines(const std::vector<std::string>& command_line) const {
        const char* path = std::getenv("PATH");
        PROCESS process{{"/usr/bin/env"},
                        "",
                        {{"PATH", fs::path(TEST_COMMAND).parent_path().string() + ":" + (path != nullptr ? path : "")},
                         {"HOME", m_scratch.directory().string()},
                         {"TERM", "dumb"}},
                        m_scratch.directory()};
        process.command.insert(process.command.end(), command_line.begin(), command_line.end());
        const PROCESS_RESULT result = run_process(process);
        EXPECT_EQ(result.exit_code, DONE) << command_line.front() << ": " << result.errors;
        return lines_of(result.output);
    }

private:
    SCRATCH m_scratch;
};

using LINES = std::vector<std::string>;

}  // namespace

TEST(shells, BashCompletes) {
    const auto completed = [](const std::string& words, const std::string& place) {
        return SHELL().lines({"bash", "--norc", "-c",
                              "source '" + (SCRIPTS / "pgmdev.bash").string() + "'; COMP_WORDS=(" + words +
                                  "); COMP_CWORD=" + place + R"(; _pgmdev pgmdev; printf '%s\n' "${COMPREPLY[@]}")"});
    };
    EXPECT_EQ(completed("pgmdev flash show w25q64jv-i", "3"), (LINES{"W25Q64JV-IM", "W25Q64JV-IQ"}));
    EXPECT_EQ(completed("pgmdev profile show --family kestr", "4"), LINES{"KESTREL"});
    EXPECT_EQ(completed("pgmdev params read hps", "3"), (LINES{"HPS\\ SPI", "HPS\\ NAND"}));
    EXPECT_EQ(completed("pgmdev flash check t", "3"), LINES{""}) << "bash offers files by itself";
    const LINES registered =
        SHELL().lines({"bash", "--norc", "-c", "source '" + (SCRIPTS / "pgmdev.bash").string() + "'; complete -p"});
    EXPECT_EQ(registered, LINES{"complete -o bashdefault -o default -F _pgmdev pgmdev"});
}

TEST(shells, FishCompletes) {
    const auto completed = [](const std::string& line) {
        return SHELL().lines({"fish", "--no-config", "-c",
                              "source '" + (SCRIPTS / "pgmdev.fish").string() + "'; complete -C '" + line + "'"});
    };
    EXPECT_EQ(completed("pgmdev flash show w25q64jv-i"), (LINES{"W25Q64JV-IM", "W25Q64JV-IQ"}));
    EXPECT_EQ(completed("pgmdev hps kin"), LINES{"kinds\tThe kinds of hard processor systems"});
    EXPECT_EQ(completed("pgmdev profile show --family kestr"), LINES{"KESTREL"});
    EXPECT_EQ(completed("pgmdev flash check ta"), LINES{"table.csv"});
}

TEST(shells, ZshCompletes) {
    // Completion needs a line editor: a shell within the shell, on a terminal of its own.
    const std::string script =
        "zmodload zsh/zpty\n"
        "zpty shell zsh -f -i\n"
        "zpty -w shell \"fpath=('" +
        SCRIPTS.string() +
        "' \\$fpath); autoload -Uz compinit; compinit -D -u; bindkey '^I' complete-word\"\n"
        // Tells the line as it is now, between marks that are not in what was typed.
        "zpty -w shell 'tell() { print -r -- \"<\"\"$BUFFER\"\">\"; BUFFER=\"\"; zle redisplay }; zle -N tell; bindkey "
        "\"^T\" tell'\n"
        "zpty -w shell 'print BEGIN-$((40+2))'\n"
        "zpty -r shell output '*BEGIN-42*'\n"
        "zpty -w -n shell $'pgmdev flash show w25q64jwm\\t\\C-t'\n"
        "zpty -w -n shell $'pgmdev profile show --family kestr\\t\\C-t'\n"
        "zpty -w -n shell $'pgmdev hps kin\\t\\C-t'\n"
        "zpty -w -n shell $'pgmdev flash check ta\\t\\C-t'\n"
        "zpty -w shell 'print END-$((40+3))'\n"
        "zpty -r shell output '*END-43*'\n"
        "print -r -- \"$output\"\n"
        "zpty -d shell\n";
    std::string shown;
    for (const std::string& line : SHELL().lines({"zsh", "-f", "-c", script})) {
        shown += line + "\n";
    }
    for (const char* line : {"pgmdev flash show W25Q64JWM", "pgmdev profile show --family KESTREL", "pgmdev hps kinds",
                             "pgmdev flash check table.csv"}) {
        const std::string text(line);
        EXPECT_TRUE(contains(shown, "<" + text + ">") || contains(shown, "<" + text + " >")) << text << "\n" << shown;
    }
}
