#include <algorithm>

#include "flash/matching.h"
#include "pgmdev_flash_candidates.h"

// Looking records up by what they compare. Rows of a table compare bytes at few different positions; within such a group
// three bytes lead to the records at once, and when only the first of the positions were read, these do.

namespace {

std::vector<FLASH_COMPARISON> by_position(const PGMDEV_SFL_FLASH_INFO& record) {
    const FLASH_COMPARISONS comparisons(record);
    std::vector<FLASH_COMPARISON> sorted(comparisons.begin(), comparisons.end());
    std::sort(sorted.begin(), sorted.end(),
              [](const FLASH_COMPARISON& a, const FLASH_COMPARISON& b) { return a.position < b.position; });
    return sorted;
}

}  // namespace

PGMDEV_FLASH_INDEX::PGMDEV_FLASH_INDEX(const PGMDEV_SFL_FLASH_INFO* records, DWORD count) {
    for (DWORD index = 0; records != nullptr && index < count; ++index) {
        const std::vector<FLASH_COMPARISON> comparisons = by_position(records[index]);
        std::vector<BYTE> positions;
        positions.reserve(comparisons.size());
        for (const FLASH_COMPARISON& each : comparisons) {
            positions.push_back(each.position);
        }
        GROUP& group = group_of(records[index].silicon_id, positions);
        DWORD key = 0;
        group.by_known_bytes[0][key].push_back(index);
        for (std::size_t known = 1; known <= comparisons.size(); ++known) {
            key = key << 8 | comparisons[known - 1].value;
            group.by_known_bytes[known][key].push_back(index);
        }
    }
}

PGMDEV_FLASH_INDEX::GROUP& PGMDEV_FLASH_INDEX::group_of(bool silicon_id, const std::vector<BYTE>& positions) {
    const auto found = std::find_if(m_groups.begin(), m_groups.end(), [&](const GROUP& group) {
        return group.silicon_id == silicon_id && group.positions == positions;
    });
    if (found != m_groups.end()) {
        return *found;
    }
    GROUP& group = m_groups.emplace_back();
    group.silicon_id = silicon_id;
    group.positions = positions;
    group.by_known_bytes.resize(positions.size() + 1);
    return group;
}

DWORD PGMDEV_FLASH_INDEX::key_of(const GROUP& group, DWORD known, const BYTE* response, DWORD given) {
    DWORD key = 0;
    for (DWORD i = 0; i < known; ++i) {
        const BYTE position = group.positions[i];
        key = key << 8 | (position < given ? response[position] : BYTE{0});
    }
    return key;
}

std::vector<DWORD> PGMDEV_FLASH_INDEX::admitted(bool silicon_id, const BYTE* response, DWORD given) const {
    std::vector<DWORD> all;
    for (const GROUP& group : m_groups) {
        if (group.silicon_id != silicon_id) {
            continue;
        }
        const auto first_open = std::lower_bound(group.positions.begin(), group.positions.end(), given);
        const auto known = static_cast<DWORD>(first_open - group.positions.begin());
        const auto found = group.by_known_bytes[known].find(key_of(group, known, response, given));
        if (found != group.by_known_bytes[known].end()) {
            all.insert(all.end(), found->second.begin(), found->second.end());
        }
    }
    std::sort(all.begin(), all.end());
    return all;
}

DWORD PGMDEV_FLASH_INDEX::taken(bool silicon_id, const BYTE* response, DWORD given) const {
    DWORD first = INVALID_DWORD;
    for (const GROUP& group : m_groups) {
        const auto known = static_cast<DWORD>(group.positions.size());
        const auto found = group.by_known_bytes[known].find(key_of(group, known, response, given));
        if (group.silicon_id == silicon_id && found != group.by_known_bytes[known].end()) {
            first = std::min(first, found->second.front());
        }
    }
    return first;
}
