#include <gtest/gtest.h>

#include <random>

#include "pgmdev/user_flash/reference.h"
#include "support/console.h"
#include "support/repeatable_random.h"
#include "support/reports.h"
#include "support/settings.h"

namespace {

namespace flash = flash_reference;
namespace ref = user_flash_reference;

class UserFlashCodec : public testing::Test {
protected:
    /// Decodes and expects nothing but this line.
    void expect_refused(const std::string& encoded, const std::string& line) {
        const CONSOLE console;
        EXPECT_EQ(m_manager.decode_ini(encoded), "");
        EXPECT_EQ(console.output(), line);
    }

    USER_FLASH_PROBE m_manager;
    TOOL_VERSION m_version{"7.1.0", 2, 345};
};

std::string random_text(std::mt19937& random, std::size_t size) {
    std::string text(size, ' ');
    for (char& c : text) {
        c = static_cast<char>(1 + random() % 255);
    }
    return text;
}

TEST_F(UserFlashCodec, PacksTheCompressedTextInSixBitCharacters) {
    const std::string text = ref::sealed(ref::body());
    EXPECT_EQ(m_manager.encode_ini(text), ref::encoded(text));
    EXPECT_EQ(m_manager.decode_ini(ref::encoded(text)), text);
}

TEST_F(UserFlashCodec, GivesBackTextsOfEveryLength) {
    auto random = repeatable_random(1);
    for (std::size_t size = 1; size <= 600; ++size) {
        const std::string text = random_text(random, size);
        const CONSOLE console;
        const std::string encoded = m_manager.encode_ini(text);
        if (flash::deflated(text).size() > 2 * size) {
            EXPECT_EQ(encoded, "") << size;
            EXPECT_EQ(console.output(), "Fail to generate INI because of compression failure\n");
        } else {
            EXPECT_EQ(encoded, ref::encoded(text)) << size;
            EXPECT_EQ(m_manager.decode_ini(encoded), text) << size;
            EXPECT_EQ(console.output(), "");
        }
    }
}

TEST_F(UserFlashCodec, RefusesTextsThatGrowBeyondTwiceTheirSize) {
    for (const std::string text : {"", "a", "@#;"}) {
        const CONSOLE console;
        EXPECT_EQ(m_manager.encode_ini(text), "");
        EXPECT_EQ(console.output(), "Fail to generate INI because of compression failure\n");
    }
}

TEST_F(UserFlashCodec, AcceptsATrailingZeroByteOfTheLastCharacter) {
    // A multiple of three bytes fills its characters; the two other cases leave bits over.
    bool seen[3] = {};
    auto random = repeatable_random(2);
    for (std::size_t size = 20; size < 60; ++size) {
        const std::string text = random_text(random, size);
        seen[flash::deflated(text).size() % 3] = true;
        EXPECT_EQ(m_manager.decode_ini(ref::encoded(text)), text);
    }
    EXPECT_TRUE(seen[0] && seen[1] && seen[2]);
}

TEST_F(UserFlashCodec, StopsAtTheFirstCharacterOfNoValue) {
    const std::string good = ref::encoded(ref::sealed(ref::body()));
    for (const char c : std::string("+/= _\n\x7F\xFF\0", 9)) {
        for (const std::size_t where : {std::size_t{0}, good.size() / 2, good.size()}) {
            std::string bad = good;
            bad.insert(where, 2, c);
            expect_refused(bad, "Invalid INI decoding\n");
        }
    }
}

TEST_F(UserFlashCodec, RefusesWhatDoesNotDecompress) {
    const std::string line = "Fail to generate INI because of decompression failure\n";
    const std::string good = ref::encoded(ref::sealed(ref::body()));
    expect_refused("", line);
    expect_refused("0", line);
    expect_refused(std::string(1000, 'A'), line);
    expect_refused(good.substr(0, good.size() / 2), line);
    expect_refused(good.substr(1), line);
}

TEST_F(UserFlashCodec, AcceptsTwentyTimesThePackedSizeAndNotMore) {
    // A run of one letter behind a few others, until the text is exactly at the limit.
    for (std::size_t others = 0; others < 26; ++others) {
        for (std::size_t size = 200; size < 1000; ++size) {
            std::string text = std::string("abcdefghijklmnopqrstuvwxyz").substr(0, others);
            text.resize(size, 'A');
            const std::string encoded = ref::encoded(text);
            if (size == 20 * ((6 * encoded.size() + 7) / 8)) {
                EXPECT_EQ(m_manager.decode_ini(encoded), text);
                const std::string longer = ref::encoded(text + 'A');
                ASSERT_EQ(longer.size(), encoded.size());
                expect_refused(longer, "Fail to generate INI because of decompression failure\n");
                return;
            }
        }
    }
    FAIL() << "no text is exactly at the limit";
}

TEST_F(UserFlashCodec, BoundsABomb) {
    // NOLINTNEXTLINE(bugprone-string-constructor): it is meant to be long
    expect_refused(ref::encoded(std::string(50'000'000, '@')),
                   "Fail to generate INI because of decompression failure\n");
}

TEST_F(UserFlashCodec, EndsTheTextAtItsFirstZeroByte) {
    EXPECT_EQ(m_manager.decode_ini(ref::encoded(std::string("before it\0and behind", 20))), "before it");
    EXPECT_EQ(m_manager.decode_ini(ref::encoded(std::string("\0nothing at all", 15))), "");
}

TEST_F(UserFlashCodec, SignsAsTheReferenceDoes) {
    ASSERT_EQ(ref::crc16("123456789"), 0x31C3U) << "the check value of this CRC";
    auto random = repeatable_random(3);
    for (std::size_t size = 1; size <= 300; ++size) {
        const std::string text = random_text(random, size);
        EXPECT_EQ(m_manager.gen_ini_password(text), ref::password(text, ref::BANNER)) << size;
    }
}

TEST_F(UserFlashCodec, SignsKnownTexts) {
    EXPECT_EQ(m_manager.gen_ini_password("A"), "XHAAAAAAAAAAAAAA");
    EXPECT_EQ(m_manager.gen_ini_password(ref::body()), "IWATTGPPLWUPABBN");
}

TEST_F(UserFlashCodec, SignsForOneVersionOnly) {
    const std::string text = ref::body();
    {
        const TOOL_VERSION version("7.1.0", 0, 345);
        EXPECT_EQ(m_manager.gen_ini_password(text), ref::password(text, "Tessary Version: 7.1.0 Build 345"));
    }
    {
        const TOOL_VERSION version("10.0", 255, 65535);
        EXPECT_EQ(m_manager.gen_ini_password(text), ref::password(text, "Tessary Version: 10.0 SP255 Build 65535"));
    }
    ver_set_version("10.0", 0xAB000100);  // bits above the build number mean nothing
    EXPECT_EQ(m_manager.gen_ini_password(text), ref::password(text, "Tessary Version: 10.0 Build 1"));
}

TEST_F(UserFlashCodec, SignsEmptyLanesWithAA) {
    for (std::size_t size = 1; size < 8; ++size) {
        const std::string password = m_manager.gen_ini_password(std::string(size, 'x'));
        ASSERT_EQ(password.size(), 16U);
        for (std::size_t lane = size; lane < 8; ++lane) {
            EXPECT_EQ(password.substr(2 * lane, 2), "AA") << size << " " << lane;
        }
    }
}

TEST_F(UserFlashCodec, ChangesTheLettersOfOneLaneWithOneByte) {
    const std::string text = ref::body();
    const std::string password = m_manager.gen_ini_password(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string other = text;
        other[i] = static_cast<char>(other[i] ^ 1);
        const std::string changed = m_manager.gen_ini_password(other);
        for (std::size_t lane = 0; lane < 8; ++lane) {
            if (lane != i % 8) {
                EXPECT_EQ(changed.substr(2 * lane, 2), password.substr(2 * lane, 2));
            }
        }
    }
    std::string other = text;
    other[9] = 'X';
    EXPECT_NE(m_manager.gen_ini_password(other).substr(2, 2), password.substr(2, 2));
}

TEST_F(UserFlashCodec, ReportsAnEmptyText) {
    EXPECT_REPORT(m_manager.gen_ini_password(""), "total_size > 0");
}

TEST_F(UserFlashCodec, ComparesWholePasswords) {
    const std::string text = ref::body();
    const std::string password = ref::password(text, ref::BANNER);
    const CONSOLE console;
    EXPECT_TRUE(m_manager.cmp_ini_password(text, password));
    EXPECT_FALSE(m_manager.cmp_ini_password(text, password.substr(0, 15)));
    EXPECT_FALSE(m_manager.cmp_ini_password(text, password + "A"));
    EXPECT_FALSE(m_manager.cmp_ini_password(text, ""));
    for (std::size_t i = 0; i < password.size(); ++i) {
        std::string other = password;
        other[i] = other[i] == 'A' ? 'B' : 'A';
        EXPECT_FALSE(m_manager.cmp_ini_password(text, other));
    }
    EXPECT_FALSE(m_manager.cmp_ini_password("", "")) << "of the wrong length, so that nothing is computed";
    EXPECT_EQ(console.output(), "");
}

}  // namespace
