#include "pgmdev_flash_candidates.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <span>
#include <tuple>

#include "flash/matching.h"
#include "flash/oddities.h"
#include "pgmdev_flash_notes.h"

// The records that a response admits, and how they stand to the one that is taken.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using RECORDS = std::span<const RECORD>;
using STANDING = PGMDEV_FLASH_CANDIDATE::STANDING;

constexpr std::size_t NEAREST_COUNT = 5;

/// Where all chips have them that answer in the usual way.
constexpr BYTE MAKER = 0;
constexpr BYTE TYPE = 1;
constexpr BYTE CAPACITY = 2;

/// The record that the manager maps the response to: the first one that it meets.
DWORD taken_record(RECORDS records, bool silicon_id, std::span<const BYTE> response) {
    const auto padded = padded_response(response);
    const auto found = std::find_if(records.begin(), records.end(), [&](const RECORD& record) {
        return record.silicon_id == silicon_id && FLASH_COMPARISONS(record).are_met_by(padded);
    });
    return found == records.end() ? INVALID_DWORD : static_cast<DWORD>(found - records.begin());
}

/// Every record that no byte rules out.
std::vector<DWORD> admitted_records(RECORDS records, bool silicon_id, std::span<const BYTE> telling) {
    std::vector<DWORD> admitted;
    for (DWORD index = 0; index < records.size(); ++index) {
        const RECORD& record = records[index];
        if (record.silicon_id == silicon_id && FLASH_COMPARISONS(record).admit(telling)) {
            admitted.push_back(index);
        }
    }
    return admitted;
}

/// Whether the taken record compares a byte of the response that the other one does not.
bool says_more(const FLASH_COMPARISONS& taken, const FLASH_COMPARISONS& other, DWORD telling_count) {
    return std::any_of(taken.begin(), taken.end(), [&](const FLASH_COMPARISON& each) {
        return each.position < telling_count && !other.compare_at(each.position);
    });
}

bool is_open(const FLASH_COMPARISONS& comparisons, DWORD telling_count) {
    return std::any_of(comparisons.begin(), comparisons.end(),
                       [&](const FLASH_COMPARISON& each) { return each.position >= telling_count; });
}

STANDING standing_of(const RECORD& record, const RECORD* taken, DWORD telling_count) {
    const FLASH_COMPARISONS comparisons(record);
    if (&record == taken) {
        return STANDING::TAKEN;
    }
    if (taken == nullptr || is_open(comparisons, telling_count)) {
        return STANDING::OPEN;
    }
    const FLASH_COMPARISONS of_taken(*taken);
    const bool decides = !is_open(of_taken, telling_count) && says_more(of_taken, comparisons, telling_count);
    return decides ? STANDING::PASSED_OVER : STANDING::ALIKE;
}

/// How far a record is from the identification of an unknown chip; what is nearer is smaller.
using DISTANCE = std::tuple<bool, unsigned, DWORD>;

std::vector<DWORD> nearest_records(RECORDS records, std::span<const BYTE> response) {
    std::vector<DISTANCE> distances;
    for (DWORD index = 0; index < records.size() && response.size() > CAPACITY; ++index) {
        const RECORD& record = records[index];
        const bool usual = !record.silicon_id && record.default_dev && record.mfc_id_index == MAKER &&
                           record.memory_id_index == CAPACITY && record.memory_type_index == TYPE;
        if (!usual || record.mfc_id != response[MAKER]) {
            continue;
        }
        const bool other_type = record.memory_type != response[TYPE];
        const auto between = static_cast<unsigned>(std::abs(int{record.memory_id} - int{response[CAPACITY]}));
        if (!other_type || between == 0) {
            distances.emplace_back(other_type, between, index);
        }
    }
    const auto count = std::min(distances.size(), NEAREST_COUNT);
    std::partial_sort(distances.begin(), distances.begin() + static_cast<std::ptrdiff_t>(count), distances.end());
    std::vector<DWORD> nearest;
    for (std::size_t i = 0; i < count; ++i) {
        nearest.push_back(std::get<2>(distances[i]));
    }
    return nearest;
}

bool is_possible(const PGMDEV_FLASH_CANDIDATE& candidate) {
    return candidate.standing != STANDING::PASSED_OVER && candidate.standing != STANDING::RULED_OUT;
}

