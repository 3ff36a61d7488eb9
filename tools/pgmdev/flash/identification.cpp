#include "flash/identification.h"

#include <fmt/core.h>

#include <algorithm>

#include "files/origins.h"
#include "flash/aliases.h"
#include "flash/database.h"
#include "flash/log_words.h"
#include "flash/named_rows.h"
#include "gen.h"
#include "pgmdev_flash_table.h"
#include "terminal/command.h"
#include "terminal/did_you_mean.h"
#include "terminal/standard_error.h"

namespace {

/// A name is similar that has as many characters of another one.
constexpr std::size_t LEAST_BEGINNING = 5;

constexpr std::string_view SILICON_PREFIX = "silicon:";

PGMDEV_FLASH_NOTES installed_notes() {
    auto notes = PGMDEV_FLASH_NOTES::beside_database(flash_database_place().path);
    for (const auto* file : {&notes.ambiguities_file(), &notes.identifications_file()}) {
        for (const PGMDEV_TABLE_FAULT& fault : file->faults) {
            print_error("pgmdev: {}", PGMDEV_FLASH_TABLE::describe(fault, file->file));
        }
    }
    return notes;
}

/// The bytes in which the response is not what the record compares.
std::vector<PGMDEV_FLASH_CONTRADICTION> compared_otherwise(const PGMDEV_SFL_FLASH_INFO& record,
                                                           const ID_RESPONSE& response) {
    std::vector<PGMDEV_FLASH_CONTRADICTION> found;
    for (const auto& each : PGMDEV_FLASH_CANDIDATES::compared_bytes(record, response.count)) {
        if (each.given && response.bytes[each.position] != each.expected) {
            found.push_back({each.position, response.bytes[each.position], fmt::format("{:02X}", each.expected)});
        }
    }
    return found;
}

/// What a flash answers that a record is recognised by, up to the first byte that it does not compare.
ID_RESPONSE response_of(const PGMDEV_SFL_FLASH_INFO& record) {
    ID_RESPONSE response;
    for (const auto& each : PGMDEV_FLASH_CANDIDATES::compared_bytes(record, UINT8_MAX + 1)) {
        if (each.position != response.count) {
            break;
        }
        response.bytes[response.count++] = each.expected;
    }
    return response;
}

void add_new(std::vector<DWORD>& indexes, DWORD added, DWORD mapped) {
    if (added != mapped && std::find(indexes.begin(), indexes.end(), added) == indexes.end()) {
        indexes.push_back(added);
    }
}

}  // namespace

FLASH_QUESTION FLASH_QUESTION::parse(const std::string& text, bool all_silicon) {
    FLASH_QUESTION question;
    question.text = text;
    std::string digits = gen_remove_leading_and_trailing_white_spaces(text);
    question.silicon_id = all_silicon;
    if (gen_stricmp(digits.substr(0, SILICON_PREFIX.size()), std::string(SILICON_PREFIX)) == 0) {
        question.silicon_id = true;
        digits.erase(0, SILICON_PREFIX.size());
    }
    question.bytes = parse_id_response(digits);
    return question;
}

FLASH_IDENTIFIER::FLASH_IDENTIFIER(DWORD device_count)
    : m_manager(open_flash_database(device_count)),
      m_notes(installed_notes()),
      m_records(m_manager.get_flash_database()),
      m_device_count(device_count) {}

DWORD FLASH_IDENTIFIER::index_of(const std::string& device_name) {
    const PGMDEV_SFL_FLASH_INFO* record = record_named(device_name);
    if (record == nullptr) {
        throw USAGE_ERROR(no_flash_named(device_name) + did_you_mean(similar_names(device_name)));
    }
    return static_cast<DWORD>(record - m_records);
}

bool FLASH_IDENTIFIER::knows(const std::string& device_name) {
    return m_manager.get_default_flash(device_name) != nullptr;
}

const PGMDEV_SFL_FLASH_INFO* FLASH_IDENTIFIER::record_named(const std::string& name) {
    const PGMDEV_SFL_FLASH_INFO* record = m_manager.get_default_flash(name);
    const std::optional<FLASH_ALIAS> alias = record == nullptr ? find_flash_alias(name) : std::nullopt;
    return alias ? m_manager.get_default_flash(alias->device_name) : record;
}

std::vector<std::string> FLASH_IDENTIFIER::similar_names(const std::string& device_name) {
    const std::vector<std::string> names = names_of_installed_flash({m_records, m_manager.get_flash_count()});
    std::vector<std::string> similar = probably_meant(device_name, names);
    for (std::size_t length = device_name.size(); similar.empty() && length >= LEAST_BEGINNING; --length) {
        similar = longer_or_shorter(device_name.substr(0, length), names);
    }
    return similar;
}

