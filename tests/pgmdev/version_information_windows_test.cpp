#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "pgmdev_version.h"

// What Windows shows as the details of a file, and by which installers tell an older file from a newer one.

namespace {

class VersionInformation : public testing::TestWithParam<std::tuple<const char*, const char*>> {
protected:
    void SetUp() override {
        const char* file = std::get<0>(GetParam());
        const DWORD size = GetFileVersionInfoSizeA(file, nullptr);
        ASSERT_NE(size, 0U);
        m_information.resize(size);
        ASSERT_NE(GetFileVersionInfoA(file, 0, size, m_information.data()), 0);
    }

    template <typename VALUE>
    const VALUE* value(const std::string& path) const {
        void* found = nullptr;
        UINT size = 0;
        return VerQueryValueA(m_information.data(), path.c_str(), &found, &size) != 0 ? static_cast<VALUE*>(found)
                                                                                      : nullptr;
    }

    std::string text(const std::string& name) const {
        const char* found = value<char>("\\StringFileInfo\\040904B0\\" + name);
        return found != nullptr ? found : "(none)";
    }

private:
    std::vector<char> m_information;
};

TEST_P(VersionInformation, IsThatOfTheLibrary) {
    const auto* numbers = value<VS_FIXEDFILEINFO>("\\");
    ASSERT_NE(numbers, nullptr);
    EXPECT_EQ(std::to_string(HIWORD(numbers->dwFileVersionMS)) + '.' +
                  std::to_string(LOWORD(numbers->dwFileVersionMS)) + '.' +
                  std::to_string(HIWORD(numbers->dwFileVersionLS)),
              PGMDEV_VERSION::library());
    EXPECT_EQ(LOWORD(numbers->dwFileVersionLS), 0);
    EXPECT_EQ(text("FileVersion"), PGMDEV_VERSION::library());
    EXPECT_EQ(text("ProductVersion"), PGMDEV_VERSION::library());
}

TEST_P(VersionInformation, TellsWhoseFileItIs) {
    const std::string file = std::get<0>(GetParam());
    EXPECT_EQ(text("OriginalFilename"), file.substr(file.find_last_of("/\\") + 1));
    EXPECT_EQ(text("FileDescription"), std::get<1>(GetParam()));
    EXPECT_EQ(text("ProductName"), "Device data of Tessary");
}

INSTANTIATE_TEST_SUITE_P(Shipped, VersionInformation,
                         testing::Values(std::tuple{TEST_COMMAND, "Command for the device data"},
                                         std::tuple{TEST_LIBRARY, "Device data"},
                                         std::tuple{TEST_C_LIBRARY, "Device data for programs in C"},
                                         std::tuple{TEST_HOST_LIBRARY, "Services for the device data"}));

}  // namespace
