#include <filesystem>

#include "fio.h"
#include "pgmdev/parameters/container_text.h"
#include "pgmdev/parameters/fixture.h"
#include "support/debug_messages.h"

// The text beside the parameter container: what it tells, and what follows from a container that it does not tell of.

namespace {

namespace ref = ini_reference;

constexpr const char* INFO = "pgm_flash.ini.info";
constexpr const char* COPY = "pgm_flash.ini.bak";

const std::string SOUND = ref::file(ref::BLOCKS{"first", "second", "third"});
const std::string CHANGED = ref::file(ref::BLOCKS{"first", "new", "third"});

class FlashIniInfo : public testing::Test {
protected:
    void lay_out(const std::string& container, const std::string& info) const {
        m_directory.write_file(container);
        m_directory.scratch().write(INFO, info);
    }

    /// Whether reading a block says that the container is doubtful, and nothing else.
    bool is_doubted() const {
        const DEBUG_MESSAGES messages;
        FLASH_INI_DIRECTORY::read(1);
        const bool doubted = !messages.all().empty();
        if (doubted) {
            EXPECT_EQ(messages.all().size(), 1U);
            EXPECT_EQ(messages.all()[0].find("PGMDEV 1 "), 0U) << messages.all()[0];
            EXPECT_NE(messages.all()[0].find("pgm_flash.ini is doubtful: "), std::string::npos) << messages.all()[0];
        }
        return doubted;
    }

    FLASH_INI_DIRECTORY m_directory;
};

TEST_F(FlashIniInfo, TellsTheDigestOfWhatWasWritten) {
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "abc"));
    EXPECT_EQ(m_directory.info(),
              "container = pgm_flash.ini\n"
              "container_sha256 = 93af926f31664d00831e943f53c6745fbc53fd4e94c141dfdcaa6286c47dc383\n"
              "written_by = pgmdev " +
                  PGMDEV_VERSION::library() + "\n");
    EXPECT_FALSE(is_doubted());
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(2, "more"));
    EXPECT_EQ(m_directory.info(), ref::info(m_directory.file()));
    EXPECT_FALSE(m_directory.has(COPY));
}

TEST_F(FlashIniInfo, EveryBitThatFlipsShows) {
    lay_out(SOUND, ref::info(SOUND));
    EXPECT_FALSE(is_doubted());
    std::size_t unseen_without = 0;
    for (std::size_t at = 0; at < SOUND.size(); ++at) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string flipped = SOUND;
            flipped[at] = static_cast<char>(flipped[at] ^ 1 << bit);
            m_directory.change_byte(at, flipped[at]);
            EXPECT_TRUE(is_doubted()) << at << ", " << bit;
            EXPECT_EQ(FLASH_INI_DIRECTORY::read(0), ref::read_block(flipped, 0));
            unseen_without += ref::read_block(flipped, 2) ? 1U : 0U;
        }
        m_directory.change_byte(at, SOUND[at]);
    }
    EXPECT_GT(unseen_without, 0U);
    EXPECT_FALSE(is_doubted());
}

TEST_F(FlashIniInfo, WithoutOneNothingIsDoubted) {
    m_directory.write_file(SOUND);
    EXPECT_FALSE(is_doubted());
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_FALSE(m_directory.has(COPY));
    EXPECT_EQ(m_directory.info(), ref::info(CHANGED));
}

TEST_F(FlashIniInfo, WhoeverWritesTheContainerWithoutItIsNotHarmed) {
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "ours"));
    m_directory.write_file(SOUND);
    EXPECT_TRUE(is_doubted());
    EXPECT_EQ(FLASH_INI_DIRECTORY::read(1), "second");
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_EQ(m_directory.file(), CHANGED);
    EXPECT_EQ(m_directory.info(), ref::info(CHANGED));
    EXPECT_EQ(read_file(m_directory.scratch().path(COPY)), SOUND);
    EXPECT_FALSE(is_doubted());
}

