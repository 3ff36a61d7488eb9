#include <optional>
#include <utility>

#include "msg.h"
#include "names/catalog_parts.h"
#include "names/grammar_trace.h"
#include "names/part_indexes.h"
#include "names/parts.h"
#include "part_digests_table.h"
#include "pgm_common.h"
#include "pgmdev_device_grammar_mgr.h"
#include "pgmdev_mgr.h"
#include "report.h"
#include "stl.h"

// Parts by less specific names.

namespace {

/// Whether `name` is the candidate's name, package name or programming name.
bool denotes(const std::string& name, const std::string& candidate) {
    if (candidate == name) {
        return true;
    }
    return share_part_prefix(candidate, name) &&
           (PGM_COMMON::compare_string(name, PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(candidate, false), false) ||
            PGM_COMMON::compare_string(name, PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(candidate, false, false), false));
}

/// The name of the first part that `name` denotes.
std::optional<std::string> first_denoted(const std::string& name) {
    std::optional<std::string> full_name;
    for_each_part([&](int part) {
        std::string candidate = upper_part_name(part);
        const bool found = denotes(name, candidate);
        if (found) {
            full_name = std::move(candidate);
        }
        return found;
    });
    return full_name;
}

}  // namespace

std::string PGMDEV_MGR::get_part_name_from_dev(std::string device_name) {
    DEV_PART_MANAGER manager;
    const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(device_name.c_str());
    const DEV_FAMILY_ENUM family = manager.get_family_of(device);
    if (!dstr_is_valid_dev_device_enum(device) || !dstr_is_valid_dev_family_enum(family)) {
        pgmdev_report_soft("Device is not valid in DEV database", MGR_FILE, PGMDEV_LINE);
        return {};
    }
    std::string result;
    for_each_preferred_part(manager, dstr_get_user_string(family), [&](int part) {
        if (manager.get_device_of(part) != device) {
            return false;
        }
        result = dstr_get_user_string(part);
        return true;
    });
    return result;
}

std::string PGMDEV_MGR::get_part_name_from_pcf(std::string pcf_name) {
    [[maybe_unused]] DEV_PART_MANAGER manager;  // the host may load its part list for as long as one lives
    stl_toupper(pcf_name);
    // With other parts a walk for one name mostly goes over all of them, in several passes.
    const bool of_catalog = !pcf_name.empty() && host_has_catalog_parts();
    if (const auto* index =
            parts_by_programmer_file_name(of_catalog ? INDEX_WANTED::WHEN_IT_PAYS : INDEX_WANTED::NOW)) {
        return index->find(pcf_name).value_or("");
    }
    return catalog_part_with_programmer_file_name(pcf_name);
}

std::string PGMDEV_MGR::get_possible_full_name(std::string name) {
    [[maybe_unused]] DEV_PART_MANAGER manager;  // the host may load its part list for as long as one lives
    stl_toupper(name);
    std::optional<std::string> full_name;
    if (grammar_is_traced()) {
        full_name = first_denoted(name);  // conversions have to be seen: every candidate's
    } else if (host_has_catalog_parts()) {
        full_name = catalog_part_denoted(name);
    } else {
        const PART_NAME_INDEX* index = parts_by_possible_name(INDEX_WANTED::WHEN_IT_PAYS);
        full_name = index != nullptr ? index->find(name) : first_denoted(name);
    }
    if (!full_name) {
        pgmdev_soften([&] {
            MSG_INTERNAL_ERROR::report_varg(PGMDEV_MODULE, MGR_FILE, PGMDEV_LINE,
                                            "Unable to retrieve full device name from database for %s", name.c_str());
        });
    }
    return std::move(full_name).value_or("");
}
