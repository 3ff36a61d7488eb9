#include <filesystem>
#include <fstream>
#include <thread>

#include "pgmdev/parameters/fixture.h"
#include "support/debug_messages.h"
#include "support/reports.h"

// The container file: its layout, and what becomes of damage.

namespace {

namespace ref = ini_reference;

const ref::BLOCKS SAMPLE{std::string("first"), std::string("\0second\xFF", 8), std::string("x")};

/// Expects the library to read what the reference reader reads, from every block number up to `last`.
void expect_read_as_by_reference(const std::string& file, unsigned last = 3) {
    for (unsigned which = 0; which <= last; ++which) {
        EXPECT_EQ(FLASH_INI_DIRECTORY::read(which), ref::read_block(file, which))
            << "block " << which << " of " << testing::PrintToString(file);
    }
}

TEST(FlashIniContainer, FirstWriteCreatesTheFile) {
    const FLASH_INI_DIRECTORY directory;
    EXPECT_EQ(directory.read(1), std::nullopt);
    EXPECT_TRUE(directory.write(1, "abc"));
    EXPECT_EQ(directory.file(), std::string("PGMDEV_FLASH_INI"
                                            "\3\0\0\0"
                                            "\0\0\0\0\0\0\0\0"
                                            "\x2C\0\0\0\3\0\0\0"
                                            "\0\0\0\0\0\0\0\0"
                                            "abc",
                                            47));
    EXPECT_EQ(directory.scratch().file_count(), 2U);  // with the text beside it
}

TEST(FlashIniContainer, EveryCombinationOfBlocks) {
    for (unsigned present = 0; present < 8; ++present) {
        const FLASH_INI_DIRECTORY directory;
        ref::BLOCKS blocks;
        for (const unsigned which : {2U, 0U, 1U}) {  // the order of writing does not matter
            if ((present >> which & 1) != 0) {
                blocks.at(which) = SAMPLE.at(which);
                ASSERT_TRUE(directory.write(which, blocks.at(which)));
            }
        }
        if (present != 0) {
            EXPECT_EQ(directory.file(), ref::file(blocks));
        }
        for (unsigned which = 0; which < 3; ++which) {
            EXPECT_EQ(directory.read(which), blocks.at(which)) << present;
        }
        EXPECT_EQ(directory.read(3), std::nullopt);
    }
}

TEST(FlashIniContainer, EveryCombinationOfBlocksRewritten) {
    for (unsigned present = 0; present < 8; ++present) {
        for (unsigned changed = 0; changed < 3; ++changed) {
            for (const std::optional<std::string>& contents :
                 {std::optional<std::string>(), std::optional<std::string>("another text")}) {
                const FLASH_INI_DIRECTORY directory;
                ref::BLOCKS blocks;
                for (unsigned which = 0; which < 3; ++which) {
                    if ((present >> which & 1) != 0) {
                        blocks.at(which) = SAMPLE.at(which);
                    }
                }
                directory.write_file(ref::file(blocks));
                ASSERT_TRUE(directory.write(changed, contents));
                blocks.at(changed) = contents;
                EXPECT_EQ(directory.file(), ref::file(blocks)) << present << ' ' << changed;
            }
        }
    }
}

TEST(FlashIniContainer, WithoutBlocksNothingIsRead) {
    const FLASH_INI_DIRECTORY directory;
    ASSERT_TRUE(directory.write(0, std::nullopt));
    EXPECT_EQ(directory.file(), std::string("PGMDEV_FLASH_INI\3\0\0\0", 20) + std::string(24, '\0'));
    for (unsigned which = 0; which < 3; ++which) {
        EXPECT_EQ(directory.read(which), std::nullopt);
    }
    directory.write_file(std::string("PGMDEV_FLASH_INI\0\0\0\0", 20));
    EXPECT_EQ(directory.read(0), std::nullopt);
}

TEST(FlashIniContainer, LargeBlock) {
    const FLASH_INI_DIRECTORY directory;
    std::string large(1'000'000, '\0');
    for (std::size_t i = 0; i < large.size(); ++i) {
        large[i] = static_cast<char>(i * 31 >> 3);
    }
    ASSERT_TRUE(directory.write(0, "small"));
    ASSERT_TRUE(directory.write(2, large));
    ASSERT_TRUE(directory.write(1, "middle"));
    EXPECT_EQ(directory.read(2), large);
    EXPECT_EQ(directory.read(0), "small");
}

TEST(FlashIniContainer, EveryTruncation) {
    const FLASH_INI_DIRECTORY directory;
    const std::string whole = ref::file(SAMPLE);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        directory.write_file(whole.substr(0, length));
        for (unsigned which = 0; which < 4; ++which) {
            EXPECT_EQ(directory.read(which), std::nullopt) << length;
        }
    }
    directory.write_file(whole + '\0');
    EXPECT_EQ(directory.read(0), std::nullopt);
    directory.write_file(whole);
    EXPECT_EQ(directory.read(0), SAMPLE[0]);
}

