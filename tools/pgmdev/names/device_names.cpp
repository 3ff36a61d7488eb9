#include "names/device_names.h"

#include <algorithm>
#include <utility>

#include "msg.h"
#include "pgmdev_device_grammar_mgr.h"
#include "stl.h"

namespace {

constexpr std::size_t MOST_SUGGESTIONS = 5;

/// How many changes may lie between what was typed and what was meant.
std::size_t tolerance(const std::string& name) {
    return std::clamp<std::size_t>(name.size() / 4, 1, 3);
}

/// The least number of characters to add, leave out, replace or swap with their neighbour; `limit + 1` when there are
/// more than `limit`.
std::size_t edit_distance(const std::string& left, const std::string& right, std::size_t limit) {
    const std::size_t difference = left.size() > right.size() ? left.size() - right.size() : right.size() - left.size();
    if (difference > limit) {
        return limit + 1;
    }
    std::vector<std::size_t> before_last(right.size() + 1);
    std::vector<std::size_t> last(right.size() + 1);
    std::vector<std::size_t> row(right.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= left.size(); ++i) {
        before_last.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
                row[j] = std::min(row[j], before_last[j - 2] + 1);
            }
        }
        if (*std::min_element(row.begin(), row.end()) > limit) {
            return limit + 1;
        }
    }
    return row.back();
}

/// Ends operations as every handler of ours does, but shows nothing, while it lives.
class QUIET_REPORTS {
public:
    QUIET_REPORTS()
        : m_previous(MSG_INTERNAL_ERROR::set_handler(
              [](const MSG_INTERNAL_ERROR_REPORT& report) { throw MSG_INTERNAL_ERROR_EXCEPTION(report); })) {}
    ~QUIET_REPORTS() { MSG_INTERNAL_ERROR::set_handler(m_previous); }
    QUIET_REPORTS(const QUIET_REPORTS&) = delete;
    QUIET_REPORTS& operator=(const QUIET_REPORTS&) = delete;

private:
    MSG_INTERNAL_ERROR::HANDLER m_previous;
};

std::vector<std::string> without_repetitions(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace

void for_each_part(const std::function<void(int)>& use) {
    for (int part = DEV_PART_INVALID + 1; part != DEV_PART_GENERIC && part != DEV_PART_MAX; ++part) {
        use(part);
    }
}

std::vector<std::string> part_names() {
    std::vector<std::string> names;
    for_each_part([&names](int part) { stl_toupper(names.emplace_back(dstr_get_user_string(part))); });
    return names;
}

std::vector<std::string> package_and_programming_names() {
    std::vector<std::string> names;
    for (const std::string& part : part_names()) {
        names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(part, true));
        names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(part, false, true));
    }
    return without_repetitions(std::move(names));
}

std::vector<std::string> programmer_part_names() {
    std::vector<std::string> names;
    for (const std::string& name : package_and_programming_names()) {
        names.push_back(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(name));
    }
    return without_repetitions(std::move(names));
}

std::vector<std::string> device_names() {
    std::vector<std::string> names;
    for (int device = DEV_DEVICE_INVALID + 1; device < DEV_DEVICE_GENERIC; ++device) {
        stl_toupper(names.emplace_back(dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(device))));
    }
    return names;
}

std::string did_you_mean(std::string name, std::vector<std::string> candidates) {
    stl_toupper(name);
    const std::size_t limit = tolerance(name);
    std::vector<std::pair<std::size_t, std::string>> near;
    for (std::string& candidate : without_repetitions(std::move(candidates))) {
        const std::size_t distance = edit_distance(name, candidate, limit);
        if (distance > 0 && distance <= limit && !candidate.empty()) {
            near.emplace_back(distance, std::move(candidate));
        }
    }
    std::sort(near.begin(), near.end());
    near.resize(std::min(near.size(), MOST_SUGGESTIONS));
    std::string text;
    for (const auto& [distance, candidate] : near) {
        text += (text.empty() ? "; did you mean " : ", ") + candidate;
    }
    return text;
}

std::string ask_quietly(const std::function<std::string()>& operation) {
    try {
        const QUIET_REPORTS quiet;
        return operation();
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {  // a report that ended the operation
        const MSG_INTERNAL_ERROR_REPORT& report = error.report();
        MSG_INTERNAL_ERROR::report(report.condition.c_str(), report.module.c_str(), report.file.c_str(), report.line);
        throw;
    }
}
