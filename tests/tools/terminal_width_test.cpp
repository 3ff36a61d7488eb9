#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "command_fixture.h"

// Tables on a terminal: they fit its width. What no terminal reads stays whole.

namespace {

/// A pair of terminal ends: the command writes to one, the test reads the other.
class PSEUDO_TERMINAL {
public:
    explicit PSEUDO_TERMINAL(unsigned columns) : m_reader(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (m_reader < 0 || ::grantpt(m_reader) != 0 || ::unlockpt(m_reader) != 0) {
            throw std::runtime_error("there is no pseudo-terminal");
        }
        m_name = ::ptsname(m_reader);
        m_kept_open = ::open(m_name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        const winsize size{25, static_cast<unsigned short>(columns), 0, 0};
        ::ioctl(m_kept_open, TIOCSWINSZ, &size);
    }
    ~PSEUDO_TERMINAL() {
        ::close(m_kept_open);
        ::close(m_reader);
    }
    PSEUDO_TERMINAL(const PSEUDO_TERMINAL&) = delete;
    PSEUDO_TERMINAL& operator=(const PSEUDO_TERMINAL&) = delete;

    /// What a line of the shell shows there, with line feeds alone.
    std::string shown_by(const std::string& line) const {
        const pid_t child = ::fork();
        if (child == 0) {
            ::dup2(::open(m_name.c_str(), O_RDWR | O_NOCTTY), STDOUT_FILENO);
            ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            ::_exit(127);
        }
        std::string text;
        int status = 0;
        bool ended = false;
        while (!ended) {
            ended = ::waitpid(child, &status, WNOHANG) == child;
            text += waiting();
        }
        EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, DONE) << line;
        std::erase(text, '\r');
        return text;
    }

private:
    /// What has arrived, after a short while.
    std::string waiting() const {
        std::string text;
        for (;;) {
            fd_set readable;
            FD_ZERO(&readable);
            FD_SET(m_reader, &readable);
            timeval patience{0, 50'000};
            if (::select(m_reader + 1, &readable, nullptr, nullptr, &patience) <= 0) {
                return text;
            }
            std::array<char, 4096> part{};
            const ssize_t count = ::read(m_reader, part.data(), part.size());
            if (count <= 0) {
                return text;
            }
            text.append(part.data(), static_cast<std::size_t>(count));
        }
    }

    int m_reader;
    int m_kept_open = -1;  // so that what was written stays readable when the command has ended
    std::string m_name;
};

/// What the command shows on a terminal of that width.
std::string shown(unsigned columns, const std::string& arguments, const std::string& variables = "NO_COLOR=1",
                  const std::string& devices = TEST_DEVICES_DIR) {
    const std::string usual = "unset COLUMNS NO_COLOR TESSARY_CONFIG_FILE; TERM=xterm ";
    return PSEUDO_TERMINAL(columns).shown_by(usual + variables + " '" TEST_COMMAND "' --db-dir '" + devices + "' " +
                                             arguments);
}

std::size_t longest_line(const std::string& text) {
    std::size_t longest = 0;
    for (const std::string& line : lines_of(text)) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

/// The words with single blanks between them.
std::string words_of(const std::string& text) {
    std::istringstream input(text);
    std::string words;
    for (std::string word; input >> word;) {
        words += (words.empty() ? "" : " ") + word;
    }
    return words;
}

}  // namespace

TEST(terminal_width, TablesFitIt) {
    for (const unsigned columns : {40U, 60U, 80U, 100U}) {
        const std::string table = shown(columns, "flash list");
        EXPECT_LE(longest_line(table), columns);
        EXPECT_GT(longest_line(table), columns / 2);
        EXPECT_TRUE(table.starts_with("index  manufacturer  device")) << table.substr(0, 100);
    }
}

TEST(terminal_width, ALastLineTellsWhatIsLeftOut) {
    const std::vector<std::string> lines = lines_of(shown(90, "hps spi"));
    ASSERT_GT(lines.size(), 2U);
    EXPECT_TRUE(contains(lines.back(), "left out: ")) << lines.back();
    EXPECT_TRUE(contains(lines.back(), "erase/program/read")) << lines.back();
    EXPECT_FALSE(contains(lines.front(), "erase/program/read")) << lines.front();
}

TEST(terminal_width, WideShowsAll) {
    const std::string expected = run_command({"flash", "list"}).output;
    EXPECT_EQ(shown(40, "flash list --wide"), expected);
    EXPECT_EQ(shown(500, "flash list"), expected);
}

TEST(terminal_width, IsThatOfTheEnvironmentFirst) {
    EXPECT_EQ(shown(40, "flash list", "NO_COLOR=1 COLUMNS=500"), run_command({"flash", "list"}).output);
    EXPECT_LE(longest_line(shown(500, "flash list", "NO_COLOR=1 COLUMNS=50")), 50U);
}

TEST(terminal_width, IsEightyWhenUnknown) {
    EXPECT_EQ(shown(0, "flash list"), shown(80, "flash list"));
}

TEST(terminal_width, DoesNotCountWithoutATerminal) {
    PROCESS process{{TEST_COMMAND, "flash", "list"}, "", {{"COLUMNS", "40"}}, {}};
    EXPECT_EQ(run_process(process).output, run_command({"flash", "list"}).output);
}

TEST(terminal_width, OneLongNameWidensNothing) {
    std::vector<PGMDEV_SFL_FLASH_INFO> records(30, flash_reference::sample());
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].device_name = "CHIP" + std::to_string(i);
    }
    records[7].device_name = std::string(200, 'L');
    const FLASH_DATABASE database(records);
    const std::string directory = std::filesystem::path(database.file()).parent_path().parent_path().string();
    const std::string table = shown(120, "flash list", "NO_COLOR=1", directory);
    EXPECT_LE(longest_line(table), 120U);
    EXPECT_TRUE(contains(table, "LL..")) << table;
    EXPECT_TRUE(contains(table, "voltage")) << table;
}

TEST(terminal_width, SentencesAreBrokenAtBlanks) {
    const std::string whole = run_command({"flash", "identify", "012018"}).output;
    EXPECT_GT(longest_line(whole), 120U);
    for (const unsigned columns : {48U, 80U}) {
        const std::string broken = shown(columns, "flash identify 012018");
        EXPECT_LE(longest_line(broken), columns);
        EXPECT_EQ(words_of(broken), words_of(whole));
    }
    EXPECT_EQ(shown(500, "flash identify 012018"), whole);
    EXPECT_EQ(shown(48, "flash identify 012018 --wide"), whole);
}

TEST(terminal_width, WhatAFlashSaysOfItselfIsBrokenButForTheRow) {
    const std::string dump = TEST_SFDP_DIR "/MT35XU01G.sfdp";
    std::size_t longer = 0;
    for (const std::string& line : lines_of(shown(60, "flash sfdp " + dump))) {
        longer += line.size() > 60 && !contains(line, dump) ? 1U : 0U;
    }
    EXPECT_EQ(longer, 1U) << "the row, to be copied into a table";
}

TEST(terminal_width, HeadingsAreBoldWhereColoursAreWanted) {
    const std::string bold = "\033[1mvalue  name\033[0m\n";
    EXPECT_TRUE(shown(80, "enum list sector", "A=1").starts_with(bold));
    EXPECT_TRUE(shown(80, "enum list sector", "NO_COLOR=1").starts_with("value  name\n"));
    EXPECT_TRUE(shown(80, "enum list sector", "TERM=dumb").starts_with("value  name\n"));
    EXPECT_TRUE(run_command({"enum", "list", "sector"}).output.starts_with("value  name\n"));
}
