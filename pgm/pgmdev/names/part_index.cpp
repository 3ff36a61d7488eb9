#include "pgmdev_part_index.h"

#include <unordered_map>
#include <utility>

#include "names/parts.h"
#include "pgmdev_device_grammar_mgr.h"
#include "stl.h"

namespace {

using NAME_MAP = std::unordered_map<std::string, std::string>;

std::string value_of(const NAME_MAP& map, const std::string& key) {
    const auto found = map.find(key);
    return found != map.end() ? found->second : std::string();
}

NAME_MAP index_by_pcf(const DEV_PART_MANAGER& manager) {
    NAME_MAP map;
    for_each_preferred_part(manager, "ANY", [&](int part) {
        std::string name = dstr_get_user_string(part);
        std::string part_pcf = PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(name);
        map.try_emplace(std::move(part_pcf), std::move(name));
        return false;
    });
    return map;
}

NAME_MAP index_full_names() {
    NAME_MAP map;
    for_each_part([&](int part) {
        const std::string candidate = upper_part_name(part);
        map.try_emplace(candidate, candidate);
        std::string shown = candidate;  // the conversions normalise the name that they are given
        for (const std::string& name : {PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(shown, false),
                                        PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(shown, false, false)}) {
            if (share_part_prefix(candidate, name)) {
                map.try_emplace(name, shown);
            }
        }
        return false;
    });
    return map;
}

}  // namespace

struct PGMDEV_PART_INDEX::NAMES {
    NAME_MAP by_pcf;
    NAME_MAP full_names;
};

PGMDEV_PART_INDEX::PGMDEV_PART_INDEX()
    : m_names(std::make_unique<const NAMES>(NAMES{index_by_pcf(DEV_PART_MANAGER()), index_full_names()})) {}

PGMDEV_PART_INDEX::~PGMDEV_PART_INDEX() = default;

std::string PGMDEV_PART_INDEX::get_part_name_from_pcf(std::string pcf_name) const {
    stl_toupper(pcf_name);
    return value_of(m_names->by_pcf, pcf_name);
}

std::string PGMDEV_PART_INDEX::get_possible_full_name(std::string name) const {
    stl_toupper(name);
    return value_of(m_names->full_names, name);
}
