#include "flash/named_rows.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>

#include "ascii.h"
#include "flash/aliases.h"
#include "gen.h"

namespace {

/// Shorter names begin too many others.
constexpr std::size_t SHORTEST_BEGINNING = 6;

struct ANY_CASE_ORDER {
    bool operator()(const std::string& a, const std::string& b) const { return gen_stricmp(a, b) < 0; }
};

/// Whether the shorter one of both is the beginning of the other.
bool begin_alike(std::string_view printed, std::string_view name) {
    for (std::size_t i = 0; i < std::min(printed.size(), name.size()); ++i) {
        if (printed[i] != '.' && ascii_lower(printed[i]) != ascii_lower(name[i])) {
            return false;
        }
    }
    return true;
}

/// Behind a number that goes on stands another size.
bool goes_on_as_number(std::string_view text, std::size_t place) {
    return place < text.size() && text[place] >= '0' && text[place] <= '9';
}

void add_index(std::vector<DWORD>& indexes, DWORD index) {
    if (std::find(indexes.begin(), indexes.end(), index) == indexes.end()) {
        indexes.push_back(index);
    }
}

/// What stands for one of the names.
struct NAMED_LIKE {
    std::vector<NAMED_ROW> same;
    std::vector<DWORD> longer;
    std::vector<NAMED_ROW> beginnings;  ///< the longest ones
};

NAMED_LIKE look_for(std::string_view printed, const std::vector<NAMED_ROW>& names) {
    NAMED_LIKE found;
    for (const NAMED_ROW& each : names) {
        const std::size_t length = each.name.size();
        if (!begin_alike(printed, each.name)) {
            continue;
        }
        if (length == printed.size()) {
            found.same.push_back(each);
        } else if (length > printed.size() && !goes_on_as_number(each.name, printed.size())) {
            add_index(found.longer, each.index);
        } else if (length < printed.size() && length >= SHORTEST_BEGINNING && !goes_on_as_number(printed, length)) {
            const std::size_t longest = found.beginnings.empty() ? 0 : found.beginnings.front().name.size();
            if (length > longest) {
                found.beginnings.clear();
            }
            if (length >= longest) {
                found.beginnings.push_back(each);
            }
        }
    }
    return found;
}

bool are_one_row(const std::vector<NAMED_ROW>& rows) {
    return !rows.empty() && std::all_of(rows.begin(), rows.end(),
                                        [&rows](const NAMED_ROW& each) { return each.index == rows.front().index; });
}

}  // namespace

std::vector<NAMED_ROW> all_named_rows(std::span<const PGMDEV_SFL_FLASH_INFO> records) {
    std::vector<NAMED_ROW> names;
    std::map<std::string, DWORD, ANY_CASE_ORDER> rows;
    for (DWORD index = 0; index < records.size(); ++index) {
        if (records[index].default_dev) {
            names.push_back({index, records[index].device_name});
            rows.emplace(records[index].device_name, index);
        }
    }
    for (const FLASH_ALIAS& alias : flash_aliases()) {
        if (const auto row = rows.find(alias.device_name); row != rows.end()) {
            names.push_back({row->second, alias.name});
        }
    }
    return names;
}

NAMED_ROWS rows_named(const std::vector<std::string>& names, const std::vector<NAMED_ROW>& known) {
    NAMED_ROWS rows;
    for (const std::string& name : names) {
        NAMED_LIKE found = look_for(std::string_view(name).substr(0, name.find('(')), known);
        if (found.same.empty() && found.longer.empty() && found.beginnings.empty()) {
            found = look_for(std::string_view(name).substr(0, name.find_first_of("(_-")), known);
        }
        if (found.same.empty() && are_one_row(found.beginnings)) {
            found.same = found.beginnings;
        } else if (found.same.empty()) {
            std::for_each(found.beginnings.begin(), found.beginnings.end(),
                          [&](const NAMED_ROW& each) { add_index(rows.family, each.index); });
        }
        rows.meant.insert(rows.meant.end(), found.same.begin(), found.same.end());
        std::for_each(found.longer.begin(), found.longer.end(), [&](DWORD index) { add_index(rows.family, index); });
    }
    return rows;
}
