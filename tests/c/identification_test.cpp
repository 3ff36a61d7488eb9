#include <thread>

#include "c/owned.h"
#include "pgmdev_flash_candidates.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_flash_notes.h"
#include "support/repeatable_random.h"

// Every response to the C interface is answered as the classes answer it.

namespace {

using RESPONSE = std::vector<BYTE>;

/// The database, by both ways.
class CIdentification : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(pgmdev_flash_open(nullptr, m_flash.place(), nullptr), PGMDEV_STATUS_OK); }

    std::span<const PGMDEV_SFL_FLASH_INFO> records() {
        return {m_manager.get_flash_database(), m_manager.get_flash_count()};
    }

    PGMDEV_FLASH_CANDIDATES candidates_of(const RESPONSE& response, bool silicon_id) {
        return {records().data(), static_cast<DWORD>(records().size()), silicon_id,
                response.data(),  static_cast<DWORD>(response.size()),  &m_notes};
    }

    pgmdev_status identify(const RESPONSE& response, bool silicon_id, pgmdev_answer** details = nullptr) {
        m_verdict = {};
        m_verdict.struct_size = sizeof m_verdict;
        pgmdev_flash_response given{};
        given.struct_size = sizeof given;
        given.bytes = response.data();
        given.size = response.size();
        given.silicon_id = silicon_id;
        return pgmdev_flash_identify(m_flash, &given, &m_verdict, details, nullptr);
    }

    /// The record is that of the manager, and with what the candidates say, the verdict is that of the command.
    void expect_verdict(const RESPONSE& response, bool silicon_id) {
        std::array<BYTE, 256> padded{};
        std::copy(response.begin(), response.end(), padded.begin());
        const bool mapped = m_manager.flash_id_database_mapping(silicon_id, 0, padded.data());
        const DWORD index = m_manager.get_flash_mapping_index(0, true);
        ASSERT_EQ(identify(response, silicon_id), mapped ? PGMDEV_STATUS_OK : PGMDEV_STATUS_NOT_FOUND);
        ASSERT_EQ(m_verdict.record, mapped ? index : PGMDEV_NO_RECORD);
        const PGMDEV_FLASH_CANDIDATES candidates = candidates_of(response, silicon_id);
        const DWORD telling = candidates.telling_count();
        const bool ambiguous = !silicon_id && !m_notes.ambiguities_of(response.data(), telling).empty();
        const bool contradicted =
            !silicon_id && mapped &&
            !m_notes.contradictions(records()[index].device_name, response.data(), telling).empty();
        EXPECT_EQ(m_verdict.sure, mapped && candidates.is_sure() && !ambiguous && !contradicted);
        EXPECT_EQ(m_verdict.doubtful, candidates.oddity().is_fault() || contradicted);
        EXPECT_EQ(m_verdict.telling_bytes, telling);
        EXPECT_EQ(m_verdict.oddity, static_cast<pgmdev_flash_oddity>(candidates.oddity().kind));
    }

    PGMDEV_FLASH_MANAGER m_manager{false, 1, false, false};
    PGMDEV_FLASH_NOTES m_notes =
        PGMDEV_FLASH_NOTES::beside_database(std::string(TEST_DEVICES_DIR) + "/programmer/pgm_flash.pcf");
    C_FLASH m_flash;
    pgmdev_flash_verdict m_verdict{};
};

/// What a flash answers of which a record compares some bytes.
RESPONSE response_of(const PGMDEV_SFL_FLASH_INFO& record) {
    RESPONSE response;
    for (const auto& byte : PGMDEV_FLASH_CANDIDATES::compared_bytes(record, 256)) {
        response.resize(std::max<std::size_t>(response.size(), byte.position + 1U));
        response[byte.position] = byte.expected;
    }
    return response;
}

}  // namespace

TEST_F(CIdentification, EveryChipIsIdentifiedAsByTheManager) {
    for (const PGMDEV_SFL_FLASH_INFO& record : records()) {
        SCOPED_TRACE(record.device_name);
        ASSERT_NO_FATAL_FAILURE(expect_verdict(response_of(record), record.silicon_id));
    }
}

TEST_F(CIdentification, SoIsAnyResponse) {
    auto random = repeatable_random(7);
    for (int round = 0; round < 200; ++round) {
        RESPONSE response = response_of(records()[random() % records().size()]);
        response.resize(1 + random() % 8);
        response[random() % response.size()] = static_cast<BYTE>(random());
        ASSERT_NO_FATAL_FAILURE(expect_verdict(response, round % 4 == 0));
    }
    for (const RESPONSE& response :
         {RESPONSE{0, 0, 0}, RESPONSE{0xFF}, RESPONSE{0x17, 0x40, 0xEF}, RESPONSE(256, 0x7F)}) {
        ASSERT_NO_FATAL_FAILURE(expect_verdict(response, false));
    }
}

