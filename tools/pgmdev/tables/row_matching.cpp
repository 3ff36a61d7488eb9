#include "tables/row_matching.h"

#include <algorithm>
#include <deque>
#include <unordered_map>

namespace {

constexpr std::size_t NO_PARTNER = static_cast<std::size_t>(-1);

struct PARTNERS {
    std::vector<std::size_t> of_before;
    std::vector<std::size_t> of_after;
};

/// Pairs rows that have no partner yet and the same text.
void pair_up(const std::vector<ROW_TEXTS>& before, const std::vector<ROW_TEXTS>& after, std::string ROW_TEXTS::*text,
             PARTNERS& partners) {
    std::unordered_map<std::string, std::deque<std::size_t>> waiting;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (partners.of_after[i] == NO_PARTNER) {
            waiting[after[i].*text].push_back(i);
        }
    }
    for (std::size_t i = 0; i < before.size(); ++i) {
        const auto found = partners.of_before[i] == NO_PARTNER ? waiting.find(before[i].*text) : waiting.end();
        if (found != waiting.end() && !found->second.empty()) {
            partners.of_before[i] = found->second.front();
            partners.of_after[found->second.front()] = i;
            found->second.pop_front();
        }
    }
}

/// For each pair, whether it is outside a longest run of pairs that keep their order.
std::vector<bool> out_of_order(const std::vector<std::pair<std::size_t, std::size_t>>& pairs) {
    std::vector<std::size_t> ends;  // by length of a run: the pair with which it ends, the least row of all such pairs
    std::vector<std::size_t> previous(pairs.size(), NO_PARTNER);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const auto end = std::lower_bound(ends.begin(), ends.end(), pairs[i].second,
                                          [&](std::size_t pair, std::size_t row) { return pairs[pair].second < row; });
        if (end != ends.begin()) {
            previous[i] = *(end - 1);
        }
        if (end == ends.end()) {
            ends.push_back(i);
        } else {
            *end = i;
        }
    }
    std::vector<bool> moved(pairs.size(), true);
    for (std::size_t pair = ends.empty() ? NO_PARTNER : ends.back(); pair != NO_PARTNER; pair = previous[pair]) {
        moved[pair] = false;
    }
    return moved;
}

}  // namespace

ROW_MATCHES match_rows(const std::vector<ROW_TEXTS>& before, const std::vector<ROW_TEXTS>& after) {
    PARTNERS partners{std::vector<std::size_t>(before.size(), NO_PARTNER),
                      std::vector<std::size_t>(after.size(), NO_PARTNER)};
    pair_up(before, after, &ROW_TEXTS::whole, partners);
    pair_up(before, after, &ROW_TEXTS::key, partners);
    ROW_MATCHES matches;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (partners.of_before[i] == NO_PARTNER) {
            matches.removed.push_back(i);
        } else {
            matches.pairs.emplace_back(i, partners.of_before[i]);
        }
    }
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (partners.of_after[i] == NO_PARTNER) {
            matches.added.push_back(i);
        }
    }
    matches.moved = out_of_order(matches.pairs);
    return matches;
}
