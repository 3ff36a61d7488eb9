#include <filesystem>

#include "command.h"
#include "input.h"

// Any arguments, a line each up to an empty one, and the rest as standard input. Arguments have no separators of
// directories: all files that they name are in the directory where the command runs, which is made anew each time that
// something has changed there.

namespace fs = std::filesystem;

namespace {

void prepare_files() {
    static fs::file_time_type prepared;
    const fs::path directory = working_directory();
    std::error_code error;
    if (fs::last_write_time(directory, error) == prepared && !error) {
        return;
    }
    fs::remove_all(directory);
    fs::create_directories(directory);
    fs::copy(FUZZ_SEEDS_DIR "/files", directory, fs::copy_options::recursive);
    prepared = fs::last_write_time(directory);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t MOST_ARGUMENTS = 16;
    std::string text = text_of(data, size);
    std::vector<std::string> arguments;
    while (!text.empty() && arguments.size() < MOST_ARGUMENTS) {
        const std::size_t end = text.find('\n');
        std::string argument = text.substr(0, end);
        text.erase(0, end == std::string::npos ? end : end + 1);
        if (argument.empty()) {
            break;
        }
        std::erase_if(argument, [](char c) { return c == '/' || c == '\0'; });
        arguments.push_back(argument);
    }
    prepare_files();
    run_command(arguments, text);
    return 0;
}
