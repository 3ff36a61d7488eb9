#include <filesystem>

#include "c/owned.h"
#include "pgmdev_flash_sfdp.h"
#include "support/scratch.h"

// What flash says of itself, through the C interface.

namespace {

using SFDP = PGMDEV_FLASH_SFDP;

struct DUMP {
    explicit DUMP(const std::filesystem::path& file) : text(read_file(file)) {}

    std::string text;
    std::array<uint8_t, 3> id{0xC2, 0x20, 0x19};

    std::span<const BYTE> bytes() const { return {reinterpret_cast<const BYTE*>(text.data()), text.size()}; }
    pgmdev_status decode(pgmdev_answer** answer, pgmdev_error** error) const {
        return pgmdev_sfdp_decode(bytes().data(), text.size(), id.data(), id.size(), answer, error);
    }
};

ROWS texts(const std::vector<std::string>& all) {
    ROWS rows;
    for (const std::string& text : all) {
        rows.push_back({text});
    }
    return rows;
}

std::string text_of(uint64_t number) {
    return std::to_string(number);
}

void expect_answer(const pgmdev_answer* answer, const SFDP& sfdp, const SFDP::DERIVED_RECORD& derived) {
    ROWS headers;
    for (const SFDP::HEADER& header : sfdp.headers()) {
        headers.push_back({text_of(header.id), SFDP::table_name(header.id), text_of(header.major),
                           text_of(header.minor), text_of(header.words), text_of(header.offset)});
    }
    EXPECT_EQ(list_of(answer, "headers"), headers);
    ROWS reads;
    for (const SFDP::FAST_READ& read : sfdp.basic().fast_reads) {
        reads.push_back({read.mode, text_of(read.opcode), text_of(read.mode_clocks), text_of(read.wait_clocks)});
    }
    EXPECT_EQ(list_of(answer, "fast_reads"), reads);
    ROWS erases;
    for (const SFDP::ERASE_TYPE& type : sfdp.basic().erase_types) {
        erases.push_back({text_of(type.number), text_of(type.bytes), text_of(type.opcode),
                          type.ms ? text_of(type.ms->typical) : "-", type.ms ? text_of(type.ms->longest) : "-",
                          type.opcode_4byte ? text_of(*type.opcode_4byte) : "-"});
    }
    EXPECT_EQ(list_of(answer, "erase_types"), erases);
    EXPECT_EQ(list_of(answer, "warnings"), texts(sfdp.warnings()));
    EXPECT_EQ(list_of(answer, "soft_reset"), texts(sfdp.basic().soft_reset.value_or(std::vector<std::string>())));
    EXPECT_EQ(list_of(answer, "four_byte_instructions"),
              texts(sfdp.four_byte() ? sfdp.four_byte()->support : std::vector<std::string>()));
    EXPECT_EQ(list_of(answer, "sector_maps").size(), sfdp.sector_maps().size());
    EXPECT_EQ(list_of(answer, "basic").at(0).at(0),
              sfdp.basic().density_bits ? text_of(*sfdp.basic().density_bits) : "-");
    EXPECT_EQ(list_of(answer, "sfdp").at(0).at(3), sfdp.standard());
    const pgmdev_records* record = pgmdev_answer_list(answer, "record");
    ASSERT_EQ(pgmdev_records_count(record), derived.obstacle.empty() ? 1U : 0U);
    if (derived.obstacle.empty()) {
        uint64_t bits = 0;
        ASSERT_EQ(pgmdev_records_number(record, 0, "device_bit_size", &bits, nullptr), PGMDEV_STATUS_OK);
        EXPECT_EQ(bits, derived.record.device_bit_size);
    }
    EXPECT_EQ(list_of(answer, "assumed").size(), derived.assumed.size());
    EXPECT_EQ(list_of(answer, "obstacle").size(), derived.obstacle.empty() ? 0U : 1U);
}

}  // namespace

TEST(CSfdp, EveryDumpIsReadAsByTheClass) {
    int dumps = 0;
    for (const auto& file : std::filesystem::directory_iterator(TEST_SFDP_DIR)) {
        if (file.path().extension() != ".sfdp") {
            continue;
        }
        SCOPED_TRACE(file.path().filename());
        const DUMP dump(file.path());
        C_ANSWER answer;
        ASSERT_EQ(dump.decode(answer.place(), nullptr), PGMDEV_STATUS_OK);
        const SFDP sfdp = SFDP::from_bytes(dump.bytes());
        expect_answer(answer, sfdp, sfdp.record(dump.id));
        ++dumps;
    }
    EXPECT_GT(dumps, 10);
}

TEST(CSfdp, WhatIsNoDumpIsRefused) {
    DUMP dump(std::string(TEST_SFDP_DIR) + "/W25Q128JV.sfdp");
    dump.text[0] = 'X';
    C_ANSWER answer;
    C_ERROR error;
    ASSERT_EQ(dump.decode(answer.place(), error.place()), PGMDEV_STATUS_REFUSED);
    const SFDP sfdp = SFDP::from_bytes(dump.bytes());
    const SFDP::REFUSAL& refusal = sfdp.refusal().value();
    EXPECT_EQ(pgmdev_error_message(error), SFDP::describe(refusal));
    EXPECT_EQ(list_of(answer, "refusal"),
              (ROWS{{text_of(refusal.offset), refusal.field, refusal.found, refusal.expected}}));
    EXPECT_EQ(pgmdev_answer_list_count(answer), 1U);
    EXPECT_EQ(pgmdev_sfdp_decode(nullptr, 0, nullptr, 0, answer.place(), nullptr), PGMDEV_STATUS_REFUSED);
}
