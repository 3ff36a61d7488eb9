#include <gmock/gmock.h>

#include "pgmdev/sfdp/sample.h"

// The Basic Flash Parameter Table, word by word. What is expected was worked out by hand from the standard.

namespace {

using namespace sfdp_sample;
using testing::ElementsAre;
using testing::IsEmpty;

using SFDP = PGMDEV_FLASH_SFDP;
using TEXTS = std::vector<std::string>;

std::string spelled(const SFDP::FAST_READ& read) {
    return read.mode + " " + std::to_string(read.opcode) + " " + std::to_string(read.mode_clocks) + "+" +
           std::to_string(read.wait_clocks);
}

TEXTS reads_of(const SFDP& sfdp) {
    TEXTS texts;
    for (const SFDP::FAST_READ& read : sfdp.basic().fast_reads) {
        texts.push_back(spelled(read));
    }
    return texts;
}

std::string spelled(const SFDP::ERASE_TYPE& type) {
    return std::to_string(type.number) + ": " + std::to_string(type.bytes) + " with " + std::to_string(type.opcode) +
           (type.ms ? " " + std::to_string(type.ms->typical) + ".." + std::to_string(type.ms->longest) : "");
}

TEXTS erases_of(const SFDP& sfdp) {
    TEXTS texts;
    for (const SFDP::ERASE_TYPE& type : sfdp.basic().erase_types) {
        texts.push_back(spelled(type));
    }
    return texts;
}

std::string spelled(const std::optional<SFDP::DURATION>& time) {
    return time ? std::to_string(time->typical) + ".." + std::to_string(time->longest) : "none";
}

TEST(SfdpBasicTable, SampleIsReadAsWorkedOut) {
    const SFDP sfdp = read(basic_dump(basic_words()));
    const SFDP::BASIC_TABLE& basic = sfdp.basic();
    EXPECT_EQ(basic.density_bits, 134217728U);
    EXPECT_EQ(basic.bytes(), 16777216U);
    EXPECT_EQ(SFDP::address_text(basic.address_code), "3");
    EXPECT_TRUE(basic.erase_4k_uniform);
    EXPECT_EQ(basic.erase_4k_opcode, 0x20);
    EXPECT_EQ(basic.write_granularity, 64);
    EXPECT_FALSE(basic.dtr);
    EXPECT_EQ(reads_of(sfdp), (TEXTS{"1-1-2 59 0+8", "1-2-2 187 2+2", "1-1-4 107 0+8", "1-4-4 235 2+4"}));
    EXPECT_EQ(erases_of(sfdp),
              (TEXTS{"1: 4096 with 32 48..384", "2: 32768 with 82 128..1024", "3: 65536 with 216 256..2048"}));
    EXPECT_EQ(basic.page_bytes, 256U);
    EXPECT_EQ(spelled(basic.page_program_us), "448..1792");
    EXPECT_EQ(spelled(basic.first_byte_us), "24..96");
    EXPECT_EQ(spelled(basic.next_byte_us), "2..8");
    EXPECT_EQ(spelled(basic.chip_erase_ms), "20000..80000");
    EXPECT_EQ(basic.status_polling, TEXTS{"05 bit 0"});
    EXPECT_EQ(basic.quad_enable->code, 4);
    EXPECT_EQ(basic.soft_reset, (TEXTS{"66 99", "leave 0-4-4 first"}));
    EXPECT_EQ(basic.enter_4byte, TEXTS());
    EXPECT_EQ(basic.exit_4byte, TEXTS());
}

TEST(SfdpBasicTable, LengthNotRevisionTellsWhichWordsThereAre) {
    WORDS words = basic_words();
    words.resize(9);
    const SFDP nine = read(dump({{.words = words, .minor = 9}}, 9));
    const SFDP::BASIC_TABLE& basic = nine.basic();
    EXPECT_EQ(erases_of(nine), (TEXTS{"1: 4096 with 32", "2: 32768 with 82", "3: 65536 with 216"}));
    EXPECT_FALSE(basic.page_bytes);
    EXPECT_EQ(basic.page_size(), 256U);
    EXPECT_FALSE(basic.page_program_us || basic.first_byte_us || basic.next_byte_us || basic.chip_erase_ms);
    EXPECT_FALSE(basic.status_polling || basic.quad_enable || basic.soft_reset || basic.enter_4byte ||
                 basic.exit_4byte);

    EXPECT_TRUE(read(dump({{.words = basic_words(), .minor = 0}}, 0)).basic().soft_reset);
}

TEST(SfdpBasicTable, WordsAppearOneByOne) {
    for (std::size_t count = 9; count <= 16; ++count) {
        WORDS words = basic_words();
        words.resize(count);
        const SFDP sfdp = read(basic_dump(words));
        EXPECT_EQ(sfdp.basic().erase_types[0].ms.has_value(), count >= 10) << count;
        EXPECT_EQ(sfdp.basic().page_bytes.has_value(), count >= 11) << count;
        EXPECT_EQ(sfdp.basic().status_polling.has_value(), count >= 14) << count;
        EXPECT_EQ(sfdp.basic().quad_enable.has_value(), count >= 15) << count;
        EXPECT_EQ(sfdp.basic().enter_4byte.has_value(), count >= 16) << count;
    }
}

TEST(SfdpBasicTable, DensitiesOfAnySize) {
    EXPECT_EQ(with_word(2, 0x003FFFFF).basic().density_bits, 4194304U);
    EXPECT_EQ(with_word(2, 0x7FFFFFFF).basic().density_bits, QWORD{1} << 31);
    EXPECT_EQ(with_word(2, 0x80000020).basic().density_bits, QWORD{1} << 32);
    EXPECT_EQ(with_word(2, 0x80000023).basic().density_bits, 34359738368U);
    EXPECT_EQ(with_word(2, 0x8000003F).basic().density_bits, QWORD{1} << 63);
    EXPECT_EQ(with_word(2, 0x8000003F).basic().bytes(), QWORD{1} << 60);
    for (const auto& [word, exponent] :
         {std::pair{0x80000040U, "64"}, std::pair{0x80000080U, "128"}, std::pair{0xFFFFFFFFU, "2147483647"}}) {
        const SFDP sfdp = with_word(2, word);
        EXPECT_FALSE(sfdp.basic().density_bits);
        EXPECT_EQ(sfdp.basic().bytes(), 0U);
        EXPECT_THAT(sfdp.warnings(),
                    ElementsAre("basic table at 10h word 2: 2 to the power of " + std::string(exponent) +
                                " bits are more than any chip has, the size is not used"));
        EXPECT_EQ(sfdp.basic().erase_types.size(), 3U);
    }
}

TEST(SfdpBasicTable, SizesThatDoNotAddUpAreNamed) {
    EXPECT_THAT(with_word(2, 0x80000020).warnings(),
                ElementsAre("basic table at 10h: 536870912 bytes with 3-byte addresses only"));
    EXPECT_THAT(with_words({{1, 0xFFF320E5}, {2, 0x80000020}}).warnings(), IsEmpty());
    EXPECT_THAT(with_words({{2, 0x0000000B}, {8, 0}, {9, 0}}).warnings(),
                ElementsAre("basic table at 10h word 2: 12 bits are no whole number of bytes"));
}

TEST(SfdpBasicTable, FirstWord) {
    EXPECT_EQ(SFDP::address_text(with_word(1, 0xFFF320E5).basic().address_code), "3 or 4");
    EXPECT_EQ(SFDP::address_text(with_word(1, 0xFFF520E5).basic().address_code), "4");
    EXPECT_EQ(SFDP::address_text(with_word(1, 0xFFF720E5).basic().address_code), "reserved");
    EXPECT_TRUE(with_word(1, 0xFFF920E5).basic().dtr);
    EXPECT_EQ(with_word(1, 0xFFF120E1).basic().write_granularity, 1);
    EXPECT_FALSE(with_word(1, 0xFFF1FFE7).basic().erase_4k_uniform);
    EXPECT_EQ(with_word(1, 0xFFF1FFE7).basic().erase_4k_opcode, std::nullopt);
    EXPECT_THAT(with_word(1, 0xFFF120E6).warnings(),
                ElementsAre("basic table at 10h word 1: the code of erase sizes is 2, which is reserved; taken as no "
                            "uniform 4 KiB erase"));
}

TEST(SfdpBasicTable, ReadsOfAllLines) {
    const SFDP all = with_words({{5, 0xFFFFFFFF}, {6, 0xBB27FFFF}, {7, 0xEB44FFFF}, {17, 0x8B08CB90}});
    EXPECT_EQ(reads_of(all), (TEXTS{"1-1-2 59 0+8", "1-2-2 187 2+2", "1-1-4 107 0+8", "1-4-4 235 2+4", "2-2-2 187 1+7",
                                    "4-4-4 235 2+4", "1-1-8 139 0+8", "1-8-8 203 4+16"}));
    EXPECT_EQ(reads_of(with_word(17, 0)), reads_of(read(basic_dump(basic_words()))));
    EXPECT_EQ(reads_of(with_word(1, 0xFF8120E5)), (TEXTS{"1-1-2 59 0+8"}));
}

TEST(SfdpBasicTable, ReadsOnBothEdges) {
    const SFDP sfdp = with_words({{1, 0xFF0820E5}, {17, 0}, {21, 0xFFFFFFFF}, {22, 0xBD060D05}, {23, 0xEE0AED47}});
    EXPECT_EQ(reads_of(sfdp), (TEXTS{"1S-1D-1D 13 0+5", "1S-2D-2D 189 0+6", "1S-4D-4D 237 2+7", "4S-4D-4D 238 0+10"}));
    EXPECT_THAT(reads_of(with_words({{1, 0xFF0820E5}, {17, 0}, {21, 0xFFFFFFF0}, {22, 0xBD060D05}, {23, 0}})),
                IsEmpty());
    EXPECT_THAT(reads_of(with_words({{1, 0xFF0820E5}, {17, 0}, {21, 0xFFFFFFFF}})), IsEmpty());
}

TEST(SfdpBasicTable, ReadWithAnOpcodeThatIsNoneIsNamed) {
    EXPECT_THAT(with_word(4, 0xBB42FF08).warnings(),
                ElementsAre("basic table at 10h word 4: read 1-1-2 has the opcode FF, which no read has"));
}

TEST(SfdpBasicTable, EraseTypesAsRealChipsHaveThem) {
    // Unsorted, one opcode three times, a gap.
    const SFDP sfdp = with_words({{8, 0xD810D80D}, {9, 0xD80F0000}, {10, 0x0}});
    EXPECT_EQ(erases_of(sfdp), (TEXTS{"1: 8192 with 216 1..2", "2: 65536 with 216 1..2", "4: 32768 with 216 1..2"}));
    EXPECT_THAT(sfdp.warnings(), IsEmpty());
}

TEST(SfdpBasicTable, DamagedEraseTypesAreNamedAndNotUsed) {
    const SFDP sfdp = with_words({{8, 0xFF0F200C}, {9, 0xD819D828}});
    EXPECT_EQ(erases_of(sfdp), TEXTS{"1: 4096 with 32 48..384"});
    EXPECT_THAT(
        sfdp.warnings(),
        ElementsAre("basic table at 10h word 8: erase type 2 has the opcode FF, which erases nothing; it is not used",
                    "basic table at 10h word 9: erase type 3 would erase 2 to the power of 40 bytes, more than the "
                    "chip has; it is not used",
                    "basic table at 10h word 9: erase type 4 would erase 2 to the power of 25 bytes, more than the "
                    "chip has; it is not used"));
    EXPECT_EQ(with_word(8, 0x0000200C).basic().erase_types.size(), 2U);
    EXPECT_EQ(with_word(9, 0x0000D818).basic().erase_types.size(), 3U);  // as large as the chip
}

TEST(SfdpBasicTable, EraseTimesInEveryUnit) {
    // Counts 32, 1, 2 and 32 of 1 ms, 16 ms, 128 ms and 1 s; at most 32 times that.
    const SFDP sfdp = with_words({{9, 0x5110D810}, {10, 15U | 31U << 4 | 0x20U << 11 | 0x41U << 18 | 0x7FU << 25}});
    EXPECT_EQ(erases_of(sfdp), (TEXTS{"1: 4096 with 32 32..1024", "2: 32768 with 82 16..512",
                                      "3: 65536 with 216 256..8192", "4: 65536 with 81 32000..1024000"}));
}

TEST(SfdpBasicTable, ProgramAndChipEraseTimesInEveryUnit) {
    const SFDP least = with_word(11, 0);
    EXPECT_EQ(least.basic().page_bytes, 1U);
    EXPECT_EQ(spelled(least.basic().page_program_us), "8..16");
    EXPECT_EQ(spelled(least.basic().first_byte_us), "1..2");
    EXPECT_EQ(spelled(least.basic().next_byte_us), "1..2");
    EXPECT_EQ(spelled(least.basic().chip_erase_ms), "16..32");

    const SFDP most = with_word(11, 0xFFFFFFFF);
    EXPECT_EQ(most.basic().page_bytes, 32768U);
    EXPECT_EQ(spelled(most.basic().page_program_us), "2048..65536");
    EXPECT_EQ(spelled(most.basic().first_byte_us), "128..4096");
    EXPECT_EQ(spelled(most.basic().next_byte_us), "128..4096");
    EXPECT_EQ(spelled(most.basic().chip_erase_ms), "2048000..65536000");

    EXPECT_EQ(spelled(with_word(11, 0x20000000).basic().chip_erase_ms), "256..512");
    EXPECT_EQ(spelled(with_word(11, 0x40000000).basic().chip_erase_ms), "4000..8000");
}

TEST(SfdpBasicTable, StatusPolling) {
    EXPECT_EQ(with_word(14, 0xFFFFFFFB).basic().status_polling, TEXTS{"70 bit 7"});
    EXPECT_EQ(with_word(14, 0xFFFFFFFF).basic().status_polling, (TEXTS{"05 bit 0", "70 bit 7"}));
    EXPECT_EQ(with_word(14, 0xFFFFFFF3).basic().status_polling, TEXTS());
    EXPECT_TRUE(with_word(14, 0xFFFFFFFB).polls_flag_status());
    EXPECT_FALSE(with_word(14, 0xFFFFFFF7).polls_flag_status());
}

TEST(SfdpBasicTable, QuadEnableCodes) {
    const TEXTS meanings{"no quad enable bit",
                         "status register 2 bit 1, 16-bit write (01), 8-bit write clears it",
                         "status register 1 bit 6",
                         "status register 2 bit 7, read 3F, write 3E",
                         "status register 2 bit 1, 16-bit write (01)",
                         "status register 2 bit 1, read 35, 16-bit write (01)",
                         "status register 2 bit 1, read 35, write 31",
                         "reserved"};
    for (DWORD code = 0; code < 8; ++code) {
        const SFDP sfdp = with_word(15, code << 20);
        EXPECT_EQ(sfdp.basic().quad_enable->code, code);
        EXPECT_EQ(sfdp.basic().quad_enable->meaning, meanings[code]);
        EXPECT_THAT(sfdp.warnings(), IsEmpty());
    }
}

TEST(SfdpBasicTable, WaysOutOfAndIntoModes) {
    const TEXTS resets{"F on 4 lines, 8 clocks", "F on 4 lines, 10 clocks", "F on 4 lines, 16 clocks", "F0", "66 99",
                       "leave 0-4-4 first"};
    const TEXTS ways_out{"E9",
                         "06 E9",
                         "extended address register C8/C5",
                         "bank register 16/17",
                         "configuration register B5/B1",
                         "hardware reset",
                         "software reset",
                         "power cycle"};
    const TEXTS ways_in{"B7",
                        "06 B7",
                        "extended address register C8/C5",
                        "bank register 16/17",
                        "configuration register B5/B1",
                        "4-byte instruction set",
                        "always 4-byte"};
    for (unsigned bit = 0; bit < 32; ++bit) {
        const SFDP sfdp = with_word(16, DWORD{1} << bit);
        const auto expected = [bit](unsigned first, const TEXTS& names) {
            return bit >= first && bit - first < names.size() ? TEXTS{names[bit - first]} : TEXTS();
        };
        EXPECT_EQ(sfdp.basic().soft_reset, expected(8, resets)) << bit;
        EXPECT_EQ(sfdp.basic().exit_4byte, expected(14, ways_out)) << bit;
        EXPECT_EQ(sfdp.basic().enter_4byte, expected(24, ways_in)) << bit;
    }
}

TEST(SfdpBasicTable, AllWaysAtOnceAreNotBelieved) {
    const SFDP both = with_word(16, 0xFFFFD0F0);
    EXPECT_EQ(both.basic().enter_4byte, TEXTS());
    EXPECT_EQ(both.basic().exit_4byte, TEXTS());
    EXPECT_EQ(both.basic().soft_reset, TEXTS{"66 99"});
    EXPECT_THAT(both.warnings(),
                ElementsAre("basic table at 10h word 16: every way into 4-byte mode is set, none believed"));
    const SFDP out = with_word(16, 0x01FFC000);
    EXPECT_EQ(out.basic().enter_4byte, TEXTS{"B7"});
    EXPECT_EQ(out.basic().exit_4byte, TEXTS());
    EXPECT_THAT(out.warnings(),
                ElementsAre("basic table at 10h word 16: every way out of 4-byte mode is set, none believed"));
}

}  // namespace
