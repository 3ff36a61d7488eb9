#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

// What answers of the command take beyond a program of the same libraries that does nothing. All are run in turn, round
// by round, so that whatever else the machine does falls upon all of them alike. Programs and libraries are read from the
// disk anew before: a file that has just been written lies in memory in larger pieces, and more of it counts as used.
//
// Usage: command_bench [ROUNDS]

namespace {

using ARGUMENTS = std::vector<std::string>;

constexpr int DEFAULT_ROUNDS = 200;
constexpr double QUARTILE = 0.25;
constexpr double MEDIAN = 0.5;

enum EXIT_CODE { FOUND = 0, NOT_FOUND = 1, WRONG_USAGE = 2 };

struct QUESTION {
    ARGUMENTS arguments;
    EXIT_CODE answered = FOUND;  ///< another answer is not the one that is measured
};

/// Single answers: the commonest of each noun, misspelt names, and the longest ones.
const std::array SINGLE_ANSWERS{
    QUESTION{{"--help"}},
    QUESTION{{"--version"}},
    QUESTION{{"part", "info", "HOBS40F324C2"}},
    QUESTION{{"part", "info", "KESTREL"}},
    QUESTION{{"part", "complete", "KES50"}},
    QUESTION{{"part", "from-pcf", "BLU_R35"}},
    QUESTION{{"name", "show", "KES50"}},
    QUESTION{{"opn", "name", "1337"}},
    QUESTION{{"opn", "from-hash", "0xDCB59F75E910"}},
    QUESTION{{"flash", "identify", "EF4017"}},
    QUESTION{{"flash", "show", "W25Q128JV"}},
    QUESTION{{"profile", "show", "--part", "HOBS40F324C2"}},
    QUESTION{{"hps", "spi"}},
    QUESTION{{"part", "info", "HOBS40F324C2X"}, NOT_FOUND},
    QUESTION{{"name", "show", "HOBS40F324C2X"}, NOT_FOUND},
    QUESTION{{"flash", "show", "W25Q12JV"}, NOT_FOUND},
    QUESTION{{"falsh", "show", "W25Q128JV"}, WRONG_USAGE},
    QUESTION{{"profile", "show", "--part", "HOBS40F324C2X"}, NOT_FOUND},
    QUESTION{{"flash", "show", "--all-rows", "W25Q128JV"}},
    QUESTION{{"--json", "part", "info", "KESTREL"}},
    QUESTION{{"part", "info", "KESTREL_PCF"}},
    QUESTION{{"--json", "part", "info", "KESTREL_PCF"}},
    QUESTION{{"profile", "show", "--pcf", "BLU_R3"}, NOT_FOUND},
    QUESTION{{"family", "list"}},
    QUESTION{{"device", "list", "KES*"}},
    QUESTION{{"schema", "part", "info"}},
    QUESTION{{"schema", "flash", "identify"}},
};

/// A program, what it is asked, and what that took.
struct RUNS {
    ARGUMENTS arguments;  ///< the program comes first
    EXIT_CODE answered = FOUND;
    const char* input = "/dev/null";
    std::vector<double> wall = {};  ///< in microseconds, as the next
    std::vector<double> processor = {};
    long memory = 0;  ///< the most at any time, in KiB
};

constexpr std::array FILES_OF_PROGRAMS{EMPTY_PROGRAM, COMMAND, LIBRARY, HOST_LIBRARY};

std::string text_of(const ARGUMENTS& arguments) {
    std::string text;
    for (const std::string& argument : arguments) {
        text += (text.empty() ? "" : " ") + argument;
    }
    return text;
}

double microseconds(const timeval& time) {
    constexpr double PER_SECOND = 1e6;
    return static_cast<double>(time.tv_sec) * PER_SECOND + static_cast<double>(time.tv_usec);
}

void run(RUNS& runs) {
    std::vector<char*> arguments;
    for (std::string& argument : runs.arguments) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    posix_spawn_file_actions_addopen(&streams, 0, runs.input, O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&streams, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&streams, 2, "/dev/null", O_WRONLY, 0);

    const auto before = std::chrono::steady_clock::now();
    pid_t process = 0;
    int status = 0;
    rusage used{};
    const bool ran = posix_spawn(&process, arguments[0], &streams, nullptr, arguments.data(), environ) == 0 &&
                     wait4(process, &status, 0, &used) == process && WIFEXITED(status) &&
                     WEXITSTATUS(status) == runs.answered;
    const std::chrono::duration<double, std::micro> wall = std::chrono::steady_clock::now() - before;
    posix_spawn_file_actions_destroy(&streams);
    if (!ran) {
        throw std::runtime_error("not run, or not with the answer that is measured: " + text_of(runs.arguments));
    }
    runs.wall.push_back(wall.count());
    runs.processor.push_back(microseconds(used.ru_utime) + microseconds(used.ru_stime));
    runs.memory = std::max(runs.memory, used.ru_maxrss);
}

double quantile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

void print(const RUNS& runs, const RUNS& empty) {
    const std::string question = text_of({runs.arguments.begin() + 1, runs.arguments.end()});
    const double processor = quantile(runs.processor, MEDIAN);
    const double spread = quantile(runs.processor, 1 - QUARTILE) - quantile(runs.processor, QUARTILE);
    std::printf("%-36s %+9.0f %+9.0f %8.0f %9.2f %+9ld\n", question.c_str(),
                quantile(runs.wall, MEDIAN) - quantile(empty.wall, MEDIAN),
                processor - quantile(empty.processor, MEDIAN), spread, processor / quantile(empty.processor, MEDIAN),
                runs.memory - empty.memory);
}

/// Has the system forget the file, so that it reads it again.
void forget(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    const bool forgotten = file >= 0 && fsync(file) == 0 && posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED) == 0;
    if (file >= 0) {
        close(file);
    }
    if (!forgotten) {
        throw std::runtime_error(std::string("not to be read anew: ") + path);
    }
}

