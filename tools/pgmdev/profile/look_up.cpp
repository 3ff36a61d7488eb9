#include "profile/look_up.h"

#include "dev.h"
#include "files/database.h"
#include "gen.h"
#include "pgmdev_device_grammar_mgr.h"

namespace {

/// The rule that leads to a record follows from what the record is keyed by. A family's record that is not of the
/// family asked for stands in for a missing one.
std::string rule_of(const PGMDEV_DEVICE_INFO& record, DEV_FAMILY_ENUM family) {
    if (record.part != DEV_PART_INVALID) {
        return "part";
    }
    if (record.device != DEV_DEVICE_INVALID) {
        return "device";
    }
    if (!record.pcf.empty()) {
        return "pcf";
    }
    return record.family == family ? "family" : "generic";
}

DEV_FAMILY_ENUM family_of(PROFILE_KEY key, int number) {
    const DEV_PART_MANAGER parts;
    switch (key) {
        case PROFILE_KEY::FAMILY:
            return static_cast<DEV_FAMILY_ENUM>(number);
        case PROFILE_KEY::DEVICE:
            return parts.get_family_of(static_cast<DEV_DEVICE_ENUM>(number));
        default:
            return parts.get_family_of(parts.get_device_of(number));
    }
}

PGMDEV_DEVICE_INFO* governing_record(PROFILE_DATABASE& database, PROFILE_KEY key, int number) {
    switch (key) {
        case PROFILE_KEY::FAMILY:
            return database.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(number));
        case PROFILE_KEY::DEVICE:
            return database.get_db_by_device(static_cast<DEV_DEVICE_ENUM>(number));
        default:
            return database.get_db_by_part(number);
    }
}

}  // namespace

PROFILE_DATABASE::PROFILE_DATABASE()
    : PGMDEV_DEV_INFO_MANAGER(read_database(PROFILE_DATABASE_KIND, profile_database_place(),
                                            [] { return PGMDEV_DEV_INFO_MANAGER(false); })) {}

std::span<const DWORD> PROFILE_DATABASE::index_table(PROFILE_KEY key) const {
    switch (key) {
        case PROFILE_KEY::FAMILY:
            return {m_family_table, static_cast<std::size_t>(DEV_FAMILY_MAX)};
        case PROFILE_KEY::DEVICE:
            return {m_device_table, static_cast<std::size_t>(DEV_DEVICE_MAX)};
        default:
            return {m_part_table, static_cast<std::size_t>(DEV_PART_MAX)};
    }
}

FOUND_PROFILE look_up_profile(PROFILE_DATABASE& database, PROFILE_KEY key, int number) {
    FOUND_PROFILE found;
    if (number == 0) {
        return found;
    }
    found.record.reset(governing_record(database, key, number));
    if (found.record != nullptr) {
        found.index = database.found_index();
        found.rule = rule_of(*found.record, family_of(key, number));
    }
    return found;
}

FOUND_PROFILE profile_at(PROFILE_DATABASE& database, DWORD index) {
    FOUND_PROFILE found;
    if (index < database.count()) {
        found.record = std::make_unique<PGMDEV_DEVICE_INFO>(database.get_device_database()[index]);
        found.index = index;
        found.rule = "index";
    }
    return found;
}

FOUND_PROFILE look_up_profile_of_pcf(PROFILE_DATABASE& database, const std::string& pcf) {
    const PGMDEV_DEVICE_INFO* records = database.get_device_database();
    for (DWORD index = 0; index < database.count(); ++index) {
        if (!records[index].pcf.empty() && gen_stricmp(records[index].pcf, pcf) == 0) {
            FOUND_PROFILE found = profile_at(database, index);
            found.rule = "pcf";
            return found;
        }
    }
    // A copy, which the question converts to upper case.
    std::string name = pcf;  // NOLINT(performance-unnecessary-copy-initialization)
    const std::string device = PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device(name);
    const DEV_FAMILY_ENUM family = family_of(PROFILE_KEY::DEVICE, dstr_get_dev_device_enum_by_string(device.c_str()));
    return look_up_profile(database, PROFILE_KEY::FAMILY, family);
}

std::string rule_text(const FOUND_PROFILE& found) {
    if (found.rule == "pcf") {
        return "by its programmer-file name";
    }
    if (found.rule == "generic") {
        return "as a stand-in, because its family has no record";
    }
    return "by its " + found.rule;
}
