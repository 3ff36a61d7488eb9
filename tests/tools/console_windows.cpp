#include <cstdio>
#include <stdexcept>
#include <string>

#include <windows.h>

#include "wide_text.h"

// In a console: that the command leaves the console's code page as others left it.

namespace {

constexpr UINT OF_THE_USER = 437;

/// The command, answering a batch that goes on until it is ended.
class BATCH {
public:
    explicit BATCH(const std::string& command) {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        HANDLE questions = nullptr;
        HANDLE answers = nullptr;
        if (CreatePipe(&questions, &m_input, &inherited, 0) == 0 ||
            CreatePipe(&m_output, &answers, &inherited, 0) == 0 ||
            SetHandleInformation(m_input, HANDLE_FLAG_INHERIT, 0) == 0 ||
            SetHandleInformation(m_output, HANDLE_FLAG_INHERIT, 0) == 0) {
            throw std::runtime_error("no pipes");
        }
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = questions;
        start.hStdOutput = answers;
        start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
        std::wstring line = wide_from_utf8("\"" + command + "\" opn name -");
        if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &m_process) ==
            0) {
            throw std::runtime_error("the command does not start");
        }
        CloseHandle(questions);
        CloseHandle(answers);
        wait_for_answer();
    }
    ~BATCH() {
        CloseHandle(m_output);
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }
    BATCH(const BATCH&) = delete;
    BATCH& operator=(const BATCH&) = delete;

    void end_input() const {
        CloseHandle(m_input);
        wait_for_end();
    }

    void interrupt() const {
        SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);  // this program goes on
        if (GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) == 0) {
            throw std::runtime_error("the command cannot be interrupted");
        }
        wait_for_end();
        CloseHandle(m_input);
    }

private:
    void wait_for_answer() const {
        DWORD count = 0;
        char byte = 0;
        if (WriteFile(m_input, "1337\n", 5, &count, nullptr) == 0 ||
            ReadFile(m_output, &byte, 1, &count, nullptr) == 0 || count != 1) {
            throw std::runtime_error("no answer");
        }
    }

    void wait_for_end() const {
        constexpr DWORD PATIENCE = 60'000;
        if (WaitForSingleObject(m_process.hProcess, PATIENCE) != WAIT_OBJECT_0) {
            throw std::runtime_error("the command does not end");
        }
    }

    HANDLE m_input = nullptr;
    HANDLE m_output = nullptr;
    PROCESS_INFORMATION m_process{};
};

void expect_code_page(UINT expected, const char* when) {
    const UINT found = GetConsoleOutputCP();
    if (found != expected) {
        throw std::runtime_error(std::string("the code page ") + when + " is " + std::to_string(found));
    }
}

void set_code_page(UINT code_page) {
    if (SetConsoleOutputCP(code_page) == 0) {
        throw std::runtime_error("there is no console");
    }
}

}  // namespace

int main(int argc, char** argv) try {
    const std::string command = argc == 2 ? argv[1] : "";
    {
        set_code_page(OF_THE_USER);
        const BATCH batch(command);
        expect_code_page(CP_UTF8, "while it runs");
        batch.end_input();
        expect_code_page(OF_THE_USER, "behind it");
    }
    {
        const BATCH batch(command);
        batch.interrupt();
        expect_code_page(OF_THE_USER, "when it was interrupted");
    }
    {
        set_code_page(CP_UTF8);  // as the command before it in a pipeline has set it
        const BATCH batch(command);
        set_code_page(OF_THE_USER);  // as that one gives it back
        batch.end_input();
        expect_code_page(OF_THE_USER, "behind a pipeline");
    }
    return 0;
} catch (const std::exception& error) {
    std::puts(error.what());
    return 1;
}
