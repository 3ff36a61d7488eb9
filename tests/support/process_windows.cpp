#include <stdexcept>
#include <string_view>

#include <windows.h>

#include "isolation.h"
#include "process.h"
#include "wide_text.h"

namespace {

/// A handle of the system that is closed when it goes.
class HANDLE_OWNER {
public:
    explicit HANDLE_OWNER(HANDLE handle) : m_handle(handle) {}
    ~HANDLE_OWNER() { CloseHandle(m_handle); }
    HANDLE_OWNER(const HANDLE_OWNER&) = delete;
    HANDLE_OWNER& operator=(const HANDLE_OWNER&) = delete;

    HANDLE get() const { return m_handle; }

private:
    HANDLE m_handle;
};

HANDLE create_temporary() {
    wchar_t directory[MAX_PATH + 1];
    wchar_t name[MAX_PATH + 1];
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    if (GetTempPathW(MAX_PATH + 1, directory) == 0 || GetTempFileNameW(directory, L"tst", 0, name) == 0) {
        throw std::runtime_error("no name for a temporary file");
    }
    HANDLE file =
        CreateFileW(name, GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("no temporary file");
    }
    return file;
}

/// A temporary file for a program to read or write. Files, unlike pipes, never fill up, so nobody has to read and write
/// at the same time.
class STREAM {
public:
    STREAM() : m_file(create_temporary()) {}

    HANDLE handle() const { return m_file.get(); }

    void fill(const std::string& contents) {
        DWORD written = 0;
        if (WriteFile(handle(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr) == 0 ||
            written != contents.size()) {
            throw std::runtime_error("the input cannot be written");
        }
        rewind();
    }

    std::string contents() {
        rewind();
        std::string text(GetFileSize(handle(), nullptr), '\0');
        DWORD count = 0;
        if (ReadFile(handle(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr) == 0 ||
            count != text.size()) {
            throw std::runtime_error("the output cannot be read");
        }
        return text;
    }

private:
    void rewind() const { SetFilePointer(handle(), 0, nullptr, FILE_BEGIN); }

    HANDLE_OWNER m_file;
};

/// One argument, so quoted that the program finds it as it is: backslashes are doubled before a quotation mark only.
std::wstring quoted(const std::string& argument) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : wide_from_utf8(argument)) {
        if (c == L'"') {
            text.append(backslashes + 1, L'\\');
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, L'\\') + L"\"";
}

std::wstring command_line(const std::vector<std::string>& command) {
    std::wstring line;
    for (const std::string& argument : command) {
        line += (line.empty() ? L"" : L" ") + quoted(argument);
    }
    return line;
}

/// The order of the names of variables.
struct IGNORING_CASE {
    bool operator()(const std::wstring& left, const std::wstring& right) const {
        return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    }
};

/// The variables as "NAME=value", each with a zero behind it, and a zero behind them all.
std::wstring environment_for(const PROCESS& process) {
    std::map<std::wstring, std::wstring, IGNORING_CASE> variables;
    wchar_t* const own = GetEnvironmentStringsW();
    for (const wchar_t* entry = own; *entry != L'\0'; entry += std::wstring_view(entry).size() + 1) {
        const std::wstring text = entry;
        const std::wstring name = text.substr(0, text.find(L'=', 1));  // "=C:" names the directory of a drive
        if (!name.starts_with(L"TESSARY_") && !name.starts_with(L"PGM")) {
            variables[name] = text.substr(name.size() + 1);
        }
    }
    FreeEnvironmentStringsW(own);
    for (const auto& [name, value] : ISOLATING_VARIABLES) {
        variables[wide_from_utf8(name)] = wide_from_utf8(value);
    }
    for (const auto& [name, value] : process.environment) {
        variables[wide_from_utf8(name)] = wide_from_utf8(value);
    }
    std::wstring block;
    for (const auto& [name, value] : variables) {
        block.append(name).append(L"=").append(value).push_back(L'\0');
    }
    return block + L'\0';
}

/// Starts the program. Wine fails to do so in one of many thousand attempts, before anything of the program has run.
PROCESS_INFORMATION started_by_system(const PROCESS& process, STARTUPINFOW& startup) {
    constexpr int ATTEMPTS = 3;
    std::wstring environment = environment_for(process);
    PROCESS_INFORMATION started{};
    for (int i = 1;; ++i) {
        std::wstring line = command_line(process.command);
        if (CreateProcessW(wide_from_utf8(process.command.front()).c_str(), line.data(), nullptr, nullptr, TRUE,
                           CREATE_UNICODE_ENVIRONMENT, environment.data(),
                           process.directory.empty() ? nullptr : process.directory.c_str(), &startup, &started) != 0) {
            return started;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_INTERNAL_ERROR || i == ATTEMPTS) {
            throw std::runtime_error(process.command.front() + " cannot be started: error " + std::to_string(error));
        }
    }
}

}  // namespace

PROCESS_RESULT run_process(const PROCESS& process) {
    STREAM input;
    STREAM output;
    STREAM errors;
    input.fill(process.input);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.handle();
    startup.hStdOutput = output.handle();
    startup.hStdError = errors.handle();
    const PROCESS_INFORMATION started = started_by_system(process, startup);
    const HANDLE_OWNER thread(started.hThread);
    const HANDLE_OWNER program(started.hProcess);
    DWORD exit_code = 0;
    if (WaitForSingleObject(program.get(), INFINITE) != WAIT_OBJECT_0 ||
        GetExitCodeProcess(program.get(), &exit_code) == 0) {
        throw std::runtime_error("the process is lost");
    }
    return {static_cast<int>(exit_code), output.contents(), errors.contents()};
}
