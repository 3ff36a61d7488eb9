#include <gtest/gtest.h>

#include <string>

#include "support/scratch.h"

// How the binaries for Windows are protected: bits of the DllCharacteristics in their optional header, as the PE format
// has them.

namespace {

constexpr std::size_t PLACE_OF_HEADERS = 0x3C;        // where their offset stands
constexpr std::size_t DLL_CHARACTERISTICS = 24 + 70;  // behind the signature and the file header, in the optional one

unsigned number_at(const std::string& file, std::size_t at, unsigned bytes) {
    unsigned number = 0;
    for (unsigned i = 0; i < bytes; ++i) {
        number |= static_cast<unsigned>(static_cast<unsigned char>(file.at(at + i))) << (8 * i);
    }
    return number;
}

class Hardening : public testing::TestWithParam<const char*> {};

TEST_P(Hardening, IsInTheHeader) {
    const std::string file = read_file(std::string(GetParam()));
    const std::size_t headers = number_at(file, PLACE_OF_HEADERS, 4);
    ASSERT_EQ(file.substr(headers, 4), std::string("PE\0\0", 4));
    const unsigned characteristics = number_at(file, headers + DLL_CHARACTERISTICS, 2);
    EXPECT_TRUE((characteristics & 0x0020U) != 0) << "addresses beyond 4 GiB";
    EXPECT_TRUE((characteristics & 0x0040U) != 0) << "loaded anywhere";
    EXPECT_TRUE((characteristics & 0x0100U) != 0) << "no data executed";
}

INSTANTIATE_TEST_SUITE_P(Shipped, Hardening,
                         testing::Values(TEST_COMMAND, TEST_LIBRARY, TEST_C_LIBRARY, TEST_HOST_LIBRARY));

}  // namespace
