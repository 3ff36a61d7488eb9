#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <system_error>

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

/// What is done in a process before its program starts. Nothing of the tests' memory is copied for it, of which there is
/// much with sanitizers.
class FILE_ACTIONS {
public:
    FILE_ACTIONS() { done(::posix_spawn_file_actions_init(&m_actions)); }
    ~FILE_ACTIONS() { ::posix_spawn_file_actions_destroy(&m_actions); }
    FILE_ACTIONS(const FILE_ACTIONS&) = delete;
    FILE_ACTIONS& operator=(const FILE_ACTIONS&) = delete;

    void connect(int descriptor, const STREAM& stream) {
        done(::posix_spawn_file_actions_adddup2(&m_actions, stream.descriptor(), descriptor));
    }
    void enter(const std::filesystem::path& directory) {
        done(::posix_spawn_file_actions_addchdir_np(&m_actions, directory.c_str()));
    }
    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    static void done(int error) {
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), "a process cannot be prepared");
        }
    }

    posix_spawn_file_actions_t m_actions{};
};

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

    FILE_ACTIONS actions;
    actions.connect(STDIN_FILENO, input);
    actions.connect(STDOUT_FILENO, output);
    actions.connect(STDERR_FILENO, errors);
    if (!process.directory.empty()) {
        actions.enter(process.directory);
    }
    pid_t child = 0;
    const int error = ::posix_spawn(&child, argument_pointers[0], actions.get(), nullptr, argument_pointers.data(),
                                    variable_pointers.data());
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), process.command.front() + " cannot be started");
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::runtime_error("the process is lost");
        }
    }
    const int exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return {exit_code, output.contents(), errors.contents()};
}