TEST_F(CIdentification, SeveralThreadsMayAsk) {
    const RESPONSE response{0xEF, 0x40, 0x17};
    ASSERT_EQ(identify(response, false), PGMDEV_STATUS_OK);
    const std::size_t expected = m_verdict.record;
    std::array<std::size_t, 4> found{};
    std::vector<std::thread> threads;
    threads.reserve(found.size());
    for (std::size_t& record : found) {
        threads.emplace_back([&] {
            pgmdev_flash_response given{};
            given.struct_size = sizeof given;
            given.bytes = response.data();
            given.size = response.size();
            pgmdev_flash_verdict verdict{};
            verdict.struct_size = sizeof verdict;
            C_ANSWER details;
            for (int round = 0; round < 20; ++round) {
                pgmdev_flash_identify(m_flash, &given, &verdict, details.place(), nullptr);
            }
            record = verdict.record;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::size_t record : found) {
        EXPECT_EQ(record, expected);
    }
}

TEST_F(CIdentification, TheDetailsAreThoseOfTheClasses) {
    for (const RESPONSE& response : {RESPONSE{0xC2, 0x20, 0x19}, RESPONSE{0x20, 0xBA, 0x18},
                                     RESPONSE{0x20, 0xBA, 0x18, 0x10, 0x44, 0x00}, RESPONSE{0xEF, 0x40, 0x99}}) {
        C_ANSWER details;
        identify(response, false, details.place());
        const PGMDEV_FLASH_CANDIDATES expected = candidates_of(response, false);
        ROWS candidates;
        ROWS compared;
        ROWS differences;
        for (const PGMDEV_FLASH_CANDIDATE& each : expected.candidates()) {
            constexpr std::array STANDINGS{"TAKEN", "ALIKE", "OPEN", "PASSED_OVER", "RULED_OUT"};
            const std::string place = std::to_string(candidates.size());
            candidates.push_back({std::to_string(each.index), records()[each.index].device_name,
                                  STANDINGS[static_cast<std::size_t>(each.standing)]});
            for (const auto& byte : each.compared) {
                compared.push_back(
                    {place, std::to_string(byte.position), std::to_string(byte.expected), byte.given ? "1" : "0"});
            }
            for (const auto& difference : each.differences) {
                differences.push_back({place, std::string(difference.member),
                                       PGMDEV_FLASH_CANDIDATES::risk_name(difference.risk), difference.taken,
                                       difference.other, difference.harm});
            }
        }
        EXPECT_EQ(list_of(details, "candidates"), candidates);
        EXPECT_EQ(list_of(details, "compared"), compared);
        EXPECT_EQ(list_of(details, "differences"), differences);
        ROWS missing;
        for (const BYTE position : expected.missing_bytes()) {
            missing.push_back({std::to_string(position)});
        }
        EXPECT_EQ(list_of(details, "missing_bytes"), missing);
        ROWS nearest;
        for (const DWORD index : expected.nearest()) {
            nearest.push_back({std::to_string(index), records()[index].device_name});
        }
        EXPECT_EQ(list_of(details, "nearest"), nearest);
        ROWS chips;
        const auto ambiguities = m_notes.ambiguities_of(response.data(), expected.telling_count());
        for (std::size_t i = 0; i < ambiguities.size(); ++i) {
            for (const std::string& chip : ambiguities[i].chips) {
                chips.push_back({std::to_string(i), chip});
            }
        }
        EXPECT_EQ(list_of(details, "ambiguous_chips"), chips);
        EXPECT_EQ(list_of(details, "ambiguities").size(), ambiguities.size());
    }
}

TEST_F(CIdentification, TellsWhatAKnownAmbiguityIsAbout) {
    C_ANSWER details;
    ASSERT_EQ(identify({0xC2, 0x20, 0x19}, false, details.place()), PGMDEV_STATUS_OK);
    const ROWS ambiguities = list_of(details, "ambiguities");
    ASSERT_EQ(ambiguities.size(), 1U);
    EXPECT_EQ(ambiguities[0][0], "194 32 25");
    EXPECT_EQ(ambiguities[0][1], "-");  // no byte tells them apart
    EXPECT_NE(ambiguities[0][4].find("4-byte instructions"), std::string::npos);
    EXPECT_EQ(list_of(details, "verdict")[0][1], "0");
    std::vector<std::string> names;
    for (std::size_t i = 0; i < pgmdev_answer_list_count(details); ++i) {
        names.emplace_back(pgmdev_answer_list_name(details, i));
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"verdict", "candidates", "compared", "differences", "missing_bytes", "nearest",
                                        "ambiguities", "ambiguous_chips", "contradictions", "fitting"}));
    EXPECT_EQ(pgmdev_answer_list_name(details, names.size()), nullptr);
    EXPECT_EQ(pgmdev_answer_list(details, "no such list"), nullptr);
}

TEST_F(CIdentification, ResponsesOfNoSizeAreRefused) {
    EXPECT_EQ(identify({}, false), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(m_verdict.record, PGMDEV_NO_RECORD);
    EXPECT_EQ(identify(RESPONSE(257), false), PGMDEV_STATUS_INVALID_ARGUMENT);
    EXPECT_NE(identify(RESPONSE(256), false), PGMDEV_STATUS_INVALID_ARGUMENT);
}