void measure(std::vector<RUNS>& all, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        std::for_each(all.begin(), all.end(), run);
    }
    for (const RUNS& runs : all) {
        print(runs, all.front());
    }
}

/// The names of all parts, `times` times, a line each.
void write_names(const char* path, int times) {
    std::vector<std::string> names;
    std::ifstream list(PART_LIST);
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && !line.starts_with("//")) {
            names.push_back(line.substr(0, line.find(' ')));
        }
    }
    std::ofstream file(path);
    for (int i = 0; i < times; ++i) {
        std::copy(names.begin(), names.end(), std::ostream_iterator<std::string>(file, "\n"));
    }
    if (names.empty() || !file.flush()) {
        throw std::runtime_error(std::string("no names in ") + path);
    }
}

}  // namespace

int main(int argc, char** argv) try {
    std::for_each(FILES_OF_PROGRAMS.begin(), FILES_OF_PROGRAMS.end(), forget);
    const int rounds = argc > 1 ? std::max(1, std::stoi(argv[1])) : DEFAULT_ROUNDS;
    std::vector<RUNS> all{{{EMPTY_PROGRAM}}};
    for (const QUESTION& question : SINGLE_ANSWERS) {
        all.push_back({{COMMAND}, question.answered});
        ARGUMENTS& arguments = all.back().arguments;
        arguments.insert(arguments.end(), question.arguments.begin(), question.arguments.end());
    }
    std::printf("%-36s %9s %9s %8s %9s %9s\n", "beyond an empty program", "wall us", "CPU us", "spread", "times",
                "KiB");
    measure(all, rounds);

    constexpr int BATCH_ROUNDS_OF = 20;
    write_names(NAMES, 1);
    write_names(NAMES_TWICE, 2);
    std::puts("\nall names, and all names twice");
    std::vector<RUNS> batches{{{EMPTY_PROGRAM}},
                              {{COMMAND, "part", "info", "-"}, FOUND, NAMES},
                              {{COMMAND, "part", "info", "-"}, FOUND, NAMES_TWICE}};
    measure(batches, std::max(1, rounds / BATCH_ROUNDS_OF));
} catch (const std::exception& error) {
    std::fprintf(stderr, "command_bench: %s\n", error.what());
    return 1;
}