TEST(FlashIniContainer, EverySingleByteChangeOfHeadAndTable) {
    const FLASH_INI_DIRECTORY directory;
    for (const std::string& whole :
         {ref::file(SAMPLE), ref::file(ref::BLOCKS{std::nullopt, SAMPLE[1], std::nullopt})}) {
        directory.write_file(whole);
        for (std::size_t at = 0; at < 44; ++at) {
            std::string changed = whole;
            for (int value = 0; value < 256; ++value) {
                changed[at] = static_cast<char>(value);
                directory.change_byte(at, changed[at]);
                expect_read_as_by_reference(changed, 2);
            }
            directory.change_byte(at, whole[at]);
        }
        EXPECT_EQ(directory.file(), whole);
    }
}

TEST(FlashIniContainer, OtherNumbersOfEntries) {
    const FLASH_INI_DIRECTORY directory;
    const std::string file = ref::file_of({"a", std::nullopt, "bb", "ccc", std::nullopt, "dddd"});
    directory.write_file(file);
    expect_read_as_by_reference(file, 6);
    EXPECT_EQ(directory.read(3), "ccc");
    EXPECT_EQ(directory.read(5), "dddd");
    EXPECT_EQ(directory.read(6), std::nullopt);

    // The writer keeps the blocks that it knows.
    ASSERT_TRUE(directory.write(1, "new"));
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{"a", "new", "bb"}));

    directory.write_file(ref::file_of({"only"}));
    EXPECT_EQ(directory.read(0), "only");
    EXPECT_EQ(directory.read(1), std::nullopt);
    ASSERT_TRUE(directory.write(2, "last"));
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{"only", std::nullopt, "last"}));
}

TEST(FlashIniContainer, EntryCountsBeyondTheFile) {
    const FLASH_INI_DIRECTORY directory;
    for (const unsigned long count : {4UL, 0x10000UL, 0x1FFFFFFFUL, 0x20000000UL, 0x80000000UL, 0xFFFFFFFFUL}) {
        std::string file = ref::file(SAMPLE);
        file.replace(16, 4, ref::le32(count));
        directory.write_file(file);
        expect_read_as_by_reference(file);
        EXPECT_EQ(directory.read(0), std::nullopt);
    }
}

TEST(FlashIniContainer, OffsetsAndSizesThatWrap) {
    const FLASH_INI_DIRECTORY directory;
    for (const unsigned long size : {0xFFFFFFFFUL, 0xFFFFFFD4UL, 0xFFFFFFD5UL, 0x80000000UL}) {
        const std::string file = "PGMDEV_FLASH_INI" + ref::le32(3) + ref::le32(44) + ref::le32(size) + ref::le32(45) +
                                 ref::le32(1) + std::string(8, '\0') + "data";
        directory.write_file(file);
        expect_read_as_by_reference(file);
    }
}

TEST(FlashIniContainer, DamagedFileIsReplaced) {
    const FLASH_INI_DIRECTORY directory;
    directory.write_file(ref::file(SAMPLE) + "garbage");
    ASSERT_TRUE(directory.write(0, "new"));
    EXPECT_EQ(directory.file(), ref::file(ref::BLOCKS{"new", std::nullopt, std::nullopt}));
}

TEST(FlashIniContainer, DamagedFileTooLargeForACopyStays) {
    const FLASH_INI_DIRECTORY directory;
    directory.write_file("garbage");
    const std::uintmax_t size = (std::uintmax_t{1} << 28) + 1;
    std::filesystem::resize_file(directory.path(), size);
    const DEBUG_MESSAGES messages;
    EXPECT_FALSE(directory.write(0, "new"));
    ASSERT_EQ(messages.all().size(), 1U);
    EXPECT_TRUE(
        messages.all()[0].ends_with("/pgm_flash.ini: not written, since no copy of the damaged file could be kept"))
        << messages.all()[0];
    EXPECT_EQ(std::filesystem::file_size(directory.path()), size);
    std::string beginning(7, ' ');
    std::ifstream(directory.path(), std::ios::binary).read(beginning.data(), 7);
    EXPECT_EQ(beginning, "garbage");
}

