#include <windows.h>

#include "pgmdev/outputs.h"

#include <array>
#include <thread>

// Compiling into what is no regular file.

namespace {

TEST_F(Outputs, APipeReceivesTheDatabase) {
    const std::string name = R"(\\.\pipe\pgmdev-outputs-)" + std::to_string(GetCurrentProcessId());
    for (const COMPILE& compile : compilers()) {
        HANDLE pipe =
            CreateNamedPipeA(name.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 0, 4096, 0, nullptr);
        ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
        std::string received;
        std::thread reader([&] {
            ConnectNamedPipe(pipe, nullptr);
            std::array<char, 1000> chunk{};
            for (DWORD count = 0; ReadFile(pipe, chunk.data(), chunk.size(), &count, nullptr) != 0;) {
                received.append(chunk.data(), count);
            }
        });
        EXPECT_REPORT(compile(name), "(no report)");
        reader.join();
        CloseHandle(pipe);
        EXPECT_TRUE(received == expected(compile));
    }
}

TEST_F(Outputs, TheNullDeviceIsWritten) {
    for (const COMPILE& compile : compilers()) {
        EXPECT_REPORT(compile("NUL"), "(no report)");
    }
}

}  // namespace