/// Positions that are not given and that a candidate which may be the device compares.
std::vector<BYTE> missing_bytes_of(const std::vector<PGMDEV_FLASH_CANDIDATE>& candidates) {
    std::set<BYTE> positions;
    for (const PGMDEV_FLASH_CANDIDATE& candidate : candidates) {
        for (const PGMDEV_FLASH_COMPARED_BYTE& each : candidate.compared) {
            if (!each.given && is_possible(candidate)) {
                positions.insert(each.position);
            }
        }
    }
    return {positions.begin(), positions.end()};
}

bool is_same_device(const RECORD& taken, const PGMDEV_FLASH_CANDIDATE& candidate, const RECORD& record) {
    return candidate.differences.empty() && record.device_name == taken.device_name;
}

}  // namespace

PGMDEV_FLASH_CANDIDATES::PGMDEV_FLASH_CANDIDATES(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, bool silicon_id,
                                                 const BYTE* response, DWORD given, const PGMDEV_FLASH_NOTES* notes) {
    const RECORDS all(records, records != nullptr ? count : 0);
    const std::span<const BYTE> bytes(response, std::min<std::size_t>(given, FLASH_RESPONSE_SIZE));
    m_telling_count = telling_bytes_of(bytes);
    m_taken = taken_record(all, silicon_id, bytes);
    examine(records, count, silicon_id, response, given, notes,
            admitted_records(all, silicon_id, bytes.first(m_telling_count)));
}

PGMDEV_FLASH_CANDIDATES::PGMDEV_FLASH_CANDIDATES(const PGMDEV_FLASH_INDEX& index, const PGMDEV_SFL_FLASH_INFO* records,
                                                 DWORD count, bool silicon_id, const BYTE* response, DWORD given,
                                                 const PGMDEV_FLASH_NOTES* notes) {
    m_telling_count = telling_bytes_of({response, std::min<std::size_t>(given, FLASH_RESPONSE_SIZE)});
    m_taken = index.taken(silicon_id, response, given);
    examine(records, count, silicon_id, response, given, notes, index.admitted(silicon_id, response, m_telling_count));
}

void PGMDEV_FLASH_CANDIDATES::examine(const PGMDEV_SFL_FLASH_INFO* records, DWORD count, bool silicon_id,
                                      const BYTE* response, DWORD given, const PGMDEV_FLASH_NOTES* notes,
                                      const std::vector<DWORD>& admitted) {
    const RECORDS all(records, records != nullptr ? count : 0);
    const std::span<const BYTE> bytes(response, std::min<std::size_t>(given, FLASH_RESPONSE_SIZE));
    m_oddity = flash_response_oddity(all, silicon_id, bytes, m_taken);

    const RECORD* const taken = m_taken != INVALID_DWORD ? &all[m_taken] : nullptr;
    m_sure =
        taken != nullptr && !silicon_id && !m_oddity.is_fault() && !is_open(FLASH_COMPARISONS(*taken), m_telling_count);
    for (const DWORD index : admitted) {
        const RECORD& record = all[index];
        PGMDEV_FLASH_CANDIDATE candidate{
            index, standing_of(record, taken, m_telling_count), compared_bytes(record, m_telling_count), {}};
        const bool otherwise_known = notes != nullptr && !silicon_id && &record != taken &&
                                     !notes->contradictions(record.device_name, response, m_telling_count).empty();
        if (otherwise_known) {
            candidate.standing = STANDING::RULED_OUT;
        }
        if (taken != nullptr && &record != taken) {
            candidate.differences = differences(*taken, record);
            m_sure = m_sure && (!is_possible(candidate) || is_same_device(*taken, candidate, record));
        }
        m_candidates.push_back(std::move(candidate));
    }
    m_missing_bytes = missing_bytes_of(m_candidates);
    if (taken == nullptr && !silicon_id) {
        m_nearest = nearest_records(all, bytes);
    }
}

std::vector<PGMDEV_FLASH_COMPARED_BYTE> PGMDEV_FLASH_CANDIDATES::compared_bytes(const PGMDEV_SFL_FLASH_INFO& record,
                                                                                DWORD given) {
    std::vector<PGMDEV_FLASH_COMPARED_BYTE> compared;
    for (const FLASH_COMPARISON& each : FLASH_COMPARISONS(record)) {
        compared.push_back({each.position, each.value, each.position < given});
    }
    std::sort(compared.begin(), compared.end(), [](const auto& a, const auto& b) { return a.position < b.position; });
    return compared;
}
