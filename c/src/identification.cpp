#include <array>
#include <memory>

#include "flash_database.h"
#include "structures.h"

// Which flash answered: the verdict, and all that is known of the response.

namespace {

using CANDIDATES = PGMDEV_FLASH_CANDIDATES;

constexpr std::size_t MOST_BYTES = 256;

constexpr std::array STANDINGS{"TAKEN", "ALIKE", "OPEN", "PASSED_OVER", "RULED_OUT"};

PGMDEV_FLASH_ANSWER identify(const pgmdev_flash_database& database, const pgmdev_flash_response& response) {
    require_argument(response.bytes != nullptr && response.size != 0, "there are no bytes of a response");
    require_argument(response.size <= MOST_BYTES, "a response has 256 bytes at most");
    return {
        database.index, database.loaded.all(), response.silicon_id, response.bytes, static_cast<DWORD>(response.size),
        database.notes};
}

const std::string& name_of(const pgmdev_flash_database& database, DWORD index) {
    return database.loaded.all()[index].device_name;
}

pgmdev_flash_verdict verdict_of(const PGMDEV_FLASH_ANSWER& answer) {
    const PGMDEV_FLASH_ODDITY& oddity = answer.candidates.oddity();
    pgmdev_flash_verdict verdict{};
    verdict.record = pgmdev_flash_database::record_of(answer.candidates.taken());
    verdict.sure = answer.is_sure();
    verdict.doubtful = answer.is_doubtful();
    verdict.telling_bytes = answer.candidates.telling_count();
    verdict.oddity = static_cast<pgmdev_flash_oddity>(oddity.kind);
    verdict.probable_record = pgmdev_flash_database::record_of(oddity.index);
    return verdict;
}

DATUM record_value(std::size_t record) {
    return record != PGMDEV_NO_RECORD ? number_value(record) : DATUM();
}

void add_verdict(pgmdev_answer& details, const PGMDEV_FLASH_ANSWER& answer) {
    const pgmdev_flash_verdict verdict = verdict_of(answer);
    details
        .add("verdict",
             {number_member("record"), flag_member("sure"), flag_member("doubtful"), number_member("telling_bytes"),
              number_member("oddity"), text_member("oddity_text"), number_member("probable_record")})
        .add({record_value(verdict.record), flag_value(verdict.sure), flag_value(verdict.doubtful),
              number_value(verdict.telling_bytes), number_value(verdict.oddity),
              text_value(answer.candidates.oddity().text), record_value(verdict.probable_record)});
}

void add_candidates(pgmdev_answer& details, const pgmdev_flash_database& database, const PGMDEV_FLASH_ANSWER& answer) {
    pgmdev_records all({number_member("record"), text_member("device_name"), text_member("standing")});
    pgmdev_records compared({number_member("candidate"), number_member("position", 8),
                             number_member("expected", 8, "", 16), flag_member("given")});
    pgmdev_records differences({number_member("candidate"), text_member("member"), text_member("risk"),
                                text_member("taken"), text_member("other"), text_member("harm")});
    for (const PGMDEV_FLASH_CANDIDATE& candidate : answer.candidates.candidates()) {
        const DATUM place = number_value(all.count());
        all.add({number_value(candidate.index), text_value(name_of(database, candidate.index)),
                 text_value(STANDINGS.at(static_cast<std::size_t>(candidate.standing)))});
        for (const PGMDEV_FLASH_COMPARED_BYTE& byte : candidate.compared) {
            compared.add({place, number_value(byte.position), number_value(byte.expected), flag_value(byte.given)});
        }
        for (const PGMDEV_FLASH_DIFFERENCE& difference : candidate.differences) {
            differences.add({place, text_value(std::string(difference.member)),
                             text_value(CANDIDATES::risk_name(difference.risk)), text_value(difference.taken),
                             text_value(difference.other), text_value(difference.harm)});
        }
    }
    details.lists.push_back({"candidates", std::move(all)});
    details.lists.push_back({"compared", std::move(compared)});
    details.lists.push_back({"differences", std::move(differences)});
    pgmdev_records& missing = details.add("missing_bytes", {number_member("position", 8)});
    for (const BYTE position : answer.candidates.missing_bytes()) {
        missing.add({number_value(position)});
    }
    pgmdev_records& nearest = details.add("nearest", {number_member("record"), text_member("device_name")});
    for (const DWORD index : answer.candidates.nearest()) {
        nearest.add({number_value(index), text_value(name_of(database, index))});
    }
}

void add_notes(pgmdev_answer& details, const PGMDEV_FLASH_ANSWER& answer) {
    pgmdev_records ambiguities({member_of_kind("response", PGMDEV_KIND_BYTES), number_member("telling_byte"),
                                text_member("told_apart_by"), text_member("risk"), text_member("harm")});
    pgmdev_records chips({number_member("ambiguity"), text_member("chip")});
    for (const PGMDEV_FLASH_AMBIGUITY& each : answer.ambiguities) {
        for (const std::string& chip : each.chips) {
            chips.add({number_value(ambiguities.count()), text_value(chip)});
        }
        ambiguities.add({{PGMDEV_KIND_BYTES, 0, std::string(each.response.begin(), each.response.end())},
                         each.telling_byte != INVALID_DWORD ? number_value(each.telling_byte) : DATUM(),
                         text_value(each.told_apart_by),
                         text_value(CANDIDATES::risk_name(each.risk)),
                         text_value(each.harm)});
    }
    details.lists.push_back({"ambiguities", std::move(ambiguities)});
    details.lists.push_back({"ambiguous_chips", std::move(chips)});
    pgmdev_records& contradictions = details.add(
        "contradictions", {number_member("position"), number_member("found", 8, "", 16), text_member("expected")});
    for (const PGMDEV_FLASH_CONTRADICTION& each : answer.contradictions) {
        contradictions.add({number_value(each.position), number_value(each.found), text_value(each.expected)});
    }
    pgmdev_records& fitting = details.add("fitting", {text_member("device_name")});
    for (const std::string& name : answer.fitting) {
        fitting.add({text_value(name)});
    }
}

}  // namespace

pgmdev_status pgmdev_flash_identify(const pgmdev_flash_database* database, const pgmdev_flash_response* response,
                                    pgmdev_flash_verdict* verdict, pgmdev_answer** details, pgmdev_error** error) {
    return guarded(error, [&]() -> pgmdev_status {
        if (details != nullptr) {
            *details = nullptr;
        }
        if (verdict != nullptr) {
            pgmdev_flash_verdict nothing{};
            nothing.record = PGMDEV_NO_RECORD;
            nothing.probable_record = PGMDEV_NO_RECORD;
            hand_out(verdict, nothing);
        }
        const PGMDEV_FLASH_ANSWER answer = identify(opened(database), handed_in(response));
        std::unique_ptr<pgmdev_answer> all;
        if (details != nullptr) {
            all = std::make_unique<pgmdev_answer>();
            add_verdict(*all, answer);
            add_candidates(*all, *database, answer);
            add_notes(*all, answer);
            *details = all.release();
        }
        if (verdict != nullptr) {
            hand_out(verdict, verdict_of(answer));
        }
        return answer.is_known() ? PGMDEV_STATUS_OK : PGMDEV_STATUS_NOT_FOUND;
    });
}