TEST(FlashIniContainer, UnknownBlocksAreNotWritten) {
    const FLASH_INI_DIRECTORY directory;
    directory.write_file(ref::file(SAMPLE));
    BYTE byte = 0;
    for (const DWORD which : {DWORD{3}, DWORD{4}, INVALID_DWORD}) {
        const auto block = static_cast<PGMDEV_FLASH_INI_ENUM>(which);
        EXPECT_FALSE(PGMDEV_FLASH_INI::write_flash_ini_data(block, &byte, 1));
        EXPECT_FALSE(PGMDEV_FLASH_INI::write_flash_ini_data(block, nullptr, 1));
        EXPECT_FALSE(PGMDEV_FLASH_INI::write_flash_ini_data(block, &byte, 0));
    }
    EXPECT_EQ(directory.file(), ref::file(SAMPLE));
}

TEST(FlashIniContainer, DataAndSizeThatContradictEachOther) {
    const FLASH_INI_DIRECTORY directory;
    directory.write_file(ref::file(SAMPLE));
    BYTE byte = 0;
    EXPECT_REPORT(PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, nullptr, 1), "data != NULL");
    EXPECT_REPORT(PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, &byte, 0), "data == NULL");
    EXPECT_EQ(directory.file(), ref::file(SAMPLE));

    const REPORTS reports;
    EXPECT_THROW(PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, nullptr, 1),
                 MSG_INTERNAL_ERROR_EXCEPTION);
    ASSERT_EQ(reports.all().size(), 1U);
    EXPECT_EQ(reports.all()[0].module, "PGMDEV");
    EXPECT_EQ(reports.all()[0].file, "pgm/pgmdev/pgmdev_flash_ini");
}

TEST(FlashIniContainer, FileThatCannotBeWritten) {
    const SCRATCH scratch;
    {
        const MODULE_DIRECTORY missing(scratch.path("missing"));
        EXPECT_FALSE(FLASH_INI_DIRECTORY::write(0, "data"));
        EXPECT_EQ(FLASH_INI_DIRECTORY::read(0), std::nullopt);
    }
    std::filesystem::create_directories(scratch.directory() / "pgm_flash.ini");
    const MODULE_DIRECTORY blocked(scratch.directory().string());
    const DEBUG_MESSAGES messages;
    EXPECT_FALSE(FLASH_INI_DIRECTORY::write(0, "data"));
    ASSERT_EQ(messages.all().size(), 1U);
    EXPECT_TRUE(messages.all()[0].ends_with(
        "/pgm_flash.ini: not written, since the file that is there cannot be read and written"))
        << messages.all()[0];
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(0), std::nullopt);
    EXPECT_EQ(scratch.file_count(), 0U);
}

TEST(FlashIniContainer, DirectoryWithAnotherAlphabet) {
    const SCRATCH scratch;
    std::filesystem::create_directories(scratch.directory() / u8"Gerätedaten 器件");
    const std::u8string name = (scratch.directory() / u8"Gerätedaten 器件").u8string();
    const MODULE_DIRECTORY directory(std::string(name.begin(), name.end()));
    EXPECT_TRUE(FLASH_INI_DIRECTORY::write(0, "data"));
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(0), "data");
}

TEST(FlashIniContainer, BlocksOfOneDirectoryNeverComeIntoAnother) {
    const SCRATCH one;
    const SCRATCH other;
    for (const SCRATCH* each : {&one, &other}) {
        const MODULE_DIRECTORY directory(each->directory().string());
        ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, each == &one ? "of one" : "of the other"));
    }
    const MODULE_DIRECTORY directory(one.directory().string());
    auto lock = std::make_unique<PGMDEV_FLASH_INI_LOCK>();
    std::thread writer([] { EXPECT_TRUE(FLASH_INI_DIRECTORY::write(0, "new")); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));  // it mostly waits for the lock by now
    const MODULE_DIRECTORY meanwhile(other.directory().string());
    lock.reset();
    writer.join();
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), "of the other");
    const MODULE_DIRECTORY again(one.directory().string());
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), "of one");
}

}  // namespace
