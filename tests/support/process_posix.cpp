#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "isolation.h"
#include "process.h"

namespace {

/// A nameless temporary file. Files, unlike pipes, never fill up, so nobody has to read and write at the same time.
class STREAM {
public:
    STREAM() : m_file(std::tmpfile(), &std::fclose) {
        if (!m_file) {
            throw std::runtime_error("no temporary file");
        }
    }

    int descriptor() const { return fileno(m_file.get()); }

    void fill(const std::string& contents) {
        if (std::fwrite(contents.data(), 1, contents.size(), m_file.get()) != contents.size() ||
            std::fflush(m_file.get()) != 0) {
            throw std::runtime_error("the input cannot be written");
        }
        std::rewind(m_file.get());
    }

    std::string contents() {
        std::string text;
        std::array<char, 4096> part{};
        std::rewind(m_file.get());
        while (const std::size_t count = std::fread(part.data(), 1, part.size(), m_file.get())) {
            text.append(part.data(), count);
        }
        return text;
    }

private:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> m_file;
};

bool is_setting_of_ours(const std::string& name) {
    return name.starts_with("TESSARY_") || name.starts_with("PGM");
}

std::vector<std::string> environment_for(const PROCESS& process) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        if (!is_setting_of_ours(name)) {
            variables[name] = text.size() > name.size() ? text.substr(name.size() + 1) : "";
        }
    }
    for (const char* sanitizer : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
        std::string& options = variables[sanitizer];
        options += (options.empty() ? "exitcode=" : ":exitcode=") + std::to_string(SANITIZER_EXIT_CODE);
    }
    for (const auto& [name, value] : ISOLATING_VARIABLES) {
        variables[name] = value;
    }
    for (const auto& [name, value] : process.environment) {
        variables[name] = value;
    }
    std::vector<std::string> entries;
    entries.reserve(variables.size());
    for (const auto& [name, value] : variables) {
        entries.push_back((name + "=").append(value));
    }
    return entries;
}

std::vector<char*> pointers_to(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

constexpr int CANNOT_START = 127;

}  // namespace

PROCESS_RESULT run_process(const PROCESS& process) {
    STREAM input;
    STREAM output;
    STREAM errors;
    input.fill(process.input);
    std::vector<std::string> arguments = process.command;
    std::vector<std::string> variables = environment_for(process);
    const std::vector<char*> argument_pointers = pointers_to(arguments);
    const std::vector<char*> variable_pointers = pointers_to(variables);

    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("no process can be started");
    }
    if (child == 0) {
        ::dup2(input.descriptor(), STDIN_FILENO);
        ::dup2(output.descriptor(), STDOUT_FILENO);
        ::dup2(errors.descriptor(), STDERR_FILENO);
        if (process.directory.empty() || ::chdir(process.directory.c_str()) == 0) {
            ::execve(argument_pointers[0], argument_pointers.data(), variable_pointers.data());
        }
        ::_exit(CANNOT_START);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error("the process is lost");
        }
    }
    const int exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    if (exit_code == CANNOT_START) {
        throw std::runtime_error(process.command.front() + " cannot be started");
    }
    return {exit_code, output.contents(), errors.contents()};
}