PGMDEV_FLASH_CANDIDATES FLASH_IDENTIFIER::candidates_of(const FLASH_QUESTION& question) {
    constexpr DWORD WALKS_FOR_AN_INDEX = 16;  // take about as long as making one
    const DWORD count = m_manager.get_flash_count();
    const ID_RESPONSE& bytes = question.bytes;
    if (m_index || ++m_walks > WALKS_FOR_AN_INDEX) {
        if (!m_index) {
            m_index.emplace(m_records, count);
        }
        return {*m_index, m_records, count, question.silicon_id, bytes.data(), bytes.count, &m_notes};
    }
    return {m_records, count, question.silicon_id, bytes.data(), bytes.count, &m_notes};
}

FLASH_IDENTIFICATION FLASH_IDENTIFIER::identify(DWORD position, FLASH_QUESTION question) {
    const DWORD count = m_manager.get_flash_count();
    ID_RESPONSE& bytes = question.bytes;
    FLASH_IDENTIFICATION device{question, INVALID_DWORD, PGMDEV_FLASH_ANSWER(candidates_of(question)), {}};
    if (!question.silicon_id) {
        device.answer.consult(m_notes, {m_records, count}, bytes.data());
        std::erase_if(device.answer.fitting, [this](const std::string& name) { return !knows(name); });
    }
    if (count != 0 && m_manager.flash_id_database_mapping(question.silicon_id, position, bytes.data())) {
        device.index = m_manager.get_flash_mapping_index(position, false);
    }
    if (device.is_by_hand()) {
        device.index = index_of(question.by_hand);
        m_manager.set_flash_mapping_index(position, device.index);
        device.answer.contradictions = compared_otherwise(m_records[device.index], bytes);
        device.answer.fitting.clear();
    }
    if (!device.is_mapped()) {
        std::vector<DWORD> possible;
        for (const PGMDEV_FLASH_CANDIDATE& candidate : device.answer.candidates.candidates()) {
            if (candidate.standing == PGMDEV_FLASH_CANDIDATE::STANDING::OPEN) {
                possible.push_back(candidate.index);
            }
        }
        device.nearest = possible.empty() ? device.answer.candidates.nearest() : possible;
    }
    return device;
}

std::optional<FLASH_IDENTIFICATION> FLASH_IDENTIFIER::identify_named(DWORD position,
                                                                     const std::vector<std::string>& names) {
    const DWORD count = m_manager.get_flash_count();
    if (!m_named_rows) {
        m_named_rows = all_named_rows({m_records, count});
    }
    const NAMED_ROWS rows = rows_named(names, *m_named_rows);
    if (rows.meant.empty() && rows.family.empty()) {
        return std::nullopt;
    }
    FLASH_QUESTION question;
    question.text = names.front();
    question.is_name = true;
    if (rows.meant.empty()) {
        const ID_RESPONSE none;
        return FLASH_IDENTIFICATION{question, INVALID_DWORD, PGMDEV_FLASH_ANSWER({m_records, 0, false, none.data(), 0}),
                                    rows.family};
    }
    question.by_hand = rows.meant.front().name;
    const DWORD index = rows.meant.front().index;
    m_manager.set_flash_mapping_index(position, index);
    const ID_RESPONSE bytes = response_of(m_records[index]);
    FLASH_IDENTIFICATION device{
        question, index, PGMDEV_FLASH_ANSWER({m_records, count, false, bytes.data(), bytes.count, &m_notes}), {}};
    for (const NAMED_ROW& row : rows.meant) {
        add_new(device.nearest, row.index, index);
    }
    for (const PGMDEV_FLASH_CANDIDATE& candidate : device.answer.candidates.candidates()) {
        const bool is_possible = candidate.standing != PGMDEV_FLASH_CANDIDATE::STANDING::PASSED_OVER &&
                                 candidate.standing != PGMDEV_FLASH_CANDIDATE::STANDING::RULED_OUT;
        if (is_possible && bytes.count >= LEAST_IDENTIFICATION && m_records[candidate.index].default_dev) {
            add_new(device.nearest, candidate.index, index);
        }
    }
    for (const DWORD each : rows.family) {
        add_new(device.nearest, each, index);
    }
    device.answer.ambiguities = m_notes.ambiguities_of(bytes.data(), bytes.count);
    return device;
}

std::optional<DWORD> FLASH_IDENTIFIER::longest_program_utime() {
    for (DWORD position = 0; position < m_device_count && m_manager.get_flash_count() != 0; ++position) {
        if (m_manager.get_flash_mapping_index(position, true) != INVALID_DWORD) {
            return m_manager.sfl_get_chain_longest_program_utime();
        }
    }
    return std::nullopt;
}

std::string compared_text(const std::vector<PGMDEV_FLASH_COMPARED_BYTE>& compared) {
    std::string text;
    for (const PGMDEV_FLASH_COMPARED_BYTE& each : compared) {
        if (each.given) {
            text += fmt::format("{}byte {} = {:02X}", text.empty() ? "" : ", ", each.position, each.expected);
        }
    }
    return text;
}