TEST_F(FlashIniInfo, FitsTheOldAndTheNewContainerWhileOneIsReplaced) {
    for (const std::string& container : {SOUND, CHANGED}) {
        lay_out(container, ref::info(CHANGED, SOUND));
        EXPECT_FALSE(is_doubted());
        ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "third one"));
        EXPECT_FALSE(m_directory.has(COPY));
        EXPECT_EQ(m_directory.info(), ref::info(m_directory.file()));
    }
    lay_out(SOUND + "x", ref::info(CHANGED, SOUND));
    EXPECT_TRUE(is_doubted());
}

TEST_F(FlashIniInfo, WhatIsBesideADoubtfulContainerNeverTellsThatItIsGood) {
    // Ended between the two replacements, it is as doubtful as before.
    lay_out(SOUND, ref::info(CHANGED));
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(0, "other"));
    const std::string replaced_by = m_directory.info();
    lay_out(SOUND, replaced_by);
    EXPECT_TRUE(is_doubted());
}

TEST_F(FlashIniInfo, ADamagedTextIsADoubt) {
    for (const char* text : {"", "container = pgm_flash.ini\n", "container_sha256 =\n", "\xFF\xFE",
                             "container_sha256 = 00\nreplaces_sha256 = \n"}) {
        lay_out(SOUND, text);
        EXPECT_TRUE(is_doubted()) << text;
        ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
        EXPECT_EQ(m_directory.info(), ref::info(CHANGED));
        EXPECT_EQ(read_file(m_directory.scratch().path(COPY)), SOUND);
        std::filesystem::remove(m_directory.scratch().path(COPY));
    }
}

TEST_F(FlashIniInfo, FurtherKeysAreLeftAlone) {
    lay_out(SOUND, "# ours\ncolour = red\n \tcontainer_sha256\t=  " + ref::digest(SOUND) + " \r\n");
    EXPECT_FALSE(is_doubted());
}

TEST_F(FlashIniInfo, AMebibyteIsReadAndNotMore) {
    std::string longest = ref::info(SOUND);
    longest.resize(std::size_t{1} << 20, '#');
    for (const bool too_long : {false, true}) {
        lay_out(SOUND, longest + (too_long ? "#" : ""));
        EXPECT_EQ(is_doubted(), too_long);
        ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
        EXPECT_EQ(m_directory.has(COPY), too_long);
    }
}

TEST_F(FlashIniInfo, WhereItCannotBeWrittenTheContainerIs) {
    m_directory.write_file(SOUND);
    const std::string blocked = m_directory.scratch().path(INFO);
    std::filesystem::create_directories(blocked);
    m_directory.scratch().write(std::string(INFO) + "/kept", "");
    const DEBUG_MESSAGES messages;
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    ASSERT_EQ(messages.all().size(), 1U);
    EXPECT_EQ(messages.all()[0].find("PGMDEV 1 "), 0U);
    EXPECT_TRUE(
        messages.all()[0].ends_with("pgm_flash.ini.info could not be replaced: it tells of an older container"));
    EXPECT_EQ(m_directory.file(), CHANGED);
    EXPECT_TRUE(std::filesystem::exists(blocked + "/kept"));
    EXPECT_EQ(read_file(m_directory.scratch().path(COPY)), SOUND) << "what cannot be read is a doubt";
}

TEST_F(FlashIniInfo, ADoubtfulContainerIsWrittenWithoutACopyWhereNoneCanBeKept) {
    lay_out(SOUND, ref::info(CHANGED));
    std::filesystem::create_directories(m_directory.scratch().path(COPY));
    const DEBUG_MESSAGES messages;
    ASSERT_TRUE(FLASH_INI_DIRECTORY::write(1, "new"));
    EXPECT_EQ(m_directory.file(), CHANGED);
    ASSERT_EQ(messages.all().size(), 1U);
    EXPECT_EQ(messages.all()[0].find("PGMDEV 1 "), 0U);
    EXPECT_TRUE(messages.all()[0].ends_with("pgm_flash.ini is doubtful, and no copy of it could be kept"));

    m_directory.write_file(SOUND + "garbage");
    EXPECT_FALSE(FLASH_INI_DIRECTORY::write(1, "new")) << "of a damaged one, blocks would be lost";
    EXPECT_EQ(m_directory.file(), SOUND + "garbage");
}

}  // namespace
