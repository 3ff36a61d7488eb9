#include <fcntl.h>
#include <sanitizer/common_interface_defs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

#include "quick_fuzzers.h"

// quick_GROUP SEEDS NAME INPUTS: a fuzzer for a moment, in a build that is not made for fuzzing: its seeds, and so many inputs
// that they become when bytes are changed, left out, repeated or taken from others, without a look at what they reach. They
// are the same in every run.

namespace {

namespace fs = std::filesystem;
using INPUT = std::vector<std::uint8_t>;

constexpr std::size_t LARGEST_INPUT = 1 << 16;

class MUTATIONS {
public:
    explicit MUTATIONS(std::vector<INPUT> seeds) : m_seeds(std::move(seeds)) {}

    INPUT next() {
        INPUT input = any_seed();
        do {
            change(input);
        } while (below(2) != 0);
        input.resize(std::min(input.size(), LARGEST_INPUT));
        return input;
    }

private:
    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random); }
    const INPUT& any_seed() { return m_seeds[below(m_seeds.size())]; }

    void change(INPUT& input) {
        enum { BYTE_CHANGED, BIT_FLIPPED, EXTREME, CUT, LEFT_OUT, REPEATED, OF_ANOTHER, KINDS };
        if (input.empty()) {
            input = {static_cast<std::uint8_t>(below(256))};
        }
        const std::size_t begin = below(input.size());
        const std::size_t end = begin + 1 + below(std::min<std::size_t>(input.size() - begin, 32));
        const auto at = [&input](std::size_t place) { return input.begin() + static_cast<std::ptrdiff_t>(place); };
        switch (below(KINDS)) {
            case BYTE_CHANGED:
                input[begin] = static_cast<std::uint8_t>(below(256));
                break;
            case BIT_FLIPPED:
                input[begin] ^= static_cast<std::uint8_t>(1U << below(8));
                break;
            case EXTREME:
                input[begin] = std::array<std::uint8_t, 4>{0x00, 0x7F, 0x80, 0xFF}[below(4)];
                break;
            case CUT:
                input.resize(begin);
                break;
            case LEFT_OUT:
                input.erase(at(begin), at(end));
                break;
            case REPEATED: {
                const INPUT piece(at(begin), at(end));
                input.insert(at(begin), piece.begin(), piece.end());
                break;
            }
            default: {
                const INPUT& other = any_seed();
                const std::size_t from = below(other.size() + 1);
                const std::size_t length = std::min<std::size_t>(other.size() - from, 32);
                input.insert(at(begin), other.begin() + static_cast<std::ptrdiff_t>(from),
                             other.begin() + static_cast<std::ptrdiff_t>(from + length));
            }
        }
    }

    std::vector<INPUT> m_seeds;
    std::mt19937 m_random;  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same every run
};

/// What is printed goes nowhere, but for what the sanitizers have to say.
class SILENCE {
public:
    SILENCE() : m_output(::dup(STDOUT_FILENO)), m_errors(::dup(STDERR_FILENO)) {
        __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(m_errors)));
        const int nowhere = ::open("/dev/null", O_WRONLY);  // NOLINT(*-vararg)
        ::dup2(nowhere, STDOUT_FILENO);
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
    ~SILENCE() {
        std::fflush(nullptr);  // into nowhere, too
        std::cout.flush();
        ::dup2(m_output, STDOUT_FILENO);
        ::dup2(m_errors, STDERR_FILENO);
    }
    SILENCE(const SILENCE&) = delete;
    SILENCE& operator=(const SILENCE&) = delete;

private:
    int m_output;
    int m_errors;
};

std::vector<INPUT> read_seeds(const fs::path& directory) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(directory)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<INPUT> seeds;
    for (const fs::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        seeds.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    return seeds;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    const auto fuzzer = argc == 4 ? std::find_if(QUICK_FUZZERS.begin(), QUICK_FUZZERS.end(),
                                                 [&](const QUICK_FUZZER& each) { return each.name == arguments[2]; })
                                  : QUICK_FUZZERS.end();
    if (fuzzer == QUICK_FUZZERS.end()) {
        std::cerr << "usage: " << arguments[0] << " SEEDS NAME INPUTS\n";
        return EXIT_FAILURE;
    }
    const std::vector<INPUT> seeds = read_seeds(fs::path(arguments[1]) / arguments[2]);
    const int inputs = std::stoi(arguments[3]);
    {
        const SILENCE silence;
        for (const INPUT& seed : seeds) {
            fuzzer->run(seed.data(), seed.size());
        }
        MUTATIONS mutations(seeds);
        for (int i = 0; i < inputs; ++i) {
            const INPUT input = mutations.next();
            fuzzer->run(input.data(), input.size());
        }
    }
    std::cout << seeds.size() << " seeds, " << inputs << " changed ones\n";
    return EXIT_SUCCESS;
}
